// Takes text by a field that is not seen, so that dead keys, input methods, emoji pickers and dictation work as
// everywhere. What they make of the field's contents is told as the difference: Backspaces, then the new characters.

const KEYS = {
    Enter: 0, Escape: 2, Backspace: 3, Delete: 4,
    ArrowLeft: 5, ArrowRight: 6, ArrowUp: 7, ArrowDown: 8, Home: 9, End: 10,
};
const SHIFT_RETURN = 1;
const TAKEN_BY_INPUT_METHOD = 229;  // the key code that some browsers give instead of `isComposing`
const LONGEST_TEXT = 4096;  // bytes of a message

// Stands before what is typed, since a phone's keyboard tells of Backspace only where there is something to delete.
// It joins no word and is no space, with which keyboards have plans of their own.
const START = '\u200b';

const characters = new Intl.Segmenter(undefined, {granularity: 'grapheme'});
const split = (text) => Array.from(characters.segment(text), ({segment}) => segment);

export class Typing {
    #field;
    #send;
    #told = START;  // what the program knows of the field's contents
    #composing = false;

    constructor(field, send) {
        this.#field = field;
        this.#send = send;
        field.addEventListener('beforeinput', (event) => this.#beforeInput(event));
        field.addEventListener('input', () => this.#follow());
        field.addEventListener('compositionstart', () => this.#composing = true);
        field.addEventListener('compositionend', () => {
            this.#composing = false;
            this.#follow();
        });
        window.addEventListener('keydown', (event) => this.#keyDown(event));
        window.addEventListener('paste', (event) => this.#paste(event));
    }

    get isOn() {
        return !this.#field.disabled;
    }

    /** A phone's keyboard does not come up: the panel shows one of its own. Keys and text of others arrive. */
    start(showsKeyboards) {
        this.#field.inputMode = showsKeyboards ? 'none' : 'text';
        this.#field.disabled = false;
        this.#field.value = this.#told = START;
        this.#field.focus({preventScroll: true});
    }

    stop() {
        this.#field.disabled = true;
    }

    /** Shows a phone's keyboard, for what only that has: dictation, input methods, emoji. */
    showKeyboard() {
        this.#field.inputMode = 'text';
        this.#refocus();
    }

    /** What is typed next goes wherever the panel's cursor is by then, and takes nothing back of what came before. */
    startAnew() {
        if (this.#composing) this.#refocus();  // the input method lets go of its text
        this.#field.value = this.#told = START;
    }

    #refocus() {
        this.#field.blur();
        this.#field.focus({preventScroll: true});
    }

    #follow() {
        const before = split(this.#told);
        const now = split(this.#field.value);
        let same = 0;
        while (same < before.length && before[same] === now[same]) ++same;
        for (let i = same; i < before.length; ++i) this.#send(Uint8Array.of(2, KEYS.Backspace));
        this.#tell(now.slice(same).join(''));
        this.#told = this.#field.value;
        if (!this.#composing && !this.#told.startsWith(START)) this.startAnew();
    }

    #tell(text) {
        const message = new Uint8Array(1 + LONGEST_TEXT);
        message[0] = 3;
        const {written} = new TextEncoder().encodeInto(text, message.subarray(1));  // whole characters only
        if (written > 0) this.#send(message.subarray(0, 1 + written));
    }

    #strike(event, key) {
        event.preventDefault();
        this.#send(Uint8Array.of(2, key));
        this.startAnew();
    }

    // Keyboards without keys ask by name.
    #beforeInput(event) {
        const type = event.inputType;
        if (type === 'insertLineBreak' || type === 'insertParagraph') this.#strike(event, KEYS.Enter);
        if (type === 'deleteContentForward') this.#strike(event, KEYS.Delete);
        if (type.startsWith('history')) event.preventDefault();  // what the field was before is not on the panel
    }

    // The browser keeps its own shortcuts, an input method its keys, and a button that has the focus is pressed by them.
    #keyDown(event) {
        const isTaken = event.isComposing || event.keyCode === TAKEN_BY_INPUT_METHOD;
        if (!this.isOn || isTaken || event.ctrlKey || event.altKey || event.metaKey) return;
        if (event.target.matches?.('button')) return;
        this.#field.focus({preventScroll: true});
        const key = event.shiftKey && event.key === 'Enter' ? SHIFT_RETURN : KEYS[event.key];
        if (key !== undefined) this.#strike(event, key);
    }

    #paste(event) {
        if (!this.isOn) return;
        event.preventDefault();
        this.startAnew();
        this.#tell(event.clipboardData.getData('text/plain').replaceAll('\r\n', '\n'));
    }
}
