"""Operators of Hall symbols as gemmi finds them.

    hall_operators.py list     the Hall symbols of all settings that gemmi knows, one a line
    hall_operators.py          reads Hall symbols, one a line, and writes the operators of each: twelve
                               whole numbers an operator, the rotation by rows and the translation
                               in 24ths
"""
import sys

import gemmi

if sys.argv[1:] == ["list"]:
    print("\n".join(sorted({setting.hall for setting in gemmi.spacegroup_table()})))
    sys.exit()
for line in sys.stdin:
    print(" ".join(str(number) for op in gemmi.symops_from_hall(line.rstrip("\n"))
                   for number in [x // op.DEN for row in op.rot for x in row] +
                   [t % op.DEN for t in op.tran]))
