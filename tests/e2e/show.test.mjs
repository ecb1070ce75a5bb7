// Displays on screens of their own, in a real browser: sharp, alone, and nobody else's business.
import assert from 'node:assert/strict';
import dgram from 'node:dgram';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';

import { launchBrowser, startHost, until } from './support.mjs';

let host;
let browser;
before(async () => {
  host = await startHost();
  browser = await launchBrowser();
});
after(async () => {
  await browser?.close();
  await host?.stop();
});

async function openShow(path, options = {}) {
  const context = await browser.newContext({ viewport: { width: 900, height: 700 }, ...options });
  const page = await context.newPage();
  const problems = [];
  page.on('pageerror', (error) => problems.push(String(error)));
  page.on('console', (line) => { if (line.type() === 'error') problems.push(line.text()); });
  await page.goto(host.url + path);
  return { page, problems, close: () => context.close() };
}

const shown = (page, i = 0) => page.locator('.body').nth(i).getAttribute('data-pictures').then(Number);
const colours = (page) => page.locator('canvas').first().evaluate((canvas) => {
  const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
  return new Set(new Uint32Array(data.buffer)).size;
});

test('each display fills the browser, by gauge, by the number or the title of its window', async () => {
  const rows = [['EFS50_EADI', 384, 371], ['efs50_eadi', 384, 371], ['4012', 415, 640],
    ['flight management computer', 415, 640], ['4012/', 415, 640]];
  for (const [name, width, height] of rows) {
    const { page, problems, close } = await openShow(`show/${encodeURI(name)}`);
    await until(() => shown(page), (count) => count > 0, `a picture of ${name}`);
    const box = await page.locator('canvas').boundingBox();
    const fits = Math.min(900 / width, 700 / height);
    assert.ok(Math.abs(box.width - width * fits) < 2 && Math.abs(box.height - height * fits) < 2, name);
    assert.ok(await colours(page) > 20);
    assert.deepEqual(problems, []);
    await close();
  }
  for (const name of ['NOSUCH', '%ff']) {
    const { page, close } = await openShow(`show/${name}`);
    await page.waitForSelector(`text=There is no display "${name}"`);
    await close();
  }
});

test('several stand side by side, and a screen gets the pixels it has', async () => {
  const { page, close } = await openShow('show/EFS50_EADI+EFS50_EHSI', { deviceScaleFactor: 2 });
  await until(() => shown(page, 1), (count) => count > 0, 'the second picture');
  const [one, two] = [await page.locator('canvas').nth(0).boundingBox(),
    await page.locator('canvas').nth(1).boundingBox()];
  assert.ok(one.x + one.width <= two.x && Math.abs(one.y - two.y) < 1);
  const pixels = await page.locator('canvas').first().evaluate((canvas) => canvas.width);
  assert.ok(pixels >= one.width * 2 * 0.87, `${pixels} pixels for ${one.width}`);
  await close();
});

test('the page draws the very picture that the host has', async () => {
  const { page, close } = await openShow('', { viewport: { width: 1400, height: 900 } });
  await until(() => shown(page), (count) => count > 3, 'pictures');
  const panel = page.locator('.window[data-ident="0"]');
  for (const label of ['FPLN', 'TO']) await panel.locator(`[data-gauge="MCU"][data-label="${label}"]`).click();
  await page.click('#pause');
  const different = () => panel.locator('canvas').evaluate(async (canvas) => {
    const { width, height } = canvas;
    const image = await createImageBitmap(await (await fetch('/window/0.png')).blob());
    const context = new OffscreenCanvas(width, height).getContext('2d');
    context.drawImage(image, 0, 0);
    const words = (from) => new Uint32Array(from.getImageData(0, 0, width, height).data.buffer);
    const host = words(context);
    return image.width !== width ? -1
      : words(canvas.getContext('2d')).reduce((sum, word, i) => sum + (word !== host[i] ? 1 : 0), 0);
  });
  await until(different, (count) => count === 0, 'every pixel');
  await page.click('#pause');
  await close();
});

test('a display of its own leaves the other screens as they are', async () => {
  const desk = await openShow('');
  // Of the panel itself: its pop-up has an attitude display too.
  const kAttitude = '.window[data-ident="0"] .texts [data-gauge="EFS50_EADI"]';
  const attitude = () => desk.page.evaluate((selector) =>
    document.querySelector(selector)?.textContent ?? '', kAttitude);
  await until(attitude, (text) => text.length > 10, 'the panel shows its attitude display');
  const { page, close } = await openShow('show/4005'); // its pop-up window, on its own
  await until(() => shown(page), (count) => count > 0, 'a picture');
  assert.ok((await attitude()).length > 10, 'not blanked');
  assert.equal(await desk.page.locator('#windowList [aria-pressed="true"]').count(), 1);
  // The module's own pop-up blanks the panel's display and not the one on its own.
  await desk.page.locator('#windowList button', { hasText: 'Attitude Display' }).click();
  await until(attitude, (text) => text.length < 10, 'the panel makes room for the pop-up');
  await new Promise((resolve) => setTimeout(resolve, 300));
  assert.ok(await colours(page) > 20);
  await desk.page.locator('#windowList button', { hasText: 'Attitude Display' }).click();
  await close();
  await desk.close();
});

test('keys work, and a unit takes the keyboard without being asked', async () => {
  const { page, problems, close } = await openShow('show/MCU', { hasTouch: true });
  const text = () => page.locator('.texts').innerText();
  const first = await until(text, (now) => now.length > 0, 'the unit writes');
  assert.equal(await page.getAttribute('[data-label="FPLN"]', 'aria-label'), 'FPLN, Compact Unit');
  await page.tap('[data-label="FPLN"]');
  await until(text, (now) => now !== first, 'another page of the unit');
  await page.waitForFunction(() => document.body.classList.contains('typing'));
  const focused = () => page.evaluate(() => document.activeElement.dataset.label);
  const before = await focused();
  await page.keyboard.press('Tab');
  assert.notEqual(await focused(), before, 'Tab stays the browser\'s');
  const display = await openShow('show/EFS50_EADI');
  await until(() => shown(display.page), (count) => count > 0, 'a picture');
  assert.equal(await display.page.evaluate(() => document.body.classList.contains('typing')), false);
  assert.deepEqual(problems, []);
  await display.close();
  await close();
});

test('the list names everything, opens several, and the page can be kept as an app', async () => {
  const { page, close } = await openShow('');
  await page.click('#displayList summary');
  const names = await page.$$eval('#displays a:not(.together)', (links) =>
    links.map((link) => link.getAttribute('href')));
  for (const name of ['/show/4012', '/show/EFS50_EHSI', '/show/GNSXLS', '/show/0']) {
    assert.ok(names.includes(name), name);
  }
  for (const label of ['Mark Attitude Display', 'Mark EHSI']) await page.getByLabel(label, { exact: true }).last().check();
  assert.equal(await page.getAttribute('.together', 'href'), '/show/EFS50_EADI+EFS50_EHSI');
  await page.getByLabel('Mark MCU', { exact: false }).last().check();
  await page.getByLabel('Mark MCU', { exact: false }).last().uncheck();
  assert.equal(await page.getAttribute('.together', 'href'), '/show/EFS50_EADI+EFS50_EHSI');
  await page.click('.together');
  await until(() => shown(page, 1), (count) => count > 0, 'both');
  const app = await page.evaluate(async () => {
    const link = document.querySelector('link[rel="manifest"]');
    const answer = await fetch(link.href);
    const manifest = await answer.json();
    const icons = await Promise.all(manifest.icons.map((icon) => fetch(icon.src)));
    return { start: new URL(manifest.start_url, link.href).pathname, display: manifest.display,
      icons: icons.map((icon) => icon.status) };
  });
  assert.deepEqual(app, { start: '/show/EFS50_EADI+EFS50_EHSI/', display: 'fullscreen',
    icons: [200, 200, 200] });
  await page.click('#more');
  await page.click('#full');
  await page.waitForFunction(() => document.fullscreenElement !== null);
  await close();
});

test('brightness, a dim page and larger text are kept', async () => {
  const { page, close } = await openShow('show/EFS50_EADI');
  await page.click('#more');
  await page.locator('#brightness').fill('40');
  await page.click('#night');
  await page.click('#large');
  await page.reload();
  const look = () => page.evaluate(() => ({
    bright: getComputedStyle(document.querySelector('canvas')).filter,
    night: document.documentElement.classList.contains('night'),
    text: getComputedStyle(document.documentElement).fontSize }));
  await page.waitForSelector('canvas');
  assert.deepEqual(await look(), { bright: 'brightness(0.4)', night: true, text: '20px' });
  await close();
});

test('a camera that reads the code pairs, and the page asked for is shown', async () => {
  const state = mkdtempSync(path.join(os.tmpdir(), 'avq1-state-'));
  process.env.XDG_STATE_HOME = state; // pairings of this test only
  const network = await startHost({ extra: ['--cold', '--listen', '0.0.0.0'] });
  try {
    await until(network.said, (text) => text.includes('To look only'), 'the codes');
    const code = /Pairing code: ([\d-]+)/.exec(network.said())[1].replace('-', '');
    const context = await browser.newContext({ viewport: { width: 800, height: 600 } });
    const page = await context.newPage();
    await page.goto(`${network.url}show/EFS50_EADI`);
    await page.waitForSelector('#code');
    await page.click('#large'); // the page that asks writes as large as the others
    await page.fill('#code', '00000000');
    await page.press('#code', 'Enter');
    await page.waitForSelector('text=That is not a code');
    await page.waitForFunction(() => // once its script runs
      getComputedStyle(document.documentElement).fontSize === '20px');
    await page.goto(`${network.url}show/EFS50_EADI`);
    await page.goto(`${network.url}show/EFS50_EADI#${code}`); // the camera's, while the page is open
    await page.waitForSelector('canvas');
    assert.equal(new URL(page.url()).pathname, '/show/EFS50_EADI');
    await context.close();
  } finally {
    await network.stop();
    delete process.env.XDG_STATE_HOME;
    rmSync(state, { recursive: true });
  }
});

test('every page says whether FlightGear is heard', async () => {
  const folder = mkdtempSync(path.join(os.tmpdir(), 'avq1-live-'));
  process.env.XDG_DATA_HOME = folder;
  const kPort = 5710;
  const live = await startHost({ extra: ['--cold', '--flightgear', '--flightgear-port', String(kPort)] });
  const socket = dgram.createSocket('udp4');
  let telling = 0;
  try {
    const protocol = readFileSync(path.join(folder, 'avqpanel/flightgear/Protocol/avq1-state.xml'), 'utf8');
    const opening = /AVQ1-state-\w+/.exec(protocol)[0];
    const values = '\t1'.repeat(protocol.match(/<chunk>/g).length - 1);
    const tell = () => socket.send(`${opening} ${performance.now()}${values}\n`, kPort, '127.0.0.1');
    const pages = [];
    for (const address of ['', 'show/EFS50_EADI']) {
      const context = await browser.newContext();
      pages.push(await context.newPage());
      await pages.at(-1).goto(live.url + address);
    }
    const says = async (text) => {
      for (const page of pages) {
        await until(() => page.locator('#trouble').evaluate((line) => (line.hidden ? '' : line.textContent)),
          (now) => now === text, `"${text}" at ${page.url()}`);
      }
    };
    await says('Waiting for FlightGear');
    assert.notEqual(await pages[0].locator('.readings').evaluate((list) => getComputedStyle(list).opacity),
      '1', 'figures that nobody told are not shown as if they were');
    telling = setInterval(tell, 30);
    await says('');
    clearInterval(telling);
    await says('Link to FlightGear lost');
    await Promise.all(pages.map((page) => page.context().close()));
  } finally {
    clearInterval(telling);
    socket.close();
    await live.stop();
    rmSync(folder, { recursive: true, force: true });
    delete process.env.XDG_DATA_HOME;
  }
});
