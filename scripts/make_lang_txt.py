#!/usr/bin/env python3
"""Writes Lang.txt, the template of a language file: every key the program
passes to its translation lookup, as "key=" lines under [Vonnel], sorted,
each once, in cp1252 with CR LF line ends.

Keys are taken from the sources:
  - calls translate(...), m_translate(...), the local tr(...) helpers, the
    transfer's lookup(...), frameCaption(...), setPauseButton(...) and
    setCancelButton(...), and the network tools' notice(...) (shown
    through the lookup) whose
    first argument is a text literal, or a choice between two;
  - tables marked with a comment holding "Lang.txt keys:": from the line
    after it to the line that closes the table ("};"), the first text
    literal of each line;
  - statements marked with a comment holding "Lang.txt key" (a function
    that returns a key): every text literal up to the next ';';
  - scripts/lang_keys_extra.txt: keys made while the program runs, which no
    reading of the sources can see.

Usage: make_lang_txt.py SRC_DIR EXTRA_FILE OUT_FILE [--list-unresolved]
"""

import os
import re
import sys

CALLS = {"translate", "m_translate", "tr", "lookup", "notice", "setPauseButton", "setCancelButton",
         "frameCaption"}
TEXT_WRAPPERS = {"QStringLiteral", "QLatin1String", "QString", "fromLatin1", "QLatin1StringView"}
MARKER = "Lang.txt keys:"
STATEMENT_MARKER = "Lang.txt key"

ESCAPES = {"n": "\n", "r": "\r", "t": "\t", "\\": "\\", '"': '"', "'": "'", "?": "?", "0": "\0"}


def decode(body):
    out, i = [], 0
    while i < len(body):
        c = body[i]
        if c != "\\":
            out.append(c)
            i += 1
            continue
        n = body[i + 1]
        if n == "x":
            m = re.match(r"[0-9a-fA-F]+", body[i + 2:])
            out.append(chr(int(m.group(0), 16)))
            i += 2 + len(m.group(0))
        else:
            out.append(ESCAPES.get(n, n))
            i += 2
    return "".join(out)


def tokens(text):
    """(kind, value, line) for identifiers, strings, punctuation and comments."""
    i, line, n = 0, 1, len(text)
    while i < n:
        c = text[i]
        if c == "\n":
            line += 1
            i += 1
        elif c.isspace():
            i += 1
        elif text.startswith("//", i):
            end = text.find("\n", i)
            end = n if end < 0 else end
            yield ("comment", text[i:end], line)
            i = end
        elif text.startswith("/*", i):
            end = text.find("*/", i + 2)
            end = n if end < 0 else end + 2
            yield ("comment", text[i:end], line)
            line += text.count("\n", i, end)
            i = end
        elif c == '"' or (c in "uUL" and text.startswith('"', i + 1)) or text.startswith('u8"', i):
            if c != '"':
                i = text.index('"', i)
            if text.startswith('R"', i - 1):
                raise SystemExit("raw strings are not read")
            j = i + 1
            while text[j] != '"':
                j += 2 if text[j] == "\\" else 1
            yield ("string", decode(text[i + 1:j]), line)
            i = j + 1
        elif c == "'":
            j = i + 1
            while text[j] != "'":
                j += 2 if text[j] == "\\" else 1
            yield ("char", text[i:j + 1], line)
            i = j + 1
        elif c.isalpha() or c == "_":
            m = re.match(r"[A-Za-z_0-9]+", text[i:])
            yield ("ident", m.group(0), line)
            i += len(m.group(0))
        elif c.isdigit():
            m = re.match(r"[0-9A-Za-z_.']+", text[i:])
            yield ("number", m.group(0), line)
            i += len(m.group(0))
        elif text.startswith("::", i):
            yield ("punct", "::", line)
            i += 2
        else:
            yield ("punct", c, line)
            i += 1


def literal_texts(arg):
    """The keys an argument's tokens stand for, or None when not literal."""
    depth, parts = 0, [[]]
    for kind, value, _ in arg:
        if kind == "punct" and value in "?:" and value != "::" and depth == 0:
            parts.append([])
            continue
        if kind == "punct" and value == "(":
            depth += 1
        elif kind == "punct" and value == ")":
            depth -= 1
        parts[-1].append((kind, value))
    if len(parts) == 3:  # cond ? a : b
        parts = parts[1:]
    elif len(parts) != 1:
        return None
    keys = []
    for part in parts:
        strings = [v for k, v in part if k == "string"]
        rest = [(k, v) for k, v in part if k != "string"]
        plain = all((k == "ident" and v in TEXT_WRAPPERS) or (k == "punct" and v in ("(", ")", "::"))
                    for k, v in rest)
        if not strings or not plain:
            return None
        keys.append("".join(strings))
    return keys


def scan(path, found, unresolved):
    with open(path, encoding="utf-8") as f:
        toks = list(tokens(f.read()))
    marked_from = None
    taken_line = None
    in_statement = False
    for i, (kind, value, line) in enumerate(toks):
        if kind == "comment" and MARKER in value:
            marked_from = line
            taken_line = None
            continue
        if kind == "comment" and STATEMENT_MARKER in value:
            in_statement, text = True, None
            continue
        if in_statement:
            # Adjacent literals are one text.
            if kind == "string":
                text = (text or "") + value
                continue
            if text is not None:
                found.add(text)
                text = None
            if kind == "punct" and value == ";":
                in_statement = False
        if marked_from is not None:
            if kind == "string" and line != taken_line:
                found.add(value)
                taken_line = line
            if kind == "punct" and value == "}" and i + 1 < len(toks) and toks[i + 1][1] == ";":
                marked_from = None
        if kind != "ident" or value not in CALLS:
            continue
        if i + 1 >= len(toks) or toks[i + 1][1] != "(":
            continue
        # The first argument: up to the first ',' or ')' at its own depth.
        depth, j, arg = 0, i + 2, []
        while j < len(toks):
            k, v, _ = toks[j]
            if k == "punct" and v in "([{":
                depth += 1
            elif k == "punct" and v in ")]}":
                if depth == 0:
                    break
                depth -= 1
            elif k == "punct" and v == "," and depth == 0:
                break
            if k != "comment":
                arg.append(toks[j])
            j += 1
        keys = literal_texts(arg)
        if keys is None:
            unresolved.append("%s:%d: %s(%s)" % (path, line, value, " ".join(t[1] for t in arg)))
        else:
            found.update(keys)


def main(argv):
    if len(argv) < 4:
        print(__doc__, file=sys.stderr)
        return 2
    src, extra, out = argv[1], argv[2], argv[3]
    found, unresolved = set(), []
    for root, dirs, files in os.walk(src):
        dirs.sort()
        for name in sorted(files):
            if name.endswith((".cpp", ".h")):
                scan(os.path.join(root, name), found, unresolved)
    with open(extra, encoding="utf-8") as f:
        for line in f:
            line = line.rstrip("\r\n")
            if line and not line.startswith("#"):
                found.add(line)
    if "--list-unresolved" in argv:
        print("\n".join(unresolved))
    # The lookup finds a key whatever its case and the blanks round it.
    keys = {}
    for key in sorted(found, key=lambda k: (k.strip().lower(), k)):
        name = key.strip()
        if not name or "=" in name or "\r" in name or "\n" in name or name.startswith(("[", ";")):
            print("make_lang_txt: a key no language file can hold: %r" % key, file=sys.stderr)
            continue
        keys.setdefault(name.lower(), name)
    text = "[Vonnel]\r\n" + "".join(k + "=\r\n" for k in keys.values())
    data = text.encode("cp1252")
    os.makedirs(os.path.dirname(os.path.abspath(out)), exist_ok=True)
    with open(out, "wb") as f:
        f.write(data)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
