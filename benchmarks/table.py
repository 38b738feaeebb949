#!/usr/bin/python3
"""Prints Google Benchmark's JSON (standard input) as a table of comparisons.

What is named "NAME/velmora" is compared with "NAME/bare". Its counters "ratio goal" and "allocations goal" say
what it is held to.
"""
import json
import sys

HEAD = ("", "Velmora", "bare", "ratio", "goal", "", "allocations", "goal", "")


def verdict(value, goal):
    return "met" if value <= goal else "MISSED"


def row(name, velmora, bare):
    ratio = velmora["cpu_time"] / bare["cpu_time"]
    times = [f"{one['cpu_time']:.1f} {one['time_unit']}" for one in (velmora, bare)]
    allocations, goal = velmora["allocations"], velmora["allocations goal"]
    return (
        *(name, *times, f"{ratio:.2f}", f"{velmora['ratio goal']:.2f}", verdict(ratio, velmora["ratio goal"])),
        *(f"{allocations:g}", f"{goal:g}", verdict(allocations, goal)),
    )


def main():
    medians = {
        run["run_name"]: run for run in json.load(sys.stdin)["benchmarks"] if run.get("aggregate_name") == "median"
    }
    names = [name.removesuffix("/velmora") for name in medians if name.endswith("/velmora")]
    if not names:
        sys.exit("table.py: there is nothing to compare")
    rows = [HEAD] + [row(name, medians[name + "/velmora"], medians[name + "/bare"]) for name in sorted(names, key=natural)]
    widths = [max(map(len, column)) for column in zip(*rows)]
    for cells in rows:
        print("  ".join([cells[0].ljust(widths[0])] + [c.rjust(w) for c, w in zip(cells[1:], widths[1:])]).rstrip())


def natural(name):
    """Sorts the numbers in names by their size."""
    return [(not word.isdigit(), int(word) if word.isdigit() else word) for word in name.split()]


if __name__ == "__main__":
    main()
