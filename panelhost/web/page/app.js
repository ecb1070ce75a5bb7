import { makeComfort } from '/comfort.js';
import { makeDesk } from '/desk.js';
import { listDisplays } from '/displays.js';
import { makeKeyboard } from '/keyboard.js';
import { openLink, showTrouble } from '/link.js';
import { makeLog } from '/log.js';
import { makeProfile } from '/profile.js';
import { makeStatus } from '/status.js';

const kRates = [1, 2, 4, 8, 16];
const find = (selector) => document.querySelector(selector);
let link = { send: () => false };
const send = (message) => link.send(message);

const desk = makeDesk(find('#desk'), find('#windowList'), send);
const showStatus = makeStatus(find);
const showLog = makeLog(find);
const profile = makeProfile(find);
makeKeyboard(find('#keyboard'), send);

makeComfort(find('#comfort'));

let paused = false;
let asked = null; // what the pilot wants and the host has not yet told to be so
find('#pause').addEventListener('click', () => {
  asked = !(asked ?? paused);
  send({ t: 'pause', on: asked });
});
const rates = kRates.map((rate) => {
  const button = document.createElement('button');
  button.type = 'button';
  button.textContent = `×${rate}`;
  button.setAttribute('aria-label', `Rate times ${rate}`);
  button.addEventListener('click', () => send({ t: 'rate', v: rate }));
  find('#rates').append(button);
  return button;
});

function showControls(status) {
  paused = status.paused;
  if (asked === paused) asked = null;
  // A button whose text is replaced under the finger loses the click: only when it changes.
  const label = paused ? 'Resume' : 'Pause';
  if (find('#pause').textContent !== label) find('#pause').textContent = label;
  find('#pause').setAttribute('aria-pressed', String(paused));
  document.body.classList.toggle('paused', paused);
  const isRate = (rate) => Math.abs(status.rate - rate) < 0.01;
  kRates.forEach((rate, i) => rates[i].setAttribute('aria-pressed', String(isRate(rate))));
  const other = kRates.some(isRate) ? '' : `×${Math.round(status.rate * 100) / 100}`;
  if (find('#otherRate').textContent !== other) find('#otherRate').textContent = other;
}

// The first one stands there; a click on it shows the others.
function showWarnings([first = '', ...others]) {
  const warnings = find('#warnings');
  const summary = warnings.querySelector('summary');
  warnings.hidden = first === '';
  summary.textContent = others.length > 0 ? `${first} (and ${others.length} more)` : first;
  summary.classList.toggle('only', others.length === 0);
  warnings.querySelector('div').replaceChildren(...others.map((warning) => {
    const line = document.createElement('p');
    line.textContent = warning;
    return line;
  }));
}

function showHello(hello) {
  asked = null;
  desk.start(hello);
  listDisplays(find('#displays'), hello.displays);
  const names = find('#eventNames');
  names.replaceChildren(...hello.keyEvents.map((event) => {
    const option = document.createElement('option');
    option.value = String(event.number);
    option.textContent = event.meaning ? `${event.name} – ${event.meaning}` : event.name;
    return option;
  }));
  find('#situations').replaceChildren(...['Situation…', ...hello.situations].map((title, i) => {
    const option = document.createElement('option');
    option.value = i === 0 ? '' : String(i - 1);
    option.textContent = title;
    return option;
  }));
  showWarnings(hello.warnings);
}

find('#sendEvent').addEventListener('submit', (event) => {
  event.preventDefault();
  const form = new FormData(event.target);
  send({ t: 'event', number: Number(form.get('number')), value: Number(form.get('value')) });
});
// The menu names what it does, not where the aircraft is: it falls back to its first line.
find('#situations').addEventListener('change', (event) => {
  if (event.target.value !== '') send({ t: 'situation', v: Number(event.target.value) });
  event.target.value = '';
});
find('#place').addEventListener('submit', (event) => {
  event.preventDefault();
  const message = { t: 'set' };
  for (const [name, value] of new FormData(event.target)) {
    if (value !== '') message[name] = Number(value);
  }
  const half = ('latitude' in message) !== ('longitude' in message);
  const longitude = event.target.elements.longitude;
  longitude.setCustomValidity(half ? 'Latitude and longitude go together' : '');
  if (half) longitude.reportValidity();
  else send(message);
});
find('#place').addEventListener('input', (event) =>
  event.currentTarget.elements.longitude.setCustomValidity(''));

const kHandlers = {
  hello: showHello,
  status(status) {
    showStatus(status);
    showTrouble(find('#trouble'), status.trouble);
    document.body.classList.toggle('unheard', status.trouble !== '');
    showControls(status);
    profile.showAircraft(status);
  },
  window: (message) => desk.update(message),
  areas: (message) => desk.showAreas(message),
  texts: (message) => desk.showTexts(message),
  log: showLog,
  profile: profile.show,
  key() {},
  error: (message) => console.warn(`panel host: ${message.problem}`),
};

link = openLink({
  onMessage: (message) => kHandlers[message.t]?.(message),
  onPicture: (buffer) => desk.showPicture(buffer),
  onState(state, text) {
    const line = find('#link');
    line.dataset.state = state;
    if (line.textContent !== text) line.textContent = text;
    // Spoken when it changes, not at every try.
    const spoken = state === 'open' ? 'Connected' : state === 'lost' ? 'Link lost' : '';
    const live = find('#linkSpoken');
    if (spoken && live.textContent !== spoken) live.textContent = spoken;
    document.body.classList.toggle('lost', state !== 'open');
  },
});
