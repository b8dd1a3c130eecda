#!/usr/bin/env python3
"""Figures of who changes what in src/, for comparing two states of the tree:
std::function members in headers outside platform/, signals emitted on
another object, setting keys spelled in more than one file, and the codec's
frame words spelled as literals elsewhere. Reads files as text; the counts
are what the patterns find, not a proof.

usage: structure_figures.py [SRC_DIR]   (default: src)
"""
import collections
import pathlib
import re
import sys

src = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "src")
files = [p for p in src.rglob("*") if p.suffix in (".h", ".cpp")]

function_members = 0
for p in files:
    if p.suffix != ".h" or p.relative_to(src).parts[0] == "platform":
        continue
    for line in p.read_text(errors="replace").splitlines():
        if re.match(r"\s*std::function<.*>\s+\w+(\s*=.*)?;\s*(//.*)?$", line):
            function_members += 1

foreign_emits = 0
for p in files:
    for line in p.read_text(errors="replace").splitlines():
        if re.search(r"Q_EMIT\s+\w+(?:\(\))?(?:(?:\.|->)\w+(?:\(\))?)*(?:\.|->)\w+\(", line):
            foreign_emits += 1

key_files = collections.defaultdict(set)
key_re = re.compile(r"(?:setting|settingInt|settingFlag|settingNumber|writeSetting)\(\s*"
                    r"(?:QStringLiteral|QLatin1String|QString)?\(?\"([^\"]+)\"")
for p in files:
    for m in key_re.finditer(p.read_text(errors="replace")):
        key_files[m.group(1)].add(str(p))
multi = {k: v for k, v in key_files.items() if len(v) > 1}

codec = (src / "core" / "WireCodec.h").read_text(errors="replace")
words = set(re.findall(r'inline constexpr QByteArrayView k\w+ = "([^"]{3,})";', codec))
outside = collections.Counter()
for p in files:
    if p.name.startswith("WireCodec") or p.name.startswith("BoardCodec"):
        continue
    text = p.read_text(errors="replace")
    for w in words:
        if re.search(r'QStringLiteral\("' + re.escape(w) + r'"\)', text):
            outside[w] += 1

print(f"std::function members in headers outside platform/: {function_members}")
print(f"signals emitted on another object (Q_EMIT x.sig / x->sig): {foreign_emits}")
print(f"setting keys read or written by name: {len(key_files)}; spelled in more than one file: "
      f"{len(multi)}")
print(f"codec frame words spelled as literals outside the codecs: {sum(outside.values())} "
      f"({', '.join(sorted(outside)) or 'none'})")
