#!/usr/bin/python3
"""Compares the builders of SMI, SFU, SSP and signed files with package_format.py, byte for byte.

    cmake --build --preset dev --target package_probe
    /usr/bin/python3 tests/preparation/package_differential.py build/dev/tests/package_probe 400 [SEED]

Signatures are verified by the openssl command, too. A request that one side builds and the other
refuses is a difference. ELF files come from elf_cases.py, which also judges the clear ELF.
"""

import collections
import json
import os
import random
import subprocess
import sys
import tempfile

import elf_cases
import package_format
from cryptography.hazmat.primitives import serialization
from cryptography.hazmat.primitives.asymmetric import ec

GROUPS = {"prime256v1": ec.SECP256R1()}


def sizes(rng):
    return rng.choice([1, 31, 32, 33, 4095, 4096, 4097, 8192, rng.randrange(1, 20000)])


def top(rng, size):
    return rng.choice([rng.randrange(1 << 32), (1 << 32) - size, (1 << 32) - size + 1])


def sometimes_wrong(rng, size):
    return rng.randbytes(size if rng.random() < 0.95 else rng.choice([0, size - 1, size + 1]))


def draw_smi(rng, folder):
    elf, name, section, address = elf_cases.draw(rng)
    path = os.path.join(folder, "case.elf")
    with open(path, "wb") as file:
        file.write(elf)
    return {"elf": path, "name": name, "section": section, "address": address,
            "hash": rng.random() < 0.5, "security_version": sometimes_wrong(rng, 16),
            "key": sometimes_wrong(rng, 16), "nonce": sometimes_wrong(rng, 12)}


def draw_sfu(rng, _):
    size = rng.choice([0] + [sizes(rng)] * 30)
    return {"firmware": rng.randbytes(size), "address": top(rng, size) % (1 << 32),
            "version": rng.choice([0, 255, 256, rng.randrange(256)]),
            "key": sometimes_wrong(rng, 16), "nonce": sometimes_wrong(rng, 12)}


def private_key(rng, folder, curve):
    """A PEM file with a random key, made by openssl where the Python library lacks the curve."""
    path = os.path.join(folder, curve + ".pem")
    number = rng.randrange(1, package_format.CURVES[curve].order)
    if curve in GROUPS:
        pem = ec.derive_private_key(number, GROUPS[curve]).private_bytes(
            serialization.Encoding.PEM, serialization.PrivateFormat.PKCS8,
            serialization.NoEncryption())
    else:
        subprocess.run(["openssl", "ecparam", "-genkey", "-noout", "-name", curve, "-out", path],
                       check=True)
        text = subprocess.run(["openssl", "ec", "-in", path, "-noout", "-text"], check=True,
                              capture_output=True, text=True).stdout
        digits = text.split("priv:")[1].split("pub:")[0]
        number = int("".join(digits.split()).replace(":", ""), 16)
        with open(path, "rb") as file:
            pem = file.read()
    with open(path, "wb") as file:
        file.write(pem)
    return path, number


def draw_ssp(rng, folder):
    request = {"payload": sometimes_wrong(rng, 152), "key": sometimes_wrong(rng, 16),
               "nonce": sometimes_wrong(rng, 16), "oem_kind": rng.choice([1, 2]),
               "oem_file": os.path.join(folder, "oem")}
    if request["oem_kind"] == 2:
        request["oem"] = content = rng.randbytes(32)
    else:
        curve = rng.choice(list(package_format.CURVES))
        path, number = private_key(rng, folder, curve)
        content = subprocess.run(["openssl", "ec", "-in", path, "-pubout"], check=True,
                                 capture_output=True).stdout
        assert len(content) == 178
        request["oem"] = package_format.CURVES[curve].der(number)
    with open(request["oem_file"], "wb") as file:
        file.write(content)
    return request


def draw_signed(rng, folder):
    curve = rng.choice(list(package_format.CURVES))
    path, number = private_key(rng, folder, curve)
    whole = rng.randbytes(sizes(rng))
    return {"key_file": path, "curve": curve, "private": number, "file": whole,
            "signed_size": rng.choice([len(whole), rng.randrange(len(whole) + 1)]),
            "version": rng.randrange(256)}


def expected(kind, request):
    try:
        return getattr(package_format, kind)(request).hex()
    except package_format.Refused:
        return "refused"


def verified(request, file):
    """What the openssl command says of the signature."""
    image, trailer = file[:request["signed_size"]], file[-128:]
    r, s = (int.from_bytes(trailer[i:i + 32], "big") for i in (56, 88))
    numbers = [n.to_bytes(33, "big").lstrip(b"\0") for n in (r, s)]
    numbers = [b"\0" * (n[0] >> 7) + n for n in numbers]
    der = b"".join(b"\x02" + bytes([len(n)]) + n for n in numbers)
    with tempfile.TemporaryDirectory() as folder:
        names = [os.path.join(folder, n) for n in ("data", "signature", "public")]
        for name, content in zip(names, (image + trailer[:56], b"0" + bytes([len(der)]) + der)):
            with open(name, "wb") as out:
                out.write(content)
        subprocess.run(["openssl", "ec", "-in", request["key_file"], "-pubout", "-out", names[2]],
                       check=True, capture_output=True)
        return subprocess.run(["openssl", "dgst", "-sha256", "-verify", names[2], "-signature",
                               names[1], names[0]], capture_output=True).returncode == 0


def judge(kind, request, theirs):
    mine = expected(kind, request)
    if mine == "refused" or theirs.startswith("refused"):
        return "" if theirs.startswith(mine) else "one side refuses"
    if mine != theirs:
        return "other bytes"
    if kind == "signed" and not verified(request, bytes.fromhex(theirs)):
        return "openssl refuses the signature"
    if kind == "smi":
        return elf_cases.judge(request["elf"], request["name"])
    return ""


def main():
    probe, count = sys.argv[1], int(sys.argv[2])
    rng = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1)
    process = subprocess.Popen([probe], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    draws = {"smi": draw_smi, "sfu": draw_sfu, "ssp": draw_ssp, "signed": draw_signed}
    seen = collections.Counter()
    with tempfile.TemporaryDirectory() as folder:
        for number in range(count):
            kind = rng.choice(list(draws))
            request = draws[kind](rng, folder)
            line = {k: v.hex() if isinstance(v, bytes) else v for k, v in request.items()}
            print(json.dumps({"kind": kind, **line, "private": 0}), file=process.stdin, flush=True)
            theirs = process.stdout.readline().strip()
            fault = judge(kind, request, theirs)
            if fault:
                print(f"request {number}, {kind}: {fault}\n{line}\n{theirs[:400]}")
                return 1
            seen[kind + (" refused" if theirs.startswith("refused") else " equal")] += 1
    for what, times in seen.most_common():
        print(f"{times:7} {what}")
    return 0


sys.exit(main())
