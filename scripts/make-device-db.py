#!/usr/bin/env python3
"""Makes the device database in data/SPB_SFI_OB_Data_Base from the tables below. Same script, same bytes.

Usage: make-device-db.py [--check]
  --check  write nothing; exit 1 and name the file if one differs from what would be made

A table has a line for each category ("@Access"), register ("ACCLVL") and field:
  HIGH:LOW NAME DEFAULT [ACCESS] [option=value ...] | description | VALUE=label; VALUE!=label
"!" marks a value that can't be taken back. Options: config (list of configurations), ref (name of a
condition), eq (multiplier,offset), bybit.
"""
import pathlib
import sys
from xml.sax.saxutils import escape, quoteattr

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "data" / "SPB_SFI_OB_Data_Base"
NOTE = ("This file is made by scripts/make-device-db.py. All devices, registers, addresses and "
        "values in it are invented.")

# --- Registers that several devices share -----------------------------------------------------------

LEVEL = """@Access
ACCLVL
  7:0 LEVEL 0xAA | How much of the memory a debug probe may read. | 0xAA=open; 0x55=code only; 0xCC!=closed for good
  8:8 DBGSLEEP 1 | Keeps the debug port alive while the core sleeps. | 0=off; 1=on
  11:10 PROBE 0 | Which interfaces a debug probe may use. | 0=both; 1=serial wire; 2=none until reset; 3!=none for good
  16:16 REGRESS 1 | Allows a return to the open level, which erases the memory. | 0!=never; 1=allowed
"""

KEYS = """@Access
ACCKEYL
  31:0 KEYLOW 0 W | Lower half of the key that unlocks the debug port.
ACCKEYH
  31:0 KEYHIGH 0 W | Upper half of the key that unlocks the debug port.
"""

START = """@Start-up
STACFG
  1:0 SOURCE 1 | Memory that the core starts from. | 0=loader; 1=main memory; 2=RAM
  2:2 SWAP 0 | Exchanges the two banks of the main memory. | 0=as built; 1=exchanged
  3:3 PINSRC 1 | Takes the start pin into account. | 0=ignored; 1=looked at
  7:4 DELAY 0x4 | Clock cycles that the core waits behind a reset, in steps of 64.
  8:8 CRCTEST 0 | Checks the main memory before the first instruction. | 0=off; 1=on
  9:9 MARCH 0 | Tests the RAM before the first instruction. | 0=off; 1=on
  13:12 RETRY 2 | Starts that are tried before the loader takes over. | 0=one; 1=two; 2=four; 3=eight
"""


def start_address(number, default):
    return f"""@Start-up
STAADR{number}
  31:7 ADDRESS {default:#x} eq=0x80,0x0 | First address that the core runs, in steps of 128 bytes.
  0:0 KEEP 0 | Freezes the start address until the memory is erased. | 0=free; 1!=frozen
"""


SUPPLY = """@Supply
SUPCFG
  2:0 DROPLVL 0 | Voltage below which the device stays in reset. | 0=1.7 V; 1=2.0 V; 2=2.2 V; 3=2.5 V; 4=2.8 V
  4:4 STOPRST 1 | Resets the device when it enters the stop mode. | 0=reset; 1=no reset
  5:5 STBYRST 1 | Resets the device when it enters the standby mode. | 0=reset; 1=no reset
  6:6 OFFRST 1 | Resets the device when it enters the off mode. | 0=reset; 1=no reset
  9:8 RAMPWR 3 | Blocks of the RAM that stay powered in the standby mode. | 0=none; 1=first; 2=second; 3=both
  14:12 RISE 0x3 | Time that the supply has to settle, in steps of 50 µs.
  20:20 IOLOW 0 | Runs the fast pins below 2.5 V. | 0=off; 1=on
  21:21 IOFAST 0 | Drives the fast pins at full speed. | 0=off; 1=on
"""

WATCHDOG = """@Watchdog
WDGCFG
  0:0 FREESW 1 | Who starts the free-running watchdog. | 0=hardware; 1=software
  1:1 WINSW 1 | Who starts the window watchdog. | 0=hardware; 1=software
  2:2 STOPRUN 1 | Lets the watchdog count on in the stop mode. | 0=frozen; 1=counting
  3:3 STBYRUN 1 | Lets the watchdog count on in the standby mode. | 0=frozen; 1=counting
  6:4 DIVIDER 0 | Divides the watchdog's clock. | 0=by 4; 1=by 8; 2=by 16; 3=by 32; 4=by 64
  27:16 PERIOD 0xFFF | Count from which the watchdog runs down.
"""


def lock_range(letter, last):
    width = last.bit_length()
    return f"""@Sector locks
LOCK{letter}
  {width - 1}:0 FIRST {last:#x} | First sector of bank {letter} that can't be written.
  {16 + width - 1}:16 LAST 0x0 | Last sector of bank {letter} that can't be written.
  31:31 HOLD 0 | Keeps the locked range until the device is erased. | 0=free; 1!=kept for good
"""


def lock_bits(letter, count):
    lines = [f"@Sector locks\nLOCK{letter}\n"]
    for i in range(count):
        lines.append(f"  {i}:{i} SEC{letter}{i} 1 | Protects sector {i} of bank {letter} against "
                     "writing. | 0=locked; 1=writable\n")
    lines.append(f"  30:30 ERASE{letter} 1 | Lets a whole erase include the locked sectors of bank "
                 f"{letter}. | 0=left out; 1=included\n")
    return "".join(lines)


def private(letter, last):
    width = last.bit_length()
    return f"""@Private code
PRIV{letter}
  {width - 1}:0 START {last:#x} | First block of bank {letter} that can be run but not read.
  {12 + width - 1}:12 END 0x0 | Last block of bank {letter} that can be run but not read.
  30:30 ERASABLE 1 | Erases the private code when the device is opened again. | 0!=never erased; 1=erased
  31:31 BARRIER 0 | Hides the private code from every debug probe. | 0=off; 1=on
"""


def isolation(letter, last):
    width = last.bit_length()
    return f"""@Isolation
ISO{letter}
  {width - 1}:0 BEGIN 0x0 | First block of bank {letter} that belongs to the secure world.
  {16 + width - 1}:16 END {last:#x} ref=SecureWorld | Last block of bank {letter} that belongs to the secure world.
"""


WORLDS = """@Isolation
ISOCFG
  0:0 WORLDS 0 | Splits the device into a secure and an open world. | 0=one world; 1!=two worlds
  1:1 SHARED 0 ref=SecureWorld | Lets both worlds use the RAM between them. | 0=secure only; 1=both
  7:4 RAMSPLIT 0x8 | Share of the RAM that belongs to the secure world, in sixteenths.
  8:8 DMALOCK 0 | Takes the DMA channels away from the open world. | 0=free; 1=taken
  31:24 TAMPER 0xA5 | Answer to an opened case. | 0xA5=none; 0x5A=reset; 0x3C!=keys are wiped
"""

ECC = """@Memory checks
ECCCFG
  1:0 RAMECC 1 | Corrects single faults of the RAM. | 0=off; 1=corrects; 2=corrects and reports
  4:4 CACHEPAR 0 | Checks the parity of the cache. | 0=off; 1=on
  5:5 HALT 1 | Stops the core at a fault that can't be corrected. | 0=goes on; 1=stops
  15:8 SCRUB 0x10 | Milliseconds between two walks through the memory.
  27:20 LIMIT 0xFF | Corrected faults after which a sector is taken out of use.
"""

BUILD = """@Device
BUILDID
  7:0 STEP 0x12 R | Step of the silicon, letter and number.
  8:8 SECURE 1 R | Tells that the device was made with a secure loader. | 0=plain; 1=secure
  11:10 LANE 0 R bybit | Line of the factory that made the wafer. | 0=not this one; 1=this one
  23:16 YEAR 0x19 R | Year of manufacture, counted from 2000.
  29:24 WEEK 0x20 R | Week of manufacture.
"""

# --- One table a device -----------------------------------------------------------------------------

H7_ONE = (LEVEL + START + start_address(0, 0x100000) + start_address(1, 0x3FE000) + SUPPLY +
          WATCHDOG + lock_bits("A", 12) + private("A", 0xFF) + """@Isolation
ISORAM
  11:0 BEGIN 0x0 | First block of the RAM that only the secure start code sees.
  27:16 END 0xFFF | Last block of the RAM that only the secure start code sees.
  31:31 ENABLE 0 | Starts the device through the secure start code. | 0=plain start; 1!=secure start
""" + ECC)

H7_TWO = (LEVEL + """@Access
ACCCORE
  0:0 DBGMAIN 1 | Lets a debug probe halt the main core. | 0=no; 1=yes
  1:1 DBGSIDE 1 | Lets a debug probe halt the side core. | 0=no; 1=yes
  5:4 CROSS 0 | What one core may read of the other's debug registers. | 0=all; 1=state; 2=nothing
  23:8 TICKET 0xFFFF | Number that a debug probe must send first.
""" + START + start_address(0, 0x100000) + start_address(1, 0x3FE000) + """@Start-up
STASIDE
  0:0 SIDERUN 1 | Starts the side core together with the main core. | 0=held; 1=started
  1:1 MAINRUN 1 | Starts the main core behind a reset. | 0=held; 1=started
  31:7 SIDEADR 0x102000 eq=0x80,0x0 | First address that the side core runs, in steps of 128 bytes.
""" + SUPPLY + WATCHDOG + """@Watchdog
WDGSIDE
  0:0 FREESW 1 | Who starts the side core's watchdog. | 0=hardware; 1=software
  2:1 SCOPE 3 | What the side core's watchdog resets. | 1=side core; 2=main core; 3=device
  27:16 PERIOD 0x7FF | Count from which the side core's watchdog runs down.
""" + lock_bits("A", 12) + lock_bits("B", 12) + private("A", 0xFF) + private("B", 0xFF))

H7B = (LEVEL + START + start_address(0, 0x100000) + SUPPLY + WATCHDOG + lock_range("A", 0x7F) +
       lock_range("B", 0x7F) + private("A", 0x1FF) + """@Isolation
ISOKEY
  3:0 SLOTS 0xF | Key slots that only the secure start code may load. | 0=none; 1=first; 3=first two; 15=all
  4:4 WIPEKEYS 0 | Wipes the key slots at each reset. | 0=kept; 1=wiped
  31:16 OWNER 0 | Number of the customer that the key slots belong to.
@One-time area
OTPLOCK
  1:0 BLOCK0 0 bybit | Locks one of the first two blocks of the one-time area. | 0=open; 1!=locked
  31:8 SERIAL 0 | Serial number that the customer gives.
""")

H73 = (LEVEL + START + start_address(0, 0x100000) + """@Supply
SUPCFG
  1:0 DROPLVL 0 | Voltage below which the device stays in reset. | 0=1.6 V; 1=2.1 V; 2=2.4 V; 3=2.7 V
  4:4 STOPRST 1 | Resets the device when it enters the stop mode. | 0=reset; 1=no reset
  5:5 STBYRST 1 | Resets the device when it enters the standby mode. | 0=reset; 1=no reset
  15:8 RISE 0x20 | Time that the supply has to settle, in steps of 10 µs.
  26:24 RAMSHARE 0 | How the shared RAM is split between data and instructions. | 0=all data; 1=three to one; 2=halves; 3=one to three
""" + WATCHDOG + lock_bits("A", 8) + private("A", 0xFF) + """@Isolation
ISOBOX
  9:0 BEGIN 0x3FF | First block of the memory behind the wall.
  25:16 END 0x0 | Last block of the memory behind the wall.
  31:31 WALL 0 | Raises the wall around the memory at the next reset. | 0=down; 1!=up for good
@Encrypted memory
ENCCFG
  0:0 SPEED 0 | Reads the external memory through the fast cipher. | 0=plain; 1=fast
  5:4 ROUNDS 1 | Rounds of the cipher. | 0=eight; 1=twelve; 2=twenty
  27:12 REGION 0 eq=0x1000,0x90000000 | First page of the external memory that is encrypted.
""")

L4 = ("""@Access
ACCLVL
  7:0 LEVEL 0xAA | How much of the memory a debug probe may read. | 0xAA=open; 0x33=code only; 0xCC!=closed for good
  9:8 TRIES 3 | Wrong keys after which the debug port stays silent until a reset. | 0=one; 1=two; 2=four; 3=eight
@Start-up
STACFG
  0:0 PINSRC 1 | Takes the start pin into account. | 0=ignored; 1=looked at
  1:1 STARTBIT 1 | Memory to start from while the pin is ignored. | 0=main memory; 1=loader
  2:2 TWOBANKS 1 | Uses the main memory as two banks. | 0=one bank; 1=two banks
  3:3 SWAP 0 | Exchanges the two banks of the main memory. | 0=as built; 1=exchanged
  7:4 DELAY 0x2 | Clock cycles that the core waits behind a reset, in steps of 64.
@Supply
SUPCFG
  2:0 DROPLVL 0 | Voltage below which the device stays in reset. | 0=1.7 V; 1=2.0 V; 2=2.2 V; 3=2.5 V; 4=2.8 V
  4:4 STOPRST 1 | Resets the device when it enters the stop mode. | 0=reset; 1=no reset
  5:5 STBYRST 1 | Resets the device when it enters the standby mode. | 0=reset; 1=no reset
  24:24 RAMPAR 1 | Checks the parity of the second RAM. | 0=on; 1=off
  25:25 RAMRST 0 | Erases the second RAM at each reset. | 0=erased; 1=kept
""" + WATCHDOG + lock_range("A", 0xFF) + lock_range("B", 0xFF) + """@Private code
PRIVA
  15:0 START 0xFFFF eq=0x8,0x08000000 | First double word that can be run but not read.
PRIVAEND
  15:0 END 0x0 eq=0x8,0x08000000 | Last double word that can be run but not read.
  31:31 ERASABLE 1 | Erases the private code when the device is opened again. | 0!=never erased; 1=erased
""")

L5 = (LEVEL + KEYS + START + start_address(0, 0x100000) + start_address(1, 0x17F200) + SUPPLY +
      WATCHDOG + lock_range("A", 0x7F) + lock_range("B", 0x7F) + private("A", 0x7F) + WORLDS +
      isolation("A", 0x7F) + isolation("B", 0x7F))

WL = (LEVEL + """@Start-up
STACFG
  0:0 PINSRC 1 | Takes the start pin into account. | 0=ignored; 1=looked at
  1:1 MAINRUN 1 | Starts the main core behind a reset. | 0=held; 1=started
  2:2 RADIORUN 0 | Starts the radio core behind a reset. | 0=held; 1=started
  12:8 BEACON 0x5 | Milliseconds before the radio core may send.
STARADIO
  17:2 RADIOADR 0x8000 eq=0x4,0x08000000 | First word that the radio core runs.
  31:31 FROMRAM 0 | Starts the radio core from the RAM. | 0=main memory; 1=RAM
""" + SUPPLY + WATCHDOG + lock_range("A", 0x7F) + private("A", 0xFF) + WORLDS + """@Radio
RADCFG
  1:0 BAND 1 | Band that the radio may use. | 0=none; 1=868 MHz; 2=915 MHz; 3=both
  7:4 POWER 0xE | Greatest power that the radio may send with, in dBm.
  8:8 LISTEN 1 | Listens before it sends. | 0=off; 1=on
  23:16 DUTY 0x64 | Share of an hour that the radio may send, in tenths of a percent.
RADID
  31:0 ADDRESS 0xFFFFFFFF | Address that the radio answers to.
""")


def u5(last, boot, memory):
    """The ten registers that all three devices of the family have, in one order."""
    return (LEVEL + START + start_address(0, boot) + SUPPLY + WATCHDOG + lock_range("A", last) +
            private("A", last) + WORLDS + isolation("A", last) + memory)


U5_SMALL = u5(0x1F, 0x100000, """@Memory checks
ECCCFG
  0:0 RAMECC 0 | Corrects single faults of the RAM. | 0=off; 1=on
  15:8 SCRUB 0x20 | Milliseconds between two walks through the memory.
""")
U5_MIDDLE = u5(0x7F, 0x100000, ECC)
U5_LARGE = u5(0xFF, 0x100000, ECC) + KEYS.replace("@Access", "@Keys") + """@Keys
KEYCFG
  2:0 SLOT 0 | Slot that the unlocking key is compared with. | 0=first; 1=second; 2=third; 5=none
  7:4 TRIES 0x3 | Wrong keys after which the slot is closed.
  8:8 BURN 0 | Closes the slot for good after the last wrong key. | 0=until reset; 1!=for good
@Display
DSPCFG
  1:0 LANES 1 | Lanes of the display port. | 0=none; 1=one; 2=two; 3=four
  11:4 BLANK 0x14 | Lines between two pictures.
  24:13 CLOCK 0x1F4 | Clock of the display port, in kHz times 100.
@External memory
EXTBASE
  31:12 BASE 0x90000 eq=0x1000,0x0 | First address of the external memory.
EXTCFG
  3:0 WAIT 0x6 | Clock cycles between address and data.
  4:4 WRITABLE 1 | Lets the core write to the external memory. | 0=read only; 1=writable
  9:8 WIDTH 2 | Lines of the external bus. | 0=one; 1=four; 2=eight; 3=sixteen
  20:14 REFRESH 0x28 | Clock cycles between two refreshes.
EXTLOCK
""" + "".join(f"  {i}:{i} PAGE{i} 1 | Protects page group {i} of the external memory. "
              "| 0=locked; 1=writable\n" for i in range(12)) + BUILD

WBA = (LEVEL + START + start_address(0, 0x100000) + SUPPLY + WATCHDOG + lock_range("A", 0x7F) +
       WORLDS + isolation("A", 0x7F) + """@Radio
RADCFG
  0:0 ENABLE 1 | Powers the radio behind a reset. | 0=off; 1=on
  5:4 ROLE 1 | What the radio does first. | 0=waits; 1=advertises; 2=scans; 3=both
  13:8 CHANNEL 0x25 | Channel that the radio begins on.
  21:14 INTERVAL 0x20 | Time between two packets, in steps of 625 µs.
""" + BUILD)

H5 = (LEVEL.replace("open; 0x55=code only", "open; 0x72=provisioning; 0x55=code only") + START +
      start_address(0, 0x100000) + start_address(1, 0x180000) + SUPPLY + WATCHDOG +
      lock_bits("A", 16) + lock_bits("B", 16) + private("A", 0xFF) + private("B", 0xFF) + WORLDS +
      isolation("A", 0x7F) + isolation("B", 0x7F) + ECC + """@Provisioning
PRVCFG
  7:0 STATE 0x17 | Where the device stands in its life. | 0x17=blank; 0x2E=provisioned; 0x5C!=closed; 0x39!=locked for good
  11:8 COUNTER 0 | Number of times that the device was provisioned.
  31:12 SLOTMAP 0xFFFFF | Slots of the key store that may still be written.
PRVKEY
  31:0 ROOTKEY 0 W | First word of the digest of the root key.
""")

# --- Devices ----------------------------------------------------------------------------------------


def storage(name, description, access, *configurations, extra=""):
    return (f"<Peripheral><name>{name}</name><type>Storage</type>"
            f"<description>{description}</description><access>{access}</access>"
            f"<erasedvalue>0xFF</erasedvalue>{extra}{''.join(configurations)}</Peripheral>")


def memory(name, size, address, banks, config="", organization="Single"):
    """One configuration; banks are (bank, sector, sector size, count)."""
    parts = []
    at = address
    for bank, sector, each, count in banks:
        parts.append(f'<Bank name="{bank}"><Field><Parameters name="{sector}" size="{each:#x}" '
                     f'address="{at:#010x}" occurence="{count:#x}"/></Field></Bank>')
        at += each * count
    attribute = f' config="{config}"' if config else ""
    return (f'<Configuration{attribute}><Parameters name="{name}" size="{size:#x}" '
            f'address="{address:#010x}"/><description>As delivered</description>'
            f"<Organization>{organization}</Organization><Allignement>0x10</Allignement>"
            f"{''.join(parts)}</Configuration>")


def flash(sectors, each, two_banks=True):
    size = sectors * each
    banks = ([("Bank 1", "Sector0", each, sectors // 2),
              ("Bank 2", f"Sector{sectors // 2}", each, sectors // 2)]
             if two_banks else [("Bank 1", "Sector0", each, sectors)])
    return storage(
        "Embedded Flash", "Main memory", "RWE",
        memory("Main memory", size, 0x08000000, banks, organization="Dual" if two_banks else "Single"),
        extra=f'<flashsize address="0x1FFA0010" default="{size // 1024:#x}"/>'
              '<BootloaderVersion address="0x1FFA0020"/>'
              '<DBGMCU_CR address="0x5C001004" mask="0x7"/>'
              '<DBGMCU_APB1_FZ address="0x5C001008" mask="0x1800"/>')


def sram(size):
    return storage("Embedded SRAM", "Data memory", "RWE",
                   memory("RAM", size, 0x20000000, [("RAM", "RAM", size, 1)]))


SYSTEM = storage("System memory", "Loader", "R",
                 memory("Loader", 0x8000, 0x1FFB0000, [("Loader", "Loader", 0x8000, 1)]))
EEPROM = storage("Data EEPROM", "Data memory that keeps its content", "RW",
                 memory("EEPROM", 0x1800, 0x08080000, [("Data", "Page0", 0x80, 48)]))
OTP = storage("OTP", "One-time area", "RW",
              memory("One-time area", 0x400, 0x1FFC0000, [("OTP", "Block0", 0x20, 32)]))
ITCM = storage("ITCM Flash", "Main memory on the instruction bus", "RW",
               memory("Instruction view", 0x100000, 0x00200000, [("View", "Sector0", 0x2000, 128)],
                      config="0"),
               memory("Instruction view", 0x80000, 0x00200000, [("View", "Sector0", 0x2000, 64)],
                      config="1,2"))
MIRROR = storage("MirrorOptionBytes", "Copy of the option bytes", "R",
                 memory("Mirror", 0x80, 0x1FFD0000, [("Mirror", "Word0", 0x4, 32)]))
OTP_MEMORY = ("<Peripheral><name>OTP Memory</name><type>Configuration</type>"
              "<description>One-time words</description><access>RW</access></Peripheral>")


def parsed(table):
    """A table as [(category, [(register, [field, ...])])], equal categories joined in place."""
    categories = []
    for line in table.splitlines():
        if line.startswith("@"):
            if not categories or categories[-1][0] != line[1:]:
                categories.append((line[1:], []))
        elif not line.startswith(" "):
            categories[-1][1].append((line, []))
        else:
            categories[-1][1][-1][1].append(field(line))
    return categories


def field(line):
    head, description, *values = (part.strip() for part in line.split("|"))
    bits, name, default, *options = head.split()
    high, low = (int(bit) for bit in bits.split(":"))
    result = {"name": name, "offset": low, "width": high - low + 1, "default": int(default, 0),
              "description": description, "access": "RW", "values": []}
    for option in options:
        key, _, value = option.partition("=")
        result.update({key: value or True} if key in ("config", "ref", "eq", "bybit")
                      else {"access": key})
    for entry in (values[0].split(";") if values else []):
        number, label = entry.strip().split("=", 1)
        result["values"].append((int(number.rstrip("!"), 0), label, number.endswith("!")))
    return result


def bit_xml(f):
    attributes = "".join(f" {name}={quoteattr(f[key])}"
                         for name, key in (("config", "config"), ("reference", "ref")) if key in f)
    parts = [f"<Name>{f['name']}</Name><Description>{escape(f['description'])}</Description>",
             f"<BitOffset>{f['offset']:#x}</BitOffset><BitWidth>{f['width']:#x}</BitWidth>",
             f"<Access>{f['access']}</Access>"]
    if f["values"]:
        parts.append('<Values ByBit="true">' if "bybit" in f else "<Values>")
        for value, label, final in f["values"]:
            mark = ' irreversible="true"' if final else ""
            parts.append(f'\n          <Val value="{value:#x}"{mark}>{escape(label)}</Val>')
        parts.append("</Values>")
    if "eq" in f:
        multiplier, offset = f["eq"].split(",")
        parts.append(f'<Equation multiplier="{multiplier}" offset="{offset}"/>')
    parts.append(f"<DefaultVal>{f['default']:#x}</DefaultVal>")
    return f"        <Bit{attributes}>{''.join(parts)}</Bit>\n"


def bank_xml(categories, base, attributes="", index=0):
    count = sum(len(registers) for _, registers in categories)
    parts = [f'    <Bank{attributes}><Parameters name="Bank {index + 1}" size="{4 * count:#x}" '
             f'address="{base:#010x}"/>\n']
    for category, registers in categories:
        parts.append(f"    <Category><name>{category}</name>\n")
        for name, fields in registers:
            parts.append(f'      <Field><Parameters name="{name}" size="0x4" '
                         f'address="{base:#010x}"/><AssignedBits>\n'
                         f"{''.join(map(bit_xml, fields))}      </AssignedBits></Field>\n")
            base += 4
        parts.append("    </Category>\n")
    return "".join(parts) + "    </Bank>\n", base


def option_bytes(table, base, other=None, loader=None):
    """
    other   table that stands in configuration 0 where the first category stands in configuration 1
    loader  table of a bank that only the loader's interface reaches
    """
    categories = parsed(table)
    banks = []
    if other is not None:
        zero, _ = bank_xml(parsed(other), base)
        one, after = bank_xml(categories[:1], base)
        banks += [f'    <Configuration config="0">\n{zero}    </Configuration>\n'
                  f'    <Configuration config="1,2">\n{one}    </Configuration>\n',
                  bank_xml(categories[1:], after, index=1)[0]]
    else:
        text, after = bank_xml(categories, base)
        banks.append(text)
    if loader is not None:
        banks.append(bank_xml(parsed(loader), base + 0x100, ' interface="UART"', 2)[0])
    return ("<Peripheral><name>Option Bytes</name><type>Configuration</type>"
            "<description>What the device does behind a reset</description><access>RW</access>\n"
            f"{''.join(banks)}  </Peripheral>")


def interfaces(*conditions):
    """Interface records: condition names of configuration 1, seen through the debug port."""
    tests = "".join(f'<{name} reference="0x1"><WriteRegister address="0x5C000000" value="0x1"/>'
                    f'<ReadRegister address="0x5C000004" mask="0x{1 << i:x}" '
                    f'value="0x{1 << i:x}"/></{name}>' for i, name in enumerate(conditions))
    return ("<Configurations>"
            '<Interface name="JTAG_SWD"><Configuration number="0x0"><AccessPort number="0x0"/>'
            f'</Configuration><Configuration number="0x1"><AccessPort number="0x1"/>{tests}'
            '</Configuration></Interface><Interface name="Bootloader">'
            '<Configuration number="0x0"/></Interface></Configurations>')


def device(identifier, name, series, cpu, peripherals, conditions=("SecureWorld",)):
    return (f"<Device>\n  <DeviceID>0x{identifier:03X}</DeviceID><Vendor>Vendrelis</Vendor>"
            f"<Type>MCU</Type><CPU>{cpu}</CPU><Name>{name}</Name><Series>{series}</Series>"
            f"<Description>Microcontroller of the series {series}</Description>\n"
            "  <SfiTzenInfo><TzOffset>0x0</TzOffset><TzWidth>0x1</TzWidth>"
            "<TzEnableValue>0x1</TzEnableValue><TzDisableValue>0x0</TzDisableValue></SfiTzenInfo>\n"
            "  <peripherals>" + "\n  ".join(peripherals) + "</peripherals>\n"
            f"  {interfaces(*conditions)}\n</Device>\n")


PLAIN_ACCESS = """@Access
ACCOLD
  3:0 OLDLEVEL 0 | Level of the first devices of the series. | 0=open; 1=code only; 7!=closed for good
"""
LOADER_COPY = """@Access
LDRCOPY
  7:0 LEVEL 0xAA R | Level as the loader reports it.
"""
# In configuration 0 the devices of the first series have another bit in the place of SWAP.
EARLY_START = START.replace(
    "  2:2 SWAP 0 |", "  2:2 MIRROR 0 config=0 | Shows the first bank at both addresses. "
    "| 0=off; 1=on\n  2:2 SWAP 0 config=1,2 |")


def devices():
    """File ending -> text."""
    files = {
        "0x450_Single_Core": device(0x450, "VDR32H75x", "H7", "Cortex-M7", [
            flash(16, 0x20000), sram(0x100000), SYSTEM, ITCM, OTP_MEMORY,
            option_bytes(H7_ONE, 0x5C200000, other=PLAIN_ACCESS)]),
        "0x450_Dual_Core": device(0x450, "VDR32H74x", "H7", "Cortex-M7/M4", [
            flash(16, 0x20000), sram(0x100000), SYSTEM,
            option_bytes(H7_TWO, 0x5C200000, other=PLAIN_ACCESS)]),
        "0x480": device(0x480, "VDR32H7Bx", "H7B", "Cortex-M7", [
            flash(256, 0x2000), sram(0x140000), SYSTEM, OTP, option_bytes(H7B, 0x5C210000)]),
        "0x483": device(0x483, "VDR32H73x", "H73", "Cortex-M7", [
            flash(8, 0x20000, False), sram(0x8C000), OTP, option_bytes(H73, 0x5C220000)]),
        "0x462": device(0x462, "VDR32L462CE", "L4", "Cortex-M4", [
            flash(256, 0x800, False), EEPROM, MIRROR,
            option_bytes(L4, 0x40030000, loader=LOADER_COPY)]),
        "0x472": device(0x472, "VDR32L5", "L5", "Cortex-M33", [
            flash(256, 0x800), SYSTEM,
            option_bytes(L5.replace(START, EARLY_START), 0x40040000)]),
        "0x497": device(0x497, "VDR32WL", "WL", "Cortex-M0+/M4", [
            flash(128, 0x800, False), SYSTEM, option_bytes(WL, 0x58000000)]),
        "0x482": device(0x482, "VDR32U575", "U5", "Cortex-M33", [
            flash(256, 0x2000), OTP, option_bytes(U5_MIDDLE, 0x40050000, loader=LOADER_COPY)]),
        "0x492": device(0x492, "VDR32WBA", "WBA", "Cortex-M33", [
            flash(128, 0x2000, False), option_bytes(WBA, 0x40060000)]),
        "0x481": device(0x481, "VDR32U59x", "U5", "Cortex-M33", [
            flash(512, 0x2000), OTP, option_bytes(U5_LARGE, 0x40050000)]),
        "0x455": device(0x455, "VDR32U535", "U5", "Cortex-M33", [
            flash(64, 0x2000), option_bytes(U5_SMALL, 0x40050000)]),
        "0x484": device(0x484, "VDR32H5", "H5", "Cortex-M33", [
            flash(256, 0x2000), SYSTEM, OTP, MIRROR, option_bytes(H5, 0x50020000)]),
    }
    # Two devices in a file: the reader looks for the identifier.
    files["0x480"] = device(0x4FF, "VDR32H7Ax", "H7B", "Cortex-M7", [OTP_MEMORY]) + files["0x480"]
    # Names of elements match in any case.
    files["0x492"] = (files["0x492"].replace("<peripherals>", "<Peripherals>")
                      .replace("</peripherals>", "</Peripherals>")
                      .replace("<BitWidth>", "<BITWIDTH>").replace("</BitWidth>", "</BITWIDTH>"))
    return files


def files():
    made = {}
    for ending, text in devices().items():
        whole = (f'<?xml version="1.0" encoding="UTF-8"?>\n<Root>\n<!-- {NOTE} -->\n{text}</Root>\n')
        if ending == "0x483":  # made on another system, so to speak
            whole = whole.replace("\n", "\r\n")
        made[f"VDR32_Prog_DB_{ending}.xml"] = whole.encode()
    return made


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        print(__doc__, file=sys.stderr)
        return 3
    wrong = 0
    made = files()
    for name, data in made.items():
        path = FOLDER / name
        if not check:
            path.write_bytes(data)
        elif not path.is_file() or path.read_bytes() != data:
            print(f"{path} differs from what make-device-db.py makes", file=sys.stderr)
            wrong = 1
    for path in sorted(FOLDER.iterdir()):
        if path.name not in made:
            print(f"{path} isn't made by make-device-db.py", file=sys.stderr)
            wrong = 1
    return wrong


sys.exit(main())
