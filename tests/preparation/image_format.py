"""An independent writer of protected images, made from docs/formats.md alone.

It shares no code with the builder, so that both can be wrong only in different ways. It follows
the text step by step and compares all pairs where the builder sorts. `known_answers.py` and
`differential.py` use it.
"""

import hashlib
import hmac
import struct

from cryptography.hazmat.primitives import hashes
from cryptography.hazmat.primitives.ciphers.aead import AESGCM
from cryptography.hazmat.primitives.kdf.hkdf import HKDF

FULL = 1 << 32


class Refused(Exception):
    pass


class Area:
    def __init__(self, letter, address, data, extent=(0, 0), label="", region=None):
        self.letter = letter
        self.address = address
        self.data = data
        self.extent = extent
        self.label = label
        self.region = region  # external firmware only


def align_tail(address, data):
    return data + bytes(-(address + len(data)) % 32)


def external_area(address, body, region, label):
    return Area("E", address, body + struct.pack("<4I", address, *region),
                (address, address + len(body)), label, region)


def module_areas(request):
    for n, m in enumerate(request.get("modules", []), 1):
        module, licence, ident = m["module"], m["licence"], m["identifier"]
        if len(ident) > 16:
            raise Refused("identifier")
        head = struct.pack("<4I16s", len(module), len(licence), len(ident), int(m["flag"]), ident)
        yield Area("M" if licence or ident else "m", m["address"],
                   align_tail(m["address"], head + module + licence),
                   (m["address"], m["address"] + len(module)), f"module {n}")
    if request.get("combined"):
        for n, smi in enumerate(request.get("smi", []), 1):
            if len(smi) < 96 or smi[:8] != b"SMIMAGIC":
                raise Refused("SMI magic")
            version, _, load, plain = struct.unpack_from("<HHII", smi, 8)
            if version != 1 or len(smi) != 96 + plain + -(96 + plain) % 32:
                raise Refused("SMI head")
            yield Area("M", load, align_tail(load, smi), (load, load + plain), f"SMI file {n}")


def external_areas(request):
    for n, (address, body) in numbered(request.get("external", [])):
        below = [r for r in request.get("regions", []) if r[0] <= address]
        region = (0, 0, 0)
        if below:
            top = max(r[0] for r in below)
            region = next(tuple(r[1:]) for r in below if r[0] == top)
        yield external_area(address, body, region, f"external firmware segment {n}")


def numbered(segments):
    return sorted(((n, s) for n, s in enumerate(segments, 1) if s[1]), key=lambda e: e[1][0])


def uncut_areas(request):
    areas = []
    if request.get("ssfi") is not None:
        areas.append(Area("S", 0, b"".join(request["ssfi"])))
    areas.extend(module_areas(request))
    for address, size, word, payload in request.get("obk", []):
        areas.append(Area("O", address, struct.pack("<3I", address, size, word) + payload))
    if request.get("key_area") is not None:
        areas.append(Area("K", 0, request["key_area"]))
    for n, (address, body) in numbered(request.get("firmware", [])):
        areas.append(Area("F", address, body, (address, address + len(body)),
                          f"firmware segment {n}"))
    areas.extend(external_areas(request))
    option_bytes = request["option_bytes"]
    if not option_bytes or len(option_bytes) % 4:
        raise Refused("option bytes")
    areas.append(Area("C", 0, option_bytes))
    return areas


def meet(a, b):
    return max(a.extent[0], b.extent[0]) < min(a.extent[1], b.extent[1])


def first_pair(areas):
    for i, a in enumerate(areas):
        for b in areas[i + 1:]:
            if meet(a, b):
                raise Refused(f"Overlap between {a.label} and {b.label}")


def check_placement(areas):
    if any(a.extent[1] > FULL for a in areas):
        raise Refused("ends above")
    first_pair([a for a in areas if a.letter in "MmF"])
    first_pair([a for a in areas if a.letter == "E"])
    for module in areas:
        begin, end = module.extent
        if module.letter not in "Mm" or begin == end or end % 32 == 0:
            continue
        for firmware in areas:
            if firmware.letter == "F" and firmware.address // 32 == (end - 1) // 32:
                raise Refused(f"{firmware.label} starts in the last Flash word of {module.label}")


def check_container(areas):
    for i, a in enumerate(areas):
        if a.letter in "FE" and a.extent[1] == FULL and any(b.letter == a.letter
                                                           for b in areas[:i]):
            raise Refused("ends at the top behind another")
    if len(areas) > 65535:
        raise Refused("number of areas")


def cut(area, room, header):
    trailer = 16 if area.letter == "E" else 0
    begin, end = area.extent
    body = area.data[:end - begin]
    while True:
        at = begin
        if header + (end - at) + trailer <= room:
            stop = end
        else:
            stop = (at + room - header - trailer) // 32 * 32
        piece = body[at - area.extent[0]:stop - area.extent[0]]
        if trailer:
            yield external_area(at, piece, area.region, area.label)
        else:
            yield Area("F", at, piece, (at, stop), area.label)
        if stop == end:
            return
        begin = stop


def in_parts(areas, room, header, token):
    parts, filled = [[]], 0
    for area in areas:
        size = header + len(area.data)
        if parts[-1] and filled + size > room:
            parts.append([])
            filled = 0
        parts[-1].append(area)
        filled += size
    result = []
    for number, part in enumerate(parts, 1):
        words = struct.pack("<4I", number, len(parts), token, 0)
        if number > 1:
            result.append(Area("R", token, words))
        result.extend(part)
        if number < len(parts):
            result.append(Area("P", token, words))
    return result


def fit_ram(areas, ram, token, header):
    if ram == 0 or sum(header + len(a.data) for a in areas) <= ram:
        return areas
    room = ram if token == 0 else ram - 2 * (header + 16)
    if room < header + 16 + 32:
        raise Refused("RAM")
    fitting = []
    for area in areas:
        if header + len(area.data) <= room:
            fitting.append(area)
        elif area.letter in "FE":
            fitting.extend(cut(area, room, header))
        else:
            raise Refused("can't be cut")
    return in_parts(fitting, room, header, token) if token else fitting


def hkdf(key, info, length):
    return HKDF(algorithm=hashes.SHA256(), length=length, salt=None, info=info).derive(key)


def seal(areas, request):
    version = 2 if request.get("hash") else 1
    key, profile = request["key"], struct.pack("<I", request.get("profile", 0xFF))
    prefixes = [struct.pack("<cBHIIH", a.letter.encode(), request.get("image_version", 0), i,
                            len(a.data), a.address, len(areas)) for i, a in enumerate(areas, 1)]
    mac = hmac.new(hkdf(key, b"SPB1 nonce SFI", 32), request["nonce"] + profile, "sha256")
    mac.update(struct.pack("<HH", version, len(areas)))
    for prefix, area in zip(prefixes, areas):
        mac.update(prefix + struct.pack("<I", len(area.data)) + area.data)
    nonce = mac.digest()[:16]
    head = b"SFIMAGIC" + struct.pack("<HH", version, len(areas)) + nonce
    material = hkdf(key, b"SPB1 area SFI" + profile + nonce, 28)
    cipher, base = AESGCM(material[:16]), int.from_bytes(material[16:], "big")
    image = [head]
    for index, (prefix, area) in enumerate(zip(prefixes, areas), 1):
        sealed = cipher.encrypt((base ^ index).to_bytes(12, "big"), area.data, head + prefix)
        data, tag = sealed[:-16], sealed[-16:]
        image.append(prefix + tag)
        if version == 2:
            image.append(hashlib.sha256(head + prefix + tag + data).digest()[:16])
        image.append(data)
    return b"".join(image)


def build(request):
    """The whole image of a request (a dict), or Refused."""
    areas = uncut_areas(request)
    check_placement(areas)
    header = 46 if request.get("hash") else 30
    areas = fit_ram(areas, request.get("ram", 0), request.get("token", 0), header)
    check_container(areas)
    return seal(areas, request)
