#!/usr/bin/env python3
"""Makes the inputs in data/demo. Same script, same bytes.

Usage: make-demo-data.py [--check]
  --check  write nothing; exit 1 and name the file if one differs from what would be made
"""
import hashlib
import pathlib
import struct
import sys

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "data" / "demo"
CODE_START = 0x08000000
CODE_SIZE = 0x3000
SETTINGS_START = 0x08010000
STACK_TOP = 0x20030000
HEX_RECORD = 32  # data bytes a line


def stream(label, size):
    """`size` bytes that look random and depend on `label` alone."""
    blocks = (hashlib.sha256(f"{label} {i}".encode()).digest() for i in range(size // 32 + 1))
    return b"".join(blocks)[:size]


def code():
    """A vector table of 128 words as a Cortex-M device expects it, then the program."""
    handlers = [CODE_START + 0x200 + 0x10 * i + 1 for i in range(127)]
    table = struct.pack("<128I", STACK_TOP, *handlers)
    return table + stream("code", CODE_SIZE - len(table))


def settings():
    """A settings block in a page of its own, behind a hole."""
    return b"demo settings, version 1\0".ljust(64, b"\xff") + stream("settings", 320)


def hex_line(kind, offset, data):
    record = struct.pack(">BHB", len(data), offset, kind) + data
    return ":" + (record + bytes([-sum(record) & 0xFF])).hex().upper() + "\n"


def intel_hex(segments, start):
    lines = []
    for address, data in segments:
        lines.append(hex_line(4, 0, struct.pack(">H", address >> 16)))
        for at in range(0, len(data), HEX_RECORD):
            lines.append(hex_line(0, (address + at) & 0xFFFF, data[at:at + HEX_RECORD]))
    lines.append(hex_line(5, 0, struct.pack(">I", start)))
    lines.append(hex_line(1, 0, b""))
    return "".join(lines).encode()


def option_bytes():
    """One line a register: address, value."""
    values = [0x1FEFF8AA, 0x0800007F, 0x0BF9007C, 0x0C00007C, 0xFF80FFFF, 0xFF80FFFF]
    return "".join(f"0x{0x40022040 + 4 * i:08X},0x{value:08X}\n"
                   for i, value in enumerate(values)).encode()


def files():
    firmware = [(CODE_START, code()), (SETTINGS_START, settings())]
    return {
        "firmware.hex": intel_hex(firmware, CODE_START + 0x201),
        "firmware.bin": stream("binary", 0x1000 - 5),
        "key.bin": stream("key", 16),
        "nonce.bin": stream("nonce", 12),
        "option-bytes.csv": option_bytes(),
    }


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        print(__doc__, file=sys.stderr)
        return 3
    wrong = 0
    for name, data in files().items():
        path = FOLDER / name
        if not check:
            path.write_bytes(data)
        elif not path.is_file() or path.read_bytes() != data:
            print(f"{path} differs from what make-demo-data.py makes", file=sys.stderr)
            wrong = 1
    return wrong


sys.exit(main())
