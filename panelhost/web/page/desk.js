// The windows of the panel: where they stand, what opens, moves and closes them.

import { element, makeScreen, readPicture } from '/screen.js';

const kPhoneWidth = 760;
const kBarHeight = 28;
const kHandle = 90; // of a window's bar that stays within reach
const kCrowded = 1.7; // panel pixels for each pixel of a small screen: too small to hit keys
const kOwnViewWidth = 200;
const kMargin = 8;
const kLargestScale = 1.4;

export function makeDesk(root, list, send) {
  const windows = new Map(); // by index
  const titles = new Map(); // of gauges
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
        : [...windows.values()].filter((own) => own.info.visible && own.onScreen);
      send({ t: 'watch', windows: wanted.map((own) => own.info.w),
        scales: wanted.map((own) => own.screen.neededScale()) });
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
    const barHeight = visible.some(({ info }) => info.ident !== 0) ? kBarHeight : 0;
    root.style.height = column ? '' : `${(bottom - top) * scale + barHeight}px`;
    visible.forEach((own, order) => {
      const { info, frame } = own;
      own.screen.setBoxes(column && info.width / wide > kCrowded ? parts(own) : [whole(info)]);
      if (column) {
        place(own, 0, 0, wide, 0);
      } else {
        place(own, (info.x - left) * scale + (wide - (right - left) * scale) / 2,
          (info.y - top) * scale, info.shownWidth * scale, info.shownHeight * scale);
      }
      frame.style.zIndex = String(own.raised || order + 1);
    });
    watchSoon(); // other sizes may want other pictures
  }

  // Without a height each view keeps its shape.
  function place(own, x, y, width, height) {
    if (own.dragX || own.dragY) { // its bar stays within reach, also on a desk grown smaller
      const right = root.clientWidth - kHandle;
      const bottom = Math.max(0, root.clientHeight - kBarHeight);
      own.dragX = Math.max(kHandle - width, Math.min(right, x + own.dragX)) - x;
      own.dragY = Math.max(0, Math.min(bottom, y + own.dragY)) - y;
    }
    own.frame.style.left = `${x + own.dragX}px`;
    own.frame.style.top = `${y + own.dragY}px`;
    own.frame.style.width = `${width}px`;
    for (const { box, root: screen } of own.screen.views) {
      const shown = height ? width : Math.min(width, box.width * kLargestScale);
      screen.style.width = `${shown}px`;
      screen.style.height = `${height || shown * box.height / box.width}px`;
    }
  }

  // On a small screen a wide panel is shown gauge by gauge, small gauges in rows of their own.
  function parts(own) {
    const big = own.screen.gauges.filter(({ width }) => width >= kOwnViewWidth);
    const small = own.screen.gauges.filter(({ width, height }) => width < kOwnViewWidth && height > 4);
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
    own.screen.setSize(info);
    if (!info.visible && own.frame.contains(document.activeElement)) own.toggle.focus();
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
    const screen = makeScreen(info.w, send, titles);
    bar.append(title, close);
    frame.append(bar, screen.body);
    const entry = document.createElement('li');
    const toggle = document.createElement('button');
    toggle.type = 'button';
    entry.append(toggle);
    const own = { info: { ...info, visible: false }, frame, title, screen, entry, toggle,
      onScreen: false, wanted: false, raised: 0, dragX: 0, dragY: 0 };
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

  function showAreas(message) {
    const own = windows.get(message.w);
    if (own?.screen.setAreas(message)) layout();
  }

  function showPicture(buffer) {
    const picture = readPicture(buffer);
    return windows.get(picture.w)?.screen.showPicture(picture);
  }

  new ResizeObserver(layout).observe(root);

  return {
    start(hello) {
      size = hello.desk;
      for (const { gauge, name, title } of hello.displays) if (gauge) titles.set(name, title);
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
    update, showAreas, showPicture,
    showTexts: (message) => windows.get(message.w)?.screen.showTexts(message),
  };
}

function whole({ width, height }) {
  return { x: 0, y: 0, width, height };
}
