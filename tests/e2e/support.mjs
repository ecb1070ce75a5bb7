// Starts the panel host and a browser for the tests; a small WebSocket client over a raw socket.
import { spawn } from 'node:child_process';
import { randomBytes } from 'node:crypto';
import net from 'node:net';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

import { chromium } from 'playwright-core';

const here = path.dirname(fileURLToPath(import.meta.url));
export const root = path.resolve(here, '../..');
export const build = path.resolve(here, process.env.AVQ1_BUILD || '../../build/release');
export const hostProgram = path.join(build, 'avqpanel');
const moduleArguments = (from) => ['--module', path.join(from, 'avq1.gau'), '--sim'];
export const hostArguments = [...moduleArguments(build), path.join(root, 'demo')];
const kStartMs = 60000;

// Resolves when the host has printed its address.
export function startHost({ port = 0, extra = ['--cold'], sim = path.join(root, 'demo'),
  from = build } = {}) {
  const child = spawn(path.join(from, 'avqpanel'),
    [...moduleArguments(from), sim, '--port', String(port), ...extra],
    { stdio: ['ignore', 'pipe', 'pipe'] });
  let said = '';
  const ended = new Promise((resolve) => { child.on('exit', (code, signal) => resolve({ code, signal })); });
  const stop = async (signal = 'SIGTERM') => {
    if (child.exitCode === null && child.signalCode === null) child.kill(signal);
    return ended;
  };
  return new Promise((resolve, reject) => {
    const timer = setTimeout(() => { stop('SIGKILL'); reject(new Error(`no address: ${said}`)); }, kStartMs);
    const hear = (bytes) => {
      said += bytes;
      const found = /AVQ1 panel: (http:\/\/127\.0\.0\.1:(\d+)\/)\n/.exec(said);
      if (found) {
        clearTimeout(timer);
        resolve({ url: found[1], port: Number(found[2]), stop, ended, pid: child.pid,
          said: () => said });
      }
    };
    child.stdout.on('data', hear);
    child.stderr.on('data', hear);
    ended.then(({ code }) => { clearTimeout(timer); reject(new Error(`host ended (${code}): ${said}`)); });
  });
}

export function launchBrowser() {
  return chromium.launch({
    executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync'],
  });
}

export async function until(read, accept, what, timeoutMs = 20000) {
  const end = Date.now() + timeoutMs;
  for (;;) {
    const value = await read();
    if (accept(value)) return value;
    if (Date.now() > end) throw new Error(`${what}; last: ${JSON.stringify(value)}`);
    await new Promise((resolve) => setTimeout(resolve, 40));
  }
}

// Sends bytes, collects the answer until the other side closes or the time is up.
export function rawExchange(port, bytes, timeoutMs = 4000) {
  return new Promise((resolve) => {
    const chunks = [];
    const socket = net.connect(port, '127.0.0.1', () => socket.write(bytes));
    const finish = (closed) => {
      clearTimeout(timer);
      socket.destroy();
      resolve({ closed, text: Buffer.concat(chunks).toString('latin1') });
    };
    const timer = setTimeout(() => finish(false), timeoutMs);
    socket.on('data', (chunk) => chunks.push(chunk));
    socket.on('end', () => finish(true));
    socket.on('error', () => finish(true));
    socket.on('close', () => finish(true));
  });
}

export function upgradeRequest(port, headers = {}, target = '/socket') {
  const all = { Host: `127.0.0.1:${port}`, Connection: 'Upgrade', Upgrade: 'websocket',
    'Sec-WebSocket-Version': '13', 'Sec-WebSocket-Key': randomBytes(16).toString('base64'),
    ...headers };
  return `GET ${target} HTTP/1.1\r\n${Object.entries(all).map(([k, v]) => `${k}: ${v}\r\n`).join('')}\r\n`;
}

// One masked frame, as a browser sends them.
export function frame(payload, { opcode = 1, masked = true, final = true } = {}) {
  const body = Buffer.from(payload);
  const length = body.length < 126 ? Buffer.from([body.length])
    : Buffer.from([126, body.length >> 8, body.length & 255]);
  length[0] |= masked ? 0x80 : 0;
  const mask = masked ? randomBytes(4) : Buffer.alloc(0);
  const coded = masked ? body.map((byte, i) => byte ^ mask[i % 4]) : body;
  return Buffer.concat([Buffer.from([(final ? 0x80 : 0) | opcode]), length, mask, coded]);
}

export class RawClient {
  static async open(port, target = '/socket') {
    const client = new RawClient();
    client.messages = [];
    client.pictures = [];
    client.closed = false;
    client.received = 0; // bytes
    client.pending = Buffer.alloc(0);
    client.upgraded = false;
    client.socket = net.connect(port, '127.0.0.1');
    client.socket.on('data', (chunk) => client.take(chunk));
    for (const end of ['close', 'end', 'error']) client.socket.on(end, () => { client.closed = true; });
    client.socket.write(upgradeRequest(port, {}, target));
    await until(() => client.messages.length, (count) => count > 0, 'no hello');
    return client;
  }

  take(chunk) {
    this.received += chunk.length;
    this.pending = Buffer.concat([this.pending, chunk]);
    if (!this.upgraded) {
      const end = this.pending.indexOf('\r\n\r\n');
      if (end < 0) return;
      this.upgraded = true;
      this.pending = this.pending.subarray(end + 4);
    }
    for (;;) {
      if (this.pending.length < 2) return;
      let length = this.pending[1] & 127;
      let at = 2;
      if (length === 126 && this.pending.length >= 4) {
        length = this.pending.readUInt16BE(2);
        at = 4;
      } else if (length === 127 && this.pending.length >= 10) {
        length = Number(this.pending.readBigUInt64BE(2));
        at = 10;
      } else if (length > 125) return;
      if (this.pending.length < at + length) return;
      const opcode = this.pending[0] & 15;
      const body = this.pending.subarray(at, at + length);
      const heard = performance.now();
      if (opcode === 1) this.messages.push({ ...JSON.parse(body.toString()), heard });
      if (opcode === 2) {
        this.pictures.push({ window: body.readUInt16LE(2), bytes: length, heard });
        this.onPicture?.(this.pictures.at(-1));
      }
      if (opcode === 8) this.closed = true;
      this.pending = this.pending.subarray(at + length);
    }
  }

  send(message) { this.socket.write(frame(JSON.stringify(message))); }
  sendRaw(bytes) { this.socket.write(bytes); }
  last(kind) { return this.messages.filter((message) => message.t === kind).at(-1); }
  close() { this.socket.destroy(); }
}
