#!/usr/bin/env python3
"""Installs the Debian package in a clean Debian 12 root, uses it there, removes it, and looks for remains.

Usage: try-package.py PACKAGE.deb FOLDER_OF_DEMO_DRIVER   (as root; needs debootstrap and a mirror)

The window is used as a user without rights in its folder: it is opened on a virtual screen and closed
with the keyboard, and its settings must be in the user's folder. The demo driver, put into the root for
the time of the trial, makes a package with what was installed, and the installed companion opens it.
SPB_CLEAN_ROOT names a root made before, to save the minute that making one takes."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
USER = "visitor"
DISPLAY = ":97"


class CleanRoot:
    def __init__(self, place):
        self.path = place / "root"
        made = os.environ.get("SPB_CLEAN_ROOT")
        if made:
            subprocess.run(["cp", "-a", made, self.path], check=True)
        else:
            subprocess.run(["debootstrap", "--variant=minbase", "bookworm", self.path],
                           stdout=subprocess.DEVNULL, check=True)
        policy = self.path / "usr/sbin/policy-rc.d"
        policy.write_text("#!/bin/sh\nexit 101\n")
        policy.chmod(0o755)
        shutil.copy("/etc/resolv.conf", self.path / "etc/resolv.conf")

    def run(self, *command, user=None, check=True, **environment):
        prefix = ["setpriv", f"--reuid={user}", f"--regid={user}", "--clear-groups"] if user else []
        variables = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8",
                     "DEBIAN_FRONTEND": "noninteractive", **environment}
        done = subprocess.run(["/usr/sbin/chroot", self.path, *prefix, *command], env=variables,
                              capture_output=True, text=True, timeout=600, check=False)
        if check and done.returncode != 0:
            raise SystemExit(f"{command}: status {done.returncode}\n{done.stdout[-2000:]}{done.stderr[-2000:]}")
        return done

    def files(self):
        skipped = ("proc", "sys", "dev", "tmp", "var/cache", "var/lib/apt", "var/log")
        found = set()
        for folder, folders, names in os.walk(self.path):
            inside = os.path.relpath(folder, self.path)
            if inside.startswith(skipped):
                folders.clear()
                continue
            found.update(os.path.join(inside, name) for name in names + folders)
        return found


def expect(holds, what):
    print(("ok      " if holds else "WRONG   ") + what, flush=True)
    if not holds:
        raise SystemExit(1)


def use_window(root, home, language, keys):
    """Opens the installed window, closes it with the letters of its menu, looks where it left its settings."""
    screen = subprocess.Popen(["Xvfb", DISPLAY, "-screen", "0", "1600x1000x24", "-nolisten", "tcp"],
                              stderr=subprocess.DEVNULL)
    try:
        time.sleep(2)
        window = subprocess.Popen(
            ["/usr/sbin/chroot", root.path, "setpriv", f"--reuid={USER}", f"--regid={USER}", "--clear-groups",
             "/usr/bin/sealed-package-builder"],
            env={"PATH": "/usr/bin:/bin", "HOME": home, "DISPLAY": DISPLAY, "LANG": language},
            stderr=subprocess.PIPE, text=True)
        time.sleep(4)
        expect(window.poll() is None, f"the installed window is open ({language})")
        tool = {**os.environ, "DISPLAY": DISPLAY}
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "Sealed Package Builder"],
                               env=tool, capture_output=True, text=True, check=True).stdout.split()
        subprocess.run(["xdotool", "windowfocus", found[0]], env=tool, check=True)
        subprocess.run(["xdotool", "key", "--delay", "300", *keys], env=tool, check=True)
        expect(window.wait(timeout=20) == 0, "it is closed with the keyboard and ends with status 0")
    finally:
        screen.terminate()
    settings = root.path / home[1:] / ".config/sealed-package-builder/Settings.ini"
    expect(settings.is_file() and settings.stat().st_mode & 0o777 == 0o600,
           "settings are in the user's folder, for the owner only")
    expect(settings.parent.stat().st_mode & 0o777 == 0o700, "and so is their folder")
    expect(not (root.path / "usr/libexec/sealed-package-builder/Settings.ini").exists(),
           "there are none beside the program")


def make_and_open(root, home, driver):
    """A package made with the installed data, opened by the installed companion."""
    trial = root.path / "usr/libexec/spb-trial"
    trial.mkdir()
    shutil.copy(driver / "demo-driver", trial)
    shutil.copytree(ROOT / "data/demo", root.path / "opt/demo")
    root.run("/usr/libexec/spb-trial/demo-driver", "/opt/demo", home + "/out", user=USER, HOME=home,
             QT_QPA_PLATFORM="offscreen")
    told = root.run("spb-unpack", home + "/out/out.sfi", "--key", "/opt/demo/key.bin", user=USER,
                    HOME=home).stdout
    expect("yes" in told or "authentic" in told.lower(), "a package is made, and opened with its key")
    shutil.rmtree(trial)
    shutil.rmtree(root.path / "opt/demo")


def main():
    package, driver = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    place = pathlib.Path(tempfile.mkdtemp())
    try:
        root = CleanRoot(place)
        root.run("useradd", "-m", USER)
        home = "/home/" + USER
        root.run("apt-get", "update")
        shutil.copy(package, root.path / "opt/trial.deb")
        # What it depends on comes first, so that only the package's own files are compared.
        needed = subprocess.run(["dpkg-deb", "-f", package, "Depends"], capture_output=True, text=True,
                                check=True).stdout
        names = [one.split("|")[0].split("(")[0].strip() for one in needed.split(",")]
        root.run("apt-get", "install", "-y", "--no-install-recommends", *names,
                 "libqt5test5")  # of the demo driver
        before = root.files()
        root.run("dpkg", "-i", "/opt/trial.deb")
        expect("install ok installed" in root.run("dpkg", "-s", "sealed-package-builder").stdout,
               f"{package.name} is installed")
        for program in ("spb-unpack", "spb-elf", "sealed-package-builder"):
            told = root.run(program, "--version", user=USER, HOME=home, QT_QPA_PLATFORM="offscreen").stdout
            expect(told.strip() != "", f"{program} tells its version: {told.strip()}")
        for tool in ("imgtool", "PSA_ADAC"):
            root.run(f"/usr/libexec/sealed-package-builder/Utilities/Linux/{tool}", "--version", user=USER,
                     HOME=home)
        use_window(root, home, "C.UTF-8", ("alt+f", "x"))
        use_window(root, home, "de_DE.UTF-8", ("alt+d", "b"))
        make_and_open(root, home, driver)
        root.run("dpkg", "--purge", "sealed-package-builder")
        remains = {name for name in root.files() - before if not name.startswith("home/")
                   and not name.startswith("var/lib/dpkg/")}
        expect(not remains, f"nothing remains of it {sorted(remains)}")
    finally:
        shutil.rmtree(place, ignore_errors=True)


if __name__ == "__main__":
    main()
