#!/usr/bin/env python3
"""Whether each manual page has the options that its program's --help tells of, and no others.

Usage: manuals.py FOLDER_OF_PAGES PROGRAM..."""
import pathlib
import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])(--?[A-Za-z][\w-]*)")


def told(program, *words):
    done = subprocess.run([program, *words], capture_output=True, text=True, check=True,
                          env={"QT_QPA_PLATFORM": "offscreen", "PATH": "/usr/bin:/bin"})
    return done.stdout


def of_program(program):
    """Options of the program and of each command that has a help text of its own."""
    text = told(program, "--help")
    options = set()
    if "COMMAND --help" in text:
        commands = re.search(r"^Commands:\n((?:  .*\n)+)", text, re.M).group(1)
        text += "".join(told(program, line.split()[0], "--help") for line in commands.splitlines())
    for line in text.splitlines():
        # An option's own line begins with it; what other lines name is explained elsewhere.
        found = re.match(r"\s+((?:-\w+, )?--?[\w-]+)", line)
        if line.startswith("  ") and found and found.group(1).startswith("-"):
            options.update(OPTION.findall(found.group(1)))
    return options | {"--help", "--version"}


def of_page(page):
    """Options that a paragraph of the page is about."""
    options = set()
    lines = page.read_text().splitlines()
    for before, line in zip(lines, lines[1:]):
        if before == ".TP" and line.startswith(".B"):
            options.update(OPTION.findall(re.sub(r"\\f.|[\"]", " ", line.replace("\\-", "-"))))
    # --help and --version may be told in the synopsis only.
    text = page.read_text().replace("\\-", "-")
    return options | {word for word in ("--help", "--version") if word in text}


def main():
    wrong = []
    for program in map(pathlib.Path, sys.argv[2:]):
        name = program.name.lower().replace("_", "-")
        has, shows = of_program(program), of_page(pathlib.Path(sys.argv[1]) / f"{name}.1")
        wrong += [f"{name}.1 doesn't tell of {option}" for option in sorted(has - shows)]
        wrong += [f"{name}.1 tells of {option}, the program doesn't" for option in sorted(shows - has)]
        if len(has) < 5:
            wrong.append(f"{name} --help: only {len(has)} options were found")
        print(f"{name}: {len(has)} options")
    print("\n".join(wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
