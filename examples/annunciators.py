#!/usr/bin/env python3
"""A cockpit's encoder and annunciators, with nothing but Python's standard library.

Reads steps of a rotary encoder from standard input, one number a line ("1", "-3"), and turns a knob
with them; a line with a word presses the key of that name. Prints every light of the gauges named
when it changes, and every key event.

    examples/annunciators.py --knob EFS50_EHSI_CNTR:HDG --lights LNAV,VNAV,MCU
    examples/annunciators.py --host 192.168.1.5 --code 1234-5678      (once; prints a token)
    examples/annunciators.py --host 192.168.1.5 --token TOKEN ...
"""
import argparse
import base64
import http.client
import json
import os
import socket
import struct
import sys
import threading


class PanelSocket:
    """The panel host's WebSocket: JSON texts both ways, as docs/api.md has them."""

    def __init__(self, host, port, token, look):
        self.socket = socket.create_connection((host, port), timeout=60)
        self.pending = b""
        self.lock = threading.Lock()
        lines = [f"GET /socket{'?look' if look else ''} HTTP/1.1", f"Host: {host}:{port}",
                 "Connection: Upgrade", "Upgrade: websocket", "Sec-WebSocket-Version: 13",
                 "Sec-WebSocket-Key: " + base64.b64encode(os.urandom(16)).decode()]
        if token:
            lines.append(f"Authorization: Bearer {token}")
        self.socket.sendall(("\r\n".join(lines) + "\r\n\r\n").encode())
        while b"\r\n\r\n" not in self.pending:
            self.pending += self.read_some()
        head, _, self.pending = self.pending.partition(b"\r\n\r\n")
        if b" 101 " not in head.split(b"\r\n")[0]:
            raise ConnectionError(head.split(b"\r\n")[0].decode())

    def read_some(self):
        data = self.socket.recv(65536)
        if not data:
            raise ConnectionError("the panel host closed the connection")
        return data

    def take(self, count):
        while len(self.pending) < count:
            self.pending += self.read_some()
        data, self.pending = self.pending[:count], self.pending[count:]
        return data

    def write_frame(self, opcode, body):
        length = (bytes([0x80 | len(body)]) if len(body) < 126
                  else bytes([0x80 | 126]) + struct.pack(">H", len(body)))
        mask = os.urandom(4)
        coded = bytes(byte ^ mask[i % 4] for i, byte in enumerate(body))
        with self.lock:
            self.socket.sendall(bytes([0x80 | opcode]) + length + mask + coded)

    def send(self, message):
        self.write_frame(1, json.dumps(message).encode())

    def receive(self):
        """The next message; answers pings and skips pictures."""
        while True:
            first, length = self.take(2)
            if length == 126:
                length = struct.unpack(">H", self.take(2))[0]
            elif length == 127:
                length = struct.unpack(">Q", self.take(8))[0]
            body = self.take(length)
            if first & 15 == 1:
                return json.loads(body)
            if first & 15 == 9:
                self.write_frame(10, body)
            if first & 15 == 8:
                raise ConnectionError("the panel host closed the connection")


def pair(host, port, code):
    connection = http.client.HTTPConnection(host, port, timeout=10)
    connection.request("POST", "/api/1/pair", body=code)
    answer = json.loads(connection.getresponse().read())
    if "token" not in answer:
        raise ConnectionError(answer["problem"])
    return answer["token"]


def obey_input(panel, knob):
    gauge, key = knob.split(":", 1)
    for line in sys.stdin:
        word = line.strip()
        if not word:
            continue
        try:
            panel.send({"t": "turn", "gauge": gauge, "key": key,
                        "steps": max(-50, min(50, int(word)))})
        except ValueError:
            panel.send({"t": "press", "gauge": gauge, "key": word})


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--host", default="127.0.0.1")
    parser.add_argument("--port", type=int, default=8737)
    parser.add_argument("--knob", default="EFS50_EHSI_CNTR:HDG", help="GAUGE:KEY to turn")
    parser.add_argument("--lights", default="LNAV,VNAV,MCU", help="gauges whose lights to print")
    parser.add_argument("--code", help="pair with this code, print the token and end")
    parser.add_argument("--token", help="of an earlier pairing")
    parser.add_argument("--look", action="store_true", help="touch nothing")
    options = parser.parse_args()
    if options.code:
        print(pair(options.host, options.port, options.code))
        return
    panel = PanelSocket(options.host, options.port, options.token, options.look)
    panel.send({"t": "subscribe", "gauges": options.lights.split(","), "events": True})
    threading.Thread(target=obey_input, args=(panel, options.knob), daemon=True).start()
    lit = {}
    while True:
        message = panel.receive()
        if message["t"] == "gauge":
            for name, on in message["lamps"].items():
                light = f"{message['gauge']} {name}"
                if lit.get(light) != on:
                    lit[light] = on
                    print(f"{light} {'on' if on else 'off'}", flush=True)
        elif message["t"] == "events":
            for event in message["events"]:
                print(f"event {event['name']} {event['value']}", flush=True)
        elif message["t"] == "error":
            print(f"problem: {message['problem']}", flush=True)


if __name__ == "__main__":
    try:
        main()
    except (ConnectionError, OSError) as problem:
        sys.exit(f"annunciators: {problem}")
    except KeyboardInterrupt:
        pass
