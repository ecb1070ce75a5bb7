#!/usr/bin/env python3
"""Writes the demo region's navigation data and flight plans from public-domain sources.

    tools/demo_data.py SOURCES DEMO          read SOURCES/{cifp,nasr,ourairports}, write DEMO/avq
    tools/demo_data.py --check DEMO          read DEMO back the way the module does and judge it

Positions are decimal degrees, north and east positive; lengths and elevations feet, distances
nautical miles. The output depends on the sources alone: same sources, same bytes. A source that
is missing ends the run with one line and status 1. Python 3 standard library only.
"""

import argparse
import csv
import datetime
import gzip
import math
import pathlib
import re
import sys
import unicodedata
from collections import defaultdict, namedtuple

# Region: United States north-east and the Canadian border country.
SOUTH, NORTH, WEST, EAST = 38.0, 48.0, -84.0, -66.0
NM_PER_RADIAN = 3437.7467707849396
FEET_PER_NM = 6076.12
MIN_AIRPORT_RUNWAY_FT = 4000  # an airport is listed for a paved runway at least this long
MAX_RUNWAYS = 20              # tokens per airport line that the module reads
VOR_TYPES = {"VOR", "VOR/DME", "VORTAC", "VOR-DME"}
NDB_TYPES = {"NDB", "NDB/DME", "NDB-DME"}
DME_TYPES = {"DME", "TACAN"}  # no bearing for the radios: listed as fixes
PAVED = ("ASP", "CON", "PEM", "BIT", "MAC")
AIRAC_EPOCH = datetime.date(2023, 1, 26)  # first day of cycle 2301

Point = namedtuple("Point", "ident kind latitude longitude name frequency", defaults=("", ""))
Threshold = namedtuple("Threshold", "designator lengthFt latitude longitude headingMag")
Localizer = namedtuple(
    "Localizer",
    "ident frequency latitude longitude courseMag courseTrue glideDeg elevationFt airport runway"
    " antennaLatitude antennaLongitude")

# The plans: file name, key lines, and the waypoints as identifier, type, airway flown to it.
PLANS = {
    "KBOSKBUF.RTE": (
        ("CruiseAlt=32000", "TripFuel=6900", "ResvFuel=4800"),
        """KBOS APT; BRONC INT; GDM VOR T608; HURLY INT T608; WARIC INT T608; GRISY INT T608;
        GRAVE INT T608; WARUV INT T608; ALB VOR T608; HNK VOR J49; BUFFY INT J49; CFB VOR J95;
        ULW VOR V270; GEE VOR V147; WELTI INT V252; KBUF APT"""),
    "KPITKJFK.RTE": (
        ("CruiseAlt=31000", "TripFuel=7600", "ResvFuel=5100"),
        """KPIT APT; AVERE INT; JST VOR J152; MIROY INT J152; COFAX INT J152; LOMON INT J152;
        HAR VOR J152; FAMAV INT V184; DELRO INT V184; ROAST INT V184; GEERI INT V184; PADRE INT V184; MXE VOR V184;
        EKSEW INT V184; OOD VOR V184; VCN VOR V184; ACY VOR V184; PANZE INT V184; KARRS INT V44;
        CAMRN INT V44; ZETAL INT; EBBEE INT; KJFK APT"""),
}


def InRegion(latitude, longitude):
    return SOUTH <= latitude <= NORTH and WEST <= longitude <= EAST


def DistanceNm(a, b):
    lat1, lat2 = math.radians(a.latitude), math.radians(b.latitude)
    half = math.radians(b.longitude - a.longitude) / 2
    h = math.sin((lat2 - lat1) / 2) ** 2 + math.cos(lat1) * math.cos(lat2) * math.sin(half) ** 2
    return 2 * NM_PER_RADIAN * math.asin(min(1.0, math.sqrt(h)))


def CourseTrue(a, b):
    lat1, lat2 = math.radians(a.latitude), math.radians(b.latitude)
    dlon = math.radians(b.longitude - a.longitude)
    y = math.sin(dlon) * math.cos(lat2)
    x = math.cos(lat1) * math.sin(lat2) - math.sin(lat1) * math.cos(lat2) * math.cos(dlon)
    return math.degrees(math.atan2(y, x)) % 360


def TurnDeg(first, second):
    return (second - first + 180) % 360 - 180


# ---------------------------------------------------------------- reading the sources

def ReadCsv(path, encoding):
    with gzip.open(path, "rt", encoding=encoding, newline="") as file:
        return list(csv.DictReader(file))


def ReadCifp(folder):
    """All coded-procedure records, newest survey last, so that later records overwrite."""
    lines = []
    paths = sorted(folder.glob("*.pc*"))
    if not paths:
        raise FileNotFoundError("no coded-procedure file (*.pc) in %s" % folder)
    for path in paths:
        opener = gzip.open if path.suffix == ".gz" else open
        with opener(path, "rt", encoding="latin-1") as file:
            lines += [line.rstrip("\r\n") for line in file if len(line) > 130]
    return sorted(lines, key=lambda line: (line[128:132], line))


def CifpAngle(text):
    """Hddmmsscc or Hdddmmsscc to degrees; None when blank."""
    text = text.strip()
    if len(text) < 9:
        return None
    degreeDigits = len(text) - 7
    degrees = int(text[1:1 + degreeDigits])
    minutes = int(text[1 + degreeDigits:3 + degreeDigits])
    seconds = int(text[3 + degreeDigits:]) / 100
    value = degrees + minutes / 60 + seconds / 3600
    return -value if text[0] in "SW" else value


def CifpVariation(text):
    """W0130 to -13.0 (east positive); None when blank."""
    if len(text) != 5 or text[0] not in "EW" or not text[1:].isdigit():
        return None
    value = int(text[1:]) / 10
    return -value if text[0] == "W" else value


def CifpWaypoints(cifp):
    """Waypoints with their magnetic variation: (point, variation or None)."""
    for line in cifp:
        section = line[4:6] if line[4] == "E" else line[4] + line[12]
        if section not in ("EA", "PC") or line[21] not in "01 ":
            continue
        latitude, longitude = CifpAngle(line[32:41]), CifpAngle(line[41:51])
        if latitude is None or longitude is None:
            continue
        yield Point(line[13:18].strip(), "INT", latitude, longitude), CifpVariation(line[74:79])


def CifpRunways(cifp):
    """Landing thresholds by (airport, designator)."""
    runways = {}
    for line in cifp:
        if line[4] != "P" or line[12] != "G" or line[13:15] != "RW" or line[21] not in "01 ":
            continue
        latitude, longitude = CifpAngle(line[32:41]), CifpAngle(line[41:51])
        if latitude is None or not line[27:31].strip().isdigit():
            continue
        airport, designator = line[6:10].strip(), line[15:18].strip()
        runways[airport, designator] = Threshold(designator, int(line[22:27]), latitude, longitude,
                                                 int(line[27:31]) / 10)
    return runways


def CifpLocalizers(cifp, runways):
    """Localizers that have a glideslope, by (airport, runway), placed at the runway's threshold.

    The published true course is off by what the station's variation, a whole degree, is off. The
    course from threshold to antenna is exact, unless the localizer is offset from its runway.
    """
    found = {}
    for line in cifp:
        if line[4] != "P" or line[12] != "I" or line[21] not in "01 ":
            continue
        glide, variation = line[87:90].strip(), CifpVariation(line[90:95])
        latitude, longitude = CifpAngle(line[32:41]), CifpAngle(line[41:51])
        airport, runway = line[6:10].strip(), line[29:32].strip()
        threshold = runways.get((airport, runway))
        if None in (latitude, longitude, variation, threshold) or not glide or not int(glide):
            continue
        if not InRegion(latitude, longitude):
            continue
        courseMag = int(line[51:55]) / 10
        courseTrue = (courseMag + variation) % 360
        alongRunway = CourseTrue(threshold, Point("", "", latitude, longitude))
        if abs(TurnDeg(courseTrue, alongRunway)) < 0.5:
            courseTrue = alongRunway
        found[airport, runway] = Localizer(
            line[13:17].strip(), "%.2f" % (int(line[22:27]) / 100), threshold.latitude,
            threshold.longitude, courseMag, courseTrue, int(glide) / 100, int(line[97:102]),
            airport, runway, latitude, longitude)
    return found


# ---------------------------------------------------------------- magnetic variation

def SolveLinear(matrix, right):
    """Gaussian elimination with pivoting."""
    size = len(right)
    rows = [list(matrix[i]) + [right[i]] for i in range(size)]
    for column in range(size):
        pivot = max(range(column, size), key=lambda i: abs(rows[i][column]))
        rows[column], rows[pivot] = rows[pivot], rows[column]
        for i in range(column + 1, size):
            factor = rows[i][column] / rows[column][column]
            rows[i] = [a - factor * b for a, b in zip(rows[i], rows[column])]
    solution = [0.0] * size
    for i in reversed(range(size)):
        rest = sum(rows[i][j] * solution[j] for j in range(i + 1, size))
        solution[i] = (rows[i][size] - rest) / rows[i][i]
    return solution


def VariationTerms(latitude, longitude):
    north, east = latitude - 43.0, longitude + 75.0
    return (1.0, north, east, north * north, north * east, east * east)


class VariationModel:
    """Variation over the region: least-squares quadratic through the waypoints' own values."""

    def __init__(self, cifp):
        samples = {(p.latitude, p.longitude): v for p, v in CifpWaypoints(cifp)
                   if v is not None and SOUTH - 4 <= p.latitude <= NORTH + 4
                   and WEST - 4 <= p.longitude <= EAST + 4}
        size = len(VariationTerms(0, 0))
        matrix = [[0.0] * size for _ in range(size)]
        right = [0.0] * size
        for (latitude, longitude), value in sorted(samples.items()):
            terms = VariationTerms(latitude, longitude)
            for i in range(size):
                right[i] += terms[i] * value
                for j in range(size):
                    matrix[i][j] += terms[i] * terms[j]
        self.coefficients = SolveLinear(matrix, right)
        self.samples = len(samples)
        errors = [self.At(*place) - value for place, value in samples.items()]
        self.rms = math.sqrt(sum(e * e for e in errors) / len(errors))
        self.worst = max(abs(e) for e in errors)

    def At(self, latitude, longitude):
        return sum(c * t for c, t in zip(self.coefficients, VariationTerms(latitude, longitude)))


# ---------------------------------------------------------------- building the tables

def Token(text):
    """One blank-free ASCII token: words joined by underscores."""
    plain = unicodedata.normalize("NFKD", text).encode("ascii", "ignore").decode()
    return re.sub(r"[^A-Za-z0-9]+", "_", plain).strip("_") or "-"


def StationFrequency(kind, megahertz, kilohertz):
    return "%.2f" % megahertz if kind == "VOR" else "%g" % kilohertz


def BuildStations(nasr, ourNavaids):
    """Navaids, and the DME and TACAN stations as fixes, United States first."""
    navaids, fixes, byType = [], [], {}
    for row in nasr:
        if not row["LAT_DECIMAL"]:
            continue
        kind = ("VOR" if row["NAV_TYPE"] in VOR_TYPES else
                "NDB" if row["NAV_TYPE"] in NDB_TYPES else
                "INT" if row["NAV_TYPE"] in DME_TYPES else None)
        latitude, longitude = float(row["LAT_DECIMAL"]), float(row["LONG_DECIMAL"])
        if kind is None or not InRegion(latitude, longitude):
            continue
        point = Point(row["NAV_ID"], kind, latitude, longitude, Token(row["NAME"]))
        byType[row["NAV_ID"], row["NAV_TYPE"]] = point
        if kind == "INT":
            fixes.append(point)
        else:
            frequency = float(row["FREQ"])
            navaids.append(point._replace(
                frequency=StationFrequency(kind, frequency, frequency)))
    for row in ourNavaids:
        kind = "VOR" if row["type"] in VOR_TYPES else "NDB" if row["type"] in NDB_TYPES else None
        latitude, longitude = float(row["latitude_deg"]), float(row["longitude_deg"])
        if row["iso_country"] != "CA" or kind is None or not InRegion(latitude, longitude):
            continue
        kilohertz = float(row["frequency_khz"])
        point = Point(row["ident"], kind, latitude, longitude, Token(row["name"].upper()),
                      StationFrequency(kind, kilohertz / 1000, kilohertz))
        if not any(n.ident == point.ident and DistanceNm(n, point) < 10 for n in navaids):
            navaids.append(point)
    return sorted(navaids, key=lambda n: (n.ident, n.kind, n.latitude)), fixes, byType


def BuildFixes(nasr, cifp, stations):
    """Fixes by identifier; those published only with procedures are added."""
    fixes = {}
    for row in nasr:
        point = Point(row["FIX_ID"], "INT", float(row["LAT_DECIMAL"]), float(row["LONG_DECIMAL"]))
        if row["FIX_USE_CODE"].strip() != "RADAR":
            fixes[point.ident] = point
    inRegion = {i: p for i, p in fixes.items() if InRegion(p.latitude, p.longitude)}
    for point, _ in CifpWaypoints(cifp):
        if point.ident not in fixes and InRegion(point.latitude, point.longitude):
            inRegion[point.ident] = point
    return sorted(list(inRegion.values()) + stations, key=lambda p: (p.ident, p.latitude)), fixes


def BuildAirways(segments, fixes, stations):
    """Each airway's longest unbroken run of points inside the region, two points at least."""
    byName = defaultdict(list)
    for row in segments:
        if row["AWY_LOCATION"] == "C":
            byName[row["AWY_ID"]].append(row)
    airways, dropped = {}, 0
    for name, rows in byName.items():
        runs, run = [], []
        for row in sorted(rows, key=lambda r: int(r["POINT_SEQ"])):
            point = (stations.get((row["SEG_VALUE"], row["SEG_TYPE"].strip()))
                     or fixes.get(row["SEG_VALUE"] if row["SEG_TYPE"].strip() else ""))
            if point and InRegion(point.latitude, point.longitude):
                run.append((int(row["POINT_SEQ"]), point))
            if not point or not InRegion(point.latitude, point.longitude) \
                    or row["AWY_SEG_GAP_FLAG"] == "Y":
                runs.append(run)
                run = []
        runs.append(run)
        best = max(runs, key=len)
        dropped += sum(1 for r in runs if len(r) > 1) - (1 if len(best) > 1 else 0)
        if len(best) > 1:
            airways[name] = best
    return airways, dropped


def ShiftAlong(point, courseTrue, distanceFt):
    """A few hundred feet along a runway: flat-earth arithmetic is good to inches."""
    distanceDeg = distanceFt / FEET_PER_NM / 60
    north = distanceDeg * math.cos(math.radians(courseTrue))
    east = distanceDeg * math.sin(math.radians(courseTrue))
    return point._replace(latitude=point.latitude + north, longitude=point.longitude
                          + east / math.cos(math.radians(point.latitude)))


def RunwayEnds(row, variation):
    """Both landing directions of one runway row, or nothing when the row cannot be trusted."""
    names = row["le_ident"].strip(), row["he_ident"].strip()
    fields = [row[side + "_" + f] for side in ("le", "he") for f in ("latitude_deg", "longitude_deg")]
    if row["closed"] == "1" or not all(fields) or not (row["length_ft"] or "0").isdigit():
        return []
    if not all(re.fullmatch(r"\d\d[LRC]?", name) for name in names):
        return []
    low, high = Point("", "", *map(float, fields[:2])), Point("", "", *map(float, fields[2:]))
    ends = []
    for side, name, start, end in (("le", names[0], low, high), ("he", names[1], high, low)):
        course = CourseTrue(start, end)
        heading = (course - variation) % 360
        if abs(TurnDeg(heading, int(name[:2]) * 10)) > 20:
            return []
        threshold = ShiftAlong(start, course, float(row[side + "_displaced_threshold_ft"] or 0))
        ends.append(Threshold(name, int(row["length_ft"]), threshold.latitude,
                              threshold.longitude, heading))
    return ends


def BuildAirports(airports, runways, cifpRunways, model):
    """Airports with an international code and a paved runway, each with its runway ends."""
    byAirport = defaultdict(list)
    for row in runways:
        byAirport[row["airport_ref"]].append(row)
    built = []
    for row in airports:
        ident = row["gps_code"] or row["ident"]
        latitude, longitude = float(row["latitude_deg"]), float(row["longitude_deg"])
        if not row["type"].endswith("_airport") or not re.fullmatch(r"[KC][A-Z]{3}", ident):
            continue
        if not InRegion(latitude, longitude) or not row["elevation_ft"]:
            continue
        ends, longestPavedFt = [], 0
        for runway in byAirport[row["id"]]:
            pair = RunwayEnds(runway, model.At(latitude, longitude))
            if pair and runway["surface"].upper().startswith(PAVED):
                longestPavedFt = max(longestPavedFt, pair[0].lengthFt)
            ends += [cifpRunways.get((ident, end.designator), end) for end in pair]
        if longestPavedFt >= MIN_AIRPORT_RUNWAY_FT:
            ends.sort(key=lambda end: end.designator)
            built.append((ident, Token(row["name"]), int(row["elevation_ft"]), latitude, longitude,
                          ends[:MAX_RUNWAYS]))
    return sorted(built)


# ---------------------------------------------------------------- writing

def HeadingText(heading):
    """Tenths of a degree in (0, 360]."""
    rounded = round(heading, 1) % 360
    return "%.1f" % (rounded or 360.0)


def RunwayToken(airport, end, localizers):
    localizer = localizers.get((airport, end.designator))
    heading = HeadingText(end.headingMag)
    return "_".join((
        end.designator, str(end.lengthFt), "%.6f" % end.latitude, "%.6f" % end.longitude, heading,
        localizer.frequency if localizer else "---", "ILS" if localizer else "---",
        HeadingText(localizer.courseMag) if localizer else heading))


def CycleLine(effective):
    """The navaid file's cycle line, for the 28-day cycle that holds the date."""
    year, month, day = map(int, effective.split("/"))
    date = datetime.date(year, month, day)
    start = AIRAC_EPOCH + datetime.timedelta(days=(date - AIRAC_EPOCH).days // 28 * 28)
    end = start + datetime.timedelta(days=28)
    number = (start - datetime.date(start.year, 1, 1)).days // 28 + 1
    texts = [d.strftime("%d-") + "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC"[d.month * 3 - 3:d.month * 3]
             + d.strftime("-%Y") for d in (start, end)]
    return ";AIRAC cycle : %02d%02d (%s to %s)" % (start.year % 100, number, *texts)


def WriteLines(path, lines):
    path.parent.mkdir(parents=True, exist_ok=True)
    with open(path, "w", encoding="ascii", newline="\n") as file:
        file.writelines(line + "\n" for line in lines)


def PlanWaypoints(text):
    for entry in text.split(";"):
        words = entry.split()
        yield words[0], words[1], words[2] if len(words) > 2 else ""


def PlanLines(keys, text, tables):
    """Key lines, section line, and one line per waypoint as the module saves them."""
    lines, previous = list(keys) + ["[FlightPlan]"], None
    for ident, kind, via in PlanWaypoints(text):
        candidates = [p for p in tables[kind] if p.ident == ident]
        if not candidates:
            sys.exit("demo_data: plan waypoint %s %s is not in the data" % (ident, kind))
        point = min(candidates, key=lambda p: DistanceNm(previous, p) if previous else 0)
        lines.append("%-16s %-2.5f  %-3.5f  %-3s %-6s %-7s %s" % (
            ident, point.latitude, point.longitude, kind, point.frequency or "---", via, ""))
        previous = point
    return lines


def WriteAll(sources, demo):
    nasr, our = sources / "nasr", sources / "ourairports"
    cifp = ReadCifp(sources / "cifp")
    model = VariationModel(cifp)
    navRows = ReadCsv(nasr / "NAV_BASE.csv.gz", "latin-1")
    navaids, dmeFixes, byType = BuildStations(navRows, ReadCsv(our / "navaids.csv.gz", "utf-8"))
    fixes, allFixes = BuildFixes(ReadCsv(nasr / "FIX_BASE.csv.gz", "latin-1"), cifp, dmeFixes)
    airways, dropped = BuildAirways(ReadCsv(nasr / "AWY_SEG.csv.gz", "latin-1"), allFixes, byType)
    cifpRunways = CifpRunways(cifp)
    airports = BuildAirports(ReadCsv(our / "airports.csv.gz", "utf-8"),
                             ReadCsv(our / "runways.csv.gz", "utf-8"), cifpRunways, model)
    localizers = CifpLocalizers(cifp, cifpRunways)

    data = demo / "avq" / "Navdata"
    WriteLines(data / "avq_navs.txt", [CycleLine(navRows[0]["EFF_DATE"])] + [
        "%s %s %.5f %.5f %s %s" % (n.ident, n.name, n.latitude, n.longitude, n.kind, n.frequency)
        for n in navaids])
    WriteLines(data / "avq_ints.txt", [
        "%s %s %.5f %.5f" % (p.ident, p.ident, p.latitude, p.longitude) for p in fixes])
    WriteLines(data / "fsb_awy2.txt", [
        "%s %04d %s %.5f %.5f" % (name, sequence, p.ident, p.latitude, p.longitude)
        for name in sorted(airways) for sequence, p in airways[name]])
    WriteLines(data / "avq_apts.txt", [
        " ".join(["%s %s %d %.5f %.5f" % (ident, name, elevation, latitude, longitude)]
                 + [RunwayToken(ident, end, localizers) for end in ends])
        for ident, name, elevation, latitude, longitude, ends in airports])
    WriteLines(data / "ils.txt", [
        ";ident freq lat lon course_true glide_deg elevation_ft airport runway antenna_lat antenna_lon"]
        + ["%s %s %.6f %.6f %.2f %.2f %d %s %s %.6f %.6f" % (
            l.ident, l.frequency, l.latitude, l.longitude, l.courseTrue, l.glideDeg, l.elevationFt,
            l.airport, l.runway, l.antennaLatitude, l.antennaLongitude)
           for _, l in sorted(localizers.items())])

    tables = {"APT": [Point(a[0], "APT", a[3], a[4]) for a in airports], "INT": fixes,
              "VOR": [n for n in navaids if n.kind == "VOR"],
              "NDB": [n for n in navaids if n.kind == "NDB"]}
    for name, (keys, text) in PLANS.items():
        WriteLines(demo / "avq" / "FlightPlans" / name, PlanLines(keys, text, tables))

    print("navaids %d (%d VOR), fixes %d, airways %d with %d points (%d shorter pieces left out)" % (
        len(navaids), len(tables["VOR"]), len(fixes), len(airways),
        sum(map(len, airways.values())), dropped))
    print("airports %d with %d runway ends, localizers %d" % (
        len(airports), sum(len(a[5]) for a in airports), len(localizers)))
    print("variation from %d waypoints, rms error %.2f, worst %.2f degrees: %s" % (
        model.samples, model.rms, model.worst,
        " ".join("%.5f" % c for c in model.coefficients)))


# ---------------------------------------------------------------- checking

class Report:
    def __init__(self):
        self.faults = 0

    def Expect(self, good, text):
        if not good:
            self.faults += 1
            print("FAULT: " + text)


def ReadRecords(path, report, columns):
    records = []
    for number, line in enumerate(path.read_text(encoding="ascii").splitlines(), 1):
        report.Expect(len(line) <= 1499, "%s:%d is longer than a reader takes" % (path.name, number))
        words = line.split()
        if line.startswith(";"):
            continue
        report.Expect(len(words) == columns or columns == 0,
                      "%s:%d has %d fields" % (path.name, number, len(words)))
        records.append(words)
    return records


def CheckPosition(report, place, latitude, longitude, slack=0.0):
    report.Expect(SOUTH - slack <= float(latitude) <= NORTH + slack
                  and WEST - slack <= float(longitude) <= EAST + slack,
                  "%s lies outside the region" % place)


def CheckGroups(report, records, place, key):
    """Records with equal keys must stand together."""
    seen, current = set(), None
    for words in records:
        group = key(words)
        if group != current:
            report.Expect(group not in seen, "%s: group %s is split" % (place, group))
            seen.add(group)
            current = group


def CheckNavdata(data, report):
    """Reads the five files back; returns the tables that plans draw on."""
    cycle = (data / "avq_navs.txt").read_text().splitlines()[0].split()
    report.Expect(len(cycle) == 7 and cycle[0] == ";AIRAC" and re.fullmatch(
        r"\((\d\d)-[A-Z]{3}-\d{4}", cycle[4]) and re.fullmatch(r"\d\d-[A-Z]{3}-\d{4}\)", cycle[6]),
        "the cycle line is malformed")
    navaids = ReadRecords(data / "avq_navs.txt", report, 6)
    fixes = ReadRecords(data / "avq_ints.txt", report, 4)
    airways = ReadRecords(data / "fsb_awy2.txt", report, 5)
    airports = ReadRecords(data / "avq_apts.txt", report, 0)
    localizers = ReadRecords(data / "ils.txt", report, 11)
    CheckGroups(report, navaids, "avq_navs.txt", lambda words: words[0][0])
    CheckGroups(report, airways, "fsb_awy2.txt", lambda words: words[0])
    for words in navaids:
        CheckPosition(report, "navaid " + words[0], words[2], words[3])
        report.Expect(words[4] in ("VOR", "NDB"), "navaid %s is a %s" % (words[0], words[4]))
        isVor, frequency = words[4] == "VOR", float(words[5])
        report.Expect(108 <= frequency < 118 if isVor else 190 <= frequency < 1800,
                      "navaid %s has frequency %s" % (words[0], words[5]))
    for words in fixes:
        CheckPosition(report, "fix " + words[0], words[2], words[3])
    known = {(w[0], w[2], w[3]) for w in navaids + fixes}
    for words in airways:
        report.Expect(tuple(words[2:5]) in known,
                      "%s of airway %s is not in the tables" % (words[2], words[0]))
    tables = {(w[0], w[4]): [] for w in navaids}
    for words in navaids:
        tables[words[0], words[4]].append((words[2], words[3], words[5]))
    for words in fixes:
        tables.setdefault((words[0], "INT"), []).append((words[2], words[3], "---"))
    ends = CheckAirports(airports, localizers, tables, report)
    print("checked: %d navaids, %d fixes, %d airways with %d points, %d airports with %d runway"
          " ends, %d localizers" % (len(navaids), len(fixes), len({w[0] for w in airways}),
                                    len(airways), len(airports), ends, len(localizers)))
    return tables


def CheckAirports(airports, localizers, tables, report):
    report.Expect(len(airports) >= 10, "fewer than ten airports")
    runways = {}
    for words in airports:
        ident, _, elevation, latitude, longitude = words[:5]
        CheckPosition(report, "airport " + ident, latitude, longitude)
        report.Expect(-300 < int(elevation) < 9000, "airport %s elevation %s" % (ident, elevation))
        report.Expect(1 <= len(words) - 5 <= MAX_RUNWAYS, "airport %s runway count" % ident)
        tables.setdefault((ident, "APT"), []).append((latitude, longitude, "---"))
        place = Point(ident, "APT", float(latitude), float(longitude))
        for token in words[5:]:
            fields = token.split("_")
            whole = len(fields) == 8 and all(fields)
            report.Expect(whole, "%s runway token %s" % (ident, token))
            if not whole:
                continue
            threshold = Point("", "", float(fields[2]), float(fields[3]))
            report.Expect(DistanceNm(place, threshold) < 5, "%s %s is far off" % (ident, fields[0]))
            report.Expect(500 <= int(fields[1]) <= 16000, "%s %s length" % (ident, fields[0]))
            for course in (fields[4], fields[7]):
                report.Expect(abs(TurnDeg(float(course), int(fields[0][:2]) * 10)) <= 20,
                              "%s %s course %s" % (ident, fields[0], course))
            report.Expect((ident, fields[0]) not in runways, "%s %s twice" % (ident, fields[0]))
            runways[ident, fields[0]] = threshold
    for words in localizers:
        threshold = runways.get((words[7], words[8]))
        report.Expect(threshold is not None, "localizer %s has no runway" % words[0])
        antenna = Point("", "", float(words[9]), float(words[10]))
        if threshold:
            placed = Point("", "", float(words[2]), float(words[3]))
            report.Expect(DistanceNm(threshold, placed) < 0.01
                          and abs(TurnDeg(CourseTrue(threshold, antenna), float(words[4]))) < 1.5
                          and DistanceNm(threshold, antenna) < 3.5,
                          "localizer %s does not point along its runway" % words[0])
        report.Expect(2 <= float(words[5]) <= 6, "localizer %s glide path" % words[0])
    return len(runways)


def CheckPlan(path, tables, report):
    lines = path.read_text(encoding="ascii").splitlines()
    start = lines.index("[FlightPlan]")
    for key in ("CruiseAlt=", "TripFuel=", "ResvFuel="):
        report.Expect(any(line.startswith(key) for line in lines[:start]),
                      "%s lacks %s" % (path.name, key))
    points, legs, turns = [], [], []
    for line in lines[start + 1:]:
        report.Expect(len(line) <= 148, "%s: a line is too long" % path.name)
        words = line.split()
        report.Expect((words[1], words[2], words[4]) in tables.get((words[0], words[3]), []),
                      "%s: %s differs from the data" % (path.name, words[0]))
        points.append(Point(words[0], words[3], float(words[1]), float(words[2])))
    for i in range(1, len(points)):
        legs.append(DistanceNm(points[i - 1], points[i]))
        if i > 1:
            turns.append(TurnDeg(CourseTrue(points[i - 2], points[i - 1]),
                                 CourseTrue(points[i - 1], points[i])))
    report.Expect(len(points) >= 10, "%s has %d waypoints" % (path.name, len(points)))
    report.Expect(sum(legs) > 300, "%s is %.0f nm long" % (path.name, sum(legs)))
    report.Expect(max(map(abs, turns)) <= 100, "%s turns %.0f" % (path.name, max(map(abs, turns))))
    print("%s: %d waypoints, %.1f nm, legs %.1f to %.1f nm, %d turns of 40 degrees or more, largest"
          " %.0f" % (path.name, len(points), sum(legs), min(legs), max(legs),
                     sum(1 for t in turns if abs(t) >= 40), max(map(abs, turns))))


def CheckPanel(path, report):
    """Gauges of one window may not overlap or stick out of it; window idents are unique."""
    windows, current = {}, None
    for line in path.read_text(encoding="ascii").splitlines():
        header = re.fullmatch(r"\[(Window\d\d)\]", line.strip())
        if line.startswith("["):
            current = windows.setdefault(header.group(1), {}) if header else None
        elif "=" in line and current is not None and not line.startswith(("//", ";")):
            key, value = line.split("=", 1)
            current[key.strip()] = value.strip()
    idents = [w["ident"] for w in windows.values()]
    report.Expect(len(set(idents)) == len(idents), "panel.cfg: a window ident is used twice")
    placed = 0
    for name, window in windows.items():
        width, height = map(int, window["size_mm"].split(","))
        boxes = []
        for key, value in window.items():
            if not key.startswith("gauge"):
                continue
            gauge, *numbers = [part.strip() for part in value.split(",")]
            x, y, w, h = map(int, numbers[:4])
            report.Expect(x >= 0 and y >= 0 and x + w <= width and y + h <= height,
                          "panel.cfg: %s sticks out of %s" % (gauge, name))
            for other, ox, oy, ow, oh in boxes:
                report.Expect(x + w <= ox or ox + ow <= x or y + h <= oy or oy + oh <= y,
                              "panel.cfg: %s overlaps %s in %s" % (gauge, other, name))
            boxes.append((gauge, x, y, w, h))
        placed += len(boxes)
    print("panel.cfg: %d windows, %d gauges" % (len(windows), placed))


def Check(demo):
    report = Report()
    tables = CheckNavdata(demo / "avq" / "Navdata", report)
    plans = sorted((demo / "avq" / "FlightPlans").glob("*.RTE"))
    report.Expect(len(plans) >= 2, "fewer than two plans")
    for path in plans:
        CheckPlan(path, tables, report)
    CheckPanel(demo / "panel" / "panel.cfg", report)
    size = sum(p.stat().st_size for p in demo.rglob("*") if p.is_file())
    report.Expect(size < 3_000_000, "the demo folder holds %d bytes" % size)
    print("%d bytes in all, %d faults" % (size, report.faults))
    return 1 if report.faults else 0


def Main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="check DEMO instead of writing it")
    parser.add_argument("folders", nargs="+", type=pathlib.Path, metavar="FOLDER")
    arguments = parser.parse_args()
    if len(arguments.folders) != (1 if arguments.check else 2):
        parser.error("give SOURCES and DEMO, or --check and DEMO")
    try:
        if arguments.check:
            return Check(arguments.folders[0])
        WriteAll(*arguments.folders)
    except (OSError, ValueError, IndexError, KeyError) as error:
        print("demo_data: %s: %s" % (type(error).__name__, error), file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(Main())
