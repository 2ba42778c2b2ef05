# Reads paths of CIFs, one a line, and writes for each block a line of five fields, tab between: path,
# block name, the group number that gemmi finds for the listed operators and that for the symbol (0:
# a group without a number, -1: none given or not understood), and 1 when the operators stand in
# quotes, else 0. Blocks of files that gemmi cannot parse are left out.
import sys

import gemmi

OPERATOR_NAMES = ["_space_group_symop_operation_xyz", "_symmetry_equiv_pos_as_xyz"]
SYMBOL_NAMES = ["_symmetry_space_group_name_H-M", "_space_group_name_H-M_alt"]


def operator_texts(block):
    for name in OPERATOR_NAMES:
        texts = list(block.find_values(name))
        if texts:
            return texts
    return []


def number_of_operators(texts):
    try:
        listed = {gemmi.Op(gemmi.cif.as_string(text)).wrap().triplet() for text in texts}
        listed.discard("x,y,z")
        operators = gemmi.GroupOps([gemmi.Op(text) for text in ["x,y,z"] + sorted(listed)])
        operators.add_missing_elements()
        group = gemmi.find_spacegroup_by_ops(operators)
    except Exception:
        return -1
    return group.number if group else 0


def number_of_symbol(block):
    for name in SYMBOL_NAMES:
        text = block.find_value(name)
        if text:
            group = gemmi.find_spacegroup_by_name(gemmi.cif.as_string(text))
            return group.number if group else -1
    return -1


for line in sys.stdin:
    path = line.rstrip("\n")
    try:
        document = gemmi.cif.read(path)
    except Exception:
        continue
    for block in document:
        texts = operator_texts(block)
        of_operators = number_of_operators(texts) if texts else -1
        quoted = int(bool(texts) and all(text[0] in "'\"" for text in texts))
        print(path, block.name, of_operators, number_of_symbol(block), quoted, sep="\t")
