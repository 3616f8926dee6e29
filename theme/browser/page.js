// The page of the panel: brings its parts together and lays them out.
import {Connection} from './connection.js';
import {Menu} from './menu.js';
import {Picture} from './picture.js';
import {followPointers} from './pointer.js';
import {text, translatePage} from './texts.js';
import {Typing} from './typing.js';
import {WetInk} from './wet.js';

const room = document.getElementById('room');
const canvas = document.getElementById('panel');
const overlay = document.getElementById('wet');
const field = document.getElementById('field');
const notice = document.getElementById('notice');

// A device that is used by finger shows a keyboard of its own wherever text is asked for.
const showsKeyboards = matchMedia('(pointer: coarse)').matches;

let picture = null;
let view = {left: 0, top: 0, scale: 1};  // where the panel's corner is seen in the room, and CSS pixels a panel pixel
let textArea = [0, 0, 0, 0];             // in panel pixels: x, y, width, height

function tell(name, isBrief = false) {
    notice.textContent = name ? text(name) : '';
    notice.hidden = !name;
    notice.classList.toggle('brief', isBrief);
}

// The picture is scaled to the device's pixels here, since the browser would blur it. The room fills the window, so its
// size in them is a whole number but for rounding.
function layOut() {
    if (!picture) return;
    const box = room.getBoundingClientRect();
    const width = Math.round(box.width * devicePixelRatio);
    const height = Math.round(box.height * devicePixelRatio);
    const shown = picture.fit(width, height);
    const left = Math.floor((width - shown.width) / 2) / devicePixelRatio;
    const top = Math.floor((height - shown.height) / 2) / devicePixelRatio;
    view = {left, top, scale: shown.width / devicePixelRatio / picture.width};
    for (const each of [canvas, overlay])
        place(each, left, top, shown.width / devicePixelRatio, shown.height / devicePixelRatio);
    wet.fit(shown, picture.width);
    placeField();
    menu.place(left, top);
}

function place(element, left, top, width, height) {
    for (const [side, value] of Object.entries({left, top, width, height})) element.style[side] = `${value}px`;
}

// There an input method shows its choice, and a phone scrolls it into view.
function placeField() {
    const [x, y, width, height] = textArea.map((value) => value * view.scale);
    place(field, view.left + x, view.top + y, width, height);
}

function toPanel(event) {
    const box = canvas.getBoundingClientRect();
    const x = (event.clientX - box.left) * picture.width / box.width;
    const y = (event.clientY - box.top) * picture.height / box.height;
    return [x, y];
}

const connection = new Connection({
    panel(size) {
        picture = new Picture(canvas, size);
        forgetPresses();
        canvas.hidden = false;
        canvas.className = '';
        tell('');
        layOut();
    },
    pixels: (...rectangle) => picture.put(...rectangle),
    wetInk: (place) => place ? wet.goOnFrom(place) : wet.end(),
    drawing: (isSomebodyElse) => tell(isSomebodyElse && 'drawing', true),
    typing(isOn, ...area) {
        textArea = area;
        placeField();
        menu.offersKeyboard = isOn && showsKeyboards;
        if (!isOn) typing.stop();
        else if (!typing.isOn) typing.start(showsKeyboards);
    },
    broken(why) {
        canvas.className = 'dead';
        typing.stop();
        wet.forget();
        tell(why);
    },
});

const wet = new WetInk(overlay);
const send = (bytes) => connection.send(bytes);
const typing = new Typing(field, send);
const menu = new Menu({download: () => picture.toPng(), showKeyboard: () => typing.showKeyboard()});
canvas.addEventListener('pointerdown', () => {
    if (typing.isOn) typing.startAnew();
    menu.fold();
});
const forgetPresses = followPointers(canvas, toPanel, send, wet);

// When the window goes to a screen of another density, too, whose size in CSS pixels may be the same.
function keepLaidOut() {
    matchMedia(`(resolution: ${devicePixelRatio}dppx)`).addEventListener('change', keepLaidOut, {once: true});
    layOut();
}

new ResizeObserver(layOut).observe(room);
keepLaidOut();

translatePage();
tell('connecting');
connection.connect();
