// The socket to the host: reconnects by itself with growing pauses and says how it stands.

const kFirstPauseMs = 500;
const kLongestPauseMs = 8000;
const kSilenceMs = 6000; // status comes several times a second; a silent link is a dead one

// Why nothing is heard of the aircraft: told while the displays flag what they lack.
export function showTrouble(line, text) {
  line.hidden = text === '';
  if (line.textContent !== text) line.textContent = text;
}

export function openLink({ onMessage, onPicture, onState }) {
  let socket = null;
  let pauseMs = kFirstPauseMs;
  let lastHeard = 0;
  let timer = 0;
  let everOpen = false;

  function retry() {
    const seconds = Math.max(1, Math.round(pauseMs / 1000));
    onState('lost', everOpen
      ? `Link lost. Trying again in ${seconds} s`
      : `No answer from the panel host. Trying again in ${seconds} s`);
    clearTimeout(timer);
    timer = setTimeout(connect, pauseMs * (0.8 + 0.4 * Math.random()));
    pauseMs = Math.min(kLongestPauseMs, pauseMs * 1.7);
  }

  function connect() {
    clearTimeout(timer);
    onState('waiting', everOpen ? 'Reconnecting…' : 'Connecting…');
    // A page opened to look only says so.
    const look = location.search === '?look' ? '?look' : '';
    const own = new WebSocket(`ws://${location.host}/socket${look}`);
    own.binaryType = 'arraybuffer';
    socket = own;
    lastHeard = performance.now();
    let heard = false;
    own.onmessage = (event) => {
      if (socket !== own) return;
      heard = true;
      lastHeard = performance.now();
      if (typeof event.data !== 'string') {
        onPicture(event.data);
        return;
      }
      const message = JSON.parse(event.data);
      if (message.t === 'hello') {
        everOpen = true;
        pauseMs = kFirstPauseMs;
        onState('open', 'Connected');
      }
      onMessage(message);
    };
    own.onclose = () => {
      if (socket !== own) return;
      socket = null;
      retry();
      if (!heard) pairAgain();
    };
  }

  // A host that was started anew on a network address wants its new pairing code first.
  function pairAgain() {
    fetch(location.pathname, { method: 'HEAD' }).then(({ status }) => {
      if (status === 401) location.reload();
    }, () => {});
  }

  function hangUp() {
    const own = socket;
    socket = null;
    if (own) own.close();
    retry();
  }

  setInterval(() => {
    if (socket && performance.now() - lastHeard > kSilenceMs && !document.hidden) hangUp();
  }, 1000);
  document.addEventListener('visibilitychange', () => {
    lastHeard = performance.now();
    if (!document.hidden && !socket) connect();
  });
  window.addEventListener('online', () => { if (!socket) connect(); });
  connect();

  return {
    send(message) {
      if (socket && socket.readyState === WebSocket.OPEN) {
        socket.send(JSON.stringify(message));
        return true;
      }
      return false;
    },
  };
}
