"""ELF files with a module in them, and an own judgement of the clear ELF made from one.

Reads and writes ELF with `struct` alone. `draw` gives files as linkers make them and stranger ones:
the section anywhere in a PT_LOAD, headers inside the first PT_LOAD, either byte order, 300 sections,
program headers without room behind them.
"""

import struct
import subprocess

LOAD, NULL, PHDR = 1, 0, 6
PROGBITS, SYMTAB, STRTAB, REL, NOBITS = 1, 2, 3, 9, 8


def parse(data):
    order = "<" if data[5] == 1 else ">"
    phoff, shoff = struct.unpack_from(order + "II", data, 28)
    phnum, _, shnum, shstrndx = struct.unpack_from(order + "HHHH", data, 44)
    segments = [struct.unpack_from(order + "8I", data, phoff + 32 * i) for i in range(phnum)]
    sections = [struct.unpack_from(order + "10I", data, shoff + 40 * i) for i in range(shnum)]
    names = data[sections[shstrndx][4]:][:sections[shstrndx][5]]
    return order, segments, [(names[s[0]:names.index(b"\0", s[0])].decode(), s) for s in sections]


def memory(segments, data, hole=(0, 0)):
    """Every loaded byte: (virtual, physical) to value, without the hole's addresses."""
    image = {}
    for kind, offset, virtual, physical, filesz, memsz, *_ in segments:
        if kind == LOAD:
            for i in range(max(filesz, memsz)):
                if not hole[0] <= virtual + i < hole[1]:
                    image[virtual + i, physical + i] = data[offset + i] if i < filesz else None
    return image


def lint(path):
    run = subprocess.run(["eu-elflint", "--gnu-ld", path], capture_output=True, text=True)
    return {line.replace(path, "") for line in (run.stdout + run.stderr).splitlines()} - {"No errors"}


def symbols(order, data, sections):
    found = []
    for _, (_, kind, _, _, offset, size, link, info, _, _) in sections:
        if kind == SYMTAB:
            text = data[sections[link][1][4]:]
            for i in range(0, size, 16):
                name, value, length, inf, _, index = struct.unpack_from(order + "IIIBBH", data,
                                                                        offset + i)
                word = text[name:text.index(b"\0", name)].decode()
                found.append((word, value, length, inf, index, i // 16 < info))
    return found


def judge(path, name, tools=False):
    """What is wrong with `path`.clear; empty for nothing."""
    with open(path, "rb") as file:
        before = file.read()
    with open(path + ".clear", "rb") as file:
        after = file.read()
    order, old_segments, old_sections = parse(before)
    _, new_segments, new_sections = parse(after)
    index, section = next((i, s) for i, (n, s) in enumerate(old_sections) if n == name)
    begin, size = section[3], section[5]
    body = before[section[4]:section[4] + size]
    if size >= 8 and len(set(body)) > 3 and body in after:
        return "the section's bytes are left"
    if any(after[section[4]:section[4] + size]):
        return "old file bytes are not zero"
    if memory(old_segments, before, (begin, begin + size)) != memory(new_segments, after):
        return "something else is loaded"
    for kind, offset, virtual, physical, filesz, memsz, _, align in new_segments:
        if kind == LOAD and align > 1 and (offset - virtual) % align:
            return "a segment's offset does not go with its address"
    if len(old_sections) != len(new_sections):
        return "number of sections"
    for i, ((n, o), (m, s)) in enumerate(zip(old_sections, new_sections)):
        if n != m or o[3] != s[3]:
            return f"section {i} has another name or address"
        if i == index and (s[1] != NOBITS or s[5] != o[5]):
            return "the section is no NOBITS of its size"
        if o[1] == REL and o[7] == index and s[5] != 0:
            return "relocations are left"
    old = [s for s in symbols(order, before, old_sections) if not (s[4] == index and s[5])]
    if old != symbols(order, after, new_sections):
        return "other symbols"
    if tools:
        new = lint(path + ".clear") - lint(path)
        if new:
            return f"eu-elflint: {sorted(new)}"
        for tool in (["readelf", "-a", "-W"], ["arm-none-eabi-objcopy", "-O", "binary"]):
            last = ["/dev/null"] if tool[0].endswith("objcopy") else []
            run = subprocess.run(tool + [path + ".clear"] + last, capture_output=True, text=True)
            if run.returncode or "warning" in run.stderr.lower():
                return f"{tool[0]}: {run.stderr}"
    return ""


def draw(rng):
    """(file, name of the module's section, its bytes, its address)"""
    order = rng.choice("<<<>")
    headers_loaded = rng.random() < 0.3
    count = rng.choice([1, 2, 3, 5, 300 if rng.random() < 0.1 else 4])
    base = rng.choice([0x08000000, 0x08000200 + 4 * rng.randrange(20), 0xFFFE0000])
    chosen = rng.randrange(count)
    segment_count = rng.choice([1, 1, 2])
    align = rng.choice([4, 0x1000, 0x10000])
    table_at = 52
    at = table_at + 32 * (segment_count + rng.choice([0, 0, 3]))
    offset_base = 0 if headers_loaded else at + (base - at) % align
    if headers_loaded:
        base -= base % align
        at = max(at, offset_base)
    bodies, placed = [], []
    out = bytearray(at if headers_loaded else offset_base)
    origin = 0 if headers_loaded else offset_base
    for i in range(count):
        out += bytes(rng.choice([0, 0, 4, 28]))
        body = rng.randbytes(rng.choice([1, 4, 31, 32, 33, 64, rng.randrange(1, 200)]))
        placed.append((len(out), base + len(out) - origin, len(body)))
        bodies.append(body)
        out += body
    end = len(out)
    bss = rng.choice([0, 0, 40])
    physical = rng.choice([0, 0x100])
    segments = [(LOAD, origin, base, base + physical, end - origin, end - origin + bss, 5, align)]
    if segment_count == 2:
        out += rng.randbytes(16)
        segments.append((LOAD, end, 0x20000000 + end % align, 0x20000000, 16, 16, 6, align))
    names, shstr = {}, bytearray(b"\0")
    for word in [f".s{i}" for i in range(count)] + [".rel", ".symtab", ".strtab", ".shstrtab"]:
        names[word] = len(shstr)
        shstr += word.encode() + b"\0"
    table = [(0,) * 10]
    for i, (offset, address, size) in enumerate(placed):
        table.append((names[f".s{i}"], PROGBITS, 6, address, offset, size, 0, 0, 1, 0))
    strings, syms = bytearray(b"\0"), [(0, 0, 0, 0, 0, 0)]
    for bind in (0, 1):
        for i in rng.choices(range(count), k=min(count * 2, 8)):
            syms.append((len(strings), placed[i][1], 1, bind << 4 | 1, 0, i + 1))
            strings += f"{'lg'[bind]}{len(syms)}_{rng.randrange(9999)}".encode() + b"\0"
    local = 1 + sum(1 for s in syms[1:] if s[3] < 16)
    rel = b"".join(struct.pack(order + "II", 0, rng.randrange(len(syms)) << 8 | 2)
                   for _ in range(3))
    number = len(table)
    for word, kind, body, link, info, size in (
            (".rel", REL, rel, number + 1, rng.choice([chosen + 1, 1]), 8),
            (".symtab", SYMTAB, b"".join(struct.pack(order + "IIIBBH", *s) for s in syms),
             number + 2, local, 16),
            (".strtab", STRTAB, bytes(strings), 0, 0, 0), (".shstrtab", STRTAB, bytes(shstr), 0, 0, 0)):
        out += bytes(-len(out) % 4)
        table.append((names[word], kind, 0, 0, len(out), len(body), link, info, 4, size))
        out += body
    out += bytes(-len(out) % 4)
    head = b"\x7fELF" + bytes([1, 1 if order == "<" else 2, 1]) + bytes(9)
    head += struct.pack(order + "HHIIIIIHHHHHH", 2, 40, 1, base, table_at, len(out), 0x5000000, 52,
                        32, len(segments), 40, len(table), len(table) - 1)
    out += b"".join(struct.pack(order + "10I", *s) for s in table)
    out[:52] = head
    out[52:52 + 32 * len(segments)] = b"".join(struct.pack(order + "8I", *s) for s in segments)
    # The table may have been loaded as part of the first segment: then it is firmware, too.
    return bytes(out), f".s{chosen}", bodies[chosen], placed[chosen][1]
