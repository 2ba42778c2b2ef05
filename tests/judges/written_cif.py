# Reads paths of CIFs, one a line, and prints what another program sees in them. A line has four fields
# with a tab between: block, kind, label, and texts and numbers with blanks between, each number with
# its esd behind it. The argument names that program: gemmi, or cod for cif2json of cod-tools.
# Kinds: cell (with the volume), conditions (T, P), symbol, operators, atom (type, kind of displacement,
# x, y, z, occupancy, U), tensor (11, 22, 33, 12, 13, 23), bond and angle, whose labels are those of the
# atoms and the symmetry codes. Of gemmi also group (the number that it finds for the operators) and,
# without esds, site (element, x, y, z, occupancy, U, tensor), as it stands in gemmi's own model, and
# measured bond and measured angle, from its own positions of the atoms with those symmetry codes. With
# numpy also ueq, the mean square displacement of the Cartesian tensor, with the esd that the free
# components of the tensor under the site's symmetry give it.
# A file that does not parse ends the run with status 1.
import json
import math
import re
import subprocess
import sys

CELL = ["_cell_length_a", "_cell_length_b", "_cell_length_c", "_cell_angle_alpha", "_cell_angle_beta",
        "_cell_angle_gamma", "_cell_volume"]
CONDITIONS = ["_diffrn_ambient_temperature", "_diffrn_ambient_pressure"]
SYMBOL = "_symmetry_space_group_name_H-M"
OPERATORS = "_space_group_symop_operation_xyz"
SITE = ["label", "type_symbol", "fract_x", "fract_y", "fract_z", "occupancy", "adp_type",
        "U_iso_or_equiv"]
TENSOR = ["label", "U_11", "U_22", "U_33", "U_12", "U_13", "U_23"]
BOND = ["atom_site_label_1", "atom_site_label_2", "site_symmetry_1", "site_symmetry_2", "distance"]
ANGLE = ["_atom_site_label_1", "_atom_site_label_2", "_atom_site_label_3", "_site_symmetry_1",
         "_site_symmetry_2", "_site_symmetry_3", ""]


def gemmi_text(text):
    return text if text in (".", "?") else gemmi.cif.as_string(text)


def gemmi_blocks(path):
    for block in gemmi.cif.read(path):
        yield block.name, lambda tag: [gemmi_text(text) for text in block.find_values(tag)]


def cod_blocks(path):
    text = subprocess.run(["cif2json", path], check=True, capture_output=True, text=True)
    if text.stderr.strip():
        raise ValueError(text.stderr)
    decoder = json.JSONDecoder()
    at = 0
    while at < len(text.stdout):
        record, at = decoder.raw_decode(text.stdout, at)
        while text.stdout[at:at + 1].isspace():
            at += 1
        values = record["data"]["values"]
        yield record["data"]["name"], lambda tag: values.get(tag, [])


def value_and_esd(text):
    if text in (".", "?"):
        return "0 0"
    value, decimals, esd = re.fullmatch(r"(-?\d*(?:\.(\d*))?(?:E[-+]\d+)?)(?:\((\d+)\))?",
                                        text).groups()
    return f"{float(value)!r} {int(esd or 0) / 10 ** len(decimals or '')!r}"


def rows(get, prefix, names):
    return list(zip(*[get(prefix + name) for name in names]))


def show(*fields):
    print(*fields, sep="\t")


def show_block(name, get):
    show(name, "cell", "", " ".join(value_and_esd(get(tag)[0]) for tag in CELL))
    show(name, "conditions", "", " ".join(value_and_esd(get(tag)[0]) for tag in CONDITIONS))
    show(name, "symbol", "", get(SYMBOL)[0])
    show(name, "operators", "", " ".join(get(OPERATORS)))
    displaced = bool(get("_atom_site_adp_type"))
    for row in rows(get, "_atom_site_", SITE if displaced else SITE[:6]):
        kind, u = row[6:] if displaced else (".", ".")
        numbers = " ".join(value_and_esd(text) for text in row[2:6])
        show(name, "atom", row[0], f"{row[1]} {kind} {numbers} {value_and_esd(u)}")
    for label, *components in rows(get, "_atom_site_aniso_", TENSOR):
        show(name, "tensor", label, " ".join(value_and_esd(text) for text in components))
    for *labels, value in rows(get, "_geom_bond_", BOND):
        show(name, "bond", " ".join(labels), value_and_esd(value))
    for *labels, value in rows(get, "_geom_angle", ANGLE):
        show(name, "angle", " ".join(labels), value_and_esd(value))


def angle_at(centre, first, second):
    a = first - centre
    b = second - centre
    return math.degrees(math.atan2(a.cross(b).length(), a.dot(b)))


def show_measures(block, get, structure, operators):
    fractional = {site.label: site.fract.tolist() for site in structure.sites}

    def position(label, code):
        operator, cells = code.split("_")
        image = operators[int(operator) - 1].apply_to_xyz(fractional[label])
        return structure.cell.orthogonalize(
            gemmi.Fractional(*[x + int(digit) - 5 for x, digit in zip(image, cells)]))

    if len(fractional) < len(structure.sites):
        return  # a label of two atoms tells neither
    for *labels, _ in rows(get, "_geom_bond_", BOND):
        first, second = [position(*pair) for pair in zip(labels[:2], labels[2:])]
        show(block.name, "measured bond", " ".join(labels), repr((second - first).length()))
    for *labels, _ in rows(get, "_geom_angle", ANGLE):
        first, centre, second = [position(*pair) for pair in zip(labels[:3], labels[3:])]
        show(block.name, "measured angle", " ".join(labels), repr(angle_at(centre, first, second)))


def cartesian_trace(cell):
    """Weights of U11, U22, U33, U12, U13, U23 in Ueq: a third of the trace of M U M', where the columns of
    M are the axes times the reciprocal lengths."""
    frame = numpy.array(cell.orth.mat.tolist()) @ numpy.diag(reciprocal_lengths(cell))
    metric = frame.T @ frame
    return numpy.array([metric[i, j] * (1 if i == j else 2) for i, j in TENSOR_PLACES]) / 3


def reciprocal_lengths(cell):
    rows = numpy.array(cell.frac.mat.tolist())
    return numpy.sqrt((rows * rows).sum(axis=1))


def free_tensors(cell, operators, fractional):
    """Rows: a basis of the tensors (six components of U) that the site's operators leave as they are, each
    with one component, its last field, that the others of the basis do not have."""
    lengths = reciprocal_lengths(cell)
    conditions = []
    for op in operators:
        image = numpy.array(op.apply_to_xyz(fractional)) - fractional
        if numpy.abs(image - numpy.round(image)).max() > 0.001:
            continue
        rotation = numpy.array(op.rot) / op.DEN
        turn = rotation * lengths[None, :] / lengths[:, None]
        columns = []
        for i, j in TENSOR_PLACES:
            unit = numpy.zeros((3, 3))
            unit[i, j] = unit[j, i] = 1
            turned = turn @ unit @ turn.T - unit
            columns.append([turned[place] for place in TENSOR_PLACES])
        conditions.append(numpy.array(columns).T)
    _, sizes, vectors = numpy.linalg.svd(numpy.vstack(conditions))
    basis = vectors[int((sizes > 1e-6).sum()):]
    pivots = []
    for row in range(len(basis)):
        pivot = next(k for k in range(6) if abs(basis[row:, k]).max() > 1e-6)
        best = row + int(abs(basis[row:, pivot]).argmax())
        basis[[row, best]] = basis[[best, row]]
        basis[row] /= basis[row, pivot]
        for other in range(len(basis)):
            if other != row:
                basis[other] -= basis[other, pivot] * basis[row]
        pivots.append(pivot)
    return list(zip(basis, pivots))


def show_ueq(block, get, structure, operators):
    weights = cartesian_trace(structure.cell)
    fractional = {site.label: site.fract.tolist() for site in structure.sites}
    for label, *components in rows(get, "_atom_site_aniso_", TENSOR):
        numbers = [value_and_esd(text).split() for text in components]
        values = numpy.array([float(value) for value, _ in numbers])
        free = free_tensors(structure.cell, operators, numpy.array(fractional[label]))
        variance = sum((weights @ tensor * float(numbers[pivot][1])) ** 2 for tensor, pivot in free)
        show(block.name, "ueq", label, float(weights @ values), math.sqrt(variance))


def show_model(block, get):
    operators = [gemmi.Op(text) for text in get(OPERATORS)]
    group = gemmi.find_spacegroup_by_ops(gemmi.GroupOps(operators))
    show(block.name, "group", "", group.number if group else 0)
    structure = gemmi.make_small_structure_from_block(block)
    show_measures(block, get, structure, operators)
    if numpy:
        show_ueq(block, get, structure, operators)
    for site in structure.sites:
        u = site.aniso
        numbers = [*site.fract.tolist(), site.occ, site.u_iso, u.u11, u.u22, u.u33, u.u12, u.u13, u.u23]
        show(block.name, "site", site.label, site.element.name + " " + " ".join(map(repr, numbers)))


TENSOR_PLACES = [(0, 0), (1, 1), (2, 2), (0, 1), (0, 2), (1, 2)]
try:
    import numpy
except ImportError:
    numpy = None
judge = sys.argv[1]
if judge == "gemmi":
    import gemmi
for line in sys.stdin:
    path = line.rstrip("\n")
    try:
        for block_name, getter in (gemmi_blocks if judge == "gemmi" else cod_blocks)(path):
            show_block(block_name, getter)
        if judge == "gemmi":
            for model, (_, getter) in zip(gemmi.cif.read(path), gemmi_blocks(path)):
                show_model(model, getter)
    except Exception as problem:
        print(path, problem, file=sys.stderr)
        sys.exit(1)
