#!/usr/bin/python3
"""Sets the whole inventory beside the programs that give as much of it, in one run: inventory.py BUILD_FOLDER

Prints what it costs warm (many rounds in one process, in time and, counted by callgrind, in instructions), as a
process of its own beside processes that only load what it loads, and how many times as long the others take. Goals
are met or missed by the best of many runs, as whatever else a machine does only adds to it; medians stand beside.
Programs are compared by medians.
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


def all_seconds(*commands, runs=RUNS):
    """The commands' wall times, run in turn, so that what else the machine does meets all alike."""
    times = [[] for _ in commands]
    for _ in range(runs):
        for one, command in zip(times, commands):
            one.append(run_once(command))
    return times


def seconds(*commands, runs=RUNS):
    """Medians of the commands' wall times."""
    return [statistics.median(one) for one in all_seconds(*commands, runs=runs)]


def best_and_median(none, some, rounds=1):
    """Milliseconds of a round: what a process with `rounds` of them takes longer than one without any."""
    return [(take(some) - take(none)) / rounds * 1000 for take in (min, statistics.median)]


def instructions(program, rounds):
    with tempfile.TemporaryDirectory() as folder:
        command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/out", program, str(rounds)]
        said = subprocess.run(command, capture_output=True, text=True, check=True).stderr
    return int(re.search(r"Collected : (\d+)", said)[1])


def line(what, value, goal, met):
    print(f"{what:<52}{value:>16}   goal {goal:<14}{'met' if met else 'MISSED'}")


def timed_line(what, best, median, goal):
    line(what, f"{best:.2f} ({median:.2f}) ms", f"{goal} ms", best < goal)


def main():
    programs = Path(sys.argv[1]).resolve() / "bin"
    program, report = str(programs / "velmora_inventory"), str(programs / "velmora-report")
    warm = best_and_median(*all_seconds([program, "1"], [program, str(1 + ROUNDS)]), ROUNDS)
    counted = (instructions(program, 21) - instructions(program, 1)) // 20
    print("the whole inventory of this machine, best (median)")
    timed_line("  warm, one process", *warm, 1)
    line("  warm, instructions", f"{counted:,}", "1,000,000", counted < 1_000_000)
    network = str(programs / "velmora_network")
    timed_line("  the whole network section",
               *best_and_median(*all_seconds([network, "0"], [network, "1"], runs=SHORT_RUNS)), 5)
    floors = [[str(programs / "velmora_floor_empty")], [program, "0"]]
    runs, *floors = all_seconds([program, "1"], *floors, runs=SHORT_RUNS)
    whole = statistics.median(runs)
    timed_line("  as a whole process", min(runs) * 1000, whole * 1000, 3)
    for name, one in zip(("an empty C++ program", "one that only loads Velmora"), floors):
        print(f"    {name:<48}{f'{min(one) * 1000:.2f} ({statistics.median(one) * 1000:.2f}) ms':>16}")
    others = seconds(*(["/bin/sh", "-c", command] for command in OTHERS))
    told, = seconds([report, "--json"])
    print(f"  velmora-report --json, every section{told * 1000:>27.2f} ms")
    for name, one in zip(OTHERS, others):
        print(f"  {name:<50}{one * 1000:>13.2f} ms   {one / whole:6.1f} times")
    fastest = min(one for name, one in zip(OTHERS, others) if not name.startswith("lscpu"))
    line("  the fastest that gives as much, to ours", f"{fastest / whole:.1f} times", "10 times", fastest >= 10 * whole)


if __name__ == "__main__":
    main()
