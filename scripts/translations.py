#!/usr/bin/env python3
"""Keeps the translations of the window in step with the texts in the sources.

translations.py          takes new texts up as unfinished, drops those that are gone
translations.py --check  changes nothing; status 1 when a text is missing, unfinished or gone

All texts stand in one context, sorted by their English words: the program looks a text up by its
words alone.
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from xml.sax.saxutils import escape

ROOT = pathlib.Path(__file__).resolve().parent.parent
CONTEXT = "SealedPackageBuilder"


def source_texts() -> set[str]:
    with tempfile.TemporaryDirectory() as folder:
        scratch = pathlib.Path(folder) / "texts.ts"
        # It warns about namespaces, which don't count here.
        subprocess.run(["lupdate", "-silent", "-locations", "none", str(ROOT / "src"), "-ts",
                        str(scratch)], check=True, stderr=subprocess.DEVNULL)
        return {message.findtext("source") for message in ElementTree.parse(scratch).iter("message")}


def translations(path: pathlib.Path) -> dict[str, str]:
    return {message.findtext("source"): "" if message.find("translation").get("type")
            else message.findtext("translation") or ""
            for message in ElementTree.parse(path).iter("message")}


def places(text: str) -> list[str]:
    return sorted(re.findall(r"%\d", text))


def faults(wanted: set[str], known: dict[str, str]) -> list[str]:
    found = [f"missing: {text!r}" for text in wanted - known.keys()]
    found += [f"gone: {text!r}" for text in known.keys() - wanted]
    for text, translation in known.items():
        if not translation:
            found.append(f"unfinished: {text!r}")
        elif places(text) != places(translation):
            found.append(f"other places for values: {text!r}")
        elif text.count("&") - text.count("& ") != translation.count("&") - translation.count("& "):
            found.append(f"other mnemonic: {text!r}")
    return sorted(found)


def write(path: pathlib.Path, language: str, texts: dict[str, str]) -> None:
    lines = ['<?xml version="1.0" encoding="utf-8"?>', "<!DOCTYPE TS>",
             f'<TS version="2.1" language="{language}" sourcelanguage="en">', "<context>",
             f"    <name>{CONTEXT}</name>"]
    for text in sorted(texts):
        state = "" if texts[text] else ' type="unfinished"'
        lines += ["    <message>", f"        <source>{escape(text)}</source>",
                  f"        <translation{state}>{escape(texts[text])}</translation>",
                  "    </message>"]
    path.write_text("\n".join(lines + ["</context>", "</TS>", ""]), encoding="utf-8")


def main() -> int:
    wanted = source_texts()
    status = 0
    for path in sorted((ROOT / "resources/translations").glob("spb_*.ts")):
        known = translations(path)
        if "--check" not in sys.argv[1:]:
            write(path, path.stem.removeprefix("spb_"),
                  {text: known.get(text, "") for text in wanted})
            known = translations(path)
        for fault in faults(wanted, known):
            print(f"{path.name}: {fault}")
            status = 1
    return status


if __name__ == "__main__":
    sys.exit(main())
