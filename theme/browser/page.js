// Shows the panel and sends what a person does on it. noVNC only paints: it thins mouse moves out and waits for
// gestures, which a stroke must not suffer, so pointer and keys go to the program from here, on the same connection.
import RFB from './novnc/core/rfb.js';

const CONNECTING = 'Connecting…';
const ENDED = 'Colour has ended.\nThis page comes back when it starts again.';
const RETRY_MS = 1000;
const LONGEST_PASTE = 4096;  // characters

// X11 keysyms of the keys that are no characters (keysymdef.h); Unicode ones begin at UNICODE.
const KEYSYMS = {
    Enter: 0xff0d, Escape: 0xff1b, Backspace: 0xff08, Delete: 0xffff, Home: 0xff50, End: 0xff57,
    ArrowLeft: 0xff51, ArrowUp: 0xff52, ArrowRight: 0xff53, ArrowDown: 0xff54,
};
const SHIFT = 0xffe1;
const LINE_FEED = 0xff0a;
const UNICODE = 0x01000000;

const panel = document.getElementById('panel');
const notice = document.getElementById('notice');
const message = document.getElementById('message');
const password = document.getElementById('password');

let socket = null;
let rfb = null;
let connected = false;
let seen = false;       // the panel has been shown once
let refused = false;    // the last password was wrong
let credentials = {};

function tell(text, asksPassword = false) {
    message.textContent = text;
    notice.hidden = !text;
    password.hidden = !asksPassword;
    if (asksPassword) password.focus();
}

function connect() {
    socket = new WebSocket(`ws://${location.host}/panel`);
    rfb = new RFB(panel, socket, {credentials});
    rfb.viewOnly = true;
    rfb.scaleViewport = true;
    rfb.background = 'transparent';
    rfb.compressionLevel = 1;  // most clients are on this machine: time counts, bytes do not
    rfb.addEventListener('connect', () => {
        connected = seen = true;
        refused = false;
        tell('');
    });
    rfb.addEventListener('credentialsrequired', () => tell(refused ? 'Wrong password' : 'Password', true));
    rfb.addEventListener('securityfailure', () => {
        refused = true;
        credentials = {};
    });
    rfb.addEventListener('disconnect', () => {
        if (!connected) tell(seen ? ENDED : CONNECTING);
        const retryMs = connected ? 0 : RETRY_MS;  // at once after a mere break
        connected = false;
        stroke = null;
        setTimeout(connect, retryMs);
    });
}

notice.addEventListener('submit', (event) => {
    event.preventDefault();
    credentials = {password: password.value};
    password.value = '';
    tell(CONNECTING);
    rfb.sendCredentials(credentials);
});

function send(bytes) {
    if (connected && socket.readyState === WebSocket.OPEN) socket.send(new Uint8Array(bytes));
}

// The press in progress: the pointer's id and where it was last, in panel pixels. One pointer draws, others wait.
let stroke = null;

function panelPoint(event) {
    const canvas = panel.querySelector('canvas');
    const box = canvas.getBoundingClientRect();
    const along = (value, start, length, pixels) =>
        Math.max(0, Math.min(pixels - 1, Math.floor((value - start) * pixels / length)));
    return {
        x: along(event.clientX, box.left, box.width, canvas.width),
        y: along(event.clientY, box.top, box.height, canvas.height),
    };
}

function sendPointer({x, y}, button) {
    send([5, button, x >> 8, x & 0xff, y >> 8, y & 0xff]);
}

function press(event) {
    if (stroke || !connected || event.button !== 0 || !(event.target instanceof HTMLCanvasElement)) return;
    const at = panelPoint(event);
    stroke = {id: event.pointerId, at};
    panel.setPointerCapture(event.pointerId);
    sendPointer(at, 1);
}

// The browser gathers the samples of one picture; a smooth stroke needs each of them.
function move(event) {
    if (stroke?.id !== event.pointerId) return;
    const samples = event.getCoalescedEvents?.() ?? [];
    for (const sample of samples.length ? samples : [event]) {
        const at = panelPoint(sample);
        if (at.x === stroke.at.x && at.y === stroke.at.y) continue;
        stroke.at = at;
        sendPointer(at, 1);
    }
}

function release(event) {
    if (stroke?.id !== event.pointerId) return;
    if (event.type === 'pointerup') stroke.at = panelPoint(event);
    sendPointer(stroke.at, 0);
    stroke = null;
}

panel.addEventListener('pointerdown', press);
panel.addEventListener('pointermove', move);
for (const type of ['pointerup', 'pointercancel', 'lostpointercapture']) panel.addEventListener(type, release);
panel.addEventListener('contextmenu', (event) => event.preventDefault());

function sendKey(keysym, down) {
    send([4, down, 0, 0, keysym >>> 24, keysym >> 16 & 0xff, keysym >> 8 & 0xff, keysym & 0xff]);
}

function strike(keysym) {
    sendKey(keysym, 1);
    sendKey(keysym, 0);
}

// The browser keeps its own shortcuts. AltGr counts as Control and Alt on some systems, but types.
window.addEventListener('keydown', (event) => {
    if (!connected || event.isComposing) return;
    if (event.metaKey || ((event.ctrlKey || event.altKey) && !event.getModifierState('AltGraph'))) return;
    const character = [...event.key].length === 1;
    const keysym = character ? UNICODE + event.key.codePointAt(0) : KEYSYMS[event.key];
    if (!keysym) return;
    event.preventDefault();
    if (event.shiftKey) sendKey(SHIFT, 1);
    strike(keysym);
    if (event.shiftKey) sendKey(SHIFT, 0);
});

window.addEventListener('paste', (event) => {
    if (!connected) return;
    const text = event.clipboardData.getData('text/plain').replaceAll('\r\n', '\n');
    for (const character of [...text].slice(0, LONGEST_PASTE)) {
        strike(character === '\n' ? LINE_FEED : UNICODE + character.codePointAt(0));
    }
});

tell(CONNECTING);
connect();
