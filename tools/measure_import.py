#!/usr/bin/env python3
"""Measures what avqdata takes for the world: time of the processor and peak memory.

    tools/measure_import.py SOURCES [AVQDATA]

SOURCES holds xplane/, ourairports/ and xplane12/ (docs/navigation-data.md). Procedures of 15,000
airports are made from those of xplane12/ under other names, below a temporary folder.
`bench_import` measures the lower bound, unpacking the same bytes and finding their lines.
"""
import itertools
import os
import pathlib
import shutil
import string
import subprocess
import sys
import tempfile

AIRPORTS = 15000


def make_procedures(source, folder):
    (folder / 'CIFP').mkdir(parents=True)
    files = sorted((source / 'CIFP').iterdir())
    lines = (source / 'earth_fix.dat').read_text('latin1').splitlines()
    fixes = [line for line in lines[3:] if line.strip() not in ('', '99')]
    written = [line for line in fixes if ' ENRT ' in line]
    size = 0
    names = (''.join(letters) for letters in itertools.product(string.ascii_uppercase, repeat=4))
    for index, name in enumerate(itertools.islice(names, AIRPORTS)):
        file = files[index % len(files)]
        text = file.read_text('latin1').replace(file.stem, name)
        (folder / 'CIFP' / f'{name}.dat').write_text(text, 'latin1')
        size += len(text)
        area = f' {file.stem} '
        written += [line.replace(area, f' {name} ') for line in fixes if area in line]
    (folder / 'earth_fix.dat').write_text('\n'.join(lines[:3] + written + ['99', '']), 'latin1')
    for name in ('earth_nav.dat', 'earth_awy.dat'):
        shutil.copy(source / name, folder)
    return size


def measure(what, program, target, sources):
    child = subprocess.Popen([program, 'build', target, *map(str, sources)],
                             stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    error = child.stderr.read().decode()
    _, status, usage = os.wait4(child.pid, 0)
    if os.waitstatus_to_exitcode(status) > 1:
        sys.exit(f'{what}: {error}')
    print(f'{what}: {usage.ru_utime + usage.ru_stime:.2f} s, {usage.ru_maxrss / 1024:.0f} MB')


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    sources = pathlib.Path(sys.argv[1]).resolve()
    here = pathlib.Path(__file__).resolve().parent
    program = sys.argv[2] if len(sys.argv) == 3 else here.parent / 'build/release/avqdata'
    with tempfile.TemporaryDirectory() as work:
        work = pathlib.Path(work)
        xplane, lists = sources / 'xplane', sources / 'ourairports'
        measure("the world of X-Plane's form", program, work / 'one', [xplane])
        measure("the same and OurAirports'", program, work / 'two', [xplane, lists])
        size = make_procedures(sources / 'xplane12', work / 'made')
        measure(f'{AIRPORTS} airports of procedures, {size / 1e6:.0f} MB', program, work / 'three',
                [work / 'made'])


main()
