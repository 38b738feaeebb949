#!/usr/bin/python3
"""Holds object files to the rule that the library keeps no mutable data, neither global nor of a thread.

    mutable_data.py OBJECT...

Constant data that the loader relocates and then protects (.data.rel.ro) is constant. A guard variable of a static
or an inline variable of a header counts like any other.

What has a name in the source has a symbol in the object. Data without any is the compiler's own: the records that
std::source_location points to, which it writes once and for all, but puts among what may be written to.
"""
import re
import subprocess
import sys

MUTABLE = re.compile(r"^\.(data|bss|tdata|tbss|tls)([.$].*)?$")
# DW.ref: pointers of the exception tables, to the runtime's own function and to the types that are caught.
ALLOWED = re.compile(r"^\.data\.rel\.ro(\..*)?$|^\.data\.rel\.local\.DW\.ref\.")


def sections(listing):
    """Object, section and size, from what `objdump -h` prints."""
    name = ""
    for line in listing.splitlines():
        if header := re.match(r"^(.*):\s+file format ", line):
            name = header[1]
        elif section := re.match(r"^\s*\d+\s+(\S+)\s+([0-9a-f]{8,16})\s", line):
            yield name, section[1], int(section[2], 16)


def named_sections(listing):
    """The sections in which objects with names stand, as (object, section), from what `objdump -h -t` prints."""
    name = ""
    order = []
    for line in listing.splitlines():
        if header := re.match(r"^(.*):\s+file format ", line):
            name = header[1]
            order = []
        elif section := re.match(r"^\s*\d+\s+(\S+)\s+[0-9a-f]{8,16}\s", line):
            order.append(section[1])
        elif symbol := re.match(r"^[0-9a-f]{16} (.{7}) (\S+)\t", line):  # ELF
            if "d" not in symbol[1]:
                yield name, symbol[2]
        elif symbol := re.match(r"^\[\s*\d+\]\(sec\s+(-?\d+)\).*0x[0-9a-f]+ (.*)$", line):  # COFF
            number = int(symbol[1])
            if number > 0 and symbol[2] != order[number - 1]:
                yield name, order[number - 1]


def is_mutable(section, size):
    return size > 0 and bool(MUTABLE.match(section)) and not ALLOWED.match(section)


def find(objects):
    tool = "x86_64-w64-mingw32-objdump" if objects[0].endswith(".obj") else "objdump"
    listing = subprocess.run([tool, "-h", "-t", "-w", *objects], capture_output=True, text=True, check=True).stdout
    listed = list(sections(listing))
    named = set(named_sections(listing))
    unread = set(objects) - {name for name, _, _ in listed}
    yield from (f"{name}: has no sections that can be read" for name in sorted(unread))
    yield from (f"{name}: {size} bytes of mutable data in {section}"
                for name, section, size in listed if is_mutable(section, size) and (name, section) in named)


def main(objects):
    if not objects:
        print("there are no objects to look at")
        return 1
    found = list(find(objects))
    print("\n".join(found) if found else f"{len(objects)} objects without mutable data")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
