#!/usr/bin/env python3
# Whether every table can be read at its blanks: table_fields.py PROGRAM FOLDER...
# Reads each .cif and .out below the folders into the program, with bonds from 0.5 to 3.2 angstroms and
# all exclusions off, shows every LIST and TABLE of all sites and writes a CIF. A fault is a row that
# does not split into as many fields as the others of its table, a number of stars, and a number that
# is none. Prints faults, then a line with the counts: files tables rows faults.
import os
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

ATOMS = ["xyz\nALL\n", "adps\nU\nALL\n", "adps\nB\nALL\n"]
GEOMETRY = ["bond\nALL\n", "angles\nALL\n", "edges\nALL\n"]
LISTS = ["block names\n", "cells\n", "symmetry\n", "site\n", "scat\n"] + ATOMS + GEOMETRY + [
    "orbix\nALL\n", "rigid\nALL\n", "displace\nALL\n"]
TABLES = ["cells\n"] + ATOMS + GEOMETRY

SENTENCE = re.compile(r"No equivalent|zero volume")
START = re.compile(r"^ *(\d+): (.{14}):(.*)$")
SUMMARY = re.compile(r"^ *(\d+): (.{20})(.*)$")
NUMBER = re.compile(r"^-?\d+(\.\d*)?(\(\d+\))?$|^-?\d\.\d+E[-+]\d+$")


def dialogue(name, kind):
    text = f"READ {kind} {name}\nY\nSET exclude\nY\nY\nY\nY\nCALC poly\n0.5 3.2\n\n"
    for command, entries in (("LIST", LISTS), ("TABLE", TABLES)):
        for entry in entries:
            text += f"{command} {entry}" + ("\n" if "ALL" in entry else "")
    text += "CALC val\n\n\n\nLIST valences of\nALL\n\nTABLE valences of\nALL\n\n"
    return text + "WRITE cif out.cif\nY\nY\nY\n\nEXIT\n"


def said_of(path):
    kind = "cif" if path.lower().endswith(".cif") else "out"
    with tempfile.TemporaryDirectory() as folder:
        os.symlink(path, os.path.join(folder, "in." + kind))
        with open(os.path.join(folder, "all.mcr"), "w") as macro:
            macro.write(dialogue("in." + kind, kind))
        run = subprocess.run([program, "./all.mcr"], cwd=folder, capture_output=True,
                             stdin=subprocess.DEVNULL, timeout=300,
                             env=dict(os.environ, LOCALAPPDATA=folder, HOME=folder))
        written = os.path.join(folder, "out.cif")
        cif = open(written, encoding="utf-8", errors="replace").read() if os.path.exists(written) else ""
        return run.stdout.decode("utf-8", "replace"), cif


# Behind the start of a row; a label in brackets and "No value" are one field each.
def fields_of(rest):
    rest = re.sub(r"\(([^() ]{0,4}) *\)", r"(\1)", rest)
    return rest.replace("No value", "No_value").split()


def is_number(field):
    return field == "No_value" or NUMBER.match(field) is not None


class Table:
    def __init__(self, head):
        self.head = head
        self.rows = []

    # A row may end sooner where the last words of the head may have nothing below them.
    def faults(self):
        atoms = "SITE" in self.head
        counts = [len(fields) for _, fields in self.rows]
        most = max(counts, default=0)
        for line, fields in self.rows:
            short = re.search(r"VOLUME|RAWVOL|ATOM OCC", self.head) and len(fields) < most
            if len(fields) != most and not short:
                yield f"{len(fields)} fields, not {most}: {line}"
            elif "**" in line.split(":", 2)[-1] or re.search(r"\b(NaN|Inf|INF)\b", line[20:]):
                yield "stars or no number: " + line
            elif not atoms and not all(map(is_number, fields)):
                yield "fields that are no numbers: " + line
            elif atoms and "ATOM OCC" not in self.head and not all(map(is_number, fields[-3:])):
                yield "fields that are no numbers: " + line


def tables_of(said):
    table = None
    for line in said.split("\n"):
        if "BLOCKNAME" in line:
            table = Table(line)
            yield table
        match = (START if table and "IUSE" in table.head else SUMMARY).match(line)
        if table and match and not SENTENCE.search(line):
            table.rows.append((line, fields_of(match.group(3))))
        elif table and not match and line.strip() and "BLOCKNAME" not in line and "_" not in line:
            table = None


def judge(path):
    said, cif = said_of(path)
    tables = list(tables_of(said))
    faults = [fault for table in tables for fault in table.faults()]
    for line in cif.split("\n"):
        values = line.split()[1:]
        if any(re.fullmatch(r"\*{3,}|-?nan|-?inf", value, re.I) for value in values):
            faults.append("in the CIF: " + line)
    return path, len(tables), sum(len(table.rows) for table in tables), faults


def judge_all(judge, roots):
    """Judges every CIF and CRYSTAL output below the roots by judge(path) -> path, two counts and
    faults; prints faults and a last line of counts. True when there was any fault."""
    paths = sorted(os.path.join(folder, name) for root in roots
                   for folder, _, names in os.walk(os.path.abspath(root)) for name in names
                   if name.lower().endswith((".cif", ".out")))
    with ThreadPoolExecutor(2) as pool:
        results = list(pool.map(judge, paths))
    for path, _, _, faults in results:
        for fault in faults[:5]:
            print(os.path.basename(path) + ": " + fault[:300])
    count = sum(len(r[3]) for r in results)
    print(len(results), sum(r[1] for r in results), sum(r[2] for r in results), count)
    return count > 0


if __name__ == "__main__":
    program = os.path.abspath(sys.argv[1])
    sys.exit(judge_all(judge, sys.argv[2:]))
