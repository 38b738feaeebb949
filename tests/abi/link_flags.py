#!/usr/bin/python3
"""Holds the shared libraries of a Linux build to -Wl,-z,defs: nothing in them is left for a host to define. And to
what a process pays for by starting with them: what only some questions need is loaded by those.

    link_flags.py BUILD.NINJA LIBRARY...

Looks at the link commands, and at what the loader says of the linked files.
"""
import re
import subprocess
import sys
from pathlib import Path


def without_flag(ninja, libraries):
    """Those of the libraries, as paths from the build folder, that have no link command with the flag."""
    flagged = set()
    for statement in re.split(r"^build ", ninja, flags=re.MULTILINE)[1:]:
        head, _, rest = statement.partition("\n")
        outputs, _, rule = head.partition(":")
        flags = re.search(r"^  LINK_FLAGS = (.*)$", rest, re.MULTILINE)
        if "SHARED_LIBRARY_LINKER" in rule and flags and "-Wl,-z,defs" in flags[1].split():
            flagged |= set(outputs.split())
    return [library for library in libraries if library not in flagged]


LOADED_LATE = ("libsystemd.so.", "liblog4cxx.so.")  # each brings half a dozen others along


def loaded_at_start(dynamic_section):
    """The libraries that are loaded with one although only some questions need them, from what `readelf -d` prints."""
    needed = re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic_section)
    return [name for name in needed if name.startswith(LOADED_LATE)]


def main(ninja_file, libraries):
    build = Path(ninja_file).parent
    found = [f"{library} is linked without -Wl,-z,defs"
             for library in without_flag(Path(ninja_file).read_text(),
                                         [str(Path(library).relative_to(build)) for library in libraries])]
    for library in libraries:
        loaded = subprocess.run(["ldd", "-r", library], capture_output=True, text=True, check=False)
        lines = (loaded.stdout + loaded.stderr).splitlines()
        found += [f"{library}: {line.strip()}" for line in lines if "undefined symbol" in line or "not found" in line]
        dynamic = subprocess.run(["readelf", "-d", "-W", library], capture_output=True, text=True, check=True).stdout
        found += [f"{library} has {name} loaded at the start" for name in loaded_at_start(dynamic)]
    print("\n".join(found) if found else f"{len(libraries)} libraries define all that they use, and load no more")
    return 1 if found or not libraries else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
