#!/usr/bin/env python3
"""Seeds small faults into the sources, one at a time, and asks whether the tests notice.

A fault is a changed constant, a flipped comparison, a changed sign, a column moved by one, a
negated condition or a term left out. Each is built in a copy of the tree and the tests are run on
it. A fault that does not compile, or from which the compiler makes the same code as before, is drawn
again. Those that no test notices are listed. Some make no difference that anybody could see: they
are told in no_difference.txt, with the reason, and counted apart.

    tests/mutation/run.py [--count 200] [--seed 1] [--work FOLDER] [--only PATTERN]

The exit status is 0 when at least 95 percent of those that make a difference were noticed.
"""

import argparse
import contextlib
import hashlib
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
NO_DIFFERENCE = pathlib.Path(__file__).with_name("no_difference.txt")
PASS_MARK = 0.95
BUILD_LIMIT = 300  # seconds
TEST_LIMIT = 300

# Calculation, scanner, listings, writers and the text routines below them; no tables of data.
SOURCES = [
    "console_code/kva_utilities/*.cpp",
    "console_code/console/*.cpp",
    "console_code/posix/system_files.cpp",
    "foundations/XTAL_Small_Math.cpp",
    "foundations/XTAL_Unit_Cell.cpp",
    "foundations/XTAL_Space_Group_Closure.cpp",
    "foundations/XTAL_Space_Group_Operators.cpp",
    "foundations/XTAL_Space_Group_Hall.cpp",
    "foundations/XTAL_Space_Group_Symbols.cpp",
    "foundations/XTAL_Line_Fit.cpp",
    "cifcode/cif_code_new/*.cpp",
    "cifcode/cif_full/*.cpp",
    "common_code/*.cpp",
    "src/kva_crystal_structures/*.cpp",
    "src/kva_crystal_structures/measures/*.cpp",
    "src/facetor6_calc/*.cpp",
    "src/facetor6_list/*.cpp",
    "src/facetor6_measure/*.cpp",
    "src/facetor6_readfiles/*.cpp",
    "src/facetor6_writefiles/*.cpp",
    "src/facetor6_exportfiles/*.cpp",
    "src/facetor6_transform/*.cpp",
    "src/facetor6_atomedit/*.cpp",
    "src/facetor6_ptedit/*.cpp",
    "src/facetor6_console/*.cpp",
]


def constant_changed(match):
    text = match.group(0)
    if text.endswith("f"):
        return repr(float(text[:-1]) * 1.5 or 1.0) + "f"
    return str(int(text) + 1)


# (what is done, where, by what)
FAULTS = [
    ("comparison flipped", re.compile(r" (<=|>=|<|>) (?=[\w(-])"),
     lambda m: {" < ": " > ", " <= ": " >= ", " > ": " < ", " >= ": " <= "}[m.group(0)]),
    ("equality flipped", re.compile(r" (==|!=) "),
     lambda m: " != " if "==" in m.group(0) else " == "),
    ("sign changed", re.compile(r"(?<=[\w)\]]) ([+-]) (?=[\w(])"),
     lambda m: " - " if "+" in m.group(0) else " + "),
    ("factor inverted", re.compile(r"(?<=[\w)\]]) ([*/]) (?=[\w(])"),
     lambda m: " / " if "*" in m.group(0) else " * "),
    ("number changed", re.compile(r"(?<![\w.\"'])(\d+\.\d+f|\d+)(?![\w.\"'])"), constant_changed),
    ("condition negated", re.compile(r"\bif \((?!!)([^;()]*(?:\([^()]*\)[^;()]*)*)\) "),
     lambda m: f"if (!({m.group(1)})) "),
    ("and and or exchanged", re.compile(r" (&&|\|\|) "),
     lambda m: " || " if "&&" in m.group(0) else " && "),
    ("term left out", re.compile(r" \+= (?=[^;\"]*;)"), lambda m: " += 0 * "),
]


def code_lines(text):
    """Numbers of the lines that hold code, without includes, comments and texts to print."""
    for number, line in enumerate(text.splitlines()):
        bare = line.strip()
        if bare and not bare.startswith(("//", "#", "namespace", "using")):
            yield number, line


def without_difference():
    """Faults that nobody could see: source, line as it is, line with the fault."""
    faults = set()
    for entry in NO_DIFFERENCE.read_text().split("\n\n")[1:]:
        source, old, new, _reason = entry.strip().split("\n")
        faults.add((source, old.strip(), new.strip()))
    return faults


def draw(rng, files):
    """One fault: file, line number, new line, what was done."""
    while True:
        path = rng.choice(files)
        number, line = rng.choice(list(code_lines(path.read_text())))
        code = line.split("//")[0]
        what, pattern, change = rng.choice(FAULTS)
        places = [m for m in pattern.finditer(code) if code[: m.start()].count('"') % 2 == 0]
        if not places:
            continue
        place = rng.choice(places)
        return path, number, code[: place.start()] + change(place) + code[place.end():], what


def run(command, limit):
    """True when the command ends well within the limit."""
    started = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               start_new_session=True)
    try:
        return started.wait(limit) == 0
    except subprocess.TimeoutExpired:
        return False
    finally:
        # A program with a fault may go on for ever, also when the test that began it has ended.
        with contextlib.suppress(ProcessLookupError):
            os.killpg(started.pid, signal.SIGKILL)
        started.wait()


def end_programs(build):
    """Ends what still runs from the build, in whatever session."""
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            if (process / "exe").resolve().is_relative_to(build.resolve()):
                os.kill(int(process.name), signal.SIGKILL)


def prepare(work):
    """A copy of the tree with a shared library a floor, so that a fault is built fast."""
    tree = work / "tree"
    if tree.exists():
        shutil.rmtree(tree)
    shutil.copytree(ROOT, tree, ignore=shutil.ignore_patterns("build*", ".git"))
    build = work / "build"
    samples = os.environ.get("GEMMARA_SAMPLES") or next(ROOT.parent.glob("*/samples"), "")
    configured = run(["cmake", "-S", tree, "-B", build, "-DCMAKE_BUILD_TYPE=None",
                      "-DCMAKE_CXX_FLAGS=-O2 -D_GLIBCXX_ASSERTIONS", "-DBUILD_SHARED_LIBS=ON",
                      "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", "-DGEMMARA_WERROR=OFF",
                      f"-DGEMMARA_SAMPLES={samples}"], BUILD_LIMIT)
    built = configured and run(["cmake", "--build", build, "-j2"], 3600)
    if not built or not tests_pass(build):
        sys.exit("the sources as they are do not build or do not pass their tests")
    return tree, build


NOTHING = hashlib.sha256(b"").digest()


def code_of(path, tree, build):
    """Digest of what the compiler made of a source."""
    objects = sorted(build.glob(f"CMakeFiles/*.dir/{path.relative_to(tree)}.o"))
    return hashlib.sha256(b"".join(o.read_bytes() for o in objects)).digest()


# What no fault in the sources can change, and the judge of all tables, which is long.
NOT_ASKED = "^(packaging|require|floors|program__documents|program__tables)$"


def tests_pass(build):
    return run(["ctest", "--test-dir", build, "-j2", "--stop-on-failure", "-E", NOT_ASKED],
               TEST_LIMIT)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--work", type=pathlib.Path, default=pathlib.Path("/tmp/gemmara_mutation"))
    parser.add_argument("--only", default="", help="only sources whose path holds this text")
    arguments = parser.parse_args()
    arguments.work.mkdir(parents=True, exist_ok=True)
    tree, build = prepare(arguments.work)
    files = sorted(p for pattern in SOURCES for p in tree.glob(pattern)
                   if arguments.only in str(p) and "_Table" not in p.name)
    code = {path: code_of(path, tree, build) for path in files}
    files = [path for path in files if code[path] != NOTHING]  # what this machine compiles
    rng = random.Random(arguments.seed)
    noticed, unseen, survivors = 0, 0, []
    harmless = without_difference()
    start = time.time()
    while noticed + unseen + len(survivors) < arguments.count:
        path, number, line, what = draw(rng, files)
        original = path.read_text()
        lines = original.split("\n")
        old, lines[number] = lines[number], line
        path.write_text("\n".join(lines))
        built = run(["cmake", "--build", build, "-j2"], BUILD_LIMIT)
        if built and code_of(path, tree, build) != code[path]:
            source = str(path.relative_to(tree))
            place = f"{source}:{number + 1}: {what}\n    {old.strip()}\n    {line.strip()}"
            passed = tests_pass(build)
            end_programs(build)
            if passed and (source, old.strip(), line.strip()) in harmless:
                unseen += 1
            elif passed:
                survivors.append(place)
                print("NOT NOTICED", place, flush=True)
            else:
                noticed += 1
            done = noticed + unseen + len(survivors)
            if done % 20 == 0:
                print(f"{noticed} of {done} noticed so far, {unseen} without a difference", flush=True)
        path.write_text(original)
    total = noticed + len(survivors)
    print(f"{noticed} of {total} faults noticed, {100 * noticed / total:.1f} percent, and {unseen} "
          f"without a difference, in {time.time() - start:.0f} s")
    sys.exit(0 if noticed >= PASS_MARK * total else 1)


if __name__ == "__main__":
    main()
