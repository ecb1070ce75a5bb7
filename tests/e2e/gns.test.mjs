// Flown with the GNS-style unit alone, by its keys on a panel that starts with nothing: a plan is
// typed with an airway, a point of the pilot's own and an offset, flown with a hold, left by a
// direct-to, and ended at the nearest airport.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { test } from 'node:test';

import { hostArguments, hostProgram } from './support.mjs';

const kFlightMs = 280000;

const label = (word) => {
  if (word === '#') return '443 236'; // its label would begin a comment of the script
  const line = /^L(\d+)$/.exec(word);
  if (!line) return word;
  const number = Number(line[1]);
  return `"Line select ${(number - 1) % 5 + 1} ${number <= 5 ? 'left' : 'right'}"`;
};
const click = (word) => `click GNSXLS@4004 ${label(word)}\nrun 0.5s`;
// "L1 =KBOS ENTER": keys by their labels, L1 to L10, and characters one after the other.
const keys = (words) => words.split(' ').map((word) =>
  (word.startsWith('=') ? [...word.slice(1)].map(click).join('\n') : click(word))).join('\n');

const script = `
frame-rate 4
window 4004 open
event HEADING_BUG_SET 290
event AP_HDG_HOLD_ON
event AP_SPD_VAR_SET 280
event AP_AIRSPEED_ON
event AP_ALT_VAR_SET 20000
event AP_VS_VAR_SET 1800
event AP_VS_HOLD
run 1s
${keys('FPL L1 =KBOS ENTER ENTER =BRONC ENTER ENTER =GDM ENTER ENTER =KBUF ENTER ENTER')}
${keys('NAV FPL L3 L3 L2 L2 L3 =#T608 ENTER')}
expect texts 4004 contains "SELECT ENDING WPT"
texts 4004
`;

test('the unit alone flies a plan typed from nothing', { timeout: kFlightMs }, () => {
  const folder = mkdtempSync(path.join(os.tmpdir(), 'avq1-gns-'));
  writeFileSync(path.join(folder, 'flight.script'), script);
  const { status, stdout, stderr } = spawnSync(hostProgram,
    [...hostArguments, '--script', 'flight.script'], { cwd: folder, encoding: 'utf8' });
  rmSync(folder, { recursive: true, force: true });
  assert.equal(status, 0, stdout + stderr);
});
