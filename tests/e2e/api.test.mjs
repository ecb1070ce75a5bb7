// The interface for hardware: gauges and keys by name, over HTTP and the socket; its example client.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import http from 'node:http';
import os from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';

import { RawClient, root, startHost, until } from './support.mjs';

let host;
const state = mkdtempSync(path.join(os.tmpdir(), 'avq1-state-'));
process.env.XDG_STATE_HOME = state; // pairings of these tests only
before(async () => { host = await startHost(); });
after(async () => {
  await host?.stop();
  rmSync(state, { recursive: true });
});

function ask(target, { body, headers = {}, port = host.port } = {}) {
  return new Promise((resolve, reject) => {
    const request = http.request({ host: '127.0.0.1', port, path: target,
      method: body === undefined ? 'GET' : 'POST', headers }, (answer) => {
      let text = '';
      answer.on('data', (chunk) => { text += chunk; });
      answer.on('end', () => resolve({ status: answer.statusCode,
        json: text.startsWith('{') ? JSON.parse(text) : text }));
    });
    request.on('error', reject);
    request.end(body);
  });
}
const act = (message, more = {}) => ask('/api/1/do', { body: JSON.stringify(message), ...more });

test('plain requests list, read and act', async () => {
  const { json: list } = await ask('/api/1/gauges');
  assert.equal(list.api, 1);
  assert.ok(list.gauges.some(({ gauge, title }) => gauge === 'MCU' && title === 'Compact Unit'));
  const { json: unit } = await ask('/api/1/gauges/mcu');
  assert.ok(unit.keys.some(({ key }) => key === 'FPLN'));
  assert.equal(unit.lamps.LNAV, false);
  assert.ok(unit.lines.length > 0);
  assert.deepEqual((await act({ t: 'press', gauge: 'MCU', key: 'FPLN' })).json, { t: 'done' });
  await until(async () => (await ask('/api/1/gauges/MCU')).json.lines.join(), (text) =>
    text !== unit.lines.join(), 'another page of the unit');
  assert.equal((await act({ t: 'radio', nav1: 110.9, adf: 344, course1: 44 })).status, 200);
  const { json: status } = await ask('/api/1/status');
  assert.equal(status.nav1.frequency, 110.9);
  assert.equal(status.nav1.course, 44);
  assert.equal(Math.round(status.adf.frequency * 1000), 344);
  assert.equal((await ask('/api/1/variables/45')).json.value, 44);
  assert.equal((await ask('/api/1/variables/avq_lnav_mode')).json.value, 0);
  const wrong = [['/api/1/gauges/NONE', 404], ['/api/1/variables/none', 404], ['/api/1/none', 404], ['/api/1/', 404],
    ['/api/2/gauges', 404]];
  for (const [target, code] of wrong) assert.equal((await ask(target)).status, code, target);
  for (const [message, code] of [[{ t: 'press', gauge: 'MCU', key: 'NONE' }, 409],
    [{ t: 'press', gauge: 'NONE', key: 'A' }, 409], [{ t: 'fly' }, 400], [{ t: 'watch', windows: [0] }, 400],
    [{ t: 'turn', gauge: 'MCU', key: 'FPLN', steps: 51 }, 400], [{ t: 'hold', gauge: 'MCU', key: 'TO' }, 400]]) {
    const answer = await act(message);
    assert.equal(answer.status, code, JSON.stringify(message));
    assert.ok(answer.json.problem, JSON.stringify(message));
  }
  assert.equal((await act({ t: 'up' }, { headers: { Origin: 'http://evil.example' } })).status, 403);
});

test('a knob turns by steps and what is subscribed to is told when it changes', async () => {
  const client = await RawClient.open(host.port);
  assert.equal(client.last('hello').api, 1);
  client.send({ t: 'subscribe', gauges: ['LNAV', 'MCU'], variables: ['#107', 'avq_lnav_mode', 'none'],
    events: true });
  const values = () => Object.assign({}, ...client.messages.filter(({ t }) => t === 'values')
    .map((message) => message.values));
  await until(() => values()['#107'], (value) => value !== undefined, 'the heading bug');
  await until(() => client.last('gauge'), (gauge) => gauge !== undefined, 'a gauge');
  const bug = values()['#107'];
  client.send({ t: 'turn', gauge: 'EFS50_EHSI_CNTR', key: 'HDG', steps: 3 });
  await until(() => values()['#107'], (value) => value !== bug, 'the bug moves');
  await until(() => client.last('events'), (events) => events !== undefined, 'its events');
  const told = client.messages.length;
  client.send({ t: 'turn', gauge: 'EFS50_EHSI_CNTR', key: 'NOPE', steps: 3 });
  await until(() => client.last('error'), (error) => error !== undefined, 'a problem is told');
  assert.equal(client.closed, false);
  assert.ok(client.messages.length > told);
  client.close();
});

test('who may only look touches nothing', async () => {
  const before = (await ask('/api/1/variables/107')).json.value;
  const refused = await ask('/api/1/do?look', { body: JSON.stringify({ t: 'event', number: 65879, value: 0 }) });
  assert.equal(refused.status, 403);
  const client = await RawClient.open(host.port, '/socket?look');
  client.send({ t: 'turn', gauge: 'EFS50_EHSI_CNTR', key: 'HDG', steps: 3 });
  client.send({ t: 'pause', on: true });
  client.send({ t: 'watch', windows: [0] });
  await until(() => client.pictures.length, (count) => count > 0, 'it may look');
  assert.equal(client.last('error').problem, 'look only');
  assert.equal((await ask('/api/1/status')).json.paused, false);
  assert.equal((await ask('/api/1/variables/107')).json.value, before);
  client.close();
});

test('on a network a program pairs once, also for the next start', async () => {
  const open = (extra = []) => startHost({ extra: ['--cold', '--listen', '0.0.0.0', ...extra] });
  let network = await open();
  await until(network.said, (text) => text.includes('\u2588'), 'the codes, one as a QR code');
  const [, code] = /Pairing code: ([\d-]+)/.exec(network.said());
  const [, look] = /To look only: ([\d-]+)/.exec(network.said());
  const { port } = network;
  assert.equal((await ask('/api/1/gauges', { port })).status, 401);
  assert.equal((await ask('/api/1/pair', { port, body: '0000' })).status, 403);
  const touch = (await ask('/api/1/pair', { port, body: code })).json;
  const looks = (await ask('/api/1/pair', { port, body: look })).json;
  assert.deepEqual([touch.access, looks.access], ['touch', 'look']);
  await network.stop();
  network = await open();
  const as = ({ token }) => ({ port: network.port, headers: { Authorization: `Bearer ${token}` } });
  assert.equal((await act({ t: 'up' }, as(touch))).status, 200);
  assert.equal((await act({ t: 'up' }, as(looks))).status, 403);
  assert.equal((await ask('/api/1/gauges', as(looks))).status, 200);
  await network.stop();
  network = await open(['--forget']);
  assert.equal((await ask('/api/1/gauges', as(touch))).status, 401);
  await network.stop();
});

test('the example client turns a knob and prints the lights', async () => {
  const child = spawn('python3', [path.join(root, 'examples/annunciators.py'), '--port', String(host.port),
    '--knob', 'EFS50_EHSI_CNTR:HDG', '--lights', 'LNAV,MCU'], { stdio: ['pipe', 'pipe', 'inherit'] });
  let said = '';
  child.stdout.on('data', (chunk) => { said += chunk; });
  try {
    await until(() => said, (text) => /^LNAV LNAV off$/m.test(text) && /^MCU HOLD off$/m.test(text), 'the lights');
    child.stdin.write('2\n');
    await until(() => said, (text) => /^event HEADING_BUG_/m.test(text), 'the events of its steps');
    child.stdin.write('NOPE\n');
    await until(() => said, (text) => /^problem: /m.test(text), 'a key that is not there');
  } finally {
    child.kill();
  }
});
