#!/usr/bin/env python3
"""Reads a built Windows module and says what keeps it from loading in the oldest simulators: its
exports, the DLLs and functions it imports, its bitmap and version resources.
Usage: check_windows_module.py MODULE.gau PAINTED_FOLDER BITS"""
import pathlib
import struct
import sys

# Every DLL here belongs to Windows 2000 or to the drawing library; nothing of ours stands beside.
ALLOWED_DLLS = {"gdi32.dll", "gdiplus.dll", "kernel32.dll", "msvcrt.dll", "user32.dll"}
# Calls newer than Windows 2000 that compilers and libraries like to bring along.
TOO_NEW = {
    "GetTickCount64", "InitializeConditionVariable", "SleepConditionVariableCS",
    "InitializeSRWLock", "AcquireSRWLockExclusive", "InitOnceExecuteOnce", "CreateFile2",
    "GetSystemTimePreciseAsFileTime", "InitializeCriticalSectionEx", "FlsAlloc",
    "GetFinalPathNameByHandleW", "SetThreadDescription", "GetModuleHandleExW", "GetModuleHandleExA",
    "AddVectoredExceptionHandler", "GetNativeSystemInfo", "_mkgmtime", "_aligned_malloc",
}
RT_BITMAP, RT_VERSION = 2, 16


class Image:
    def __init__(self, data):
        self.data = data
        pe = self.u32(0x3C)
        assert data[:2] == b"MZ" and data[pe:pe + 4] == b"PE\0\0", "not a Windows module"
        self.machine, count = self.u16(pe + 4), self.u16(pe + 6)
        optional = pe + 24
        self.bits = {0x10B: 32, 0x20B: 64}[self.u16(optional)]
        self.subsystem_version = (self.u16(optional + 48), self.u16(optional + 50))
        self.directories = optional + (96 if self.bits == 32 else 112)
        first = optional + self.u16(pe + 20)
        self.sections = [struct.unpack_from("<IIII", data, first + 40 * i + 8) for i in range(count)]

    def u16(self, at):
        return struct.unpack_from("<H", self.data, at)[0]

    def u32(self, at):
        return struct.unpack_from("<I", self.data, at)[0]

    def offset(self, rva):
        for size, start, raw_size, raw in self.sections:
            if start <= rva < start + max(size, raw_size):
                return rva - start + raw
        raise ValueError(f"no section holds {rva:#x}")

    def text(self, rva):
        at = self.offset(rva)
        return self.data[at:self.data.index(b"\0", at)].decode("latin-1")

    def directory(self, number):
        return self.u32(self.directories + 8 * number)

    def exports(self):
        at = self.offset(self.directory(0))
        names = self.offset(self.u32(at + 32))
        return {self.text(self.u32(names + 4 * i)) for i in range(self.u32(at + 24))}

    def imports(self):
        found = {}
        at = self.offset(self.directory(1))
        size = self.bits // 8
        while self.u32(at + 12):
            functions = set()
            entry = self.offset(self.u32(at) or self.u32(at + 16))
            while (value := int.from_bytes(self.data[entry:entry + size], "little")):
                if not value >> (self.bits - 1):
                    functions.add(self.text(value + 2))
                entry += size
            found[self.text(self.u32(at + 12)).lower()] = functions
            at += 20
        return found

    def resources(self):
        """{type: {number: (rva, size)}}, the first language of each."""
        root = self.offset(self.directory(2))

        def entries(at):
            for i in range(self.u16(at + 12) + self.u16(at + 14)):
                yield self.u32(at + 16 + 8 * i), self.u32(at + 20 + 8 * i)

        found = {}
        for kind, kinds in entries(root):
            for number, numbers in entries(root + (kinds & 0x7FFFFFFF)):
                for _, leaf in entries(root + (numbers & 0x7FFFFFFF)):
                    found.setdefault(kind, {}).setdefault(
                        number, (self.u32(root + leaf), self.u32(root + leaf + 4)))
        return found


def problems(image, painted, bits):
    if image.bits != bits:
        yield f"it is a {image.bits}-bit module, not a {bits}-bit one"
    if image.exports() != {"Linkage", "ImportTable"}:
        yield f"it exports {sorted(image.exports())}, not Linkage and ImportTable"
    for dll, functions in image.imports().items():
        if dll not in ALLOWED_DLLS:
            yield f"it needs {dll}"
        for function in sorted(functions & TOO_NEW):
            yield f"it needs {function}, which the oldest Windows does not have"
    if image.subsystem_version > (5, 2):
        yield f"it asks for Windows {image.subsystem_version[0]}.{image.subsystem_version[1]}"
    resources = image.resources()
    if RT_VERSION not in resources:
        yield "it has no version resource"
    bitmaps = resources.get(RT_BITMAP, {})
    wanted = {int(path.stem, 16): path.read_bytes()[14:] for path in painted.glob("*.bmp")}
    if set(bitmaps) != set(wanted) or not wanted:
        yield f"its bitmaps differ in number: {sorted(set(bitmaps) ^ set(wanted))}"
    for number in sorted(set(bitmaps) & set(wanted)):
        rva, size = bitmaps[number]
        at = image.offset(rva)
        if image.data[at:at + size] != wanted[number]:
            yield f"bitmap {number:#x} is not the painted one"


def main():
    module, painted, bits = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), int(sys.argv[3])
    image = Image(module.read_bytes())
    found = list(problems(image, painted, bits))
    for problem in found:
        print(f"{module}: {problem}")
    if not found:
        count = len(image.resources()[RT_BITMAP])
        print(f"{module}: {image.bits} bits, {count} bitmaps, imports "
              f"{sum(map(len, image.imports().values()))} functions of {len(image.imports())} DLLs")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
