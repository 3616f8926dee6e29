// The WebSocket to the program: reads its messages, sends ours, and comes back by itself after a break.

const RETRY_MS = 500;

export class Connection {
    #handlers;
    #socket = null;
    #seen = false;  // the panel has been shown once

    /**
     * Calls `panel({width, height, channels})`, `pixels(x, y, width, height, bytes)`, `drawing(isSomebodyElse)`,
     * `typing(isOn, x, y, width, height)` and `wetInk(place)`, which has x, y, width and colour or is null, as messages
     * come, and `broken(text)` with the name of the text that tells why
     * there is no connection.
     */
    constructor(handlers) {
        this.#handlers = handlers;
    }

    connect() {
        const socket = new WebSocket(`${location.protocol === 'https:' ? 'wss' : 'ws'}://${location.host}/panel`);
        socket.binaryType = 'arraybuffer';
        socket.onmessage = ({data}) => {
            this.#seen = true;
            try {
                this.#read(new DataView(data));
            } catch (error) {
                console.error(error);
                socket.close();
            }
        };
        socket.onclose = () => this.#comeBack();
        this.#socket = socket;
    }

    /** What is sent while there is no connection is lost, as the program has let all pointers go. */
    send(bytes) {
        if (this.#socket.readyState === WebSocket.OPEN) this.#socket.send(bytes);
    }

    async #comeBack() {
        const answer = await fetch('/admitted', {cache: 'no-store'}).catch(() => null);
        if (answer?.status === 403) return location.replace('/');  // the door
        const why = answer?.status === 503 ? 'full' : answer || !this.#seen ? 'connecting' : 'ended';
        this.#handlers.broken(why);
        setTimeout(() => this.connect(), RETRY_MS);
    }

    #read(message) {
        const u16 = (at) => message.getUint16(at, true);
        const i16 = (at) => message.getInt16(at, true);
        switch (message.getUint8(0)) {
            case 1:
                return this.#handlers.panel({width: u16(1), height: u16(3), channels: message.getUint8(5)});
            case 2:
                return this.#handlers.pixels(u16(1), u16(3), u16(5), u16(7), new Uint8Array(message.buffer, 9));
            case 3:
                return this.#handlers.drawing(message.getUint8(1) === 1);
            case 4:
                return this.#handlers.typing(message.getUint8(1) === 1, i16(2), i16(4), u16(6), u16(8));
            case 5:
                return this.#handlers.wetInk(message.byteLength === 1 ? null : {
                    x: u16(1) + 0.5,
                    y: u16(3) + 0.5,
                    width: u16(5),
                    colour: `rgb(${message.getUint8(7)} ${message.getUint8(8)} ${message.getUint8(9)})`,
                });
            default:
                throw new Error('a message that this page does not know');
        }
    }
}
