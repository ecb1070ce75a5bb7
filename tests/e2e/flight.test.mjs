// The demo plan flown without a browser: loaded by clicks on the compact unit, LNAV by its button,
// to the last waypoint. Positions are judged by this file's own great circles, not the module's.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';

import { hostArguments, hostProgram, root } from './support.mjs';

const kEarthRadiusNm = 3437.7468;
const kSampleS = 0.25;
const kHeadingBugSet = 66042;
const kCaptureNm = 0.2; // closer than this once, and a leg counts as captured
const kAfterCaptureNm = 1.0; // the overshoot of the sharpest turn, 84 degrees at 440 kt
const kSettledNm = 0.45; // on the second half of each leg: steering leans on the error against wind
const kFlightMs = 280000;

// The last waypoint is passed LNAV off; the timeout fails a flight that never arrives.
const script = (trace, more) => `
frame-rate 4
event HEADING_BUG_SET 300
event AP_HDG_HOLD_ON
event AP_SPD_VAR_SET 280
event AP_AIRSPEED_ON
event AP_ALT_VAR_SET 32000
event AP_VS_VAR_SET 1800
event AP_VS_HOLD
run 1s
click MCU FPLN
run 1s
expect texts contains KBOSKBUF.RTE
click MCU ENTER
run 1s
expect var avq_lnav_mode = 0
trace ${trace} every ${kSampleS}s avq_act_wpt_id avq_act_wpt_dist avq_lnav_mode heading-bug
click LNAV 25 24
run 1s
expect var avq_lnav_mode = 1
run-until var avq_lnav_mode = 0 timeout 2h
run 30s
expect var avq_lnav_mode = 0
${more}
`;

function fly(folder, name, more = '') {
  writeFileSync(path.join(folder, `${name}.script`), script(`${name}.trace`, more));
  const child = spawn(hostProgram, [...hostArguments, '--script', `${name}.script`],
    { cwd: folder, stdio: ['ignore', 'pipe', 'pipe'], timeout: kFlightMs });
  let said = '';
  child.stdout.on('data', (bytes) => { said += bytes; });
  child.stderr.on('data', (bytes) => { said += bytes; });
  return new Promise((resolve) => {
    child.on('exit', (code) => resolve({ code, said,
      trace: code === null ? '' : readFileSync(path.join(folder, `${name}.trace`), 'utf8') }));
  });
}

const radians = (degrees) => degrees * Math.PI / 180;

function distanceNm(a, b) {
  const h = Math.sin((b.lat - a.lat) / 2) ** 2 +
    Math.cos(a.lat) * Math.cos(b.lat) * Math.sin((b.lon - a.lon) / 2) ** 2;
  return 2 * Math.asin(Math.sqrt(h)) * kEarthRadiusNm;
}

function course(a, b) {
  return Math.atan2(Math.sin(b.lon - a.lon) * Math.cos(b.lat),
    Math.cos(a.lat) * Math.sin(b.lat) - Math.sin(a.lat) * Math.cos(b.lat) * Math.cos(b.lon - a.lon));
}

function crossTrackNm(from, to, at) {
  return Math.asin(Math.sin(distanceNm(from, at) / kEarthRadiusNm) *
    Math.sin(course(from, at) - course(from, to))) * kEarthRadiusNm;
}

function readPlan() {
  const text = readFileSync(path.join(root, 'demo/avq/FlightPlans/KBOSKBUF.RTE'), 'latin1');
  return text.slice(text.indexOf('[FlightPlan]')).split(/\r?\n/).slice(1)
    .map((line) => line.trim().split(/\s+/)).filter((words) => words.length >= 3)
    .map(([ident, lat, lon]) => ({ ident, lat: radians(Number(lat)), lon: radians(Number(lon)) }));
}

function readTrace(text) {
  return text.trim().split('\n').slice(1).map((line) => {
    const [time, lat, lon, altitude, heading, gs, ident, shownNm, lnav, bug] = line.split(' ');
    return { time: Number(time), lat: radians(Number(lat)), lon: radians(Number(lon)),
      altitude: Number(altitude), heading: Number(heading), gs: Number(gs), ident,
      shownNm: Number(shownNm), lnav: Number(lnav), bug: Number(bug) };
  });
}

function waypointChangeNm() {
  const text = readFileSync(path.join(root, 'demo/avq/avq.cfg'), 'latin1');
  return Number(/^WptChgDist=([\d.]+)/m.exec(text)[1]);
}

// Samples with LNAV on, one list for each active waypoint in the order flown.
function legsOf(samples) {
  const legs = [];
  for (const sample of samples.filter(({ lnav }) => lnav === 1)) {
    if (legs.at(-1)?.ident !== sample.ident) legs.push({ ident: sample.ident, samples: [] });
    legs.at(-1).samples.push(sample);
  }
  return legs;
}

let folder;
let first;
let samples;
let legs;
const plan = readPlan();
before(async () => {
  folder = mkdtempSync(path.join(os.tmpdir(), 'avq1-flight-'));
  first = await fly(folder, 'first');
  assert.equal(first.code, 0, first.said);
  samples = readTrace(first.trace);
  legs = legsOf(samples);
}, { timeout: 2 * kFlightMs });
after(() => rmSync(folder, { recursive: true, force: true }));

test('every waypoint of the plan becomes the active one, in order', () => {
  assert.ok(plan.length >= 11);
  assert.deepEqual(legs.map(({ ident }) => ident), plan.slice(1).map(({ ident }) => ident));
  for (const { ident, samples: flown } of legs) {
    const point = plan.find((waypoint) => waypoint.ident === ident);
    for (const at of [flown[2], flown.at(-1)]) {
      assert.ok(Math.abs(distanceNm(at, point) - at.shownNm) < 0.2,
        `${ident}: exported ${at.shownNm} nm, is ${distanceNm(at, point)} nm`);
    }
  }
});

test('each leg is captured and then held', () => {
  legs.forEach(({ ident, samples: flown }, i) => {
    // The first leg leads straight from where the plan was taken up.
    const from = i === 0 ? flown[0] : plan[i];
    const errors = flown.map((at) => Math.abs(crossTrackNm(from, plan[i + 1], at)));
    const captured = errors.findIndex((error) => error < kCaptureNm);
    assert.ok(captured >= 0 && captured < flown.length / 2, `${ident} is captured in its first half`);
    const worst = Math.max(...errors.slice(captured));
    assert.ok(worst < kAfterCaptureNm, `${ident}: ${worst} nm off after capture`);
    const settled = Math.max(...errors.slice(flown.length >> 1));
    assert.ok(settled < kSettledNm, `${ident}: ${settled} nm off on its second half`);
  });
});

test('the next waypoint becomes active at the distance set', () => {
  const changeNm = waypointChangeNm();
  assert.ok(changeNm >= 1);
  for (let i = 1; i < legs.length; ++i) {
    const before = legs[i - 1].samples.at(-1);
    const now = legs[i].samples[0];
    const secondNm = before.gs / 3600; // the module looks about once a second
    const nearest = distanceNm(now, plan[i]);
    assert.ok(nearest <= changeNm + 0.02, `${plan[i].ident} left already at ${nearest} nm`);
    const furthest = distanceNm(before, plan[i]);
    assert.ok(furthest >= changeNm - 1.25 * secondNm, `${plan[i].ident} kept until ${furthest} nm`);
  }
});

test('LNAV goes off at the last waypoint and stays off', () => {
  const off = samples.findIndex((sample, i) => i > 0 && samples[i - 1].lnav === 1 &&
    sample.lnav === 0);
  assert.ok(off > 0);
  assert.ok(samples.slice(off).every(({ lnav }) => lnav === 0));
  assert.ok(samples.slice(off).every(({ bug }) => bug === samples[off].bug), 'no steering after');
  const left = distanceNm(samples[off], plan.at(-1));
  const changeNm = waypointChangeNm();
  assert.ok(left <= changeNm + 0.02 && left > changeNm - 0.2, `off at ${left} nm`);
});

test('heading events come only with a new value, and a second flight is the same', async () => {
  const engaged = samples.findIndex(({ lnav }) => lnav === 1);
  // The pilot's own setting before LNAV is the first value.
  const changes = samples.slice(1).filter((sample, i) => sample.bug !== samples[i].bug).length;
  assert.ok(engaged >= 0 && changes > plan.length, `${changes} changes`);
  // A value may come and go between two samples, once in a while.
  const again = await fly(folder, 'second', `expect events ${kHeadingBugSet} >= ${changes}
expect events ${kHeadingBugSet} <= ${Math.ceil(changes * 1.02)}`);
  assert.equal(again.code, 0, again.said);
  assert.equal(again.trace, first.trace);
}, { timeout: 2 * kFlightMs });
