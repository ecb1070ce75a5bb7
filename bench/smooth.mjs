// What a watched page costs and how soon it shows a key, for one build or for several side by side.
//
//   node bench/smooth.mjs [--rounds N] [--seconds N] [--browser] BUILD_FOLDER...
//
// Every round starts the builds' panel hosts afresh with the demo flight and watches, in all of them
// at the same time, the attitude display and the EHSI's map, then the main panel, at nominal and at
// double size, acknowledging every picture at once. CPU time is the host process's own, from the
// kernel; pictures and bytes are counted on the socket. A machine that is busy otherwise lowers all of
// them alike. Latency is wall time: its percentiles are said with the machine's load. With --browser
// keys are pressed, and their effect seen, in headless Chromium.
import { readFileSync } from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { performance } from 'node:perf_hooks';
import { parseArgs } from 'node:util';

import { RawClient, launchBrowser, startHost } from '../tests/e2e/support.mjs';

const kDisplays = ['EFS50_EADI', 'EFS50_EHSI'];
const kMainPanel = 0;
const kWatched = [ // what, its displays, their scale
  ['unwatched', () => [], 1],
  ['attitude and map, nominal size', (client) => kDisplays.map((name) => displayOf(client, name)), 1],
  ['attitude and map, double size', (client) => kDisplays.map((name) => displayOf(client, name)), 2],
  ['main panel, nominal size', () => [kMainPanel], 1],
  ['main panel, double size', () => [kMainPanel], 2],
];
const kUnit = 'MCU';
const kUnitKeys = ['FPLN', 'TO']; // pages of one screen each, whichever came before
const kSettleMs = 2500;
const kPresses = 60;

const { values: options, positionals: builds } = parseArgs({ allowPositionals: true, options: {
  rounds: { type: 'string', default: '3' }, seconds: { type: 'string', default: '8' },
  browser: { type: 'boolean', default: false } } });
const sleep = (ms) => new Promise((resolve) => setTimeout(resolve, ms));

// Seconds on a core of all threads of a process.
function cpuSeconds(pid) {
  return Number(readFileSync(`/proc/${pid}/schedstat`, 'utf8').split(' ')[0]) / 1e9;
}

async function openHost(build) {
  return startHost({ extra: [], from: path.resolve(build) });
}

const displayOf = (client, name) => client.last('hello').displays.find((each) => each.name === name).w;

async function watchCost(host, displays, scale, seconds) {
  const client = await RawClient.open(host.port);
  const windows = displays(client);
  client.send({ t: 'watch', windows, scales: windows.map(() => scale) });
  client.onPicture = ({ window }) => client.send({ t: 'painted', w: window });
  await sleep(kSettleMs);
  const before = { cpu: cpuSeconds(host.pid), at: performance.now(), pictures: client.pictures.length,
    bytes: client.received };
  await sleep(seconds * 1000);
  const wallS = (performance.now() - before.at) / 1000;
  const result = { 'core, %': (cpuSeconds(host.pid) - before.cpu) / wallS * 100,
    'pictures/s': (client.pictures.length - before.pictures) / wallS / Math.max(1, windows.length),
    'kB/s': (client.received - before.bytes) / wallS / 1000 };
  client.close();
  await sleep(300);
  return result;
}

// The flight stands still, so that nothing but the key changes the unit's screen.
async function keyDelays(host) {
  const client = await RawClient.open(host.port);
  const unit = displayOf(client, kUnit);
  client.send({ t: 'pause', on: true });
  client.send({ t: 'watch', windows: [unit, ...kDisplays.map((name) => displayOf(client, name))] });
  client.onPicture = ({ window }) => client.send({ t: 'painted', w: window });
  await sleep(kSettleMs);
  const delays = { picture: [], text: [] };
  for (let i = 0; i < kPresses; ++i) {
    const from = { pictures: client.pictures.length, messages: client.messages.length,
      at: performance.now() };
    client.send({ t: 'press', gauge: kUnit, key: kUnitKeys[i % kUnitKeys.length] });
    await sleep(400 + Math.random() * 40);
    const picture = client.pictures.slice(from.pictures).find(({ window }) => window === unit);
    const text = client.messages.slice(from.messages).find(({ t, w }) => t === 'texts' && w === unit);
    if (picture) delays.picture.push(picture.heard - from.at);
    if (text) delays.text.push(text.heard - from.at);
  }
  client.send({ t: 'pause', on: false });
  client.close();
  await sleep(300);
  return delays;
}

// The same as a user has it: from the key on the page to the picture drawn and the text written.
async function browserDelays(host) {
  const browser = await launchBrowser();
  const page = await browser.newPage({ viewport: { width: 1400, height: 900 } });
  await page.goto(host.url);
  await page.waitForSelector('.window[data-ident="0"] .key[data-gauge="MCU"][data-label="FPLN"]');
  await page.click('#pause');
  await sleep(kSettleMs);
  const delays = await page.evaluate(async ({ keys, presses }) => {
    const main = document.querySelector('.window[data-ident="0"]');
    const body = main.querySelector('.body');
    const found = { picture: [], text: [] };
    for (let i = 0; i < presses; ++i) {
      const key = main.querySelector(`.key[data-gauge="MCU"][data-label="${keys[i % keys.length]}"]`);
      const text = main.querySelector('.texts [data-gauge="MCU"]');
      const at = performance.now();
      const watch = (target, how, list) => {
        const observer = new MutationObserver(() => {
          list.push(performance.now() - at);
          observer.disconnect();
        });
        observer.observe(target, how);
        return observer;
      };
      const observers = [watch(body, { attributeFilter: ['data-pictures'] }, found.picture),
        watch(text, { childList: true, subtree: true, characterData: true }, found.text)];
      key.dispatchEvent(new KeyboardEvent('keydown', { key: 'Enter', bubbles: true }));
      await new Promise((resolve) => setTimeout(resolve, 60));
      key.dispatchEvent(new KeyboardEvent('keyup', { key: 'Enter', bubbles: true }));
      await new Promise((resolve) => setTimeout(resolve, 340 + Math.random() * 40));
      for (const observer of observers) observer.disconnect();
    }
    return found;
  }, { keys: kUnitKeys, presses: kPresses });
  await browser.close();
  return delays;
}

function quantile(list, share) {
  const sorted = [...list].sort((a, b) => a - b);
  return sorted.length ? sorted[Math.min(sorted.length - 1, Math.floor(sorted.length * share))] : NaN;
}

const results = new Map(); // "build, what" to a list
function note(build, what, value) {
  const key = `${build}\t${what}`;
  if (!results.has(key)) results.set(key, []);
  results.get(key).push(...[value].flat());
}

const loads = [];
for (let round = 0; round < Number(options.rounds); ++round) {
  const hosts = await Promise.all(builds.map(openHost));
  const ofEach = async (measure, tell) => {
    loads.push(os.loadavg()[0]);
    const found = await Promise.all(hosts.map(measure));
    found.forEach((result, i) => tell(builds[i], result));
  };
  for (const [name, displays, scale] of kWatched) {
    await ofEach((host) => watchCost(host, displays, scale, Number(options.seconds)), (build, cost) => {
      for (const [what, value] of Object.entries(cost)) note(build, `${name}, ${what}`, value);
    });
  }
  const tellDelays = (where) => (build, delays) => {
    for (const kind of ['picture', 'text']) note(build, `key to ${kind}${where}, ms`, delays[kind]);
  };
  await ofEach(keyDelays, tellDelays(''));
  for (const i of options.browser ? hosts.keys() : []) { // two browsers would hold up one another
    tellDelays(' in the browser')(builds[i], await browserDelays(hosts[i]));
  }
  await Promise.all(hosts.map((host) => host.stop()));
}
for (const [key, list] of results) {
  const [build, what] = key.split('\t');
  const isDelay = what.endsWith(', ms');
  console.log(`${build}: ${what}: median ${quantile(list, 0.5).toFixed(1)}` +
    (isDelay ? `, p95 ${quantile(list, 0.95).toFixed(1)}` : `, ${Math.min(...list).toFixed(1)} to ${
      Math.max(...list).toFixed(1)}`) + `, ${list.length} ${isDelay ? 'keys' : 'rounds'}`);
}
console.log(`load ${Math.min(...loads).toFixed(1)} to ${Math.max(...loads).toFixed(1)} on ${os.cpus().length} cores`);
