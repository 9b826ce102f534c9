#!/usr/bin/env python3
"""Second reading of boot images, from the public format's documentation alone.

Usage: boot_image.py IMGTOOL. Makes images with the tool over a table of options and rebuilds each
one here; what holds random numbers (RSASSA-PSS, wrapped keys) is opened instead of compared.
"""
import base64
import hashlib
import hmac
import random
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

from cryptography.hazmat.primitives import hashes, keywrap, serialization
from cryptography.hazmat.primitives.asymmetric import ec, padding, utils, x25519
from cryptography.hazmat.primitives.ciphers import Cipher, algorithms, modes
from cryptography.hazmat.primitives.kdf.hkdf import HKDF

DER, SPKI = serialization.Encoding.DER, serialization.PublicFormat.SubjectPublicKeyInfo
VERSION = (3, 4, 517, 66051)
BASE = ["-v", "3.4.517+66051", "-H", "0x40", "-S", "0x8000", "--align", "4"]
SIGNERS = {None: None, "ecdsa-p256": 0x22, "rsa-2048": 0x20, "rsa-3072": 0x23, "ed25519": 0x24}
PLAIN_MAGIC = bytes.fromhex("77c295f360d2ef7f3552500f2cb67980")
WIDE_MAGIC = bytes.fromhex("20002de15d29410b8d77679c110f1f8a")
AES_KEY = bytes(range(32))
# Name of a recipient: type of its wrapped key, bytes of the image's key.
RECIPIENTS = {"ecdsa-p256": (0x32, 16), "x25519": (0x33, 16), "rsa-2048": (0x30, 32),
              "aes": (0x31, 32)}
# Options, flags in the header, load address, protected values, bytes of the tail.
EXTRAS = [
    ([], 0, 0, b"", None),
    (["-L", "0x20001000"], 0x20, 0x20001000, b"", None),
    (["-F", "0x8010000", "-s", "77"], 0x100, 0x8010000, struct.pack("<HHI", 0x50, 4, 77), None),
    (["-s", "auto", "-d", "(1, 2.3.4+5) (9,1.0)", "--pad"], 0, 0,
     struct.pack("<HHI", 0x50, 4, 0x03040205) +
     struct.pack("<HHB3xBBHI", 0x40, 12, 1, 2, 3, 4, 5) +
     struct.pack("<HHB3xBBHI", 0x40, 12, 9, 1, 0, 0, 0), (0xFF, PLAIN_MAGIC, None)),
    (["--confirm", "-R", "0"], 0, 0, b"", (0, PLAIN_MAGIC, 24)),
    (["--confirm", "--max-align", "32", "--pad-sig"], 0, 0, b"", (0xFF, WIDE_MAGIC, 64)),
    (["--confirm", "--overwrite-only", "--public-key-format", "full"], 0, 0, b"",
     (0xFF, PLAIN_MAGIC, None)),
    (["--non-bootable", "--custom-tlv", "0xa5", "0x0102fe", "--custom-tlv", "255", "text"], 0x10, 0,
     struct.pack("<HH", 0xA5, 3) + b"\1\2\xfe" + struct.pack("<HH", 0xFF, 4) + b"text", None),
]


def ctr(key, data):
    return Cipher(algorithms.AES(key), modes.CTR(bytes(16))).encryptor().update(data)


def values(block, magic):
    assert struct.unpack_from("<HH", block) == (magic, len(block)), "block"
    at, found = 4, {}
    while at < len(block):
        kind, size = struct.unpack_from("<HH", block, at)
        found[kind] = block[at + 4:at + 4 + size]
        at += 4 + size
    assert at == len(block), "values fill the block"
    return found


def boot_record(key):
    """A map of CBOR: role, version, signer, description, and a place for the measurement."""
    form = serialization.PublicFormat.PKCS1 if hasattr(key, "private_numbers") and \
        hasattr(key, "decrypt") else SPKI
    signer = hashlib.sha256(key.public_key().public_bytes(DER, form)).digest()
    text = lambda word: bytes([0x60 | len(word)]) + word
    record = b"\xa5" + b"\1" + text(b"SPE") + b"\4" + text(b"3.4.517") + b"\5\x58\x20" + signer + \
        b"\6" + text(b"SHA256") + b"\2\x58\x20" + bytes(32)
    return struct.pack("<HH", 0x60, len(record)) + record


def unwrap(key, wrapped):
    if isinstance(key, bytes):
        return keywrap.aes_key_unwrap(key, wrapped)
    if hasattr(key, "decrypt"):
        oaep = padding.OAEP(padding.MGF1(hashes.SHA256()), hashes.SHA256(), None)
        return key.decrypt(wrapped, oaep)
    if isinstance(key, x25519.X25519PrivateKey):
        peer, rest = x25519.X25519PublicKey.from_public_bytes(wrapped[:32]), wrapped[32:]
        shared = key.exchange(peer)
    else:
        peer = ec.EllipticCurvePublicKey.from_encoded_point(ec.SECP256R1(), wrapped[:65])
        rest, shared = wrapped[65:], key.exchange(ec.ECDH(), peer)
    keys = HKDF(hashes.SHA256(), 48, None, b"MCUBoot_ECIES_v1").derive(shared)
    assert hmac.digest(keys[16:], rest[32:], "sha256") == rest[:32], "HMAC"
    return ctr(keys[:16], rest[32:])


def check_signature(name, key, digest, found, whole):
    public = key.public_key()
    pkcs1 = serialization.PublicFormat.PKCS1
    der = public.public_bytes(DER, pkcs1 if name.startswith("rsa") else SPKI)
    if whole:
        assert found[2] == der, "key"
    else:
        assert found[1] == hashlib.sha256(der).digest(), "key hash"
    signature = found[SIGNERS[name]]
    if name == "ed25519":
        assert signature == key.sign(digest), "the same bytes each time"
    elif name == "ecdsa-p256":
        signature = signature[:2 + signature[1]]
        public.verify(signature, digest, ec.ECDSA(utils.Prehashed(hashes.SHA256())))
    else:
        pss = padding.PSS(mgf=padding.MGF1(hashes.SHA256()), salt_length=32)
        public.verify(signature, digest, pss, utils.Prehashed(hashes.SHA256()))


def check(folder, image, firmware, case):
    name, encrypt, (options, flags, load, guarded, tail) = case
    key = lambda path: AES_KEY if path == "aes" else \
        serialization.load_pem_private_key(Path(folder, path).read_bytes(), None)
    if name:  # behind the security counter
        at = 8 if guarded[:2] == b"\x50\0" else 0
        guarded = guarded[:at] + boot_record(key(name)) + guarded[at:]
    kind, key_bytes = RECIPIENTS.get(encrypt, (0, 0))
    body = firmware + bytes(-len(firmware) % 16) if encrypt else firmware
    guarded = struct.pack("<HH", 0x6908, 4 + len(guarded)) + guarded if guarded else b""
    head = struct.pack("<IIHHIIBBHII", 0x96F3B83D, load, 0x40, len(guarded), len(body),
                       flags | {0: 0, 16: 4, 32: 8}[key_bytes], *VERSION, 0) + bytes(0x20)
    assert image[:0x40] == head, "header"
    at = 0x40 + len(body)
    assert image[at:at + len(guarded)] == guarded, "protected values"
    stored, at = image[0x40:at], at + len(guarded)
    end = at + struct.unpack_from("<HH", image, at)[1]
    found = values(image[at:end], 0x6907)
    if encrypt:
        image_key = unwrap(key(encrypt), found[kind])
        assert len(image_key) == key_bytes, "bytes of the image's key"
        stored = ctr(image_key, stored)
    assert stored == body, "firmware"
    digest = hashlib.sha256(head + body + guarded).digest()
    assert found[0x10] == digest, "hash"
    assert len(found) == 1 + 2 * bool(name) + bool(encrypt), "nothing else"
    if name:
        check_signature(name, key(name), digest, found, "full" in options)
    if tail:
        erased, magic, flag = tail
        rest = bytearray([erased] * (0x8000 - end - 16)) + magic
        if flag:
            rest[-flag] = 1
        assert image[end:] == rest, "trailer"
    else:
        assert end == len(image), "nothing behind"


def main(tool):
    random.seed(20)
    with tempfile.TemporaryDirectory() as folder:
        def run(*arguments):
            subprocess.run([tool, *arguments], cwd=folder, check=True, capture_output=True)
        for kind in ["x25519", *filter(None, SIGNERS)]:
            run("keygen", "-k", kind, "-t", kind, "-e", kind + ".pub")
        Path(folder, "aes").write_bytes(base64.encodebytes(AES_KEY))
        done = 0
        for name in SIGNERS:
            for encrypt in (None, *RECIPIENTS):
                for extra in EXTRAS:
                    if "full" in extra[0] and not name:
                        continue
                    firmware = random.randbytes(random.randrange(1, 5000))
                    Path(folder, "in.bin").write_bytes(firmware)
                    run("create", *BASE, "--pad-header", *extra[0],
                        *(["-k", name, "--boot-record", "SPE"] if name else []),
                        *(["-E", encrypt + ("" if encrypt == "aes" else ".pub"), "--encrypt-keylen",
                           str(8 * RECIPIENTS[encrypt][1])] if encrypt else []),
                        "in.bin", "out.bin")
                    case = (name, encrypt, extra)
                    try:
                        check(folder, Path(folder, "out.bin").read_bytes(), firmware, case)
                    except AssertionError as error:
                        sys.exit(f"{case}: {error}")
                    run("verify", *(["-k", name] if name else []),
                        *(["-D", encrypt] if encrypt else []), "out.bin")
                    done += 1
        print(done, "images are the same in both readings")


main(sys.argv[1])
