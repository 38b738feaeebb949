#!/usr/bin/python3
"""Holds the symbols that a shared library exports against the golden list of its system.

    exported_symbols.py (linux|windows) LIBRARY GOLDEN_LIST [--update]

The lists hold demangled names, sorted. A name that is gone breaks hosts, and a new one is a promise: so a change
of the list is a decision, made with --update and shown in the commit.
"""
import re
import subprocess
import sys
from pathlib import Path

MINGW = "x86_64-w64-mingw32-"


def run(*command, text=None):
    return subprocess.run(command, input=text, capture_output=True, text=True, check=True).stdout


def linux_symbols(library):
    lines = run("nm", "--dynamic", "--defined-only", "--no-demangle", "--format=posix", library).splitlines()
    # Type A marks the names of symbol versions, which are no symbols.
    return [line.split()[0] for line in lines if line.split()[1] != "A"]


def windows_symbols(library):
    headers = run(MINGW + "objdump", "-p", library)
    table = headers.partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
    return re.findall(r"^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+[0-9a-f]+\s+)?(\S+)$", table, re.MULTILINE)


def demangled(symbols, filter_program):
    return sorted(run(filter_program, text="\n".join(symbols) + "\n").splitlines()) if symbols else []


def exported(system, library):
    if system == "windows":
        return demangled(windows_symbols(library), MINGW + "c++filt")
    return demangled(linux_symbols(library), "c++filt")


def differences(actual, golden):
    for name in sorted(set(golden) - set(actual)):
        yield f"no longer exported: {name}"
    for name in sorted(set(actual) - set(golden)):
        yield f"exported, but not in the list: {name}"
    # Constructors and destructors come twice or thrice under one demangled name.
    for name in sorted(set(actual) & set(golden)):
        if actual.count(name) != golden.count(name):
            yield f"exported {actual.count(name)} times instead of {golden.count(name)}: {name}"


def main(arguments):
    update = "--update" in arguments
    system, library, golden_file = [argument for argument in arguments if argument != "--update"]
    golden_file = Path(golden_file)
    actual = exported(system, library)
    if not actual:
        print(f"{library} exports nothing at all")
        return 1
    if update:
        golden_file.write_text("".join(name + "\n" for name in actual))
        print(f"{golden_file}: {len(actual)} symbols")
        return 0
    found = list(differences(actual, golden_file.read_text().splitlines()))
    if found:
        print("\n".join(found))
        print(f"If that is meant: ninja -C build/PRESET update-exports, and say why in the commit ({golden_file}).")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
