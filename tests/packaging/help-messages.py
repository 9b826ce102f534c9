#!/usr/bin/env python3
"""Whether each message that the program can show has an entry on a help page, each entry a message, and
each field of a form its row.

Messages are the texts of the source that aren't translated: labels and hints go through tr(), messages
stay English, since they are looked up by their words. So every text of three words and more outside tr()
counts, and those of two words where they are handed to one of the functions that report. Format marks
and line ends are gaps; an entry writes a gap as an ellipsis."""
import pathlib
import re
import sys

TOKEN = re.compile(r"""//[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*$
    | (?:u8|[LuU])?"(?:[^"\\\n]|\\.)*" | '(?:[^'\\\n]|\\.)*' | [A-Za-z_]\w* | \S""", re.S | re.M | re.X)
STRING = re.compile(r'(?:u8|[LuU])?"(.*)"$', re.S)
GAP = re.compile(r"(?:0x)?%(?:l?s|[0-9]*[duxX]|[0-9])|…|\n")
REPORTS = set("""showBox askYesNo refuse refused fail logMessage message tell tellError tellTokenError tellFailed
    report reportText warn libraryFailure tokenFailure badArea invalid check error complaint note""".split())
# Texts of these calls are labels, patterns, styles, or words that a file or another program has.
NO_MESSAGES = set("""tr QT_TR_NOOP QT_TRANSLATE_NOOP translate setStyleSheet chooseFile chooseFiles
    getSaveFileName getOpenFileName setApplicationName setWindowTitle fputs add QFont contains startsWith find
    drawText horizontalAdvance static_assert printText""".split())
# Levels that are no box and no fault: success lines, notices and dumps of the log.
QUIET = re.compile(r"Success|Notice|Dump|Information|^(?:[012789]|kDone|kQuiet\w*) ,")
# Labels that are no arguments of a call of their own, by file.
LABELS = {
    "app/LaunchCheck.cpp": r"Usage: |VDR32 Sealed",
    "certif/Words.h": r".*Key *$|[A-Z ]+$",
    "certif/ChainView.cpp|device/OptionBytes.cpp|device/ObEditor.cpp": r"%1 |bits %1",
    "crypto/primitives/EcKey.cpp|obk/ObkeyOpening.cpp": r"-----|<\?xml",
    "device/ObEntries.h": r"- Select|VDR32",
    "files/firmware/ElfLabels.cpp": r".",
    "preparation/listing/PackageKinds.cpp": r"signed image$",
    "workbench/frame/Panels.cpp|workbench/widgets/PermissionTable.cpp|workbench/widgets/ResizeFilter.cpp": r".*\{|background",
    "workbench/tabs/.*Tab.cpp|workbench/tabs/.*Saved.cpp|workbench/tabs/sfi/SfiVariants.cpp":
        r"(Encryption( public)? key|Nonce|Option bytes|Area byte|Security version|ouput SFI|[sS]igned image|EC private key"
        r"|output signed|Issuer key|Subject key|Upper certificate|Output certificate) file$"
        r"|(in|ex)ternal firmware files$|Available RAM size$|signed image version$|Any \(bits",
    "workbench/widgets/(FileRows|MemoryMap\\w*).cpp": r"%1 to|%1,|%1 and|: %1|\. And|and (%1|000) more|Close|Overlap between segments$",
    "workbench/tabs/ob/ObTab.cpp": r" and %1 more",
    "workbench/tokens/TokenPicker.cpp|workbench/widgets/Boxes.cpp": r"Last try$|File exists$",
}
SUCCESS = re.compile(r"success|SUCCESS|^Valid |^The image was made|^Configuration saved|licences were made|"
                     r"^OBKey File Generation|header file %1 is new|firmware identifiers? ")


def unescaped(text):
    return text.replace("\\n", "\n").replace('\\"', '"').replace("\\\\", "\\")


def texts(path):
    """(text, calls around it, first words of the innermost call that reports) for each literal."""
    tokens = [t for t in TOKEN.findall(path.read_text()) if not t.lstrip().startswith(("//", "/*", "#"))]
    calls, at = [], 0
    while at < len(tokens):
        token = tokens[at]
        if token in "({":
            calls.append((tokens[at - 1] if at else "", at))
        elif token in ")}" and calls:
            calls.pop()
        elif STRING.match(token):
            whole = ""
            while at < len(tokens) and STRING.match(tokens[at]):
                whole += STRING.match(tokens[at]).group(1)
                at += 1
            at -= 1
            names = [name for name, _ in calls]
            levels = [" ".join(tokens[begin + 1:begin + 10]) for name, begin in calls
                      if name in ("message", "tell", "logMessage", "report", "say")]
            yield unescaped(whole), names, levels[-1] if levels else ""
        at += 1


def pieces(text):
    """What stands between the gaps; blanks count as one."""
    parts = (" ".join(part.split()) for part in GAP.split(text))
    return [part for part in parts if re.search(r"[A-Za-z]{2}", part)]


def is_composed(piece, known, most=3):
    """Whether a text stands in the code, in at most so many literals that follow each other."""
    words = piece.split()
    while words and most > 0:
        taken = next((n for n in range(len(words), 0, -1) if " ".join(words[:n]) in known), 0)
        if taken == 0:
            return False
        words, most = words[taken:], most - 1
    return not words


def is_message(text, names, level, labels):
    reports = any(name in REPORTS for name in names)
    if not reports and any(name in NO_MESSAGES or name == "say" for name in names):
        return False
    if QUIET.search(level) or SUCCESS.search(text) or (labels and re.match(labels, text)):
        return False
    return len(text.split()) >= (2 if reports else 3) and bool(pieces(text))


# How a form names its rows: the first text of a row's call, or its label.
ROW = re.compile(r"""(?:\blabel\ =\ tr | \b(?!tlv)\w+Row\((?:[\w:\s,]|"\w+")*?(?:tr|QT_TR_NOOP) | \{(?=tr\("[^"]*:\s))
    \(\s*"([^"]+)" | \{tr\("([^"]*):\s""", re.X)


def missing_fields(root):
    """Fields of the forms that their pages don't tell of."""
    found, wrong = 0, []
    for folder in sorted((root / "src/workbench/tabs").iterdir()):
        pages = [root / "docs/help" / f"{name}.md" for name in (["sfi", "sfix"] if folder.name == "sfi" else [folder.name])]
        if folder.is_dir():
            told = "".join(page.read_text() for page in pages)
            for path in sorted(folder.glob("*.cpp")):
                for label in ROW.findall(path.read_text()):
                    name = "".join(label).replace("&", "").strip(" :")
                    found += 1
                    if not re.search(rf"^\| {re.escape(name)} \|", told, re.M):
                        wrong.append(f"{pages[0].name}: no row for the field '{name}'")
    return found, wrong


def main():
    root = pathlib.Path(sys.argv[1])
    entries = []  # (page, entry)
    for page in sorted((root / "docs" / "help").glob("*.md")):
        for cell in re.findall(r"^\| (`.*?`) \| [^|]+ \| [^|]+ \|$", page.read_text(), re.M):
            entries += [(page.name, " ".join(entry.split())) for entry in re.findall(r"`([^`]+)`", cell)]
    known, messages, wrong = set(), 0, []
    for path in sorted((root / "src").rglob("*.*")):
        if path.suffix not in (".cpp", ".h"):
            continue
        name = str(path.relative_to(root / "src"))
        labels = "|".join(f"(?:{words})" for files, words in LABELS.items() if re.match(f"(?:{files})$", name))
        for text, names, level in texts(path):
            known.add(" ".join(re.sub(r"%[0-9]?l?[a-zA-Z0-9]*", " … ", text).split()))
            if not is_message(text, names, level, labels):
                continue
            messages += 1
            wanted = re.compile(".*".join(re.escape(piece) for piece in pieces(text)))
            if not any(wanted.search(entry) for _, entry in entries):
                wrong.append(f"src/{name}: no entry for '{text.strip()}'")
    everything = "\n".join(sorted(known))
    for page, entry in entries:
        for piece in pieces(entry):
            if not is_composed(piece, everything):
                wrong.append(f"{page}: no message '{piece}' of '{entry}'")
    fields, missing = missing_fields(root)
    wrong += missing
    print("\n".join(wrong + [f"{messages} messages, {len(entries)} entries, {fields} fields"]))
    # An extractor that finds nothing would pass: these must be found, and about so many.
    samples = ("Invalid RAM size", "Its index is 0", "Unrecognized record type:", "Wrong FlashStart value.")
    blind = [sample for sample in samples if not any(sample in text for text in known)]
    return 1 if wrong or blind or messages < 700 or len(entries) < 600 or fields < 50 else 0


if __name__ == "__main__":
    sys.exit(main())
