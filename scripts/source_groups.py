#!/usr/bin/python3
"""Sorts sources into groups that can be one text for the compiler: source_groups.py FILE...

Nearly all of a compiler's work is in the headers, which a group reads once. Prints a line for each group, its files
separated by semicolons.
"""
import re
import sys
from pathlib import Path

SIZE = 120_000  # characters that a group may have: some ten seconds' work; longer groups gain nothing more

# What is no name of a source's own, although it stands where one would.
COMMON = {"TEST", "TEST_F", "TEST_P", "MATCHER", "MATCHER_P", "INSTANTIATE_TEST_SUITE_P", "static_assert", "const",
          "noexcept"}
SILENT = re.compile(r'"(?:[^"\\\n]|\\.)*"|//[^\n]*')  # texts and comments
# The first name on a line of which the line says more: its value, parameters, body or bases.
OWN_NAME = re.compile(r"(?! |//|namespace|using [^=]*;)(?:[\w:<>,*&()\[\]. ]+?[ *&])??(\w+)"
                      r"(?: *=|[({\[;]| \{| final\b| :(?!:))")
ENUMERATION = re.compile(r"^enum (?!class\b)[^{;]*\{([^}]*)\}", re.MULTILINE)  # its constants are names too
# Names of an object's, of a type's (which itself may be another source's own) and of std's: never those of a source.
MEMBER = re.compile(r"(?:\.|->|\b([A-Z]\w*)::|\bstd::)\w+")


class Group:
    """Sources that are one text."""

    def __init__(self):
        self.paths, self.names, self.words, self.length = [], set(), set(), 0


def own_names(text):
    """Names that a source keeps to itself: another that has such a word cannot be one text with it."""
    names, inside = set(re.findall(r"\bk\w+", " ".join(ENUMERATION.findall(text)))), False
    for line in text.splitlines():
        inside = (inside or line == "namespace {") and line != "}  namespace"
        declared = OWN_NAME.match(line)
        if inside and declared and declared[1] not in COMMON:
            names.add(declared[1])
    return names


def groups(paths):
    """The paths in lists of at most SIZE characters, in which no source has a word that another keeps to
    itself. A longer source is one by itself."""
    rows = []
    for path in paths:
        whole = Path(path).read_text(encoding="utf-8")
        text = SILENT.sub('""', whole.replace("}  // namespace", "}  namespace"))
        names, words = own_names(text), set(re.findall(r"\w+", MEMBER.sub(r"\1", text)))
        row = next((row for row in rows
                    if row.length + len(whole) <= SIZE and not row.names & words and not row.words & names), None)
        if not row:
            row = Group()
            rows.append(row)
        row.paths.append(path)
        row.names.update(names)
        row.words.update(words)
        row.length += len(whole)
    return [row.paths for row in rows]


if __name__ == "__main__":
    for group in groups(sys.argv[1:]):
        print(";".join(group))
