// The plain list of everything that can stand on a screen of its own.

const kMost = 12;

export function listDisplays(root, displays) {
  const windows = displays.filter(({ gauge }) => !gauge);
  const gauges = displays.filter(({ gauge }) => gauge);
  const chosen = new Set();
  const together = document.createElement('a');
  together.className = 'together';

  function showChosen() {
    const names = [...chosen].slice(0, kMost);
    together.hidden = names.length < 2;
    together.href = `/show/${names.map(encodeURIComponent).join('+')}`;
    together.textContent = `Open the ${names.length} marked on one page`;
  }

  function entry({ name, title, gauge }) {
    const item = document.createElement('li');
    const mark = document.createElement('input');
    mark.type = 'checkbox';
    mark.setAttribute('aria-label', `Mark ${title}`);
    mark.addEventListener('change', () => {
      if (mark.checked) chosen.add(name);
      else chosen.delete(name);
      showChosen();
    });
    const link = document.createElement('a');
    link.href = `/show/${encodeURIComponent(name)}`;
    const isNamed = title.replaceAll(' ', '_') !== name;
    link.textContent = !gauge ? title : isNamed ? `${name} \u2013 ${title}` : name;
    item.append(mark, link);
    return item;
  }

  function group(heading, list) {
    const title = document.createElement('h3');
    title.textContent = heading;
    const items = document.createElement('ul');
    items.append(...list.map(entry));
    return [title, items];
  }

  root.replaceChildren(...group('Windows of the panel', windows), ...group('Gauges', gauges), together);
  showChosen();
}
