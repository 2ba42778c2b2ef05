#!/usr/bin/python3
"""measure_values.py --write FOLDER: the structures as CIF, with index.txt.
measure_values.py RESULTS: compares the values of measures with numpy's; tells those that differ by
more than what 32-bit reals tell. Ends with 0 when none does, 77 without numpy or gemmi."""
import sys

try:
    import gemmi  # noqa: F401, used by measure_structures
    import numpy  # noqa: F401
except ImportError:
    sys.exit(77)
import measure_geometry
import measure_structures


def main():
    if sys.argv[1] == "--write":
        measure_structures.write_all(sys.argv[2])
        return 0
    wrong = 0
    for name, text, value, _, draws in measure_geometry.judged(sys.argv[1], 0, 1):
        if not abs(value - draws[0]) <= 3e-5 * max(abs(draws[0]), 1.0):
            wrong += 1
            print(f"{name}: {text}: {value} here, {draws[0]} by numpy")
    return wrong > 0


sys.exit(main())
