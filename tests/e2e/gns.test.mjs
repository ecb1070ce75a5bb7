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
${keys('FPL L1 =KBOS ENTER ENTER =BRONC ENTER ENTER =GDM ENTER ENTER =KJFK ENTER ENTER')}
${keys('NAV FPL L3 L3 L2 L2 L3 =#T608 ENTER')}
expect texts 4004 contains "SELECT ENDING WPT"
${keys('NEXT L2 L2 ENTER')}
${keys('NAV FPL NEXT L3 =MYPNT ENTER =N420000W0740000 ENTER')}
${keys('=JFK* ENTER L8 =360 ENTER =30 ENTER ENTER')}
${keys('NAV L10 ENTER')}
expect var avq_lnav_mode = 1
${keys('FPL L2 L2 HOLD')}
expect texts 4004 contains "AT GDM"
${keys('L9 =10 ENTER NAV')}
run-until texts 4004 contains HOLDING timeout 1h
run 5m
expect texts 4004 contains HOLDING
expect var avq_act_wpt_id = GDM
${keys('L1 ENTER')}
expect texts 4004 contains "EXIT HOLD"
run-until var avq_act_wpt_id = HURLY timeout 30m
${keys('DIRECT L5 ENTER')}
expect var avq_act_wpt_id = ALB
run-until var avq_act_wpt_id = MYPNT timeout 1h
run-until var avq_act_wpt_id = JFK timeout 1h
${keys('NAV FPL PREV L5 L5 ENTER')}
${keys('ENTER ENTER')}
expect texts 4004 contains "WPTS OF APPROACH"
expect texts 4004 lacks MISSED
${keys('L5 ENTER')}
expect texts 4004 contains APPR
${keys('DIRECT PREV L1 ENTER')}
expect texts 4004 contains "ACTIVE FPL"
run-until var avq_lnav_mode = 0 timeout 30m
`;

test('the unit alone flies a plan typed from nothing', { timeout: kFlightMs }, () => {
  const folder = mkdtempSync(path.join(os.tmpdir(), 'avq1-gns-'));
  writeFileSync(path.join(folder, 'flight.script'), script);
  const { status, stdout, stderr } = spawnSync(hostProgram,
    [...hostArguments, '--script', 'flight.script'], { cwd: folder, encoding: 'utf8' });
  rmSync(folder, { recursive: true, force: true });
  assert.equal(status, 0, stdout + stderr);
});
