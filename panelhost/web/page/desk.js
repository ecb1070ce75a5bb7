// The windows of the panel: their pictures, their keys as real buttons, their texts for readers.

const kPhoneWidth = 760;
const kHoldPointerMs = 30;
const kBarHeight = 28;
const kCrowded = 1.7; // panel pixels for each pixel of a small screen: too small to hit keys
const kOwnViewWidth = 200;
const kMargin = 8;
const kLargestScale = 1.4;

export function makeDesk(root, list, send) {
  const windows = new Map(); // by index
  let size = { width: 1600, height: 1000 };
  let watchTimer = 0;
  const seen = new IntersectionObserver((entries) => {
    for (const entry of entries) {
      const own = windows.get(Number(entry.target.dataset.window));
      if (own) own.onScreen = entry.isIntersecting;
    }
    watchSoon();
  }, { rootMargin: '100px' });

  function watchSoon() {
    clearTimeout(watchTimer);
    watchTimer = setTimeout(() => {
      const wanted = document.hidden ? []
        : [...windows.values()].filter((own) => own.info.visible && own.onScreen)
          .map((own) => own.info.w);
      send({ t: 'watch', windows: wanted });
    }, 30);
  }
  document.addEventListener('visibilitychange', watchSoon);

  function layout() {
    const visible = [...windows.values()].filter((own) => own.info.visible);
    const wide = root.clientWidth;
    const column = wide < kPhoneWidth;
    root.classList.toggle('column', column);
    let right = 1;
    let bottom = 1;
    let left = size.width;
    let top = size.height;
    for (const { info } of visible) {
      left = Math.min(left, info.x);
      top = Math.min(top, info.y);
      right = Math.max(right, info.x + info.shownWidth);
      bottom = Math.max(bottom, info.y + info.shownHeight);
    }
    if (visible.length === 0) left = top = 0;
    const scale = Math.min(1.5, wide / (right - left));
    visible.forEach((own, order) => {
      const { info, frame } = own;
      setViews(own, column && info.width / wide > kCrowded ? parts(own) : [whole(info)]);
      if (column) {
        place(own, 0, 0, wide, 0);
      } else {
        place(own, (info.x - left) * scale + (wide - (right - left) * scale) / 2,
          (info.y - top) * scale, info.shownWidth * scale, info.shownHeight * scale);
      }
      frame.style.zIndex = String(own.raised || order + 1);
    });
    const barHeight = visible.some(({ info }) => info.ident !== 0) ? kBarHeight : 0;
    root.style.height = column ? '' : `${(bottom - top) * scale + barHeight}px`;
  }

  // Without a height each view keeps its shape.
  function place(own, x, y, width, height) {
    own.frame.style.left = `${x + own.dragX}px`;
    own.frame.style.top = `${y + own.dragY}px`;
    own.frame.style.width = `${width}px`;
    for (const { box, root: screen } of own.views) {
      const shown = height ? width : Math.min(width, box.width * kLargestScale);
      screen.style.width = `${shown}px`;
      screen.style.height = `${height || shown * box.height / box.width}px`;
    }
  }

  // On a small screen a wide panel is shown gauge by gauge, small gauges in rows of their own.
  function parts(own) {
    const big = own.gauges.filter(({ width }) => width >= kOwnViewWidth);
    const small = own.gauges.filter(({ width, height }) => width < kOwnViewWidth && height > 4);
    if (big.length === 0) return [whole(own.info)];
    const boxes = big.map(({ x, y, width, height }) => ({ x, y, width, height }));
    if (small.length > 0) {
      const x = Math.max(0, Math.min(...small.map((gauge) => gauge.x)) - kMargin);
      const y = Math.max(0, Math.min(...small.map((gauge) => gauge.y)) - kMargin);
      boxes.push({ x, y,
        width: Math.min(own.info.width, Math.max(...small.map((g) => g.x + g.width)) + kMargin) - x,
        height: Math.min(own.info.height, Math.max(...small.map((g) => g.y + g.height)) + kMargin) - y });
    }
    return boxes;
  }

  function setViews(own, boxes) {
    const key = JSON.stringify(boxes);
    if (own.viewKey === key) return;
    own.viewKey = key;
    own.frame.classList.toggle('parted', boxes.length > 1);
    own.views = boxes.map((box) => {
      const screen = element('div', 'screen');
      const canvas = document.createElement('canvas');
      canvas.setAttribute('aria-hidden', 'true');
      canvas.width = Math.max(1, Math.round(box.width));
      canvas.height = Math.max(1, Math.round(box.height));
      const keys = element('div', 'keys');
      screen.append(canvas, keys);
      const view = { box, root: screen, canvas, keys,
        context: canvas.getContext('2d', { alpha: false }) };
      bindPointer(own, view);
      return view;
    });
    own.body.replaceChildren(own.texts, ...own.views.map((view) => view.root));
    showView(own, own.views);
    showKeys(own);
  }

  function showView(own, views) {
    for (const { box, context, canvas } of views) {
      context.drawImage(own.picture, box.x, box.y, box.width, box.height, 0, 0, canvas.width,
        canvas.height);
    }
  }

  function update(info) {
    let own = windows.get(info.w);
    if (!own) {
      own = makeWindow(info);
      windows.set(info.w, own);
      list.append(own.entry);
      seen.observe(own.frame);
    }
    const appears = info.visible && !own.info.visible;
    own.info = info;
    own.title.textContent = info.title || `Window ${info.w}`;
    own.frame.setAttribute('aria-label', own.title.textContent);
    own.toggle.textContent = own.title.textContent;
    own.toggle.setAttribute('aria-pressed', String(info.visible));
    if (own.picture.width !== info.width || own.picture.height !== info.height) {
      own.picture.width = info.width;
      own.picture.height = info.height;
    }
    own.frame.hidden = !info.visible;
    if (info.visible && !own.frame.isConnected) attach(own);
    if (appears && own.wanted) {
      own.frame.scrollIntoView({ block: 'nearest', behavior: 'smooth' });
    }
    own.wanted = false;
    layout();
    watchSoon();
  }

  // Document order is window order, so reading and tab order start with the main panel.
  function attach(own) {
    const after = [...windows.values()].filter((other) => other.frame.isConnected &&
      other.info.w > own.info.w).sort((a, b) => a.info.w - b.info.w)[0];
    root.insertBefore(own.frame, after ? after.frame : null);
  }

  function makeWindow(info) {
    const frame = element('section', 'window');
    frame.dataset.window = String(info.w);
    frame.dataset.ident = String(info.ident);
    const bar = element('div', 'bar');
    const title = element('h2', '');
    const close = element('button', 'close', '×');
    close.type = 'button';
    const body = element('div', 'body');
    const picture = document.createElement('canvas'); // the views copy from it
    const texts = element('div', 'hidden texts');
    bar.append(title, close);
    frame.append(bar, body);
    const entry = document.createElement('li');
    const toggle = document.createElement('button');
    toggle.type = 'button';
    entry.append(toggle);
    const own = { info: { ...info, visible: false }, frame, title, body, picture, texts,
      entry, toggle, onScreen: false, wanted: false, raised: 0, dragX: 0, dragY: 0,
      regions: new Map(), views: [], viewKey: '', areas: [], gauges: [], areasText: '' };
    const flip = () => {
      own.wanted = !own.info.visible;
      send({ t: 'toggle', ident: own.info.ident });
    };
    toggle.addEventListener('click', flip);
    close.addEventListener('click', flip);
    close.setAttribute('aria-label', `Close ${info.title}`);
    if (info.ident === 0) {
      frame.classList.add('main');
      close.remove();
    }
    frame.addEventListener('pointerdown', () => raise(own), true);
    dragBy(bar, own);
    return own;
  }

  let raises = 1000;
  function raise(own) {
    if (own.info.ident === 0) return; // the main panel stays behind its pop-ups
    own.raised = ++raises;
    own.frame.style.zIndex = String(own.raised);
  }

  function dragBy(bar, own) {
    let from = null;
    bar.addEventListener('pointerdown', (event) => {
      if (event.target.closest('button') || own.info.ident === 0 ||
          root.classList.contains('column')) return;
      from = { x: event.clientX - own.dragX, y: event.clientY - own.dragY };
      bar.setPointerCapture(event.pointerId);
    });
    bar.addEventListener('pointermove', (event) => {
      if (!from) return;
      own.dragX = event.clientX - from.x;
      own.dragY = event.clientY - from.y;
      layout();
    });
    for (const end of ['pointerup', 'pointercancel']) {
      bar.addEventListener(end, () => { from = null; });
    }
  }

  // Every press goes to the host as a point; the host finds the key below it.
  function bindPointer(own, view) {
    const { root: screen, box: part } = view;
    let held = null;
    const point = (event) => {
      const shown = view.canvas.getBoundingClientRect();
      const along = (at, first, length) => Math.max(0, Math.min(0.9999, (at - first) / length));
      return {
        x: part.x + along(event.clientX, shown.left, shown.width) * part.width,
        y: part.y + along(event.clientY, shown.top, shown.height) * part.height,
      };
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
      send({ t: 'down', w: own.info.w, ...point(event), b: event.button });
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
      send({ t: 'wheel', w: own.info.w, ...point(event), up: turned < 0 });
      turned = 0;
    }, { passive: false });
  }

  // The centre of a key, or of one half of a knob.
  function press(own, area, part) {
    send({ t: 'down', w: own.info.w, b: 0, x: area.x + area.width * part,
      y: area.y + area.height / 2 });
  }

  function bindKeyboard(own, key, area) {
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
      press(own, area, part);
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
      press(own, area, knob ? 0.75 : 0.5);
      setTimeout(() => send({ t: 'up' }), kHoldPointerMs);
    });
  }

  function showAreas(message) {
    const own = windows.get(message.w);
    const asText = JSON.stringify([message.areas, message.gauges]);
    if (!own || own.areasText === asText) return;
    own.areasText = asText;
    own.areas = message.areas;
    own.gauges = message.gauges;
    const { viewKey } = own;
    layout();
    if (own.viewKey === viewKey) showKeys(own);
  }

  function showKeys(own) {
    const all = () => own.views.flatMap((view) => [...view.keys.children]);
    const focused = all().indexOf(document.activeElement);
    const counts = new Map();
    const lists = own.views.map(() => []);
    for (const area of own.areas) {
      const count = (counts.get(area.gauge) || 0) + 1;
      counts.set(area.gauge, count);
      const index = own.views.findIndex(({ box }) => contains(box, area));
      if (index >= 0) lists[index].push(makeKey(own, own.views[index].box, area, count));
    }
    own.views.forEach((view, i) => view.keys.replaceChildren(...lists[i]));
    if (focused >= 0) all()[focused]?.focus({ preventScroll: true });
  }

  function makeKey(own, box, area, count) {
    const key = element('button', 'key');
    key.type = 'button';
    key.setAttribute('aria-label', area.label
      ? `${area.label}, ${area.gauge}` : `${area.gauge} key ${count}`);
    key.title = area.label || '';
    key.dataset.gauge = area.gauge;
    if (area.label) key.dataset.label = area.label;
    if (area.wheel) key.dataset.wheel = '1';
    if (isKnob(area)) {
      key.dataset.knob = '1';
      key.setAttribute('aria-roledescription', 'knob, arrow keys turn it left and right');
    }
    key.style.left = percent(area.x - box.x, box.width);
    key.style.top = percent(area.y - box.y, box.height);
    key.style.width = percent(area.width, box.width);
    key.style.height = percent(area.height, box.height);
    // Small keys inside large ones stay on top.
    key.style.zIndex = String(Math.max(1, 100000 - Math.round(area.width * area.height / 10)));
    bindKeyboard(own, key, area);
    return key;
  }

  function showTexts(message) {
    const own = windows.get(message.w);
    if (!own) return;
    const gauges = new Map();
    for (const [text, x, y, height, placement, gauge] of message.texts) {
      if (!text.trim()) continue;
      if (!gauges.has(placement)) gauges.set(placement, { gauge, texts: [] });
      gauges.get(placement).texts.push({ text: text.trim(), x, y, height });
    }
    for (const [placement, region] of own.regions) {
      if (!gauges.has(placement)) {
        region.remove();
        own.regions.delete(placement);
      }
    }
    for (const [placement, { gauge, texts }] of gauges) {
      let region = own.regions.get(placement);
      if (!region) {
        region = element('div', '');
        // A log of one screen: read on demand; live speech of ever-changing figures would never end.
        region.setAttribute('role', 'group');
        region.setAttribute('aria-label', `${gauge} screen`);
        region.dataset.gauge = gauge;
        own.regions.set(placement, region);
        own.texts.append(region);
      }
      showLines(region, linesOf(texts));
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

  async function showPicture(buffer) {
    const view = new DataView(buffer);
    if (view.getUint8(0) !== 1) return;
    const count = view.getUint8(1);
    const own = windows.get(view.getUint16(2, true));
    let at = 4 + count * 12;
    const received = [];
    for (let i = 0; i < count; ++i) {
      const head = 4 + i * 12;
      const bytes = view.getUint32(head + 8, true);
      received.push({ x: view.getUint16(head, true), y: view.getUint16(head + 2, true),
        width: view.getUint16(head + 4, true), height: view.getUint16(head + 6, true),
        data: new Uint8Array(buffer, at, bytes) });
      at += bytes;
    }
    if (!own) return;
    try {
      const images = await Promise.all(received.map(({ data }) =>
        createImageBitmap(new Blob([data], { type: 'image/png' }))));
      const context = own.picture.getContext('2d', { alpha: false });
      images.forEach((image, i) => {
        context.drawImage(image, received[i].x, received[i].y);
        image.close();
      });
      showView(own, own.views.filter(({ box }) => received.some((part) => touches(box, part))));
      own.frame.dataset.pictures = String(Number(own.frame.dataset.pictures || 0) + 1);
    } finally {
      send({ t: 'painted', w: own.info.w });
    }
  }

  new ResizeObserver(layout).observe(root);

  return {
    start(hello) {
      size = hello.desk;
      for (const [index, own] of windows) {
        const same = hello.windows.find((info) => info.w === index &&
          info.ident === own.info.ident);
        if (!same) {
          own.frame.remove();
          own.entry.remove();
          windows.delete(index);
        }
      }
      for (const info of hello.windows) update(info);
      watchSoon();
    },
    update, showAreas, showTexts, showPicture,
  };
}

function whole({ width, height }) {
  return { x: 0, y: 0, width, height };
}

function contains(box, area) {
  const x = area.x + area.width / 2 - box.x;
  const y = area.y + area.height / 2 - box.y;
  return x >= 0 && y >= 0 && x < box.width && y < box.height;
}

function touches(a, b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
    b.y < a.y + a.height;
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
  return lines.map((line) => line.texts.sort((a, b) => a.x - b.x)
    .map((text) => text.text).join('  '));
}

function element(name, className, text = '') {
  const made = document.createElement(name);
  made.className = className;
  made.textContent = text;
  return made;
}

function percent(part, whole) {
  return `${part / whole * 100}%`;
}
