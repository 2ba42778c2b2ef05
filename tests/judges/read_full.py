#!/usr/bin/python3
"""Holds READ full against gemmi, and the check behind READ cif against both readings.

    read_full.py READINGS FILE_OR_FOLDER...

READINGS is build/tests/readings (cmake --build build --target readings). Every CIF of the folders
is read by the full reader, the plain reader and gemmi. Of each block that gemmi takes for a
structure, cell, operators (as sets), labels, elements, charges of type symbols, positions,
occupancies, displacements, temperature and pressure are compared. What differs is printed with the
name of the exception that covers it, where one does; the other differences make the script fail.
"""
import collections
import math
import os
import subprocess
import sys

import gemmi

# Where the full reader is meant to read otherwise than gemmi, by the name that the report shows.
EXCEPTIONS = {
    "gemmi-fails": "gemmi gives up a file with a syntax error, the full reader tells it and goes on",
    "no-position": "sites without coordinates, or with the flag dum, are left out and told",
    "fraction": "coordinates such as 1/3 are read, gemmi has none",
    "broken-esd": "a number with a broken esd is read without it, gemmi has none",
    "no-element": "a label or symbol that begins with an element is read as it, gemmi has X",
    "no-symmetry": "gemmi has no operators and finds no group for the symbol",
    "rhombohedral": "an R symbol without axes over a rhombohedral cell has these axes",
    "beta": "gemmi does not read displacements given as B or beta",
    "same-label": "displacements of sites with one label go to these sites in turn",
    "B": "gemmi does not read B where the loop has a column for U",
}

SAME = 2e-6  # of a value: gemmi has 64-bit reals, the records have 32-bit ones


def number(text):
    """The text of a CIF value as gemmi reads it, None without a value."""
    value = gemmi.cif.as_number(text)
    return None if math.isnan(value) else value


def alike(a, b, floor=1e-9):
    return abs(a - b) <= SAME * max(abs(a), abs(b)) + floor


def same_numbers(a, b):
    return len(a) == len(b) and all(alike(x, y) for x, y in zip(a, b))


# ---- the readings of the program ----

def blocks_of(reader, lines):
    """Blocks of one reader: dicts of the items that it printed."""
    blocks = []
    for line in lines:
        if not line.startswith(reader + "\t"):
            continue
        _, kind, *items = line.split("\t")
        if kind in ("block", "unread"):
            blocks.append({"title": items[0], "kind": kind, "told": [], "sites": [],
                           "status": "".join(items[1:])})
        elif kind == "told":
            blocks[-1]["told"].append(items[0])
        elif kind == "site":
            numbers = [float(x) for x in items[2:12]]
            blocks[-1]["sites"].append({
                "label": items[0], "element": items[1], "charge": numbers[0],
                "x": numbers[1:4], "occ": numbers[7], "u": numbers[8], "b": numbers[9],
                "form": items[12], "tensor": [float(x) for x in items[13:19]]})
        elif kind == "group":
            blocks[-1]["symbol"] = items[0]
            blocks[-1]["operators"] = items[1:]
        else:
            blocks[-1][kind] = [float(x) for x in items]
    return blocks


def readings(program, names):
    """Per file: blocks of the full reader, blocks of the plain one, lines for the user."""
    said = subprocess.run([program], input="\n".join(names) + "\n", capture_output=True,
                          check=True, encoding="utf-8", errors="replace").stdout
    files = {}
    for part in ("\n" + said).split("\nfile\t")[1:]:
        lines = part.split("\n")
        name = lines[0].split("\t")[0]
        told = [line for line in lines[1:] if line.startswith("*****")]
        files[name] = (blocks_of("full", lines[1:]), blocks_of("plain", lines[1:]), told)
    return files


# ---- gemmi's reading ----

def operator_set(texts):
    """Set of operators, translations in 24ths."""
    return {gemmi.Op("x,y,z").wrap()} | {gemmi.Op(text).wrap() for text in texts}


def closed(operators, most=200):
    """The group of the operators, or what of it was found when there are more than most."""
    group = set(operators)
    fresh = set(operators)
    while fresh and len(group) <= most:
        fresh = {(a * b).wrap() for a in fresh for b in group} - group
        group |= fresh
    return group


NAMES_OF_OPERATORS = ("_space_group_symop_operation_xyz", "_symmetry_equiv_pos_as_xyz",
                      "_space_group_symop.operation_xyz", "_symmetry_equiv_as_xyz")


def gemmi_has_operators(block):
    return any(len(block.find_values(name)) > 0 for name in NAMES_OF_OPERATORS)


def gemmi_operators(block):
    for name in NAMES_OF_OPERATORS:
        texts = [gemmi.cif.as_string(text) for text in block.find_values(name)]
        texts = [text for text in texts if text not in ("?", ".", "")]
        if texts:
            return operator_set(texts)
    for name in ("_space_group_name_Hall", "_symmetry_space_group_name_Hall"):
        text = gemmi.cif.as_string(block.find_value(name) or "?")
        if text:
            try:
                return {op.wrap() for op in gemmi.symops_from_hall(text)}
            except (RuntimeError, ValueError):
                pass
    for name in ("_space_group_name_H-M_alt", "_symmetry_space_group_name_H-M"):
        text = gemmi.cif.as_string(block.find_value(name) or "?")
        group = gemmi.find_spacegroup_by_name(text) if text else None
        if group:
            if group.ext == "1" and ":" not in text:  # the second origin, where none is chosen
                group = gemmi.find_spacegroup_by_name(group.hm + ":2") or group
            return operator_set([op.triplet() for op in group.operations()])
    return None


def first_number(block, names):
    for name in names:
        value = number(block.find_value(name) or "?")
        if value is not None:
            return value
    return 0.0


def tensors(block):
    """Rows of displacements in the file by label: whether there are several of one label."""
    labels = [gemmi.cif.as_string(t) for t in block.find_values("_atom_site_aniso_label")]
    return collections.Counter(labels)


# ---- comparing ----

def compare_site(ours, theirs, told):
    """Yields (what, exception or None) for each item that differs."""
    if ours["label"] != gemmi_label(theirs):
        yield "label %s %s" % (ours["label"], theirs.label), None
    fract = [theirs.fract.x, theirs.fract.y, theirs.fract.z]
    if not same_numbers(ours["x"], fract):
        broken = any(math.isnan(x) for x in fract)
        yield "position of " + ours["label"], "fraction" if broken else None
    if not alike(ours["occ"], theirs.occ):
        yield "occupancy of " + ours["label"], None
    element = theirs.element.name
    if element.lower() != ours["element"].lower():
        yield ("element of %s: %s, gemmi %s" % (ours["label"], ours["element"], element),
               "no-element" if element == "X" else None)
    if theirs.charge != 0 and not alike(ours["charge"], theirs.charge):
        yield "charge of " + ours["label"], None
    yield from compare_displacement(ours, theirs)


def gemmi_label(site):
    return site.label[:20]


def compare_displacement(ours, theirs):
    aniso = theirs.aniso
    u = [aniso.u11, aniso.u22, aniso.u33, aniso.u12, aniso.u13, aniso.u23]
    if ours["form"] == "u_ij":
        if not same_numbers(ours["tensor"], u):
            yield ("displacement of " + ours["label"],
                   "beta" if not any(u) else None)
    elif ours["form"] == "isotr":
        if any(u):
            yield "displacement of " + ours["label"], None
        iso = ours["u"] if ours["u"] else ours["b"] / (8 * math.pi ** 2)
        if not alike(iso, theirs.u_iso, 1e-8):
            yield "U of %s: %g, gemmi %g" % (ours["label"], iso, theirs.u_iso), (
                "B" if theirs.u_iso == 0 else None)


def same_group(theirs, ours):
    return theirs == ours or closed(theirs) == ours


def compare_block(ours, block):
    """Yields (what, exception or None)."""
    theirs = gemmi.make_small_structure_from_block(block)
    cell = theirs.cell
    if not same_numbers(ours["cell"][:6], [cell.a, cell.b, cell.c, cell.alpha, cell.beta,
                                           cell.gamma]):
        yield "cell", None
    try:
        operators = gemmi_operators(block)
    except (RuntimeError, ValueError) as fault:
        operators = None
        print("    gemmi:", fault)
    if operators is None:
        yield "symmetry " + ours["symbol"], "no-symmetry"
    elif not same_group(operators, operator_set(ours["operators"])):
        rhombohedral = ours["symbol"].endswith(":r") and not gemmi_has_operators(block)
        yield "operators of " + ours["symbol"], "rhombohedral" if rhombohedral else None
    t = first_number(block, ("_diffrn_ambient_temperature", "_cell_measurement_temperature"))
    p = first_number(block, ("_diffrn_ambient_pressure", "_cell_measurement_pressure")) * 1e-6
    if not alike(ours["conditions"][0], t):
        yield "temperature", None
    if not alike(ours["conditions"][1], p):
        yield "pressure", None
    yield from compare_sites(ours, theirs, block)


def compare_sites(ours, theirs, block):
    sites = list(theirs.sites)
    if len(sites) != len(ours["sites"]):
        flags = [gemmi.cif.as_string(x) for x in block.find_values("_atom_site_calc_flag")]
        if len(flags) == len(sites):
            sites = [site for site, flag in zip(sites, flags) if flag != "dum"]
        sites = [site for site in sites if not math.isnan(site.fract.x + site.fract.y +
                                                          site.fract.z)]
        yield ("%d sites, gemmi %d" % (len(ours["sites"]), len(theirs.sites)),
               "no-position" if len(sites) == len(ours["sites"]) else None)
        if len(sites) != len(ours["sites"]):
            return
    same = any(n > 1 for n in tensors(block).values())
    for mine, other in zip(ours["sites"], sites):
        for what, exception in compare_site(mine, other, ours["told"]):
            if what.startswith("displacement") and same and exception is None:
                exception = "same-label"
            yield what, exception


def plain_text(name):
    """The file with LF for the line ends CR and without a byte order mark, which gemmi does not read."""
    with open(name, encoding="utf-8", errors="replace") as file:  # CR and CR LF become LF
        return file.read().removeprefix("\ufeff")


def is_structure(block):
    try:
        theirs = gemmi.make_small_structure_from_block(block)
    except RuntimeError:  # angles of 0 or 180 degrees
        return False
    return theirs.cell.is_crystal() and theirs.cell.volume > 1e-3 and any(
        not math.isnan(site.fract.x) for site in theirs.sites)


def judge_full(name, ours, counts):
    """Compares all blocks of one file; True when nothing is unexplained."""
    read = [block for block in ours if block["kind"] == "block"]
    try:
        document = gemmi.cif.read_string(plain_text(name))
    except (RuntimeError, ValueError) as fault:
        told = any(block["told"] or block["kind"] == "unread" for block in ours)
        counts["gemmi-fails" if told or not ours else "GEMMI FAILS, NOTHING TOLD"] += 1
        if not told:
            print("%s: gemmi: %s" % (name, fault))
        return
    theirs = [block for block in document if is_structure(block)]
    if len(theirs) != len(read):
        counts["BLOCKS"] += 1
        print("%s: %d structures, gemmi %d" % (name, len(read), len(theirs)))
        return
    for mine, other in zip(read, theirs):
        found = list(compare_block(mine, other))
        unexplained = [what for what, exception in found if exception is None]
        explained = {exception for _, exception in found if exception}
        if unexplained:
            counts["DIFFERENT"] += 1
            print("%s %s: %s%s" % (name, mine["title"], "; ".join(unexplained[:4]),
                                   " (told: %s)" % mine["told"] if mine["told"] else ""))
        elif explained:
            for exception in explained:
                counts["exception " + exception] += 1
        else:
            counts["exact"] += 1


# ---- the check behind READ cif ----

PARTS = ("cell", "space group", "sites", "positions", "elements", "occupancies", "displacements",
         "temperature", "pressure", "charges")


def same_real(a, b):
    return a == b or abs(a - b) <= 4e-7 * max(abs(a), abs(b))


def same_reals(a, b):
    return all(same_real(x, y) for x, y in zip(a, b))


def same_displacement(a, b):
    if a["form"] != b["form"]:
        return False
    if a["form"] != "isotr":
        return same_reals(a["tensor"], b["tensor"])
    iso = [site["u"] if site["u"] else site["b"] / 78.9568352 for site in (a, b)]
    return same_real(*iso)


def parts_that_differ(full, plain):
    """What the check has to tell of a block, worked out from the two readings."""
    parts = set()
    if not same_reals(full["cell"][:6], plain["cell"][:6]):
        parts.add("cell")
    if set(full["operators"]) != set(plain["operators"]):
        parts.add("space group")
    usual = (298.0, 0.0001)
    for what, k in (("temperature", 0), ("pressure", 1)):
        values = [block["conditions"][k] or usual[k] for block in (full, plain)]
        if not same_real(*values):
            parts.add(what)
    if len(full["sites"]) != len(plain["sites"]):
        return parts | {"sites"}
    for a, b in zip(full["sites"], plain["sites"]):
        for what, same in (("positions", same_reals(a["x"], b["x"])),
                           ("elements", a["element"] == b["element"]),
                           ("occupancies", same_real(a["occ"], b["occ"] or 1.0)),
                           ("displacements", same_displacement(a, b)),
                           ("charges", same_real(a["charge"], b["charge"]))):
            if not same:
                parts.add(what)
    return parts


def judge_check(name, full, plain, told, counts):
    """Every block of the plain reader must be warned of exactly when the two readings differ."""
    by_title = {block["title"]: block for block in full if block["kind"] == "block"}
    for number, block in enumerate(plain, 1):
        other = by_title.get(block["title"])
        if other is None:
            continue
        expected = parts_that_differ(other, block)
        start = "Block #%3d %s: READ full reads " % (number, block["title"])
        lines = [line.split("READ full reads ", 1)[1] for line in told if start in line]
        said = {part for part in PARTS if lines and part in lines[0]}
        if len(lines) > 1 or said != expected:
            kind = "false" if said - expected else "missed"
            counts["check " + kind] += 1
            print("%s #%d: the check says %s, the readings differ in %s" %
                  (name, number, sorted(said), sorted(expected)))
        else:
            counts["check right, " + ("warns" if expected else "silent")] += 1


def cifs_below(places):
    """Sorted names of the CIFs among some files and below some folders."""
    names = []
    for place in places:
        if os.path.isfile(place):
            names.append(place)
        for folder, _, files in os.walk(place):
            names += [os.path.join(folder, f) for f in files if f.lower().endswith(".cif")]
    return sorted(names)


def main():
    program, *places = sys.argv[1:]
    counts = collections.Counter()
    for name, (full, plain, told) in readings(program, cifs_below(places)).items():
        judge_full(name, full, counts)
        judge_check(name, full, plain, told, counts)
    for what, count in sorted(counts.items()):
        note = EXCEPTIONS.get(what.replace("exception ", ""), "")
        print("%6d  %s%s" % (count, what, ": " + note if note else ""))
    bad = [what for what in counts if what.isupper() or what in ("check false", "check missed")]
    sys.exit(1 if bad else 0)


if __name__ == "__main__":
    main()
