"""What bench/run measures with, and the table it prints."""

import json
import os
import re
import subprocess
import tempfile


def cpu_of(command) -> float:
    """User and system time of a whole process in milliseconds."""
    with open(os.devnull, "w") as nothing:
        process = subprocess.Popen([str(part) for part in command], stdout=nothing, stderr=nothing)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(f"{command[0]} failed")
    return 1000 * (usage.ru_utime + usage.ru_stime)


def least_cpu(command, times: int = 3) -> float:
    return min(cpu_of(command) for _ in range(times))


def output_of(command) -> str:
    return subprocess.run([str(part) for part in command], check=True, text=True, timeout=300,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


def keys(command) -> dict[str, float]:
    """The numbers that one of our programs prints as key=value."""
    return {key: float(value) for key, value in re.findall(r"^(\w+)=(\S+)$", output_of(command), re.M)}


def benchmarks(program) -> dict[str, float]:
    """Least CPU time of each benchmark in milliseconds."""
    report = json.loads(output_of([program, "--benchmark_format=json", "--benchmark_repetitions=3",
                                   "--benchmark_min_time=0.1"]))
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0}
    times: dict[str, float] = {}
    for run in report["benchmarks"]:
        if run.get("run_type") == "iteration":
            taken = run["cpu_time"] * scale[run["time_unit"]]
            times[run["run_name"]] = min(taken, times.get(run["run_name"], taken))
    return times


def instructions(command) -> int:
    """Instructions of a whole process, all threads, counted by callgrind."""
    with tempfile.TemporaryDirectory() as folder:
        counted = subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/out",
                                  *(str(part) for part in command)],
                                 check=True, text=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    return int(re.search(r"Collected : (\d+)", counted.stderr)[1])


def readable(number: float) -> str:
    if number == int(number) and abs(number) < 1e6:
        return str(int(number))
    return f"{number:.0f}" if abs(number) >= 100 else f"{number:.3g}"


class Table:
    """Rows of what was measured, against what, and whether that reaches what is wanted."""

    HEAD = ("what", "compared with", "ours", "theirs", "ratio", "reach", "reached")

    def __init__(self):
        self.rows = []

    def add(self, what, versus, ours, theirs="", ratio="", reach="", reached=None):
        self.rows.append((what, versus, ours, theirs, ratio, reach, {None: "", True: "yes", False: "no"}[reached]))

    def ratio(self, what, versus, ours, theirs, unit, reach):
        """Less is better: `reach` is the largest part of theirs that ours may take, None for any."""
        ratio = ours / theirs
        wanted = ("", None) if reach is None else (f"<= {reach:.3g}", ratio <= reach)
        self.add(what, versus, f"{readable(ours)} {unit}", readable(theirs), f"{ratio:.3f}", *wanted)

    def times(self, what, versus, ours, theirs, unit, reach):
        """More is better: ours is to be at least `reach` times theirs."""
        ratio = ours / theirs
        self.add(what, versus, f"{readable(ours)} {unit}", readable(theirs), f"{ratio:.1f} x", f">= {reach} x",
                 ratio >= reach)

    def at_most(self, what, versus, ours, unit, most):
        self.add(what, versus, f"{readable(ours)} {unit}".strip(), reach=f"<= {readable(most)}", reached=ours <= most)

    def at_least(self, what, versus, ours, unit, least):
        self.add(what, versus, f"{readable(ours)} {unit}".strip(), reach=f">= {readable(least)}", reached=ours >= least)

    def plain(self, what, ours, unit):
        self.add(what, "", f"{readable(ours)} {unit}".strip())

    def __str__(self):
        rows = [self.HEAD, *self.rows]
        widths = [max(len(row[column]) for row in rows) for column in range(len(self.HEAD))]
        lines = ["| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |" for row in rows]
        lines.insert(1, "|" + "|".join("-" * (width + 2) for width in widths) + "|")
        return "\n".join(lines)
