#!/usr/bin/python3
"""measure_esds.py RESULTS: compares the esds of measures with the spread over 20,000 draws of the
free parameters, and tells those that differ by more than 5 percent. Ends with 0 when none does, 77
without numpy."""
import sys

try:
    import numpy
except ImportError:
    sys.exit(77)
import measure_geometry

DRAWS = 20000
SEED = 20250201


def main():
    wrong = 0
    for name, text, value, esd, draws in measure_geometry.judged(sys.argv[1], DRAWS, SEED):
        spread = numpy.std(draws[1:])
        none = 1e-4 if "angle" in text or "sigma" in text or "planes" in text else 1e-6
        fits = spread < none if esd == 0 else abs(esd - spread) <= 0.05 * spread
        if not fits:
            wrong += 1
            print(f"{name}: {text} = {value}: esd {esd} here, {spread} by draws")
    return wrong > 0


sys.exit(main())
