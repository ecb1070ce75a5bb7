// One display of the panel: its pictures, its keys as real buttons, its texts for readers.
// Places and sizes are design pixels; a picture has `scale` pixels for each.

const kHoldPointerMs = 30;
const kMostScale = 3;
const kScaleFigures = 6; // lines of bare numbers from which on they are scales
const kScaleSlack = 0.15; // a picture this much too small is not seen to be

export function element(name, className, text = '') {
  const made = document.createElement(name);
  made.className = className;
  made.textContent = text;
  return made;
}

// The binary message of a picture's changed tiles, as the host writes it.
export function readPicture(buffer) {
  const view = new DataView(buffer);
  const bytes = new Uint8Array(buffer);
  let at = 10;
  const end = at + view.getUint32(6, true);
  const number = () => {
    let value = 0;
    for (let shift = 0; ; shift += 7) {
      const byte = bytes[at++];
      value |= (byte & 127) << shift;
      if (byte < 128) return value;
    }
  };
  const runs = [];
  for (let tile = 0; at < end;) {
    const first = tile + number();
    const count = number();
    runs.push({ first, count });
    tile = first + count;
  }
  return { scale: view.getUint8(0), tile: view.getUint8(1), w: view.getUint16(2, true),
    width: view.getUint16(4, true), runs, png: bytes.subarray(end) };
}

// Where each row of tiles stands in the message's image, and where in the picture.
function* pieces({ runs, tile, width }, imageWidth) {
  const columns = imageWidth / tile;
  const across = Math.ceil(width / tile);
  let place = 0;
  for (const { first, count } of runs) {
    for (let i = first; i < first + count;) {
      const x = i % across;
      const from = place % columns;
      const length = Math.min(first + count - i, columns - from, across - x);
      yield { fromX: from * tile, fromY: Math.floor(place / columns) * tile, x: x * tile,
        y: Math.floor(i / across) * tile, width: length * tile, height: tile };
      i += length;
      place += length;
    }
  }
}

// `titles` names gauges for people. The views are laid out by whoever made the screen.
export function makeScreen(index, send, titles) {
  const body = element('div', 'body');
  const picture = document.createElement('canvas'); // the views copy from it
  const texts = element('div', 'hidden texts');
  const regions = new Map();
  let size = { width: 1, height: 1 };
  let scale = 1;
  let views = [];
  let viewKey = '';
  let areas = [];
  let gauges = [];
  let areasText = '';
  let shown = 0;
  let drawing = Promise.resolve();

  const nameOf = (gauge) => titles.get(gauge) || gauge.replaceAll('_', ' ');

  function setSize(next) {
    if (next.width === size.width && next.height === size.height) return;
    size = { width: next.width, height: next.height };
    setPixels();
  }

  function setPixels() {
    picture.width = size.width * scale;
    picture.height = size.height * scale;
    for (const view of views) {
      view.canvas.width = Math.max(1, Math.round(view.box.width * scale));
      view.canvas.height = Math.max(1, Math.round(view.box.height * scale));
    }
  }

  // Shows these boxes of the display, each as a view.
  function setBoxes(boxes) {
    const key = JSON.stringify(boxes);
    if (viewKey === key) return;
    viewKey = key;
    views = boxes.map((box) => {
      const root = element('div', 'screen');
      const canvas = document.createElement('canvas');
      canvas.setAttribute('aria-hidden', 'true');
      canvas.width = Math.max(1, Math.round(box.width * scale));
      canvas.height = Math.max(1, Math.round(box.height * scale));
      const keys = element('div', 'keys');
      root.append(canvas, keys);
      const view = { box, root, canvas, keys, context: canvas.getContext('2d', { alpha: false }) };
      bindPointer(view);
      return view;
    });
    body.replaceChildren(texts, ...views.map((view) => view.root));
    showViews({ left: 0, top: 0, right: picture.width, bottom: picture.height });
    showKeys();
  }

  // Copies a part of the picture, as far as they show it.
  function showViews({ left, top, right, bottom }) {
    for (const { box, context } of views) {
      const x = Math.max(left, box.x * scale);
      const y = Math.max(top, box.y * scale);
      const width = Math.min(right, (box.x + box.width) * scale) - x;
      const height = Math.min(bottom, (box.y + box.height) * scale) - y;
      if (width <= 0 || height <= 0) continue;
      context.drawImage(picture, x, y, width, height, x - box.x * scale, y - box.y * scale, width, height);
    }
  }

  // Decoded as they come, drawn in their order: each leads on from the one before.
  function showPicture(message) {
    const decoded = createImageBitmap(new Blob([message.png], { type: 'image/png' }));
    drawing = drawing.then(async () => {
      try {
        draw(message, await decoded);
      } finally {
        send({ t: 'painted', w: index });
      }
    }).catch((error) => console.warn(`picture of ${index}: ${error}`));
    return drawing;
  }

  function draw(message, image) {
    if (message.scale !== scale) {
      scale = message.scale;
      setPixels();
    }
    const context = picture.getContext('2d', { alpha: false });
    const drawn = { left: picture.width, top: picture.height, right: 0, bottom: 0 };
    for (const { fromX, fromY, x, y, width, height } of pieces(message, image.width)) {
      context.drawImage(image, fromX, fromY, width, height, x, y, width, height);
      drawn.left = Math.min(drawn.left, x);
      drawn.top = Math.min(drawn.top, y);
      drawn.right = Math.max(drawn.right, Math.min(picture.width, x + width));
      drawn.bottom = Math.max(drawn.bottom, Math.min(picture.height, y + height));
    }
    image.close();
    showViews(drawn);
    body.dataset.pictures = String(++shown);
    body.dataset.scale = String(scale);
  }

  // The scale at which this display is sharp as it stands now.
  function neededScale() {
    let pixels = 1;
    for (const { box, root } of views) {
      pixels = Math.max(pixels, root.clientWidth * window.devicePixelRatio / box.width);
    }
    return Math.max(1, Math.min(kMostScale, Math.ceil(pixels - kScaleSlack)));
  }

  // Every press goes to the host as a point; the host finds the key below it.
  function bindPointer(view) {
    const { root: screen, box: part } = view;
    let held = null;
    // A finger may come down beside a small key's own area: the point is moved into it.
    const point = (event, area) => {
      const shape = view.canvas.getBoundingClientRect();
      const x = part.x + (event.clientX - shape.left) / shape.width * part.width;
      const y = part.y + (event.clientY - shape.top) / shape.height * part.height;
      return { x: within(x, area.x, area.width), y: within(y, area.y, area.height) };
    };
    const release = (event) => {
      if (held !== event.pointerId) return;
      held = null;
      setTimeout(() => send({ t: 'up' }), kHoldPointerMs);
      for (const key of view.keys.querySelectorAll('.held')) key.classList.remove('held');
    };
    screen.addEventListener('pointerdown', (event) => {
      const key = event.target.closest('.key');
      if (!key || held !== null || event.button > 2) return;
      held = event.pointerId;
      screen.setPointerCapture(event.pointerId);
      key.focus({ preventScroll: true });
      key.classList.add('held');
      send({ t: 'down', w: index, ...point(event, key.area), b: event.button });
      event.preventDefault();
    });
    screen.addEventListener('pointerup', release);
    screen.addEventListener('pointercancel', release);
    screen.addEventListener('lostpointercapture', release);
    screen.addEventListener('contextmenu', (event) => {
      if (event.target.closest('.key')) event.preventDefault();
    });
    let turned = 0;
    screen.addEventListener('wheel', (event) => {
      const key = event.target.closest('.key');
      if (!key || !key.dataset.wheel) return;
      event.preventDefault();
      turned += event.deltaY;
      if (Math.abs(turned) < 20) return;
      send({ t: 'wheel', w: index, ...point(event, key.area), up: turned < 0 });
      turned = 0;
    }, { passive: false });
  }

  // The centre of a key, or of one half of a knob.
  function press(area, part) {
    send({ t: 'down', w: index, b: 0, x: area.x + area.width * part,
      y: area.y + area.height / 2 });
  }

  function bindKeyboard(key, area) {
    let pressed = '';
    const knob = isKnob(area);
    const parts = { Enter: knob ? 0.75 : 0.5, ' ': knob ? 0.75 : 0.5 };
    if (knob) Object.assign(parts, { ArrowLeft: 0.25, ArrowDown: 0.25, ArrowRight: 0.75, ArrowUp: 0.75 });
    key.addEventListener('keydown', (event) => {
      const part = parts[event.key];
      if (part === undefined || event.ctrlKey || event.altKey || event.metaKey) return;
      event.preventDefault();
      event.stopPropagation();
      if (event.repeat && area.repeats) return; // the host repeats while the key is held
      if (event.repeat && !knob) return;
      pressed = event.key;
      key.classList.add('held');
      press(area, part);
    });
    const up = () => {
      if (!pressed) return;
      pressed = '';
      key.classList.remove('held');
      send({ t: 'up' });
    };
    key.addEventListener('keyup', (event) => {
      if (event.key !== pressed) return;
      event.preventDefault(); // some browsers click a button when the space bar comes up
      up();
    });
    key.addEventListener('blur', up);
    // A screen reader or a switch device clicks without pointer or key events of its own.
    key.addEventListener('click', (event) => {
      if (event.detail !== 0) return;
      press(area, knob ? 0.75 : 0.5);
      setTimeout(() => send({ t: 'up' }), kHoldPointerMs);
    });
  }

  // True when the display has changed so that it may want other boxes.
  function setAreas(message) {
    const asText = JSON.stringify([message.areas, message.gauges]);
    if (areasText === asText) return false;
    areasText = asText;
    areas = message.areas;
    gauges = message.gauges;
    showKeys();
    return true;
  }

  function showKeys() {
    const all = () => views.flatMap((view) => [...view.keys.children]);
    const focused = all().indexOf(document.activeElement);
    const counts = new Map();
    const lists = views.map(() => []);
    for (const area of areas) {
      const count = (counts.get(area.gauge) || 0) + 1;
      counts.set(area.gauge, count);
      const index = views.findIndex(({ box }) => contains(box, area));
      if (index >= 0) lists[index].push(makeKey(views[index].box, area, count));
    }
    views.forEach((view, i) => view.keys.replaceChildren(...lists[i]));
    if (focused >= 0) all()[focused]?.focus({ preventScroll: true });
  }

  function makeKey(box, area, count) {
    const key = element('button', 'key');
    key.type = 'button';
    key.area = area;
    key.setAttribute('aria-label', area.label
      ? `${area.label}, ${nameOf(area.gauge)}` : `${nameOf(area.gauge)} key ${count}`);
    key.title = area.label || '';
    key.dataset.gauge = area.gauge;
    if (area.label) key.dataset.label = area.label;
    if (area.wheel) key.dataset.wheel = '1';
    if (isKnob(area)) {
      key.dataset.knob = '1';
      key.setAttribute('aria-roledescription', 'knob, arrow keys turn it left and right');
    }
    // By its centre: on a small screen the style makes it larger than its area.
    key.style.left = percent(area.x - box.x + area.width / 2, box.width);
    key.style.top = percent(area.y - box.y + area.height / 2, box.height);
    key.style.width = percent(area.width, box.width);
    key.style.height = percent(area.height, box.height);
    // Small keys inside large ones stay on top.
    key.style.zIndex = String(Math.max(1, 100000 - Math.round(area.width * area.height / 10)));
    bindKeyboard(key, area);
    return key;
  }

  function showTexts(message) {
    const perGauge = new Map();
    for (const [text, x, y, height, placement, gauge] of message.texts) {
      if (!text.trim()) continue;
      if (!perGauge.has(placement)) perGauge.set(placement, { gauge, list: [] });
      perGauge.get(placement).list.push({ text: text.trim(), x, y, height });
    }
    for (const [placement, region] of regions) {
      if (!perGauge.has(placement)) {
        region.remove();
        regions.delete(placement);
      }
    }
    for (const [placement, { gauge, list }] of perGauge) {
      let region = regions.get(placement);
      if (!region) {
        region = element('div', '');
        // A log of one screen: read on demand; live speech of ever-changing figures would never end.
        region.setAttribute('role', 'group');
        region.setAttribute('aria-label', `${nameOf(gauge)} screen`);
        region.dataset.gauge = gauge;
        regions.set(placement, region);
        texts.append(region);
      }
      showLines(region, linesOf(list));
    }
  }

  function showLines(region, lines) {
    while (region.children.length > lines.length) region.lastChild.remove();
    lines.forEach((line, i) => {
      let row = region.children[i];
      if (!row) {
        row = document.createElement('p');
        region.append(row);
      }
      if (row.textContent !== line) row.textContent = line;
    });
  }

  return { index, body, setSize, setBoxes, setAreas, showKeys, showTexts, showPicture, neededScale,
    get views() { return views; }, get gauges() { return gauges; }, get areas() { return areas; } };
}

function contains(box, area) {
  const x = area.x + area.width / 2 - box.x;
  const y = area.y + area.height / 2 - box.y;
  return x >= 0 && y >= 0 && x < box.width && y < box.height;
}

function within(at, first, length) {
  return Math.max(first, Math.min(first + length * 0.9999, at));
}

// A knob turns one way on its left half and the other way on its right: a round area that repeats
// or takes the wheel, or a wide one without a word of its own.
function isKnob(area) {
  const shape = area.width / area.height;
  return area.wheel || (area.repeats && shape > 0.7 && shape < 1.4) ||
    (shape >= 1.6 && !area.label);
}

// Texts in reading order: those at about the same height form a line, left to right.
function linesOf(texts) {
  const sorted = [...texts].sort((a, b) => a.y - b.y || a.x - b.x);
  const lines = [];
  for (const text of sorted) {
    const last = lines[lines.length - 1];
    if (last && Math.abs(last.y - text.y) < Math.max(3, text.height * 0.5)) {
      last.texts.push(text);
    } else {
      lines.push({ y: text.y, texts: [text] });
    }
  }
  const read = lines.map((line) => line.texts.sort((a, b) => a.x - b.x)
    .map((text) => text.text).join('  '));
  // The numbers of a scale say nothing one by one: they follow as one line.
  const isFigures = (line) => /^[-+\u2212\d\s.]+$/.test(line);
  const figures = read.filter(isFigures);
  return figures.length < kScaleFigures ? read
    : [...read.filter((line) => !isFigures(line)), `Scales: ${figures.join(', ')}`];
}

function percent(part, whole) {
  return `${part / whole * 100}%`;
}
