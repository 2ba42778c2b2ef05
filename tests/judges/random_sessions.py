#!/usr/bin/env python3
# Sessions at random over real files: random_sessions.py PROGRAM COUNT SEED FILE_OR_FOLDER...
# COUNT may be FIRST:LAST; one session alone, as 17:17, is shown with its find. A session is made of
# the seed, its number and the files, and plays READ, CHECK, OMIT, USE, SORT, SET, SHOW, CALC, LIST,
# TABLE, TRANSFORM, ATOMEDIT, PTEDIT, EXPORT, WRITE, MEASURE, CSV, GRAPH, FIT, MACRO and CLEAR, on
# their lines and by their menus, with answers that are refused. Beside an exit status of 0 and no
# word on standard error this must hold:
#   replay   a recorded session holds what was typed, and replayed it says and writes the same, with
#            its file as a word of MACRO as well
#   clear    behind CLEAR a session says and writes what a fresh program does
#   written  what WRITE writes has the cells of TABLE, and of a single block all sites with their
#            factors, and lengths, angles and valences of CSV as well as esds allow; it is read alike by
#            both readers, or READ cif tells that it is not; written and read again, all tables and the
#            next file are the same
#   fields   every row of a table has the fields of its table, and no more than its head
#   sheets   CSV and TABLE agree after rounding, and the long sheet with the wide ones
# Prints finds, then a line with the counts: sessions runs tables rows cells finds.
#
# random_sessions.py --write FOLDER PROGRAM COUNT SEED FILE_OR_FOLDER... plays nothing, but writes
# sessions for tests/fuzz into FOLDER/sessions, each behind a line with the names of its files, and
# copies of these into FOLDER/files.
import csv
import difflib
import math
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

from table_fields import tables_of

SECONDS = 60  # that a run may take
LARGEST = 60000  # bytes of a file that is played with
PROMPT = "G_MARA-6.1>"
ELEMENTS = ["O", "Si", "Fe", "Mg", "Al", "Ca", "Na", "Ti"]
ATOM_REPORTS = ["bond lengths", "angles", "edges"]
LIST_REPORTS = ATOM_REPORTS + ["orbix", "rigid", "displace", "valences of"]
MOST_SITES = 40  # of a file that is played with
# A macro with words, which lies beside every session.
MACRO = "TABLE $1\n$2\n\n\nMEASURE m6 = $3\nTABLE measures\nCSV $1 $2 $4\nFIT measures m6 P\n\n"


# ---- the program ----


class Run:
    def __init__(self, folder, lines, arguments=()):
        environment = dict(os.environ, LOCALAPPDATA="", HOME=folder, PATH="")
        self.typed = "\n".join(lines) + "\n"
        try:
            run = subprocess.run([program, *arguments], cwd=folder, input=self.typed.encode(),
                                 capture_output=True, env=environment, timeout=SECONDS)
            self.status, self.error = run.returncode, run.stderr.decode("utf-8", "replace")
            self.said = run.stdout.decode("utf-8", "replace")
        except subprocess.TimeoutExpired:
            self.status, self.error, self.said = None, f"no end in {SECONDS} s", ""

    def find(self):
        if self.status == 0 and not self.error:
            return None
        return f"status {self.status}: {self.error[:3000]}"


class Folder:
    def __init__(self, parent, name, paths):
        self.path = os.path.join(parent, name)
        os.mkdir(self.path)
        for name, path in paths.items():
            os.symlink(path, os.path.join(self.path, name))
        with open(os.path.join(self.path, "words.mcr"), "w") as file:
            file.write(MACRO)
        self.given = set(paths) | {"words.mcr"}

    def text(self, name):
        path = os.path.join(self.path, name)
        if not os.path.exists(path):
            return ""
        with open(path, encoding="utf-8", errors="surrogateescape", newline="") as file:
            return file.read()

    # What the session has written, without dates.
    def written(self, leave_out=()):
        names = sorted(set(os.listdir(self.path)) - self.given - set(leave_out))
        return {name: undated(self.text(name)) for name in names}


def undated(text):
    return re.sub(r"(_audit_creation_date|created by Gemmara on|date and time:).*", r"\1", text)


# Two lines are said only while a macro is recorded.
def unrecorded(text):
    return re.sub(r" \*\*\*\*\*(Selecting a filename|For recording enter).*\n", "", text)


def said_in(folder):
    log = folder.text("said.log")
    return unrecorded(undated(log[log.find(PROMPT + "READ"):log.rfind(PROMPT + "END")]))


def difference(before, after):
    lines = difflib.unified_diff(before.split("\n"), after.split("\n"), lineterm="", n=1)
    return "\n".join(list(lines)[:24])


# ---- what is known of a file ----


class Source:
    def __init__(self, path):
        self.path = path
        self.kind = "out" if path.lower().endswith(".out") else "cif"
        with tempfile.TemporaryDirectory() as parent:
            folder = Folder(parent, "r", {"f." + self.kind: path})
            run = Run(folder.path, read_lines("full" if self.kind == "cif" else "Crystal17",
                                              ["f." + self.kind]) + ["LIST site names", "EXIT"])
        said = run.said[run.said.rfind(PROMPT, 0, run.said.rfind(PROMPT)):]
        self.labels = [label.strip("*!") for line in re.findall(r"Site name: (.*)", said)[:1]
                       for label in line.split()]
        self.blocks = len(re.findall("Site name:", said))


def read_lines(reader, names):
    answers = ["225", "", "Y", ""] if reader == "Crystal17" else ["Y", ""]
    return [f"READ {reader} {' '.join(names)}"] + answers


# ---- sessions ----


class Session:
    # files: what the names of its files begin with. macros: whether it starts some; one that is
    # recorded would end there.
    def __init__(self, dice, sources, files="a", macros=True):
        self.dice, self.sources, self.files, self.count = dice, sources, files, 0
        self.macros = macros
        self.labels = [label for source in sources.values() for label in source.labels] or ["O"]
        self.blocks = sum(source.blocks for source in sources.values())
        self.measures = []

    def new_name(self):
        self.count += 1
        return f"{self.files}{self.count}"

    def site(self):
        return self.dice.choice(["ALL", "ALL", self.dice.choice(self.labels[:8]),
                                 self.dice.choice(ELEMENTS)])

    def some_blocks(self):
        first = self.dice.randint(1, max(self.blocks, 1))
        return self.dice.choice([str(first), f"{first} -{first + self.dice.randint(0, 3)}", "all"])

    # A file name, sometimes behind one that is there already or is refused.
    def file_name(self, extension):
        name = f"{self.new_name()}{extension}"
        refused = self.dice.choice(["none/x" + extension, "x.mcr.log", "y" * 200])
        same = [f"{self.files}same{extension}", self.dice.choice("YN"), name, ""]
        return self.dice.choice([[name]] * 6 + [[refused, name]] + 2 * [same])

    def cifs(self):
        return [name for name, source in self.sources.items() if source.kind == "cif"]

    def read(self):
        cifs = self.cifs()
        outs = [name for name, source in self.sources.items() if source.kind == "out"]
        if outs and (not cifs or self.dice.random() < 0.3):
            return read_lines("Crystal17", [self.dice.choice(outs)])
        some = self.dice.choice([cifs, ["f*.cif"], [self.dice.choice(cifs)], ["f{P}.cif"],
                                 ["f{T}.cif"], ["f[1-2].cif"]])
        return read_lines(self.dice.choice(["cif", "full", "full"]), some)

    # READ by its menu, with a name that is not there, and with the blocks refused.
    def read_asked(self):
        cif = self.dice.choice(self.cifs() or ["none.cif"])
        lines = [["READ", self.dice.choice("12"), cif, "Y"], ["READ cif none.cif", cif, "Y"],
                 ["READ full", cif, "Y"], [f"READ full {cif}", "N"], ["READ", "0"],
                 ["READ full none*.cif", "", ""]]
        return self.dice.choice(lines) + [""]

    def check(self):
        cifs = self.cifs() or ["none.cif"]
        first = self.dice.choice([["CHECK", self.dice.choice(cifs)],
                                  [f"CHECK {self.dice.choice(cifs)}"]])
        return first + [self.dice.choice(cifs), self.dice.choice("YNN"), "", ""]

    def limits(self):
        return self.dice.choice(["", "", "0.5 3.2", "1.1 2.6137", "1.2137 2.4", "0.01 2.2"])

    # CALC goes on with its menu, of which the second entry asks for parameters of pairs of atoms.
    def calc(self):
        if self.dice.random() < 0.6:
            return ["CALC poly", self.limits(), "", ""]
        change = self.dice.choice([["N"], [""], ["Y", "1 1.7 0.37", "", ""],
                                   ["Y", "1 1.7 0.37", "2 1.9 0.4", "", "N"]])
        if self.dice.random() < 0.3:
            return ["CALC", "1", self.limits(), "2"] + change + ["0", "", ""]
        labels = [f"{self.dice.choice(ELEMENTS)} 3+", ""] * self.dice.randint(0, 2)
        return self.dice.choice([["CALC poly", self.limits(), "2"], ["CALC val"]]) + labels + \
            change + ["", "", ""]

    def report(self):
        command = self.dice.choice(["LIST", "TABLE"])
        entry = self.dice.choice(["cells", "xyz", "adps", "block names", "symmetry", "measures",
                                  "site names", "scat"] + 2 * LIST_REPORTS)
        if self.dice.random() < 0.15:
            return [command, str(self.dice.randint(1, 16)), self.site(), self.site(), "", "", ""]
        lines = [f"{command} {entry}"] + [self.dice.choice("UB")] * (entry == "adps")
        return lines + [self.site()] * self.dice.choice([1, 1, 2]) + ["", ""]

    def set(self):
        letters = [self.dice.choice("YN") for _ in range(4)]
        entries = [["hide"], ["show"], ["dmin", self.limits(), ""],
                   ["reference", str(self.dice.randint(1, self.blocks + 1)), ""],
                   ["exclude"] + letters, ["output", letters[0]]]
        number = self.dice.randrange(len(entries))
        if self.dice.random() < 0.2:
            return ["SET", str(number + 1)] + entries[number][1:] + ["0", ""]
        return self.dice.choice([["SHOW"], ["HELP"]] + 6 * [
            [f"SET {entries[number][0]}"] + entries[number][1:]]) + ["", ""]

    def use(self):
        references = [str(block) for block in range(1, 3 * self.blocks + 1)]
        command = self.dice.choice(["USE", "OMIT"])
        first = self.dice.choice([[f"{command} {self.some_blocks()}"],
                                  [command, "none", self.some_blocks()]])
        return first + references + [""]

    def sort(self):
        return self.dice.choice([["UNSORT"], ["SORT", self.dice.choice("PT"),
                                              self.dice.choice("ID"), ""]])

    def transform(self):
        sign = self.dice.choice(["1", "-1"])
        rows = [" ".join(sign if i == k else "0" for k in range(3)) for i in range(3)]
        if self.dice.random() < 0.1:
            rows = self.dice.choice([["2 0 0", "0 1 0", "0 0 1"], ["x", "0 1 0", "1 0 0", "0 0 1"]])
        shift = self.dice.choice(["0 0 0", "0.5 0.5 0.5", "1 0 0", "0.1 0 0.25"])
        again = self.dice.choice([["N"], ["Y", self.some_blocks(), "", self.dice.choice("YN"), "N"]])
        return ["TRANSFORM"] + rows + [shift, self.some_blocks(), "",
                                       self.dice.choice("YN")] + again + ["", "", ""]

    def atomedit(self):
        if self.dice.random() < 0.3:
            edit = ["ELEMENT", self.some_blocks(), "", f"{self.dice.choice(ELEMENTS)} "
                    + self.dice.choice(["Mn+2", "S-2", "Ti+4", "Cu"]), "", "", ""]
        else:
            edit = [self.dice.choice(["OMIT ", "USE "]) + self.some_blocks(), self.site(), "", "", ""]
        return ["ATOMEDIT"] + edit + ["LIST site", "", "EXIT", ""]

    def ptedit(self):
        value = self.dice.choice(["1.54(5)", "3.14 0.05", "0.5", "-1.25", "12.0"])
        kelvin = self.dice.choice(["295(2)", "77", "1000 5", "300.5(3)"])
        both = "1.25(3), 310" if self.dice.random() < 0.5 else "1.5 400 0.1 2"
        which = self.dice.choice(["P", "T", "both"])
        answer = {"P": value, "T": kelvin, "both": both}[which]
        blocks = self.dice.choice(["", "", "all "]) or f"{self.dice.randint(1, self.blocks + 1)} "
        refused = self.dice.choice([[], [], ["x 1,2,3"]])
        return ["PTEDIT", which] + refused + [blocks + answer, "", "", ""]

    def export(self):
        name = self.file_name(self.dice.choice(["", ".dat"]))
        if self.dice.random() < 0.5:
            return ["EXPORT", "Y", "1"] + name + ["0", "", ""]
        site = [self.dice.choice(self.labels[:8])]
        return self.dice.choice([["EXPORT", "2"], ["EXPORT", "Y", "2"],
                                 ["EXPORT vol"]]) + site + name + ["0", "", ""]

    # Bonds of each centre are asked for until it is answered.
    def write(self):
        name = self.dice.choice([f"{self.files}same", self.new_name()])
        some = [self.dice.choice("YN") for _ in range(MOST_SITES)]
        bonds = self.dice.choice([["Y"], ["", ""], ["N"] + some])
        first = self.dice.choice([[f"WRITE cif {name}.cif"]] * 4 + [["WRITE", "2", "1", name]])
        return first + [self.dice.choice("YYYYN")] + bonds + [""] * 3

    # ---- measures ----

    def atom(self):
        label = self.dice.choice(self.labels[:8])
        quoted = label if re.fullmatch(r"[A-Za-z][A-Za-z0-9_*()']*", label) else f"'{label}'"
        return quoted + self.dice.choice([""] * 6 + ["[2]", "[1_655]"])

    def atoms(self, count):
        return ", ".join(self.atom() for _ in range(count))

    def quantity(self, depth=0):
        choice = self.dice.randrange(11 if depth < 3 else 7)
        if choice == 0:
            return self.dice.choice(["a", "b", "c", "alpha", "beta", "V", "T", "P"])
        if choice == 1:
            return self.dice.choice(["1", "2.5", "5.0347(4)", "180"])
        if choice <= 4:
            word, count = self.dice.choice([("dist", 2), ("angle", 3), ("torsion", 4)])
            return f"{word}({self.atoms(count)})"
        if choice == 5:
            word = self.dice.choice(["x", "y", "z", "uiso", "occ", "mean", "vol", "qe", "av", "n",
                                     "bvs", "baur", "econ", "shift", "sigma"])
            return f"{word}({self.atom()})"
        if choice == 6:
            return self.dice.choice([f"bond({self.atom()}, 1)", f"angle({self.atom()}, 1, 2)",
                                     f"offplane({self.atom()}; {self.atoms(3)})",
                                     f"dist(centroid({self.atoms(2)}), {self.atom()})"])
        if choice == 7:
            return f"ref({self.quantity(depth + 1)})"
        if choice == 8:
            return self.dice.choice(["sqrt", "abs", "exp", "log"]) + f"({self.quantity(depth + 1)})"
        sign = self.dice.choice("+-*/")
        return f"({self.quantity(depth + 1)} {sign} {self.quantity(depth + 1)})"

    # Names from 1 to 6, so that later ones take the place of earlier ones.
    def definition(self):
        name = f"m{len(self.measures) % 6 + 1}"
        quantity = self.quantity()
        if self.measures and self.dice.random() < 0.2:
            quantity = f"{self.dice.choice(self.measures)} * {quantity}"
        self.measures.append(name)
        return f"{name} = {quantity}"[:242]

    def measure(self):
        choice = self.dice.randrange(8)
        if choice == 0:
            known = self.dice.choice(self.measures or ["m1"])
            return ["MEASURE", self.definition(), known, self.definition(),
                    self.dice.choice([f"{known} =", "m1 = dist(", ""]), "", ""]
        if choice == 1 and self.measures:
            return [f"MEASURE {self.dice.choice(self.measures)}" + self.dice.choice(["", " ="])]
        return [f"MEASURE {self.definition()}"]

    # A measure before and behind a change of what it is made of.
    def edit_and_measure(self):
        edit = self.dice.choice([self.transform, self.atomedit, self.ptedit, self.use, self.sort])
        shown = ["TABLE measures", "0", ""]  # the menu, when there is no measure
        return self.measure() + shown + edit() + shown + ["LIST measures", "0", ""]

    def ptedit_and_sort(self):
        return self.ptedit() + ["SORT", self.dice.choice("PT"), self.dice.choice("ID"), ""] + \
            ["LIST cells"]

    def macro(self):
        words = ["bond", self.dice.choice(["ALL", self.dice.choice(self.labels[:8])]),
                 f'"{self.quantity()}"', f"{self.new_name()}.csv"]
        return ["MACRO words " + " ".join(words[:self.dice.choice([4, 4, 4, 2])])[:240], ""]

    # ---- sheets and lines ----

    def sheet(self):
        entry = self.dice.choice(["cells", "xyz", "adps", "bond", "angles", "edges", "orbix", "rigid",
                                  "displace", "valences", "measures", "all", "all", "fit"])
        name = self.file_name(self.dice.choice([".csv", ".csv", ".tsv", ".tex"]))
        at_sites = entry not in ("cells", "measures", "all", "fit")
        if self.dice.random() < 0.1:
            return ["CSV", str(self.dice.randint(1, 13)), self.site()] + name + ["", ""]
        if len(name) == 1 and self.dice.random() < 0.2:
            return [" ".join(["CSV", entry] + [self.site()] * at_sites + name), "", ""]
        return [f"CSV {entry}"] + [self.site()] * at_sites + name + ["", ""]

    # What GRAPH and FIT ask for first: an entry, a site or measures, an abscissa.
    def followed(self, command, abscissae):
        entry = self.dice.choice(["cells", "bond", "angles", "poly", "valences", "measures"])
        measures = self.measures or ["m1"]
        asked = []
        if entry in ("bond", "angles", "poly", "valences"):
            asked = [self.site()]
        elif entry == "measures":
            asked = [self.dice.choice(["", measures[-1], " ".join(measures[-2:])])]
        against = self.dice.choice(abscissae + [measures[-1]])
        refused = self.dice.choice([[], [], [], ["none"]])
        if asked != [""] and against and self.dice.random() < 0.3:
            return [" ".join([command, entry] + asked + [against])]
        return [f"{command} {entry}"] + asked + refused + [against]

    def graph(self):
        name = self.file_name(self.dice.choice(["", ".svg", ".pdf", ".png", ".eps"]))
        return self.followed("GRAPH", ["P", "T", ""]) + self.dice.choice([name] * 5 + [[""]]) + \
            ["", "", ""]

    def fit(self):
        lines = self.followed("FIT", ["P", "T", "", "P 2", "T 2"]) + ["", ""]
        return lines + self.dice.choice([[], ["CSV fit"] + self.file_name(".csv") + [""]])

    def clear(self):
        return ["CLEAR"] + self.read()

    def steps(self, most):
        kinds = [self.read, self.read_asked, self.check, self.clear, self.sort, self.transform,
                 self.export, self.write, self.ptedit, self.ptedit_and_sort, self.edit_and_measure]
        kinds += 2 * [self.set, self.use, self.atomedit, self.sheet, self.graph, self.fit]
        kinds += 3 * [self.measure] + 3 * [self.calc] + 4 * [self.report]
        kinds += [self.macro] * self.macros
        lines = self.read()
        for _ in range(self.dice.randint(2, most)):
            lines += self.dice.choice(kinds)()
        return lines


# ---- properties ----


class Judge:
    def __init__(self, number):
        self.dice = random.Random(f"{seed} {number}")
        chosen = self.dice.sample(sources, min(len(sources), self.dice.choice([1, 1, 2, 3])))
        self.sources = {f"f{k}.{source.kind}": source for k, source in enumerate(chosen, 1)}
        self.paths = {name: source.path for name, source in self.sources.items()}
        self.number, self.finds = number, []
        self.runs = self.tables = self.rows = self.cells = 0

    def find(self, property_, text):
        self.finds.append(f"{property_}: {text}")

    def run(self, folder, lines, property_):
        run = Run(folder.path, lines)
        self.runs += 1
        if run.find():
            self.find(property_, run.find())
        return run

    def same(self, property_, what, before, after):
        if before != after:
            self.find(property_, f"{what} differs\n{difference(before, after)}")

    def same_files(self, property_, before, after):
        if sorted(before) != sorted(after):
            self.find(property_, f"files {sorted(before)} and {sorted(after)}")
        for name in set(before) & set(after):
            self.same(property_, name, before[name], after[name])

    def fields(self, said):
        for table in list(tables_of(said.replace(PROMPT, PROMPT + "\n"))):
            self.tables += 1
            self.rows += len(table.rows)
            if re.search(r"IUSE {8,}N +AVERAGE", table.head):
                continue  # the ligand has a blank label
            words = words_of(table.head)
            # A label may be blank or hold a blank.
            odd = [line for line, _ in table.rows
                   if re.search(r" {10}\(|\d  ?\S+ \S+ *\(", line)]
            for line, fields in table.rows:
                if "IUSE" in table.head and len(fields) > words and line not in odd:
                    self.find("fields", f"{len(fields)} under {words}: {line}\n{table.head}")
            for fault in [] if odd else table.faults():
                self.find("fields", fault[:300] + "\n" + table.head)

    def judge(self):
        with tempfile.TemporaryDirectory() as self.parent:
            kind = self.number % 4
            if kind == 0:
                self.clear()
            elif kind == 1:
                self.written()
            elif kind == 2:
                self.sheets()
            else:
                self.replay()
        return self

    def folder(self, name):
        return Folder(self.parent, name, self.paths)

    # What is typed, recorded; the folder, the macro and what was said between READ and END.
    def recorded(self, name, lines):
        folder = self.folder(name)
        run = self.run(folder, ["LOG said", "RECORD again"] + lines + ["END", "EXIT"], "typed")
        self.fields(run.said)
        return folder, folder.text("again.mcr"), said_in(folder)

    # Answers that were refused are not recorded; what is left is typed once more.
    def replay(self):
        self.lines = Session(self.dice, self.sources, macros=False).steps(16)
        first, macro, said = self.recorded("first", self.lines)
        typed = first
        if not macro.endswith("END\n"):
            return  # ATOMEDIT was refused without data, and its EXIT has ended the program
        if macro != "\n".join(self.lines + ["END", ""]):
            typed, again, said = self.recorded("typed", macro.split("\n")[:-2])
            # Who types is asked whether a file may be replaced; the macro has no answer to that.
            if "Do you want to overwrite" in said:
                typed, said = first, None
            else:
                self.same("replay", "the recorded macro", macro, again)
        replayed = self.folder("replayed")
        word = self.dice.choice(list(self.sources))
        with open(os.path.join(replayed.path, "again.mcr"), "w") as file:
            file.write(macro.replace(word, "$1"))
        self.run(replayed, ["LOG said", f"MACRO again {word}", "EXIT"], "replayed")
        if said is not None:
            self.same("replay", "what was said", said, said_in(replayed))
        # A log, which an answer to no question can open, tells of the recording or the macro.
        written = [{name: text for name, text in folder.written(["again.mcr"]).items()
                    if not name.endswith(".log")} for folder in (first, typed, replayed)]
        self.same_files("replay", written[0], written[1])
        self.same_files("replay", written[1], written[2])

    def clear(self):
        before = Session(self.dice, self.sources)
        dirty = before.steps(12)
        leave = ["0", "", "0", "", "", ""]  # whatever is asked still
        clean = leave + ["CLEAR", "SET show", "", "SET dmin", "0.01 2.2", "", "SET exclude", "N", "N", "N",
                 "N", "", "SET output", "N", "", "UNSORT"]
        for _ in range(6):
            clean += [f"MEASURE m{k} =" for k in range(1, 7)]
        behind = Session(self.dice, self.sources, "z").steps(10)
        self.lines = dirty + clean + ["LOG after"] + behind
        used, fresh = self.folder("used"), self.folder("fresh")
        run = self.run(used, self.lines + ["EXIT"], "clear")
        self.fields(run.said)
        self.run(fresh, clean + ["LOG after"] + behind + ["EXIT"], "fresh")
        texts = [{name: text for name, text in folder.written().items() if name[0] == "z"
                  or name == "after.log"} for folder in (used, fresh)]
        if texts[0]:  # else EXIT has ended the program as in replay
            self.same_files("clear", *texts)

    # The tables of what a file holds; xyz, adps and bonds of all sites.
    def all_tables(self, limits):
        lines = ["TABLE cells", "LIST symmetry", "LIST site names", "LIST scat", "TABLE xyz", "ALL",
                 "", "TABLE adps", "U", "ALL", "", "CALC poly", limits, "2", "", "", "", ""]
        for entry in LIST_REPORTS:
            lines += [f"LIST {entry}", "ALL", "", f"TABLE {entry}", "ALL", "", ""]
        return lines

    def written(self):
        session = Session(self.dice, self.sources)
        kinds = [session.calc, session.use, session.sort, session.atomedit, session.ptedit,
                 session.transform, session.set]
        lines = session.read()
        for _ in range(self.dice.randint(0, 4)):
            lines += self.dice.choice(kinds)()
        limits = self.dice.choice(["0.5137 3.2137", "1.1137 2.6137"])
        write = ["Y", "Y"] + [""] * 30
        lines += ["SET hide", "", "CALC poly", limits, "2", "", "", "", ""]
        lines += ["CSV all before", "", "LOG t0", "TABLE cells", "LIST scat", "WRITE cif w1"] + write
        # CALC gives charges, so the second file is the first that holds all that the next will.
        for number, reader in ((1, "full"), (2, "full"), (3, "full"), (2, "cif")):
            lines += ["CLEAR"] + read_lines(reader, [f"w{number}.cif"]) + ["", ""]
            log = f"t{number}" if reader == "full" else "t4"
            lines += [f"LOG {log}"] + self.all_tables(limits)
            lines += ["CSV all after", ""] if number == 1 else []
            lines += [f"WRITE cif w{number + 1}"] + write if reader == "full" else []
        self.lines = lines
        folder = self.folder("written")
        run = self.run(folder, lines + ["EXIT"], "written")
        self.fields(run.said)
        if not folder.text("w1.cif"):
            return
        logs = [folder.text(f"t{k}.log") for k in range(5)]
        logs = [log[log.find(PROMPT):] for log in logs]
        logs = [log[:log.find(PROMPT + "WRITE")] if PROMPT + "WRITE" in log else
                log[:max(log.rfind(PROMPT + "CLEAR"), log.rfind(PROMPT + "EXIT"))] for log in logs]
        first = [[field for _, field in table.rows]
                 for log in logs[:2] for table in list(tables_of(log))[:1]]
        # READ full passes over blocks without sites.
        passed = "without a structure" in run.said
        if len(first) == 2 and not passed and not same_cells(*first):
            self.find("written", f"cells were {first[0]}\nand are {first[1]}")
        if len(first) == 2 and len(first[0]) == session.blocks == 1:
            self.came_back(folder, [float(limit) for limit in limits.split()], run.said, logs)
        self.same("written", "the tables of the next file", logs[2], logs[3])
        self.same("written", "the next file", undated(folder.text("w3.cif")),
                  undated(folder.text("w4.cif")))
        # READ full alone keeps apostrophes, and numbers sites without labels.
        told = "READ full reads" in run.said[run.said.rfind("Named w2.cif"):]
        if not told and "'" not in logs[2] and not re.search(r"Site name: \.(\s|!)", logs[4]):
            self.same("written", "READ cif", logs[2], logs[4])

    # The values of a single block before it was written and behind. What is rounded moves by less than
    # its esd, or one in 10,000; a length at a limit may come or go.
    def came_back(self, folder, limits, said, logs):
        before, after = (self.values_of(folder.text(name)) for name in ("before.csv", "after.csv"))
        lengths = [value for key, values in [*before.items(), *after.items()] if key[0] == "bond"
                   for value, _ in values]
        if any(key[1] in ("", ".") for key in before if key[0] == "xyz"):
            return  # labels that READ cif did not find
        sites = ["\n".join(sites_of(log)) for log in logs[:2]]
        if "*" not in sites[0] and "by the user" not in said:
            self.same("written", "sites", *sites)
        esds = [esd for key, values in before.items() if key[0] == "xyz" for _, esd in values]
        if max(esds, default=0) > 0.01 or any(
                abs(length - limit) < 0.02 for length in lengths for limit in limits):
            return
        for key in sorted(set(before) | set(after)):
            if key[0] == "valences" and "by the user" in said:
                continue
            pairs = list(zip(sorted(before.get(key, [])), sorted(after.get(key, []))))
            far = [pair for pair in pairs if abs(pair[0][0] - pair[1][0]) > max(
                2 * pair[0][1], {"angles": 0.3, "xyz": 1e-4}.get(key[0], 0.01))]
            self.cells += len(pairs)
            if far or len(before.get(key, [])) != len(after.get(key, [])):
                self.find("written", f"{key} was {before.get(key)} and is {after.get(key)}")

    # Values and esds of the long sheet by quantity, centre and feature, without the numbers of bonds.
    @staticmethod
    def values_of(text):
        values = {}
        for row in rows_of(text)[1:]:
            known = row[11] and (row[7] in ("cells", "xyz") or "[" in row[9])
            if known and row[7] in ("cells", "xyz", "bond", "angles", "edges", "valences"):
                key = (row[7], row[8], re.sub(r"\[.*", "", row[9]))
                values.setdefault(key, []).append((float(row[11]), float(row[12] or 0)))
        return values

    # ---- CSV and TABLE ----

    def sheets(self):
        session = Session(self.dice, self.sources)
        kinds = [session.calc, session.use, session.sort, session.atomedit, session.ptedit,
                 session.transform, session.set, session.measure, session.measure]
        lines = session.read()
        for _ in range(self.dice.randint(1, 6)):
            lines += self.dice.choice(kinds)()
        lines += ["SET output", "N", "", "SET show", ""]
        lines += ["CALC poly", session.limits(), "2", "N", "", "", ""]
        entries = ["cells", "xyz", "adps", "bond", "angles", "edges", "valences of", "measures"]
        for entry in entries:
            word = entry.split()[0]
            at_sites = word not in ("cells", "measures")
            lines += [f"LOG {word}", f"TABLE {entry}"] + ["U"] * (word == "adps")
            lines += ["ALL", "", ""] * at_sites + ["LOG between", f"CSV {word}"]
            lines += ["ALL"] * at_sites + [f"{word}.csv", "", ""]
        lines += ["CSV all", "all.csv", "", ""]
        self.lines = lines
        folder = self.folder("sheets")
        run = self.run(folder, lines + ["EXIT"], "sheets")
        self.fields(run.said)
        every = {}
        for row in rows_of(folder.text("all.csv"))[1:]:
            if len(row) == 13:
                every.setdefault((row[7], row[0], row[9]), (row[11], row[12]))
        for entry in entries:
            word = entry.split()[0]
            sheet = rows_of(folder.text(f"{word}.csv"))
            if sheet:
                self.agree(word, list(tables_of(folder.text(f"{word}.log"))), sheet, every)

    def agree(self, word, tables, sheet, every):
        head = sheet[0]
        values = [k for k in range(7, len(head))
                  if re.sub(r"_esd(_\d+)?$", r"\1", head[k]) != head[k - 1]]
        sheet_rows = {}
        for row in sheet[1:]:
            if len(row) != len(head):
                self.find("sheets", f"{word}: {len(row)} fields, {len(head)} in the head")
                return
            pairs = [(head[k], row[k], row[k + 1] if k + 1 < len(row) and k + 1 not in values
                      else "") for k in values]
            sheet_rows[row[0]] = pairs
            for name, value, esd in pairs:
                if value and every.get((word, row[0], name), (value, esd)) != (value, esd):
                    self.find("sheets", f"{word} {name} of block {row[0]}: {value} {esd} is "
                              f"{every[(word, row[0], name)]} in the long sheet")
        shown = {}
        for table in tables:
            most = max((len(fields) for _, fields in table.rows), default=0)
            for line, fields in table.rows:
                block = line.split(":")[0].strip()
                shown.setdefault(block, []).append((line, table, fields, most))
        for block, lines in shown.items():
            self.compare(word, block, lines, sheet_rows.get(block, []))

    # Values of a block in the order of the table; absent ones are left out on both sides, and so are
    # the displacements of sites that have none, which tables show as 0.
    def compare(self, word, block, lines, pairs):
        fields = []
        if word == "adps":
            sites = [pairs[k:k + 7] for k in range(0, len(pairs), 7)]
            pairs = [(name, value or "0", esd) for site in sites
                     if any(float(value or 0) for _, value, _ in site) for name, value, esd in site]
        for _, _, row, _ in lines:
            row = row[2:]  # T and P
            element = max((k for k, field in enumerate(row) if field[0] == "("), default=0)
            behind = row[element + 1:]  # other atoms of the site follow in xyz, Beq in adps
            if word == "adps" and all(re.fullmatch(r"0\.0+", field) for field in behind[:7]):
                continue
            fields += {"xyz": behind[:4], "adps": behind[:7]}.get(word, row[1:])
        fields = [field for field in fields if field != "No_value" and re.match(r"[-\d.]", field)]
        values = [pair for pair in pairs if pair[1]]
        if len(fields) != len(values):
            self.find("sheets", f"{word} of block {block}: {len(values)} values in CSV, "
                      f"{len(fields)} in TABLE\n{values}\n{fields}")
            return
        for field, (name, value, esd) in zip(fields, values):
            self.cells += 1
            if not rounds_to(field, value, esd):
                self.find("sheets", f"{word} {name} of block {block}: {value} {esd} is not {field}")


# Labels and scattering factors, sorted, of the first LIST scat; omitted sites have a star.
def sites_of(log):
    listed = log[log.find(PROMPT + "LIST scat"):]
    listed = listed[:listed.find(PROMPT, 1)]
    return sorted(word.strip("!").upper() for line in re.findall(r"(?:Site name|factor): (.*)", listed)
                  for word in line.split())


# How many fields a row may have behind its title.
def words_of(head):
    head = re.sub("(SRB|RAW) AVE", "AVE", head)
    head = re.sub("(CENTROID|BARYCENTRE) COORDINATES", "X Y Z", head)
    # The number of an operator, and the mean length behind that of displacements, have no word.
    return len(head.split()) - 1 + ("SITE" in head or bool(re.search(r"N +AVERAGE *$", head)))


def rows_of(text):
    return list(csv.reader(text.split("\n")[:-1])) if text else []


# Rows of TABLE cells. A volume without an esd follows the written lengths, which are rounded.
def same_cells(before, after):
    def known(row):
        free = re.fullmatch(r"[\d.]+(E[-+]\d+)?", row[-1])
        return row[:-1] if free else row

    def near(one, other):
        return known(one) == known(other) and (
            one[-1] == other[-1] or abs(float(one[-1]) / float(other[-1]) - 1) < 1e-5)

    return len(before) == len(after) and all(map(near, before, after))


# Whether TABLE may show this value and esd as this field. The esd is rounded up, a tenth of a unit
# is dropped.
def rounds_to(field, value, esd):
    match = re.fullmatch(r"(-?)(\d*)(?:\.(\d*))?(?:\((\d+)\))?(?:E([-+]\d+))?(?:\((\d+)\))?", field)
    if not match:
        return False
    power = int(match.group(5) or 0)
    unit = 10.0 ** (power - len(match.group(3) or ""))
    shown = float(re.sub(r"\(.*?\)", "", field))
    real = float(value)
    if abs(shown - real) > 0.5 * unit + 2e-7 * abs(real):
        return False
    shown_esd = match.group(4) or match.group(6)
    if shown_esd is None:
        return True
    if not esd:
        return False
    units = float(esd) / unit
    doubtful = abs((units - 0.1) - round(units - 0.1)) <= max(1e-3, 1e-6 * units)
    return abs(max(math.ceil(units - 0.1), 2) - int(shown_esd)) <= doubtful + 1e-6 * units


# ---- sessions for the fuzzer ----


def write_sessions(folder, numbers):
    for sub in ("sessions", "files"):
        shutil.rmtree(os.path.join(folder, sub), ignore_errors=True)
        os.makedirs(os.path.join(folder, sub))
    with open(os.path.join(folder, "files", "words.mcr"), "w") as file:
        file.write(MACRO)
    names = {}
    for source in sources:
        names[source.path] = f"{len(names) + 1}.{source.kind}"
        shutil.copyfile(source.path, os.path.join(folder, "files", names[source.path]))
    for number in numbers:
        judge = Judge(number)
        files = [names[path] for path in judge.paths.values()] + ["words.mcr"]
        lines = [f"FILES {' '.join(files)}"] + Session(judge.dice, judge.sources).steps(8)
        with open(os.path.join(folder, "sessions", str(number)), "w") as file:
            file.write("\n".join(lines) + "\n")


# ---- all ----


def files_below(roots):
    for root in map(os.path.abspath, roots):
        if os.path.isfile(root):
            yield root
        for folder, _, names in os.walk(root):
            yield from (os.path.join(folder, name) for name in names)


def main():
    with ThreadPoolExecutor(2) as pool:
        paths = sorted({os.path.realpath(path) for path in files_below(sys.argv[4:])
                        if path.lower().endswith((".cif", ".out"))
                        and os.path.getsize(path) <= LARGEST})
        sources.extend(source for source in pool.map(Source, paths)
                       if 0 < source.blocks <= 12 and len(source.labels) <= MOST_SITES)
        first, _, last = sys.argv[2].rpartition(":")
        numbers = range(int(first or 1), int(last) + 1)
        if write_into:
            return write_sessions(write_into, numbers)
        totals = [0] * 6
        for judge in pool.map(lambda number: Judge(number).judge(), numbers):
            for find in judge.finds[:3]:
                print(f"session {judge.number}: {find}", flush=True)
            if len(numbers) == 1:
                print(*judge.paths.values(), *judge.lines, sep="\n")
            counts = (1, judge.runs, judge.tables, judge.rows, judge.cells, len(judge.finds))
            totals = [total + count for total, count in zip(totals, counts)]
    print(*totals)
    return totals[-1] > 0


if __name__ == "__main__":
    write_into = sys.argv[2] if sys.argv[1] == "--write" else None
    if write_into:
        del sys.argv[1:3]
    program, seed, sources = os.path.abspath(sys.argv[1]), sys.argv[3], []
    sys.exit(main())
