#!/usr/bin/python3
"""Angles and their esds against random draws: angle_esds.py PROGRAM, run in a folder that may be
written to. Each structure below is read, calculated and written by the program. Every angle that it
writes is measured again in 64-bit reals, by the operators that gemmi has for the group, in DRAWS
structures whose free coordinates and cell parameters are drawn about their values with their esds.

Where all draws agree, symmetry fixes the angle: it must be printed exactly and without an esd. Any
other must have an esd within 10 percent of the spread of the draws, and half a unit of its last
digit. EXCEPTIONS names what the program's rule leaves out; a line for each structure tells how many
angles were compared, and how far the exceptions are off. The status is 1 if anything else differs."""
import os
import re
import subprocess
import sys

import gemmi
import numpy as np

DRAWS = 20000
FIXED = 1e-4  # degrees: no esd below it

# Name: symbol; a, b, c, alpha, beta, gamma; dmin, dmax; sites. Parameters as published, rounded, or
# close to them.
STRUCTURES = {
    "rutile": ("P 42/m n m", "4.5937(3) 4.5937(3) 2.9587(2) 90 90 90", (1.5, 2.9),
               "Ti1 0 0 0; O1 0.3048(2) 0.3048(2) 0"),
    "anatase": ("I 41/a m d:2", "3.7845(3) 3.7845(3) 9.5143(9) 90 90 90", (1.5, 2.9),
                "Ti1 0 0.25 0.375; O1 0 0.25 0.16686(17)"),
    "spinel": ("F d -3 m:2", "8.0806(4) 8.0806(4) 8.0806(4) 90 90 90", (1.5, 3),
               "Mg1 0.125 0.125 0.125; Al1 0.5 0.5 0.5; O1 0.262(3) 0.262(3) 0.262(3)"),
    "fluorite": ("F m -3 m", "5.4626(4) 5.4626(4) 5.4626(4) 90 90 90", (1.5, 2.9),
                 "Ca1 0 0 0; F1 0.25 0.25 0.25"),
    "perovskite": ("P m -3 m", "3.905(2) 3.905(2) 3.905(2) 90 90 90", (1.5, 2.9),
                   "Sr1 0.5 0.5 0.5; Ti1 0 0 0; O1 0.5 0 0"),
    "perovskite_pnma": ("P n m a", "5.4423(3) 7.6401(5) 5.3796(3) 90 90 90", (1.5, 2.8),
                        "Ca1 0.0360(2) 0.25 0.9929(3); Ti1 0 0 0.5; O1 0.4838(4) 0.25 0.0713(4); "
                        "O2 0.2888(3) 0.0373(2) 0.7109(3)"),
    "K2NiF4": ("I 4/m m m", "4.0117(5) 4.0117(5) 13.076(3) 90 90 90", (1.5, 3),
               "K1 0 0 0.3540(2); Ni1 0 0 0; F1 0 0.5 0; F2 0 0 0.1530(4)"),
    "quartz": ("P 32 2 1", "4.9134(2) 4.9134(2) 5.4052(3) 90 90 120", (1.4, 2.9),
               "Si1 0.4697(2) 0 0.6666667; O1 0.4133(4) 0.2672(4) 0.7856(3)"),
    "calcite": ("R -3 c:H", "4.9896(2) 4.9896(2) 17.0610(11) 90 90 120", (1.2, 2.6),
                "Ca1 0 0 0; C1 0 0 0.25; O1 0.2568(3) 0 0.25"),
    "dolomite": ("R -3:H", "4.8069(2) 4.8069(2) 16.0034(6) 90 90 120", (1.2, 2.6),
                 "Ca1 0 0 0; Mg1 0 0 0.5; C1 0 0 0.24287(5); "
                 "O1 0.24776(7) -0.03527(8) 0.24402(3)"),
    "garnet": ("I a -3 d", "11.4590(5) 11.4590(5) 11.4590(5) 90 90 90", (1.5, 2.6),
               "Mg1 0.125 0 0.25; Al1 0 0 0; Si1 0.375 0 0.25; O1 0.0329(1) 0.0502(1) 0.6534(1)"),
    "zircon": ("I 41/a m d:2", "6.6070(10) 6.6070(10) 5.9820(10) 90 90 90", (1.5, 2.9),
               "Zr1 0 0.75 0.125; Si1 0 0.75 0.625; O1 0 0.0661(4) 0.1953(4)"),
    "corundum": ("R -3 c:H", "4.7589(2) 4.7589(2) 12.9912(6) 90 90 120", (1.5, 2.6),
                 "Al1 0 0 0.35216(4); O1 0.30624(8) 0 0.25"),
    "hcp": ("P 63/m m c", "2.6650(10) 2.6650(10) 4.947(2) 90 90 120", (2, 3),
            "Zn1 0.3333333 0.6666667 0.25"),
    "kyanite": ("P -1", "7.1260(10) 7.8520(10) 5.5720(10) 89.99(2) 101.11(2) 106.03(1)", (1.4, 2.3),
                "Al1 0.3254(2) 0.7040(2) 0.4582(2); Si1 0.2962(2) 0.0649(2) 0.7066(2); "
                "O3 0.2747(3) 0.4545(3) 0.9547(4); O4 0.2831(3) 0.9354(3) 0.9353(4); "
                "O5 0.1084(3) 0.1521(3) 0.6669(4); O6 0.1219(3) 0.6307(3) 0.6389(4); "
                "O7 0.2822(3) 0.4453(3) 0.4288(4); O8 0.2915(3) 0.9467(3) 0.4659(4); "
                "O9 0.5008(3) 0.2749(3) 0.2440(4); O10 0.5015(3) 0.2312(3) 0.7553(4)"),
    "diopside": ("C 1 2/c 1", "9.746(4) 8.899(5) 5.251(6) 90 105.63(6) 90", (1.4, 2.8),
                 "Ca1 0 0.3015(1) 0.25; Mg1 0 0.9082(1) 0.25; Si1 0.2862(1) 0.0933(1) 0.2293(1); "
                 "O1 0.1156(1) 0.0873(2) 0.1422(2); O2 0.3611(1) 0.2500(2) 0.3180(2); "
                 "O3 0.3505(1) 0.0176(2) 0.9953(2)"),
    "forsterite": ("P b n m", "4.7520(3) 10.1930(8) 5.9770(5) 90 90 90", (1.4, 2.4),
                   "Mg1 0 0 0; Mg2 0.9915(3) 0.2774(1) 0.25; Si1 0.4262(2) 0.0940(1) 0.25; "
                   "O1 0.7657(5) 0.0913(2) 0.25; O2 0.2215(5) 0.4474(2) 0.25; "
                   "O3 0.2777(3) 0.1628(2) 0.0331(3)"),
    "scheelite": ("I 41/a:2", "5.2425(5) 5.2425(5) 11.3715(9) 90 90 90", (1.5, 2.7),
                  "Ca1 0 0.25 0.625; W1 0 0.25 0.125; O1 0.1507(4) 0.0086(4) 0.2106(2)"),
    "brucite": ("P -3 m 1", "3.1420(10) 3.1420(10) 4.766(2) 90 90 120", (1.5, 2.9),
                "Mg1 0 0 0; O1 0.3333333 0.6666667 0.2203(6)"),
    "wurtzite": ("P 63 m c", "3.2501(2) 3.2501(2) 5.2071(4) 90 90 120", (1.5, 2.9),
                 "Zn1 0.3333333 0.6666667 0; O1 0.3333333 0.6666667 0.3819(3)"),
    "hexagonal_BaTiO3": ("P 63/m m c", "5.7238(7) 5.7238(7) 13.9649(7) 90 90 120", (1.5, 2.7),
                         "Ti1 0 0 0; Ti2 0.3333333 0.6666667 0.8463(1); "
                         "O1 0.5185(2) 0.0370(4) 0.25; O2 0.8349(1) 0.6698(2) 0.0802(1)"),
    "pyrite": ("P a -3", "5.4166(3) 5.4166(3) 5.4166(3) 90 90 90", (1.9, 2.6),
               "Fe1 0 0 0; S1 0.3849(2) 0.3849(2) 0.3849(2)"),
    "calcite_rhombohedral": ("R -3 c:R", "6.3753(8) 6.3753(8) 6.3753(8) 46.078(8) 46.078(8) "
                             "46.078(8)", (1.2, 2.6),
                             "Ca1 0 0 0; C1 0.25 0.25 0.25; O1 0.5068(3) -0.0068(3) 0.25"),
}

# Structures or kinds of angles that the rule leaves something out of.
RHOMBOHEDRAL = {"calcite_rhombohedral"}
EXCEPTIONS = {
    "own image": "apex and second end are tied as apex and first end are",
    "rhombohedral axes": "the cell angle has no term",
}


def number(text):
    """Value, esd and decimals of 1.234(5)."""
    value, decimals, esd = re.fullmatch(r"(-?\d*(?:\.(\d*))?)(?:\((\d+)\))?", text).groups()
    decimals = len(decimals or "")
    return float(value), int(esd or 0) / 10**decimals, decimals


def cif(name, symbol, cell, sites):
    names = ["length_a", "length_b", "length_c", "angle_alpha", "angle_beta", "angle_gamma"]
    lines = [f"data_{name}", f"_symmetry_space_group_name_H-M '{symbol}'"]
    lines += [f"_cell_{n} {v}" for n, v in zip(names, cell.split())]
    lines += ["loop_", " _atom_site_label", " _atom_site_fract_x", " _atom_site_fract_y",
              " _atom_site_fract_z"] + [site.strip() for site in sites.split(";")]
    return "\n".join(lines) + "\n"


def operators(symbol):
    return [(np.array(op.rot) / op.DEN, np.array(op.tran) / op.DEN)
            for op in gemmi.find_spacegroup_by_name(symbol).operations()]


def free_directions(x, ops):
    """Rows of independent directions in which the site may move, each with a pivot coordinate of 1."""
    stabiliser = []
    for rot, tran in ops:
        shift = rot @ x + tran - x
        if np.all(np.abs(shift - np.round(shift)) < 4e-4):
            stabiliser.append(rot)
    rows = np.mean(stabiliser, axis=0).T.copy()  # rows span what the site allows
    pivots = []
    for column in range(3):
        row = len(pivots)
        best = row + int(np.argmax(np.abs(rows[row:, column]))) if row < 3 else 3
        if best > 2 or abs(rows[best, column]) < 1e-6:
            continue
        rows[[row, best]] = rows[[best, row]]
        rows[row] /= rows[row, column]
        for other in range(3):
            if other != row:
                rows[other] -= rows[other, column] * rows[row]
        pivots.append(column)
    return rows[:len(pivots)], pivots


def drawn_sites(sites, ops, random):
    """Positions of each site, DRAWS by 3; the first is the one of the file."""
    drawn = {}
    for site in sites.split(";"):
        label, *texts = site.split()
        x = np.array([number(t)[0] for t in texts]) % 1  # as the program keeps it
        esds = [number(t)[1] for t in texts]
        directions, pivots = free_directions(x, ops)
        parameters = random.normal(size=(DRAWS, len(pivots))) * [esds[p] for p in pivots]
        parameters[0] = 0
        drawn[label] = x + parameters @ directions
    return drawn


def drawn_metrics(symbol, cell, random):
    """Metric tensors, DRAWS by 3 by 3."""
    system = gemmi.find_spacegroup_by_name(symbol).crystal_system_str()
    values = np.array([number(t)[0] for t in cell.split()])
    esds = np.array([number(t)[1] for t in cell.split()])
    noise = random.normal(size=(DRAWS, 6)) * esds
    noise[0] = 0
    if symbol.endswith(":R") or system == "cubic":
        noise[:, 1] = noise[:, 2] = noise[:, 0]
        noise[:, 4] = noise[:, 5] = noise[:, 3]
    elif system in ("tetragonal", "trigonal", "hexagonal"):
        noise[:, 1] = noise[:, 0]
    p = values + noise
    cosines = np.cos(np.radians(p[:, 3:]))
    g = np.empty((DRAWS, 3, 3))
    for i in range(3):
        g[:, i, i] = p[:, i] ** 2
    for (i, j), k in {(1, 2): 0, (0, 2): 1, (0, 1): 2}.items():
        g[:, i, j] = g[:, j, i] = p[:, i] * p[:, j] * cosines[:, k]
    return g


def placed(x, code, listed):
    """Image of the positions under a symmetry code of the file."""
    if code in (".", "?", "1_555"):
        return x
    op, cells = code.split("_")
    rot, tran = listed[int(op) - 1]
    return x @ rot.T + tran + (np.array([int(c) for c in cells]) - 5)


def angles(v1, v2, g):
    g_v1 = np.einsum("nij,nj->ni", g, v1)
    g_v2 = np.einsum("nij,nj->ni", g, v2)
    product = np.einsum("ni,ni->n", v1, g_v2)
    lengths = np.einsum("ni,ni->n", v1, g_v1) * np.einsum("ni,ni->n", v2, g_v2)
    return np.degrees(np.arccos(np.clip(product / np.sqrt(lengths), -1, 1)))


def written(program, name, dmin, dmax):
    """The block that the program writes, with all angles."""
    macro = ["SET exclude", "Y", "Y", "Y", "Y", f"READ cif {name}.cif", "Y", "CALC polyhedra",
             f"{dmin} {dmax}", "0", f"WRITE cif {name}_out.cif", "Y", "Y", "Y", "", "EXIT", ""]
    if os.path.exists(name + "_out.cif"):
        os.remove(name + "_out.cif")  # WRITE would add to it
    with open(name + ".mcr", "w") as file:
        file.write("\n".join(macro))
    run = subprocess.run([program, "./" + name + ".mcr"], stdin=subprocess.DEVNULL,
                         capture_output=True, text=True, timeout=120)
    if not os.path.exists(name + "_out.cif"):
        sys.exit(name + " was not written:\n" + run.stdout)
    return gemmi.cif.read(name + "_out.cif").sole_block()


def judge(program, name, random):
    symbol, cell, (dmin, dmax), sites = STRUCTURES[name]
    with open(name + ".cif", "w") as file:
        file.write(cif(name, symbol, cell, sites))
    block = written(program, name, dmin, dmax)
    ops = operators(symbol)
    listed = []
    for text in block.find_values("_space_group_symop_operation_xyz"):
        op = gemmi.Op(gemmi.cif.as_string(text))
        listed.append((np.array(op.rot) / op.DEN, np.array(op.tran) / op.DEN))
    x = drawn_sites(sites, ops, random)
    g = drawn_metrics(symbol, cell, random)
    table = block.find("_geom_angle_", ["atom_site_label_1", "atom_site_label_2",
                                        "atom_site_label_3", "site_symmetry_1", "site_symmetry_2",
                                        "site_symmetry_3"])
    values = block.find_values("_geom_angle")
    fixed = free = 0
    off = {kind: [] for kind in EXCEPTIONS}
    worst = 0.0
    wrong = []
    for row, text in zip(table, values):
        labels = [gemmi.cif.as_string(row[k]) for k in range(3)]
        first, apex, second = (placed(x[labels[k]], row[3 + k], listed) for k in range(3))
        found = angles(first - apex, second - apex, g)
        straight = found[0] > 179.9999
        spread = np.sqrt(np.mean((found - found[0]) ** 2)) if straight else np.std(found)
        value, esd, decimals = number(text)
        unit = 10.0**-decimals
        what = f"{name} {' '.join(row)} {text}: {found[0]:.5f} with a spread of {spread:.5f}"
        if abs(value - found[0]) > max(0.6 * unit, 1e-4 if straight else 6e-5):
            wrong.append(what)
        elif spread < 0.5 * FIXED:
            fixed += 1
            if esd:
                wrong.append(what)
        elif spread > 2 * FIXED:
            kind = ("rhombohedral axes" if name in RHOMBOHEDRAL else
                    "own image" if labels[1] in (labels[0], labels[2]) else None)
            digits = round(esd / unit)
            beyond = max((digits - 0.9) * unit - spread, spread - (digits + 0.1) * unit, 0) / spread
            near = esd > 0 and beyond <= 0.1
            if kind and not near:
                off[kind].append(esd / spread)
                continue
            free += 1
            worst = max(worst, beyond)
            if not near:
                wrong.append(what)
    told = "".join(f"; {kind}: {len(r)} off, {min(r):.2f} to {max(r):.2f} of the spread"
                   for kind, r in off.items() if r)
    print(f"{name}: {fixed} fixed, {free} free, at most {100 * worst:.1f} percent off{told}")
    if not fixed + free:
        wrong.append(name + ": no angles")
    return wrong, fixed, free


def main():
    random = np.random.default_rng(20261122)
    judged = [judge(sys.argv[1], name, random) for name in STRUCTURES]
    wrong = [what for some, _, _ in judged for what in some]
    fixed, free = (sum(counts) for counts in list(zip(*judged))[1:])
    print("\n".join(wrong + [f"{fixed} fixed, {free} free, {len(wrong)} differ"]))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
