#!/usr/bin/env python3
"""Runs the real window and the companions in surroundings that machines really have.

Usage: odd-surroundings.py BUILD_FOLDER

Locales, no home, folders that can't be written to, no display, hardly any file descriptors, odd
file names. The package that the window makes must be the same everywhere, and a program that can't
do its work must say so and end with its own status, never by a signal."""
import os
import pathlib
import resource
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
NOBODY = 65534
ODD_NAMES = [b"%s %n %d", b"two\nlines", b"\"quoted\" 'twice'", b"-rf", b"n" * 250 + b".bin",
             "Übung İı".encode(), b"not \xff\xfe UTF-8"]


class Trials:
    def __init__(self, build):
        self.build, self.count, self.wrong = build, 0, []
        self.place = pathlib.Path(tempfile.mkdtemp())
        self.place.chmod(0o755)
        self.data = self.place / "data"
        shutil.copytree(ROOT / "data" / "demo", self.data)
        self.first = None

    def run(self, command, environment=None, as_nobody=False, descriptors=None, cwd=None):
        variables = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "HOME": str(self.place),
                     "QT_QPA_PLATFORM": "offscreen", "TMPDIR": "/tmp"}
        for name, value in (environment or {}).items():
            variables.pop(name, None)
            if value is not None:
                variables[name] = value

        def prepare():
            if descriptors is not None:
                resource.setrlimit(resource.RLIMIT_NOFILE, (descriptors, descriptors))
            if as_nobody and os.getuid() == 0:
                os.setgroups([])
                os.setgid(NOBODY)
                os.setuid(NOBODY)
        return subprocess.run(command, env=variables, cwd=cwd or self.place, timeout=60,
                              stdin=subprocess.DEVNULL, capture_output=True, preexec_fn=prepare,
                              check=False)

    def check(self, name, is_right, told):
        self.count += 1
        if not is_right:
            self.wrong.append(f"{name}: {told}")

    def demo(self, name, environment=None, data=None, out_name=b"out", **how):
        """The demo through the real window; its package must be that of the first demo."""
        out = os.path.join(os.fsencode(self.place), b"results", out_name)
        os.makedirs(out, exist_ok=True)
        os.chmod(out, 0o777)
        done = self.run([self.build / "demo" / "demo-driver", data or self.data, out],
                        environment, **how)
        path = os.path.join(out, b"out.sfi")
        package = pathlib.Path(os.fsdecode(path)).read_bytes() if os.path.exists(path) else None
        self.first = self.first or package
        self.check(name, done.returncode == 0 and package is not None and package == self.first,
                   f"status {done.returncode}, {done.stdout[-300:]} {done.stderr[-300:]}")
        shutil.rmtree(out)

    def end(self):
        shutil.rmtree(self.place)
        for line in self.wrong:
            print(line)
        print(f"{self.count} trials, {len(self.wrong)} wrong")
        return 1 if self.wrong else 0


def locales(trials):
    folder = trials.place / "locales"
    folder.mkdir()
    for name in ("de_DE", "tr_TR"):
        subprocess.run(["localedef", "-i", name, "-f", "UTF-8", folder / f"{name}.UTF-8"],
                       capture_output=True, check=True)
    for name in ("C", "C.UTF-8", "de_DE.UTF-8", "tr_TR.UTF-8"):
        trials.demo(f"locale {name}", {"LC_ALL": name, "LANG": name, "LOCPATH": str(folder)})


def folders(trials):
    locked = trials.place / "locked"
    locked.mkdir(mode=0o555)
    trials.demo("no home", {"HOME": None})
    trials.demo("home isn't there", {"HOME": "/nonexistent"})
    trials.demo("home and program are read-only", {"HOME": str(locked)}, as_nobody=True)
    trials.demo("no rights in the folder one stands in", {"HOME": "/"}, as_nobody=True, cwd="/")


def without_display(trials):
    done = trials.run([trials.build / "bin" / "sealed-package-builder"],
                      {"QT_QPA_PLATFORM": None, "DISPLAY": None, "WAYLAND_DISPLAY": None})
    trials.check("no display", done.returncode == 69 and done.stderr.count(b"\n") == 1,
                 f"status {done.returncode}, {done.stderr[-300:]}")


def few_descriptors(trials):
    for writer in trials.run([trials.build / "tests" / "write_driver"]).stdout.decode().split():
        for left in (3, 4, 6):
            folder = pathlib.Path(tempfile.mkdtemp(dir=trials.place))
            shutil.copy(trials.data / "key.bin", folder)
            (folder / "key.pem").write_bytes(trials.key)
            done = trials.run([trials.build / "tests" / "write_driver", writer, "."],
                              {"HOME": str(folder)}, cwd=folder, descriptors=3 + left)
            made = [p for p in folder.rglob("*")
                    if p.is_file() and p.name not in ("key.bin", "key.pem")]
            trials.check(f"{writer} with {left} file descriptors",
                         done.returncode == (0 if made else 1) and
                         all(".spb-" not in p.name for p in made),
                         f"status {done.returncode}, made {made}, {done.stderr[-300:]}")


def odd_names(trials):
    tools = trials.build / "bin"
    image_tool = tools / "Utilities" / "Linux" / "imgtool"
    package = trials.place / "package.sfi"
    package.write_bytes(trials.first)
    for number, name in enumerate(ODD_NAMES):
        folder = os.path.join(os.fsencode(trials.place), b"names%d" % number)
        os.mkdir(folder)
        given = b"./" + name if name.startswith(b"-") else name
        is_text = b"\xff" not in name

        def make(content, target=os.path.join(folder, name)):
            with open(target, "wb") as file:
                file.write(content)
        make(trials.first)
        done = trials.run([tools / "spb-unpack", given, "--key", trials.data / "key.bin"],
                          cwd=folder)
        trials.check(f"spb-unpack {name!r}", done.returncode == (0 if is_text else 3),
                     f"{done.returncode} {done.stderr}")
        os.remove(os.path.join(folder, name))
        done = trials.run([image_tool, "create", "--align", "8", "-v", "1.0.0", "-H", "0x200",
                           "-S", "0x20000", "--pad-header", trials.data / "firmware.bin", given],
                          cwd=folder)
        made = os.listdir(folder)
        trials.check(f"imgtool create {name!r}",
                     made == [name] if done.returncode == 0 else done.returncode > 0 and not made,
                     f"{done.returncode} {made} {done.stderr}")
        if is_text and len(name) < 200 and b'"' not in name:  # Qt's dialog takes quotes apart
            data = os.path.join(folder, b"data")
            shutil.copytree(os.fsencode(trials.data), os.path.join(data, name))
            trials.demo(f"window with a folder {name!r}", data=os.path.join(data, given)
                        if not given.startswith(b"./") else os.path.join(data, name),
                        out_name=name if b"\n" not in name else b"out")  # no field takes these


def main():
    if len(sys.argv) != 2:
        print(__doc__)
        return 3
    trials = Trials(pathlib.Path(sys.argv[1]).resolve())
    trials.key = subprocess.run(["openssl", "genpkey", "-algorithm", "EC", "-pkeyopt",
                                 "ec_paramgen_curve:P-256"], capture_output=True,
                                check=True).stdout
    for part in (locales, folders, without_display, few_descriptors, odd_names):
        part(trials)
    return trials.end()


if __name__ == "__main__":
    sys.exit(main())
