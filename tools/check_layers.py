#!/usr/bin/env python3
"""Compares the includes of src/ with the CMake link lists: a folder may include only itself and
the folders it links to, and the links form no cycle; the same for panelhost/. Exit status 1 names every offence."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SRC = ROOT / "src"
PANEL_HOST_MAY_INCLUDE = {"platform/panel_interface.h", "platform/traffic_interface.h"}


def link_lists():
    """folder -> set of folders it links to, from the avq1_library() calls."""
    links = {}
    for cmake in SRC.glob("*/CMakeLists.txt"):
        text = cmake.read_text()
        call = re.search(r"avq1_library\((\w+)(?:\s+LINKS\s+([^)]*))?\)", text)
        if call:
            links[call.group(1)] = set((call.group(2) or "").split())
    return links


def includes(source):
    for number, line in enumerate(source.read_text(errors="replace").splitlines(), 1):
        match = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
        if match:
            yield number, match.group(1)


def check_source_folders(links):
    for source in sorted(SRC.rglob("*")):
        if source.suffix not in (".h", ".cpp") or "painter" in source.parts:
            continue
        folder = source.relative_to(SRC).parts[0]
        for number, name in includes(source):
            target = name.split("/")[0]
            if target in links and target != folder and target not in links.get(folder, set()):
                yield f"{source.relative_to(ROOT)}:{number}: {folder} does not link {target}"


def check_panel_host(links):
    for source in sorted((ROOT / "panelhost").rglob("*")):
        if source.suffix not in (".h", ".cpp"):
            continue
        for number, name in includes(source):
            if name.split("/")[0] in links and name not in PANEL_HOST_MAY_INCLUDE:
                yield f"{source.relative_to(ROOT)}:{number}: the panel host knows no internals ({name})"


def panel_host_links():
    """folder of panelhost/ -> set of folders it links to."""
    text = (ROOT / "panelhost" / "CMakeLists.txt").read_text()
    calls = re.findall(r"^panelhost_library\((\w+)(?:\s+LINKS\s+([^)]*))?\)", text, re.M)
    links = {name: set(listed.split()) for name, listed in calls}
    return {**links, "web": set(links)}


def check_panel_host_folders(links):
    for source in sorted((ROOT / "panelhost").rglob("*")):
        folder = source.relative_to(ROOT / "panelhost").parts[0]
        if source.suffix not in (".h", ".cpp") or folder == "main.cpp":
            continue
        if folder not in links:
            yield f"{source.relative_to(ROOT)}: {folder} is no library"
            continue
        for number, name in includes(source):
            parts = name.split("/")
            if parts[0] == "panelhost" and parts[1] not in {folder} | links[folder]:
                yield f"{source.relative_to(ROOT)}:{number}: {folder} does not link {parts[1]}"


def check_os_headers():
    """OS headers and #ifdefs on the system stay in src/platform/."""
    pattern = re.compile(r"#\s*include\s+<(windows\.h|unistd\.h|sys/|dirent\.h|fcntl\.h|cairo)|_WIN32|__linux__")
    for source in sorted(SRC.rglob("*")):
        parts = source.relative_to(SRC).parts
        if source.suffix not in (".h", ".cpp") or parts[0] == "platform" or "painter" in parts:
            continue
        for number, line in enumerate(source.read_text(errors="replace").splitlines(), 1):
            if pattern.search(line):
                yield f"{source.relative_to(ROOT)}:{number}: system code outside src/platform"


def check_cycles(links):
    done = set()

    def visit(folder, path):
        if folder in path:
            yield "cycle: " + " -> ".join(path[path.index(folder):] + [folder])
            return
        if folder in done:
            return
        for target in sorted(links.get(folder, ())):
            yield from visit(target, path + [folder])
        done.add(folder)

    for folder in sorted(links):
        yield from visit(folder, [])


def main():
    links = link_lists()
    host_links = panel_host_links()
    if len(links) < 10 or len(host_links) < 5:
        print("check_layers: the CMake link lists were not found")
        return 1
    offences = [
        *check_cycles(links),
        *check_source_folders(links),
        *check_panel_host(links),
        *check_cycles(host_links),
        *check_panel_host_folders(host_links),
        *check_os_headers(),
    ]
    for offence in offences:
        print(offence)
    return 1 if offences else 0


if __name__ == "__main__":
    sys.exit(main())
