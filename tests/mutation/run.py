#!/usr/bin/env python3
"""Seeds small faults into the sources, one at a time, and asks whether the tests notice.

A fault is a changed constant, a flipped comparison, a changed sign, a column moved by one, a
negated condition or a term left out. Its kind is drawn first, then its place among all places of
that kind in the product; no place is drawn twice. Each is built in a copy of the tree and the tests
are run on it, cheap ones first, until one fails. A fault that does not compile, or from which the
compiler makes the same code as before, is drawn again. When all are drawn, those that are still
unnoticed are shown to the tests that take long. Those that no test notices are listed. Some make no
difference that anybody could see: they are told in no_difference.txt, with the reason, and counted
apart.

    tests/mutation/run.py [--count 200] [--seed 1] [--work FOLDER] [--only PATTERN]

Results are kept in WORK/results-SEED.txt, so that a run that was ended goes on where it was, and
one with a larger count adds to it. The exit status is 0 when at least 95 percent of those that make
a difference were noticed.
"""

import argparse
import contextlib
import hashlib
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
NO_DIFFERENCE = pathlib.Path(__file__).with_name("no_difference.txt")
PASS_MARK = 0.95
BUILD_LIMIT = 600  # seconds
TEST_LIMIT = 900  # of all tests on the sources as they are
SLOWER = 4  # how many times their usual time tests may take, and a minute, with a fault
CPU_LIMIT = 20  # seconds of processor time of one process of a test that is not long
LONG_CPU_LIMIT = 200
MEMORY_LIMIT = 4 << 30  # bytes of one process
LONG = 4.0  # seconds; tests that take longer are asked last
DEPENDENTS = 25  # a header that more sources include takes too long to build

# The folders of the floors. Tables of data, which have tests of their own properties, are left out,
# and what this machine does not compile.
FOLDERS = ["console_code", "foundations", "cifcode", "common_code", "src"]


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


def faults_in(files):
    """All faults that can be seeded, by kind: file, line number, new line, what was done."""
    faults = {what: [] for what, _, _ in FAULTS}
    for path in files:
        for number, line in code_lines(path.read_text()):
            code = line.split("//")[0]
            for what, pattern, change in FAULTS:
                for place in pattern.finditer(code):
                    if code[: place.start()].count('"') % 2 == 0:
                        new = code[: place.start()] + change(place) + code[place.end():]
                        faults[what].append((path, number, new, what))
    return faults


def draw(rng, faults):
    """One fault after the other, in random order, each kind as often as the others."""
    left = {what: rng.sample(places, len(places)) for what, places in faults.items()}
    while any(left.values()):
        what = rng.choice(sorted(what for what, places in left.items() if places))
        yield left[what].pop()


def limit_process(seconds):
    """A program with a fault may go on for ever or take all memory."""
    resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run(command, limit, cpu_limit=None):
    """True when the command ends well within the limit."""
    before = (lambda: limit_process(cpu_limit)) if cpu_limit else None
    started = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               start_new_session=True, preexec_fn=before)
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
    """Ends what still runs from the build, in whatever session, and a ctest that a run of this
    script which was killed has left."""
    processes = list(pathlib.Path("/proc").glob("[0-9]*"))
    for process in processes:
        with contextlib.suppress(OSError):
            words = (process / "cmdline").read_bytes().split(b"\0")
            if words[0] == b"ctest" and os.fsencode(build) in words:
                os.kill(int(process.name), signal.SIGKILL)
    for process in processes:
        with contextlib.suppress(OSError):
            if (process / "exe").resolve().is_relative_to(build.resolve()):
                os.kill(int(process.name), signal.SIGKILL)


def copy_tree(source, target):
    """Copies what differs and leaves the rest, so that a later run builds little."""
    names = {p.relative_to(source) for folder in source.iterdir()
             if not folder.name.startswith(("build", ".git"))
             for p in ([folder] if folder.is_file() else folder.rglob("*")) if p.is_file()}
    for name in names:
        new = target / name
        if not new.exists() or new.read_bytes() != (source / name).read_bytes():
            new.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source / name, new)
    for old in [p for p in target.rglob("*") if p.is_file()]:
        if old.relative_to(target) not in names:
            old.unlink()


def prepare(work):
    """A copy of the tree with a shared library a floor, so that a fault is built fast."""
    tree, build = work / "tree", work / "build"
    end_programs(build)
    copy_tree(ROOT, tree)
    samples = os.environ.get("GEMMARA_SAMPLES") or next(ROOT.parent.glob("*/samples"), "")
    options = ["-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1 -D_GLIBCXX_ASSERTIONS",
               "-DBUILD_SHARED_LIBS=ON", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
               "-DGEMMARA_WERROR=OFF", f"-DGEMMARA_SAMPLES={samples}"]
    if shutil.which("ninja"):  # finds out fast that there is nothing else to build
        options += ["-G", "Ninja"]
    if shutil.which("ccache"):
        options += ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"]
    configured = run(["cmake", "-S", tree, "-B", build, *options], BUILD_LIMIT)
    if not configured or not run(["cmake", "--build", build, "-j2"], 3600):
        sys.exit("the sources as they are do not build")
    passed, times = work / "passed.txt", work / "times.txt"  # the tree that passed its tests last
    now = digest_of(tree)
    if not passed.exists() or passed.read_text() != now:
        costs = build / "Testing/Temporary/CTestCostData.txt"  # mean times of all runs so far
        costs.unlink(missing_ok=True)
        if not run(ctest(build, "."), TEST_LIMIT, LONG_CPU_LIMIT):
            sys.exit("the sources as they are do not pass their tests")
        shutil.copy(costs, times)
        passed.write_text(now)
    return tree, build, times_in(times)


def digest_of(tree):
    """What there is to build and to read in a tree."""
    digest = hashlib.sha256()
    for path in sorted(p for p in tree.rglob("*") if p.is_file()):
        if "mutation" not in path.parts[len(tree.parts):]:
            digest.update(str(path.relative_to(tree)).encode() + path.read_bytes())
    return digest.hexdigest()


NOTHING = hashlib.sha256(b"").digest()


def code_of(path, tree, build):
    """Digest of what the compiler made of a source."""
    objects = sorted(build.glob(f"CMakeFiles/*.dir/{path.relative_to(tree)}.o"))
    return hashlib.sha256(b"".join(o.read_bytes() for o in objects)).digest()


def floor_of(path, tree, build):
    """The library, or the program, that a source belongs to."""
    for made in build.glob(f"CMakeFiles/*.dir/{path.relative_to(tree)}.o"):
        return made.relative_to(build).parts[1].removesuffix(".dir")
    beside = path.with_suffix(".cpp")  # a header
    if beside != path and beside.exists():
        return floor_of(beside, tree, build)
    for other in sorted(path.parent.glob("*.cpp")):
        if floor := floor_of(other, tree, build):
            return floor
    return ""


# What no fault in the sources can change.
NOT_ASKED = "^(packaging|require|floors|program__documents)$"


def ctest(build, names):
    """A test that fails is asked again: some look at the clock, and the machine may be busy."""
    return ["ctest", "--test-dir", build, "-j2", "--stop-on-failure", "--repeat", "until-pass:2",
            "-R", names, "-E", NOT_ASKED]


def times_in(path):
    """Seconds that each test took on the sources as they are."""
    times = {}
    for line in path.read_text().splitlines():
        if len(line.split()) == 3:
            name, _runs, seconds = line.split()
            times[name] = float(seconds)
    return times


def short_stages(floor, times):
    """Names of tests in the order in which they are asked: those of the floor, whole dialogues, all
    others; for a command those that have its name first. Those that take long are left out."""
    short = {name for name, seconds in times.items() if seconds <= LONG}
    own = {name for name in short if name.startswith(f"{floor}__")}
    named = {name for name in times if f"__{floor.removeprefix('facetor6_')}" in name}
    dialogues = {"program__transcripts"}
    commands = {name for name in short if name.startswith("facetor6_commands__")}
    order = [own, dialogues] if own else [dialogues, named, commands]
    stages, asked = [], set()
    for names in [*order, short]:
        stages.append(names - asked)
        asked |= names
    return [names for names in stages if names]


def long_stages(times):
    """The tests that take long, one by one, the shorter first."""
    long = [name for name, seconds in times.items() if seconds > LONG]
    return [{name} for name in sorted(long, key=times.get)]


def noticed_by(build, stages, times, cpu_limit):
    """The tests that fail; blank: none does."""
    failures = build / "Testing/Temporary/LastTestsFailed.log"
    for names in stages:
        failures.unlink(missing_ok=True)
        limit = 60 + SLOWER * sum(times[name] for name in names)
        passed = run(ctest(build, f"^({'|'.join(sorted(names))})$"), limit, cpu_limit)
        end_programs(build)
        if not passed:
            told = failures.read_text().split() if failures.exists() else []
            return " ".join(line.split(":")[-1] for line in told) or "the limit of time"
    return ""


def dependents(header, tree, build):
    """How many sources of the product include a header, through others as well."""
    name = str(header.relative_to(tree))
    text = subprocess.run(["ninja", "-C", build, "-t", "deps"], capture_output=True, text=True,
                          check=False).stdout
    return sum(name in entry for entry in text.split("\n\n"))


def sources(tree, build, only):
    """Sources and headers of the product that this machine compiles, but not tables of data and
    not headers that nearly all include."""
    found = []
    for folder in FOLDERS:
        for path in sorted((tree / folder).rglob("*")):
            if only not in str(path.relative_to(tree)) or "_Table" in path.name:
                continue
            if path.suffix == ".cpp" and code_of(path, tree, build) != NOTHING:
                found.append(path)
            elif path.suffix == ".h" and 0 < dependents(path, tree, build) <= DEPENDENTS:
                found.append(path)
    return found


class Results:
    """What became of each fault, kept in a file so that a run can go on where it was ended."""

    def __init__(self, path):
        self.path, self.known = path, {}
        if path.exists():
            for entry in path.read_text().split("\n\n"):
                if entry:
                    result, place = entry.split("\n", 1)
                    self.known[place] = result

    def keep(self, place, result):
        self.known[place] = result
        with self.path.open("a") as results:
            results.write(f"{result}\n{place}\n\n")


class Fault:
    """A fault and its place; seeded within a with statement."""

    def __init__(self, tree, path, number, line, what):
        self.path = path
        self.original = path.read_text()
        lines = self.original.split("\n")
        old, lines[number] = lines[number], line
        self.changed = "\n".join(lines)
        self.key = (str(path.relative_to(tree)), old.strip(), line.strip())
        self.place = f"{self.key[0]}:{number + 1}: {what}\n    {old.strip()}\n    {line.strip()}"

    def __enter__(self):
        self.path.write_text(self.changed)

    def __exit__(self, *_):
        self.path.write_text(self.original)


NO_CODE = "same code or none"
UNNOTICED = "not noticed by short tests"
NOT_NOTICED = "not noticed"


def short_result(fault, tree, build, code, times):
    with fault:
        if not run(["cmake", "--build", build, "-j2"], BUILD_LIMIT):
            return NO_CODE
        if fault.path.suffix == ".cpp" and code_of(fault.path, tree, build) == code[fault.path]:
            return NO_CODE
        stages = short_stages(floor_of(fault.path, tree, build), times)
        tests = noticed_by(build, stages, times, CPU_LIMIT)
        return f"noticed by {tests}" if tests else UNNOTICED


def long_result(fault, build, times):
    with fault:
        run(["cmake", "--build", build, "-j2"], BUILD_LIMIT)
        tests = noticed_by(build, long_stages(times), times, LONG_CPU_LIMIT)
        return f"noticed by {tests}" if tests else NOT_NOTICED


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--work", type=pathlib.Path, default=pathlib.Path("/tmp/gemmara_mutation"))
    parser.add_argument("--only", default="", help="only sources whose path holds this text")
    arguments = parser.parse_args()
    os.environ["GTEST_FAIL_FAST"] = "1"  # the first test that fails is enough
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # as Ctrl-C: the fault is taken out
    arguments.work.mkdir(parents=True, exist_ok=True)
    start = time.time()
    tree, build, times = prepare(arguments.work)
    files = sources(tree, build, arguments.only)
    code = {path: code_of(path, tree, build) for path in files}
    name = f"results-{arguments.seed}{arguments.only.replace('/', '_')}.txt"
    results = Results(arguments.work / name)
    harmless = without_difference()
    noticed, unseen, left = 0, 0, []
    for drawn in draw(random.Random(arguments.seed), faults_in(files)):
        done = noticed + unseen + len(left)
        if done >= arguments.count:
            break
        fault = Fault(tree, *drawn)
        if fault.place not in results.known:
            results.keep(fault.place, short_result(fault, tree, build, code, times))
        result = results.known[fault.place]
        if result == NO_CODE:
            continue
        if result.startswith("noticed"):
            noticed += 1
        elif fault.key in harmless:
            unseen += 1
        else:
            left.append(fault)
            print("UNNOTICED SO FAR", fault.place, flush=True)
        if done % 20 == 19:
            print(f"{noticed} of {done + 1} noticed so far, {unseen} without a difference, "
                  f"{time.time() - start:.0f} s", flush=True)
    survivors = 0
    for fault in left:
        if results.known[fault.place] == UNNOTICED:
            results.keep(fault.place, long_result(fault, build, times))
        if results.known[fault.place] == NOT_NOTICED:
            survivors += 1
            print("NOT NOTICED", fault.place, flush=True)
        else:
            noticed += 1
    total = noticed + survivors
    print(f"{noticed} of {total} faults noticed, {100 * noticed / max(total, 1):.1f} percent, and "
          f"{unseen} without a difference, in {time.time() - start:.0f} s")
    sys.exit(0 if noticed >= PASS_MARK * total else 1)


if __name__ == "__main__":
    main()
