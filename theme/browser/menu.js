// What the page offers besides the panel: the system's keyboard, full screen, and the panel as a file.

const ROOM = 52;  // CSS pixels that a row of buttons takes, with its margins

/** `download` gives the file as a blob, `showKeyboard` brings a phone's keyboard up. */
export class Menu {
    #menu = document.getElementById('menu');
    #keyboard = document.getElementById('keyboard');
    #fold = document.getElementById('fold');

    constructor({download, showKeyboard}) {
        const fullScreen = document.getElementById('full-screen');
        fullScreen.hidden = !document.fullscreenEnabled;
        fullScreen.addEventListener('click', () => {
            if (document.fullscreenElement) document.exitFullscreen();
            else document.documentElement.requestFullscreen({navigationUI: 'hide'});
        });
        document.getElementById('download').addEventListener('click', async () => save(await download()));
        this.#keyboard.addEventListener('click', showKeyboard);
        this.#fold.addEventListener('click', () => this.#open(!this.#menu.classList.contains('open')));
        // A press leaves the focus to the field that takes text.
        this.#menu.addEventListener('mousedown', (event) => event.preventDefault());
    }

    set offersKeyboard(does) {
        this.#keyboard.hidden = !does;
    }

    /** Goes where `beside` or `below` the panel so many CSS pixels are free; else over it, folded away. */
    place(beside, below) {
        const place = beside >= ROOM ? 'beside' : below >= ROOM ? 'below' : 'over';
        this.#menu.className = place;
        this.#menu.hidden = false;
        this.fold();
    }

    fold() {
        this.#open(false);
    }

    #open(open) {
        this.#menu.classList.toggle('open', open);
        this.#fold.ariaExpanded = String(open);
    }
}

function save(blob) {
    const now = new Date();
    const two = (number) => String(number).padStart(2, '0');
    const day = [now.getFullYear(), two(now.getMonth() + 1), two(now.getDate())].join('-');
    const time = [now.getHours(), now.getMinutes(), now.getSeconds()].map(two).join('');
    const link = document.createElement('a');
    link.href = URL.createObjectURL(blob);
    link.download = `colour-${day}-${time}.png`;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 60_000);  // some browsers begin to read it late
}
