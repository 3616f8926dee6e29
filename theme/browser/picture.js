// The panel's picture in full resolution, and the canvas that shows it in as many device pixels as fit.
import {Scaler} from './scaling.js';

const OPAQUE = 0xff000000;
const WHITE = 0xffffffff;
const SLIVER = 4;  // device pixels that are better filled by a little stretching than left as a thin border

export class Picture {
    #canvas;
    #context;
    #channels;
    #scaler = null;  // none while there is no room

    constructor(canvas, {width, height, channels}) {
        this.width = width;
        this.height = height;
        this.pixels = new Uint32Array(width * height).fill(WHITE);  // bytes R, G, B, 0xff, as a canvas has them
        this.#canvas = canvas;
        this.#context = canvas.getContext('2d', {alpha: false});
        this.#channels = channels;
    }

    /** Takes what the panel shows in that rectangle, a byte a channel, and shows it. */
    put(x, y, width, height, bytes) {
        if (x + width > this.width || y + height > this.height || bytes.length !== width * height * this.#channels) {
            throw new Error('pixels beside the panel');
        }
        const {pixels} = this;
        const channels = this.#channels;
        const [green, blue] = channels === 1 ? [0, 0] : [1, 2];
        let at = 0;
        for (let row = y; row < y + height; ++row) {
            for (let i = row * this.width + x, end = i + width; i < end; ++i, at += channels) {
                pixels[i] = OPAQUE | bytes[at + blue] << 16 | bytes[at + green] << 8 | bytes[at];
            }
        }
        this.#show(x, y, width, height);
    }

    /** Shows the picture as large as it fits; its size in device pixels. */
    fit(width, height) {
        const scale = Math.min(width / this.width, height / this.height);
        const along = (pixels, room) => {
            const fits = Math.floor(pixels * scale);
            return room - fits <= SLIVER ? room : fits;
        };
        const size = {width: along(this.width, width), height: along(this.height, height)};
        this.#scaler = size.width > 0 && size.height > 0 ? new Scaler(this, size) : null;
        Object.assign(this.#canvas, size);
        this.#show(0, 0, this.width, this.height);
        return size;
    }

    /** A PNG file of exactly the panel's pixels. */
    toPng() {
        const canvas = new OffscreenCanvas(this.width, this.height);
        const bytes = new Uint8ClampedArray(this.pixels.buffer);
        canvas.getContext('2d').putImageData(new ImageData(bytes, this.width, this.height), 0, 0);
        return canvas.convertToBlob({type: 'image/png'});
    }

    #show(x, y, width, height) {
        if (!this.#scaler) return;
        const part = this.#scaler.scale(x, y, width, height);
        this.#context.putImageData(part.image, part.x, part.y);
    }
}
