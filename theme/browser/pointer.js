// Tells of every pressed pointer on the panel: mouse, finger or pen, each with all its samples. Who draws is the
// program's to decide.

const [DOWN, MOVE, UP] = [0, 1, 2];
const KINDS = {mouse: 0, touch: 1, pen: 2};
const MOST_SAMPLES = 500;  // in a message
const FIRST_BUTTON = 1;  // in `buttons`; of a pen the tip

/**
 * `toPanel(event)` gives the place [x, y] in panel pixels, `send(bytes)` takes the messages, and `wet` shows at once
 * what they will draw. The result is a function that forgets all presses.
 */
export function followPointers(canvas, toPanel, send, wet) {
    const pressed = new Map();  // where each pressed pointer was last, by its id

    const tell = (action, event, places) => {
        const message = new DataView(new ArrayBuffer(7 + places.length * 8));
        message.setUint8(0, 1);
        message.setUint8(1, action);
        message.setUint8(2, KINDS[event.pointerType] ?? KINDS.mouse);
        message.setUint32(3, event.pointerId, true);
        places.flat().forEach((value, i) => message.setFloat32(7 + i * 4, value, true));
        send(message);
    };

    // The browser gathers the samples of one picture; a smooth stroke needs each of them.
    const samples = (event) => {
        const gathered = event.getCoalescedEvents?.() ?? [];
        return (gathered.length ? gathered : [event]).map(toPanel);
    };

    // A button pressed or let go while another is held comes as a move.
    const follow = (event) => {
        const held = (event.buttons & FIRST_BUTTON) !== 0;
        if (!pressed.has(event.pointerId)) {
            if (!held || event.button !== 0) return;
            canvas.setPointerCapture(event.pointerId);
            pressed.set(event.pointerId, toPanel(event));
            tell(DOWN, event, [toPanel(event)]);
            wet.press(event, toPanel(event));
        } else if (held) {
            const places = samples(event);
            pressed.set(event.pointerId, places.at(-1));
            wet.move(event, places);
            while (places.length) tell(MOVE, event, places.splice(0, MOST_SAMPLES));
        } else {
            pressed.delete(event.pointerId);
            tell(UP, event, [toPanel(event)]);
            wet.lift(event);
        }
    };

    // What the browser takes away, for a gesture or a dialog of its own, ends where it was.
    const lift = (event) => {
        if (!pressed.has(event.pointerId)) return;
        tell(UP, event, [pressed.get(event.pointerId)]);
        pressed.delete(event.pointerId);
        wet.lift(event);
    };

    for (const type of ['pointerdown', 'pointermove', 'pointerup']) canvas.addEventListener(type, follow);
    for (const type of ['pointercancel', 'lostpointercapture']) canvas.addEventListener(type, lift);
    // Neither a menu, a loupe, a selection nor the loss of the keyboard's focus comes of a press.
    for (const type of ['contextmenu', 'touchstart', 'mousedown']) {
        canvas.addEventListener(type, (event) => event.preventDefault(), {passive: false});
    }
    return () => {
        pressed.clear();
        wet.forget();
    };
}
