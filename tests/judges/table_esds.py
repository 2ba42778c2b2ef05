#!/usr/bin/env python3
"""table_esds.py PROGRAM: the esds of the tables against 20,000 draws of the free parameters, or DRAWS
of the environment.

The structures of measure_structures.py, with displacements, each read twice: as it is, and with all
its sites at other images, which a series may have. CSV gives every value that has an esd: cells,
coordinates, displacements, bonds, angles, edges, volumes, valences and their sums; WRITE that of
Ueq. MEASURE adds what measure_structures.py has not: T, P, Ueq, numbers with esds, functions, rows
of the tables, and quotients of two blocks, each by full propagation. Where all draws agree there
must be no esd; any other must be within 3.5 percent of the spread, or more where there are fewer
draws. What the manual says to be otherwise is held to what it says:
volumes of cells and sums of valences follow its formulas, what stands on rhombohedral axes is
counted apart. Lines and parabolas of FIT through cells, with esds of the pressures, are held against
fits of as many draws of all points. Runs in the current folder. Status 1 when any differs, 77
without numpy or gemmi.
"""
import csv
import os
import re
import subprocess
import sys

try:
    import gemmi
    import numpy as np
except ImportError:
    sys.exit(77)
import measure_geometry
import measure_structures
from angle_esds import free_directions, number

DRAWS = int(os.environ.get("DRAWS", "20000"))
NEAR = 0.035 * (20000 / DRAWS) ** 0.5  # an esd may be off by so much; the draws alone make two thirds
MEASURES = {  # of a site M with bonds; what stands for them in the draws of a block
    "m_uiso": ("uiso({M})", lambda j: j.u_eq(j.site)),
    "m_bond": ("bond({M}, 1)", lambda j: j.length(0)),
    "m_angle": ("angle({M}, 1, 2)", lambda j: j.angle(0, 1)),
    "m_edge": ("edge({M}, 1, 2)", lambda j: j.edge(0, 1)),
    "m_t_p": ("T/P", lambda j: j.block.t / j.block.p),
    "m_number": ("5.0347(4) - 2.5*bond({M}, 1)", lambda j: j.number - 2.5 * j.length(0)),
    "m_number_2": ("5.0347(4)*V/ref(V)", lambda j: j.number * j.volume() / j.first.volume()),
    "m_ref": ("bond({M}, 1)/ref(edge({M}, 1, 2))", lambda j: j.length(0) / j.first.edge(0, 1)),
    "m_functions": ("exp(bond({M}, 1)/2) + log(c) - sqrt(abs(-a)) + a^1.5", lambda j: np.exp(
        j.length(0) / 2) + np.log(j.cell(2)) - np.sqrt(j.cell(0)) + j.cell(0) ** 1.5),
    "m_circular": ("asin(bond({M}, 1)/5) + acos(a/40) + atan(c/a) + 10*tan(angle({M}, 1, 2)/3)",
                   lambda j: np.degrees(np.arcsin(j.length(0) / 5) + np.arccos(j.cell(0) / 40)
                                        + np.arctan(j.cell(2) / j.cell(0)))
                   + 10 * np.tan(np.radians(j.angle(0, 1) / 3))),
    "m_least": ("min(bond({M}, 1), a) + max(T, 1)*cos(60)", lambda j: j.length(0) + j.block.t / 2),
}
CELL = ["a", "b", "c", "alpha", "beta", "gamma"]
B = 0.37  # of all pairs here, by Brown and Altermatt (1985)
PAIRS = [(0, 0), (1, 1), (2, 2), (0, 1), (0, 2), (1, 2)]  # of a tensor, as a CIF has them
KINDS = {}  # what was compared, how often, and the worst
WRONG = []


def operators_of(symbol):
    group = gemmi.find_spacegroup_by_name(symbol.replace(" :", ":"))
    return [(np.array(op.rot) / op.DEN, np.array(op.tran) / op.DEN) for op in group.operations()]


def stabiliser(x, operators):
    shifts = [(rotation, rotation @ x + shift - x) for rotation, shift in operators]
    return [rotation for rotation, s in shifts if np.all(np.abs(s - np.round(s)) < 4e-4)]


def reciprocal(cell):
    a, b, c, al, be, ga = cell
    ca, cb, cg = np.cos(np.radians([al, be, ga]))
    metric = np.array([[a * a, a * b * cg, a * c * cb], [a * b * cg, b * b, b * c * ca],
                       [a * c * cb, b * c * ca, c * c]])
    return metric, np.sqrt(np.diag(np.linalg.inv(metric)))


def turned(tensor, rotation, lengths):
    """Tensors U of draws at another image."""
    scale = np.outer(lengths, lengths)
    return np.einsum("ij,njk,lk->nil", rotation, tensor * scale, rotation) / scale


def drawn_tensors(x, operators, lengths, usual, esds, random):
    """U of a site in DRAWS + 1 draws, whose free components are drawn with their esds."""
    rows = []
    for i, j in PAIRS:
        unit = np.zeros((1, 3, 3))
        unit[0, i, j] = unit[0, j, i] = 1.0
        images = [turned(unit, rotation, lengths)[0] for rotation in stabiliser(x, operators)]
        rows.append([np.mean(images, axis=0)[p] for p in PAIRS])
    rows = np.array(rows)
    free, pivots = [], []
    for column in range(6):
        best = max(range(6), key=lambda r: abs(rows[r, column]))
        if abs(rows[best, column]) < 1e-6:
            continue
        row = rows[best] / rows[best, column]
        rows = rows - np.outer(rows[:, column], row)
        free = [f - f[column] * row for f in free] + [row]
        pivots.append(column)
    noise = np.vstack([np.zeros(len(pivots)), random.standard_normal((DRAWS, len(pivots)))])
    six = (usual[pivots] + noise * esds[pivots]) @ np.array(free)
    tensors = np.empty((DRAWS + 1, 3, 3))
    for k, (i, j) in enumerate(PAIRS):
        tensors[:, i, j] = tensors[:, j, i] = six[:, k]
    return tensors


def drawn_site(x, operators, esds, random):
    """A reader sees esds alone: of the coordinates each that is free is a parameter."""
    rows, pivots = free_directions(x, operators)
    noise = np.vstack([np.zeros(len(pivots)), random.standard_normal((DRAWS, len(pivots)))])
    return x + (noise * esds[pivots]) @ rows if pivots else x + np.zeros((DRAWS + 1, 3))


def text_of(draws):
    """Value and esd with six digits of it, so that nothing is lost by rounding."""
    esd = np.std(draws[1:])
    if esd < 1e-9:
        return f"{draws[0]:.9f}"
    return f"{draws[0]:.9f}({round(esd * 1e9)})"


class Block:
    """A structure with its sites at images by one of its operators, in all draws."""

    def __init__(self, structure, image):
        self.structure = structure
        self.operators = operators_of(structure[1])
        self.draws = measure_geometry.Draws(structure, DRAWS, 7 + image)
        metric, self.lengths = reciprocal(self.draws.cell[0])
        self.metric = metric
        random = np.random.default_rng(11 + image)
        self.t, self.p = (mean + esd * np.append(0, random.standard_normal(DRAWS))
                          for mean, esd in ((301.0 + image, 0.9), (2.5, 0.02)))
        rotation, shift = self.operators[image % len(self.operators)]
        back = np.linalg.inv(rotation)
        self.file_sites, self.file_tensors, self.sites, self.tensors = {}, {}, {}, {}
        for number, (label, first) in enumerate(self.draws.sites.items()):
            moved = first @ rotation.T + shift
            cells = np.floor(moved[0] + 1e-7)
            x = drawn_site(moved[0] - cells, self.operators, np.std(moved[1:], axis=0), random)
            usual = np.array([80, 95, 70, 12, -15, 8]) * 1e-4 * (1 + 0.1 * number)
            esds = np.array([4, 5, 3, 3, 4, 2]) * 1e-4
            tensors = drawn_tensors(first[0], self.operators, self.lengths, usual, esds, random)
            six = np.array([turned(tensors, rotation, self.lengths)[:, i, j] for i, j in PAIRS])
            tensors = drawn_tensors(x[0], self.operators, self.lengths, six[:, 0],
                                    np.std(six[:, 1:], axis=1), random)
            self.file_sites[label], self.file_tensors[label] = x, tensors
            # Where the tables show them: near the site of the first block.
            self.sites[label] = (x + cells - shift) @ back.T - np.floor(first[0] + 1e-7)
            self.tensors[label] = turned(tensors, back, self.lengths)

    def cif(self):
        name, symbol = self.structure[:2]
        lines = [f"data_{name}", f"_diffrn_ambient_temperature {text_of(self.t)}",
                 f"_diffrn_ambient_pressure {text_of(1e6 * self.p)}"]
        for item, parameter in zip(["length_a", "length_b", "length_c", "angle_alpha", "angle_beta",
                                    "angle_gamma"], self.draws.cell.T):
            lines.append(f"_cell_{item} {text_of(parameter)}")
        lines += ["loop_", "_symmetry_equiv_pos_as_xyz"]
        group = gemmi.find_spacegroup_by_name(symbol.replace(" :", ":"))
        lines += [f"'{op.triplet()}'" for op in group.operations()]
        lines += ["loop_", "_atom_site_label", "_atom_site_type_symbol", "_atom_site_fract_x",
                  "_atom_site_fract_y", "_atom_site_fract_z"]
        for label, x in self.file_sites.items():
            symbol = measure_structures.CHARGES[measure_structures.element(label)]
            lines.append(f"{label} {symbol} " + " ".join(map(text_of, x.T)))
        lines += ["loop_", "_atom_site_aniso_label"]
        lines += [f"_atom_site_aniso_U_{i + 1}{j + 1}" for i, j in PAIRS]
        for label, tensors in self.file_tensors.items():
            lines.append(label + " " + " ".join(text_of(tensors[:, i, j]) for i, j in PAIRS))
        return "\n".join(lines) + "\n"


def measured_site(structure):
    return next(label for label, _, _ in structure[4] if measure_structures.element(label) != "O")


def run(program, structure, blocks):
    name, dmax = structure[0], structure[3]
    for number, block in enumerate(blocks, 1):
        with open(f"{name}_{number}.cif", "w") as file:
            file.write(block.cif())
    for made in (f"{name}_out.cif", f"{name}.csv"):
        if os.path.exists(made):
            os.remove(made)
    lines = [f"READ full {name}_1.cif {name}_2.cif", "Y", "CALC polyhedra", f"0.5 {dmax}", "0",
             "CALC valences", "N", "0"]
    site = measured_site(structure)
    lines += [f"MEASURE {name} = {text.format(M=site)}" for name, (text, _) in MEASURES.items()]
    lines += [f"CSV all {name}.csv", f"WRITE cif {name}_out.cif", "Y", "N"]
    with open(f"{name}.mcr", "w") as macro:
        macro.write("\n".join(lines + [""] * 40 + ["EXIT", ""]))
    subprocess.run([program, f"./{name}.mcr"], check=True, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL)
    with open(f"{name}.csv", encoding="utf-8") as sheet:
        return list(csv.DictReader(sheet)), gemmi.cif.read(f"{name}_out.cif")


class Judge:
    """Values of a block by numpy, at the codes that the program gives."""

    def __init__(self, block, operators, first=None):
        self.block = block
        self.operators = [measure_geometry.operator(text) for text in operators]
        self.first = first or self  # of the reference block
        self.bonds = {}
        self.site = measured_site(block.structure)
        self.number = 5.0347 + 0.0004 * np.append(0, np.random.default_rng(3).standard_normal(DRAWS))

    def point(self, label, code="1_555"):
        number, cells = code.split("_")
        rotation, shift = self.operators[int(number) - 1]
        shift = shift + np.array([int(c) - 5 for c in cells])
        return self.block.draws.cartesian(self.block.sites[label] @ rotation.T + shift)

    def cell(self, k):
        return self.block.draws.cell[:, k]

    def volume(self):
        return np.linalg.det(self.block.draws.frame)

    def length(self, k):
        return measure_geometry.norm(self.bonds[self.site][k])

    def angle(self, k, l):
        return measure_geometry.angle_between(self.bonds[self.site][k], self.bonds[self.site][l])

    def edge(self, k, l):
        return measure_geometry.norm(self.bonds[self.site][k] - self.bonds[self.site][l])

    def u_eq(self, label):
        tensor = self.block.tensors[label] * np.outer(self.block.lengths, self.block.lengths)
        return (tensor * self.block.metric).sum((1, 2)) / 3


def compare(kind, what, value, esd, draws, apart=None):
    """The first draw is the value. apart: the kind under which a difference of esds is counted alone."""
    spread = np.std(draws[1:])
    none = 1e-4 if kind == "angles" else 2e-7
    count = KINDS.setdefault(kind, [0, 0, 0.0])
    count[0] += 1
    if abs(value - draws[0]) > 2e-5 * abs(draws[0]) + 1e-5:
        return WRONG.append(f"{what}: {value}, numpy {draws[0]}")
    if esd == 0 and spread < none:
        count[1] += 1
        return None
    off = abs(esd / spread - 1) if spread > 0 else 9.9
    if off > NEAR:
        if apart:
            KINDS.setdefault(apart, [0, 0, 0.0])[0] += 1
        else:
            WRONG.append(f"{what}: {value} with {esd}, the draws have {spread}")
    else:
        count[2] = max(count[2], off)
    return None


def ends_of(feature):
    """Labels of Fe1-O1[1], O1-Fe1-O1[1,2] and Fe1:O1-O1[1,2]."""
    return re.split("[-:]", feature.split("[")[0])


def judge_volume(judge, what, value, esd):
    """The manual's formula: lengths are apart, and D stands where first order has its square."""
    draws = judge.block.draws
    spreads = np.std(draws.cell[1:], axis=0)
    cosines = np.cos(np.radians(draws.cell[0, 3:]))
    d = 1 - (cosines**2).sum() + 2 * np.prod(cosines)
    lengths = ((spreads[:3] / draws.cell[0, :3]) ** 2).sum()
    others = cosines - [np.prod(np.delete(cosines, k)) for k in range(3)]
    angles = (np.radians(spreads[3:]) ** 2 * (1 - cosines**2) * others**2).sum() / d
    volumes = np.linalg.det(draws.frame)
    formula = volumes[0] * np.sqrt(lengths + angles)
    compare("volumes of cells by the manual", what, value, esd, volumes[0] + np.array([0, -formula, formula]))
    if judge.block.structure[2][0] == "a b c 90 90 90":
        compare("volumes of cells", what, value, esd, volumes)


def judge_row(judge, row):
    quantity, centre, feature = row["quantity"], row["centre"], row["feature"]
    name, value = judge.block.structure[0], float(row["value"])
    esd, codes = float(row["esd"] or 0), row["codes"].split()
    what = f"{name} block {row['block'].strip()} {quantity} {feature} {row['codes']}"
    apart = "on rhombohedral axes" if name == "corundum" else None
    site, bonds = judge.block.sites.get(centre), judge.bonds
    if quantity == "cells" and feature != "V":
        compare(quantity, what, value, esd, judge.block.draws.cell[:, CELL.index(feature)])
    elif quantity == "cells":
        judge_volume(judge, what, value, esd)
    elif quantity == "xyz" and feature[-1] in "xyz":
        compare(quantity, what, value, esd, site[:, "xyz".index(feature[-1])])
    elif quantity == "adps" and feature.endswith("_Ueq"):
        compare("Ueq", what, value, 0, judge.u_eq(centre)[[0, 0, 0]])
    elif quantity == "adps":
        i, j = (int(digit) - 1 for digit in feature[-2:])
        compare(quantity, what, value, esd, judge.block.tensors[centre][:, i, j])
    elif quantity == "bond" and "[" in feature:
        vector = judge.point(ends_of(feature)[1], codes[0]) - judge.point(centre)
        bonds.setdefault(centre, []).append(vector)
        compare(quantity, what, value, esd, measure_geometry.norm(vector), apart)
    elif quantity == "bond" and feature.endswith("_V") and value > 0.1:
        volume = measure_geometry.hull_volume(np.array(bonds[centre]).transpose(1, 0, 2))
        compare("volumes", what, value, esd, volume, apart)
    elif quantity == "angles" and "[" in feature:
        one, _, two = ends_of(feature)
        at = judge.point(centre)
        legs = judge.point(one, codes[0]) - at, judge.point(two, codes[1]) - at
        angle = measure_geometry.angle_between(*legs)
        compare(quantity, what, value, esd, angle, apart)
    elif quantity == "edges" and "[" in feature:
        _, one, two = ends_of(feature)
        edge = measure_geometry.norm(judge.point(one, codes[0]) - judge.point(two, codes[1]))
        compare(quantity, what, value, esd, edge, apart)
    elif quantity == "measures":
        compare(quantity, what, value, esd, MEASURES[feature][1](judge))
    elif quantity == "valences" and feature.endswith("_s"):
        lengths = measure_geometry.norm(judge.point(ends_of(feature)[1], codes[0]) - judge.point(centre))
        compare(quantity, what, value, esd, value * np.exp((lengths[0] - lengths) / B), apart)
        bonds.setdefault(centre + " sum", []).append(esd)
    elif quantity == "valences":
        total = sum(bonds[centre + " sum"])
        compare("sums of valences by the manual", what, value, esd, value + np.array([0, -total, total]))


def judge_written(block, written):
    """The esd of Ueq, rounded up to a whole number of units, of which a tenth is dropped."""
    table = written.find("_atom_site_", ["label", "U_iso_or_equiv"])
    judge = Judge(block, [])
    for label, text in table:
        value, esd, decimals = number(text)
        draws = judge.u_eq(label)
        unit, spread = 10.0**-decimals, np.std(draws[1:])
        count = KINDS.setdefault("Ueq as written", [0, 0, 0.0])
        count[0] += 1
        steps = NEAR * spread / unit
        if abs(value - draws[0]) > 0.6 * unit or not -0.1 - steps <= (esd - spread) / unit <= 1 + steps:
            WRONG.append(f"{block.structure[0]} {label} Ueq {text}: the draws have {draws[0]} and {spread}")


# P, a of a cubic cell, and their esds.
SERIES = [(0.1, 5.6402, 0.01, 0.0004), (0.81, 5.6191, 0.03, 0.0006), (1.74, 5.5931, 0.05, 0.0005),
          (2.53, 5.5746, 0.04, 0.0012), (3.66, 5.5458, 0.06, 0.0007), (4.41, 5.5290, 0.05, 0.0009)]


def fitted(p, a, p_esds, a_esds, degree):
    """Coefficients by powers of P of weighted polynomials through rows of draws."""
    weights = 1 / a_esds**2 * np.ones_like(a)
    for _ in range(12):
        powers = np.stack([p**k for k in range(degree + 1)], axis=2)
        normal = np.einsum("ni,nij,nik->njk", weights, powers, powers)
        right = np.einsum("ni,nij,ni->nj", weights, powers, a)
        found = np.linalg.solve(normal, right[:, :, None])[:, :, 0]
        slopes = sum(k * found[:, k : k + 1] * p ** (k - 1) for k in range(1, degree + 1))
        weights = 1 / (a_esds**2 + slopes**2 * p_esds**2)
    return found


def judge_fit(program, degree):
    with open("series.cif", "w") as file:
        for k, (p, a, p_esd, a_esd) in enumerate(SERIES):
            print(f"data_p{k}\n_diffrn_ambient_pressure {p * 1e6:.0f}({p_esd * 1e6:.0f})", file=file)
            for name in "abc":
                print(f"_cell_length_{name} {a:.4f}({a_esd * 1e4:.0f})", file=file)
            for name in ("alpha", "beta", "gamma"):
                print(f"_cell_angle_{name} 90", file=file)
            print("_space_group_name_H-M_alt 'F m -3 m'\nloop_\n_atom_site_label\n_atom_site_fract_x\n"
                  "_atom_site_fract_y\n_atom_site_fract_z\nNa1 0 0 0\nCl1 .5 .5 .5", file=file)
    with open("series.mcr", "w") as macro:
        macro.write(f"READ full series.cif\nY\nFIT cells P{' 2' * (degree - 1)}\nCSV fit series.csv\nEXIT\n")
    if os.path.exists("series.csv"):
        os.remove("series.csv")
    subprocess.run([program, "./series.mcr"], check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
    with open("series.csv", encoding="utf-8") as sheet:
        row = next(row for row in csv.DictReader(sheet) if row["feature"].startswith("a"))
    p, a, p_esds, a_esds = np.array(SERIES).T
    random = np.random.default_rng(5)
    noise = np.vstack([np.zeros(2 * len(p)), random.standard_normal((DRAWS, 2 * len(p)))])
    found = fitted(p - p[0] + noise[:, : len(p)] * p_esds, a + noise[:, len(p) :] * a_esds, p_esds, a_esds, degree)
    for name, draws in zip(["value", "slope", "second"], found.T):
        compare("lines", f"FIT {degree} {name}", float(row[name]), float(row[name + "_esd"]), draws)
    relative = 1000 * found[:, 1] / found[:, 0]
    compare("lines", f"FIT {degree} relative", float(row["relative"]), float(row["relative_esd"]), relative)


def main():
    program = os.path.abspath(sys.argv[1])
    for structure in measure_structures.STRUCTURES:
        blocks = [Block(structure, 0), Block(structure, 3)]
        rows, cif = run(program, structure, blocks)
        operators = [gemmi.cif.as_string(text) for text in cif[0].find_values("_space_group_symop_operation_xyz")]
        judge = None
        for index, block in enumerate(blocks, 1):
            judge = Judge(block, operators, judge)
            for row in rows:
                if row["block"].strip() == str(index) and row["value"]:
                    judge_row(judge, row)
            judge_written(block, cif[index - 1])
    for degree in (1, 2):
        judge_fit(program, degree)
    for kind, (count, fixed, worst) in KINDS.items():
        print(f"{kind}: {count}, {fixed} of them without an esd, at most {100 * worst:.1f} percent off")
    apart = KINDS["on rhombohedral axes"][0]
    values = sum(count for count, _, _ in KINDS.values()) - apart
    print("\n".join(WRONG + [f"{values} values, {apart} of them on rhombohedral axes off, {len(WRONG)} differ"]))
    return 1 if WRONG else 0


if __name__ == "__main__":
    sys.exit(main())
