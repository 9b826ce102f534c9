#!/usr/bin/env python3
"""Takes the system away under every writer of the program, one call at a time.

Usage: inject-faults.py [--sample] [--only NAME,...] BUILD_FOLDER

Each writer runs over and over, once with no output in its place and once over an old one. In each
run one system call after the first that touches the output fails (or kills the process), or the
file system takes no more than a number of bytes. Then the output must be the old file or the new
one, in full; success may be reported for the new one only; and nothing else may be left in the
folder, but for the unfinished file of a killed writer. Exits with 1 when anything else is found.

Needs strace; the full-disk trials on a file system of their own need root, and are told as left
out otherwise."""
import argparse
import concurrent.futures
import os
import pathlib
import re
import resource
import shutil
import struct
import subprocess
import sys
import tempfile

FAULTS = ["error=ENOSPC", "error=EIO", "error=EDQUOT", "error=EACCES", "error=EINTR",
          "signal=SIGKILL"]
# What the kernel never answers ends in the C library, not in the program: a break that can't be moved
# comes back as it was, and waking threads doesn't fail.
OTHER_FAULTS = {"brk": ["retval=0", "signal=SIGKILL"], "futex": ["signal=SIGKILL"]}
UNFINISHED = re.compile(r"\.spb-[0-9a-z]+$|^write_driver-")
MOST_ALIKE = 30
READ_ONLY = 254  # how a checksum of a file that can't be written ends
# How programs begin and end; a fault there is no fault of a writer.
LEFT_OUT = {"exit_group", "exit", "rt_sigreturn", "restart_syscall", "execve"}


class Writer:
    """One command, what it reads, what it writes, and how its outputs are told to be new."""

    def __init__(self, name, command, outputs=("out",), starts=("none", "old"), inputs=(),
                 is_whole=None, appends=False, old=b"old content\n"):
        self.name, self.command, self.outputs = name, command, outputs
        self.starts, self.inputs, self.is_whole = starts, inputs, is_whole
        self.appends, self.old = appends, old


def pem(kind):
    head, tail = f"-----BEGIN {kind}-----\n".encode(), f"-----END {kind}-----\n".encode()
    return lambda data: data.startswith(head) and data.endswith(tail) and len(data) > 100


DESCRIPTION = b"""name: out
issuer-key: key.pem
subject-key: key.pem
role: 1
usage: 1
lifecycle: 0x30
oem_constraint: 0
soc_class: 5
soc_id: 0
permissions_mask: 0x00000000_00000000_00000000_00000204
"""


def make_inputs(build, data):
    """Everything that a writer may read: name to content."""
    inputs = {path.name: path.read_bytes() for path in data.iterdir()}
    inputs["key.pem"] = subprocess.run(
        ["openssl", "genpkey", "-algorithm", "EC", "-pkeyopt", "ec_paramgen_curve:P-256"],
        capture_output=True, check=True).stdout
    inputs["root.yml"] = DESCRIPTION
    with tempfile.TemporaryDirectory() as folder:
        for name in ("key.pem", "root.yml"):
            (pathlib.Path(folder) / name).write_bytes(inputs[name])
        subprocess.run([build / "bin" / "Utilities" / "Linux" / "PSA_ADAC", "sign", "root.yml"],
                       cwd=folder, check=True)
        inputs["secure.elf"] = linked_elf(0x08050000)
        inputs["user.elf"] = linked_elf(0x08000000, 0x08002000)
        inputs["root.cert"] = (pathlib.Path(folder) / "out.cert").read_bytes()
    return inputs


def linked_elf(*addresses):
    """A linked file with a segment of one section at each address."""
    code, names = bytes(range(64)), b"\0.code\0.names\0\0"
    begin = 52 + 32 * len(addresses)
    behind = begin + len(code) * len(addresses)
    loads, sections = b"", bytes(40)
    for number, address in enumerate(addresses):
        at = begin + number * len(code)
        loads += struct.pack("<8I", 1, at, address, address, len(code), len(code), 5, 4)
        sections += struct.pack("<10I", 1, 1, 6, address, at, len(code), 0, 0, 4, 0)
    sections += struct.pack("<10I", 7, 3, 0, 0, behind, len(names), 0, 0, 1, 0)
    head = struct.pack("<16sHHIIIIIHHHHHH", b"\x7fELF\1\1\1", 2, 40, 1, 0, 52,
                       behind + len(names), 0, 52, 32, len(addresses), 40, len(addresses) + 2,
                       len(addresses) + 1)
    return head + loads + code * len(addresses) + names + sections


def writers(build, all_inputs):
    driver = str(build / "tests" / "write_driver")
    tool = build / "bin" / "Utilities" / "Linux"
    imgtool, adac = str(tool / "imgtool"), str(tool / "PSA_ADAC")
    elf = find(build, "spb-elf")
    random_or_locked = {"nonce": lambda bytes_: len(bytes_) == 12,
                        "locked-key": pem("ENCRYPTED PRIVATE KEY")}
    listed = subprocess.run([driver], capture_output=True, text=True, check=True).stdout.split()
    result = []
    for name in listed:
        outputs = ("out",)
        if name == "description":
            outputs = ("Vendrelis/VDR32FlashBench/ConfigGenCertifDA.yml",)
        result.append(Writer(name, [driver, name, "."], outputs, inputs=("key.pem",),
                             is_whole=random_or_locked.get(name), appends=name == "log"))
    sign = ["create", "--align", "8", "-v", "1.2.3", "-H", "0x200", "-S", "0x20000",
            "--pad-header"]
    demo = ("firmware.bin", "firmware.hex", "firmware.elf", "key.pem", "key.bin")
    result += [
        Writer("boot-image", [imgtool] + sign + ["firmware.bin", "out"], inputs=demo),
        Writer("boot-image-hex", [imgtool] + sign + ["firmware.hex", "out.hex"], ("out.hex",),
               inputs=demo),
        Writer("keygen", [imgtool, "keygen", "-k", "out", "-t", "ecdsa-p256", "-e", "out.pub"],
               ("out", "out.pub"), ("none",),
               is_whole=lambda data: pem("PRIVATE KEY")(data) or pem("PUBLIC KEY")(data)),
        Writer("certificate", [adac, "sign", "root.yml"], ("out.cert",),
               inputs=("root.yml", "key.pem")),
        Writer("chain", [adac, "chain", "-o", "out", "root.cert"],
               inputs=("root.cert",)),
        Writer("crc", [elf, "crc", "--flash-start", "0x08000000", "--flash-end", "0x08040000",
                       "--slice", "1024", "out"], starts=("old",),
               old=all_inputs["firmware.elf"]),
        Writer("add-segment", [elf, "add-segment", "--data", "key.bin", "--address", "0x0803F000",
                               "--name", "Keys", "out"], starts=("old",), inputs=demo,
               old=all_inputs["firmware.elf"]),
        Writer("crc-hex", [elf, "crc", "--flash-start", "0x08000000", "--flash-end", "0x08040000",
                           "--slice", "1024", "out.hex"], ("out.hex",), starts=("old",),
               old=all_inputs["firmware.hex"]),
        Writer("merge-secure", [elf, "merge-secure", "--secure", "secure.elf", "--header",
                                "key.bin", "out.elf"], ("out.elf",), starts=("old",),
               inputs=("secure.elf", "key.bin"), old=all_inputs["user.elf"]),
    ]
    return result


def find(build, name):
    found = [p for p in build.rglob(name) if p.is_file() and os.access(p, os.X_OK)]
    if not found:
        sys.exit(f"{name} isn't built below {build}")
    return str(found[0])


class Trial:
    """One run in a folder of its own."""

    def __init__(self, writer, start, inputs, base):
        self.writer, self.start = writer, start
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=base))
        for name in writer.inputs:
            (self.folder / name).write_bytes(inputs[name])
        if start == "old":
            for name in writer.outputs:
                path = self.folder / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(writer.old)
        self.before = self.listing()

    def listing(self):
        return {str(p.relative_to(self.folder)) for p in self.folder.rglob("*") if p.is_file()}

    def environment(self):
        return {"PATH": os.environ["PATH"], "HOME": str(self.folder),
                "TMPDIR": str(self.folder), "LC_ALL": "C.UTF-8",
                "ASAN_OPTIONS": "detect_leaks=0"}

    def run(self, prefix=(), limit=None):
        def set_limit():
            if limit is not None:
                import signal
                signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
                resource.setrlimit(resource.RLIMIT_FSIZE, (limit, resource.RLIM_INFINITY))
        done = subprocess.run(list(prefix) + self.writer.command, cwd=self.folder,
                              env=self.environment(), stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                              preexec_fn=set_limit, timeout=60, check=False)
        self.status, self.error = done.returncode, done.stderr
        return self

    def content(self, name):
        path = self.folder / name
        return path.read_bytes() if path.exists() else None

    def verdict(self, new, is_killed):
        """What is wrong; nothing when all is as it must be."""
        writer = self.writer
        wrong = []
        old = writer.old if self.start == "old" else None
        are_new = []
        for name in writer.outputs:
            now = self.content(name)
            is_new = (now is not None and now != old and writer.is_whole(now)
                      if writer.is_whole else now == new[name])
            are_new.append(is_new)
            is_begun_log = writer.appends and now == b""
            if not is_new and now != old and not is_begun_log:
                wrong.append(f"{name} is neither old nor new ({len(now or b'')} bytes)")
        if self.status == 0 and not all(are_new):
            wrong.append("success was reported, but nothing new is there")
        if not is_killed and self.status not in (0, 1, 2, 3, 4, 5, READ_ONLY):
            wrong.append(f"ended with status {self.status}: {self.error[-300:]!r}")
        for name in sorted(self.listing() - self.before - set(writer.outputs)):
            if not (is_killed and UNFINISHED.search(name)):
                wrong.append(f"{name} is left")
        return wrong

    def drop(self):
        shutil.rmtree(self.folder)


def calls_of(writer, start, make):
    """The writer's system calls from the first that opens its output or an unfinished file:
    (name, how manieth of that name in the whole run)."""
    trial = make(writer, start)
    log = trial.folder.parent / (trial.folder.name + ".calls")
    trial.run(["strace", "-f", "-qq", "-o", str(log)])
    if trial.status != 0:
        sys.exit(f"{writer.name} fails by itself: {trial.error.decode(errors='replace')}")
    counts, calls, has_begun = {}, [], False
    names = [re.escape(os.path.basename(n)) for n in writer.outputs] + [r"\.spb-"]
    touched = re.compile(r'open(at)?\(.*(' + "|".join(names) + r')[^"]*"')
    for line in log.read_text(errors="replace").splitlines():
        match = re.match(r"\d+\s+(\w+)\(", line)
        if not match:
            continue
        name = match.group(1)
        counts[name] = counts.get(name, 0) + 1
        has_begun = has_begun or touched.search(line) is not None
        if has_begun and name not in LEFT_OUT:
            calls.append((name, counts[name]))
    log.unlink()
    trial.drop()
    # A library that guards its memory page by page makes hundreds of calls that are all alike.
    alike = {name: [c for c in calls if c[0] == name] for name, _ in calls}
    return [c for name in alike for c in alike[name][::1 + len(alike[name]) // MOST_ALIKE]]


def new_content(writer, start, make):
    trial = make(writer, start).run()
    new = {name: trial.content(name) for name in writer.outputs}
    if trial.status != 0 or None in new.values():
        sys.exit(f"{writer.name} fails by itself: {trial.error.decode(errors='replace')}")
    trial.drop()
    return new


def inject(writer, start, new, make, call, fault):
    name, number = call
    trial = make(writer, start).run(["strace", "-f", "-qq", "-o", "/dev/null", "-e",
                                     f"trace={name}", "-e",
                                     f"inject={name}:{fault}:when={number}"])
    wrong = trial.verdict(new, is_killed="SIGKILL" in fault)
    trial.drop()
    return [f"{writer.name} ({start}), {fault} at {name} {number}: {w}" for w in wrong]


def cut_short(writer, start, new, make, limit):
    trial = make(writer, start).run(limit=limit)
    wrong = trial.verdict(new, is_killed=False)
    trial.drop()
    return [f"{writer.name} ({start}), files of at most {limit} bytes: {w}" for w in wrong]


def full_disk(writer, start, new, inputs, room):
    """On a file system that has `room` KiB left."""
    with tempfile.TemporaryDirectory() as place:
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=4m", "tmpfs", place],
                                 capture_output=True, check=False)
        if mounted.returncode != 0:
            return None
        try:
            trial = Trial(writer, start, inputs, place)
            filling = pathlib.Path(place) / "filling"
            with open(filling, "wb") as file:
                left = os.statvfs(place).f_bavail * os.statvfs(place).f_frsize
                file.write(bytes(max(0, left - room * 1024)))
            wrong = trial.run().verdict(new, is_killed=False)
        finally:
            subprocess.run(["umount", place], check=True)
    return [f"{writer.name} ({start}), {room} KiB left on the disk: {w}" for w in wrong]


def main():
    options = argparse.ArgumentParser(description=__doc__,
                                      formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--sample", action="store_true", help="a few seconds' worth")
    options.add_argument("--only", default="", help="names of writers")
    options.add_argument("build", type=pathlib.Path)
    given = options.parse_args()
    data = pathlib.Path(__file__).resolve().parent.parent / "data" / "demo"
    build = given.build.resolve()
    inputs = make_inputs(build, data)
    probe = subprocess.run(["strace", "-qq", "-o", "/dev/null", "true"], capture_output=True,
                           check=False)
    if probe.returncode != 0:
        print("no process may be traced here:", probe.stderr.decode().strip())
        return 77
    tried, wrong, without_disk = {}, [], False
    with tempfile.TemporaryDirectory() as base, \
            concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        def make(writer, start):
            return Trial(writer, start, inputs, base)
        chosen = [w for w in writers(build, inputs)
                  if not given.only or w.name in given.only.split(",")]
        for writer in chosen:
            for start in writer.starts:
                new = new_content(writer, start, make)
                if writer.appends and start == "old":
                    assert new["out"].startswith(writer.old)
                largest = max(len(content) for content in new.values())
                calls = calls_of(writer, start, make)
                step = 512
                faults = FAULTS
                if given.sample:
                    step = max(512, largest // 4)
                    faults = ["error=ENOSPC", "signal=SIGKILL"]
                    calls = [c for c in calls if c[0] in (
                        "openat", "write", "fsync", "rename", "close", "fchmod", "unlink")]
                jobs = [pool.submit(inject, writer, start, new, make, call, fault)
                        for call in calls for fault in OTHER_FAULTS.get(call[0], faults)]
                jobs += [pool.submit(cut_short, writer, start, new, make, limit)
                         for limit in range(0, largest, step)]
                for room in (0, 4, 64) if not given.sample else (4,):
                    found = full_disk(writer, start, new, inputs, room)
                    without_disk = without_disk or found is None
                    wrong += found or []
                for job in jobs:
                    wrong += job.result()
                tried[writer.name] = tried.get(writer.name, 0) + len(jobs)
            print(f"{writer.name:16} {tried[writer.name]:6} points", flush=True)
    for line in wrong:
        print(line)
    print(f"{sum(tried.values())} points tried, {len(wrong)} wrong"
          + ("; no file system could be mounted" if without_disk else ""))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
