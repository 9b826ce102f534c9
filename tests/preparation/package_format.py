"""An independent writer of SMI, SFU, SSP and signed files, made from docs/formats.md alone.

It shares no code with the builders: even the elliptic curves are computed here, in plain numbers,
so that signatures can be compared byte for byte.
"""

import hashlib
import hmac
import struct

from cryptography.hazmat.primitives.ciphers.aead import AESGCM

from image_format import FULL, Refused, hkdf

LIMIT = (1 << 31) - 1


def sealing(kind, key, nonce_file, head, plain):
    """N, and a function that seals piece i: data and tag."""
    mac = hmac.new(hkdf(key, b"SPB1 nonce " + kind, 32), nonce_file + head + plain, "sha256")
    nonce = mac.digest()[:16]
    material = hkdf(key, b"SPB1 area " + kind + nonce, 28)
    cipher, base = AESGCM(material[:16]), int.from_bytes(material[16:], "big")

    def seal(index, data, associated):
        sealed = cipher.encrypt((base ^ index).to_bytes(12, "big"), data, associated)
        return sealed[:-16], sealed[-16:]

    return nonce, seal


def check_sizes(request, nonce_bytes=12):
    if len(request["key"]) != 16 or len(request["nonce"]) != nonce_bytes:
        raise Refused("key or nonce")


def smi(request):
    check_sizes(request)
    section, address = request["section"], request["address"]
    if len(request["security_version"]) != 16 or not section or address + len(section) > FULL:
        raise Refused("SMI input")
    flag = 1 if request["hash"] else 0

    def head(nonce, tag, check):
        return (b"SMIMAGIC" + struct.pack("<HHII", 1, flag, address, len(section)) + nonce +
                request["security_version"] + tag + check + bytes(12))

    blank = bytes(16)
    nonce, seal = sealing(b"SMI", request["key"], request["nonce"], head(blank, blank, blank),
                          section)
    data, tag = seal(0, section, head(nonce, blank, blank)[:52])
    check = blank
    if flag:
        check = hashlib.sha256(head(nonce, tag, blank)[:68] + data).digest()[:16]
    file = head(nonce, tag, check) + data
    return file + bytes(-len(file) % 32)


def sfu(request):
    check_sizes(request)
    firmware, address = request["firmware"], request["address"]
    if not firmware or request["version"] > 255 or address + len(firmware) > FULL:
        raise Refused("SFU input")
    pieces = [firmware[i:i + 4096] for i in range(0, len(firmware), 4096)]
    front = b"SFUH" + struct.pack("<HHIIHHI", 1, request["version"], address, len(firmware), 64,
                                  4096, len(pieces))
    nonce, seal = sealing(b"SFU", request["key"], request["nonce"], front + bytes(40), firmware)
    front += nonce
    header = front + seal(0, b"", front)[1]
    body = b"".join(b"".join(seal(i, piece, header)) for i, piece in enumerate(pieces, 1))
    return header + bytes(8) + body


def ssp(request):
    check_sizes(request, 16)
    if len(request["payload"]) != 152:
        raise Refused("payload")
    front = b"SSPIMAGE" + struct.pack("<HHI", 1, request["oem_kind"], 152)
    digest = request["oem"]
    if request["oem_kind"] == 1:
        digest = hashlib.sha256(digest).digest()
    nonce, seal = sealing(b"SSP", request["key"], request["nonce"], front + bytes(16) + digest,
                          request["payload"])
    data, tag = seal(0, request["payload"], front + nonce + digest)
    return front + nonce + digest + tag + data


class Curve:
    def __init__(self, number, der_front, p, a, b, x, y, order):
        self.number, self.der_front = number, bytes.fromhex(der_front)
        self.p, self.a, self.b, self.base, self.order = p, a, b, (x, y), order

    def add(self, left, right):
        if left is None or right is None:
            return left or right
        (x1, y1), (x2, y2) = left, right
        if x1 == x2 and (y1 + y2) % self.p == 0:
            return None
        if left == right:
            slope = (3 * x1 * x1 + self.a) * pow(2 * y1, -1, self.p)
        else:
            slope = (y2 - y1) * pow(x2 - x1, -1, self.p)
        x = (slope * slope - x1 - x2) % self.p
        return x, (slope * (x1 - x) - y1) % self.p

    def times(self, factor, point):
        total = None
        while factor:
            if factor & 1:
                total = self.add(total, point)
            point, factor = self.add(point, point), factor >> 1
        return total

    def der(self, private):
        return self.der_front + b"".join(c.to_bytes(32, "big")
                                         for c in self.times(private, self.base))

    def sign(self, private, digest):
        """ECDSA with the nonce of RFC 6979, 3.2, for SHA-256."""
        number = int.from_bytes(digest, "big")
        seed = private.to_bytes(32, "big") + (number % self.order).to_bytes(32, "big")
        k, v = bytes(32), b"\x01" * 32
        for step in (b"\x00", b"\x01"):
            k = hmac.digest(k, v + step + seed, "sha256")
            v = hmac.digest(k, v, "sha256")
        while True:
            v = hmac.digest(k, v, "sha256")
            nonce = int.from_bytes(v, "big")
            if 0 < nonce < self.order:
                r = self.times(nonce, self.base)[0] % self.order
                s = pow(nonce, -1, self.order) * (number + r * private) % self.order
                if r and s:
                    return r.to_bytes(32, "big") + s.to_bytes(32, "big")
            k = hmac.digest(k, v + b"\x00", "sha256")
            v = hmac.digest(k, v, "sha256")


# SEC 2, 2.4.2, and RFC 5639, 3.4.
CURVES = {
    "prime256v1": Curve(
        1, "3059301306072a8648ce3d020106082a8648ce3d03010703420004",
        0xFFFFFFFF00000001000000000000000000000000FFFFFFFFFFFFFFFFFFFFFFFF,
        0xFFFFFFFF00000001000000000000000000000000FFFFFFFFFFFFFFFFFFFFFFFC,
        0x5AC635D8AA3A93E7B3EBBD55769886BC651D06B0CC53B0F63BCE3C3E27D2604B,
        0x6B17D1F2E12C4247F8BCE6E563A440F277037D812DEB33A0F4A13945D898C296,
        0x4FE342E2FE1A7F9B8EE7EB4A7C0F9E162BCE33576B315ECECBB6406837BF51F5,
        0xFFFFFFFF00000000FFFFFFFFFFFFFFFFBCE6FAADA7179E84F3B9CAC2FC632551),
    "brainpoolP256t1": Curve(
        2, "305a301406072a8648ce3d020106092b240303020801010803420004",
        0xA9FB57DBA1EEA9BC3E660A909D838D726E3BF623D52620282013481D1F6E5377,
        0xA9FB57DBA1EEA9BC3E660A909D838D726E3BF623D52620282013481D1F6E5374,
        0x662C61C430D84EA4FE66A7733D0B76B7BF93EBC4AF2F49256AE58101FEE92B04,
        0xA3E8EB3CC1CFE7B7732213B23A656149AFA142C47AAFBC2B79A191562E1305F4,
        0x2D996C823439C56D7F7B22E14644417E69BCB6DE39D027001DABE8F35B25C9BE,
        0xA9FB57DBA1EEA9BC3E660A909D838D718C397AA3B561A6F7901E0E82974856A7),
}


def signed(request):
    curve, private, whole = CURVES[request["curve"]], request["private"], request["file"]
    image = whole[:request["signed_size"]]
    front = b"SPBSIGN1" + struct.pack("<IIIBBH", request["version"], len(image), len(whole),
                                      curve.number, 0, 0)
    front += hashlib.sha256(curve.der(private)).digest()
    return whole + front + curve.sign(private, hashlib.sha256(image + front).digest()) + b"SPBSIGN1"
