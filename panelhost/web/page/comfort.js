// Brightness of the displays, a dimmed page and larger text; kept for this browser.

const kKey = 'avq1-comfort';
const kPlain = { bright: 100, night: false, large: false };

function load() {
  try {
    const kept = { ...kPlain, ...JSON.parse(localStorage.getItem(kKey)) };
    kept.bright = Math.max(10, Math.min(100, Number(kept.bright) || kPlain.bright));
    return kept;
  } catch {
    return { ...kPlain };
  }
}

function apply(now) {
  document.documentElement.style.setProperty('--bright', String(now.bright / 100));
  document.documentElement.classList.toggle('night', now.night === true);
  document.documentElement.classList.toggle('large', now.large === true);
}

// A page without displays of its own offers no brightness for them.
export function makeComfort(root, { hasDisplays = true } = {}) {
  const now = load();
  apply(now);
  const change = (part) => {
    Object.assign(now, part);
    apply(now);
    window.dispatchEvent(new Event('resize')); // what is laid out by its letters
    try {
      localStorage.setItem(kKey, JSON.stringify(now));
    } catch { /* a browser that keeps nothing */ }
  };
  root.classList.add('comfort');
  const slider = document.createElement('input');
  Object.assign(slider, { type: 'range', min: '10', max: '100', step: '5', value: String(now.bright),
    id: 'brightness' });
  slider.addEventListener('input', () => change({ bright: Number(slider.value) }));
  const label = document.createElement('label');
  label.append('Displays', slider);
  label.title = 'Brightness of the displays';
  slider.setAttribute('aria-label', 'Brightness of the displays');
  root.append(...(hasDisplays ? [label] : []), button('night', 'Dim page'), button('large', 'Larger text'));

  function button(name, text) {
    const made = document.createElement('button');
    made.type = 'button';
    made.id = name;
    made.textContent = text;
    made.setAttribute('aria-pressed', String(now[name]));
    made.addEventListener('click', () => {
      change({ [name]: !now[name] });
      made.setAttribute('aria-pressed', String(now[name]));
    });
    return made;
  }
}
