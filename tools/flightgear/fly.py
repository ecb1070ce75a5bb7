#!/usr/bin/env python3
"""Flies AVQ1 in FlightGear without a screen and in the built-in model, by the same scripts, and
compares both with the bounds. Run by `./avq flightgear-test` in a network namespace of its own: only
the loopback is up. Names of flights as arguments fly only those. Exit status 1: a bound was missed."""
import collections
import gzip
import math
import os
import pathlib
import re
import shlex
import shutil
import signal
import socket
import subprocess
import sys
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = pathlib.Path(os.environ.get("AVQ1_BUILD", ROOT / "build/release"))
WORK = pathlib.Path(os.environ.get("AVQ1_FLIGHTGEAR_WORK", ROOT / "build/flightgear"))
PANEL_PORT = 5510  # the panel host's; FlightGear is given the relay's
RELAY_PORT = 5610
TELNET_PORT = 5401
LONGEST_FLIGHT_S = 3000
MOST_FRAME_S = 0.6  # of flight between two frames of FlightGear
EARTH_NM = 3437.7468

# ---- FlightGear and the relay ----


class Relay(threading.Thread):
    """Passes packets both ways between FlightGear and the panel host, until told to drop them."""

    def __init__(self):
        super().__init__(daemon=True)
        self.outward, self.inward = (socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
                                     for _ in range(2))
        self.outward.bind(("127.0.0.1", RELAY_PORT))
        self.inward.bind(("127.0.0.1", PANEL_PORT + 1))
        self.passed = 0
        self.drop_until = 0
        self.drop_from = None  # a test of a state's fields: the loss begins when it holds
        self.drop_s = 5
        self.heard = collections.deque(maxlen=200)  # when the last states came, and their rates
        self.recording = None  # an open file
        self.kinds = collections.Counter()

    def run(self):
        threading.Thread(target=self.pass_controls, daemon=True).start()
        while True:
            packet, _ = self.outward.recvfrom(65536)
            now = time.monotonic()
            if packet.startswith(b"AVQ1-state"):
                self.look_at(Fields(packet), now)
            if now >= self.drop_until:
                self.outward.sendto(packet, ("127.0.0.1", PANEL_PORT))
                self.passed += 1
                self.record(packet, now)

    def record(self, packet, now):
        kind = packet[:8]
        self.kinds[kind] += 1
        if self.recording and self.kinds[kind] % 2 == 1:  # every second one will do
            self.recording.write(b"%.4f " % now + packet)

    def look_at(self, fields, now):
        self.heard.append((now, fields["/sim/speed-up"]))
        if self.drop_from and self.drop_from(fields):
            self.drop_from = None
            self.drop_until = now + self.drop_s

    def pass_controls(self):
        while True:
            packet, _ = self.inward.recvfrom(65536)
            if time.monotonic() >= self.drop_until:
                self.inward.sendto(packet, ("127.0.0.1", RELAY_PORT + 1))

    def frames_per_second(self):
        now = time.monotonic()
        return sum(now - 2 < heard for heard, _ in self.heard) / 2


class Fields:
    """Of a state packet, by property."""
    nodes = {}

    def __init__(self, packet):
        if not Fields.nodes:
            text = (WORK / "data/avqpanel/flightgear/Protocol/avq1-state.xml").read_text()
            Fields.nodes = {node: i for i, node in enumerate(re.findall("<node>(.*?)</node>", text))}
        self.values = packet.split(b"\t")

    def __getitem__(self, node):
        return float(self.values[Fields.nodes[node]] or "nan")


class Governor(threading.Thread):
    """Lowers the rate a script has set, as a pilot at FlightGear's keyboard would, while its frames
    are too few: nobody can steer an aircraft that flies seconds between two looks at it. Raises it
    again when they suffice."""

    def __init__(self, relay):
        super().__init__(daemon=True)
        self.relay = relay
        self.lowest = 99  # rate it had to go down to
        self.running = True

    def run(self):
        asked = own = 0
        while self.running:
            time.sleep(1)
            if not self.relay.heard:
                continue
            told = self.relay.heard[-1][1]
            if told != own:  # not what this thread has set
                asked = own = told
            most = max(self.relay.frames_per_second() * MOST_FRAME_S, 1)
            if told > most:
                own = told / 2
            elif told < asked and told * 3 < most:
                own = told * 2
            if own != told:
                self.lowest = min(self.lowest, own)
                tell_flightgear(f"set /sim/speed-up {own}")
                time.sleep(3)  # until it is told


def tell_flightgear(command):
    with socket.create_connection(("127.0.0.1", TELNET_PORT), timeout=5) as link:
        link.sendall(command.encode() + b"\r\n")


def start_flightgear(home, mapping, options):
    line = subprocess.run([BUILD / "avqpanel", "--sim", ROOT / "demo", "--flightgear-line",
                           "--flightgear-autopilot", mapping, "--flightgear-port", str(RELAY_PORT)],
                          check=True, capture_output=True, text=True).stdout
    log = open(WORK / "fgfs.log", "w")
    words = shlex.split(line)
    return subprocess.Popen([ROOT / "tools/flightgear/fgfs.sh", home, *words, *options], stdout=log,
                            stderr=subprocess.STDOUT, process_group=0)  # no session: it
    # keeps the priority of this run


def stop_flightgear(process):
    try:
        tell_flightgear("run exit")
        process.wait(timeout=30)
    except (OSError, subprocess.TimeoutExpired):
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()


# ---- flights ----

ENGAGE = """event HEADING_BUG_SET {bug}
event AP_HDG_HOLD_ON
event AP_SPD_VAR_SET {speed}
event AP_AIRSPEED_ON
event AP_ALT_HOLD_ON
event AP_ALT_VAR_SET {altitude}
run 1s
"""
COLUMNS = ("avq_act_wpt_id avq_act_wpt_dist avq_lnav_mode avq_vnav_mode heading-bug altitude-target "
           "vs-target airspeed bank nav1-deviation #41 rate")
NAMES = ("time lat lon altitude heading gs ident distance lnav vnav bug target fpm airspeed bank "
         "deviation glideslope rate").split()
PLAN = "click MCU FPLN\nrun 1s\nclick MCU ENTER\nrun 1s\n"
RESTRICTIONS = (("GDM", 2, 16, "climb"), ("GEE", 13, 17, "descent"), ("WELTI", 14, 14, "descent"))


def cross(number, thousands):
    keys = ["CROSS", *["UP"] * thousands, *["NEXT"] * (number - 1), "ENTER"]
    return "".join(f"click MCU {key}\nrun 0.2s\n" for key in keys)


def route_script():
    crossings = "".join(cross(number, thousands) for _, number, thousands, _ in RESTRICTIONS)
    return (ENGAGE.format(bug=300, speed=280, altitude=10000) + PLAN + crossings +
            "click LNAV 25 24\nclick VNAV 25 24\nTRACE\nset rate 16\n"
            "run-until var avq_act_wpt_id = GEE timeout 80m\n"
            "run-until var altitude < 31000 timeout 20m\nset rate 16\n"  # 1 from the top of descent
            "run-until var avq_lnav_mode = 0 timeout 2h\n")


def turn_script():
    return (ENGAGE.format(bug=210, speed=250, altitude=10000) + PLAN +
            "TRACE\nclick LNAV 25 24\nrun 150s\n")


def gns(keys):
    """Keys of the GNS-style unit: L1 to L10 are its line selects, =10 types."""
    words = [part for key in keys.split()
             for part in (key[1:] if key.startswith("=") else [key])]
    return "".join(f"click GNSXLS@4004 {line_select(word)}\nrun 0.5s\n" for word in words)


def line_select(word):
    number = re.fullmatch(r"L(\d+)", word)
    if not number:
        return word
    row, side = divmod(int(number[1]) - 1, 5)[1], "left" if int(number[1]) <= 5 else "right"
    return f'"Line select {row + 1} {side}"'


def hold_script():
    """A hold at the second waypoint: entry, two rounds, left; then direct to the fourth."""
    corners = "".join(f'run-until texts main contains "HOLD({corner})" timeout 20m\n'
                      for corner in ("Xwind", "Dwind", "Base", "Final") * 2)
    return (ENGAGE.format(bug=286, speed=220, altitude=10000) + "window 4004 open\n" + PLAN +
            "click MCU TO\nclick LNAV 25 24\n" + gns("NAV FPL L2 L2 HOLD") +
            'expect texts 4004 contains "AT GDM"\n' + gns("L9 =20 ENTER") +
            "TRACE\nset rate 8\n" + corners + gns("NAV L1 ENTER") +
            "run-until var avq_act_wpt_id = HURLY timeout 20m\n"
            "click MCU DIRTO\nrun 0.5s\nclick MCU EDIT\nrun 0.5s\ntype PUT\nclick MCU ENTER\nrun 1s\n"
            "expect var avq_act_wpt_id = PUT\nrun-until var avq_act_wpt_id != PUT timeout 30m\n")


def approach_script():
    return (ENGAGE.format(bug=314, speed=150, altitude=2200) +
            "event NAV1_RADIO_SET 0x1150\nevent VOR1_SET 314\nevent AP_APR_HOLD_ON\nTRACE\nset rate 4\n"
            "run-until var altitude < 1500 timeout 20m\nevent SIM_RATE_NORMAL\n"
            "run-until var altitude < 210 timeout 20m\n")


FLIGHTS = {
    "route": (["--lat=42.3895", "--lon=-71.1381", "--altitude=10000", "--heading=286", "--vc=250",
               "--wind=260@30"], route_script),
    "loss": (["--lat=42.3895", "--lon=-71.1381", "--altitude=10000", "--heading=196", "--vc=250",
              "--wind=260@30"], turn_script),
    "hold": (["--lat=42.47", "--lon=-71.5", "--altitude=10000", "--heading=286", "--vc=220",
              "--wind=260@30"], hold_script),
    "approach": (["--lat=40.5554", "--lon=-73.5647", "--altitude=2200", "--heading=300.9",
                  "--vc=160", "--wind=320@10", "--prop:/controls/flight/flaps=1",
                  "--prop:/controls/gear/gear-down=1", "--prop:/sim/fuel-fraction=0.2",
                  "--prop:/autopilot/settings/target-altitude-ft=2200",
                  "--prop:/autopilot/locks/altitude=altitude-hold",
                  "--prop:/autopilot/locks/heading=wing-leveler"], approach_script),
}
RECORDED = (["--lat=37.5511", "--lon=-122.2084", "--altitude=2600", "--heading=297.9", "--vc=160",
             "--wind=280@12", "--ai-scenario=lead_aircraft",
             "--prop:/controls/flight/flaps=1", "--prop:/controls/gear/gear-down=1",
             "--prop:/sim/fuel-fraction=0.2", "--prop:/autopilot/settings/target-altitude-ft=2600",
             "--prop:/autopilot/locks/altitude=altitude-hold",
             "--prop:/autopilot/locks/heading=wing-leveler"],
            ENGAGE.format(bug=284, speed=150, altitude=2600) + "run 6s\n"
            "event NAV1_RADIO_SET 0x1170\nevent VOR1_SET 284\nevent NAV2_RADIO_SET 0x1580\n"
            "event ADF_SET 0x379\nevent BAROMETRIC\nrun 6s\nevent AP_APR_HOLD_ON\nrun 12s\n"
            "event PAUSE_TOGGLE\nrun 2s\nevent PAUSE_TOGGLE\nset rate 2\nrun 10s\n"
            "event SIM_RATE_NORMAL\nevent HEADING_BUG_SET 250\nevent AP_HDG_HOLD_ON\n"
            "event AP_ALT_VAR_SET 3000\nrun 10s\n")
DIRECT_TO = (41.95548, -71.84413)  # PUT
PLACES = {
    "route": "set position 42.3895 -71.1381\nset heading-true 286\nset altitude 10000\n"
             "set speed 250\nset wind 260 30\n",
    "loss": "set position 42.3895 -71.1381\nset heading-true 196\nset altitude 10000\n"
            "set speed 250\nset wind 260 30\n",
    "hold": "set position 42.47 -71.5\nset heading-true 286\nset altitude 10000\n"
            "set speed 220\nset wind 260 30\n",
    "approach": "set position 40.5554 -73.5647\nset heading-true 300.9\nset altitude 2200\n"
                "set speed 160\nset wind 320 10\n",
}


def fly(name, relay):
    """Flies one script, in FlightGear behind the relay or, without one, in the built-in model; gives
    its samples and the host's exit status."""
    folder = WORK / f"{name}-{'flightgear' if relay else 'built-in'}"  # its trace stays there
    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(ROOT / "demo", folder / "sim")
    for script in ("start.script", "autostart.script"):
        (folder / "sim" / script).unlink()
    text = FLIGHTS[name][1]().replace("TRACE", f"trace {folder}/flight.trace every 0.25s {COLUMNS}")
    if relay:
        engaged = any("/autopilot/locks" in option for option in FLIGHTS[name][0])
        master = "" if engaged else "event AP_MASTER\n"
        text = "frame-rate 25\nrun-until var time > 4 timeout 20m\n" + master + text
    else:
        text = "frame-rate 4\n" + PLACES[name] + re.sub(r"set rate \d+\n", "", text)
    (folder / "flight.script").write_text(text)
    arguments = [BUILD / "avqpanel", "--module", BUILD / "avq1.gau", "--sim", folder / "sim",
                 "--script", folder / "flight.script"]
    mapping = ROOT / "demo/flightgear/generic.json"
    if relay:
        arguments += ["--flightgear", "--flightgear-autopilot", mapping]
        home = WORK / "home"
        home.mkdir(mode=0o700, exist_ok=True)
        simulator = start_flightgear(home, mapping, FLIGHTS[name][0])
        relay.heard.clear()
        governor = Governor(relay)
        governor.start()
    try:
        began = time.monotonic()
        done = subprocess.run(arguments, capture_output=True, text=True, timeout=LONGEST_FLIGHT_S)
        print(f"   {name}, {'FlightGear' if relay else 'built in'}: "
              f"{time.monotonic() - began:.0f} s {done.stderr.strip()}", flush=True)
    finally:
        if relay:
            governor.running = False
            governor.join()
            stop_flightgear(simulator)
            if governor.lowest < 99:
                print(f"   rate lowered to {governor.lowest:g}: too few frames", flush=True)
    trace = folder / "flight.trace"
    samples = []
    for line in trace.read_text().splitlines()[1:] if trace.exists() else []:
        row = dict(zip(NAMES, line.split(" ")))  # an empty name is one
        samples.append({key: value if key == "ident" else float(value)
                        for key, value in row.items()})
    return samples, done.returncode


# ---- judging, by this file's own great circles ----


def distance(a, b):
    (lat1, lon1), (lat2, lon2) = [(math.radians(p[0]), math.radians(p[1])) for p in (a, b)]
    h = (math.sin((lat2 - lat1) / 2) ** 2 +
         math.cos(lat1) * math.cos(lat2) * math.sin((lon2 - lon1) / 2) ** 2)
    return 2 * math.asin(math.sqrt(h)) * EARTH_NM


def course(a, b):
    (lat1, lon1), (lat2, lon2) = [(math.radians(p[0]), math.radians(p[1])) for p in (a, b)]
    return math.atan2(math.sin(lon2 - lon1) * math.cos(lat2),
                      math.cos(lat1) * math.sin(lat2) -
                      math.sin(lat1) * math.cos(lat2) * math.cos(lon2 - lon1))


def cross_track(start, end, at):
    return math.asin(math.sin(distance(start, at) / EARTH_NM) *
                     math.sin(course(start, at) - course(start, end))) * EARTH_NM


def angle(radians):
    return math.remainder(radians, 2 * math.pi)


def plan():
    text = (ROOT / "demo/avq/FlightPlans/KBOSKBUF.RTE").read_text("latin-1")
    rows = [line.split() for line in text[text.index("[FlightPlan]"):].splitlines()[1:]]
    return [(row[0], (float(row[1]), float(row[2]))) for row in rows if len(row) >= 3]


def place(sample):
    return (sample["lat"], sample["lon"])


def legs_of(samples):
    legs = []
    for sample in samples:
        if sample["lnav"] != 1:
            continue
        if not legs or legs[-1][0] != sample["ident"]:
            legs.append((sample["ident"], []))
        legs[-1][1].append(sample)
    return legs


def leg_errors(samples):
    """(largest after capture, largest on the second half) of every leg, nm; captured in time."""
    points = dict(plan())
    names = [name for name, _ in plan()]
    rows = []
    for i, (ident, flown) in enumerate(legs_of(samples)):
        start = place(flown[0]) if i == 0 else points[names[names.index(ident) - 1]]
        errors = [abs(cross_track(start, points[ident], place(at))) for at in flown]
        captured = next((k for k, error in enumerate(errors) if error < 0.2), len(errors))
        rows.append((ident, max(errors[captured:] or [9]), max(errors[len(errors) // 2:]),
                     captured < len(errors) / 2))
    return rows


def judge_route(samples):
    rows = leg_errors(samples)
    points = dict(plan())
    result = [("legs flown in order", len(rows), 15, 15),
              ("legs captured in their first half", sum(row[3] for row in rows), len(rows), 99),
              # Turns of 56 and 74 degrees at 455 kt: FlightGear's generic autopilot banks to 20 degrees,
              # the built-in one to 25, whose bound is 1.0.
              ("largest error after capture, nm", max(row[1] for row in rows), 0, 1.6),
              ("largest error on a second half, nm", max(row[2] for row in rows), 0, 0.45)]
    for ident, _, thousands, kind in RESTRICTIONS:
        towards = [sample for sample in samples if sample["ident"] == ident]
        nearest = min(samples, key=lambda s: distance(place(s), points[ident]))
        at = towards[-1] if kind == "climb" else nearest
        result.append((f"{ident}, restricted to {thousands}000 ft, off by ft",
                       abs(at["altitude"] - thousands * 1000), 0, 200))
    return result


def judge_loss(samples):
    silent = [b for a, b in zip(samples, samples[1:]) if b["time"] - a["time"] > 3]
    bank = max((abs(sample["bank"]) for sample in silent), default=0)
    gap = max(b["time"] - a["time"] for a, b in zip(samples, samples[1:]))
    return [("longest silence, s of flight", gap, 4, 8),
            ("bank when the link came back, degrees", bank, 5, 30),
            ("heading off LNAV's command two minutes later, degrees",
             abs(samples[-1]["heading"] - samples[-1]["bug"]), 0, 3)]


def judge_hold(samples):
    """Of a hold at GDM with two rounds, and of the way direct to PUT from there."""
    fix = dict(plan())["GDM"]
    away = [distance(place(s), fix) for s in samples]
    passes = [b for a, b, c in zip(away, away[1:], away[2:]) if a > b <= c and b < 2]
    rounds = [d for s, d in zip(samples, away) if s["ident"] == "GDM"]
    rounds = rounds[rounds.index(min(rounds[:len(rounds) // 2])):]
    direct = [s for s in samples if s["ident"] == "PUT"]
    line = course(place(direct[0]), DIRECT_TO)
    turned = next(s for s in direct if abs(angle(math.radians(s["heading"]) - line)) < 0.2)
    errors = [abs(cross_track(place(turned), DIRECT_TO, place(s)))
              for s in direct[direct.index(turned):]]
    return [("passes of the fix: entry and two rounds", len(passes), 3, 3),
            ("farthest off the fix, nm", max(rounds), 0, 11),
            ("off the fix when passing it, nm", max(passes), 0, 1.0),
            ("direct to PUT: turned to it after s", turned["time"] - direct[0]["time"], 0, 90),
            ("direct to PUT: largest error from there, nm", max(errors), 0, 2.0)]


def judge_approach(samples):
    below = [s for s in samples if s["altitude"] < 1010]
    return [("lowest, ft above the runway", min(s["altitude"] for s in samples) - 10, 0, 205),
            ("localizer below 1000 ft, of 127", max(abs(s["deviation"]) for s in below), 0, 32),
            ("glideslope below 1000 ft, of 120", max(abs(s["glideslope"]) for s in below), 0, 60)]


def record(relay, name):
    """Flies the recorded flight and writes every second packet that FlightGear sent: the panel host's
    clock in seconds, a blank, the packet."""
    options, script = RECORDED
    FLIGHTS["recorded"] = (options, lambda: script)
    with gzip.open(name, "wb") as relay.recording:
        fly("recorded", relay)
    relay.recording = None


JUDGES = {"route": judge_route, "loss": judge_loss, "hold": judge_hold, "approach": judge_approach}


def main():
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
    WORK.mkdir(parents=True, exist_ok=True)
    os.environ["XDG_DATA_HOME"] = str(WORK / "data")
    relay = Relay()
    relay.start()
    if sys.argv[1:2] == ["--record"]:
        record(relay, sys.argv[2])
        return 0
    missed = 0
    lines = ["| flight | figure | FlightGear | built in | bound |", "|---|---|---|---|---|"]
    for name in sys.argv[1:] or FLIGHTS:
        if name == "loss":  # in LNAV's turn to the right
            relay.drop_from = lambda fields: fields["/orientation/roll-deg"] > 15
        live, status = fly(name, relay)
        built_in, _ = fly(name, None)
        missed += status != 0
        if not live or not built_in:
            print(f"{name}: no samples")
            missed += 1
            continue
        for mine, other in zip(JUDGES[name](live), JUDGES[name](built_in)):
            what, value, least, most = mine
            missed += not least <= value <= most
            lines.append(f"| {name} | {what} | {value:.2f} | {other[1]:.2f} | "
                         f"{least:g} to {most:g} |")
            print(lines[-1], flush=True)
    (WORK / "figures.md").write_text("\n".join(lines) + "\n")
    print(f"{relay.passed} packets passed; {missed} bounds missed")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
