#!/usr/bin/python3
"""Prints KnownAnswers.h: one image for each format version and one package of each other kind,
computed by image_format.py and package_format.py.

Run again after a change of the format, in this folder:
    /usr/bin/python3 known_answers.py > KnownAnswers.h
Needs Debian's python3-cryptography. The inputs are those of `knownAnswerRequest()` in
PreparationTest.cpp and PackagesTest.cpp: byte i of an input is (start + step * i) modulo 256.
"""

import hashlib

import image_format
import package_format


def ramp(start, step, count):
    return bytes((start + step * i) % 256 for i in range(count))


def request(hash_wanted):
    return {
        "key": ramp(0x10, 1, 16), "nonce": ramp(0xA0, 3, 12), "image_version": 7,
        "hash": hash_wanted, "profile": 0x484,
        "obk": [(0x0FFD0100, 20, 1, ramp(0x33, 7, 20))],
        "key_area": ramp(5, 11, 24),
        "firmware": [(0x08000210, ramp(1, 13, 150)), (0x08000004, ramp(9, 5, 21))],
        "option_bytes": ramp(0xF0, 1, 8),
        "ram": 128,
    }


def literal(name, image):
    text = image.hex()
    lines = "\n".join(f'    "{text[i:i + 88]}"' for i in range(0, len(text), 88))
    return f"inline constexpr char {name}[] =\n{lines};\n"


print("#pragma once\n// Written by known_answers.py, which shares no code with the builder.\n")
print(literal("kKnownVersion1", image_format.build(request(False))))
print(literal("kKnownVersion2", image_format.build(request(True))), end="")

PACKAGES = {
    "kKnownSmi": package_format.smi({
        "key": ramp(0x10, 1, 16), "nonce": ramp(0xA0, 3, 12), "security_version": ramp(7, 5, 16),
        "section": ramp(0x40, 9, 70), "address": 0x08004020, "hash": True}),
    "kKnownSfu": package_format.sfu({
        "key": ramp(0x10, 1, 16), "nonce": ramp(0xA0, 3, 12), "version": 200,
        "firmware": ramp(3, 11, 4100), "address": 0x08001234}),
    "kKnownSsp": package_format.ssp({
        "key": ramp(0x10, 1, 16), "nonce": ramp(0xA0, 3, 16), "payload": ramp(1, 7, 152),
        "oem_kind": 2, "oem": ramp(0x80, 3, 32)}),
    "kKnownSignedP256": package_format.signed({
        "curve": "prime256v1", "private": int.from_bytes(ramp(0x21, 3, 32), "big"),
        "file": ramp(5, 7, 60), "signed_size": 40, "version": 9}),
    "kKnownSignedBrainpool": package_format.signed({
        "curve": "brainpoolP256t1", "private": int.from_bytes(ramp(0x21, 3, 32), "big"),
        "file": ramp(5, 7, 60), "signed_size": 60, "version": 9}),
}
for name, package in PACKAGES.items():
    # A long package stands for itself by its digest.
    shown = package if len(package) < 400 else hashlib.sha256(package).digest()
    print("\n" + literal(name, shown), end="")
