// Scales rectangles of a picture so that thin lines stay: each pixel takes the mean of the area that it covers, drawn
// towards the darkest there. The mean alone leaves a line that falls on two pixels of a small screen hardly visible.

const WHOLE = 256;  // what the weights of one pixel add up to: sums of products stay whole numbers of 31 bits
const OPAQUE = 0xff000000;
const TILE = 16;  // pixels a side that are looked at together, since they are often even
const MIXED = 0;  // no colour, since all are opaque

/** In one direction: which source pixels (first, up to end) each scaled pixel covers, and how much each counts. */
class Axis {
    constructor(from, to) {
        this.ratio = to / from;
        this.taps = Math.ceil(from / to) + 1;
        this.first = new Int32Array(to);
        this.end = new Int32Array(to);
        this.weights = new Int32Array(to * this.taps);
        for (let i = 0; i < to; ++i) {
            const begin = i * from;  // in units of 1 / to source pixels
            this.first[i] = Math.floor(begin / to);
            this.end[i] = Math.ceil((begin + from) / to);
            // Each weight is the rise of the rounded running total, so rounding never adds up.
            let before = 0;
            for (let pixel = this.first[i]; pixel < this.end[i]; ++pixel) {
                const covered = Math.min((pixel + 1) * to - begin, from);
                const total = Math.round(covered * WHOLE / from);
                this.weights[i * this.taps + pixel - this.first[i]] = total - before;
                before = total;
            }
        }
    }

    /** The scaled pixels that show any part of these, as [first, end]. */
    showing(start, length) {
        const end = Math.min(Math.ceil((start + length) * this.ratio), this.first.length);
        return [Math.max(Math.floor(start * this.ratio), 0), end];
    }
}

/** The colour of all pixels of that rectangle, as on paper nearly everywhere, or MIXED. */
function evenColour({width, pixels}, left, right, top, bottom) {
    const first = pixels[top * width + left];
    for (let y = top; y < bottom; ++y) {
        for (let x = left; x < right; ++x) {
            if (pixels[y * width + x] !== first) return MIXED;
        }
    }
    return first;
}

export class Scaler {
    #source;
    #columns;
    #rows;

    /** From `source`, {width, height, pixels}, to pictures of that size; a pixel has the bytes R, G, B, 0xff. */
    constructor(source, {width, height}) {
        this.#source = source;
        this.#columns = new Axis(source.width, width);
        this.#rows = new Axis(source.height, height);
    }

    /** The part of the scaled picture that shows any of this rectangle of the source: {x, y, image}. */
    scale(x, y, width, height) {
        const [left, right] = this.#columns.showing(x, width);
        const [top, bottom] = this.#rows.showing(y, height);
        const image = new ImageData(right - left, bottom - top);
        const into = new Uint32Array(image.data.buffer);
        for (let y = top; y < bottom; y += TILE) {
            for (let x = left; x < right; x += TILE) {
                const [tileRight, tileBottom] = [Math.min(x + TILE, right), Math.min(y + TILE, bottom)];
                this.#scaleTile(x, y, tileRight, tileBottom, into, image.width, (y - top) * image.width + x - left);
            }
        }
        return {x: left, y: top, image};
    }

    /** Into rows that are `stride` long, from the pixel `start` on. */
    #scaleTile(left, top, right, bottom, into, stride, start) {
        const {first, end} = this.#columns;
        const colourOf = (row, lastRow, column, lastColumn) =>
            evenColour(this.#source, first[column], end[lastColumn], this.#rows.first[row], this.#rows.end[lastRow]);
        const all = colourOf(top, bottom - 1, left, right - 1);
        for (let row = top; row < bottom; ++row, start += stride) {
            if (all !== MIXED) {
                into.fill(all, start, start + right - left);
                continue;
            }
            for (let column = left, i = start; column < right; ++column, ++i) {
                const colour = colourOf(row, row, column, column);
                into[i] = colour === MIXED ? this.#blend(column, row) : colour;
            }
        }
    }

    #blend(column, row) {
        const {width, pixels} = this.#source;
        const [left, right] = [this.#columns.first[column], this.#columns.end[column]];
        const [top, bottom] = [this.#rows.first[row], this.#rows.end[row]];
        const columnWeights = column * this.#columns.taps - left;
        const rowWeights = row * this.#rows.taps - top;
        let colour = OPAQUE;
        for (let shift = 0; shift < 24; shift += 8) {
            let sum = 0;
            let low = 0xff;
            let high = 0;
            for (let y = top; y < bottom; ++y) {
                const rowWeight = this.#rows.weights[rowWeights + y];
                for (let x = left; x < right; ++x) {
                    const weight = rowWeight * this.#columns.weights[columnWeights + x];
                    if (weight === 0) continue;
                    const value = pixels[y * width + x] >> shift & 0xff;
                    sum += value * weight;
                    if (value < low) low = value;
                    if (value > high) high = value;
                }
            }
            // Its distance from the brightest is the geometric mean of the mean's and the darkest's: a line keeps two
            // thirds of its strength where it covers not half a pixel, and even areas keep their colour.
            const value = high - Math.sqrt((high - sum / (WHOLE * WHOLE)) * (high - low));
            colour |= Math.round(value) << shift;
        }
        return colour;
    }
}
