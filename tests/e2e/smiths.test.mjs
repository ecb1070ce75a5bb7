// Flown with the Smiths-style unit alone, by its keys and what its screen says, on a panel that has
// only it and the buttons for lateral and vertical guidance. One flight is typed on the runway from
// nothing: departure, airway, arrival, approach, restrictions, holds, cruise and speeds. The other
// one takes a company route and changes it under way: direct-to, intercept, insert, delete, a gap
// closed, a fix's circle, holds, another destination, a plan saved and flown.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { cpSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { test } from 'node:test';

import { build, hostProgram, root } from './support.mjs';

const kFlightMs = 100000;
const panel = `[Window Titles]
Window00=Main Panel
[Window00]
size_mm=420,700
ident=0
visible=1
gauge00=avq1!SERVER, 0,0,1,1
gauge01=avq1!SMITHS_FMS, 2,0,415,640,demo-jet
gauge02=avq1!LNAV, 0,645,50,49
gauge03=avq1!VNAV, 60,645,50,49
`;

const label = (word) => {
  const line = /^([LR])(\d)$/.exec(word);
  if (line) return `"Line select ${line[2]} ${line[1] === 'L' ? 'left' : 'right'}"`;
  return `"${word.replace('_', ' ')}"`; // "DIR_INTC" has two lines
};
const click = (word) => `click SMITHS_FMS ${label(word)}\nrun 0.5s`;
const keys = (words) => words.split(' ').map((word) =>
  (word.startsWith('=') ? [...word.slice(1)].map(click).join('\n') : click(word))).join('\n');

// A script of the panel host, in which "> RTE =KJFK L1" presses keys by their labels, L1 to R6 the
// line keys, and types characters; "sees A | B" expects these texts on the screen, "misses" none.
const expand = (script) => script
  .replace(/^> (.*)$/gm, (_, words) => keys(words))
  .replace(/^(sees|misses) (.*)$/gm, (_, verb, texts) => texts.split(' | ').map((text) =>
    `expect texts ${verb === 'sees' ? 'contains' : 'lacks'} "${text}"`).join('\n'));

const fromNothing = `
frame-rate 4
situation runway
set fuel 16000
run 1s
sees IDENT | DEMO-JET
> R6 =KJFK L2 R2 R4
sees POS   INIT | N40:38:24 W73:46:48
> R6
sees - - - - - | ------
> =KJFK L1 =KJFK R1 =31L L3 NEXT_PAGE =MAGIO R1 =J106 L2 =LVZ R2
sees MAGIO | J106 | LVZ | ACTIVATE >
> DEP_ARR L1 L1 L2
sees KJFK DEPARTURES | DEEZZ5 | CANDR | 31L | <SEL>
> DEP_ARR R1 L3 NEXT_PAGE NEXT_PAGE R2
sees KJFK ARRIVALS | LENDY6 | ILS 22L
> LEGS =/11000 R4 NEXT_PAGE NEXT_PAGE
sees . .  R O U T E  D I S C O N T I N U I T Y  . | LGA
> DEL L5 =230/12000 R3
sees 230 / 12000 | ROSLY
misses T H E N
> HOLD NEXT_PAGE L2
sees H O L D   A T | CANDR
> L2 =250/L L3 =6 L5 =1300 R3
sees RTE        HOLD | 250 /  L  T U R N | 6.0 - N M | 1300Z
> INIT_REF L6 L3 =240 R1 =4.5 L4 =260/40 R2
sees FL240 | 4.5 | 260 /  40 | - - -
> R6
sees TAKEOFF  REF | 142 K T | P R E     F L T   S T A T U S
> RTE R6
expect var avq_fpln_wpt_cnt = 0
> EXEC LEGS
sees ACT | SKORR
expect var avq_fpln_wpt_cnt = 17
> INIT_REF R6
sees P R E     F L T   C O M P L E T E
event HEADING_BUG_SET 301
event AP_HDG_HOLD_ON
event AP_AIRSPEED_ON
event AP_VS_HOLD
click LNAV 25 24
click VNAV 25 24
event PARKING_BRAKES
> LEGS
run-until var avq_act_wpt_id = YNKEE timeout 10m
sees YNKEE
misses SKORR
run-until distance 40.48358 -73.84922 < 1.6 timeout 10m
> CLB
sees ECON  CLB | A T   DEEZZ | 280 / 0.53
> =300 L2
sees MOD | 300 / 0.57
> EXEC
run-until var avq_act_wpt_id = HEERO timeout 20m
expect var altitude > 10900
expect var altitude < 11100
run-until var altitude > 20000 timeout 20m
expect var airspeed > 297
expect var airspeed < 303
> CRZ =280 L1 L6
sees MOD | FL280 | 270 / 0.65 | < ECON
expect var altitude-target = 24000
> EXEC
run-until var altitude > 27900 timeout 20m
expect var avq_act_wpt_id = CANDR
run 4m
expect var airspeed > 268
expect var airspeed < 272
expect var avq_act_wpt_id = CANDR
run-until var lat < 40.8 timeout 10m
expect distance 40.97099 -74.95983 < 15
> HOLD
sees CANDR | 250 /  L  T U R N | EXIT HOLD >
> R6
sees ACT | RTE    LEGS
run-until var avq_act_wpt_id = MAGIO timeout 10m
> HOLD =LVZ L6
sees MOD | RTE        HOLD | LVZ
> EXEC HOLD L6 =STW L6
sees 2 / 2 | STW
> EXEC HOLD L6 =LENDY L6 EXEC HOLD
sees 1 / 3 | LVZ
> LEGS DEL L5
sees MOD | STW
> EXEC HOLD NEXT_PAGE
sees 2 / 2 | LENDY
> R6
run-until var avq_act_wpt_id = LVZ timeout 20m
run-until distance 41.27280 -75.68947 < 2 timeout 20m
run 4m
expect var avq_act_wpt_id = LVZ
> CRZ =300 L1 EXEC
run-until var altitude > 29900 timeout 5m
expect var avq_act_wpt_id = LVZ
> HOLD
sees 1 / 1 | LVZ
> R6
run-until var avq_act_wpt_id = JENNO timeout 10m
> HOLD
sees H O L D   A T
> PROG
sees LVZ | JENNO | HARTY | KJFK | T O   T / D
> NEXT_PAGE NEXT_PAGE =LENDY L1 =1300 R1
sees RTA  PROGRESS | LENDY | LATE
> DES R4
sees MOD | 300 / 0.59 | LENDY/12000
> EXEC CRZ R6
sees Pause at TOD (ON) >
run-until var paused = 1 timeout 1h
expect var altitude > 29800
expect var altitude-target = 12000
set paused 0
run-until var altitude < 27000 timeout 20m
expect var airspeed > 297
> DES
sees ACT | ECON  PATH  DES | A T   LENDY
run-until distance 40.91484 -74.13526 < 0.7 timeout 1h
expect var altitude > 11800
expect var altitude < 12200
expect var airspeed < 240
run-until var avq_act_wpt_id = ZALPO timeout 1h
run-until distance 40.63945 -73.77932 < 3.5 timeout 10m
expect var avq_xtk_err_dist < 1
run-until var avq_lnav_mode = 0 timeout 10m
expect distance 40.63945 -73.77932 < 4
expect var altitude < 1500
`;

const changed = `
frame-rate 4
event HEADING_BUG_SET 300
event AP_HDG_HOLD_ON
event AP_SPD_VAR_SET 280
event AP_AIRSPEED_ON
event AP_ALT_VAR_SET 20000
event AP_VS_VAR_SET 1800
event AP_VS_HOLD
run 1s
> RTE =NOPLAN L2
sees NOT IN DATABASE
> CLR CLR CLR CLR CLR CLR CLR =KBOSKBUF L2
sees KBOS | KBUF
> R6 EXEC NEXT_PAGE
sees ACT | BRONC | T608
click LNAV 25 24
run 30s
> DIR_INTC L5
sees MOD | GRISY | < ERASE
> L6
sees ACT | BRONC
> DIR_INTC =GRISY L6
run 30s
expect var avq_act_wpt_id = BRONC
> EXEC
sees ACT | GRISY
misses BRONC
run 2m
expect var avq_act_wpt_id = GRISY
expect var avq_xtk_err_dist < 0.5
run-until distance 42.69622 -72.89171 < 3.2 timeout 1h
run-until var avq_act_wpt_id = GRAVE timeout 1m
> DIR_INTC L3 =270 R6
sees MOD | 270 | < ERASE
> EXEC
expect var avq_act_wpt_id = ALB
expect var avq_xtk_err_dist > 10
run-until distance 42.74728 -73.80318 < 15 timeout 1h
expect var avq_xtk_err_dist < 0.3
expect var avq_act_wpt_trk > 269.5
expect var avq_act_wpt_trk < 271
> LEGS =DNY L2
sees MOD | DNY | T H E N
> =HNK L3
misses T H E N
> DEL L4
sees T H E N
run-until var avq_act_wpt_id = HNK timeout 10m
sees MOD | DNY | T H E N
misses ALB
> DEL L3
misses T H E N | BUFFY
> EXEC
expect var avq_act_wpt_id = DNY
run-until distance 42.17828 -74.95694 < 3.2 timeout 1h
expect var avq_xtk_err_dist < 1
run-until var avq_act_wpt_id = HNK timeout 1m
> FIX =CFB L1 =/20 L2
sees CFB | /20.0
> L2 LEGS L2
sees MOD | HNK | CFB01 | T H E N
> DEL L3 EXEC
sees ACT | CFB01 | CFB
run-until var avq_act_wpt_id = CFB01 timeout 1h
run-until distance 42.15749 -76.13647 < 24 timeout 1h
expect var avq_xtk_err_dist < 0.5
> HOLD R6
sees MOD | RTE        HOLD | WPT01
> =/L L3 =1.5 L4
sees L  T U R N | 1.5   M I N
> EXEC
run 5m
expect var avq_act_wpt_id = WPT01
expect distance 42.10 -75.65 < 16
> HOLD
sees ACT | WPT01
> R6
run-until var avq_act_wpt_id = CFB timeout 10m
> INIT_REF L6 =MINE R6
sees MINE.RTE Saved
> CLR RTE =KROC R1
sees MOD | KROC
expect var avq_act_wpt_id = CFB
> L6
sees ACT | KBUF
> =KROC R1 EXEC LEGS
sees ACT | CFB | WELTI
> DEP_ARR R1
sees KROC ARRIVALS | - N O N E -
> INIT_REF L6 R2
sees STORED FLIGHT PLANS | KPITKJFK | MINE
> L2
sees MOD | KPIT | KJFK
> L6
sees ACT | KBOS | KROC
> INIT_REF L6 R2 L3
sees MOD | KBOS | KBUF
expect var avq_act_wpt_id = CFB
> EXEC
expect var avq_act_wpt_id = BRONC
run 3m
expect var track > 60
expect var track < 120
`;

// Flies it in a copy of the demonstration's folder and hands back what that folder's file then holds.
function fly(script, file) {
  const folder = mkdtempSync(path.join(os.tmpdir(), 'avq1-smiths-'));
  try {
    const demo = path.join(folder, 'demo');
    cpSync(path.join(root, 'demo'), demo, { recursive: true });
    writeFileSync(path.join(demo, 'panel/panel.cfg'), panel);
    const settings = path.join(demo, 'avq/avq.cfg');
    writeFileSync(settings, readFileSync(settings, 'latin1')
      .replace('ArmPauseAtTod=0', 'ArmPauseAtTod=1'));
    writeFileSync(path.join(folder, 'flight.script'), expand(script));
    const { status, stdout, stderr } = spawnSync(hostProgram, ['--module',
      path.join(build, 'avq1.gau'), '--sim', 'demo', '--script', 'flight.script'],
    { cwd: folder, encoding: 'utf8' });
    assert.equal(status, 0, stdout + stderr);
    return file && readFileSync(path.join(demo, file), 'latin1');
  } finally {
    rmSync(folder, { recursive: true, force: true });
  }
}

test('a route typed on the runway is flown with all its procedures', { timeout: kFlightMs }, () => {
  fly(fromNothing);
});

test('a company route is changed in flight', { timeout: kFlightMs }, () => {
  const plan = fly(changed, 'avq/FlightPlans/MINE.RTE');
  const route = plan.trim().split(/\r?\n/).slice(1).map((line) => line.trim().split(/\s+/))
    .map(([ident, , , , , via]) => (via ? `${via} ${ident}` : ident)).join(' ');
  assert.equal(route, 'KBOS BRONC T608 GDM T608 HURLY T608 WARIC GRISY T608 GRAVE T608 WARUV ' +
    'DCT DIRECT ALB DNY HNK WPT01 CFB01 CFB V270 ULW V147 GEE V252 WELTI KBUF',
  'what is flown is saved, with what was put in and left out');
});
