#!/usr/bin/env python3
"""Compares table files with travel times computed by another program.

usage: compare_times.py FOLDER MODEL TIMES.csv   (MODEL: iasp91 or jeffreys_bullen)

The columns of TIMES.csv are phase,depth_km,distance_deg,time_s; the time is empty where the phase does not exist.
Points that are not nodes of a table are ignored. Prints the largest and median difference of each phase, the nodes
that differ by more than 0.02 s, and the nodes where only one side has a time.
"""
import csv
import statistics
import sys

IASP91_DEPTHS = [0, 25] + list(range(50, 801, 50))
JB_DEPTHS = [0, 33, 63, 127, 190, 254, 317, 380, 444, 507, 570, 634, 697, 761]
JB_PHASE_DEPTHS = [0, 25, 65, 130, 191, 256, 322, 387, 453, 518, 584, 650, 715]


def rows_of(path):
    with open(path) as file:
        return [[float(word) for word in line.split()] for line in file]


def tables(folder, model):
    """Returns times by (phase, depth, distance); negative where the phase does not exist."""
    times = {}

    def add(phase, depths, distances, rows):
        for distance, row in zip(distances, rows):
            times.update({(phase, depth, distance): time for depth, time in zip(depths, row)})

    if model == "iasp91":
        for phase in "p s pcp scs pcs scp pp ss sp ps sksac sksdf pkpab pkpdf pkikp lpp lss lps lsp".split():
            rows = rows_of(f"{folder}/iasp91_{phase}.txt")
            add(phase, IASP91_DEPTHS, [row[0] for row in rows], [row[1:] for row in rows])
    else:
        with open(f"{folder}/jbtables.txt") as file:
            lines = file.read().splitlines()
        distances = [0.5 * k for k in range(21)] + list(range(11, 110))
        for phase, first, count in (("p", 4, 118), ("s", 123, 120)):
            rows = [[float(word) for word in line.split()] for line in lines[first:first + count]]
            add(phase, JB_DEPTHS, distances, rows)
        for phase in "pcp scs pp ss".split():
            rows = rows_of(f"{folder}/{phase}.txt")
            add(phase, JB_PHASE_DEPTHS, [row[0] for row in rows], [row[1:] for row in rows])
    return times


def main(folder, model, path):
    ours = tables(folder, model)
    differences, exceeding, ours_only, theirs_only = {}, [], {}, {}
    with open(path) as file:
        for row in csv.DictReader(line for line in file if not line.startswith("#")):
            key = (row["phase"], float(row["depth_km"]), float(row["distance_deg"]))
            if key not in ours:
                continue
            time, other = ours[key], row["time_s"]
            if time < 0 or not other:
                if time >= 0:
                    ours_only.setdefault(key[:2], []).append(key[2])
                elif other:
                    theirs_only.setdefault(key[:2], []).append(key[2])
                continue
            difference = time - float(other)
            differences.setdefault(key[0], []).append(abs(difference))
            if abs(difference) > 0.02:
                exceeding.append((key, time, other, difference))
    print("phase  nodes  largest median")
    for phase, found in differences.items():
        print(f"{phase:6} {len(found):5}  {max(found):.4f}  {statistics.median(found):.4f}")
    for key, time, other, difference in exceeding:
        print("differs:", *key, time, other, f"{difference:+.3f}")
    for name, found in (("only here:", ours_only), ("only there:", theirs_only)):
        for key, distances in found.items():
            print(name, *key, distances)


if __name__ == "__main__":
    main(*sys.argv[1:4])
