#!/usr/bin/python3
"""Compares the walks of CFileProcess with the programs that people use for the same: file_walks.py PROGRAM
[--files N] [--folders N] [--rounds N]

PROGRAM is velmora_file_walks. Makes two trees of empty files in memory where there is room, measures all in turn, and
prints medians in wall time: of the library the calls alone, of the programs from their start to their end.

The listing is that of the files of one extension in all folders. Pruning looks into no more than 1000 subfolders, so
its tree has the same files in that many.
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

MOST_PRUNED_FOLDERS = 1000
BYTES_PER_FILE_GOAL = 200


def make_tree(top, files, folders):
    """Folders of two levels; half of the files end in .dmp, and times do not follow the order of names."""
    per_group = 50
    for folder in range(folders):
        path = top / f"group-{folder // per_group}" / f"folder-{folder}" if folders > MOST_PRUNED_FOLDERS else top / f"folder-{folder}"
        path.mkdir(parents=True, exist_ok=True)
        for number in range(folder, files, folders):
            file = path / f"audio-dump-{number}.{'dmp' if number // folders % 2 else 'log'}"
            file.touch()
            os.utime(file, (0, 1_600_000_000 + number * 7919 % files))


def timed(command):
    start = time.monotonic()
    subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
    return (time.monotonic() - start) * 1000


def library(program, mode, tree):
    """The median time of the calls, how many files were found, and the bytes of memory that it took."""
    output = subprocess.run([program, mode, str(tree)], capture_output=True, text=True, check=True).stdout
    times, facts = output.splitlines()
    found, memory = facts.split()
    return statistics.median(map(float, times.split())), int(found), int(memory)


def line(name, ours, theirs, goal):
    ratio = ours / theirs
    print(f"{name:42}  {ours:8.1f} ms  {theirs:8.1f} ms  {ratio:5.2f}  {goal:4.2f}  {'met' if ratio <= goal else 'MISSED'}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--files", type=int, default=200_000)
    parser.add_argument("--folders", type=int, default=5_000)
    parser.add_argument("--rounds", type=int, default=7)
    options = parser.parse_args()
    base = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    top = pathlib.Path(tempfile.mkdtemp(prefix="velmora-bench-", dir=base))
    try:
        listed, pruned = top / "listed", top / "pruned"
        make_tree(listed, options.files, options.folders)
        make_tree(pruned, options.files, min(options.folders, MOST_PRUNED_FOLDERS))
        rows = {name: [] for name in ("list", "find", "fdfind", "prune", "sort")}
        for _ in range(options.rounds):
            time_of_list, found, _ = library(options.program, "list", listed)
            rows["list"].append(time_of_list)
            rows["find"].append(timed(["find", str(listed), "-name", "*.dmp"]))
            rows["fdfind"].append(timed(["fdfind", "-u", "-e", "dmp", ".", str(listed)]))
            time_of_prune, _, memory = library(options.program, "prune", pruned)
            rows["prune"].append(time_of_prune)
            rows["sort"].append(timed(["sh", "-c", f"find '{pruned}' -printf '%T@ %p\\n' | LC_ALL=C sort"]))
        expected = sum(1 for number in range(options.files) if number // options.folders % 2)
        if found != expected:
            sys.exit(f"file_walks.py: {found} files were found of {expected}")
        median = {name: statistics.median(times) for name, times in rows.items()}
        print(f"{options.files} files in {options.folders} folders{'':13}      Velmora        other  ratio  goal")
        line("GetTypeFiles / find -name", median["list"], median["find"], 1.0)
        line("GetTypeFiles / fdfind", median["list"], median["fdfind"], 1.0)
        line("DeleteFileByPath / find -printf | sort", median["prune"], median["sort"], 1.2)
        per_file = memory / options.files
        verdict = "met" if per_file <= BYTES_PER_FILE_GOAL else "MISSED"
        print(f"{'DeleteFileByPath, memory':42}  {per_file:8.1f} bytes a file, goal {BYTES_PER_FILE_GOAL}  {verdict}")
    finally:
        shutil.rmtree(top)


if __name__ == "__main__":
    main()
