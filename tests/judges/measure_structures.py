"""Structures for the judges of measures: cells, groups and sites with their free
parameters, written as CIF. Esds are of the size that is usual.

Left out are quantities that are zero but for their esds, where a first-order esd says nothing: a
shift or a Baur index of some thousandths.

A site is its coordinates as expressions of its own x, y, z; a cell likewise of a, b, c, al, be, ga.
The parameters are close to those of the minerals and phases that the names tell, and typical of them;
they were not compared with a paper, and no result here is a published one. What is judged is what the
program and numpy make of the same parameters.
"""
import os
import re

# name, group, cell, dmax of the bonds, sites, measures. (value, esd) of each parameter.
STRUCTURES = [
    ("pyrope", "I a -3 d", ("a a a 90 90 90", dict(a=(11.459, 0.001))), 2.4, [
        ("Mg1", "1/8 0 1/4", {}), ("Al1", "0 0 0", {}), ("Si1", "3/8 0 1/4", {}),
        ("O1", "x y z", dict(x=(0.0329, 0.0001), y=(0.0502, 0.0001), z=(0.6534, 0.0001)))],
     ["dist(Si1, O1)", "angle(O1, Si1, O1)", "angle(O1, Al1, O1)", "angle(Si1, O1, Al1)",
      "torsion(Si1, O1, Al1, O1)", "mean(Mg1)", "vol(Mg1)", "vol(Al1)", "qe(Al1)", "qe(Si1)", "av(Si1)",
      "av(Al1)", "baur(Mg1)", "econ(Mg1)", "bvs(Mg1)", "bvs(Si1)", "sigma(Al1)", "V", "x(O1[5_555])",
      "dist(Si1, O1) - dist(Al1, O1)", "vol(Mg1)/vol(Si1)", "angle(Si1, Mg1, Si1)", "n(Mg1)"]),
    ("magnetite", "F d -3 m :2", ("a a a 90 90 90", dict(a=(8.3941, 0.0007))), 2.3, [
        ("Fe1", "1/8 1/8 1/8", {}), ("Fe2", "1/2 1/2 1/2", {}),
        ("O1", "x x x", dict(x=(0.2549, 0.0001)))],
     ["dist(Fe1, O1)", "dist(Fe2, O1)", "angle(O1, Fe2, O1)", "angle(O1, Fe1, O1)",
      "angle(Fe2, O1, Fe2)", "qe(Fe2)", "av(Fe2)", "vol(Fe1)", "sigma(Fe2)", "dist(O1, O1)",
      "dist(Fe1, O1)/dist(Fe2, O1)", "bvs(Fe2)"]),
    ("rutile", "P 42/m n m", ("a a c 90 90 90", dict(a=(4.5937, 0.0001), c=(2.9587, 0.0001))), 2.2, [
        ("Ti1", "0 0 0", {}), ("O1", "x x 0", dict(x=(0.3048, 0.0002)))],
     ["dist(Ti1, O1)", "dist(Ti1, O1[2])", "angle(O1, Ti1, O1)", "angle(Ti1, O1, Ti1)", "vol(Ti1)", "qe(Ti1)",
      "av(Ti1)", "sigma(Ti1)", "baur(Ti1)", "econ(Ti1)", "c/a", "bvs(Ti1)", "angle(O1, Ti1, O1[3])",
      "x(O1) - y(O1)", "planes(Ti1, O1, O1; Ti1, Ti1, O1)"]),
    ("zircon", "I 41/a m d :2", ("a a c 90 90 90", dict(a=(6.6042, 0.0004), c=(5.9796, 0.0003))), 2.4, [
        ("Zr1", "0 3/4 1/8", {}), ("Si1", "0 3/4 5/8", {}),
        ("O1", "0 y z", dict(y=(0.0661, 0.0004), z=(0.1953, 0.0004)))],
     ["dist(Si1, O1)", "dist(Zr1, O1)", "angle(O1, Si1, O1)", "vol(Zr1)", "av(Si1)", "qe(Si1)", "bvs(Zr1)",
      "torsion(O1, Si1, O1, Zr1)", "econ(Zr1)", "baur(Zr1)", "dist(Zr1, centroid(O1, O1))"]),
    ("beryl", "P 6/m c c", ("a a c 90 90 120", dict(a=(9.218, 0.002), c=(9.197, 0.002))), 2.1, [
        ("Si1", "x y 0", dict(x=(0.3875, 0.0001), y=(0.1158, 0.0001))), ("Al1", "2/3 1/3 1/4", {}),
        ("Be1", "1/2 0 1/4", {}),
        ("O1", "x y 0", dict(x=(0.3103, 0.0002), y=(0.2369, 0.0002))),
        ("O2", "x y z", dict(x=(0.4988, 0.0001), y=(0.1455, 0.0001), z=(0.1453, 0.0001)))],
     ["dist(Si1, O1)", "dist(Si1, O2)", "angle(O1, Si1, O1)", "angle(Si1, O1, Si1)", "torsion(O1, Si1, O1, Si1)",
      "vol(Al1)", "qe(Al1)", "av(Al1)", "av(Be1)", "vol(Si1)", "shift(Si1)", "baur(Si1)", "bvs(Be1)",
      "offplane(Al1; O2, O2, O2)", "angle(Si1, O2, Al1)", "econ(Si1)"]),
    ("quartz", "P 32 2 1", ("a a c 90 90 120", dict(a=(4.916, 0.001), c=(5.4054, 0.0004))), 2.0, [
        ("Si1", "x 0 2/3", dict(x=(0.4697, 0.0001))),
        ("O1", "x y z", dict(x=(0.4133, 0.0003), y=(0.2672, 0.0002), z=(0.7855, 0.0002)))],
     ["dist(Si1, O1)", "angle(Si1, O1, Si1)", "angle(O1, Si1, O1)", "torsion(Si1, O1, Si1, O1)", "qe(Si1)", "av(Si1)",
      "vol(Si1)", "dist(Si1, Si1)", "econ(Si1)", "bvs(Si1)", "V", "y(Si1[3_555])"]),
    ("zincite", "P 63 m c", ("a a c 90 90 120", dict(a=(3.2498, 0.0003), c=(5.2066, 0.0005))), 2.3, [
        ("Zn1", "1/3 2/3 0", {}), ("O1", "1/3 2/3 z", dict(z=(0.3821, 0.0004)))],
     ["dist(Zn1, O1)", "dist(Zn1, O1[3])", "angle(O1, Zn1, O1)", "vol(Zn1)", "qe(Zn1)", "av(Zn1)", "shift(Zn1)",
      "baur(Zn1)", "offplane(Zn1; O1, O1, O1)", "angle(Zn1, O1, Zn1)"]),
    ("corundum", "R -3 c :R", ("a a a al al al", dict(a=(5.1297, 0.0004), al=(55.28, 0.01))), 2.2, [
        ("Al1", "x x x", dict(x=(0.35216, 0.00008))), ("O1", "x 3/2-x 1/4", dict(x=(0.5562, 0.0002)))],
     ["dist(Al1, O1)", "dist(Al1, O1[4])", "angle(O1, Al1, O1)", "angle(Al1, O1, Al1)", "vol(Al1)", "qe(Al1)",
      "av(Al1)", "shift(Al1)", "sigma(Al1)", "V", "b", "gamma", "dist(Al1, Al1)", "econ(Al1)"]),
    ("forsterite", "P b n m", ("a b c 90 90 90", dict(a=(4.752, 0.001), b=(10.193, 0.002), c=(5.977, 0.001))), 2.5, [
        ("Mg1", "0 0 0", {}),
        ("Mg2", "x y 1/4", dict(x=(0.9915, 0.0002), y=(0.2774, 0.0001))),
        ("Si1", "x y 1/4", dict(x=(0.4262, 0.0002), y=(0.0940, 0.0001))),
        ("O1", "x y 1/4", dict(x=(0.7657, 0.0004), y=(0.0913, 0.0002))),
        ("O2", "x y 1/4", dict(x=(0.2215, 0.0004), y=(0.4474, 0.0002))),
        ("O3", "x y z", dict(x=(0.2777, 0.0003), y=(0.1628, 0.0001), z=(0.0331, 0.0003)))],
     ["dist(Si1, O3)", "angle(O3, Si1, O3)", "torsion(O1, Si1, O3, Mg1)", "vol(Mg1)", "vol(Mg2)", "qe(Mg2)", "av(Mg1)",
      "sigma(Mg1)", "sigma(Mg2)", "econ(Mg2)", "baur(Mg2)", "shift(Mg2)", "shift(Mg1)", "bvs(Mg2)", "mean(Si1)",
      "offplane(Si1; O1, O3, O3)", "planes(O1, O3, O3; Mg1, O1, O2)", "dist(Mg1, O1)*dist(Mg1, O2)",
      "V^(1/3)", "z(Mg2)", "dist(O3, O3[2])"]),
    ("perovskite", "P b n m", ("a b c 90 90 90", dict(a=(5.3796, 0.0001), b=(5.4423, 0.0003), c=(7.6401, 0.0005))), 2.6, [
        ("Ca1", "x y 1/4", dict(x=(0.99324, 0.00007), y=(0.03602, 0.00006))), ("Ti1", "0 1/2 0", {}),
        ("O1", "x y 1/4", dict(x=(0.0714, 0.0003), y=(0.4838, 0.0002))),
        ("O2", "x y z", dict(x=(0.7108, 0.0002), y=(0.2888, 0.0002), z=(0.0371, 0.0001)))],
     ["angle(Ti1, O1, Ti1)", "angle(Ti1, O2, Ti1)", "(180 - angle(Ti1, O1, Ti1))/2", "vol(Ti1)", "vol(Ca1)", "qe(Ti1)", "av(Ti1)",
      "sigma(Ti1)", "econ(Ca1)", "shift(Ca1)", "bvs(Ca1)", "bvs(Ti1)", "vol(Ca1)/vol(Ti1)",
      "angle(O1, Ti1, O1)", "dist(Ti1, O1[2])"]),
    ("diopside", "C 1 2/c 1", ("a b c 90 be 90", dict(a=(9.746, 0.004), b=(8.899, 0.005), c=(5.251, 0.006), be=(105.63, 0.06))), 2.8, [
        ("Ca1", "0 y 1/4", dict(y=(0.3015, 0.0001))), ("Mg1", "0 y 1/4", dict(y=(0.9082, 0.0001))),
        ("Si1", "x y z", dict(x=(0.2862, 0.0001), y=(0.0933, 0.0001), z=(0.2293, 0.0001))),
        ("O1", "x y z", dict(x=(0.1156, 0.0002), y=(0.0873, 0.0002), z=(0.1422, 0.0003))),
        ("O2", "x y z", dict(x=(0.3611, 0.0002), y=(0.2500, 0.0002), z=(0.3180, 0.0003))),
        ("O3", "x y z", dict(x=(0.3505, 0.0002), y=(0.0176, 0.0002), z=(0.9953, 0.0003)))],
     ["angle(O3, O3, O3)", "angle(Si1, O3, Si1)", "dist(Si1, O3)", "vol(Ca1)", "econ(Ca1)", "bvs(Ca1)", "vol(Mg1)", "sigma(Mg1)",
      "av(Mg1)", "qe(Si1)", "av(Si1)", "baur(Ca1)", "torsion(Si1, O3, Si1, O3)", "offplane(Si1; O1, O2, O3)", "shift(Si1)",
      "shift(Ca1)", "beta", "planes(O1, O2, O3; O1, O2, O3[2])", "V", "a*sin(beta)", "dist(Si1, centroid(O1, O2, O3, O3))"]),
    ("jadeite", "C 1 2/c 1", ("a b c 90 be 90", dict(a=(9.418, 0.001), b=(8.562, 0.002), c=(5.219, 0.001), be=(107.58, 0.01))), 2.6, [
        ("Na1", "0 y 1/4", dict(y=(0.3005, 0.0003))), ("Al1", "0 y 1/4", dict(y=(0.9060, 0.0002))),
        ("Si1", "x y z", dict(x=(0.2906, 0.0001), y=(0.0933, 0.0001), z=(0.2277, 0.0002))),
        ("O1", "x y z", dict(x=(0.1092, 0.0002), y=(0.0760, 0.0003), z=(0.1275, 0.0004))),
        ("O2", "x y z", dict(x=(0.3611, 0.0002), y=(0.2633, 0.0003), z=(0.2932, 0.0004))),
        ("O3", "x y z", dict(x=(0.3535, 0.0002), y=(0.0072, 0.0003), z=(0.0060, 0.0004)))],
     ["angle(O3, O3, O3)", "angle(Si1, O3, Si1)", "vol(Al1)", "econ(Na1)", "sigma(Al1)", "mean(Na1)"]),
    ("aegirine", "C 1 2/c 1", ("a b c 90 be 90", dict(a=(9.658, 0.002), b=(8.795, 0.002), c=(5.294, 0.001), be=(107.42, 0.02))), 2.6, [
        ("Na1", "0 y 1/4", dict(y=(0.2999, 0.0002))), ("Fe1", "0 y 1/4", dict(y=(0.8989, 0.0001))),
        ("Si1", "x y z", dict(x=(0.2906, 0.0001), y=(0.0894, 0.0001), z=(0.2350, 0.0001))),
        ("O1", "x y z", dict(x=(0.1143, 0.0002), y=(0.0784, 0.0002), z=(0.1375, 0.0003))),
        ("O2", "x y z", dict(x=(0.3586, 0.0002), y=(0.2558, 0.0002), z=(0.3009, 0.0003))),
        ("O3", "x y z", dict(x=(0.3519, 0.0002), y=(0.0080, 0.0002), z=(0.0117, 0.0003)))],
     ["angle(O3, O3, O3)", "angle(Si1, O3, Si1)", "vol(Fe1)", "av(Fe1)", "bvs(Fe1)"]),
    ("albite", "C -1", ("a b c al be ga", dict(a=(8.142, 0.002), b=(12.785, 0.002), c=(7.159, 0.002),
                                                al=(94.19, 0.02), be=(116.61, 0.02), ga=(87.68, 0.02))), 2.4, [
        ("Na", "x y z", dict(x=(0.2682, 0.0002), y=(0.9889, 0.0001), z=(0.1460, 0.0003))),
        ("T1o", "x y z", dict(x=(0.0090, 0.0001), y=(0.1685, 0.0001), z=(0.2080, 0.0001))),
        ("T1m", "x y z", dict(x=(0.0040, 0.0001), y=(0.8205, 0.0001), z=(0.2373, 0.0001))),
        ("T2o", "x y z", dict(x=(0.6920, 0.0001), y=(0.1100, 0.0001), z=(0.3149, 0.0001))),
        ("T2m", "x y z", dict(x=(0.6815, 0.0001), y=(0.8817, 0.0001), z=(0.3607, 0.0001))),
        ("OA1", "x y z", dict(x=(0.0056, 0.0001), y=(0.1309, 0.0001), z=(0.9667, 0.0002))),
        ("OA2", "x y z", dict(x=(0.5922, 0.0001), y=(0.9971, 0.0001), z=(0.2806, 0.0002))),
        ("OBo", "x y z", dict(x=(0.8125, 0.0002), y=(0.1098, 0.0001), z=(0.1908, 0.0002))),
        ("OBm", "x y z", dict(x=(0.8200, 0.0002), y=(0.8510, 0.0001), z=(0.2587, 0.0002))),
        ("OCo", "x y z", dict(x=(0.0134, 0.0002), y=(0.3027, 0.0001), z=(0.2700, 0.0002))),
        ("OCm", "x y z", dict(x=(0.0236, 0.0002), y=(0.6936, 0.0001), z=(0.2298, 0.0002))),
        ("ODo", "x y z", dict(x=(0.2077, 0.0001), y=(0.1091, 0.0001), z=(0.3889, 0.0002))),
        ("ODm", "x y z", dict(x=(0.1837, 0.0001), y=(0.8683, 0.0001), z=(0.4359, 0.0002)))],
     ["angle(T1o, OA1, T1o)", "angle(T2o, OA2, T2m)", "angle(T1o, OBo, T2o)", "angle(T1m, OBm, T2m)", "angle(T1o, OCo, T2m)",
      "angle(T1m, OCm, T2o)", "angle(T1o, ODo, T2m)", "angle(T1m, ODm, T2o)", "dist(T1o, OA1)", "dist(Na, OA2)",
      "torsion(T1o, OCo, T2m, ODo)", "V", "alpha", "(dist(T1o, OA1)+dist(T1o, OBo)+dist(T1o, OCo)+dist(T1o, ODo))/4"]),
    ("kyanite", "P -1", ("a b c al be ga", dict(a=(7.126, 0.001), b=(7.852, 0.001), c=(5.572, 0.001),
                                               al=(89.99, 0.01), be=(101.11, 0.01), ga=(106.03, 0.01))), 2.3, [
        ("Al1", "x y z", dict(x=(0.3254, 0.0001), y=(0.7040, 0.0001), z=(0.4582, 0.0002))),
        ("Al3", "x y z", dict(x=(0.0998, 0.0001), y=(0.3862, 0.0001), z=(0.6403, 0.0002))),
        ("Si1", "x y z", dict(x=(0.2962, 0.0001), y=(0.0649, 0.0001), z=(0.7066, 0.0002))),
        ("OB", "x y z", dict(x=(0.1230, 0.0003), y=(0.6856, 0.0002), z=(0.1812, 0.0003))),
        ("OD", "x y z", dict(x=(0.2831, 0.0003), y=(0.9354, 0.0002), z=(0.9353, 0.0003))),
        ("OE", "x y z", dict(x=(0.1084, 0.0003), y=(0.1520, 0.0002), z=(0.6669, 0.0003))),
        ("OF", "x y z", dict(x=(0.1219, 0.0003), y=(0.6307, 0.0002), z=(0.6395, 0.0003))),
        ("OG", "x y z", dict(x=(0.2822, 0.0003), y=(0.4453, 0.0002), z=(0.4288, 0.0003))),
        ("OH", "x y z", dict(x=(0.2915, 0.0003), y=(0.9467, 0.0002), z=(0.4659, 0.0003))),
        ("OK", "x y z", dict(x=(0.5008, 0.0003), y=(0.2749, 0.0002), z=(0.2440, 0.0003))),
        ("OM", "x y z", dict(x=(0.5015, 0.0003), y=(0.2312, 0.0002), z=(0.7553, 0.0003)))],
     ["vol(Al1)", "qe(Al1)", "av(Al1)", "sigma(Al1)", "econ(Al1)", "baur(Al1)", "shift(Al1)", "bvs(Al1)", "vol(Si1)",
      "av(Si1)", "mean(Si1)", "torsion(OD, Si1, OE, Al3)", "offplane(Al3; OB, OE, OF, OG)",
      "planes(OD, OE, OH; OD, OH, OM)", "dist(OE, OE)", "angle(OE, Al3, centroid(OF, OG))"]),
]


def element(label):
    return {"T1o": "Al", "T1m": "Si", "T2o": "Si", "T2m": "Si"}.get(label) or re.match("[A-Z][a-z]?", label)[0] \
        if not label.startswith("O") else "O"


CHARGES = {"O": "O2-", "Mg": "Mg2+", "Al": "Al3+", "Si": "Si4+", "Fe": "Fe3+", "Ti": "Ti4+", "Zr": "Zr4+", "Be": "Be2+",
           "Zn": "Zn2+", "Ca": "Ca2+", "Na": "Na1+"}


def with_esd(value, esd):
    if not esd:
        return repr(value)
    text = f"{esd:.12f}".rstrip("0")
    digits = len(text.split(".")[1])
    return f"{value:.{digits}f}({round(esd * 10 ** digits)})"


def evaluated(expression, parameters):
    """Value and esd of a coordinate or cell parameter such as 1/2-x; none alone has no esd."""
    names = set(re.findall("[a-z]+", expression))
    value = eval(expression, {}, {name: parameters[name][0] for name in names})
    return value, max([parameters[name][1] for name in names], default=0)


def text_of(expression, parameters):
    value, esd = evaluated(expression, parameters)
    return with_esd(value, esd) if esd else f"{value:.6f}"


def write_cif(folder, structure):
    import gemmi
    name, group, (cell, cell_parameters), _, sites, _ = structure
    lines = [f"data_{name}", ""]
    items = ["length_a", "length_b", "length_c", "angle_alpha", "angle_beta", "angle_gamma"]
    for item, expression in zip(items, cell.split()):
        lines.append(f"_cell_{item} {text_of(expression, cell_parameters)}")
    lines += ["", "loop_", "_symmetry_equiv_pos_as_xyz"]
    spacegroup = gemmi.find_spacegroup_by_name(group.replace(" :", ":"))
    lines += [f"'{op.triplet()}'" for op in spacegroup.operations()]
    lines += ["", "loop_", "_atom_site_label", "_atom_site_type_symbol", "_atom_site_fract_x", "_atom_site_fract_y",
              "_atom_site_fract_z", "_atom_site_occupancy"]
    for label, coordinates, parameters in sites:
        texts = [text_of(c, parameters) for c in coordinates.split()]
        lines.append(f"{label} {CHARGES[element(label)]} {' '.join(texts)} 1")
    with open(os.path.join(folder, name + ".cif"), "w") as file:
        file.write("\n".join(lines) + "\n")


def write_all(folder):
    """NAME.cif for each structure, and index.txt: name, dmax, then its measures, one a line."""
    with open(os.path.join(folder, "index.txt"), "w") as index:
        for structure in STRUCTURES:
            write_cif(folder, structure)
            index.write(f"structure {structure[0]} {structure[3]}\n")
            index.writelines(f"measure {text}\n" for text in structure[5])
