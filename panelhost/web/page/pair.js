// The QR code on the console carries the pairing code behind the address: it need not be typed.
const code = /^#(\d{8})$/.exec(location.hash);
if (code && document.querySelector('#remark').textContent === '') {
  history.replaceState(null, '', location.pathname);
  document.querySelector('#code').value = code[1];
  document.querySelector('form').requestSubmit();
}
