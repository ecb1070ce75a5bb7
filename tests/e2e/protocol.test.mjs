// What a careless or hostile peer sends closes its own connection and disturbs nobody else.
import assert from 'node:assert/strict';
import net from 'node:net';
import { after, before, test } from 'node:test';

import { RawClient, frame, rawExchange, startHost, until, upgradeRequest } from './support.mjs';

let host;
let witness; // a well-behaved client that must never notice
before(async () => {
  host = await startHost();
  witness = await RawClient.open(host.port);
});
after(async () => {
  witness?.close();
  await host?.stop();
});

async function othersLive() {
  const heard = witness.messages.length;
  await until(() => witness.messages.length, (count) => count > heard, 'the witness hears on', 5000);
  assert.equal(witness.closed, false);
  const health = await rawExchange(host.port,
    `GET /healthz HTTP/1.1\r\nHost: localhost:${host.port}\r\nConnection: close\r\n\r\n`);
  assert.match(health.text, /^HTTP\/1\.1 200 /);
}

const act = (message) => rawExchange(host.port, request('POST /api/1/do HTTP/1.1',
  `Content-Length: ${JSON.stringify(message).length}\r\n`) + JSON.stringify(message));

const request = (line, headers = '') =>
  `${line}\r\nHost: 127.0.0.1:${host.port}\r\nConnection: close\r\n${headers}\r\n`;

test('each request gets its answer', async () => {
  const rows = [
    [() => request('GET / HTTP/1.1'), 200, /<title>AVQ1 panel<\/title>/],
    [() => request('HEAD / HTTP/1.1'), 200, /\r\n\r\n$/],
    [() => request('GET /app.js?x=1 HTTP/1.1'), 200, /text\/javascript/],
    [() => request('GET /window/0.png HTTP/1.1'), 200, /\r\n\r\n\x89PNG/],
    [() => request('GET /window/999.png HTTP/1.1'), 404, /no such window/],
    [() => request('GET /../etc/passwd HTTP/1.1'), 404, /no such page/],
    [() => request('GET /pair.html HTTP/1.1'), 404, /no such page/],
    [() => request('POST / HTTP/1.1', 'Content-Length: 2\r\n') + 'ab', 405, /Allow: GET, HEAD/],
    [() => request('DELETE /window/0.png HTTP/1.1'), 405, /./],
    [() => request('GET /socket HTTP/1.1'), 426, /./],
    [() => request(`GET /${'a'.repeat(400)} HTTP/1.1`), 414, /./],
    [() => request('GET / HTTP/1.1', `X: ${'a'.repeat(9000)}\r\n`), 431, /./],
    [() => request('POST / HTTP/1.1', 'Content-Length: 999999\r\n'), 413, /./],
    [() => 'GET / HTTP/1.1\r\nConnection: close\r\n\r\n', 421, /./],
    [() => request('GET / HTTP/1.1', `Host: 127.0.0.1:${host.port}\r\n`), 400, /more than one Host/],
    [() => request('GET /show/EFS50_EHSI HTTP/1.1'), 200, /<title>AVQ1 display<\/title>/],
    [() => request('GET /show/X/app.webmanifest HTTP/1.1'), 200, /application\/manifest\+json/],
    [() => request('GET /show.html HTTP/1.1'), 404, /no such page/],
    [() => 'GET / HTTP/1.1\r\nHost: evil.example\r\nConnection: close\r\n\r\n', 421, /./],
    [() => `GET / HTTP/1.1\r\nHost: 127.0.0.1:${host.port + 1}\r\n\r\n`, 421, /./],
    [() => upgradeRequest(host.port, { Origin: 'http://evil.example' }), 403, /./],
    [() => upgradeRequest(host.port, { Host: 'evil.example' }), 421, /./],
  ];
  for (const [bytes, status, pattern] of rows) {
    const answer = await rawExchange(host.port, bytes());
    assert.match(answer.text, new RegExp(`^HTTP/1\\.1 ${status} `), bytes().slice(0, 60));
    assert.match(answer.text, pattern, bytes().slice(0, 60));
    assert.ok(answer.closed, `closed after ${bytes().slice(0, 60)}`);
  }
  const page = await rawExchange(host.port, request('GET / HTTP/1.1'));
  assert.match(page.text, /Content-Security-Policy: default-src 'none'; script-src 'self'/);
  assert.match(page.text, /X-Content-Type-Options: nosniff/);
  await othersLive();
});

test('a body that waits to be asked for is asked for', async () => {
  const socket = net.connect(host.port, '127.0.0.1');
  let said = '';
  socket.on('data', (bytes) => { said += bytes; });
  socket.write(request('POST /api/1/do HTTP/1.1', 'Content-Length: 10\r\nExpect: 100-continue\r\n'));
  await until(() => said, (text) => text.startsWith('HTTP/1.1 100 '), 'go on');
  socket.write('{"t":"up"}');
  await until(() => said, (text) => /HTTP\/1\.1 200 [^]*"done"/.test(text), 'the answer');
  socket.destroy();
});

test('a picture asked for is the present one', async () => {
  const picture = async () => (await rawExchange(host.port, request('GET /window/0.png HTTP/1.1'))).text;
  await act({ t: 'up' });
  const first = await picture();
  await act({ t: 'press', gauge: 'MCU', key: 'FPLN' });
  await act({ t: 'press', gauge: 'MCU', key: 'LEGS' });
  await until(picture, (now) => now.slice(-5000) !== first.slice(-5000), 'another picture, unwatched');
});

test('malformed HTTP closes its connection and nothing else', async () => {
  const noise = Buffer.from(Array.from({ length: 3000 }, (_, i) => (i * 131 + 7) & 255));
  const rows = ['\r\n\r\n\r\n', 'GET\r\n\r\n', 'GET / HTTP/9.9\r\n\r\n', 'G\0T / HTTP/1.1\r\n\r\n', noise,
    'GET / HTTP/1.1\r\nHost: a\r\nContent-Length: -5\r\n\r\n',
    'GET / HTTP/1.1\r\nHost: a\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n',
    `GET / HTTP/1.1\r\n${'a'.repeat(20000)}`, '\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03'];
  for (const bytes of rows) {
    const answer = await rawExchange(host.port, bytes);
    assert.ok(answer.closed, `closed: ${JSON.stringify(bytes.toString('latin1').slice(0, 40))}`);
    assert.doesNotMatch(answer.text, /^HTTP\/1\.1 200/);
  }
  await othersLive();
});

test('a bad message is answered with an error and ends that socket only', async () => {
  const rows = ['', 'x', '[]', 'null', '{"t":"up"', '{"t":"fly"}', '{"t":7}', '{"t":"up","more":1}',
    '{"t":"down","w":0,"x":1}', '{"t":"down","w":0,"x":"1","y":2}', '{"t":"down","w":-1,"x":1,"y":1}',
    '{"t":"down","w":0,"x":1e999,"y":1}', '{"t":"down","w":0.5,"x":1,"y":1}', '{"t":"rate","v":NaN}',
    '{"t":"rate","v":1e9}', '{"t":"key","scan":256,"vk":0,"down":true}',
    '{"t":"key","scan":1,"vk":0,"down":1}', '{"t":"watch","windows":[0,"1"]}',
    '{"t":"watch","windows":{}}', '{"t":"down","w":900,"x":1,"y":1}',
    '{"t":"set","latitude":91,"longitude":0}', '{"t":"event","number":1,"value":-1}',
    '['.repeat(4000)];
  for (const text of rows) {
    const client = await RawClient.open(host.port);
    client.sendRaw(frame(text));
    await until(() => client.closed, (closed) => closed, `closed after ${text.slice(0, 50)}`, 5000);
    assert.ok(client.last('error'), `told after ${text.slice(0, 50)}`);
    client.close();
  }
  await othersLive();
});

test('broken frames end that socket only', async () => {
  const rows = [frame('{"t":"up"}', { masked: false }), frame('hi', { opcode: 2 }),
    frame('hi', { opcode: 5 }), frame('x'.repeat(5000)), frame(Buffer.from([0xff, 0xfe, 0x80])),
    frame('x', { opcode: 9, final: false }), frame('{"t":', { opcode: 0 }),
    Buffer.from([0x81, 0xff, 0x7f, 255, 255, 255, 255, 255, 255, 255, 1, 2, 3, 4])];
  for (const bytes of rows) {
    const client = await RawClient.open(host.port);
    client.sendRaw(bytes);
    await until(() => client.closed, (closed) => closed, `closed after ${bytes.toString('hex', 0, 12)}`, 5000);
    client.close();
  }
  await othersLive();
});

test('too many messages end that socket only', async () => {
  const client = await RawClient.open(host.port);
  const up = frame('{"t":"up"}');
  client.sendRaw(Buffer.concat(Array.from({ length: 5000 }, () => up)));
  await until(() => client.closed, (closed) => closed, 'closed', 5000);
  await othersLive();
});

test('more connections than allowed are closed, the rest goes on', async () => {
  const sockets = Array.from({ length: 100 }, () => net.connect(host.port, '127.0.0.1'));
  let closed = 0;
  for (const socket of sockets) {
    socket.on('error', () => {});
    socket.on('close', () => { ++closed; });
    socket.resume();
  }
  await until(() => closed, (count) => count >= 36, 'those beyond the limit are closed', 5000);
  await othersLive(); // those that are silent make room
  for (const socket of sockets) socket.destroy();
  await new Promise((resolve) => setTimeout(resolve, 300));
  await othersLive();
});

test('a browser that shows nothing gets two pictures per window and skips frames', async () => {
  const client = await RawClient.open(host.port);
  await new Promise((resolve) => setTimeout(resolve, 400));
  assert.equal(client.pictures.length, 0, 'nothing without watching');
  client.send({ t: 'watch', windows: [0] });
  await until(() => client.pictures.length, (count) => count === 2, 'the first pictures');
  await new Promise((resolve) => setTimeout(resolve, 1200));
  assert.equal(client.pictures.length, 2, 'no third one before the first is shown');
  client.send({ t: 'painted', w: 0 });
  await until(() => client.pictures.length, (count) => count === 3, 'then the next one');
  const began = Date.now();
  const first = client.pictures.length;
  while (Date.now() - began < 2000) {
    client.send({ t: 'painted', w: 0 });
    await new Promise((resolve) => setTimeout(resolve, 10));
  }
  const perSecond = (client.pictures.length - first) / 2;
  assert.ok(perSecond > 1 && perSecond <= 26, `${perSecond} pictures a second`);
  client.close();
});
