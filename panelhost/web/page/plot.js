// Line plots: lines over one axis from left to right, each against its own scale at the side.

const kNamespace = 'http://www.w3.org/2000/svg';
const kHeight = 240;
const kMargin = { left: 52, right: 46, top: 30, bottom: 22 }; // for letters of the usual size
const kLetterWidth = 6.5;
const kLetterSize = 11;

// Keeps the plot as wide as its place: `draw` is called with a board whenever that changes, and by
// the function returned.
export function makePlot(svg, draw) {
  const redraw = () => {
    const width = Math.max(svg.clientWidth, 240);
    svg.setAttribute('viewBox', `0 0 ${width} ${kHeight}`);
    svg.replaceChildren();
    draw(makeBoard(svg, width, parseFloat(getComputedStyle(svg).fontSize) / kLetterSize));
  };
  new ResizeObserver(redraw).observe(svg);
  window.addEventListener('resize', redraw); // its letters may have another size
  return redraw;
}

function makeBoard(svg, width, size) {
  const left = kMargin.left * size;
  const right = width - kMargin.right * size;
  const top = kMargin.top * size;
  const bottom = kHeight - kMargin.bottom * size;
  const add = (name, attributes, text = '') => {
    const made = document.createElementNS(kNamespace, name);
    for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
    made.textContent = text;
    svg.append(made);
    return made;
  };
  return {
    add,
    // A scale from low to high value; steps are round numbers, at most `most` of them.
    across: (low, high) => makeScale(low, high, left, right, Math.max(2, Math.floor((right - left) / 90 / size))),
    upward: (low, high) => makeScale(low, high, bottom, top, 5),
    axisBelow(scale, format) {
      for (const value of scale.steps) {
        add('text', { x: scale.at(value), y: bottom + 16 * size, 'text-anchor': 'middle' }, format(value));
      }
    },
    // side 'first' stands left with lines across, 'second' right.
    axisBeside(scale, side, unit) {
      for (const value of scale.steps) {
        const y = scale.at(value);
        if (side === 'first') add('line', { class: 'grid', x1: left, x2: right, y1: y, y2: y });
        add('text', { class: side, x: side === 'first' ? left - 6 : right + 6, y: y + 4 * size,
          'text-anchor': side === 'first' ? 'end' : 'start' }, thousands(value));
      }
      add('text', { class: side, x: side === 'first' ? left - 6 : right + 6, y: top - 10,
        'text-anchor': side === 'first' ? 'end' : 'start' }, unit);
    },
    line(points, x, y, kind) {
      add('polyline', { class: `line ${kind}`, points: points.map(([a, b]) =>
        `${x.at(a).toFixed(1)},${y.at(b).toFixed(1)}`).join(' ') });
    },
    // Upright marks with a word on top, as far as the words find room; the first ones have it first.
    marks(list, x) {
      const taken = [];
      for (const [value, word] of list) {
        const at = x.at(value);
        const length = word.length * kLetterWidth * size + 8;
        const before = at + length > right; // the word stands before its mark
        const [start, end] = before ? [at - length, at] : [at, at + length];
        add('line', { class: 'mark', x1: at, x2: at, y1: top, y2: bottom });
        if (start < left || taken.some(([from, to]) => start < to && from < end)) continue;
        add('text', { x: before ? at - 2 : at + 2, y: top - 10,
          'text-anchor': before ? 'end' : 'start' }, word);
        taken.push([start, end]);
      }
    },
  };
}

function makeScale(low, high, from, to, most) {
  const span = Math.max(high - low, 1e-9);
  const rough = span / most;
  const power = 10 ** Math.floor(Math.log10(rough));
  const step = [1, 2, 5, 10].map((n) => n * power).find((size) => size >= rough);
  const steps = [];
  for (let value = Math.ceil(low / step) * step; value <= high + step * 1e-6; value += step) {
    steps.push(value);
  }
  return { steps, at: (value) => from + (value - low) / span * (to - from) };
}

export function thousands(number) {
  return Math.round(number).toLocaleString('en').replace(/,/g, ' ').replace('-', '−');
}
