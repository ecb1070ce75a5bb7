// Flown with the GNS-style unit alone, by its keys on a panel that starts with nothing. One flight is
// typed with an airway, a point of the pilot's own and an offset, flown with a hold, left by a
// direct-to, and ended at the nearest airport. The other one is stored, opened, changed and flown
// with a departure, an arrival, an approach, crossing altitudes and a hold that ends by itself.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { cpSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { test } from 'node:test';

import { build, hostProgram, root } from './support.mjs';

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

const typed = `
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

const stored = `
frame-rate 2
set position 40.64 -73.78
set heading-true 30
set altitude 3000
set speed 250
window 4004 open
event HEADING_BUG_SET 30
event AP_HDG_HOLD_ON
event AP_SPD_VAR_SET 250
event AP_AIRSPEED_ON
event AP_VS_HOLD
run 1s
${keys('FPL L1 =KJFK ENTER ENTER =PUT ENTER ENTER =SEY ENTER ENTER =KJFK ENTER ENTER')}
${keys('NAV FPL L9 ENTER')}
expect texts 4004 contains KJFKKJFK.RTE
${keys('L2 =LOOP ENTER FPL L8 ENTER')}
expect texts 4004 contains "FLIGHT PLAN 3"
${keys('L2 L2 =ORW ENTER ENTER L10 ENTER')}
expect texts 4004 contains "ACTIVE FPL"
expect var avq_fpln_wpt_cnt = 4
${keys('VNAV L5 ENTER L7 =23000 ENTER L8 =30 ENTER')}
${keys('FUEL L7 =5000 ENTER')}
expect texts 4004 contains 5000
${keys('NAV FPL L4 L4 ENTER')}
expect texts 4004 contains "RW04L?"
${keys('ENTER L4 ENTER L3 ENTER')}
expect texts 4004 contains "WAYPOINTS OF SID:"
${keys('L5 ENTER NAV FPL PREV L5 ENTER L5 ENTER L4 L4 ENTER L4 L4 ENTER')}
expect texts 4004 contains "WAYPOINTS OF STAR:"
${keys('L5 ENTER NAV FPL PREV L5 L5 ENTER L5 ENTER ENTER L3 ENTER')}
expect texts 4004 contains "WPTS OF APPROACH:"
expect texts 4004 contains CHANT
${keys('L5 ENTER')}
expect var avq_fpln_wpt_cnt = 14
${keys('NAV FPL L7 ENTER =*16000 ENTER FPL L7 L7 ENTER =*11000 ENTER')}
${keys('NAV FPL L4 HOLD L9 =10 ENTER L8 CLR ENTER L10 CLR ENTER')}
expect texts 4004 contains "AT SEY"
${keys('NAV L10 ENTER')}
click VNAV 25 24
run 5s
${keys('VNAV')}
expect texts 4004 contains "TO HFD"
run-until var avq_act_wpt_id = PUT timeout 1h
expect var altitude > 15800
expect var altitude < 16200
${keys('NAV')}
run-until texts 4004 contains "HOLD LEFT" timeout 1h
expect var avq_act_wpt_id = SEY
run-until var avq_act_wpt_id = PARCH timeout 30m
expect texts 4004 lacks HOLD
expect var altitude > 22800
run-until distance 40.68697 -73.34341 < 1 timeout 1h
expect var altitude > 10700
expect var altitude < 11300
run-until var avq_lnav_mode = 0 timeout 1h
expect distance 40.64 -73.78 < 4
expect var altitude < 1500
`;

// Flies it in a copy of the demonstration's folder and hands back what the plan's file then reads.
function fly(script, planFile) {
  const folder = mkdtempSync(path.join(os.tmpdir(), 'avq1-gns-'));
  try {
    cpSync(path.join(root, 'demo'), path.join(folder, 'demo'), { recursive: true });
    writeFileSync(path.join(folder, 'flight.script'), script);
    const { status, stdout, stderr } = spawnSync(hostProgram, ['--module',
      path.join(build, 'avq1.gau'), '--sim', 'demo', '--script', 'flight.script'],
    { cwd: folder, encoding: 'utf8' });
    assert.equal(status, 0, stdout + stderr);
    return planFile && readFileSync(path.join(folder, 'demo/avq/FlightPlans', planFile), 'latin1');
  } finally {
    rmSync(folder, { recursive: true, force: true });
  }
}

test('the unit alone flies a plan typed from nothing', { timeout: kFlightMs }, () => {
  fly(typed);
});

test('the unit alone flies a stored plan with its procedures', { timeout: kFlightMs }, () => {
  const plan = fly(stored, 'LOOP.RTE');
  assert.deepEqual(plan.split(/\r?\n/).map((line) => line.split(' ')[0])
    .filter((word) => /^[A-Z]{3,4}$/.test(word)), ['KJFK', 'PUT', 'SEY', 'KJFK'],
  'what is changed after opening stays out of the file');
});
