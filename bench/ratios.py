#!/usr/bin/env python3
"""Prints the results of benchmark runs as one table: what each case of ours takes, the aim where
it has one, and how many times as fast as each contender we are. Cases are named
operation/who/size; a counter "bytes" is shown instead of the time."""

import json
import sys

OURS = "ours"
SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def read(path):
    """The runs of a file by (operation, size), then by who; the medians where there are some."""
    with open(path, encoding="utf-8") as file:
        runs = [run for run in json.load(file)["benchmarks"] if "error_message" not in run]
    medians = [run for run in runs if run.get("aggregate_name") == "median"]
    cases = {}
    for run in medians or runs:
        operation, who, size = run["run_name"].split("/")[:3]
        cases.setdefault((operation, int(size)), {})[who] = run
    return cases


def amount(run):
    """Bytes, or seconds: of the case's own clock if it has one, else of the processor."""
    if "bytes" in run:
        return run["bytes"]
    clock = "real_time" if "manual_time" in run["run_name"] else "cpu_time"
    return run[clock] * SECONDS[run["time_unit"]]


def shown(value, is_bytes):
    if is_bytes:
        return f"{value / 1024:.0f} KiB"
    for unit, size in (("s", 1.0), ("ms", 1e-3), ("us", 1e-6)):
        if value >= size:
            return f"{value / size:.2f} {unit}"
    return f"{value * 1e9:.0f} ns"


def main(paths):
    print(f"{'operation':<32}{'size':>9}{'ours':>12}{'aim':>12}   times as fast as")
    for path in paths:
        for (operation, size), by in read(path).items():
            if OURS not in by:
                continue
            ours = by[OURS]
            is_bytes = "bytes" in ours
            aim, note = "", ""
            if "aim" in ours:
                aim = shown(ours["aim"], is_bytes)
                note = "   " if amount(ours) < ours["aim"] else " ! "
            others = "   ".join(
                f"{who} {amount(by[who]) / amount(ours):.2f}" for who in by if who != OURS
            )
            line = f"{operation:<32}{size or '':>9}{shown(amount(ours), is_bytes):>12}{aim:>12}"
            print(f"{line}{note or '   '}{others}".rstrip())


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit("usage: ratios.py <benchmark output in JSON>...")
    main(sys.argv[1:])
