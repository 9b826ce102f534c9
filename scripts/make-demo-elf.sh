#!/usr/bin/env bash
# Makes data/demo/firmware.elf: a small ELF file as a linker for Cortex-M leaves it, with code and
# constants in flash, initialised data that runs in RAM but is loaded from flash, and a .bss that
# isn't in the file. Needs arm-none-eabi-as and -ld (package binutils-arm-none-eabi); the committed
# file needs neither.
# Usage: make-demo-elf.sh [OUTPUT]
set -euo pipefail
cd "$(dirname "$0")/.."
output=$(realpath -m "${1:-data/demo/firmware.elf}")
command -v arm-none-eabi-as >/dev/null || {
    echo "make-demo-elf.sh: install binutils-arm-none-eabi first" >&2
    exit 1
}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"

cat >update.s <<'S'
    .syntax unified
    .cpu cortex-m33
    .thumb
    .section .vectors, "a"
    .word _stack_top
    .word reset
    .fill 14, 4, 0
    .text
    .global reset
    .type reset, %function
    .thumb_func
reset:
    ldr r0, =_data_load
    ldr r1, =_data_start
    ldr r2, =_data_end
copy:
    cmp r1, r2
    bhs done
    ldr r3, [r0], #4
    str r3, [r1], #4
    b copy
done:
    wfi
    b done
    .pool
    .section .rodata, "a"
    .asciz "update agent of the demo"
    .balign 4
    .set number, 1
    .rept 600
    .word (number * 0x9E3779B1) & 0xFFFFFFFF
    .set number, number + 1
    .endr
    .data
    .word 0x600D600D, 3, 5, 8, 13, 21
    .bss
    .space 512
S
cat >update.ld <<'S'
MEMORY
{
    FLASH (rx) : ORIGIN = 0x08060000, LENGTH = 64K
    RAM (rwx) : ORIGIN = 0x20000000, LENGTH = 64K
}
ENTRY(reset)
_stack_top = ORIGIN(RAM) + LENGTH(RAM);
SECTIONS
{
    .text : { KEEP(*(.vectors)) *(.text) *(.rodata) . = ALIGN(4); } > FLASH
    .data : { _data_start = .; *(.data) . = ALIGN(4); _data_end = .; } > RAM AT > FLASH
    _data_load = LOADADDR(.data);
    .bss (NOLOAD) : { *(.bss) } > RAM
    /DISCARD/ : { *(.ARM.attributes) }
}
S
arm-none-eabi-as -o update.o update.s
arm-none-eabi-ld -z max-page-size=32 --no-warn-rwx-segments -T update.ld -o firmware.elf update.o
install -m 644 firmware.elf "$output"
