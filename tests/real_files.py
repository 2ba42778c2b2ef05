#!/usr/bin/env python3
"""Round trip of every CIF below a folder through the program: see real_files.sh.

The cells (LIST) and the tables of coordinates and displacement parameters (TABLE) of the file are
compared, row by row, with those of the file that the program writes of it. Differences are sorted
into kinds; a kind that is stated in STATED is counted, any other is shown and makes the run fail.
"""

import collections
import os
import re
import subprocess
import sys
import tempfile
import time

LONGEST = 10.0  # seconds for one file
EIGHT_PI_SQ = 78.957  # B = 8 pi^2 U
STATED = {
    "letters": "an element that a label gave, FE, is read back as a type symbol, Fe",
    "no label": "an atom without a label is written as '.', which is read back as its label",
    "operator number": "a written symbol that is known gives the operators in its own order",
    "rounded": "a value is written with the digits that its esd, printed with 2 to 19, leaves",
    "esd rounded": "an esd is written with one digit, or two up to 19, and rounded up",
    "no blocks": "the file has no data block",
    "no atoms": "no block of the file has atoms",
}

READ = ["READ cif {}", "Y"]
SHOW = ["LIST cells", "TABLE xyz", "ALL", "", "TABLE adps", "U", "ALL", ""]
CALC = ["CALC poly", "", "0", "TABLE bond", "ALL", "", "TABLE angles", "ALL", "", "TABLE edges",
        "ALL", "", "WRITE cif {}", "Y", "Y"]

NAME_COLUMNS = slice(0, 44)  # number, title, conditions and use of a block


class Trouble(Exception):
    """What is wrong with a file beyond a difference."""


def run(program, folder, lines):
    """What the program says to the lines, by command: a list of (command, lines said)."""
    macro = os.path.join(folder, "m.mcr")
    with open(macro, "w", encoding="latin-1") as file:
        file.write("\n".join(lines + ["EXIT", ""]))
    environment = dict(os.environ, LOCALAPPDATA="")
    begin = time.time()
    try:
        done = subprocess.run([program, "./m.mcr"], cwd=folder, env=environment,
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=6 * LONGEST)
    except subprocess.TimeoutExpired:
        raise Trouble(f"takes over {6 * LONGEST:.0f} s: stopped") from None
    seconds = time.time() - begin
    if done.returncode != 0 or done.stderr:
        error = done.stderr.decode("latin-1").strip().splitlines()
        raise Trouble(f"ends with status {done.returncode}: {error[:1]}")
    said = []
    for line in done.stdout.decode("latin-1").splitlines():
        prompt = re.match(r"G_MARA-[0-9.]+>(.*)", line)
        if prompt:
            said.append((prompt.group(1), []))
        elif said:
            said[-1][1].append(line)
    return said, seconds


def answer(said, command):
    """The lines said to the last command that begins with the text."""
    found = [lines for typed, lines in said if typed.startswith(command)]
    return found[-1] if found else []


def cell_rows(said):
    """Block number, conditions and cell of each row of LIST cells."""
    rows = {}
    for line in answer(said, "LIST cells"):
        if re.match(r" *\d+: ", line[:5]):
            values = [line[44:][a:b] for a, b in ((0, 9), (9, 18), (18, 27), (27, 35), (35, 43),
                                                  (43, 51), (51, 60))]
            rows[line[:3].strip()] = [line[19:34]] + [value.strip() for value in values]
    return rows


def site_rows(said, command):
    """(number of the table, block number) to the texts of a row: operator, label, factor, values,
    and what stands behind them."""
    rows = {}
    table = 0
    for line in answer(said, command):
        if line.startswith((" ATOMS EQUIVALENT", " ADPs TRANSFORMED")):
            table += 1
        elif re.match(r" *\d+: ", line[:5]):
            values = [line[62 + 13 * k:75 + 13 * k].strip() for k in range(4 if "xyz" in command
                                                                            else 6)]
            rest = line[62 + 13 * len(values):].strip()
            rows[table, line[:3].strip()] = [line[44:46].strip(), line[46:56].strip(),
                                             line[57:61].strip(), values, rest]
    return rows


def number(text):
    """Value, esd and size of the last digit of a printed number; None for another text."""
    found = re.fullmatch(r"(-?\d+)(?:\.(\d*))?(?:E([+-]\d+))?(?:\((\d+)\))?", text)
    if not found:
        return None
    digit = 10.0 ** (int(found.group(3) or 0) - len(found.group(2) or ""))
    value = float(text.split("(")[0])
    return value, int(found.group(4) or 0) * digit, digit


def kind_of_change(before, after, whole_cells=False):
    """Blank when the texts are equal, or the kind of their difference."""
    if before == after:
        return ""
    old, new = number(before), number(after)
    if old is None or new is None:
        return "changed"
    digit = max(old[2], new[2])
    difference = abs(old[0] - new[0])
    if whole_cells:
        difference = min(difference, abs(difference - 1.0))
    # One unit of the coarser last digit, or what is left of a value behind its esd's last digit.
    if difference > 1.01 * digit:
        return "changed"
    if old[1] == new[1] and old[2] == new[2]:
        return "rounded"
    if max(old[1], new[1]) <= 2.01 * max(min(old[1], new[1]), digit):
        return "esd rounded"
    return "changed"


def cell_change(before, after, esds):
    """A cell parameter is listed with more digits than WRITE leaves it."""
    if before == after:
        return ""
    old, new = number(before), number(after)
    if old is None or new is None:
        return "changed"
    return "rounded" if abs(old[0] - new[0]) <= max(0.5 * esds, 1.01 * old[2]) else "changed"


def iso_change(before, after, digit):
    """Ueq or Beq, listed with more digits than U is written with; digit is the last one of U."""
    if before == after:
        return ""
    old, new = number(before), number(after)
    if old is None or new is None:
        return "changed"
    largest = (0.5 * digit * EIGHT_PI_SQ + 1.01 * old[2])
    return "rounded" if abs(old[0] - new[0]) <= largest else "changed"


def written_digits(path):
    """(block number, label) to the size of the last digit of the U that WRITE gave the atom."""
    digits = {}
    block = 0
    with open(path, encoding="latin-1") as file:
        for line in file:
            block += line.startswith("data_")
            words = line.replace('"', "").split()
            if len(words) == 8 and words[7] in ("Uiso", "Uani"):
                value = number(words[6])
                digits[str(block), words[0]] = value[2] if value else 0.0
    return digits


def compare(first, second, digits, count, show):
    """Counts the differences by kind and shows those that are not stated."""
    def note(kind, where, before, after):
        if not kind:
            return
        count[kind] += 1
        if kind not in STATED:
            show(f"{where}: {before!r} became {after!r}")

    old, new = cell_rows(first), cell_rows(second)
    count["(cells compared)"] += len(new)
    tables = {row: [cell.strip() for cell in re.split(r"(?<=\)) +| {2,}", line[44:].strip())]
              for line in answer(first, "TABLE cells")
              if re.match(r" *\d+: ", line[:5]) for row in [line[:3].strip()]}
    for row in sorted(set(old) | set(new), key=int):
        if row not in old or row not in new:
            note("block", f"block {row}", row in old, row in new)
            continue
        if old[row][0] != new[row][0]:
            note("conditions", f"block {row}", old[row][0], new[row][0])
        printed = tables.get(row, [])
        for place, (before, after) in enumerate(zip(old[row][1:], new[row][1:])):
            # Half a unit of the last digit that TABLE, and so WRITE, gives the parameter.
            last = number(printed[place]) if place < len(printed) else None
            digit = last[2] if last else 0.0
            note(cell_change(before, after, digit), f"cell of block {row}", before, after)

    for command in ("TABLE xyz", "TABLE adps"):
        old, new = site_rows(first, command), site_rows(second, command)
        count[f"(rows of {command} compared)"] += len(new)
        for row in sorted(set(old) | set(new), key=lambda key: (key[0], int(key[1]))):
            where = f"{command}, table {row[0]}, block {row[1]}"
            if row not in old or row not in new:
                note("row", where, old.get(row), new.get(row))
                continue
            a, b = old[row], new[row]
            if a[0] != b[0]:
                note("operator number", where, a[0], b[0])
            if a[1] != b[1]:
                note("no label" if (a[1], b[1]) == ("", ".") else "atom", where, a[1], b[1])
            if a[2] != b[2]:
                note("letters" if a[2].upper() == b[2].upper() else "element", where, a[2], b[2])
            for before, after in zip(a[3], b[3]):
                note(kind_of_change(before, after, command == "TABLE xyz"), where, before, after)
            if a[4] != b[4]:
                if command == "TABLE xyz":
                    same = a[4].upper() == b[4].upper()
                    note("letters" if same else "duplicate atoms", where, a[4], b[4])
                else:
                    # U of the site, or as many units as the components of the tensor may lose.
                    digit = digits.get((row[1], a[1]), 0.0)
                    digit += sum(found[2] for found in map(number, a[3]) if found and found[1])
                    for before, after in zip(a[4].split(), b[4].split()):
                        note(iso_change(before, after, digit), where, before, after)


def check(program, path, count, show):
    """One file. Returns the seconds that the first reading and everything behind it took."""
    with tempfile.TemporaryDirectory() as folder:
        os.symlink(os.path.abspath(path), os.path.join(folder, "in.cif"))
        first, seconds = run(program, folder,
                             [line.format("in.cif") for line in READ] + SHOW + ["TABLE cells"] +
                             [line.format("out.cif") for line in CALC])
        if any("No crystal structures were read" in line for line in answer(first, "READ")):
            count["no blocks"] += 1
            return seconds
        if not os.path.exists(os.path.join(folder, "out.cif")):
            raise Trouble("WRITE made no file")
        # Warnings of the first reading have been seen; one of the second is a find.
        second, _ = run(program, folder, [line.format("out.cif") for line in READ] + SHOW)
        if not site_rows(first, "TABLE xyz"):
            count["no atoms"] += 1
        for line in answer(second, "READ"):
            if line.startswith("*****") and "Different numbers of atoms" not in line and \
                    "_atom_site_ not found" not in line and "no atom info" not in line:
                count["warning"] += 1
                show(f"what was written is warned of: {line}")
        compare(first, second, written_digits(os.path.join(folder, "out.cif")), count, show)
        return seconds


def main():
    root, program = sys.argv[1], os.path.abspath(sys.argv[2])
    paths = sorted(os.path.join(folder, name) for folder, _, names in os.walk(root)
                   for name in names if name.lower().endswith(".cif"))
    total = collections.Counter()
    files = collections.Counter()
    bad = 0
    slowest = (0.0, "")
    for path in paths:
        count = collections.Counter()
        shown = []
        try:
            seconds = check(program, path, count, shown.append)
            slowest = max(slowest, (seconds, path))
            if seconds > LONGEST:
                shown.append(f"took {seconds:.1f} s")
        except Trouble as trouble:
            shown.append(str(trouble))
        total.update(count)
        files.update(count.keys())
        if shown:
            bad += 1
            print(f"{path}:")
            for line in shown[:5]:
                print(f"    {line}")
            if len(shown) > 5:
                print(f"    ... and {len(shown) - 5} more")
    print(f"{len(paths)} files, {bad} to look at; "
          f"the slowest took {slowest[0]:.1f} s: {slowest[1]}")
    for kind, number_of in sorted(total.items()):
        print(f"    {kind}: {number_of} in {files[kind]} files" +
              (f" ({STATED[kind]})" if kind in STATED else ""))
    return 1 if bad or not paths else 0


if __name__ == "__main__":
    sys.exit(main())
