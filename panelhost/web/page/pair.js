import { makeComfort } from '/comfort.js';

// The QR code on the console carries the pairing code behind the address: it need not be typed.
function takeCode() {
  const code = /^#(\d{8})$/.exec(location.hash);
  if (!code || document.querySelector('#remark').textContent !== '') return;
  history.replaceState(null, '', location.pathname);
  document.querySelector('#code').value = code[1];
  document.querySelector('form').requestSubmit();
}

makeComfort(document.querySelector('#comfort'), { hasDisplays: false });
window.addEventListener('hashchange', takeCode); // read by the camera while this page was open
takeCode();
