#!/usr/bin/python3
"""Makes ELF files with arm-none-eabi-gcc and ld, takes a module out of each, and asks readelf,
eu-elflint and objcopy about the clear ELF: they may say nothing that they didn't say of the input.

    cmake --build --preset dev --target package_probe
    /usr/bin/python3 tests/preparation/clear_elf_toolchain.py build/dev/tests/package_probe

Needs Debian's gcc-arm-none-eabi and elfutils.
"""

import json
import os
import subprocess
import sys
import tempfile

import elf_cases

SOURCE = """
#define IN(name) __attribute__((section(name), used, noinline))
IN(".first") static int first_local(int x) { return x * 3 + 17; }
IN(".first") int first_global(int x) { return first_local(x) ^ 0x5aa5; }
IN(".module") static int module_local(int x) { return x * 31 + 0x1234567; }
IN(".module") int module_global(int x) { return module_local(x) ^ 0x7eadbee; }
__attribute__((section(".module.t"), used)) const unsigned module_table[24] = {0x11111111, 0x22334455, 0x99887766, 0xabcdef01};
IN(".last") static int last_local(int x) { return x - 99; }
IN(".last") int last_global(int x) { return last_local(x) + module_global(x); }
int counter = 7, zeroed[9];
void _start(void) { counter = first_global(counter) + last_global(zeroed[0]); }
"""

MANY = "\n".join(f'__attribute__((section(".many{i}"), used)) const int many{i}[8] = {{{i}, 1}};'
                 for i in range(300))

PLACES = {
    "middle": ".first : { *(.first) } .module : { *(.module*) } .last : { *(.last) }",
    "start": ".module : { *(.module*) } .first : { *(.first) } .last : { *(.last) }",
    "end": ".first : { *(.first) } .last : { *(.last) } .module : { *(.module*) }",
}
TAIL = ".text : { *(.text*) *(.rodata*) } .data 0x20000000 : AT(LOADADDR(.text) + 0x1000) " \
       "{ *(.data*) } .bss : { *(.bss*) }"


def script(order, start, extra=""):
    return f"SECTIONS {{ . = {start}; {order} {extra} {TAIL} }}"


def headers_script(parts):
    return "PHDRS { a PT_LOAD; m PT_LOAD; b PT_LOAD; d PT_LOAD; } SECTIONS { . = 0x08000000; " \
           ".first : { *(.first) } :a .module 0x08004000 : { *(.module*) } :m " \
           f".last 0x08008000 : {{ *(.last) }} :b .text : {{ *(.text*) }} :b " \
           ".data 0x20000000 : { *(.data*) } :d .bss : { *(.bss*) } :d }"


CASES = {
    **{f"{place}, {start}": (script(order, start), [], SOURCE)
       for place, order in PLACES.items() for start in ("0x08000000", "0x08000200")},
    "alone in its PT_LOAD": (headers_script(None), [], SOURCE),
    "300 sections": (script(PLACES["middle"], "0x08000000",
                            " ".join(f".many{i} : {{ *(.many{i}) }}" for i in range(300))), [],
                     SOURCE + MANY),
    "relocations kept": (script(PLACES["middle"], "0x08000000"), ["-Wl,-q"], SOURCE),
    "debug sections": (script(PLACES["middle"], "0x08000000"), ["-g"], SOURCE),
    "no room for headers": (script(PLACES["middle"], "0x08000000 + 0x54"), ["-Wl,-n"], SOURCE),
    "one-byte pages": (script(PLACES["middle"], "0x08000000"),
                       ["-Wl,-z,max-page-size=4", "-Wl,-z,common-page-size=4"], SOURCE),
}


def run(probe, folder, name, case):
    layout, flags, source = case
    path = os.path.join(folder, "case.elf")
    for ending, text in (("c", source), ("ld", layout)):
        with open(os.path.join(folder, "case." + ending), "w") as file:
            file.write(text)
    subprocess.run(["arm-none-eabi-gcc", "-mcpu=cortex-m4", "-mthumb", "-Os", "-nostdlib",
                    "-ffreestanding", "-w", *flags, "-T", os.path.join(folder, "case.ld"), "-o",
                    path, os.path.join(folder, "case.c")], check=True)
    request = {"kind": "smi", "elf": path, "name": ".module", "key": "00" * 16, "nonce": "11" * 12,
               "security_version": "22" * 16}
    answer = subprocess.run([probe], input=json.dumps(request) + "\n", capture_output=True,
                            text=True, check=True).stdout
    if answer.startswith("refused"):
        return answer
    with open(path + ".clear", "rb") as file:
        if b"module_local" in file.read() and "-g" not in flags:
            return "the name of a local symbol is left"
    return elf_cases.judge(path, ".module", tools=True)


def main():
    faults = 0
    with tempfile.TemporaryDirectory() as folder:
        for name, case in CASES.items():
            fault = run(sys.argv[1], folder, name, case)
            print(f"{name}: {fault or 'fine'}")
            faults += fault != ""
    return min(faults, 1)


sys.exit(main())
