#!/usr/bin/env python3
"""Times frameslv on space floors on columns, as whole cold processes, and prints Markdown tables.

Builds what it needs with the preset `bench`, makes the inputs itself, and runs every program by
turns, so that other work on the machine meets all alike; medians count. With libsuitesparse-dev,
libopenblas-dev and libmetis-dev the same frames go through CHOLMOD too.

    bench/solver_speed.py               # 864 to 210016 members, some minutes
    bench/solver_speed.py --large       # up to 1002592 members; needs 6 GB of memory
    bench/solver_speed.py --cells 8 28  # these floors only
"""
import argparse
import math
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BIN = os.path.join(ROOT, "build-bench", "bin")
CELLS = [8, 16, 28, 33, 48, 96, 160]
LARGE = [250, 352]
EIGEN_UP_TO = 33  # cells: beyond, the library's column-by-column factorisation takes minutes
TARGETS = ["frameslv", "floor_input", "library_yardstick"]


class Run:
    def __init__(self, wall, cpu, peak, text):
        self.wall, self.cpu, self.peak, self.text = wall, cpu, peak, text


def run(folder, program, *options, **environment):
    start = time.perf_counter()
    process = subprocess.Popen([os.path.join(BIN, program), *options], cwd=folder,
                               stdout=subprocess.PIPE, env={**os.environ, **environment})
    text = process.stdout.read().decode()
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        return None
    return Run(time.perf_counter() - start, usage.ru_utime + usage.ru_stime,
               usage.ru_maxrss * 1024, text)


def programs(cells):
    yield "frameslv, 1 thread", ("frameslv", "--threads", "1"), {}
    yield "frameslv, 2 threads", ("frameslv", "--threads", "2"), {}
    for threads in "12":
        yield (f"CHOLMOD, {threads} thread" + "s" * (threads == "2"),
               ("library_yardstick", "cholmod"), {"OPENBLAS_NUM_THREADS": threads})
    if cells <= EIGEN_UP_TO:
        yield "Eigen", ("library_yardstick", "eigen"), {}


def measure(folder, cells):
    results = {}
    rounds = 21 if cells < 48 else 7 if cells < 160 else 3 if cells < 250 else 1
    for _ in range(rounds):
        for name, command, environment in programs(cells):
            one = run(folder, *command, **environment)
            if one is not None:
                results.setdefault(name, []).append(one)
    return results


def seconds(value):
    return f"{value * 1e3:.3g} ms" if value < 1 else f"{value:.3g} s"


def median(runs, field):
    return statistics.median(getattr(one, field) for one in runs)


def build():
    quiet = {"stdout": subprocess.DEVNULL, "cwd": ROOT, "check": True}
    subprocess.run(["cmake", "--preset", "bench"], **quiet)
    subprocess.run(["cmake", "--build", "--preset", "bench", "--target", *TARGETS], **quiet)


def speed_table(measured):
    names = list(dict.fromkeys(name for _, results in measured.values() for name in results))
    print("Wall time (processor time), medians:\n")
    print("| members | " + " | ".join(names) + " |")
    print("|---:|" + "---:|" * len(names))
    for members, (_, results) in measured.items():
        cells = [f"{seconds(median(results[n], 'wall'))} ({seconds(median(results[n], 'cpu'))})"
                 if n in results else "–" for n in names]
        print(f"| {members} | " + " | ".join(cells) + " |")


def scale_table(measured):
    print("\nMemory of frameslv, 2 threads, and growth (1: as the members):\n")
    print("| members | unknowns | factor | operations | peak | peak / factor | time grows by | "
          "memory by |")
    print("|---:|" + "---:|" * 7)
    before = None
    for members, (facts, results) in measured.items():
        unknowns, factor, operations = facts
        runs = results["frameslv, 2 threads"]
        peak, cpu = max(one.peak for one in runs), median(runs, "cpu")
        powers = ["–", "–"]
        if before is not None:
            ratio = math.log(members / before[0])
            powers = [f"{math.log(cpu / before[1]) / ratio:.2f}",
                      f"{math.log(peak / before[2]) / ratio:.2f}"]
        before = members, cpu, peak
        print(f"| {members} | {unknowns} | {factor:.1f} MB | {operations / 1e3:.3g} × 10⁹ | "
              f"{peak / 1e6:.0f} MB | {peak / 1e6 / factor:.2f} | {powers[0]} | {powers[1]} |")


def facts_of(text):
    numbers = [float(word) for word in re.findall(r"[0-9.]+", text)]
    _, members, _, _, unknowns, factor, operations = numbers[:7]
    return int(members), (int(unknowns), factor, operations)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--large", action="store_true", help="also half a million and a million")
    parser.add_argument("--cells", type=int, nargs="+", help="floors of n x n cells")
    arguments = parser.parse_args()
    build()
    measured = {}
    with tempfile.TemporaryDirectory() as folder:
        for cells in arguments.cells or CELLS + (LARGE if arguments.large else []):
            with open(os.path.join(folder, "FRAMESLV.IN"), "wb") as file:
                subprocess.run([os.path.join(BIN, "floor_input"), str(cells)], stdout=file,
                               check=True)
            check = run(folder, "frameslv", "--check")
            members, facts = facts_of(check.text)
            print(f"{members} members ...", file=sys.stderr)
            measured[members] = facts, measure(folder, cells)
    speed_table(measured)
    scale_table(measured)


if __name__ == "__main__":
    main()
