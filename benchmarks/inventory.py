#!/usr/bin/python3
"""Sets the whole inventory beside the programs that give as much of it, in one run: inventory.py BUILD_FOLDER

Prints what it costs warm (many rounds in one process, in time and, counted by callgrind, in instructions), as a
process of its own beside processes that only load what it loads, and how many times as long the others take. All
times are medians; each goal is met or missed.
"""
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

OTHERS = ("lshw -json", "hwinfo --short", "inxi -F", "lscpu && lsblk -O")
RUNS = 9
SHORT_RUNS = 101  # of what takes milliseconds
ROUNDS = 200
SILENT = [(os.POSIX_SPAWN_OPEN, descriptor, os.devnull, os.O_WRONLY, 0) for descriptor in (1, 2)]


def run_once(command):
    """Wall time of a process, without what Python's own way of starting one would add."""
    start = time.perf_counter()
    process = os.posix_spawn(command[0], command, os.environ, file_actions=SILENT)
    os.waitpid(process, 0)
    return time.perf_counter() - start


def seconds(*commands, runs=RUNS):
    """Medians of the commands' wall times, run in turn, so that what else the machine does meets all alike."""
    times = [[] for _ in commands]
    for _ in range(runs):
        for one, command in zip(times, commands):
            one.append(run_once(command))
    return [statistics.median(one) for one in times]


def instructions(program, rounds):
    with tempfile.TemporaryDirectory() as folder:
        command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/out", program, str(rounds)]
        said = subprocess.run(command, capture_output=True, text=True, check=True).stderr
    return int(re.search(r"Collected : (\d+)", said)[1])


def line(what, value, goal, met):
    print(f"{what:<52}{value:>16}   goal {goal:<14}{'met' if met else 'MISSED'}")


def main():
    programs = Path(sys.argv[1]).resolve() / "bin"
    program, report = str(programs / "velmora_inventory"), str(programs / "velmora-report")
    none, many = seconds([program, "1"], [program, str(1 + ROUNDS)])
    warm = (many - none) / ROUNDS * 1000
    counted = (instructions(program, 21) - instructions(program, 1)) // 20
    print("the whole inventory of this machine")
    line("  warm, one process", f"{warm:.3f} ms", "1 ms", warm < 1)
    line("  warm, instructions", f"{counted:,}", "1,000,000", counted < 1_000_000)
    network = str(programs / "velmora_network")
    none, one = seconds([network, "0"], [network, "1"], runs=SHORT_RUNS)
    line("  the whole network section", f"{(one - none) * 1000:.2f} ms", "5 ms", one - none < 0.005)
    floors = [[str(programs / "velmora_floor_empty")], [program, "0"]]
    whole, *floors = seconds([program, "1"], *floors, runs=SHORT_RUNS)
    line("  as a whole process", f"{whole * 1000:.2f} ms", "3 ms", whole < 0.003)
    for name, one in zip(("an empty C++ program", "one that only loads Velmora"), floors):
        print(f"    {name:<48}{one * 1000:>13.2f} ms")
    others = seconds(*(["/bin/sh", "-c", command] for command in OTHERS))
    told, = seconds([report, "--json"])
    print(f"  velmora-report --json, every section{told * 1000:>27.2f} ms")
    for name, one in zip(OTHERS, others):
        print(f"  {name:<50}{one * 1000:>13.2f} ms   {one / whole:6.1f} times")
    fastest = min(one for name, one in zip(OTHERS, others) if not name.startswith("lscpu"))
    line("  the fastest that gives as much, to ours", f"{fastest / whole:.1f} times", "10 times", fastest >= 10 * whole)


if __name__ == "__main__":
    main()
