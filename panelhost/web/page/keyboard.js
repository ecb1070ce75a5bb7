// Hands the keyboard to the simulator: DirectInput scan codes and virtual key codes by physical key.

const kRows = [
  ['Escape', 1, 27],
  ...'1234567890'.split('').map((c, i) => [`Digit${c}`, 2 + i, c.charCodeAt(0)]),
  ['Minus', 12, 189], ['Equal', 13, 187], ['Backspace', 14, 8], ['Tab', 15, 9],
  ...letters('QWERTYUIOP', 16), ['BracketLeft', 26, 219], ['BracketRight', 27, 221],
  ['Enter', 28, 13], ['ControlLeft', 29, 17],
  ...letters('ASDFGHJKL', 30), ['Semicolon', 39, 186], ['Quote', 40, 222], ['Backquote', 41, 192],
  ['ShiftLeft', 42, 16], ['Backslash', 43, 220],
  ...letters('ZXCVBNM', 44), ['Comma', 51, 188], ['Period', 52, 190], ['Slash', 53, 191],
  ['ShiftRight', 54, 16], ['NumpadMultiply', 55, 106], ['AltLeft', 56, 18], ['Space', 57, 32],
  ['CapsLock', 58, 20],
  ...Array.from({ length: 10 }, (_, i) => [`F${i + 1}`, 59 + i, 112 + i]),
  ['Numpad7', 71, 103], ['Numpad8', 72, 104], ['Numpad9', 73, 105], ['NumpadSubtract', 74, 109],
  ['Numpad4', 75, 100], ['Numpad5', 76, 101], ['Numpad6', 77, 102], ['NumpadAdd', 78, 107],
  ['Numpad1', 79, 97], ['Numpad2', 80, 98], ['Numpad3', 81, 99], ['Numpad0', 82, 96],
  ['NumpadDecimal', 83, 110], ['F11', 87, 122], ['F12', 88, 123],
  ['NumpadEnter', 156, 13], ['ControlRight', 157, 17], ['NumpadDivide', 181, 111],
  ['AltRight', 184, 18], ['Home', 199, 36], ['ArrowUp', 200, 38], ['PageUp', 201, 33],
  ['ArrowLeft', 203, 37], ['ArrowRight', 205, 39], ['End', 207, 35], ['ArrowDown', 208, 40],
  ['PageDown', 209, 34], ['Insert', 210, 45], ['Delete', 211, 46],
];

function letters(row, first) {
  return row.split('').map((c, i) => [`Key${c}`, first + i, c.charCodeAt(0)]);
}

const kCodes = new Map(kRows.map(([code, scan, vk]) => [code, { scan, vk }]));

function isBrowsers(event) {
  return event.ctrlKey || event.altKey || event.code === 'Tab' || /^F\d/.test(event.code);
}

// Returns how to take the keyboard without the button. Taken so, what goes with Ctrl, Alt or Tab or a
// function key stays the browser's.
export function makeKeyboard(toggle, send) {
  let on = false;
  let shared = false;
  const set = (next) => {
    on = next;
    shared = shared && on;
    toggle.setAttribute('aria-pressed', String(on));
    document.body.classList.toggle('typing', on);
    if (!on) send({ t: 'keysup' });
  };
  toggle.addEventListener('click', () => {
    set(!on);
    toggle.blur();
  });
  const feed = (event, down) => {
    if (!on) return;
    // Shift and Escape together hand the keyboard back.
    if (down && event.code === 'Escape' && event.shiftKey) {
      event.preventDefault();
      set(false);
      toggle.focus();
      return;
    }
    const code = kCodes.get(event.code);
    if (!code || event.metaKey || (shared && down && isBrowsers(event))) return;
    event.preventDefault();
    event.stopPropagation();
    if (!event.repeat) send({ t: 'key', ...code, down });
  };
  document.addEventListener('keydown', (event) => feed(event, true), true);
  document.addEventListener('keyup', (event) => feed(event, false), true);
  window.addEventListener('blur', () => { if (on) send({ t: 'keysup' }); });
  return () => {
    shared = true;
    set(true);
  };
}
