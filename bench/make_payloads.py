#!/usr/bin/env python3
"""Makes the firmware files that scripts/bench.sh converts. Usage: make_payloads.py FOLDER"""
import random
import struct
import sys

MIB = 1024 * 1024
START = 0x08000000


def intel(kind, offset, data):
    body = bytes((len(data), offset >> 8, offset & 255, kind)) + data
    return b":%s%02X\n" % (body.hex().upper().encode(), -sum(body) & 255)


def srecord(address, data):
    body = struct.pack(">BI", len(data) + 5, address) + data
    return b"S3%s%02X\n" % (body.hex().upper().encode(), ~sum(body) & 255)


def write_intel(path, blocks, record_bytes):
    """Blocks of (address, bytes); an address record whenever the upper half changes."""
    upper = None
    with open(path, "wb") as out:
        for address, data in blocks:
            for at in range(0, len(data), record_bytes):
                here = address + at
                if here >> 16 != upper:
                    upper = here >> 16
                    out.write(intel(4, 0, struct.pack(">H", upper)))
                out.write(intel(0, here & 0xFFFF, data[at:at + record_bytes]))
        out.write(b":00000001FF\n")


def write_srecords(path, blocks, record_bytes):
    with open(path, "wb") as out:
        for address, data in blocks:
            for at in range(0, len(data), record_bytes):
                out.write(srecord(address + at, data[at:at + record_bytes]))
        out.write(b"S70500000000FA\n")


def scattered(payload, size, hole, shuffler):
    """The payload cut into blocks of `size` with holes between them, in shuffled order."""
    blocks = [(START + i * (size + hole), payload[i * size:(i + 1) * size])
              for i in range(len(payload) // size)]
    shuffler.shuffle(blocks)
    return blocks


def elf(payload, symbols):
    """A 32-bit executable: two PT_LOAD segments, .text, .data, and a symbol table."""
    cut = len(payload) * 3 // 4
    names = bytearray(b"\0")
    table = bytearray(16)
    for i in range(symbols):
        table += struct.pack("<IIIBBH", len(names), START + i * 64, 64, 0x12, 0, 1)
        names += b"module_%d_function_%d\0" % (i % 97, i)
    section_names = b"\0.text\0.data\0.symtab\0.strtab\0.shstrtab\0"
    text_at = 0x1000
    data_at = text_at + cut
    table_at = text_at + len(payload)
    names_at = table_at + len(table)
    section_names_at = names_at + len(names)
    sections_at = section_names_at + len(section_names)
    sections = [(0,) * 10,
                (1, 1, 6, START, text_at, cut, 0, 0, 4, 0),
                (7, 1, 3, 0x20000000, data_at, len(payload) - cut, 0, 0, 4, 0),
                (13, 2, 0, 0, table_at, len(table), 4, 1, 4, 16),
                (21, 3, 0, 0, names_at, len(names), 0, 0, 1, 0),
                (29, 3, 0, 0, section_names_at, len(section_names), 0, 0, 1, 0)]
    head = struct.pack("<16sHHIIIIIHHHHHH", b"\x7fELF\1\1\1", 2, 40, 1, START | 1, 52, sections_at,
                       0x05000200, 52, 32, 2, 40, len(sections), 5)
    head += struct.pack("<8I", 1, text_at, START, START, cut, cut, 5, 0x1000)
    head += struct.pack("<8I", 1, data_at, 0x20000000, START + cut, len(payload) - cut,
                        len(payload) - cut, 6, 0x1000)
    return (head.ljust(text_at, b"\0") + payload + table + names + section_names +
            b"".join(struct.pack("<10I", *section) for section in sections))


def main(folder):
    shuffler = random.Random(1)
    payload = shuffler.randbytes(64 * MIB)
    dense = [(START, payload)]
    with open(folder + "/dense.bin", "wb") as out:
        out.write(payload)
    with open(folder + "/dense.elf", "wb") as out:
        out.write(elf(payload, 20000))
    write_intel(folder + "/dense16.hex", dense, 16)
    write_intel(folder + "/dense32.hex", dense, 32)
    write_srecords(folder + "/dense.srec", dense, 32)
    write_intel(folder + "/scattered.hex", scattered(payload, 1024, 64, shuffler), 32)
    small = scattered(payload[:1600000], 16, 48, shuffler)
    write_srecords(folder + "/small.srec", sorted(small), 16)
    for count in (125000, 250000, 500000, 1000000):
        blocks = scattered(payload[:4 * count], 4, 60, shuffler)
        write_srecords(f"{folder}/growth{count}.srec", blocks, 4)


if __name__ == "__main__":
    main(sys.argv[1])
