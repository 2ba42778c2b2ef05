#!/usr/bin/env python3
"""manual_formulas.py PROGRAM: what section 7 of the manual says, worked out by numpy.

Makes a triclinic structure in which every parameter has an esd, with a tetrahedron, an octahedron
of a mixed site and five ligands, lets the program write all its values as a sheet, and works out
each by the manual's formula from the numbers of the CIF. Runs in the current folder. Status 1 when
any differs, 77 without numpy.
"""
import csv
import math
import subprocess
import sys
from itertools import combinations

try:
    import numpy as np
except ImportError:
    sys.exit(77)

CELL = [(11.313, 3), (10.742, 2), (12.127, 4), (83.21, 2), (97.43, 3), (104.82, 4)]
CELL_UNITS = [1e-3] * 3 + [1e-2] * 3
TENSORS = {  # U11 U22 U33 U12 U13 U23, 10^-4 square angstroms
    "Si1": [81, 72, 87, 11, 21, -5],
    "O2": [131, 102, 117, 31, -11, 15],
}
OCCUPANCY = {"Fe1": 0.7, "Mg1": 0.3}
# Brown and Altermatt (1985), Brese and O'Keeffe (1991); of the charges below
VALENCE = {"Si": (1.624, 0.37), "Fe": (1.759, 0.37), "Mg": (1.693, 0.37), "Ca": (1.967, 0.37)}
CLUSTERS = {  # centre, its place, its ligands in angstroms from there
    "Si1": ([0.22, 0.20, 0.27], [[1.1, 0.8, 0.9], [-0.8, -1.1, 0.9], [1.0, -0.9, -0.8], [-0.9, 0.7, -1.2]]),
    "Fe1": ([0.70, 0.28, 0.30], [[2.1, 0.2, 0.1], [-1.9, 0.3, -0.2], [0.2, 2.2, 0.3], [-0.1, -2.0, 0.2],
                                 [0.3, 0.1, 2.0], [0.1, -0.3, -2.3]]),
    "Ca1": ([0.27, 0.70, 0.22], [[2.2, 0.3, 0.4], [-2.1, 0.5, 0.6], [0.2, 2.3, 0.3], [0.3, -2.2, 0.5],
                                 [0.4, 0.2, -2.4]]),
}
MEASURES = {
    "m_baur": "baur(Fe1)", "m_econ": "econ(Fe1)", "m_sigma": "sigma(Fe1)", "m_shift": "shift(Fe1)",
    "m_torsion": "torsion(O1, O2, O3, O4)", "m_off": "offplane(Si1; O1, O2, O3)",
    "m_planes": "planes(O5, O6, O7, O9; O1, O2, O3)", "m_v": "V",
}
IDEAL = {4: 0.5132, 5: 0.86603, 6: 1.33333}
VALUES = 3e-5  # relative, beside what 32 bits tell of a small difference
ESDS = 3e-3
SMALL = 2e-6


def metric(cell):
    a, b, c = cell[:3]
    al, be, ga = np.radians(cell[3:])
    g = np.diag([a * a, b * b, c * c])
    g[0, 1] = g[1, 0] = a * b * math.cos(ga)
    g[0, 2] = g[2, 0] = a * c * math.cos(be)
    g[1, 2] = g[2, 1] = b * c * math.cos(al)
    return g


def cartesian(cell):
    return np.linalg.cholesky(metric(cell)).T


CELL_NOW = np.array([value for value, _ in CELL])
CELL_ESDS = np.array([esd * unit for (_, esd), unit in zip(CELL, CELL_UNITS)])
G = metric(CELL_NOW)


def sites():
    """Label: place and esds, in the order of the file."""
    found = {}
    oxygens = 0
    for number, (centre, (place, ligands)) in enumerate(CLUSTERS.items()):
        found[centre] = (np.array(place), np.array([3, 5, 4]) * 1e-5)
        if centre == "Fe1":
            found["Mg1"] = found[centre]
        for k, vector in enumerate(ligands):
            oxygens += 1
            x = np.round(place + np.linalg.inv(cartesian(CELL_NOW)) @ np.array(vector), 5)
            found[f"O{oxygens}"] = (x, np.array([7 + 3 * k, 19 - 2 * k, 9 + number * 2]) * 1e-5)
    return found


SITES = sites()


def u_iso(label):
    return 0.005 + 0.0007 * list(SITES).index(label)


def write_cif(name):
    with open(name, "w") as cif:
        print("data_made", file=cif)
        items = ["length_a", "length_b", "length_c", "angle_alpha", "angle_beta", "angle_gamma"]
        for item, (value, esd) in zip(items, CELL):
            print(f"_cell_{item} {value}({esd})", file=cif)
        print("_symmetry_space_group_name_H-M 'P -1'\nloop_\n_atom_site_label\n_atom_site_type_symbol", file=cif)
        print("_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z", file=cif)
        print("_atom_site_occupancy\n_atom_site_U_iso_or_equiv", file=cif)
        charges = {"Si": "Si4+", "Fe": "Fe3+", "Mg": "Mg2+", "Ca": "Ca2+", "O": "O2-"}
        for label, (x, esds) in SITES.items():
            place = " ".join(f"{v:.5f}({round(s * 1e5)})" for v, s in zip(x, esds))
            print(label, charges[label.rstrip("0123456789")], place, OCCUPANCY.get(label, 1), f"{u_iso(label):.4f}", file=cif)
        print("loop_\n_atom_site_aniso_label", file=cif)
        for pair in ["11", "22", "33", "12", "13", "23"]:
            print(f"_atom_site_aniso_U_{pair}", file=cif)
        for label, u in TENSORS.items():
            print(label, *(f"{v * 1e-4:.4f}" for v in u), file=cif)


def run(program):
    lines = ["READ full made.cif", "Y", "CALC polyhedra", "1.0 2.7", "0", "CALC valences", "N", "0"]
    lines += [f"MEASURE {name} = {text}" for name, text in MEASURES.items()]
    lines += ["CSV all made.csv", "EXIT", ""]
    with open("made.mcr", "w") as macro:
        macro.write("\n".join(lines))
    subprocess.run([program, "./made.mcr"], check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
    with open("made.csv", encoding="utf-8") as sheet:
        return {(r["quantity"], r["centre"], r["feature"]): r for r in csv.DictReader(sheet)}


SAID = {}
FAULTS = []
COMPARED = {}


def compare(formula, number, key, column="value"):
    said = float(SAID[key][column])
    limit = ESDS if column == "esd" else VALUES
    COMPARED[formula] = COMPARED.get(formula, 0) + 1
    if not abs(said - number) <= limit * abs(number) + (0 if column == "esd" else SMALL):
        FAULTS.append(f"{formula}: {key} {column}: numpy {number:.8g}, the program {said:.8g}")


def shifts(function):
    """Sum of the squares of the changes when each parameter of the cell is raised by its esd."""
    total = 0
    for k in range(6):
        raised = CELL_NOW.copy()
        raised[k] += CELL_ESDS[k]
        total += (function(raised) - function(CELL_NOW)) ** 2
    return total


def esd_of(function, places, esds):
    """Of a function of the cell and of places, by shifts of one esd."""
    total = shifts(lambda cell: function(cell, places))
    for i, k in np.ndindex(places.shape):
        moved = places.copy()
        moved[i, k] += esds[i, k]
        total += (function(CELL_NOW, moved) - function(CELL_NOW, places)) ** 2
    return math.sqrt(total)


def length(cell, ends):
    delta = ends[1] - ends[0]
    return math.sqrt(delta @ metric(cell) @ delta)


def angle(cell, places):  # at the first
    legs = (places[1:] - places[0]) @ cartesian(cell).T
    return math.degrees(math.acos(legs[0] @ legs[1] / np.prod(np.linalg.norm(legs, axis=1))))


def hull(cell, places):
    """Volume of vertices of which no four are in a plane."""
    v = places @ cartesian(cell).T
    middle = v.mean(0)
    volume = 0
    for face in combinations(range(len(v)), 3):
        normal = np.cross(v[face[1]] - v[face[0]], v[face[2]] - v[face[0]])
        sides = [(v[k] - v[face[0]]) @ normal for k in range(len(v)) if k not in face]
        if min(sides) > 0 or max(sides) < 0:
            volume += abs((v[face[0]] - middle) @ normal) / 6
    return volume


def place_of(label, code):
    operator, cells = code.split("_")
    sign = 1 if operator == "1" else -1
    return sign * (SITES[label][0] % 1) + [int(c) - 5 for c in cells]


def tensor(label):
    u = np.array(TENSORS[label]) * 1e-4
    return np.array([[u[0], u[3], u[4]], [u[3], u[1], u[5]], [u[4], u[5], u[2]]])


RECIPROCAL = np.sqrt(np.diag(np.linalg.inv(G)))


def u_eq(label):
    return (tensor(label) * np.outer(RECIPROCAL, RECIPROCAL) * G).sum() / 3 if label in TENSORS else u_iso(label)


def judge_cell():
    cosines = np.cos(np.radians(CELL_NOW[3:]))
    d = 1 - (cosines**2).sum() + 2 * np.prod(cosines)
    volume = np.prod(CELL_NOW[:3]) * math.sqrt(d)
    compare("V", volume, ("cells", "", "V"))
    lengths = ((CELL_ESDS[:3] / CELL_NOW[:3]) ** 2).sum()
    angles = 0
    for k in range(3):
        others = np.delete(cosines, k)
        angles += np.radians(CELL_ESDS[3 + k]) ** 2 * (1 - cosines[k] ** 2) * (cosines[k] - np.prod(others)) ** 2
    compare("esd of V", volume * math.sqrt(lengths + angles / d), ("cells", "", "V"), "esd")
    compare("esd of V by MEASURE", volume * math.sqrt(lengths + angles / d**2), ("measures", "", "m_v"), "esd")


def judge_polyhedron(centre):
    n = len(CLUSTERS[centre][1])
    start, start_esds = SITES[centre]
    keys = sorted(k for k in SAID if k[0] == "bond" and k[1] == centre and "[" in k[2])
    keys.sort(key=lambda k: int(k[2].split("[")[1][:-1]))
    labels = [k[2].split("-")[1].split("[")[0] for k in keys]
    if len(keys) != n:
        FAULTS.append(f"{centre} has {len(keys)} ligands")
        return
    places = np.array([place_of(label, SAID[k]["codes"]) for label, k in zip(labels, keys)])
    esds = np.array([SITES[label][1] for label in labels])
    valences = []
    for k, label in enumerate(labels):
        ends = np.array([start, places[k]])
        end_esds = np.array([start_esds, esds[k]])
        d = length(CELL_NOW, ends)
        delta = ends[1] - ends[0]
        covariance = np.diag(end_esds[0] ** 2 + end_esds[1] ** 2)
        variance = delta @ G @ covariance @ G @ delta / d**2 + shifts(lambda cell: length(cell, ends))
        compare("d", d, keys[k])
        compare("esd of d", math.sqrt(variance), keys[k], "esd")
        name = f"{centre}-{label}[{k + 1}]"
        species = ["Fe1", "Mg1"] if centre == "Fe1" else [centre]
        s = 0
        for site in species:
            d0, b = VALENCE[site[:2]]
            s += OCCUPANCY.get(site, 1) * math.exp((d0 - d) / b)
        valences.append((s, s * math.sqrt(variance) / b))
        compare("valence", s, ("valences", centre, name + "_s"))
        compare("esd of valence", valences[-1][1], ("valences", centre, name + "_s"), "esd")
        corrected = math.sqrt(d * d + 3 / (8 * math.pi**2) * 8 * math.pi**2 * (u_eq(label) - u_eq(centre)))
        compare("rigid bond", corrected, ("rigid", centre, name + "_srb"))
        if centre in TENSORS:
            along = G @ delta
            beta = 2 * math.pi**2 * np.outer(RECIPROCAL, RECIPROCAL) * tensor(centre)
            displacement = math.sqrt(along @ beta @ along / (2 * math.pi**2 * (delta @ G @ delta)))
            compare("displacement", displacement, ("displace", centre, name + "_displ"))
    compare("valence sum", sum(s for s, _ in valences), ("valences", centre, centre + "_BVS"))
    compare("esd of valence sum", sum(e for _, e in valences), ("valences", centre, centre + "_BVS"), "esd")

    vectors = (places - start) @ cartesian(CELL_NOW).T
    lengths = np.linalg.norm(vectors, axis=1)
    angles = []
    for j, k in combinations(range(n), 2):
        three = np.array([start, places[j], places[k]])
        key = ("angles", centre, f"{labels[j]}-{centre}-{labels[k]}[{j + 1},{k + 1}]")
        angles.append(angle(CELL_NOW, three))
        compare("angle", angles[-1], key)
        compare("esd of angle", esd_of(angle, three, np.array([start_esds, esds[j], esds[k]])), key, "esd")
        if angles[-1] < 146:
            key = ("edges", centre, f"{centre}:{labels[j]}-{labels[k]}[{j + 1},{k + 1}]")
            compare("edge", length(CELL_NOW, three[1:]), key)

    volume = hull(CELL_NOW, places)
    compare("volume", volume, ("bond", centre, centre + "_V"))
    compare("esd of volume", esd_of(hull, places, esds), ("bond", centre, centre + "_V"), "esd")
    regular = {4: math.sqrt(6) / 4 * (12 * volume / math.sqrt(2)) ** (1 / 3), 6: (0.75 * volume) ** (1 / 3)}
    if n in regular:
        compare("QE", (lengths**2).mean() / regular[n] ** 2, ("bond", centre, centre + "_QE"))
        near = angles if n == 4 else [a for a in angles if a < 135]
        ideal = 109.47 if n == 4 else 90
        compare("AV", sum((a - ideal) ** 2 for a in near) / (len(near) - 1), ("bond", centre, centre + "_AV"))
    if n == 6:
        compare("Sigma", sum(abs(a - 90) for a in near), ("measures", "", "m_sigma"))
        mean = lengths.mean()
        compare("Baur", abs(lengths - mean).mean() / mean, ("measures", "", "m_baur"))
        weighted = lengths.min()
        for _ in range(1000):
            weights = np.exp(1 - (lengths / weighted) ** 6)
            weighted = (weights * lengths).sum() / weights.sum()
        compare("Hoppe", weights.sum(), ("measures", "", "m_econ"))
        compare("shift", np.linalg.norm(vectors.mean(0)), ("measures", "", "m_shift"))

    sphere = np.linalg.lstsq(np.c_[2 * vectors, np.ones(n)], (vectors**2).sum(1), rcond=None)[0][:3]
    radii = np.linalg.norm(vectors - sphere, axis=1)
    r, scatter, delta = radii.mean(), radii.std() if n > 4 else 0, np.linalg.norm(sphere)
    for name, number in {
        "delta": delta, "rsph": r, "sdr": scatter, "videal": IDEAL[n] * r**3, "vdist": 1 - volume / (IDEAL[n] * r**3),
        "ecc": 1 - (1 - delta / r) ** 3, "sph": 1 - 3 * scatter / r,
    }.items():
        compare("sphere", number, ("orbix", centre, f"{centre}_{name}"))


def normal_of(points):
    centred = points - points.mean(0)
    normal = np.linalg.svd(centred)[2][2]
    return normal if normal @ np.cross(points[1] - points[0], points[2] - points[0]) > 0 else -normal


def judge_measures():
    at = lambda *labels: np.array([SITES[label][0] for label in labels]) @ cartesian(CELL_NOW).T
    a, b, c, d = at("O1", "O2", "O3", "O4")
    first, second = np.cross(b - a, c - b), np.cross(c - b, d - c)
    torsion = math.degrees(math.atan2(np.linalg.norm(c - b) * ((b - a) @ second), first @ second))
    compare("torsion", torsion, ("measures", "", "m_torsion"))
    plane = at("O1", "O2", "O3")
    compare("plane", normal_of(plane) @ (at("Si1")[0] - plane.mean(0)), ("measures", "", "m_off"))
    between = abs(normal_of(plane) @ normal_of(at("O5", "O6", "O7", "O9")))
    compare("planes", math.degrees(math.acos(between)), ("measures", "", "m_planes"))


def main():
    write_cif("made.cif")
    SAID.update(run(sys.argv[1]))
    judge_cell()
    for label in TENSORS:
        compare("Ueq", u_eq(label), ("adps", label, label + "_Ueq"))
    for centre in CLUSTERS:
        judge_polyhedron(centre)
    judge_measures()
    print(f"{sum(COMPARED.values())} values by {len(COMPARED)} formulas, {len(FAULTS)} differ")
    print("\n".join(FAULTS))
    sys.exit(1 if FAULTS else 0)


main()
