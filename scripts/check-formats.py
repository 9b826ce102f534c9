#!/usr/bin/env python3
"""Compares our reading and writing of HEX and S-records with srec_cat on random files.

Usage: scripts/check-formats.py [BENCH_CONVERT [FILES]]
Each file is read by both and written by us as HEX, S-records and binary; srec_cat must find the same
bytes in what we wrote as in the file itself, with holes below 32 bytes filled with 0xFF. What we
wrote, read and written once more, is the same file.
"""
import os
import random
import subprocess
import sys
import tempfile

SREC_CAT = {"hex": "-Intel", "srec": "-Motorola"}


def bytes_by_srec_cat(path, kind):
    """Returns {address: byte}, through S-records of a fixed shape."""
    text = subprocess.run(["srec_cat", path, SREC_CAT[kind], "-o", "-", "-Motorola",
                           "-Address_Length=4", "-Line_Length=78"], check=True,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout.decode()
    image = {}
    for line in text.split():
        if line.startswith("S3"):
            record = bytes.fromhex(line[2:])
            address = int.from_bytes(record[1:5], "big")
            for i, byte in enumerate(record[5:-1]):
                image[address + i] = byte
    return image


def filled(image):
    addresses = sorted(image)
    for before, after in zip(addresses, addresses[1:]):
        if 1 < after - before <= 32:
            for address in range(before + 1, after):
                image[address] = 0xFF
    return image


def intel(rnd, kind, offset, data):
    body = bytes((len(data), offset >> 8 & 255, offset & 255, kind)) + data
    text = (body + bytes((-sum(body) & 255,))).hex()
    return ":" + (text if rnd.random() < 0.3 else text.upper())


def srecord(rnd, width, address, data):
    body = bytes((len(data) + width + 1,)) + address.to_bytes(width, "big") + data
    text = (body + bytes((~sum(body) & 255,))).hex()
    return f"S{width - 1}" + (text if rnd.random() < 0.3 else text.upper())


def random_blocks(rnd):
    """Blocks that don't overlap, many of them around 64 KiB boundaries."""
    blocks = []
    at = rnd.choice([0, rnd.randrange(0x10000), 0xFFE0 + rnd.randrange(64), 0x0800FF00,
                     rnd.randrange(0xF0000000), 0xFFFFF, 0xFFFF00])
    for _ in range(rnd.randrange(1, 9)):
        size = rnd.choice([1, 2, 31, 32, 33, 255, 256, rnd.randrange(1, 3000),
                           rnd.randrange(1, 40000)])
        blocks.append((at, rnd.randbytes(size)))
        at += size + rnd.choice([0, 1, 30, 31, 32, 33, rnd.randrange(70000)])
    rnd.shuffle(blocks)
    return blocks


def random_text(rnd, kind):
    width = rnd.choice([1, 7, 16, 32, 190])
    lines = []
    upper = 0
    blocks = random_blocks(rnd)
    top = max(at + len(data) for at, data in blocks)
    most = 4 if top > 0x1000000 else 3 if top > 0x10000 else 2
    for start, data in blocks:
        at = start
        while at < start + len(data):
            size = min(width, start + len(data) - at, 0x10000 - at % 0x10000)
            part = data[at - start:at - start + size]
            if kind == "hex":
                if at >> 16 != upper:
                    upper = at >> 16
                    lines.append(intel(rnd, 4, 0, upper.to_bytes(2, "big")))
                lines.append(intel(rnd, 0, at & 0xFFFF, part))
            else:
                lines.append(srecord(rnd, rnd.randrange(most, 5), at, part))
            at += size
    lines.append(":00000001FF" if kind == "hex" else "S9030000FC")
    end = rnd.choice(["\n", "\r\n"])
    return end.join(lines) + rnd.choice(["", end])


def contents(path):
    with open(path, "rb") as file:
        return file.read()


def check(convert, folder, rnd):
    kind = rnd.choice(["hex", "srec"])
    source = f"{folder}/in.{kind}"
    with open(source, "w", newline="") as out:
        out.write(random_text(rnd, kind))
    expected = filled(bytes_by_srec_cat(source, kind))
    for target in ("hex", "srec"):
        path = f"{folder}/out.{target}"
        subprocess.run([convert, source, path], check=True, stderr=subprocess.DEVNULL)
        again = f"{folder}/again.{target}"
        subprocess.run([convert, path, again], check=True, stderr=subprocess.DEVNULL)
        if contents(path) != contents(again):
            return f"{kind} to {target} and once more"
        if bytes_by_srec_cat(path, target) != expected:
            return f"{kind} to {target}"
    subprocess.run([convert, source, folder + "/out.bin"], check=True, stderr=subprocess.DEVNULL)
    first = min(expected)
    image = bytearray(b"\xff" * (max(expected) - first + 1))
    for address, byte in expected.items():
        image[address - first] = byte
    return None if contents(folder + "/out.bin") == image else f"{kind} to bin"


def main(arguments):
    convert = arguments[0] if arguments else "build/bench/bin/bench-convert"
    count = int(arguments[1]) if len(arguments) > 1 else 300
    with tempfile.TemporaryDirectory() as folder:
        for seed in range(count):
            fault = check(os.path.abspath(convert), folder, random.Random(seed))
            if fault:
                sys.exit(f"file {seed}: {fault} differs")
    print(f"{count} files: the same bytes as srec_cat in HEX, S-records and binary")


if __name__ == "__main__":
    main(sys.argv[1:])
