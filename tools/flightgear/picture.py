#!/usr/bin/env python3
"""Takes docs/pictures/flightgear.png: FlightGear's window beside the panel's page, both showing one
flight. Needs no screen: Xvfb, FlightGear, Chromium and the release build. A Cessna of FlightGear's own
flies from Boston to the west; the panel's page is a browser's."""
import os
import pathlib
import shlex
import socket
import struct
import subprocess
import sys
import tempfile
import time
import urllib.request
import zlib

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = pathlib.Path(os.environ.get("AVQ1_BUILD", ROOT / "build/release"))
WORK = pathlib.Path(os.environ.get("AVQ1_FLIGHTGEAR_WORK", ROOT / "build/flightgear"))
OUT = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else ROOT / "docs/pictures/flightgear.png"
HEIGHT = 640
SCREENS = ((":77", 640), (":78", 860))  # FlightGear's and the browser's, each with its width
PORT, WEB_PORT, TELNET_PORT = 5710, 5780, 5790
LONGEST_START_S = 400
SCALE = 0.6  # of the page
FLOWN_S = 25  # when the picture is taken


def read_framebuffer(path):
    """Rows of RGB bytes of an xwd file with 32 bits a pixel."""
    data = path.read_bytes()
    rows = []
    header = struct.unpack(">25I", data[:100])
    size, width, height, line, colours = header[0], header[4], header[5], header[12], header[19]
    start = size + colours * 12
    for y in range(height):
        row = data[start + y * line:start + y * line + width * 4]
        rgb = bytearray(width * 3)
        rgb[0::3], rgb[1::3], rgb[2::3] = row[2::4], row[1::4], row[0::4]
        rows.append(bytes(rgb))
    return rows


def write_png(path, rows):
    def chunk(kind, body):
        return (struct.pack(">I", len(body)) + kind + body +
                struct.pack(">I", zlib.crc32(kind + body)))

    pixels = b"".join(b"\0" + row for row in rows)
    width = len(rows[0]) // 3
    path.write_bytes(b"\x89PNG\r\n\x1a\n" +
                     chunk(b"IHDR", struct.pack(">2I5B", width, HEIGHT, 8, 2, 0, 0, 0)) +
                     chunk(b"IDAT", zlib.compress(pixels, 9)) + chunk(b"IEND", b""))


def flightgear_elapsed():
    try:
        with socket.create_connection(("127.0.0.1", TELNET_PORT), timeout=5) as link:
            link.sendall(b"data\r\nget /sim/time/elapsed-sec\r\n")
            time.sleep(0.5)
            return float(link.recv(1000).split()[-1])
    except (OSError, ValueError, IndexError):
        return 0


def wait_for(what, is_so):
    end = time.monotonic() + LONGEST_START_S
    while not is_so():
        if time.monotonic() > end:
            sys.exit(f"{what} did not come")
        time.sleep(1)


def page_is_there():
    try:
        return urllib.request.urlopen(f"http://127.0.0.1:{WEB_PORT}/", timeout=2).status == 200
    except OSError:
        return False


def environment(folder, display):
    return dict(os.environ, HOME=str(folder), FG_HOME=str(WORK / "home"), XDG_DATA_HOME=str(folder),
                XDG_RUNTIME_DIR=str(folder), DISPLAY=display, DBUS_FATAL_WARNINGS="0",
                LIBGL_ALWAYS_SOFTWARE="1", vblank_mode="0", PATH=os.environ["PATH"] + ":/usr/games")


def start(folder, started):
    def run(words, log, display=SCREENS[0][0]):
        started.append(subprocess.Popen(words, stdout=open(folder / log, "w"), process_group=0,
                                        stderr=subprocess.STDOUT, env=environment(folder, display)))

    (WORK / "home").mkdir(parents=True, exist_ok=True)
    for display, width in SCREENS:
        (folder / display).mkdir()
        run(["Xvfb", display, "-screen", "0", f"{width}x{HEIGHT}x24", "-nolisten", "tcp", "-fbdir",
             str(folder / display)], "xvfb.log")
    link = ["--sim", ROOT / "demo", "--flightgear-port", str(PORT)]
    line = subprocess.run([BUILD / "avqpanel", *link, "--flightgear-line"], check=True, text=True,
                          capture_output=True, env=environment(folder, "")).stdout
    run([BUILD / "avqpanel", *link, "--module", BUILD / "avq1.gau", "--flightgear", "--port",
         str(WEB_PORT)], "panel.log")
    wait_for("the panel's page", page_is_there)
    display, width = SCREENS[1]
    run(["chromium", "--no-sandbox", "--test-type", "--disable-gpu", "--no-first-run",
         f"--user-data-dir={folder}/web", f"--app=http://127.0.0.1:{WEB_PORT}/",
         "--window-position=0,0", f"--window-size={width / SCALE:.0f},{HEIGHT / SCALE:.0f}",
         f"--force-device-scale-factor={SCALE}"], "chromium.log", display)
    display, width = SCREENS[0]
    run(["fgfs", *shlex.split(line), "--aircraft=c172p", "--lat=42.45", "--lon=-71.4",
         "--altitude=4500", "--heading=290", "--vc=110", "--timeofday=noon", "--disable-sound",
         "--disable-terrasync", "--disable-real-weather-fetch", "--disable-splash-screen",
         "--prop:/sim/rendering/shaders/quality-level=0", "--prop:/sim/menubar/visibility=false",
         f"--geometry={width}x{HEIGHT}", f"--telnet=_,_,20,_,{TELNET_PORT},_"], "fgfs.log")
    wait_for("FlightGear", lambda: flightgear_elapsed() > FLOWN_S)


def picture(folder):
    left, right = (read_framebuffer(folder / display / "Xvfb_screen0") for display, _ in SCREENS)
    return [a + b for a, b in zip(left, right)]


def main():
    started = []
    folder = pathlib.Path(tempfile.mkdtemp(prefix="avq1-picture-"))
    try:
        start(folder, started)
        write_png(OUT, picture(folder))
        print(f"{OUT}: {OUT.stat().st_size // 1024} KB")
    finally:
        for process in reversed(started):
            process.terminate()
        for process in started:
            process.wait()


if __name__ == "__main__":
    main()
