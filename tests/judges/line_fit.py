#!/usr/bin/python3
"""line_fit.py RESULTS: works the fits of a file out anew by numpy and tells those that differ by
more than 1e-5. A line is: curve (1 line, 2 parabola), at, number of points, x dx y dy of each, then
value, slope, relative and second with their esds, and the reduced chi-square.
line_fit.py --sheets VALUES.csv FITS.csv: the same of what FIT has left to CSV, out of the sheet of a
graph against P, where the features stand in the same order.
line_fit.py --stored: the fixed cases of tests/unit/xtal__line_fit.cpp with numpy's values.
line_fit.py --birch-murnaghan: by how much lines and parabolas through exact third-order
Birch-Murnaghan volumes miss the compressibility at zero pressure.
Ends with 0 when nothing differs, 77 without numpy."""
import csv
import sys

try:
    import numpy as np
except ImportError:
    sys.exit(77)

ROUNDS = 300


def fit(points, at, degree):
    """Least squares about at by the inverse of the normal matrix."""
    x, dx, y, dy = (np.array(column, dtype=float) for column in zip(*points))
    weighted = bool(np.all(dy > 0))
    design = np.vander(x - at, degree + 1, increasing=True)
    variance = dy**2 if weighted else np.ones_like(y)
    for _ in range(ROUNDS):
        normal = np.linalg.inv(design.T @ (design / variance[:, None]))
        c = normal @ (design.T @ (y / variance))
        if not weighted or not np.any(dx > 0):
            break
        slope = np.polyval(np.polyder(c[::-1]), x - at)
        variance = dy**2 + slope**2 * dx**2
    chi2 = np.sum((y - design @ c) ** 2 / variance) / (len(x) - degree - 1)
    covariance = normal if weighted else normal * chi2
    relative = c[1] / c[0]
    gradient = np.array([-c[1] / c[0] ** 2, 1 / c[0]])
    relative_esd = np.sqrt(gradient @ covariance[:2, :2] @ gradient)
    esd = np.sqrt(np.diag(covariance))
    second = (c[2], esd[2]) if degree == 2 else (0.0, 0.0)
    return [c[0], esd[0], c[1], esd[1], relative, relative_esd, *second,
            chi2 if weighted else float("nan")]


def differ(ours, numpys):
    if np.isnan(numpys):
        return not np.isnan(ours)
    return not abs(ours - numpys) <= 1e-5 * abs(numpys) + 1e-14


def compare(path):
    wrong = compared = 0
    for line in open(path):
        numbers = [float(word) for word in line.split()]
        degree, at, n = int(numbers[0]), numbers[1], int(numbers[2])
        points = [numbers[3 + 4 * i:7 + 4 * i] for i in range(n)]
        ours = numbers[3 + 4 * n:]
        for word, mine, numpys in zip(NAMES, ours, fit(points, at, degree)):
            compared += 1
            if differ(mine, numpys):
                wrong += 1
                print(f"{line.strip()}\n  {word}: {mine} here, {numpys} by numpy")
    print(compared, "values compared,", wrong, "differ")
    return 1 if wrong or not compared else 0


NAMES = ["value", "value_esd", "slope", "slope_esd", "relative", "relative_esd", "second",
         "second_esd", "chi2"]

# A bond under pressure, with esds of both; the same without esds; a cell edge against temperature.
BOND = [(0.0001, 0.0, 2.1160, 0.0010), (1.54, 0.05, 2.1112, 0.0030), (3.10, 0.04, 2.1065, 0.0020),
        (5.24, 0.10, 2.0989, 0.0040), (7.63, 0.08, 2.0931, 0.0015), (9.98, 0.20, 2.0877, 0.0025)]
NO_ESDS = [(x, dx, y, 0.0) for x, dx, y, _ in BOND]
EDGE = [(100.0, 2.0, 5.6301, 0.0002), (200.0, 1.0, 5.6352, 0.0003), (298.0, 0.0, 5.6415, 0.0001),
        (400.0, 3.0, 5.6498, 0.0004), (550.0, 4.0, 5.6642, 0.0003), (700.0, 5.0, 5.6811, 0.0005)]
STORED = [("BOND", BOND, 0.0001, 1), ("BOND", BOND, 0.0001, 2), ("NO_ESDS", NO_ESDS, 0.0001, 1),
          ("NO_ESDS", NO_ESDS, 5.24, 2), ("EDGE", EDGE, 298.0, 1), ("EDGE", EDGE, 298.0, 2)]


def stored():
    for name, points, at, degree in STORED:
        print(name, at, degree, ", ".join(f"{value:.9g}" for value in fit(points, at, degree)))
    return 0


def pressure(v, k0, kp):
    """Third-order Birch-Murnaghan, v being V over V0."""
    f = (v ** (-2 / 3) - 1) / 2
    return 3 * k0 * f * (1 + 2 * f) ** 2.5 * (1 + 1.5 * (kp - 4) * f)


def volume(p, k0, kp):
    low, high = 0.2, 1.0
    for _ in range(200):
        middle = (low + high) / 2
        low, high = (middle, high) if pressure(middle, k0, kp) > p else (low, middle)
    return (low + high) / 2


def birch_murnaghan():
    for k0 in (37.0, 85.0, 128.0, 200.0):
        for highest in (2.0, 5.0, 10.0, 20.0):
            p = np.linspace(0.0, highest, 11)
            points = [(x, 0.0, volume(x, k0, 4.0), 0.0) for x in p]
            off = [100 * (fit(points, 0.0, degree)[4] * -k0 - 1) for degree in (1, 2)]
            print(f"{k0:5.0f} {highest:5.0f} {off[0]:8.1f} {off[1]:8.1f}")
    return 0


def real(text):
    """The 32-bit real whose shortest digits these are."""
    return float(np.float32(text or 0))


def compare_sheets(values, fits):
    values = list(csv.DictReader(open(values, newline="", encoding="utf-8")))
    fits = list(csv.DictReader(open(fits, newline="", encoding="utf-8")))
    names = [name for name in list(values[0])[7:] if not name.endswith("_esd")]
    wrong = compared = 0
    for name, found in zip(names, fits):
        columns = ["P", "P_esd", name, name + "_esd"]
        points = [[real(row[column]) for column in columns] for row in values if row[name]]
        numpys = fit(points, real(found["at"]), 2 if "second" in found else 1)
        for word, numpys_value in zip(NAMES, numpys):
            if word not in found or not found[word] and np.isnan(numpys_value):
                continue
            scale = 1000 if word.startswith("relative") else 1
            compared += 1
            if differ(float(found[word]), scale * numpys_value):
                wrong += 1
                print(f"{name}: {word}: {found[word]} here, {scale * numpys_value} by numpy")
    print(compared, "values compared,", wrong, "differ")
    return 1 if wrong or not compared or len(names) != len(fits) else 0


if sys.argv[1] == "--sheets":
    sys.exit(compare_sheets(sys.argv[2], sys.argv[3]))
if sys.argv[1] == "--stored":
    sys.exit(stored())
if sys.argv[1] == "--birch-murnaghan":
    sys.exit(birch_murnaghan())
sys.exit(compare(sys.argv[1]))
