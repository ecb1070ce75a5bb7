// The status strip and the tables below the panel.

const kReadings = [
  ['Position', (s) => `${angle(s.latitude, 'N', 'S', 2)} ${angle(s.longitude, 'E', 'W', 3)}`],
  ['Altitude', (s) => `${round(s.altitude)} ft`],
  ['Vertical', (s) => `${signed(s.verticalSpeed)} fpm`],
  ['IAS', (s) => `${round(s.indicatedAirspeed)} kt`],
  ['GS', (s) => `${round(s.groundSpeed)} kt`],
  ['Heading', (s) => `${bearing(s.headingMag)}° M`],
  ['Track', (s) => `${bearing(s.trackTrue)}° T`],
  ['Attitude', (s) => `${tilt(s.pitch, 'up', 'down')}, ${tilt(s.bank, 'right', 'left')}`],
  ['Wind', (s) => `${bearing(s.windDirection)}°/${round(s.windSpeed)} kt`],
  ['Fuel', (s) => `${round(s.fuel)} lb`],
  ['Flight time', (s) => clock(s.flightTime)],
  ['Nav data', (s) => (s.navData ? s.navData + (s.navDataIsOver ? ', out of date' : '') : '–')],
];

const kLamps = [
  ['AP', 'Autopilot', (a) => a.master],
  ['FD', 'Flight director', (a) => a.flightDirector],
  ['HDG', 'Heading hold', (a) => a.heading, (a) => `${bearing(a.headingBug)}°`],
  ['NAV', 'Navigation hold', (a) => a.nav],
  ['APP', 'Approach hold', (a) => a.approach],
  ['ALT', 'Altitude hold', (a) => a.altitude, (a) => `${round(a.altitudeTarget)}`],
  ['VS', 'Vertical speed hold', (a) => a.verticalSpeed, (a) => signed(a.verticalSpeedTarget)],
  ['SPD', 'Airspeed hold', (a) => a.airspeed, (a) => `${round(a.airspeedTarget)}`],
  ['YD', 'Yaw damper', (a) => a.yawDamper],
];

export function makeStatus(find) {
  const readings = kReadings.map(([name]) => {
    const term = document.createElement('dt');
    const value = document.createElement('dd');
    const pair = document.createElement('div');
    term.textContent = name;
    value.textContent = '–';
    value.dataset.reading = name;
    pair.append(term, value);
    find('#readings').append(pair);
    return value;
  });
  const lamps = kLamps.map(([short, name]) => {
    const lamp = document.createElement('li');
    lamp.className = 'lamp';
    lamp.dataset.lamp = short;
    const label = document.createElement('span');
    label.textContent = short;
    label.title = name;
    const value = document.createElement('b');
    const state = document.createElement('span');
    state.className = 'hidden';
    lamp.append(label, value, state);
    find('#lamps').append(lamp);
    return { lamp, value, state };
  });
  const events = makeRows(find('#events tbody'), 4);
  const variables = makeRows(find('#variables tbody'), 2);
  const radios = makeRows(find('#radios tbody'), 6);

  return (status) => {
    kReadings.forEach(([, read], i) => setText(readings[i], read(status)));
    kLamps.forEach(([, , on, target], i) => {
      const lit = on(status.autopilot);
      lamps[i].lamp.classList.toggle('lit', lit);
      setText(lamps[i].value, target ? target(status.autopilot) : '');
      setText(lamps[i].state, lit ? 'on' : 'off');
    });
    events([...status.events].reverse().slice(0, 24).map((event) => [clock(event.time),
      event.name === 'unknown' ? `#${event.number}` : event.name, String(event.value),
      event.module ? 'module' : 'pilot']));
    variables(status.variables.map(([name, value]) => [name,
      typeof value === 'number' ? String(Math.round(value * 1e4) / 1e4) : String(value ?? '–')]));
    radios([['NAV 1', status.nav1], ['NAV 2', status.nav2], ['ADF', status.adf]]
      .map(([name, radio]) => {
        const isAdf = name === 'ADF';
        const frequency = isAdf ? `${round(radio.frequency * 1000)} kHz` : radio.frequency.toFixed(2);
        return [name, radio.frequency > 0 ? frequency : '–',
          radio.ident || '–', isAdf ? '–' : `${bearing(radio.course)}°`,
          radio.ident ? `${bearing(radio.bearing)}°` : '–',
          radio.dme > 0 ? `${radio.dme.toFixed(1)} nm` : '–'];
      }));
  };
}

function makeRows(body, columns) {
  return (rows) => {
    while (body.rows.length > rows.length) body.deleteRow(-1);
    rows.forEach((cells, i) => {
      let row = body.rows[i];
      if (!row) {
        row = body.insertRow();
        for (let c = 0; c < columns; ++c) row.insertCell();
      }
      cells.forEach((text, c) => setText(row.cells[c], text));
    });
  };
}

function setText(node, text) {
  if (node.textContent !== text) node.textContent = text;
}

function round(number) {
  return Math.round(number).toLocaleString('en').replace(/,/g, ' ').replace('-', '−');
}

function signed(number) {
  const tens = Math.round(number / 10) * 10;
  return tens > 0 ? `+${tens}` : String(tens || 0).replace('-', '−');
}

function tilt(degrees, positive, negative) {
  const whole = Math.round(degrees);
  return `${Math.abs(whole)}° ${whole < 0 ? negative : positive}`;
}

function bearing(degrees) {
  return String(Math.round(degrees + 359) % 360 + 1).padStart(3, '0');
}

function angle(degrees, positive, negative, digits) {
  const minutes = Math.round(Math.abs(degrees) * 600);
  const whole = String(Math.floor(minutes / 600)).padStart(digits, '0');
  return `${degrees < 0 ? negative : positive}${whole}°${(minutes % 600 / 10).toFixed(1).padStart(4, '0')}′`;
}

function clock(seconds) {
  const s = Math.floor(seconds);
  const pad = (n) => String(n).padStart(2, '0');
  return `${Math.floor(s / 3600)}:${pad(Math.floor(s / 60) % 60)}:${pad(s % 60)}`;
}
