#!/usr/bin/env python3
# Whether sheets hold what tables show: sheets.py PROGRAM FOLDER...
# Reads each .cif and .out below the folders into the program, with bonds from 0.5 to 3.2 angstroms and
# all exclusions off, prints every table of all sites, TABLE where there is one, and writes every entry
# of CSV, wide and long. The sheets are read by python's csv. A fault is a printed value that is not
# that of the sheet rounded, one that has none there, a value of the sheet that is not printed, and a
# value that the wide and the long form do not share. Prints faults, then the counts: files, values
# compared with tables, values compared between the forms, faults.
import csv
import os
import re
import subprocess
import sys
import tempfile

from table_fields import judge_all

# An entry: its tables, the first word of the quantity, and the end of a site's last column.
ENTRIES = [
    ("TABLE cells", "cells", "V"), ("TABLE xyz", "xyz", "_occ"), ("TABLE adps", "adps", "_Ueq"),
    ("TABLE measures", "measures", ""), ("TABLE bond", "bond", "_V"), ("TABLE angles", "angles", "_AV"),
    ("TABLE edges", "edges", "_meanedge"), ("LIST orbix", "orbix", "_sph"),
    ("LIST rigid", "rigid", None), ("LIST displace", "displace", None),
    ("TABLE valences", "valences", "_BVS")]
START = 7  # block, title, T, T_esd, P, P_esd, use
ORBIX = [1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12]  # of the printed columns, those of the sheet
MARK = "Quoted here"

ROW = re.compile(r"^ *(\d+): (.{14}):(.*)$")
SENTENCE = re.compile(r"No equivalent|zero volume")
FIELD = re.compile(r"^(-?\d+)(?:\.(\d*))?(?:\((\d+)\))?$")


def dialogue(name, kind):
    text = f"READ {kind} {name}\nY\nMEASURE m = a/ref(a) + V/7\nMEASURE shear = 90 - beta\n"
    text += "SET exclude\nY\nY\nY\nY\nCALC poly\n0.5 3.2\n\nCALC val\n\n\n\nCSV all long.csv\n"
    for table, quantity, _ in ENTRIES:
        sites = quantity not in ("cells", "measures")
        text += f"SYS\necho {MARK} {quantity}\nPROG\n{table}\n"
        text += ("U\n" if quantity == "adps" else "") + ("ALL\n\n" if sites else "")
        text += f"CSV {quantity} {'ALL ' if sites else ''}{quantity}.csv\n"
    return text + "EXIT\n"


def rows_of(path):
    if not os.path.exists(path):
        return []
    with open(path, encoding="utf-8", newline="") as file:
        return list(csv.reader(file, strict=True))


def run(path):
    kind = "cif" if path.lower().endswith(".cif") else "out"
    with tempfile.TemporaryDirectory() as folder:
        os.symlink(path, os.path.join(folder, "in." + kind))
        with open(os.path.join(folder, "all.mcr"), "w") as macro:
            macro.write(dialogue("in." + kind, kind))
        said = subprocess.run([program, "./all.mcr"], cwd=folder, capture_output=True,
                              stdin=subprocess.DEVNULL, timeout=300,
                              env=dict(os.environ, LOCALAPPDATA=folder, HOME=folder))
        sheets = {quantity: rows_of(os.path.join(folder, quantity + ".csv"))
                  for _, quantity, _ in ENTRIES}
        return (said.stdout.decode("utf-8", "replace"), sheets,
                rows_of(os.path.join(folder, "long.csv")))


# The printed rows of an entry by table: block, and fields behind the start or None for a sentence.
def tables_of(text):
    tables = []
    for line in text.split("\n"):
        if "BLOCKNAME" in line:
            tables.append([])
        match = ROW.match(line)
        if match and tables:
            rest = match.group(3).replace("No value", "No_value")
            tables[-1].append((match.group(1), None if SENTENCE.search(line) else rest.split()[3:]))
    return tables


# Behind the label and the symbol of the matched atom; the digit of use may touch the operator.
def behind_symbol(line_fields, quantity):
    text = " " + " ".join(line_fields)
    text = re.sub(r"^.*? \([^()]{0,4} *\) ", "", text, count=1) if quantity in ("xyz", "adps") else text
    return text.split()[:{"xyz": 4, "adps": 7}.get(quantity, 10000)]


# The columns of a sheet as pairs of a value's column and that of its esd, or None.
def columns_of(head):
    pairs = []
    k = START
    while k < len(head):
        bases = {head[k], re.sub(r"_\d+$", "", head[k])}
        has_esd = k + 1 < len(head) and any(
            re.fullmatch(re.escape(base) + r"_esd(_\d+)?", head[k + 1]) for base in bases)
        pairs.append((k, k + 1 if has_esd else None))
        k += 2 if has_esd else 1
    return pairs


# The same by site.
def groups_of(head, end):
    groups = [[]]
    for pair in columns_of(head):
        name = head[pair[0]]
        if end is None and re.search(r"\[1\]_(srb|displ)(_\d+)?$", name) and groups[-1]:
            groups.append([])
        groups[-1].append(pair)
        if end and re.search(re.escape(end) + r"(_\d+)?$", name) and end != "V":
            groups.append([])
    return [group for group in groups if group]


def agrees(field, value, esd):
    if field == "No_value":
        return value == ""
    if value != "" and "E" in field:
        return abs(float(field) - float(value)) <= 0.006 * abs(float(value))
    match = FIELD.match(field)
    if not match or value == "":
        return False
    decimals = len(match.group(2) or "")
    unit = 10.0 ** -decimals
    number = float(value)
    printed = float(re.sub(r"\(.*", "", field))
    if abs(printed - number) > 0.5 * unit + 1e-6 * abs(number) + 1e-9:
        return False
    if match.group(3) is None:
        return True
    return esd != "" and abs(int(match.group(3)) - float(esd) / unit) <= 1.001 + 1e-6 * float(esd) / unit


def compare(name, quantity, tables, sheet, end):
    if not sheet:
        return 0, []
    head, rows = sheet[0], {row[0]: row for row in sheet[1:]}
    groups = groups_of(head, end)
    tables = [table for table in tables if table]
    if len(groups) != len(tables):
        return 0, [f"{quantity}: {len(tables)} tables, {len(groups)} sites in the sheet"]
    count, faults = 0, []
    for table, group in zip(tables, groups):
        for block, fields in table:
            row = rows.get(block)
            if row is None:
                faults.append(f"{quantity}: block {block} is not in the sheet")
                continue
            shown = [] if fields is None else behind_symbol(fields, quantity)
            if quantity == "orbix" and shown:
                shown = [shown[k] for k in ORBIX]
            if quantity in ("rigid", "displace"):
                shown = shown[:len(group)]
            for k, (value, esd) in enumerate(group):
                field = shown[k] if k < len(shown) else "No_value"
                count += 1
                # A displacement that nobody gave is shown as 0 in tables.
                if quantity == "adps" and row[value] == "" and re.fullmatch(r"0\.0+", field):
                    continue
                if not agrees(field, row[value], row[esd] if esd else ""):
                    faults.append(f"{quantity}: {head[value]} of block {block}: printed {field}, "
                                  f"sheet {row[value]} {row[esd] if esd else ''}")
            if len(shown) > len(group):
                faults.append(f"{quantity}: block {block} shows {len(shown)} values, "
                              f"the sheet {len(group)}")
    return count, faults


def compare_forms(sheets, long_form):
    wide = {}
    for quantity, sheet in sheets.items():
        if not sheet:
            continue
        for row in sheet[1:]:
            for value, esd in columns_of(sheet[0]):
                if row[value] != "":
                    wide[tuple(row[:START]) + (quantity, sheet[0][value])] = (
                        row[value], row[esd] if esd else "")
    lines = {tuple(line[:START]) + (line[START], line[START + 2]): (line[-2], line[-1])
             for line in long_form[1:]}
    faults = [f"twice in the long form: {len(long_form) - 1 - len(lines)}"] if long_form and len(
        lines) != len(long_form) - 1 else []
    for key in wide.keys() | lines.keys():
        if wide.get(key) != lines.get(key):
            faults.append(f"{key}: wide {wide.get(key)}, long {lines.get(key)}")
    return len(wide), faults


def judge(path):
    said, sheets, long_form = run(path)
    parts = dict(re.findall(rf"{MARK} (\w+)\n(.*?)(?=\nG_MARA[^\n]*>CSV)", said, re.S))
    count, faults = 0, []
    for _, quantity, end in ENTRIES:
        more, wrong = compare(path, quantity, tables_of(parts.get(quantity, "")), sheets[quantity], end)
        count += more
        faults += wrong
    forms, wrong = compare_forms(sheets, long_form)
    return path, count, forms, faults + wrong


program = os.path.abspath(sys.argv[1])
sys.exit(judge_all(judge, sys.argv[2:]))
