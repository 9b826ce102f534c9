#!/usr/bin/python3
"""Prints KnownAnswers.h: one image for each format version, computed by image_format.py.

Run again after a change of the format, in this folder:
    /usr/bin/python3 known_answers.py > KnownAnswers.h
Needs Debian's python3-cryptography. The inputs are those of `knownAnswerRequest()` in
PreparationTest.cpp: byte i of an input is (start + step * i) modulo 256.
"""

import image_format


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
