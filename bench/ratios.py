#!/usr/bin/env python3
"""Prints the results of a benchmark run as a table of ratios: how many times as fast as each
contender we are. Cases are named operation/who/size."""

import json
import sys

OURS = "ours"


def main(path):
    with open(path, encoding="utf-8") as file:
        runs = [run for run in json.load(file)["benchmarks"] if "error_message" not in run]
    medians = [run for run in runs if run.get("aggregate_name") == "median"]
    times = {}
    for run in medians or runs:
        operation, who, size = run["run_name"].split("/")[:3]
        times.setdefault((operation, int(size)), {})[who] = run["cpu_time"]
    print(f"{'operation':<16}{'size':>9}{'ours':>14}   times as fast as")
    for (operation, size), by in times.items():
        if OURS not in by:
            continue
        others = "   ".join(
            f"{who} {by[who] / by[OURS]:.2f}" for who in by if who != OURS
        )
        print(f"{operation:<16}{size:>9}{by[OURS]:>11.0f} ns   {others}")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: ratios.py <benchmark output in JSON>")
    main(sys.argv[1])
