#!/usr/bin/env python3
"""Compares our reading of ELF files with readelf's on random files of either byte order.

Usage: scripts/check-elf.py [ELF_PROBE [FILES]]
Head, program headers, sections and symbols must be those that readelf prints, and the firmware's
bytes those that its program headers lead to, neighbours less than 32 bytes apart joined with 0xFF.
"""
import os
import random
import re
import struct
import subprocess
import sys
import tempfile

PROGRAM_TYPES = {0: "NULL", 1: "LOAD", 4: "NOTE", 6: "PHDR", 7: "TLS"}
SECTION_TYPES = {0: "NULL", 1: "PROGBITS", 2: "SYMTAB", 3: "STRTAB", 8: "NOBITS", 14: "INIT_ARRAY"}
FLAGS = {"W": 1, "A": 2, "X": 4}
SYMBOL_TYPES = {"NOTYPE": 0, "OBJECT": 1, "FUNC": 2, "SECTION": 3, "FILE": 4}
BINDINGS = {"LOCAL": 0, "GLOBAL": 1, "WEAK": 2}
PLACES = {"UND": 0, "ABS": 0xFFF1, "COM": 0xFFF2}


class Elf:
    """A random file: head, program headers, bytes, name tables, section headers."""

    def __init__(self, rnd):
        self.rnd = rnd
        self.order = rnd.choice("<<<>")
        self.body = b""
        self.names = b"\0"
        self.count = rnd.randrange(1, 7)
        self.body_at = 52 + 32 * self.count

    def pack(self, form, *values):
        return struct.pack(self.order + form, *values)

    def put(self, data):
        """Appends bytes, sometimes behind a gap. Returns their place in the file."""
        self.body += self.rnd.randbytes(self.rnd.choice([0, 0, 0, 1, 7]))
        at = self.body_at + len(self.body)
        self.body += data
        return at

    def programs(self):
        rnd = self.rnd
        address = rnd.choice([0, 0x08000000, 0x20000000, 0xFFFF0000])
        loads = []
        for number in range(self.count):
            kind = 1 if number == 0 else rnd.choice([0, 1, 1, 1, 4, 7])
            data = rnd.randbytes(rnd.choice([0, 1, 4, 31, 200]) if number else 8)
            loads.append((kind, self.put(data), rnd.getrandbits(32), address, len(data),
                          len(data) + rnd.choice([0, 0, 16]), rnd.randrange(8),
                          rnd.choice([0, 1, 4, 0x1000])))
            address += len(data) + rnd.choice([0, 1, 31, 32, 500])
        rnd.shuffle(loads)
        return b"".join(self.pack("8I", *load) for load in loads)

    def section(self, name, kind, data, link=0, info=0, entry=0):
        at = len(self.names) if name else 0
        self.names += name.encode() + b"\0" if name else b""
        place = self.put(data) if kind != 8 else self.body_at + len(self.body)
        size = self.rnd.randrange(100) if kind == 8 else len(data)
        return self.pack("10I", at, kind, self.rnd.randrange(8), self.rnd.getrandbits(32), place, size,
                         link, info, self.rnd.choice([0, 1, 4]), entry)

    def sections(self):
        rnd = self.rnd
        table = [self.pack("10I", *[0] * 10)]
        for number in range(rnd.randrange(0, 5)):
            table.append(self.section(f".s{number}{rnd.randrange(1000)}", rnd.choice([1, 1, 8, 14]),
                                      rnd.randbytes(rnd.randrange(0, 60))))
        if rnd.random() < 0.7:
            texts, entries = b"\0", self.pack("IIIBBH", 0, 0, 0, 0, 0, 0)
            for number in range(rnd.randrange(0, 9)):
                binding = rnd.randrange(3)
                # Names of sections and files are shown by readelf in ways of its own.
                entries += self.pack("IIIBBH", len(texts), rnd.getrandbits(32), rnd.randrange(90000),
                                     binding << 4 | rnd.randrange(3), 0,
                                     rnd.choice([0, 1, 0xFFF1]) if len(table) > 1 else 0)
                texts += f"name{number}_{rnd.randrange(10 ** 6)}".encode() + b"\0"
            table.append(self.section(".symtab", 2, entries, len(table) + 1, 1, 16))
            table.append(self.section(".strtab", 3, texts))
        return table

    def bytes(self):
        programs = self.programs()
        table = self.sections() if self.rnd.random() < 0.9 else []
        if table:
            at = len(self.names)
            self.names += b".shstrtab\0"
            place = self.put(self.names)
            table.append(self.pack("10I", at, 3, 0, 0, place, len(self.names), 0, 0, 1, 0))
        head = b"\x7fELF" + bytes((1, 1 if self.order == "<" else 2, 1, 0)) + bytes(8)
        head += self.pack("HHIIIIIHHHHHH", self.rnd.choice([1, 2, 3]), 40, 1, self.rnd.getrandbits(32), 52,
                          self.body_at + len(self.body) if table else 0, 0x05000000, 52, 32, self.count,
                          40, len(table), max(0, len(table) - 1))
        return head + programs + self.body + b"".join(table)


def key_of(names, word):
    return next(number for number, name in names.items() if name == word)


def flags_of(letters):
    return sum(FLAGS.get(letter, 0) for letter in letters)


def by_readelf(path, data):
    """The lines that the probe should print, but for the bytes, and those of the bytes."""
    text = subprocess.run(["readelf", "-hlSsW", path], check=True, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, env={"LC_ALL": "C"}).stdout.decode()
    value = {name: int(number, 0) for name, number in
             re.findall(r"^  (Entry point address|Flags|Start of program headers|Start of section headers):"
                        r" +(0x[0-9a-f]+|\d+)", text, re.M)}
    kind = re.search(r"Type: +(\w+)", text).group(1)
    lines = ["head {} 40 {} {} {} {}".format(
        {"REL": 1, "EXEC": 2, "DYN": 3}[kind], value["Entry point address"], value["Flags"],
        value["Start of program headers"], value["Start of section headers"])]
    loads = []
    for match in re.finditer(r"^  (NULL|LOAD|NOTE|TLS) +0x(\w+) 0x(\w+) 0x(\w+) 0x(\w+) 0x(\w+) (.{3}) (?:0x)?(\w+)$",
                             text, re.M):
        offset, virtual, physical, size, memory = (int(match[i], 16) for i in range(2, 7))
        flags = sum(bit for letter, bit in (("R", 4), ("W", 2), ("E", 1)) if letter in match[7])
        lines.append(f"program {key_of(PROGRAM_TYPES, match[1])} {virtual} {physical} {size} {memory} {flags} "
                     f"{int(match[8], 16)}")
        if match[1] == "LOAD":
            loads.append((physical, data[offset:offset + size]))
    for match in re.finditer(r"^  \[ *(\d+)\] (\S*) +([A-Z_]+) +(\w{8}) (\w{6}) (\w{6}) (\w\w) +([WAX]*) +(\d+) +(\d+) +(\d+)$",
                             text, re.M):
        address, offset, size, entry = (int(match[i], 16) for i in range(4, 8))
        if data[5] == 2:
            # Our record has the offset as its bytes read in little-endian order, whatever the file's.
            offset = int.from_bytes(offset.to_bytes(4, "big"), "little")
        lines.append(f"section {match[1]} {match[2] or '-'} {key_of(SECTION_TYPES, match[3])} {address} {offset} "
                     f"{size} {entry} {flags_of(match[8])} {match[9]} {match[10]} {match[11]}")
    for match in re.finditer(r"^ +\d+: (\w{8}) +(\d+) (\w+) +(\w+) +DEFAULT +(\w+) ?(\S*)$", text, re.M):
        place = PLACES.get(match[5])
        lines.append(f"symbol {int(match[1], 16)} {match[2]} {SYMBOL_TYPES[match[3]]} {BINDINGS[match[4]]} "
                     f"{int(match[5]) if place is None else place} {match[6] or '-'}")
    return lines, joined(sorted(loads, key=lambda load: load[0]))


def joined(loads):
    """The program's own rule: neighbours less than 32 bytes apart are one, an overlap is the later one's."""
    parts = []
    for address, data in loads:
        if parts and address - parts[-1][0] - len(parts[-1][1]) < 32:
            before = parts[-1][1]
            at = address - parts[-1][0]
            before += b"\xff" * (at - len(before))
            before[at:at + len(data)] = data
        else:
            parts.append((address, bytearray(data)))
    return [f"bytes {address} {data.hex()}" for address, data in parts]


def main(arguments):
    probe = arguments[0] if arguments else "build/dev/tests/elf_probe"
    count = int(arguments[1]) if len(arguments) > 1 else 2000
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "a.elf")
        for seed in range(count):
            data = Elf(random.Random(seed)).bytes()
            with open(path, "wb") as out:
                out.write(data)
            found = subprocess.run([probe, path], check=True, stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL).stdout.decode().splitlines()
            if found[0] != "file read":
                sys.exit(f"file {seed} is refused")
            lines, parts = by_readelf(path, data)
            mine = [line for line in found[1:] if not line.startswith("bytes ")]
            if mine != lines:
                one = next(pair for pair in zip(mine + ["nothing"], lines + ["nothing"]) if pair[0] != pair[1])
                sys.exit(f"file {seed}: '{one[0]}' instead of '{one[1]}'")
            if [line for line in found if line.startswith("bytes ")] != parts:
                sys.exit(f"file {seed}: other bytes than its program headers lead to")
    print(f"{count} ELF files: head, program headers, sections, symbols and bytes as readelf has them")


if __name__ == "__main__":
    main(sys.argv[1:])
