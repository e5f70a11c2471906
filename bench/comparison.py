"""What the comparisons with other packages share. Import it before NumPy: the library takes one thread, and so do they.

Both sides are timed in turn, round by round, and each round gives a ratio: other work on the machine then slows both.
The benchmarks count processor time, since they and their peers have one thread.
"""
import gc
import json
import os
import statistics
import subprocess
import sys
import time

for variable in ("OMP_NUM_THREADS", "OPENBLAS_NUM_THREADS"):
    os.environ.setdefault(variable, "1")

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))


def executable(path):
    """The path of a program of the release build; ends the script when it is not built."""
    program = os.path.join(ROOT, "build", "release", path)
    if not os.access(program, os.X_OK):
        sys.exit(f"{os.path.basename(sys.argv[0])}: {program} is not built; run scripts/build release")
    return program


def milliseconds(work, prepare=None, seconds=0.5):
    """The mean processor time of as many runs as the time takes, preparation included, and of three at least. What
    `prepare` gives for each run goes to `work`; the mean is of the work alone."""
    gc.collect()
    runs, spent, begin = 0, 0.0, time.process_time()
    while runs < 3 or time.process_time() - begin < seconds:
        arguments = () if prepare is None else (prepare(),)
        started = time.process_time()
        work(*arguments)
        spent += time.process_time() - started
        runs += 1
    return spent * 1e3 / runs


MILLISECONDS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}


def benchmarks(program, names=()):
    """What Google Benchmark tells of each, by name: times, here in milliseconds, and counters. Of all without names."""
    command = [program, "--benchmark_format=json"]
    if names:
        command.append(f"--benchmark_filter=^({'|'.join(names)})$")
    out = subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
    found = {b["name"]: b for b in json.loads(out)["benchmarks"]}
    for one in found.values():
        for clock in ("real_time", "cpu_time"):
            one[clock] *= MILLISECONDS[one["time_unit"]]
    if missing := set(names) - set(found):
        sys.exit(f"{program} has no benchmark {', '.join(sorted(missing))}")
    return found


def benchmark_milliseconds(program, names):
    """The processor times of benchmarks, by name."""
    return {name: one["cpu_time"] for name, one in benchmarks(program, names).items()}


# Told by a process that is itself small: what a process held before it became another program counts for its children.
PEAK = """
import os, subprocess, sys
child = subprocess.Popen(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
_, status, usage = os.wait4(child.pid, 0)
print(usage.ru_maxrss)
sys.exit(status != 0)
"""


def peak_megabytes(command):
    """The most memory that a process of that command held, its code and data included."""
    out = subprocess.run([sys.executable, "-I", "-S", "-c", PEAK, *command], check=True, stdout=subprocess.PIPE, text=True)
    return int(out.stdout) * 1024 / 1e6


def tell_row(row):
    """Hands a row to bench/compare, if that is who called."""
    if path := os.environ.get("MEGSET_COMPARISON_ROWS"):
        with open(path, "a") as rows:
            print(json.dumps(row), file=rows)


class Turns:
    """The times of rounds, by name, and the ratios of pairs."""

    def __init__(self):
        self.times = {}

    def add(self, name, milliseconds):
        self.times.setdefault(name, []).append(milliseconds)

    def add_all(self, named):
        for name, milliseconds in named.items():
            self.add(name, milliseconds)

    def tell_times(self):
        for name, times in self.times.items():
            print(f"{name:58}{statistics.median(times):10.3f} ms   [{min(times):.3f} to {max(times):.3f}]")

    def ratio(self, slow, fast):
        """Median, smallest and largest of what one takes over what the other takes in the same round."""
        ratios = [s / f for s, f in zip(self.times[slow], self.times[fast])]
        return statistics.median(ratios), min(ratios), max(ratios)

    def tell_target(self, what, theirs, ours, least, peak_mb=None):
        """Whether ours is at least so many times as fast."""
        median, low, high = self.ratio(theirs, ours)
        verdict = "met" if median >= least else "MISSED"
        print(f"{what:58}{median:10.2f} x    [{low:.2f} to {high:.2f}]   target {least:g}: {verdict}")
        tell_row({"what": what.strip(), "ratio": median, "low": low, "high": high, "target": least, "peak_MB": peak_mb,
                  "theirs_ms": statistics.median(self.times[theirs]), "ours_ms": statistics.median(self.times[ours])})
        return median >= least


def tell_load():
    print(f"load average {' '.join(f'{load:.2f}' for load in os.getloadavg())} on {os.cpu_count()} processors")


def blas_name():
    """Which BLAS NumPy runs on, once it is imported."""
    with open("/proc/self/maps") as maps:
        text = maps.read()
    return "OpenBLAS" if "libopenblas" in text else "the reference BLAS: python3-numpy runs without OpenBLAS"


def real_recording(required):
    """The real CTF recording that MEGSET_TEST_DATA names, or None. Where it is required, the script ends without it,
    which is no failure."""
    name = os.path.join("ctf", "testdata_ctf_short_discontinuous.ds")
    folder = os.environ.get("MEGSET_TEST_DATA", "")
    if folder and os.path.isdir(os.path.join(folder, name)):
        return os.path.join(folder, name)
    script = os.path.basename(sys.argv[0])
    print(f"{script}: MEGSET_TEST_DATA names no folder with {name}, what needs it is skipped")
    if required:
        sys.exit(0)
    return None
