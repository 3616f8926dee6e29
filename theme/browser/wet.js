// Wet ink: what a pen draws shows at once, as a line from the last piece that the program has drawn to the pointer,
// without waiting for the network. The line lies on a canvas of its own, over the panel's picture.

const MOST_SAMPLES = 512;  // that a program far away is behind, and tools that draw no ink never take away

export class WetInk {
    #canvas;
    #context;
    #presenter = null;  // the browser's own, which prolongs the line to where the pointer is by the time it is seen
    #scale = 1;         // canvas pixels a panel pixel
    #pointer = null;    // {id, isPen} of the press that is followed
    #path = [];         // its places [x, y] in panel pixels, from the last that has been drawn
    #ink = null;        // {width, colour} while there is a line
    #covered = null;    // [x, y, width, height] of the canvas that is not clear

    constructor(canvas) {
        this.#canvas = canvas;
        // Not in step with the page, on which it has not to wait.
        this.#context = canvas.getContext('2d', {desynchronized: true});
        navigator.ink?.requestPresenter({presentationArea: canvas}).then((presenter) => this.#presenter = presenter, () => {});
    }

    /** So many canvas pixels show a panel of that width. */
    fit({width, height}, panelWidth) {
        Object.assign(this.#canvas, {width, height});
        this.#covered = null;
        this.#scale = width / panelWidth;
        this.#draw();
    }

    /** A pointer is pressed there. As in the program the first one draws, but a pen takes over from all else. */
    press({pointerId, pointerType}, place) {
        const isPen = pointerType === 'pen';
        if (this.#pointer && (this.#pointer.isPen || !isPen)) return;
        this.forget();
        this.#pointer = {id: pointerId, isPen};
        this.#path = [place];
    }

    move(event, places) {
        if (event.pointerId !== this.#pointer?.id) return;
        this.#path = [...this.#path, ...places].slice(-MOST_SAMPLES);
        if (!this.#ink) return;
        this.#draw();
        if (this.#presenter && event.isTrusted) {
            const diameter = this.#ink.width * this.#scale / devicePixelRatio;
            this.#presenter.updateInkTrailStartPoint(event, {color: this.#ink.colour, diameter});
        }
    }

    /** The line stays until the program has drawn the end of the stroke and says so. */
    lift({pointerId}) {
        if (pointerId === this.#pointer?.id) this.#pointer = null;
    }

    /** The program has drawn a piece of that look, which ends there. */
    goOnFrom({x, y, width, colour}) {
        const drawn = this.#path.findIndex((place) => Math.abs(place[0] - x) <= 1 && Math.abs(place[1] - y) <= 1);
        if (drawn < 0) return this.end();
        this.#path.splice(0, drawn + 1, [x, y]);
        this.#ink = {width, colour};
        this.#draw();
    }

    /**
     * No line any more, or not yet: the press is beside the page, does not draw, or the word is still of the press
     * before. The path is kept, since the program may yet draw it.
     */
    end() {
        this.#ink = null;
        this.#draw();
    }

    forget() {
        this.#pointer = null;
        this.#path = [];
        this.end();
    }

    #draw() {
        const context = this.#context;
        if (this.#covered) context.clearRect(...this.#covered);
        this.#covered = null;
        if (!this.#ink || this.#path.length < 2) return;
        const points = this.#path.map((place) => place.map((value) => value * this.#scale));
        const width = this.#ink.width * this.#scale;
        context.strokeStyle = this.#ink.colour;
        context.lineWidth = width;
        context.lineCap = context.lineJoin = 'round';
        context.beginPath();
        for (const point of points) context.lineTo(...point);
        context.stroke();
        const [left, top] = [0, 1].map((side) => Math.floor(Math.min(...points.map((point) => point[side])) - width / 2) - 1);
        const [right, bottom] = [0, 1].map((side) => Math.ceil(Math.max(...points.map((point) => point[side])) + width / 2) + 1);
        this.#covered = [left, top, right - left, bottom - top];
    }
}
