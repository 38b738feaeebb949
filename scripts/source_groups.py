#!/usr/bin/python3
"""Sorts sources into groups that can be one text for the compiler: source_groups.py SIZE FILE...

Nearly all of a compiler's work is in the headers, which a group reads once. Prints a line for each group, its files
separated by semicolons.
"""
import re
import sys
from pathlib import Path

# What is no name of a source's own, although it stands where one would.
COMMON = {"TEST", "TEST_F", "TEST_P", "MATCHER", "MATCHER_P", "INSTANTIATE_TEST_SUITE_P", "static_assert", "noexcept"}
SILENT = re.compile(r'"(?:[^"\\\n]|\\.)*"|//[^\n]*')  # texts and comments
OWN_NAME = re.compile(r"(?! |//|namespace|using [^=]*;)(?:[\w:<>,*&()\[\]. ]+[ *&])?(\w+)(?: *=|[({\[;]| \{| :)")


def own_names(text):
    """Names that a source keeps to itself: another that has such a word cannot be one text with it."""
    names, inside = set(), False
    for line in text.splitlines():
        inside = (inside or line == "namespace {") and line != "}  namespace"
        declared = OWN_NAME.match(line)
        if inside and declared and declared[1] not in COMMON:
            names.add(declared[1])
    return names


def groups(paths, size):
    """The paths in lists of at most `size`, in which no source has a word that another keeps to itself."""
    rows = []
    for path in paths:
        text = SILENT.sub('""', Path(path).read_text(encoding="utf-8").replace("}  // namespace", "}  namespace"))
        names, words = own_names(text), set(re.findall(r"\w+", text))
        row = next((row for row in rows if len(row[0]) < size and not row[1] & words and not row[2] & names), None)
        if not row:
            row = ([], set(), set())
            rows.append(row)
        row[0].append(path)
        row[1].update(names)
        row[2].update(words)
    return [paths for paths, _, _ in rows]


if __name__ == "__main__":
    for group in groups(sys.argv[2:], int(sys.argv[1])):
        print(";".join(group))
