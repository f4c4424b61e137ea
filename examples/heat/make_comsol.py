#!/usr/bin/python3
"""Makes a table of surface losses as COMSOL exports it, for the example mold (lengths in mm).

Usage: make_comsol.py MOLD.ofe OUT.txt [POINTS]

An induction coil of two turns lies above the tray. The points are the middles of the part's faces, evenly thinned out;
each carries the loss that falls with the distance to the coil, and the current density as a second expression.
"""
import os
import sys

import numpy as np

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts"))
sys.dont_write_bytecode = True
import read_ofe

COIL_HEIGHT, COIL_RADII = 75.0, (20.0, 35.0)  # mm
PEAK_LOSS, REACH = 2.4e5, 12.0  # W/m2, mm

HEAD = """\
% Model:              tray_induction.mph
% Version:            COMSOL 6.1.0.357
% Date:               Mar 14 2024, 10:21
% Dimension:          3
% Nodes:              {count}
% Expressions:        2
% Description:        Surface losses, electromagnetic, Surface current density, norm
% Length unit:        m
% x                       y                        z                        mf.Qsrh (W/m^2)          mf.normJs (A/m)
"""


def face_middles(mesh):
    """Of the part's faces (interface 1), in mm."""
    faces = mesh["elementSurfaces"]
    nodes = faces["nodes"][faces["interfaceId"] == 1][:, :3]
    return mesh["nodes"]["xyz"].astype(float)[nodes - 1].mean(axis=1)


def losses(points):
    around = np.hypot(points[:, 0], points[:, 1])
    total = np.zeros(len(points))
    for radius in COIL_RADII:
        total += PEAK_LOSS * np.exp(-np.hypot(around - radius, points[:, 2] - COIL_HEIGHT) / REACH)
    return total


def main(source, target, count="400"):
    points = face_middles(read_ofe.read(source))
    points = points[np.linspace(0, len(points) - 1, int(count)).astype(int)]
    loss = losses(points)
    with open(target, "w") as out:
        out.write(HEAD.format(count=len(points)))
        for (x, y, z), q in zip(points / 1000, loss):
            out.write("".join(f"{value:<25.17g}" for value in (x, y, z, q, np.sqrt(q / 2.5e-3))).rstrip() + "\n")


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    main(*sys.argv[1:])
