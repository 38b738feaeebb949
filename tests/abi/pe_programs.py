#!/usr/bin/python3
"""Holds every Windows program and library of a folder to two rules.

    pe_programs.py FOLDER...

1. Ours carry the flags for address space randomisation, with high entropy, and for data that is never run.
2. Nothing imports a DLL that neither Windows has nor stands beside the program.
"""
import re
import subprocess
import sys
from pathlib import Path

FLAGS = {0x0020: "HIGH_ENTROPY_VA", 0x0040: "DYNAMIC_BASE", 0x0100: "NX_COMPAT"}

# What every Windows 10 has in its system folder, and we use. A new one is added on purpose.
SYSTEM = {
    "advapi32.dll", "bcrypt.dll", "bthprops.cpl", "cfgmgr32.dll", "dxgi.dll", "gdi32.dll", "iphlpapi.dll",
    "kernel32.dll", "msvcrt.dll", "mswsock.dll", "newdev.dll", "ntdll.dll", "ole32.dll", "oleaut32.dll",
    "powrprof.dll", "psapi.dll", "rpcrt4.dll", "setupapi.dll", "shell32.dll", "shlwapi.dll", "user32.dll",
    "version.dll", "wininet.dll", "wlanapi.dll", "ws2_32.dll",
}
# Built elsewhere and shipped beside our programs; their flags are not ours to set.
FOREIGN = {"liblog4cxx.dll", "libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll"}


def headers(file):
    return subprocess.run(["x86_64-w64-mingw32-objdump", "-p", str(file)], capture_output=True, text=True,
                          check=True).stdout


def missing_flags(text):
    found = re.search(r"^DllCharacteristics\s+([0-9a-fA-F]+)", text, re.MULTILINE)
    value = int(found[1], 16) if found else 0
    return [name for bit, name in FLAGS.items() if not value & bit]


def imports(text):
    return sorted({name.lower() for name in re.findall(r"^\s*DLL Name: (\S+)", text, re.MULTILINE)})


def problems(file, text, beside):
    """`beside`: names of the files in the program's folder, in lower case."""
    if file.name.lower() not in FOREIGN:
        yield from (f"{file}: lacks {flag}" for flag in missing_flags(text))
    for name in imports(text):
        if name not in SYSTEM and name not in beside:
            yield f"{file}: imports {name}, which is neither the system's nor beside it"


def main(folders):
    count = 0
    found = []
    for folder in map(Path, folders):
        files = [file for file in sorted(folder.iterdir()) if file.suffix.lower() in (".exe", ".dll")]
        if not files:
            found.append(f"{folder}: has neither programs nor libraries")
        beside = {file.name.lower() for file in files}
        for file in files:
            count += 1
            found += problems(file, headers(file), beside)
    print("\n".join(found) if found else f"{count} programs and libraries are in order")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
