#!/usr/bin/python3
"""From a Gmsh mesh to a picture, step by step (./run python examples/python/picture.py; Debian: python3-matplotlib).

Writes mold.ofe, solver.ofe and mold.png into the current directory, or the one named.
"""
import os
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np
from mpl_toolkits.mplot3d.art3d import Poly3DCollection

import orvmesh

# %% A meshed mold becomes a component mesh. Physical groups say what is what; a roles file adds what they cannot.

examples = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "mold")
out = sys.argv[1] if len(sys.argv) > 1 else "."
mold = os.path.join(out, "mold.ofe")
orvmesh.import_msh(os.path.join(examples, "mold.msh"), mold, roles=os.path.join(examples, "roles.json"))
mesh = orvmesh.read(mold)
print(mesh)

# %% Is it sound? And what does the solver get?

report = orvmesh.check(mold)
print("sound" if report.sound else report.text)
done = orvmesh.transfer("part-inserts-channels", mold, os.path.join(out, "solver.ofe"))
print(f"solver.ofe: {np.count_nonzero(done.numbers['mold'])} of {mesh.mold.size} mold elements,", *done.dropped, sep="\n  ")

# %% Arrays lie over the file: volumes of all tetrahedra of a component in a few lines.

points = mesh.points()
for name in ("plastic", "mold", "channel"):
    _, nodes = getattr(mesh, name).of_size(4)
    corner = points[nodes - 1]
    edges = corner[:, 1:] - corner[:, :1]
    print(f"{name:8} {abs(np.linalg.det(edges)).sum() / 6:12.1f} {mesh.header.unit}3")

# %% The picture: part and channels by their surfaces, the channels by group; sensors as points.

surfaces = mesh.surfaces
figure = plt.figure(figsize=(9, 6), dpi=150)
axes = figure.add_subplot(projection="3d", proj_type="ortho")
light = np.array([0.4, -0.7, 0.6])


def draw(chosen, colours, alpha=1.0):
    """Adds the chosen surface elements, shaded by how they stand to the light."""
    corners = points[surfaces.nodes[chosen, :3] - 1]
    normals = np.cross(corners[:, 1] - corners[:, 0], corners[:, 2] - corners[:, 0])
    shade = 0.55 + 0.45 * abs(normals @ light) / np.maximum(np.linalg.norm(normals, axis=1), 1e-30)
    colours = np.broadcast_to(colours, (len(corners), 3)) * shade[:, None]
    axes.add_collection3d(Poly3DCollection(corners, facecolors=colours, alpha=alpha, linewidths=0))


draw(surfaces.interfaces == 1, (0.85, 0.25, 0.22))
wall = surfaces.interfaces == 3
draw(wall, plt.get_cmap("tab10")(surfaces.groups[wall] % 10)[:, :3])
at = mesh.sensors.positions * mesh.scale
axes.scatter(*at.T, color="black", s=14, depthshade=False)

low, high = points.min(axis=0), points.max(axis=0)
for axis, a, b in zip("xyz", low, high):
    getattr(axes, f"set_{axis}lim")(a, b)
    getattr(axes, f"set_{axis}label")(f"{axis} [{mesh.header.unit}]")
axes.set_box_aspect(high - low)
axes.view_init(elev=22, azim=-62)
axes.set_title("Example mold: part, channels by group, sensors")
figure.savefig(os.path.join(out, "mold.png"), bbox_inches="tight")
print("picture:", os.path.join(out, "mold.png"))
