// The demo plan flown with vertical guidance: restrictions typed on the compact unit are met. Judged
// by this file's own great circles against the host's altitudes, not the module's.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';

import { hostArguments, hostProgram, root } from './support.mjs';

const kEarthRadiusNm = 3437.7468;
const kVerticalSpeedSet = 66036;
const kFlightMs = 280000;
const kRestrictions = [
  { ident: 'GDM', number: 2, thousands: 16, climb: true },
  { ident: 'GEE', number: 13, thousands: 17 },
  { ident: 'WELTI', number: 14, thousands: 14 },
];

const cross = ({ number, thousands }) => ['click MCU CROSS', 'run 1s',
  ...Array(thousands).fill('click MCU UP'), ...Array(number - 1).fill('click MCU NEXT'), 'run 1s',
  'click MCU ENTER', 'run 1s'].join('\n');

const script = (tailwind) => `
frame-rate 4
set wind ${tailwind} 40
event HEADING_BUG_SET 300
event AP_HDG_HOLD_ON
event AP_AIRSPEED_ON
run 1s
click MCU FPLN
run 1s
click MCU ENTER
run 1s
${kRestrictions.map(cross).join('\n')}
click LNAV 25 24
click VNAV 25 24
trace flight.trace every 1s avq_act_wpt_id avq_vnav_mode vs-target altitude-target airspeed-target
run-until var avq_lnav_mode = 0 timeout 2h
expect var avq_vnav_mode = 1
expect events ${kVerticalSpeedSet} < 200
`;

const radians = (degrees) => degrees * Math.PI / 180;

function distanceNm(a, b) {
  const h = Math.sin((b.lat - a.lat) / 2) ** 2 +
    Math.cos(a.lat) * Math.cos(b.lat) * Math.sin((b.lon - a.lon) / 2) ** 2;
  return 2 * Math.asin(Math.sqrt(h)) * kEarthRadiusNm;
}

function fixes() {
  const text = readFileSync(path.join(root, 'demo/avq/FlightPlans/KBOSKBUF.RTE'), 'latin1');
  return new Map(text.slice(text.indexOf('[FlightPlan]')).split(/\r?\n/).slice(1)
    .map((line) => line.trim().split(/\s+/)).filter((words) => words.length >= 3)
    .map(([ident, lat, lon]) => [ident, { lat: radians(Number(lat)), lon: radians(Number(lon)) }]));
}

function readTrace(file) {
  return readFileSync(file, 'utf8').trim().split('\n').slice(1).map((line) => {
    const [time, lat, lon, altitude, , , ident, vnav, fpm, target, knots] = line.split(' ');
    return { time: Number(time), lat: radians(Number(lat)), lon: radians(Number(lon)),
      altitude: Number(altitude), ident, vnav: Number(vnav), fpm: Number(fpm),
      target: Number(target), knots: Number(knots) };
  });
}

let folder;
before(() => { folder = mkdtempSync(path.join(os.tmpdir(), 'avq1-vnav-')); });
after(() => rmSync(folder, { recursive: true, force: true }));

for (const [wind, tailwind] of [['headwind', 280], ['tailwind', 100]]) {
  test(`restrictions are met in a ${wind}`, { timeout: kFlightMs }, () => {
    writeFileSync(path.join(folder, 'flight.script'), script(tailwind));
    const { status, stdout, stderr } = spawnSync(hostProgram,
      [...hostArguments, '--script', 'flight.script'], { cwd: folder, encoding: 'utf8' });
    assert.equal(status, 0, stdout + stderr);
    const samples = readTrace(path.join(folder, 'flight.trace'));
    const at = fixes();
    for (const { ident, thousands, climb } of kRestrictions) {
      const towards = samples.filter((sample) => sample.ident === ident).at(-1);
      const overhead = samples.reduce((best, sample) =>
        distanceNm(sample, at.get(ident)) < distanceNm(best, at.get(ident)) ? sample : best);
      const { altitude } = climb ? towards : overhead;
      assert.ok(Math.abs(altitude - thousands * 1000) <= 200, `${ident} at ${altitude} ft`);
    }
    for (const { fpm, target, knots } of samples) {
      assert.ok(Math.abs(fpm) <= 6000 && target >= 0 && target <= 60000 && knots <= 310);
    }
    assert.ok(Math.max(...samples.map(({ altitude }) => altitude)) > 31900);
    assert.ok(samples.at(-1).altitude < 2500, `arrives at ${samples.at(-1).altitude} ft`);
  });
}
