#!/usr/bin/env python3
"""Whether each message that a help page explains is one that the program has, letter for letter."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
code = "\n".join(path.read_text() for path in sorted((root / "src").rglob("*.cpp")))
code = re.sub(r'"\s*\n\s*L?"', "", code)  # literals that go on in the next line
literals = {text.replace('\\"', '"') for text in re.findall(r'"((?:[^"\\\n]|\\.)*)"', code)}
wrong, count = [], 0
for page in sorted((root / "docs" / "help").glob("*.md")):
    _, _, refusals = page.read_text().partition("## When it refuses")
    for message in re.findall(r"^\| `([^`]+)` \|", refusals, re.M):
        count += 1
        if not any(message.strip() in literal for literal in literals):
            wrong.append(f"{page.name}: no message '{message}'")
print("\n".join(wrong + [f"{count} messages"]))
sys.exit(1 if wrong or count < 30 else 0)
