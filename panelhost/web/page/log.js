// The flight log as it grows: its records, newest first, and a plot of altitude and speed.

import { makePlot, thousands } from '/plot.js';

const kWords = 12;
const kLongestTable = 300;
const kFlown = ['Climb', 'Cruise', 'Descent', 'Approach']; // named first where there is little room
const kCells = ['time', 'segment', 'waypoint', 'altitude', 'vertical', 'indicated', 'airspeed',
  'groundSpeed', 'flow', 'fuel'];

export function makeLog(find) {
  const body = find('#log tbody');
  let text = '';
  let records = [];
  const redraw = makePlot(find('#logPlot'), (board) => drawLog(board, records));

  return (message) => {
    const before = message.more ? records.length : 0;
    text = message.more ? text + message.lines : message.lines;
    records = text.split('\n').map(readRecord).filter(Boolean);
    if (before === 0) body.replaceChildren();
    for (const record of records.slice(before)) addRow(body, record);
    while (body.rows.length > kLongestTable) body.deleteRow(-1);
    const words = describe(text, records);
    find('#logSummary').textContent = words;
    find('#logPlot').setAttribute('aria-label', `Altitude and ground speed over time. ${words}`);
    redraw();
  };
}

// Null for a line that is no record.
export function readRecord(line) {
  const words = line.trim().split(/\s+/);
  const [hours, minutes, seconds] = words[0].split(':').map(Number);
  const [groundSpeed, airspeed, vertical, altitude, flow, fuel, , , indicated] =
    words.slice(3).map(Number);
  if (words.length !== kWords || !Number.isFinite(hours * 3600 + minutes * 60 + seconds)) return null;
  return { time: words[0], seconds: hours * 3600 + minutes * 60 + seconds, segment: words[1],
    waypoint: words[2] === '---' ? '' : words[2], groundSpeed, airspeed, vertical, altitude, flow,
    fuel, indicated };
}

function addRow(body, record) {
  const row = body.insertRow(0);
  for (const name of kCells) {
    const value = record[name];
    row.insertCell().textContent = typeof value === 'number' ? thousands(value) : value.replace('_', ' ');
  }
}

function describe(text, records) {
  if (records.length === 0) return 'No records yet.';
  const route = /^FlightPlan=(.*)$/m.exec(text)?.[1].trim() ?? '';
  const last = records[records.length - 1];
  const highest = Math.max(...records.map((record) => record.altitude));
  return `${route}: ${last.segment.replace('_', ' ')} at ${last.time}, ${thousands(last.altitude)} ft, ` +
    `${thousands(last.groundSpeed)} kt over ground; highest ${thousands(highest)} ft, ` +
    `${thousands(records[0].fuel - last.fuel)} lb of fuel used.`;
}

function drawLog(board, records) {
  if (records.length < 2) return;
  const first = records[0].seconds / 60;
  const last = Math.max(records[records.length - 1].seconds / 60, first + 1);
  const x = board.across(first, last);
  const altitudes = board.upward(0, Math.max(1000, ...records.map((record) => record.altitude)));
  const speeds = board.upward(0, Math.max(100, ...records.map((record) => record.groundSpeed)));
  board.axisBeside(altitudes, 'first', 'ft');
  board.axisBeside(speeds, 'second', 'kt');
  board.axisBelow(x, (minutes) =>
    `${Math.floor(minutes / 60)}:${String(Math.round(minutes) % 60).padStart(2, '0')}`);
  const phases = records.filter((record, i) => i === 0 || record.segment !== records[i - 1].segment);
  const order = ({ segment }) => (kFlown.includes(segment) ? 0 : 1);
  board.marks(phases.sort((a, b) => order(a) - order(b) || a.seconds - b.seconds)
    .map((record) => [record.seconds / 60, record.segment.replace('_', ' ')]), x);
  board.line(records.map((r) => [r.seconds / 60, r.groundSpeed]), x, speeds, 'second');
  board.line(records.map((r) => [r.seconds / 60, r.altitude]), x, altitudes, 'first');
}
