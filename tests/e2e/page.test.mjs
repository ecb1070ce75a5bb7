// The page in a real browser: keys, screens, several browsers at once, phone, keyboard, restarts.
import assert from 'node:assert/strict';
import { cpSync, mkdtempSync, rmSync } from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';

import { launchBrowser, root, startHost, until } from './support.mjs';

const kMain = '.window[data-ident="0"]';
const unitKey = (label) => `${kMain} .key[data-gauge="MCU"][data-label="${label}"]`;
let host;
let browser;

before(async () => {
  host = await startHost();
  browser = await launchBrowser();
});
after(async () => {
  await browser?.close();
  const end = await host?.stop();
  assert.deepEqual(end, { code: 0, signal: null }, 'a terminated host ends cleanly');
});

async function openPage(options = {}, url = host.url) {
  const context = await browser.newContext({ viewport: { width: 1400, height: 900 }, ...options });
  const page = await context.newPage();
  const problems = [];
  page.on('pageerror', (error) => problems.push(String(error)));
  page.on('console', (line) => { if (line.type() === 'error') problems.push(line.text()); });
  await page.goto(url);
  await page.waitForSelector(unitKey('FPLN'));
  return { page, problems, close: () => context.close() };
}

const unitText = (page) => page.locator(`${kMain} .texts [data-gauge="MCU"]`).innerText();

async function clickUntilChanged(page, act) {
  const before = await until(() => unitText(page), (text) => text.length > 0, 'the unit shows text');
  await act();
  return until(() => unitText(page), (text) => text !== before, 'the unit changes its screen');
}

test('a key clicked in one browser changes the screen in every browser', async () => {
  const [one, two] = [await openPage(), await openPage()];
  await clickUntilChanged(one.page, () => one.page.click(unitKey('FPLN')));
  const shown = await clickUntilChanged(one.page, () => one.page.click(unitKey('TO')));
  await until(() => unitText(two.page), (text) => text === shown, 'the second browser shows it too');
  assert.deepEqual([...one.problems, ...two.problems], []);
  await one.close();
  await two.close();
});

test('pictures arrive, differ within and go on coming', async () => {
  const { page, close } = await openPage();
  const pictures = () => page.locator(`${kMain} .body`).getAttribute('data-pictures').then(Number);
  const first = await until(pictures, (count) => count > 0, 'a first picture');
  await until(pictures, (count) => count > first + 3, 'more pictures while flying');
  const colours = await page.locator(`${kMain} canvas`).evaluate((canvas) => {
    const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
    return new Set(new Uint32Array(data.buffer)).size;
  });
  assert.ok(colours > 50, `${colours} colours`);
  await close();
});

test('a key works from the keyboard alone and has a name', async () => {
  const { page, close } = await openPage();
  await page.keyboard.press('Tab');
  assert.equal(await page.evaluate(() => document.activeElement.textContent), 'Skip to the panel');
  await page.keyboard.press('Enter');
  for (let i = 0; i < 200; ++i) {
    await page.keyboard.press('Tab');
    if (await page.evaluate(() => document.activeElement.dataset.label === 'FPLN')) break;
  }
  const name = await page.evaluate(() => document.activeElement.getAttribute('aria-label'));
  assert.equal(name, 'FPLN, Compact Unit');
  await clickUntilChanged(page, () => page.keyboard.press('Enter'));
  await page.focus(unitKey('TO'));
  await clickUntilChanged(page, () => page.keyboard.press(' '));
  const unnamed = await page.$$eval('button', (buttons) =>
    buttons.filter((b) => !(b.getAttribute('aria-label') || b.textContent).trim()).length);
  assert.equal(unnamed, 0);
  await close();
});

test('arrow keys turn a knob both ways', async () => {
  const { page, close } = await openPage();
  const bug = () => page.locator('[data-lamp="HDG"] b').innerText().then(parseFloat);
  await page.focus(`${kMain} .key[data-gauge="EFS50_EHSI_CNTR"][data-label="HDG"]`);
  await until(bug, (value) => value > 0, 'a heading bug');
  const turned = (to, from) => (to - from + 540) % 360 - 180;
  // LNAV turns the same bug now and then: a press that it undoes is made again.
  const turn = async (key, sign) => {
    for (let tries = 5; ; --tries) {
      const from = await bug();
      await page.keyboard.press(key);
      try {
        return await until(bug, (value) => sign * turned(value, from) > 0, `turned by ${key}`, 3000);
      } catch (error) {
        if (tries === 0) throw error;
      }
    }
  };
  await turn('ArrowRight', 1);
  await turn('ArrowLeft', -1);
  await close();
});

test('pop-ups open from the list and from the panel and close', async () => {
  const { page, close } = await openPage();
  const entry = page.locator('#windowList button', { hasText: 'Compact Unit' });
  const popUp = page.locator('.window[data-ident="4001"]');
  for (const openIt of [() => entry.click(),
    () => page.locator(`${kMain} .key[data-gauge="MCU_OPEN"]`).first().click()]) {
    await openIt();
    await popUp.waitFor({ state: 'visible' });
    assert.equal(await entry.getAttribute('aria-pressed'), 'true');
    await until(() => popUp.locator('.body').getAttribute('data-pictures').then(Number), (n) => n > 0, 'its picture');
    await popUp.locator('.close').click();
    await popUp.waitFor({ state: 'hidden' });
  }
  await close();
});

test('a phone gets one column without sideways scrolling, and taps work', async () => {
  const { page, close } = await openPage({ viewport: { width: 390, height: 844 }, hasTouch: true,
    isMobile: true });
  const fits = () => page.evaluate(() => window.innerWidth === 390 &&
    document.documentElement.scrollWidth <= document.documentElement.clientWidth);
  assert.ok(await fits());
  const box = await page.locator(unitKey('FPLN')).boundingBox();
  assert.ok(box.width >= 40 && box.height >= 18, `a key of ${box.width} by ${box.height} pixels`);
  await page.locator(unitKey('FPLN')).scrollIntoViewIfNeeded();
  await clickUntilChanged(page, () => page.tap(unitKey('FPLN')));
  await clickUntilChanged(page, () => page.tap(unitKey('TO')));
  await page.goto(`${host.url}show/4012`); // whose keys lie at its edges
  await page.waitForSelector('.key[data-label="EXEC"]');
  assert.ok(await fits());
  await close();
});

test('pause, rate, events and placing act on the flight', async () => {
  const { page, close } = await openPage();
  const reading = (name) => page.locator(`[data-reading="${name}"]`).innerText();
  await page.click('text=×4');
  await page.waitForSelector('#rates button:nth-child(3)[aria-pressed="true"]');
  await page.click('#pause');
  await page.waitForSelector('#pause[aria-pressed="true"]');
  await new Promise((resolve) => setTimeout(resolve, 600));
  const still = await reading('Flight time');
  await new Promise((resolve) => setTimeout(resolve, 1500));
  assert.equal(await reading('Flight time'), still);
  await page.click('#pause');
  await until(() => reading('Flight time'), (text) => text !== still, 'time goes on');
  await page.click('#rates button:first-child');

  const bug = await page.$eval('#eventNames', (select) =>
    [...select.options].find((option) => option.textContent.startsWith('HEADING_BUG_SET')).value);
  await page.selectOption('#eventNames', bug);
  await page.fill('#sendEvent [name=value]', '123');
  await page.press('#sendEvent button', 'Enter');
  await until(() => page.locator('#events tbody tr').first().innerText(),
    (text) => /HEADING_BUG_SET\s+123/.test(text), 'the event is listed');
  await until(() => page.locator('[data-lamp="HDG"]').innerText(), (text) => text.includes('123'),
    'the bug moves');

  await page.click('text=Place the aircraft');
  await page.fill('#place [name=latitude]', '43.5');
  await page.fill('#place [name=longitude]', '-72.25');
  // By keyboard: the tables above grow as events come in, and may move the button.
  await page.press('#place button', 'Enter');
  await until(() => reading('Position'), (text) => /N43°(29|30).*W072°1[456]/.test(text), 'moved');

  await page.selectOption('#situations', { label: 'On the runway' });
  await until(() => reading('Position'), (text) => /N40°3[78].*W073°4[67]/.test(text), 'on the runway');
  assert.equal(await page.inputValue('#situations'), '');
  await close();
});

test('the flight log and the vertical profile are drawn, told in words and fit a phone', async () => {
  const sim = mkdtempSync(path.join(os.tmpdir(), 'avq1-log-'));
  cpSync(path.join(root, 'demo'), sim, { recursive: true });
  const parked = await startHost({ extra: ['--cold', '--ground'], sim });
  try {
    const { page, problems, close } = await openPage({ viewport: { width: 390, height: 844 } }, parked.url);
    assert.equal(await page.locator('#log tbody tr').count(), 0);
    const press = (label) => page.locator(unitKey(label)).press('Enter');
    await clickUntilChanged(page, () => press('FPLN'));
    await clickUntilChanged(page, () => press('ENTER'));
    await until(() => page.locator('#log tbody tr').count(), (count) => count > 0, 'a first record');
    assert.match(await page.locator('#log tbody tr').last().innerText(), /^00:00:00\s+InitLoad/);
    assert.match(await page.innerText('#logSummary'), /^KBOS-KBUF: .* ft, .* kt over ground; highest/);
    await until(() => page.innerText('#profileSummary'), (text) => /^Climb, VNAV is off: level at .* towards 32 000 ft\. Next: T\/C in /
      .test(text), 'the profile in words');
    await page.waitForSelector('#profilePlot polyline');
    assert.match(await page.locator('#profile tbody').innerText(), /KBUF/);
    assert.match(await page.getAttribute('#profilePlot', 'aria-label'), /Climb, VNAV is off/);
    assert.ok(await page.evaluate(() =>
      document.documentElement.scrollWidth <= document.documentElement.clientWidth));
    assert.deepEqual(problems, []);
    const again = await openPage({}, parked.url); // who comes later is told all there is
    await until(() => again.page.locator('#log tbody tr').count(), (count) => count > 0, 'the log');
    await again.close();
    await close();
  } finally {
    await parked.stop();
    rmSync(sim, { recursive: true });
  }
});

test('missing navigation data is said on the page and on the console', async () => {
  const sim = mkdtempSync(path.join(os.tmpdir(), 'avq1-bare-'));
  cpSync(path.join(root, 'demo/panel'), path.join(sim, 'panel'), { recursive: true });
  const bare = await startHost({ sim });
  try {
    const { page, close } = await openPage({}, bare.url);
    await until(() => page.innerText('#warnings'), (text) => text.startsWith('no navigation data'), 'on the page');
    const top = (what) => page.locator(what).boundingBox().then(({ y }) => y);
    assert.ok(await top('#warnings') < await top('#desk'), 'above the panel, where it is seen');
    assert.match(bare.said(), /^avqpanel: no navigation data: the simulator folder has no avq\/Navdata/m);
    await close();
  } finally {
    await bare.stop();
    rmSync(sim, { recursive: true });
  }
});

test('Pause clicked twice goes on, and an unusual rate is shown', async () => {
  const { page, close } = await openPage();
  const reading = () => page.locator('[data-reading="Flight time"]').innerText();
  await page.dblclick('#pause');
  const then = await reading();
  await until(reading, (text) => text !== then, 'time goes on');
  assert.equal(await page.getAttribute('#pause', 'aria-pressed'), 'false');
  const port = new URL(host.url).port;
  await fetch(`http://127.0.0.1:${port}/api/1/do`, { method: 'POST', body: '{"t":"rate","v":3}' });
  await until(() => page.innerText('#otherRate'), (text) => text === '×3', 'the rate');
  await page.click('#rates button:first-child');
  await until(() => page.locator('#otherRate').textContent(), (text) => text === '', 'a usual one');
  await close();
});

test('a pop-up stays within reach, hands the focus on, and its keys take a finger', async () => {
  const { page, close } = await openPage();
  const entry = page.locator('#windowList button', { hasText: 'Compact Unit' });
  const popUp = page.locator('.window[data-ident="4001"]');
  await entry.click();
  await popUp.waitFor({ state: 'visible' });
  const bar = await popUp.locator('.bar').boundingBox();
  await page.mouse.move(bar.x + 40, bar.y + 10);
  await page.mouse.down();
  await page.mouse.move(-3000, -3000, { steps: 4 });
  await page.mouse.up();
  const desk = await page.locator('#desk').boundingBox();
  const moved = await popUp.locator('.bar').boundingBox();
  assert.ok(moved.x + moved.width >= desk.x + 60 && moved.y >= desk.y - 1, JSON.stringify(moved));
  await popUp.locator('.close').focus();
  await page.keyboard.press('Enter');
  await popUp.waitFor({ state: 'hidden' });
  assert.equal(await page.evaluate(() => document.activeElement.textContent), 'Compact Unit');
  await close();
  const phone = await openPage({ viewport: { width: 390, height: 844 }, hasTouch: true, isMobile: true });
  const small = await phone.page.$$eval('.key', (keys) => keys.map((key) => key.getBoundingClientRect())
    .filter(({ width, height }) => width > 0 && (width < 23.9 || height < 23.9)).length);
  assert.equal(small, 0);
  await phone.close();
});

test('the keyboard reaches the panel only when asked for', async () => {
  const { page, close } = await openPage();
  const sent = [];
  await page.evaluate(() => { document.body.tabIndex = -1; document.body.focus(); });
  page.context().newCDPSession(page).then(async (session) => {
    await session.send('Network.enable');
    session.on('Network.webSocketFrameSent', ({ response }) => sent.push(response.payloadData));
  });
  await new Promise((resolve) => setTimeout(resolve, 300));
  const keys = () => sent.filter((text) => text.includes('"key"'));
  await page.keyboard.press('a');
  assert.equal(keys().length, 0);
  await page.click('#keyboard');
  await page.keyboard.press('a');
  await until(keys, (list) => list.length === 2, 'press and release are sent');
  assert.deepEqual(JSON.parse(keys()[0]), { t: 'key', scan: 30, vk: 65, down: true });
  const releases = () => sent.filter((text) => text.includes('"keysup"')).length;
  assert.equal(releases(), 0);
  await page.keyboard.press('Shift+Escape');
  await page.waitForSelector('#keyboard[aria-pressed="false"]');
  await until(releases, (count) => count === 1, 'what is held is let go');
  await close();
});

test('the page says when the link is lost and comes back by itself', async () => {
  const { page, close } = await openPage();
  const { port } = host;
  await host.stop('SIGKILL');
  await page.waitForSelector('#link[data-state="lost"]');
  assert.match(await page.locator('#link').innerText(), /lost/i);
  host = await startHost({ port });
  await page.waitForSelector('#link[data-state="open"]', { timeout: 30000 });
  const first = Number(await page.locator(`${kMain} .body`).getAttribute('data-pictures'));
  await until(() => page.locator(`${kMain} .body`).getAttribute('data-pictures').then(Number),
    (count) => count > first, 'pictures again');
  await clickUntilChanged(page, () => page.click(unitKey('FPLN')));
  await close();
});
