#!/usr/bin/env python3
"""Runs whole programs on keys that are known, and looks for these where they must not be.

Usage: search-keys.py BUILD_FOLDER

Searched are all bytes that a program writes to any file, pipe or socket but the outputs that are to
hold the key, in clear, as hexadecimal digits and as Base64; and every block that goes back to the
heap (by a preloaded library). Needs strace."""
import base64
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent


def forms(key):
    """How the key might look; three Base64 texts, since it may begin at any of three places."""
    yield key
    yield key.hex().encode()
    yield key.hex().upper().encode()
    yield ", ".join(f"0x{byte:02x}" for byte in key).encode()
    for shift in range(3):
        yield base64.b64encode(bytes(shift) + key)[4 if shift else 0:-4]


def written(log, left_out):
    """All bytes of a trace's writes, by file."""
    files, names = {}, {}
    for line in log.read_text().splitlines():
        opened = re.match(r'\d+\s+open(?:at)?\(.*?"((?:\\x..)*)".*= (\d+)$', line)
        if opened:
            names[opened[2]] = bytes.fromhex(opened[1].replace("\\x", "")).decode(errors="replace")
        found = re.match(r"\d+\s+(?:write|pwrite64|sendto)\((\d+), \"((?:\\x..)*)\"", line)
        if found and not names.get(found[1], "").endswith(left_out):
            name = names.get(found[1], found[1])
            files[name] = files.get(name, b"") + bytes.fromhex(found[2].replace("\\x", ""))
        gathered = re.match(r"\d+\s+(?:writev|sendmsg)\((\d+), ", line)
        if gathered:
            parts = re.findall(r'iov_base="((?:\\x..)*)"', line)
            files[gathered[1]] = files.get(gathered[1], b"") + b"".join(
                bytes.fromhex(part.replace("\\x", "")) for part in parts)
    return files


def core_limit(command, environment):
    """What a running program may write as a core file; the caller's own limit is as it comes."""
    running = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        for _ in range(100):
            time.sleep(0.05)
            limits = pathlib.Path(f"/proc/{running.pid}/limits").read_text()
            if re.search(r"Max core file size +0 +0 ", limits):
                return 0
    finally:
        running.kill()
        running.wait()
    return limits


def main():
    if len(sys.argv) != 2:
        print(__doc__)
        return 3
    if subprocess.run(["strace", "-qq", "-o", "/dev/null", "true"], check=False).returncode != 0:
        return 77
    build = pathlib.Path(sys.argv[1]).resolve()
    place = pathlib.Path(tempfile.mkdtemp())
    data = place / "data"
    shutil.copytree(ROOT / "data" / "demo", data)
    pair = subprocess.run(["openssl", "genpkey", "-algorithm", "EC", "-pkeyopt",
                           "ec_paramgen_curve:P-256"], capture_output=True, check=True).stdout
    (place / "key.pem").write_bytes(pair)
    # Of a P-256 pair in PKCS#8 the private number stands behind 36 bytes.
    number = base64.b64decode(b"".join(pair.split(b"\n")[1:-2]))[36:68]
    (place / "number.bin").write_bytes(number)
    tools = build / "bin"
    image_tool = tools / "Utilities" / "Linux" / "imgtool"
    (place / "root.yml").write_text(
        "name: out\nissuer-key: key.pem\nsubject-key: key.pem\nrole: 1\nusage: 1\n"
        "lifecycle: 0x30\noem_constraint: 0\nsoc_class: 5\nsoc_id: 0\n"
        "permissions_mask: 0x00000000_00000000_00000000_00000204\n")
    boot = [image_tool, "create", "--align", "8", "-v", "1.0.0", "-H", "0x200", "-S", "0x20000",
            "--pad-header", "-k", "key.pem", data / "firmware.bin", "boot.bin"]
    (place / "firmware-key.bin").write_bytes(bytes.fromhex("9d61b19deffd5a60ba844af492ec2cc4"))
    works = [
        ("window", data / "key.bin", [build / "demo" / "demo-driver", data, place / "out"]),
        ("spb-unpack", data / "key.bin", [tools / "spb-unpack", place / "out" / "out.sfi", "--key",
                                          data / "key.bin"]),
        ("imgtool create", place / "number.bin", boot),
        ("PSA_ADAC sign", place / "number.bin",
         [tools / "Utilities" / "Linux" / "PSA_ADAC", "sign", "root.yml"]),
        # The tabs of tokens, driven by their test: from the key's file to the licences.
        ("token tabs", place / "firmware-key.bin",
         [build / "tests" / "token_tabs_test",
          "--gtest_filter=*ProgramATokenAndMakeLicencesThatVerify"]),
    ]
    environment = {"PATH": os.environ["PATH"], "HOME": str(place), "LC_ALL": "C.UTF-8",
                   "QT_QPA_PLATFORM": "offscreen", "SPB_TRACE": "1"}
    wrong, searched = [], 0
    for name, key, command in works:
        log = place / "calls"
        done = subprocess.run(["strace", "-f", "-qq", "-xx", "-s", "10000000", "-o", log, "-e",
                               "trace=open,openat,write,pwrite64,writev,sendto,sendmsg"] + command,
                              env=environment, cwd=place, capture_output=True, check=False)
        if done.returncode != 0:
            wrong.append(f"{name} fails: {done.stderr[-300:]}")
        for file, content in written(log, ("key.bin",)).items():
            searched += len(content)
            wrong += [f"{name}: a key was written to {file}" for form in forms(key.read_bytes())
                      if form in content]
        done = subprocess.run(command, cwd=place, capture_output=True, check=False, env={
            **environment, "LD_PRELOAD": str(build / "tests" / "marked_key.so"),
            "KEY_MARKER": str(key)})
        wrong += [f"{name}: {line}" for line in done.stderr.decode(errors="replace").splitlines()
                  if "KEY in" in line]
    if core_limit([tools / "sealed-package-builder"], environment) != 0:
        wrong.append("the window may leave a core file")
    # The search itself: an editor that copies the key is found.
    control = subprocess.run(
        ["python3", "-c", f"open({str(data / 'key.bin')!r}, 'rb').read() + b'x'"], check=False,
        capture_output=True, env={**environment, "PYTHONMALLOC": "malloc", "LD_PRELOAD": str(
            build / "tests" / "marked_key.so"), "KEY_MARKER": str(data / "key.bin")})
    if b"KEY in" not in control.stderr:
        wrong.append("the search finds nothing where there is something")
    shutil.rmtree(place)
    for line in wrong:
        print(line)
    print(f"{len(works)} programs, {searched} bytes written by them, {len(wrong)} wrong")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
