#!/usr/bin/env python3
"""Prints the measurements as tables: the cases, whole sessions, and the comparisons.

tables.py BUILD, where BUILD holds the programs and cases.json. All times are CPU times.
"""
import json
import os
import pathlib
import subprocess
import sys

CCTBX_PYTHON = "/usr/bin/python3"  # Debian's packages belong to it
REPEATS = 5

READ_ONLY = "READ cif {file}\nY\nEXIT\n"
VALENCES = ("READ cif {file}\nY\nCALC polyhedra\n0.01,{dmax}\n0\nCALC valences\nN\n0\nEXIT\n")
EVERYTHING = ("READ cif {file}\nY\nCALC polyhedra\n0.01,{dmax}\n0\nTABLE bond lengths\nALL\n\n"
              "TABLE angles\nALL\n\nEXIT\n")
RADII = {"garnet": 2.5, "pyroxene": 2.8}


def row(*cells):
    print("%-18s %-10s %7s" % cells[:3] + "".join("%12s" % cell for cell in cells[3:]))


# ---- cases ----

def show_cases(build):
    print("Cases, CPU time\n")
    row("case", "series", "blocks", "us/block", "blocks/s", "MB/s", "values/s", "KB/block")
    for case in json.loads((build / "cases.json").read_text())["benchmarks"]:
        name, *arguments = case["name"].replace("/process_time", "").split("/")
        blocks = arguments[1] if len(arguments) > 1 else ""
        rate = case["items_per_second"]
        optional = [("bytes_per_second", 1e-6, "%.1f"), ("values", 1, "%.0f"),
                    ("bytes_per_block", 1e-3, "%.1f")]
        row(name, case["label"], blocks, "%.2f" % (1e6 / rate), "%.0f" % rate,
            *(form % (case[key] * scale) if key in case else "" for key, scale, form in optional))


# ---- sessions ----

def series(build, kind, blocks):
    path = build / ("%s-%d.cif" % (kind, blocks))
    if not path.exists():
        program = build / "bench/gemmara_series"
        with path.open("w") as file:
            subprocess.run([program, kind, str(blocks)], stdout=file, check=True)
    return path


def session(build, macro):
    """Shortest CPU seconds of some runs, and the peak memory in KB."""
    (build / "session.mcr").write_text(macro)
    times, peak = [], 0
    for _ in range(REPEATS):
        with (build / "said.txt").open("w") as said:
            process = subprocess.Popen([build.resolve() / "gemmara", "./session.mcr"], cwd=build,
                                       stdin=subprocess.DEVNULL, stdout=said,
                                       env=dict(os.environ, LOCALAPPDATA=""))
            _, status, usage = os.wait4(process.pid, 0)
        if status != 0:
            sys.exit("the session failed: " + macro)
        times.append(usage.ru_utime + usage.ru_stime)
        peak = max(peak, usage.ru_maxrss)
    return min(times), peak


def show_sessions(build):
    start, _ = session(build, "EXIT\n")
    print("\nWhole sessions into a file; start and end of the program: %.1f ms\n" % (1000 * start))
    row("session", "series", "blocks", "seconds", "us/block", "peak MB", "KB/block")
    for title, macro in (("READ", READ_ONLY), ("READ CALC VALENCE", VALENCES),
                         ("READ CALC TABLE", EVERYTHING)):
        for kind in RADII:
            fewer = None
            for blocks in (100, 1000, 10000):
                path = series(build, kind, blocks)
                text = macro.format(file=path.name, dmax=RADII[kind])
                seconds, peak = session(build, text)
                # What fewer blocks took is common to all sessions.
                more = "" if fewer is None else "%.1f" % ((peak - fewer[1]) / (blocks - fewer[0]))
                row(title, kind, blocks, "%.3f" % seconds,
                    "%.2f" % (1e6 * (seconds - start) / blocks), "%.1f" % (peak / 1024), more)
                fewer = (blocks, peak)


# ---- comparisons ----

def said_by(command):
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    return result.stdout.strip() if result.returncode == 0 else "not measured"


def show_comparisons(build):
    print("\nReaders in turns, and another program, on the same files, CPU time (share of gemmi's)\n")
    readers = build / "bench/gemmara_readers"
    for kind, blocks in (("pyroxene", 1000), ("pyroxene", 10000), ("garnet", 1000),
                         ("triclinic", 100), ("zeolite", 30)):
        answer = said_by([readers, series(build, kind, blocks), str(4 * REPEATS)]) \
            if readers.exists() else "not built"
        print("%-10s %s" % (kind, answer))
    script = pathlib.Path(__file__).with_name("cctbx_geometry.py")
    for kind, dmax in RADII.items():
        answer = said_by([CCTBX_PYTHON, script, series(build, kind, 100), str(dmax)])
        print("cctbx measures %-10s %s" % (kind, answer))


if __name__ == "__main__":
    where = pathlib.Path(sys.argv[1])
    show_cases(where)
    show_sessions(where)
    show_comparisons(where)
