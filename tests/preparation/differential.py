#!/usr/bin/python3
"""Compares the builder with image_format.py on random requests, byte for byte.

    cmake --build --preset dev --target preparation_probe
    /usr/bin/python3 tests/preparation/differential.py build/dev/tests/preparation_probe 5000 [SEED]

Requests are drawn so that areas touch, overlap, share Flash words and end near 2^32 often enough.
A request that one side builds and the other refuses is a difference too, and so is a refusal whose
overlap or Flash word names other areas.
"""

import collections
import json
import random
import re
import struct
import subprocess
import sys

import image_format


def addresses(rng):
    if rng.random() < 0.1:
        return (1 << 32) - rng.choice([0x20, 0x40, 0x60, 0x80, 0x200]) + rng.randrange(0, 8)
    return 0x08000000 + rng.choice([16, 32, 64]) * rng.randrange(0, 600) + rng.choice(
        [0, 0, 0, 1, 4, 8, 31])


def blob(rng, most):
    return rng.randbytes(rng.choice([0, 1, 4, 16, 31, 32, 33, rng.randrange(0, most)]))


def smi(rng):
    plain = blob(rng, 200)
    head = b"SMIMAGIC" + struct.pack("<HHII", 1, rng.randrange(4), addresses(rng), len(plain))
    file = head + rng.randbytes(64) + bytes(12) + plain
    file += bytes(-len(file) % 32)
    return file if rng.random() < 0.95 else file[:-1]


def segments(rng, count):
    if rng.random() < 0.4:  # a run that touches, so that nothing overlaps
        at, run = addresses(rng), []
        for _ in range(count):
            body = blob(rng, 900)
            run.append((at % (1 << 32), body))
            at += len(body) + rng.choice([0, 0, 1, 32])
        rng.shuffle(run)
        return run
    return [(addresses(rng), blob(rng, 400)) for _ in range(count)]


def draw(rng):
    request = {
        "key": rng.randbytes(16), "nonce": rng.randbytes(12), "hash": rng.random() < 0.5,
        "image_version": rng.randrange(256), "profile": rng.choice([0xFF, 0x484]),
        "option_bytes": rng.randbytes(rng.choice([4, 4, 8, 64, 120] + [0, 6][:rng.randrange(2)])),
        "firmware": segments(rng, rng.choice([0, 1, 2, 3, 5])),
    }
    if rng.random() < 0.35:
        request["external"] = segments(rng, rng.randrange(1, 4))
        request["regions"] = [(addresses(rng), *(rng.randrange(1 << 32) for _ in range(3)))
                              for _ in range(rng.randrange(5))]
        if request["regions"] and rng.random() < 0.5:
            request["regions"].append((request["regions"][0][0], 1, 2, 3))
    if rng.random() < 0.3:
        request["obk"] = [(addresses(rng), rng.randrange(99), rng.randrange(2), blob(rng, 90))
                          for _ in range(rng.randrange(1, 4))]
    if rng.random() < 0.3:
        request["key_area"] = rng.randbytes(rng.randrange(1, 60))
    if rng.random() < 0.35:
        request["modules"] = [
            {"address": addresses(rng), "module": blob(rng, 150), "flag": rng.random() < 0.5,
             "licence": blob(rng, 40) if rng.random() < 0.5 else b"",
             "identifier": rng.randbytes(rng.choice([0, 0, 5, 15, 16, 17][:rng.randrange(1, 7)]))}
            for _ in range(rng.randrange(1, 4))]
    if rng.random() < 0.3:
        request["smi"] = [smi(rng) for _ in range(rng.randrange(1, 3))]
        request["combined"] = rng.random() < 0.7
    if rng.random() < 0.25:
        request["ssfi"] = [rng.randbytes(32)]
        for _ in range(rng.randrange(1, 3)):
            request["ssfi"] += [rng.randbytes(46), blob(rng, 80)]
    if rng.random() < 0.6:
        request["ram"] = rng.choice([77, 78, 93, 94, 169, 170, 217, 218] + [300, 500, 1000, 4000] * 4)
        request["token"] = rng.choice([0, 0, 0x08003000])
    return request


def to_json(value):
    return value.hex() if isinstance(value, bytes) else value


def encode(value):
    if isinstance(value, dict):
        return {k: encode(v) for k, v in value.items()}
    if isinstance(value, (list, tuple)):
        return [encode(v) for v in value]
    return to_json(value)


def expected(request):
    try:
        return image_format.build(request).hex()
    except image_format.Refused as refusal:
        return f"refused {refusal}"


def same(mine, theirs):
    if not (mine.startswith("refused") and theirs.startswith("refused")):
        return mine == theirs
    if "Overlap" in mine or "Flash word" in mine:
        # Names of areas must agree; the builder adds address and size in brackets.
        bare = re.sub(r" \(0x[^)]*\)", "", theirs).replace("Error: ", "").replace("The ", "")
        return mine.replace("The ", "") == bare
    return True


def main():
    probe, count = sys.argv[1], int(sys.argv[2])
    rng = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1)
    process = subprocess.Popen([probe], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    seen = collections.Counter()
    for number in range(count):
        request = draw(rng)
        print(json.dumps(encode(request)), file=process.stdin, flush=True)
        theirs, mine = process.stdout.readline().strip(), expected(request)
        if not same(mine, theirs):
            print(f"request {number} differs\n{json.dumps(encode(request))}\n{mine}\n{theirs}")
            return 1
        seen[mine.split(" between ")[0] if mine.startswith("refused") else "equal image"] += 1
        if not mine.startswith("refused"):
            letters = bytes.fromhex(mine)
            at, header = 28, 30 if letters[8] == 1 else 46
            while at < len(letters):
                seen["area " + chr(letters[at])] += 1
                at += header + int.from_bytes(letters[at + 4:at + 8], "little")
    for what, times in seen.most_common():
        print(f"{times:7} {what}")
    return 0


sys.exit(main())
