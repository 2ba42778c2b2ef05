#!/usr/bin/python3
"""measure_published.py PROGRAM SAMPLES: measures published structures of all crystal systems without
symmetry codes, and compares what the program answers with numpy.

The judge chooses the images itself: the nearest that does not stand in the call yet, by every operator
and cell, and of equal ones the lowest operator and then the lowest cell. Codes, the line of steps and
values are compared; printed values of the papers where they are known. Prints what is wrong, and a last
line with the counts: structures, measures, faults. Ends with 77 without numpy or gemmi.
"""
import os
import re
import subprocess
import sys
import tempfile

try:
    import gemmi
    import numpy as np
except ImportError:
    sys.exit(77)
import measure_geometry

PROMPT = "Measure (name = expression, blank to end):"
CHAIN = "angle(O3, O3, O3)"
RING = "C(11), C(12), C(13), C(14), C(15)"

# File, longest bond, and measures, some with the printed value and half of what it may be off.
PUBLISHED = [
    # Clinopyroxenes: Thompson & Downs, Am. Mineral. 93 (2008) 177-186; McCarthy, Downs & Thompson, 93
    # (2008) 198-209, who print 174.7(1) for the chain; McCarthy et al., 93 (2008) 1829-1837.
    ("cif/1000007.cif", 2.8, [CHAIN, "angle(Si, O3, Si)", "180 - " + CHAIN, "vol(Ca)", "qe(Si)", "av(Si)",
                              "sigma(Mg)", "dist(Si, Si)", "torsion(O3, O3, O3, O3)", "vol(Ca)/vol(Mg)"]),
    ("cif/9010373.cif", 2.8, [(CHAIN, 174.7, 0.1), "angle(Si, O3, Si)", "econ(NaM2)", "baur(AlM1)", "av(AlM1)"]),
    ("cif/9013273-Pressure.cif", 2.8, [CHAIN, "angle(Si, O3, Si)", "offplane(Fe; O1, O1, O2)", "mean(Fe)"]),
    # Quartz: Journal of Applied Crystallography 21 (1988) 182-191.
    ("cif/SiO2-Quartz-alpha.cif", 2.0, ["angle(Si1, O1, Si1)", "dist(Si1, O1)", "dist(Si1, O1[3])",
                                       "torsion(Si1, O1, Si1, O1)", "av(Si1)", "c/a", "dist(Si1, Si1)"]),
    # Leucite: Gatta, Rotiroti, Boffa Ballaran & Pavese, Am. Mineral. 93 (2008) 1588-1596.
    ("cif-series/leucite-history/9013186.cif", 2.0, [
        "angle(AlT1, O1, AlT1)", "angle(AlT1, O2, AlT2)", "angle(AlT2, O3, AlT2)", "angle(AlT2, O4, AlT3)",
        "angle(AlT2, O5, AlT3)", "angle(AlT3, O6, AlT1)", "vol(AlT1)"]),
    # Lepidolite-1M: a ring by the second of two equal images.
    ("cif/Lepidolite.cif", 2.4, ["angle(O1, O2, O2)", "angle(O1, O2, O2[2])", "angle(SiT, O1, SiT)",
                                "angle(SiT, O2, SiT)", "offplane(K; O2, O2, O1)"]),
    # Pectolite: three bridges of a chain of triclinic symmetry. Am. Mineral. 63 (1978) 274-288.
    ("cif/9000612.cif", 2.0, ["angle(Si1, Oc1, Si2)", "angle(Si2, Oc2, Si3)", "angle(Si3, Oc3, Si1)",
                             "torsion(Si1, Oc1, Si2, Oc2)", "vol(Si2)", "baur(Si3)", "qe(Si1)", "shift(Si1)",
                             "planes(Oa1, Ob1, Oc1; Oa2, Ob2, Oc2)", "V/(a*b*c)"]),
    # Perovskite: Physics and Chemistry of Minerals 20 (1993) 171-175.
    ("cif/CaTiO3-Perovskite.cif", 2.2, ["angle(Ti, O1, Ti)", "angle(Ti, O2, Ti)", "sigma(Ti)", "vol(Ti)",
                                       "(180 - angle(Ti, O1, Ti))/2", "baur(Ti)", "dist(Ca, O1)"]),
    ("cif/BaTiO3.cif", 2.3, ["angle(Ti, O, Ti)", "vol(Ti)", "sigma(Ti)", "dist(Ba, O)"]),
    ("cif/BaSO4-Barite.cif", 1.8, ["angle(O1, S, O2)", "vol(S)", "av(S)", "offplane(S; O1, O2, O3)",
                                  "dist(Ba, O3)", "dist(Ba, centroid(O1, O2))"]),
    ("cif/9006276-deg-C.cif", 2.5, ["angle(O, Si, O)", "av(Si)", "econ(Cr)", "dist(Cr, Cr)"]),
    ("cif/TiO2-Rutile.cif", 2.2, ["angle(O, Ti, O)", "angle(Ti, O, Ti)", "sigma(Ti)", "qe(Ti)",
                                 "planes(Ti, O, O; Ti, Ti, O)"]),
    ("cif/SiO2-Stishovite.cif", 2.0, ["angle(O, Si, O)", "vol(Si)", "baur(Si)", "dist(O, O)"]),
    # Hematite: Finger & Hazen, Journal of Applied Physics 51 (1980) 5362-5367.
    ("cif-series/hematite-P/201096.cif", 2.3, ["angle(O1, Fe1, O1)", "angle(Fe1, O1, Fe1)", "sigma(Fe1)",
                                              "dist(Fe1, Fe1)", "vol(Fe1)", "econ(Fe1)"]),
    ("cif/Be3Al2_SiO3_6-Beryl.cif", 2.1, ["angle(Si1, O2, Si1)", "angle(Si1, O1, Al1)", "vol(Al1)", "av(Be1)",
                                         "torsion(O2, Si1, O2, Si1)"]),
    ("cif/Fe3O4-Magnetite.cif", 2.3, ["angle(FeM, O, FeM)", "angle(FeT, O, FeM)", "sigma(FeM)", "vol(FeT)",
                                     "dist(FeT, FeM)"]),
    ("cif-series/ferrocene-models/ferrocene1.cif", 2.2, [
        "planes(%s; %s)" % (RING, RING), "dist(Fe, centroid(%s))" % RING, "offplane(H(11); %s)" % RING,
        "torsion(C(11), centroid(%s), Fe, centroid(C(11)[3_555], C(12)[3_555]))" % "C(12), C(13)"]),
    # 2213608 prints 169 degrees and 1.96 for the first of its hydrogen bonds.
    ("cif/2213608.cif", 2.2, [("angle(O1w, H11, O1)", 169.0, 0.5), ("dist(H11, O1)", 1.96, 0.005),
                             "torsion(C2, C3, C6, C6)", "planes(C1, C2, C3; O1, C7, O2)"]),
]

# Series: files, measures by the labels of the first block, and what each block is to give. Fabry
# et al., Acta Cryst. B70 (2014) 360-371: labels, their numbers and the order of sites differ from file
# to file, and two files print nothing.
SERIES = [("cif-series/KLnS2-composition/*.cif", [
    ("dist(La1, S1)", 0.0002, [2.9076, 2.8592, 2.8009, 2.787, None, 2.7552, None]),
    ("dist(K1, S1)", 0.0002, [3.2420, 3.2222, 3.1889, 3.188, None, 3.1740, None]),
    ("dist(S1, S1[2])", 0.0005, [3.953, 3.8887, 3.8191, 3.806, None, None, None]),
    ("angle(S1, La1, S1)", 0.015, [94.35, None, 94.04, 93.86, None, 93.74, None]),
    ("angle(S1, K1, S1)", 0.015, [82.26, None, 79.97, 79.37, None, 78.62, None])]),
    # Gypsum under pressure, Comodi et al., Am. Mineral. 93 (2008) 1530-1537: not printed, but worked out
    # of the published coordinates by symmetry expansion and convex hulls in another language.
    ("cif-series/gypsum-P/*.cif", [
        ("dist(S, O1)", 0.0001, [1.4845, 1.4657, 1.4474, 1.4729, 1.4635, 1.4912, 1.4500]),
        ("dist(Ca, O1)", 0.0001, [2.3697, 2.3589, 2.3890, 2.3509, 2.3333, 2.3122, 2.3265]),
        ("vol(S)", 0.0006, [1.657, 1.652, 1.668, 1.632, 1.632, 1.717, 1.648]),
        ("vol(Ca)", 0.0006, [26.259, 26.145, 26.259, 26.037, 25.547, 24.970, 24.738])])]


def number(text):
    return float(re.sub(r"\(.*", "", text))


class Crystal:
    """Cell and sites of a CIF, sites in the cell at the origin, as the program has them."""

    def __init__(self, path):
        block = gemmi.cif.read(path)[0]
        self.lengths = [block.find_value("_cell_" + k) for k in
                        ("length_a", "length_b", "length_c", "angle_alpha", "angle_beta", "angle_gamma")]
        self.sites = {}
        labels = [gemmi.cif.as_string(v) for v in block.find_loop("_atom_site_label")]
        for label, *x in zip(labels, *(block.find_loop("_atom_site_fract_" + k) for k in "xyz")):
            x = np.array([number(text) for text in x])
            self.sites[label] = x - np.floor(x)

    def structure(self, dmax):
        """As measure_geometry takes it, with labels of letters and digits alone."""
        cell = " ".join(repr(number(text)) for text in self.lengths)
        sites = [(plain(label), " ".join(repr(v) for v in x), {}) for label, x in self.sites.items()]
        return ("", "", (cell, {}), dmax, sites, [])


def plain(label):
    return re.sub(r"\W", "_", label)


class Chooser:
    """The images of the atoms of calls, by brute force."""

    def __init__(self, crystal, operators, frame):
        self.crystal, self.operators, self.frame = crystal, operators, frame

    def image(self, label, op, cells):
        rotation, translation = self.operators[op]
        return rotation @ self.crystal.sites[label] + translation + np.array(cells)

    def distance(self, x1, x2):
        return np.linalg.norm(self.frame @ (x2 - x1))

    def free_images(self, label, point, standing):
        """(distance, operator, cell, position) of each place of a site, the nearest first."""
        found = []
        for op in range(len(self.operators)):
            home = np.round(point - self.image(label, op, (0, 0, 0))).astype(int)
            for step in np.ndindex(5, 5, 5):
                cells = tuple(int(c) for c in home + np.array(step) - 2)
                x = self.image(label, op, cells)
                found.append((self.distance(point, x), op, cells, x))
        found.sort(key=lambda f: f[0])
        found = [f for f in found if f[0] < found[0][0] + 6.0]
        places, groups = [], []
        for f in found:
            if not groups or f[0] - groups[-1][0][0] >= 0.001:
                groups.append([])
            groups[-1].append(f)
        for which, group in enumerate(groups):
            for f in sorted(group, key=lambda g: g[1:3]):
                taken = [p[4] for p in places] + standing
                if all(self.distance(f[3], x) > 0.05 for x in taken):
                    places.append((f[0], f[1], f[2], which, f[3]))
        return places

    @staticmethod
    def step(places, k):
        """Length, how many are equal, and the length to the next one further."""
        equal = [p[0] for p in places if p[3] == places[k][3]]
        return places[k][0], len(equal), min(p[0] for p in places if p[3] > places[k][3])

    def call(self, arguments):
        """The arguments with codes, and the steps that were chosen."""
        points, standing, marks, text, steps, last = [], [], [], "", [], ""
        for token in re.findall(r"centroid\(|\)|[,;]|\s+|[A-Za-z][\w]*(?:\(\w+\))?(?:\[\w+\])?", arguments):
            text += token
            if token == "centroid(":
                marks.append(len(points))
            elif token == ")":
                first = marks.pop()
                points[first:] = [np.mean(points[first:], axis=0)]
                last = "centroid"
            elif token[0].isalpha():
                label, code = re.match(r"([^\[]*)(?:\[(\w+)\])?$", token).groups()
                if code and "_" in code:
                    op, digits = code.split("_")
                    x = self.image(label, int(op) - 1, [int(d) - 5 for d in digits])
                else:
                    if points:
                        k = int(code or 1) - 1
                        places = self.free_images(label, points[-1], standing)
                        _, op, cells, _, x = places[k]
                        steps.append((last + "-" + label,) + self.step(places, k))
                    else:
                        op, cells, x = 0, (0, 0, 0), self.crystal.sites[label]
                    chosen = "[%d_%s]" % (op + 1, "".join(str(5 + c) for c in cells))
                    text = text[:len(text) - len(token)] + label + chosen
                points.append(x)
                standing.append(x)
                last = label
        return text, steps

    def expression(self, text):
        """The whole expression with codes and steps."""
        coded, steps, at = "", [], 0
        for found in re.finditer(r"\b(?:dist|angle|torsion|offplane|planes|x|y|z|mean|vol|qe|av|baur|econ"
                                 r"|shift|sigma)\(", text):
            if found.start() < at:
                continue
            depth, end = 1, found.end()
            while depth:
                depth += {"(": 1, ")": -1}.get(text[end], 0)
                end += 1
            call, call_steps = self.call(text[found.end():end - 1])
            coded += text[at:found.end()] + call + ")"
            steps += call_steps
            at = end
        return coded + text[at:], steps


def said_by(folder, lines):
    return subprocess.run([program], input="\n".join(lines) + "\n", cwd=folder, capture_output=True,
                          text=True, timeout=300,
                          env=dict(os.environ, LOCALAPPDATA=folder, HOME=folder)).stdout


def faults_of_steps(said, steps):
    text = "; ".join("%s %.3f (%d equal, next %.3f)" % s for s in steps)
    pattern = re.compile(r"(\S+) ([\d.]+) \((\d+) equal, next ([\d.]+)\)")
    here, there = pattern.findall(said), pattern.findall(text)
    alike = len(here) == len(there) and all(
        h[0] == t[0] and h[2] == t[2] and abs(float(h[1]) - float(t[1])) < 0.0015 and
        abs(float(h[3]) - float(t[3])) < 0.0015 for h, t in zip(here, there))
    return [] if alike else ["steps %s here, %s by numpy" % (said.strip(), text)]


def faults_of(answer, coded, steps, value, printed):
    lines = answer.split("\n")
    faults = []
    if lines[0] != "     m = " + coded:
        faults.append("codes%s here, %s by numpy" % (lines[0][5:], coded))
    found = re.match(r"     reference block: (-?[\d.]+)(E[-+]\d+)?", lines[1]) if len(lines) > 1 else None
    here = float(found[1] + (found[2] or "")) if found else float("nan")
    unit = 10.0 ** -len(found[1].partition(".")[2]) if found else 0.0
    # Angles near 0 or 180 lose digits to 32-bit coordinates; polyhedra are those of 32-bit records.
    off = abs(here - value)
    if "torsion" in coded:
        off = abs((here - value + 180) % 360 - 180)
    if not off <= 0.51 * unit + 1e-4 * max(1.0, abs(value)):
        faults.append("%s here, %.6f by numpy" % (here, value))
    if printed and abs(value - printed[0]) > printed[1]:
        faults.append("%.4f by numpy, %s printed" % (value, printed[0]))
    steps_said = lines[2] if len(lines) > 2 else ""
    return faults + faults_of_steps(steps_said, steps)


def judge(path, dmax, measures):
    crystal = Crystal(path)
    with tempfile.TemporaryDirectory() as folder:
        os.symlink(path, os.path.join(folder, "in.cif"))
        start = ["READ full in.cif", "Y", "CALC poly", "0.5 %s" % dmax, "0"]
        said = said_by(folder, start + ["LIST symmetry", "EXIT"])
        texts = re.findall(r"^ +\d+:(\S+,\S+,\S+)$", said, re.M)
        structure = measure_geometry.Structure(crystal.structure(dmax), texts, {}, 0, 1)
        chooser = Chooser(crystal, structure.operators, structure.draws.frame[0])
        asked = [m if isinstance(m, tuple) else (m,) for m in measures]
        lines = start + ["MEASURE"] + ["m = " + m[0] for m in asked] + ["", "EXIT"]
        answers = said_by(folder, lines).split(PROMPT)[1:]
    faults = []
    for (text, *printed), answer in zip(asked, answers):
        coded, steps = chooser.expression(text)
        simple = re.sub(r"([A-Za-z]\w*\(\w+\)|\w+)(?=\[)", lambda m: plain(m[1]), coded)
        value = structure.evaluate(simple)[0]
        faults += ["%s: %s: %s" % (os.path.basename(path), text, f)
                   for f in faults_of(answer, coded, steps, value, printed)]
    if len(answers) != len(asked) + 1:
        faults.append("%s: the dialogue has not gone on to its end" % path)
    return len(asked), faults


def judge_series(files, measures):
    """Faults of what the program has in each block of a series against what is printed."""
    faults = []
    lines = ["READ full " + files, "Y", "CALC poly", "0.5 2.8", "0", "MEASURE"]
    lines += ["m%d = %s" % (k, m[0]) for k, m in enumerate(measures)] + ["", "LIST measures", "EXIT"]
    with tempfile.TemporaryDirectory() as folder:
        said = said_by(folder, lines)
    rows = re.findall(r"^ +\d+: .{14}: +\S+ +\S+ +1 (.*)$", said.rpartition("BLOCKNAME")[2], re.M)
    for k, (text, allowed, printed) in enumerate(measures):
        for row, value in zip(rows, printed):
            if value is not None and abs(float(row.split()[k]) - value) > allowed:
                faults.append("%s: %s, %s printed" % (text, row.split()[k], value))
    if any(len(rows) != len(m[2]) for m in measures):
        faults.append("%d blocks of %s" % (len(rows), files))
    return faults


def main():
    measures, faults, structures = 0, [], 0
    for pattern, wanted in SERIES:
        files = os.path.join(os.path.abspath(sys.argv[2]), pattern)
        if os.path.isdir(os.path.dirname(files)):
            faults += judge_series(files, wanted)
    for file, dmax, wanted in PUBLISHED:
        path = os.path.join(os.path.abspath(sys.argv[2]), file)
        if not os.path.exists(path):
            continue
        structures += 1
        count, wrong = judge(path, dmax, wanted)
        measures += count
        faults += wrong
    print("\n".join(faults), end="\n" if faults else "")
    print(structures, measures, len(faults))
    return len(faults) > 0


program = os.path.abspath(sys.argv[1])
sys.exit(main())
