// One display on one screen, or several: whatever the address names, as large as it goes.
import { makeComfort } from '/comfort.js';
import { makeKeyboard } from '/keyboard.js';
import { openLink, showTrouble } from '/link.js';
import { element, makeScreen, readPicture } from '/screen.js';

const kMostDisplays = 12;
const kEntryKeys = ['ENTER', 'EXEC']; // a gauge with one of them is a unit to type on
const find = (selector) => document.querySelector(selector);
const wanted = readable(location.pathname.replace(/^\/show\//, '').replace(/\/$/, ''));
const titles = new Map(); // of gauges
const screens = new Map(); // by display
let link = { send: () => false };
const send = (message) => link.send(message);
const takeKeyboard = makeKeyboard(find('#keyboard'), send);
let keyboardOffered = false;

// An address that is no text stands for itself.
function readable(address) {
  try {
    return decodeURIComponent(address);
  } catch {
    return address;
  }
}

// By gauge name, by the window's number, or by its title.
function findDisplay(displays, name) {
  const sought = name.trim().toLowerCase();
  const by = (read) => displays.find((each) => read(each).toLowerCase() === sought);
  return by(({ name: own }) => own) ||
    displays.find((each) => !each.gauge && each.title.toLowerCase() === sought) ||
    by(({ title }) => title);
}

function start(hello) {
  for (const { gauge, name, title } of hello.displays) if (gauge) titles.set(name, title);
  const names = wanted.split('+').filter((name) => name.trim()).slice(0, kMostDisplays);
  const found = names.map((name) => findDisplay(hello.displays, name));
  const missing = names.filter((name, i) => !found[i]);
  find('#notice').textContent = missing.length > 0 || names.length === 0
    ? `There is no display "${missing.join('", "')}" here. The list of all displays names them.` : '';
  const shown = [...new Set(found.filter(Boolean))];
  for (const index of [...screens.keys()]) {
    if (!shown.some(({ w }) => w === index)) {
      screens.get(index).place.remove();
      screens.delete(index);
    }
  }
  for (const display of shown) {
    if (screens.has(display.w)) continue;
    const screen = makeScreen(display.w, send, titles);
    const place = element('section', 'place');
    place.setAttribute('aria-label', display.title);
    place.append(screen.body);
    find('#screens').append(place);
    screens.set(display.w, { display, screen, place });
    screen.setSize(display);
    screen.setBoxes([{ x: 0, y: 0, width: display.width, height: display.height }]);
  }
  document.title = `${shown.map(({ title }) => title).join(' + ') || 'No display'} - AVQ1`;
  layout();
}

// The grid that makes the displays largest together.
function grid(list, width, height) {
  let best = { area: 0, columns: 1, rows: 1 };
  for (let columns = 1; columns <= list.length; ++columns) {
    const rows = Math.ceil(list.length / columns);
    const area = list.reduce((sum, { display }) => sum +
      Math.min(width / columns / display.width, height / rows / display.height) ** 2 *
      display.width * display.height, 0);
    if (area > best.area) best = { area, columns, rows };
  }
  return best;
}

function layout() {
  const root = find('#screens');
  const list = [...screens.values()];
  const { columns, rows } = grid(list, root.clientWidth, root.clientHeight);
  const width = root.clientWidth / columns;
  const height = root.clientHeight / rows;
  list.forEach(({ display, screen, place }, i) => {
    place.style.left = `${i % columns * width}px`;
    place.style.top = `${Math.floor(i / columns) * height}px`;
    place.style.width = `${width}px`;
    place.style.height = `${height}px`;
    const scale = Math.min(width / display.width, height / display.height);
    screen.views[0].root.style.width = `${display.width * scale}px`;
    screen.views[0].root.style.height = `${display.height * scale}px`;
  });
  watch();
}

function watch() {
  const list = document.hidden ? [] : [...screens.values()];
  send({ t: 'watch', windows: list.map(({ display }) => display.w),
    scales: list.map(({ screen }) => screen.neededScale()) });
}

// A unit's keys are the keyboard's: nobody should have to ask for them first.
function offerKeyboard(areas) {
  if (keyboardOffered || !areas.some(({ label }) => kEntryKeys.includes(label))) return;
  keyboardOffered = true;
  takeKeyboard();
}

const kHandlers = {
  hello: start,
  status: ({ trouble }) => showTrouble(find('#trouble'), trouble),
  areas(message) {
    screens.get(message.w)?.screen.setAreas(message);
    offerKeyboard(message.areas);
  },
  texts: (message) => screens.get(message.w)?.screen.showTexts(message),
  refused() {
    find('#notice').textContent =
      'The panel host shows too much at once. Close other pages, then load this one again.';
  },
  error: (message) => console.warn(`panel host: ${message.problem}`),
};

link = openLink({
  onMessage: (message) => kHandlers[message.t]?.(message),
  onPicture(buffer) {
    const picture = readPicture(buffer);
    screens.get(picture.w)?.screen.showPicture(picture);
  },
  onState(state, text) {
    find('#link').dataset.state = state;
    find('#link').textContent = text;
    const isLost = state !== 'open';
    if (isLost && !document.body.classList.contains('lost')) find('#notice').textContent = 'Link lost';
    document.body.classList.toggle('lost', isLost);
  },
});

// ---- the page's tools ----
find('#more').addEventListener('click', () => {
  const list = find('#toolList');
  list.hidden = !list.hidden;
  find('#more').setAttribute('aria-expanded', String(!list.hidden));
});
find('#screens').addEventListener('pointerdown', () => {
  find('#toolList').hidden = true;
  find('#more').setAttribute('aria-expanded', 'false');
}, true);
const canFill = document.documentElement.requestFullscreen !== undefined;
find('#full').hidden = !canFill;
find('#full').addEventListener('click', () => {
  if (document.fullscreenElement) document.exitFullscreen();
  else document.documentElement.requestFullscreen({ navigationUI: 'hide' }).catch(() => {});
});
makeComfort(find('#comfort'));

// ---- installed as an app this page starts where it is now ----
const manifest = document.createElement('link');
manifest.rel = 'manifest';
manifest.href = `/show/${encodeURIComponent(wanted).replaceAll('%2B', '+')}/app.webmanifest`;
document.head.append(manifest);

// ---- the screen stays on while the page is looked at ----
async function stayAwake() {
  if (document.hidden || !navigator.wakeLock) return;
  try {
    await navigator.wakeLock.request('screen');
    document.body.dataset.awake = '1';
  } catch { /* a low battery or the system's own setting refuses */ }
}
document.addEventListener('visibilitychange', () => {
  stayAwake();
  watch();
});
stayAwake();
new ResizeObserver(layout).observe(find('#screens'));
