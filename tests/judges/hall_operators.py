# Reads Hall symbols, one a line, and writes the operators that gemmi makes of each, sorted, ";" between.
import sys

import gemmi

for line in sys.stdin:
    operations = gemmi.symops_from_hall(line.rstrip("\n"))
    print(";".join(sorted(op.triplet() for op in operations)))
