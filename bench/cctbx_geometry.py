#!/usr/bin/python3
"""Distances and angles with esds of every block of a CIF by cctbx: what CALC is measured against.

cctbx_geometry.py FILE DMAX prints the blocks, the bonds and angles of one block and the CPU time a
block. Only the calculation is timed: the search for the bonds, the loops of their lengths and of the
angles between them, and the esds of both from coordinates and cell.
"""
import sys
import time

from cctbx import crystal
from cctbx.array_family import flex
import iotbx.cif
from iotbx.cif import geometry

ANIONS = {"O", "F", "Cl", "Br", "I"}


def coordinate_variances(block, structure):
    """Upper triangle of the covariance matrix of the coordinates; the matrix is diagonal."""
    esds = []
    for row in zip(*(block["_atom_site_fract_" + axis] for axis in "xyz")):
        for text in row:
            value, _, rest = text.partition("(")
            decimals = len(value.partition(".")[2])
            esds.append(int(rest[:-1]) * 10.0**-decimals if rest else 0.0)
    size = 3 * structure.scatterers().size()
    matrix = flex.double(size * (size + 1) // 2, 0.0)
    place = 0
    for i in range(size):
        matrix[place] = esds[i] ** 2
        place += size - i
    return matrix


def cell_variances():
    """Upper triangle of the covariance matrix of the cell: lengths 0.0005, angles 0.005 radians."""
    matrix = flex.double(21, 0.0)
    place = 0
    for i in range(6):
        matrix[place] = (0.0005 if i < 3 else 0.005 * 3.14159 / 180) ** 2
        place += 6 - i
    return matrix.matrix_packed_u_as_symmetric().matrix_symmetric_as_packed_u()


def bonds_of(structure, dmax):
    """Table of the pairs of a cation and an anion up to dmax."""
    mappings = structure.asu_mappings(buffer_thickness=dmax)
    table = crystal.pair_asu_table(asu_mappings=mappings)
    kinds = [s.element_symbol() in ANIONS for s in structure.scatterers()]
    for pair in crystal.neighbors_fast_pair_generator(mappings, distance_cutoff=dmax):
        if kinds[pair.i_seq] != kinds[pair.j_seq]:
            table.add_pair(pair)
    return table


def measure(structure, variances, cell, dmax):
    table = bonds_of(structure, dmax)
    arguments = {
        "covariance_matrix": variances,
        "cell_covariance_matrix": cell,
        "parameter_map": structure.parameter_map(),
    }
    labels = structure.scatterers().extract_labels()
    sites = structure.sites_frac()
    distances = geometry.distances_as_cif_loop(table, labels, sites_frac=sites, **arguments)
    angles = geometry.angles_as_cif_loop(table, labels, sites_frac=sites, **arguments)
    return distances.loop.size(), angles.loop.size()


def main():
    name, dmax = sys.argv[1], float(sys.argv[2])
    reader = iotbx.cif.reader(file_path=name)
    blocks = reader.model()
    seconds = 0.0
    counts = (0, 0)
    structures = reader.build_crystal_structures()
    for title, structure in structures.items():
        variances = coordinate_variances(blocks[title], structure)
        for scatterer in structure.scatterers():
            scatterer.flags.set_grad_site(True)
        start = time.process_time()
        counts = measure(structure, variances, cell_variances(), dmax)
        seconds += time.process_time() - start
    print("%d blocks, %d bonds and %d angles each, %.3f ms a block" %
          (len(structures), *counts, 1000 * seconds / len(structures)))


if __name__ == "__main__":
    main()
