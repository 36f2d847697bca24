#!/usr/bin/env python3
"""Start time, memory and idle cost of Orvane beside other desktop panels, as a Markdown table.

    scripts/setup build run display bench
    cmake --preset bench && cmake --build --preset bench
    scripts/virtual-desktop benchmarks/desktop/measure.py [--rounds 7] [--idle 60] [NAME...]

Every program gets a fresh home and a session bus of its own, which starts no services, and starts `rounds`
times; the first start warms the disk cache and is not counted. What it starts counts as its own. Whatever uses
Qt Quick draws with the same software renderer.
"""

import argparse
import ctypes
import os
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

BUILD = Path(__file__).resolve().parents[2] / "build" / "bench"
BUS = Path(__file__).with_name("bus.conf")  # starts no service: a desktop's own run anyway
ORVANE = str(BUILD / "Velmo" / "orvane")
PROGRAMS = {
    "orvane, at rest": [ORVANE],
    "orvane, panel open": [ORVANE],
    "empty Qt Quick window": [str(BUILD / "benchmarks" / "desktop" / "EmptyQuickWindow")],
    "copyq": ["copyq", "--start-server", "show"],
    "plank": ["plank"],
    "tint2": ["tint2"],
}
# Given to the running program before it is left alone.
COMMANDS = {
    "orvane, at rest": ("hide", "show"),
    "orvane, panel open": ("open",),
}
HELPERS = {"dbus-run-sessio", "dbus-daemon", "FirstFrame"}  # as the kernel cuts them
START_LIMIT = 20  # seconds
SETTLE = 8  # seconds from the first frame to the first idle reading


def read(path):
    """A file of /proc, or nothing for a process that has gone."""
    try:
        return Path(path).read_text()
    except (FileNotFoundError, ProcessLookupError):
        return ""


def descendants():
    parents = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit() and (stat := read(f"/proc/{entry}/stat")):
            name, fields = stat[stat.index("(") + 1 :].rsplit(")", 1)
            parents[int(entry)] = (int(fields.split()[1]), name, fields.split()[0])
    found = [os.getpid()]
    for pid in found:
        found += [child for child, (parent, _, _) in parents.items() if parent == pid]
    return {pid: parents[pid][1] for pid in found[1:] if parents[pid][2] != "Z"}


def measured():
    return [pid for pid, name in descendants().items() if name not in HELPERS]


def memory():
    """PSS in MiB."""
    total = 0
    for pid in measured():
        for line in read(f"/proc/{pid}/smaps_rollup").splitlines():
            if line.startswith("Pss:"):
                total += int(line.split()[1])
    return total / 1024


def activity():
    """CPU nanoseconds and voluntary context switches by thread."""
    threads = {}
    for pid in measured():
        for task in Path(f"/proc/{pid}/task").glob("*"):
            cpu = read(task / "schedstat").split()
            switches = [
                line.split()[1]
                for line in read(task / "status").splitlines()
                if line.startswith("voluntary_ctxt_switches")
            ]
            if cpu and switches:
                threads[task.name] = (int(cpu[0]), int(switches[0]))
    return threads


def idle(seconds):
    """CPU milliseconds and voluntary context switches over that time."""
    before = activity()
    time.sleep(seconds)
    after = activity()
    grown = [
        [now - then for now, then in zip(after[thread], before.get(thread, (0, 0)))] for thread in after
    ]
    return sum(cpu for cpu, _ in grown) / 1e6, sum(switches for _, switches in grown)


def stop_all():
    """Ends whatever descends from us: politely, then not."""
    for attempt in range(60):
        running = descendants()
        if not running:
            break
        for pid, name in running.items():
            if attempt == 0 and name in HELPERS:
                continue
            try:
                os.kill(pid, signal.SIGTERM if attempt < 40 else signal.SIGKILL)
            except ProcessLookupError:
                pass
        time.sleep(0.1)
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        pass


def start(command, home):
    """Milliseconds to the first frame; the program then runs."""
    environment = os.environ | {
        "HOME": home,
        "XDG_DATA_HOME": f"{home}/.local/share",
        "XDG_CONFIG_HOME": f"{home}/.config",
        "XDG_CACHE_HOME": f"{home}/.cache",
        "XDG_STATE_HOME": f"{home}/.local/state",
        "XDG_RUNTIME_DIR": f"{home}/run",
        "QT_QUICK_BACKEND": "software",
    }
    Path(home, "run").mkdir(mode=0o700, exist_ok=True)
    answer = Path(home, "first-frame")
    if not answer.exists():
        os.mkfifo(answer)
    first_frame = BUILD / "benchmarks" / "desktop" / "FirstFrame"
    subprocess.Popen(
        ["dbus-run-session", f"--config-file={BUS}", "--", first_frame, answer, *command],
        env=environment,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
    )
    signal.alarm(START_LIMIT)
    try:
        return float(answer.read_text())
    finally:
        signal.alarm(0)


def tell(program, word):
    """Runs a command of a program on the bus of the one that runs."""
    pid = next(pid for pid in measured() if os.readlink(f"/proc/{pid}/exe") == program)
    environment = dict(
        entry.split("=", 1) for entry in read(f"/proc/{pid}/environ").split("\0") if "=" in entry
    )
    subprocess.run([program, word], env=environment, check=True)


def measure(name, rounds, seconds):
    command = PROGRAMS[name]
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as home:
        if command == [ORVANE]:  # the first run opens the panel by itself
            settings = Path(home, ".local/share/Orvane/settings.json")
            settings.parent.mkdir(parents=True)
            settings.write_text('{"hasCompletedOnboarding": true}')
        starts = []
        for remaining in range(rounds, -1, -1):
            try:
                starts.append(start(command, home))
                if remaining:
                    time.sleep(0.5)
                else:
                    time.sleep(SETTLE / 2)
                    for word in COMMANDS.get(name, ()):
                        tell(command[0], word)
                    time.sleep(SETTLE / 2)
                    return statistics.median(starts[1:]), memory(), *idle(seconds)
            finally:
                stop_all()
                time.sleep(1)  # the compositor paints the bare desktop again


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("--idle", type=float, default=60, metavar="SECONDS")
    parser.add_argument("names", nargs="*", metavar="NAME", help=", ".join(PROGRAMS))
    options = parser.parse_args()
    if unknown := set(options.names) - set(PROGRAMS):
        parser.error(f"unknown: {', '.join(unknown)}")

    # Daemons stay our descendants when their parents leave them.
    PR_SET_CHILD_SUBREAPER = 36
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)

    def too_late(*_):
        raise TimeoutError("no first frame")

    signal.signal(signal.SIGALRM, too_late)
    print(f"| program | first frame, ms | memory, MiB PSS | CPU, ms in {options.idle:g} s idle | wake-ups |")
    print("|---|---:|---:|---:|---:|")
    for name in options.names or PROGRAMS:
        if not shutil.which(PROGRAMS[name][0]):
            print(f"| {name} | not installed | | | |")
            continue
        try:
            frame, pss, cpu, switches = measure(name, options.rounds, options.idle)
            print(f"| {name} | {frame:.0f} | {pss:.1f} | {cpu:.1f} | {switches} |", flush=True)
        except (TimeoutError, ValueError, subprocess.CalledProcessError) as error:
            print(f"| {name} | failed: {error} | | | |", flush=True)


if __name__ == "__main__":
    sys.exit(main())
