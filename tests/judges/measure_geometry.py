"""Quantities of structures by numpy, for the judges of measures: positions out of free parameters,
for many draws of them at once, and what is measured there."""
import re

import numpy as np


class Draws:
    """Values of all free parameters of a structure; the first draw holds the values themselves."""

    def __init__(self, structure, count, seed):
        random = np.random.default_rng(seed)
        self.size = count + 1

        def draws(parameters):
            drawn = {}
            for name, (value, esd) in sorted(parameters.items()):
                drawn[name] = value + esd * np.concatenate(([0.0], random.standard_normal(count)))
            return drawn

        cell, cell_parameters = structure[2]
        self.cell = self.evaluated(cell.split(), draws(cell_parameters))
        self.sites = {}
        for label, coordinates, parameters in structure[4]:
            self.sites[label] = self.evaluated(coordinates.split(), draws(parameters))
        self.frame = self.frames()

    def evaluated(self, expressions, drawn):
        return np.array([eval(e, {}, drawn) * np.ones(self.size) for e in expressions]).T

    def frames(self):
        a, b, c = self.cell[:, 0], self.cell[:, 1], self.cell[:, 2]
        ca, cb, cg = np.cos(np.radians(self.cell[:, 3:])).T
        sg = np.sin(np.radians(self.cell[:, 5]))
        zero = np.zeros(self.size)
        cy = (ca - cb * cg) / sg
        cz = np.sqrt(1 - cb ** 2 - cy ** 2)
        return np.array([[a, b * cg, c * cb], [zero, b * sg, c * cy], [zero, zero, c * cz]]).transpose(2, 0, 1)

    def cartesian(self, fractional):
        return np.einsum("nij,nj->ni", self.frame, fractional)


def operator(text):
    """Rotation and translation of a text such as -x+1/2,y,z-1/4."""
    rotation, translation = np.zeros((3, 3)), np.zeros(3)
    for row, field in enumerate(text.split(",")):
        for sign, number, letter in re.findall(r"([+-]?)(\d+(?:\.\d+)?(?:/\d+)?)?([xyz]?)", field):
            if not number and not letter:
                continue
            value = eval(number) if number else 1.0
            value = -value if sign == "-" else value
            if letter:
                rotation[row, "xyz".index(letter)] += value
            else:
                translation[row] += value
    return rotation, translation


def norm(v):
    return np.sqrt((v * v).sum(-1))


def angle_between(u, v):
    return np.degrees(np.arctan2(norm(np.cross(u, v)), (u * v).sum(-1)))


def plane(points):
    """Mean and normal of the plane of least squares; up where the first three run anticlockwise."""
    points = np.array(points).transpose(1, 0, 2)
    mean = points.mean(1)
    normal = np.linalg.svd(points - mean[:, None, :])[2][:, 2, :]
    up = np.cross(points[:, 1] - points[:, 0], points[:, 2] - points[:, 0])
    return mean, normal * np.sign((normal * up).sum(-1))[:, None]


def hull_volume(v):
    """Volume of the hull by all triangles that have no vertex beyond them; v is (draws, n, 3)."""
    n = v.shape[1]
    centre = v.mean(1, keepdims=True)
    v = v - centre
    volume = np.zeros(v.shape[0])
    for i in range(n):
        for j in range(i + 1, n):
            for k in range(j + 1, n):
                normal = np.cross(v[:, j] - v[:, i], v[:, k] - v[:, i])
                normal /= norm(normal)[:, None]
                height = (normal * v[:, i]).sum(-1)
                beyond = np.zeros(v.shape[0], bool)
                within = np.zeros(v.shape[0], int)
                for m in range(n):
                    if m in (i, j, k):
                        continue
                    off = ((v[:, m] - v[:, i]) * normal).sum(-1) * np.sign(height)
                    beyond |= off > 1e-7
                    within += np.abs(off) <= 1e-7
                area = norm(np.cross(v[:, j] - v[:, i], v[:, k] - v[:, i])) / 2
                # Four vertices in a plane make four triangles that cover it twice.
                volume += np.where(beyond, 0, area * np.abs(height) / 3 / np.where(within > 0, 2, 1))
    return volume


class Structure:
    """A structure as its own judge sees it; operators as the program numbers them."""

    def __init__(self, structure, operators, pairs, count, seed):
        self.draws = Draws(structure, count, seed)
        self.operators = [operator(text) for text in operators]
        self.pairs = pairs
        self.dmax = structure[3]
        self.found = {}

    def position(self, label, code):
        op, cells = code.split("_")
        rotation, translation = self.operators[int(op) - 1]
        shift = translation + np.array([int(c) - 5 for c in cells])
        return self.draws.sites[label] @ rotation.T + shift

    def point(self, label, code):
        return self.draws.cartesian(self.position(label, code))

    def ligands(self, label):
        """Vectors to the oxygens within dmax, each draw."""
        if label in self.found:
            return self.found[label]
        draws = self.draws
        centre = draws.sites[label]
        vectors, seen = [], []
        for ligand in draws.sites:
            if not ligand.startswith("O"):
                continue
            for rotation, translation in self.operators:
                first = rotation @ draws.sites[ligand][0] + translation - centre[0]
                cells = np.array(list(np.ndindex(5, 5, 5))) - 2 - np.round(first)
                near = (first + cells) @ draws.frame[0].T
                for cell, vector in zip(cells, near):
                    if not 0.1 < norm(vector) < self.dmax or any(norm(vector - s) < 0.1 for s in seen):
                        continue
                    seen.append(vector)
                    image = draws.sites[ligand] @ rotation.T + translation + cell
                    vectors.append(draws.cartesian(image - centre))
        self.found[label] = np.array(vectors).transpose(1, 0, 2)
        return self.found[label]

    # ---- the words of expressions ----

    def words(self):
        d = self.draws
        one = {
            "dist": lambda a, b: norm(b - a),
            "angle": lambda a, b, c: angle_between(a - b, c - b),
            "torsion": self.torsion, "offplane": self.offplane, "planes": self.planes,
            "centroid": lambda *p: sum(p) / len(p),
            "mean": lambda m: norm(m).mean(1), "vol": hull_volume, "qe": self.qe, "av": self.av,
            "baur": lambda m: np.abs(norm(m) - norm(m).mean(1)[:, None]).mean(1) / norm(m).mean(1),
            "econ": self.econ, "shift": lambda m: norm(m.mean(1)), "sigma": self.sigma,
            "n": lambda m: np.full(d.size, float(m.shape[1])),
            "sin": lambda x: np.sin(np.radians(x)), "sqrt": np.sqrt}
        for k, name in enumerate(["a", "b", "c", "alpha", "beta", "gamma"]):
            one[name] = d.cell[:, k]
        one["V"] = np.linalg.det(d.frame)
        return one

    @staticmethod
    def torsion(a, b, c, d):
        near, middle, far = b - a, c - b, d - c
        n1, n2 = np.cross(near, middle), np.cross(middle, far)
        t = np.degrees(np.arctan2(norm(middle) * (near * n2).sum(-1), (n1 * n2).sum(-1)))
        return t[0] + (t - t[0] + 180) % 360 - 180

    @staticmethod
    def offplane(a, _, *rest):
        mean, normal = plane(rest)
        return ((a - mean) * normal).sum(-1)

    @staticmethod
    def planes(*points):
        split = [k for k, p in enumerate(points) if p is None][0]
        n1, n2 = plane(points[:split])[1], plane(points[split + 1:])[1]
        return np.degrees(np.arctan2(norm(np.cross(n1, n2)), np.abs((n1 * n2).sum(-1))))

    @staticmethod
    def angles(m):
        n = m.shape[1]
        return np.array([angle_between(m[:, i], m[:, j]) for i in range(n) for j in range(i + 1, n)])

    def qe(self, m):
        n, volume = m.shape[1], hull_volume(m)
        r = np.cbrt(9 * np.sqrt(3) * volume / 8) if n == 4 else np.cbrt(0.75 * volume)
        return (norm(m) ** 2).mean(1) / r ** 2

    def av(self, m):
        angles = self.angles(m)
        if m.shape[1] == 4:
            return ((angles - 109.47) ** 2).sum(0) / 5
        cis = angles[np.abs(180 - angles[:, 0]) > 45]
        return ((cis - 90) ** 2).sum(0) / 11

    def sigma(self, m):
        angles = self.angles(m)
        return np.abs(90 - angles[np.abs(180 - angles[:, 0]) > 45]).sum(0)

    @staticmethod
    def econ(m):
        lengths = norm(m)
        mean = lengths.min(1)
        for _ in range(300):
            weights = np.exp(1 - (lengths / mean[:, None]) ** 6)
            mean = (weights * lengths).sum(1) / weights.sum(1)
        return weights.sum(1)

    def bvs(self, label, m):
        d0, b = self.pairs[label]
        return np.exp((d0 - norm(m)) / b).sum(1)

    def evaluate(self, text):
        """An expression in which every atom has its code, for all draws."""
        text = re.sub(r"\b([xyz])\((\w+)\[(\w+)\]\)", lambda m: f"X('{m[1]}','{m[2]}','{m[3]}')", text)
        text = re.sub(r"\bbvs\((\w+)\[\w+\]\)", r"bvs('\1',L('\1'))", text)
        text = re.sub(r"\b(mean|vol|qe|av|baur|econ|shift|sigma|n)\((\w+)\[\w+\]\)", r"\1(L('\2'))", text)
        text = re.sub(r"(\w+)\[(\d+_\d+)\]", r"P('\1','\2')", text)
        text = text.replace(";", ",None,").replace("^", "**")
        words = self.words()
        words.update(P=self.point, L=self.ligands, bvs=self.bvs,
                     X=lambda axis, label, code: self.position(label, code)[:, "xyz".index(axis)])
        return eval(text, {}, words) * np.ones(self.draws.size)


def read_results(path):
    """What the program says: of each structure its operators, pairs, and (text, value, esd)."""
    results = {}
    for line in open(path, encoding="utf-8"):
        kind, name, *fields = line.rstrip("\n").split("\t")
        result = results.setdefault(name, {"operators": [], "pairs": {}, "measures": []})
        if kind == "operator":
            result["operators"].append(fields[0])
        elif kind == "pair":
            result["pairs"][fields[0]] = (float(fields[1]), float(fields[2]))
        else:
            result["measures"].append((fields[0], fields[1], fields[2], fields[3]))
    return results


def judged(path, count, seed):
    """Each measure of each structure: name, text as typed, value, esd, and the judge's draws."""
    import measure_structures
    results = read_results(path)
    for structure in measure_structures.STRUCTURES:
        result = results[structure[0]]
        judge = Structure(structure, result["operators"], result["pairs"], count, seed)
        assert len(result["measures"]) == len(structure[5]), structure[0]
        for typed, coded, value, esd in result["measures"]:
            yield structure[0], typed, float(value), float(esd), judge.evaluate(coded)
