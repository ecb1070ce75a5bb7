// The vertical profile ahead: the planned path by predicted altitudes, restrictions, the aircraft,
// and in words what is flown now.

import { makePlot, thousands } from '/plot.js';

const kAt = 1;
const kAtOrAbove = 2;
const kAtOrBelow = 3;
const kTopOfClimb = 1;
const kTopOfDescent = 2;
const kLevelFpm = 100;
const kRestrictionWords = ['', 'at', 'at or above', 'at or below'];
const kMark = 5; // half a restriction's width
const kRedrawFt = 50;

export function makeProfile(find) {
  let profile = { phase: -1, points: [] };
  let aircraft = null;
  let drawnAt = NaN;
  const redraw = makePlot(find('#profilePlot'), (board) => drawProfile(board, profile, aircraft));
  const body = find('#profile tbody');

  function say() {
    const words = describe(profile, aircraft);
    if (find('#profileSummary').textContent === words) return;
    find('#profileSummary').textContent = words;
    find('#profilePlot').setAttribute('aria-label', `Altitude over the distance ahead. ${words}`);
  }

  function draw() {
    drawnAt = aircraft?.altitude;
    redraw();
  }

  return {
    show(message) {
      profile = message;
      body.replaceChildren(...profile.points.map((point) => {
        const row = document.createElement('tr');
        for (const text of [point.name, point.distance.toFixed(1), thousands(point.altitude),
          restrictionText(point)]) row.insertCell().textContent = text;
        return row;
      }));
      say();
      draw();
    },
    showAircraft(status) {
      aircraft = status;
      say();
      if (profile.phase >= 0 && !(Math.abs(aircraft.altitude - drawnAt) < kRedrawFt)) draw();
    },
  };
}

function restrictionText(point) {
  return point.restriction
    ? `${kRestrictionWords[point.restriction]} ${thousands(point.restrictionAltitude)} ft` : '';
}

export function describe(profile, aircraft) {
  if (profile.phase < 0 || !aircraft) return 'No vertical profile is planned.';
  const speed = aircraft.verticalSpeed;
  const motion = Math.abs(speed) < kLevelFpm ? 'level' : speed > 0 ? 'climbing' : 'descending';
  const phase = ['Climb', 'Cruise', 'Descent'][profile.phase] ?? 'Flight';
  const by = profile.engaged ? 'flown by VNAV' : 'VNAV is off';
  const path = profile.phase === 2 && profile.path > 0 ? pathText(aircraft.altitude - profile.path) : '';
  const next = profile.points.find((point) => point.kind !== 0 || point.restriction);
  const ahead = next ? ` Next: ${next.name} in ${next.distance.toFixed(1)} nm` +
    `${next.restriction ? `, ${restrictionText(next)}` : ''}.` : '';
  return `${phase}, ${by}: ${motion} at ${thousands(aircraft.altitude)} ft towards ` +
    `${thousands(profile.target)} ft${path}.${ahead}`;
}

function pathText(deviation) {
  const feet = Math.round(deviation / 10) * 10;
  return feet === 0 ? ', on the path' : `, ${thousands(Math.abs(feet))} ft ${feet > 0 ? 'above' : 'below'} the path`;
}

function drawProfile(board, profile, aircraft) {
  if (profile.phase < 0 || profile.points.length === 0 || !aircraft) return;
  const { points } = profile;
  const x = board.across(0, Math.max(points[points.length - 1].distance, 1));
  const y = board.upward(0, 1.05 * Math.max(profile.cruise, aircraft.altitude,
    ...points.map((point) => Math.max(point.altitude, point.restrictionAltitude))));
  board.axisBeside(y, 'first', 'ft');
  board.axisBelow(x, (value) => `${value} nm`);
  // The tops and restrictions are named first, other entries where room is left.
  const weight = (point) => (point.kind !== 0 || point.restriction ? 0 : 1);
  board.marks([...points].sort((a, b) => weight(a) - weight(b) || a.distance - b.distance)
    .map((point) => [point.distance, point.name]), x);
  board.line([[0, aircraft.altitude], ...points.map((point) => [point.distance, point.altitude])],
    x, y, 'first');
  for (const point of points.filter(({ restriction }) => restriction)) {
    drawRestriction(board, x.at(point.distance), y.at(point.restrictionAltitude), point.restriction);
  }
  for (const point of points.filter(({ kind }) => kind === kTopOfClimb || kind === kTopOfDescent)) {
    board.add('circle', { class: 'restriction', cx: x.at(point.distance), cy: y.at(point.altitude), r: 3 });
  }
  const [ax, ay] = [x.at(0), y.at(aircraft.altitude)];
  board.add('path', { class: 'aircraft', d: `M${ax - 4} ${ay - 6}L${ax + 9} ${ay}L${ax - 4} ${ay + 6}z` });
}

// A bar on the side that must not be crossed: below for at or above, above for at or below.
function drawRestriction(board, x, y, restriction) {
  const bar = (at) => `M${x - kMark} ${at}h${2 * kMark}`;
  const triangle = (up) => `M${x - kMark} ${y}h${2 * kMark}l${-kMark} ${up ? -8 : 8}z`;
  const shape = {
    [kAt]: `${bar(y - 4)}${bar(y + 4)}`,
    [kAtOrAbove]: triangle(true) + bar(y + 3),
    [kAtOrBelow]: triangle(false) + bar(y - 3),
  }[restriction];
  if (shape) board.add('path', { class: 'restriction', d: shape });
}
