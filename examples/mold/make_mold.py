#!/usr/bin/python3
"""Makes a meshed injection mold of any size with Gmsh (Debian: python3-gmsh).

A steel block of 160 x 120 x 100 mm around a ribbed tray with 2.5 mm walls, two inserts that touch the tray,
five coolant channels, a heater rod right through and a blind one, and a hot runner with two drops. All components
share their nodes. Roles are physical groups under the names that `orvmesh import` knows. The same arguments give
the same mesh.
"""
import argparse
import math
import sys

import gmsh

BLOCK = (160.0, 120.0, 100.0)  # centred in x and y, from z = 0 up
WALL = 2.5
TRAY = (80.0, 56.0, 24.0)  # open below, its plate on top
TRAY_Z = 40.0
TOP_Z = TRAY_Z + TRAY[2]
RIB = (2.0, 8.0)  # thickness, height
RIB_X = (-13.0, 13.0)
CORE_INSERT = (18.0, 40.0, 17.5)  # under the plate, between the ribs
SLIDE_INSERT = (24.0, 16.0, 30.0)  # against the wall at +y, from z = 38
CHANNEL_RADIUS = 4.0
BEND_RADIUS = 16.0
HEATER_RADIUS = 3.5
BLIND_HEATER = 44.0  # length, from the side at +x
DROP_X = (-20.0, 20.0)
RUNNER_RADIUS, DROP_RADIUS, GATE_RADIUS = 3.5, 4.5, 1.5
RUNNER_Z = 88.0

# Element sizes in mm before scaling; the larger of two that meet gives way.
SIZES = {"moldbase": 30.0, "insert": 8.0, "channel": 3.4, "heater": 3.4, "part": 4.8, "hotrunner": 4.0}
GATE_SIZE = 2.1
FIRST_COUNT = 54e3  # elements that these sizes give, about

# type, display number, place, what it must lie in
SENSORS = [
    (1, 1, (-38.7, 5.0, 50.0), "part"),
    (1, 2, (30.0, 12.0, 62.7), "part"),
    (2, 3, (5.0, -22.0, 62.8), "part"),
    (3, 4, (-28.0, 14.0, TOP_Z), "top of the part"),
    (4, 5, (2.0, 3.0, 55.0), "insert:5002"),
    (4, 6, (-60.0, -40.0, 50.0), "moldbase"),
    (5, 7, (60.0, 35.0, 60.0), "moldbase"),
    (5, 9, (-4.0, 37.0, 61.0), "insert:5003"),
    (6, 8, (3.0, 36.0, 52.0), "insert:5003"),
]


def channel_volumes():
    circle = math.pi * CHANNEL_RADIUS**2
    bend = 2 * 74.0 + math.pi * BEND_RADIUS
    return {1: circle * BLOCK[0], 2: circle * BLOCK[0], 3: circle * BLOCK[1], 4: circle * BLOCK[1], 5: circle * bend}


def drawn_volumes():
    """Volumes in mm^3 that have a closed form, by physical name."""
    x, y, z = TRAY
    inner_x, inner_y = x - 2 * WALL, y - 2 * WALL
    volumes = {
        "part": x * y * z - inner_x * inner_y * (z - WALL) + len(RIB_X) * RIB[0] * RIB[1] * inner_y,
        "insert:5002": math.prod(CORE_INSERT),
        "insert:5003": math.prod(SLIDE_INSERT),
        "heater:1": math.pi * HEATER_RADIUS**2 * BLOCK[0],
        "heater:2": math.pi * HEATER_RADIUS**2 * BLIND_HEATER,
    }
    return volumes | {f"channel:{g}": v for g, v in channel_volumes().items()}


def centred_box(size, x, y, z):
    return gmsh.model.occ.addBox(x - size[0] / 2, y - size[1] / 2, z, *size)


def add_part():
    occ = gmsh.model.occ
    inner = (TRAY[0] - 2 * WALL, TRAY[1] - 2 * WALL, TRAY[2] - WALL)
    shell, _ = occ.cut([(3, centred_box(TRAY, 0, 0, TRAY_Z))], [(3, centred_box(inner, 0, 0, TRAY_Z))])
    rib_z = TOP_Z - WALL - RIB[1]
    ribs = [(3, centred_box((RIB[0], inner[1], RIB[1]), x, 0, rib_z)) for x in RIB_X]
    return occ.fuse(shell, ribs)[0]


def add_bent_channel():
    """In and out at the front, round a half circle under the tray."""
    occ = gmsh.model.occ
    z, end, front = 34.0, 14.0, -BLOCK[1] / 2
    r = BEND_RADIUS
    points = [occ.addPoint(*p, z) for p in ((-r, front), (-r, end), (0, end), (0, end + r), (r, end), (r, front))]
    start, left, centre, tip, right, finish = points
    path = occ.addWire([occ.addLine(start, left), occ.addCircleArc(left, centre, tip),
                        occ.addCircleArc(tip, centre, right), occ.addLine(right, finish)])
    disk = occ.addDisk(-r, front, z, CHANNEL_RADIUS, CHANNEL_RADIUS)
    occ.rotate([(2, disk)], -r, front, z, 1, 0, 0, math.pi / 2)
    volume = [e for e in occ.addPipe([(2, disk)], path) if e[0] == 3]
    occ.remove([(2, disk)], recursive=True)
    occ.remove([(1, path)], recursive=True)
    return volume


def add_drilled(start, direction, radius):
    return [(3, gmsh.model.occ.addCylinder(*start, *direction, radius))]


def add_hot_runner():
    """A sprue from the top, a runner along x, two drops with a cone down to the plate."""
    occ = gmsh.model.occ
    sprue = add_drilled((0, 0, RUNNER_Z), (0, 0, BLOCK[2] - RUNNER_Z), DROP_RADIUS)
    pieces = add_drilled((DROP_X[0], 0, RUNNER_Z), (DROP_X[1] - DROP_X[0], 0, 0), RUNNER_RADIUS)
    for x in DROP_X:
        pieces += add_drilled((x, 0, TOP_Z + 6), (0, 0, RUNNER_Z - TOP_Z), DROP_RADIUS)
        pieces.append((3, occ.addCone(x, 0, TOP_Z, 0, 0, 6, GATE_RADIUS, DROP_RADIUS)))
    return occ.fuse(sprue, pieces)[0]


def add_components():
    """Name -> drawn volumes. Everything but the block, which takes what they leave."""
    x, y = BLOCK[0] / 2, BLOCK[1] / 2
    along_x, along_y, r = (BLOCK[0], 0, 0), (0, BLOCK[1], 0), CHANNEL_RADIUS
    return {
        "part": add_part(),
        "hotrunner:201": add_hot_runner(),
        "insert:5002": [(3, centred_box(CORE_INSERT, 0, 0, TOP_Z - WALL - CORE_INSERT[2]))],
        "insert:5003": [(3, centred_box(SLIDE_INSERT, 0, TRAY[1] / 2 + SLIDE_INSERT[1] / 2, 38.0))],
        "channel:1": add_drilled((-x, -30, 20), along_x, r),
        "channel:2": add_drilled((-x, 30, 20), along_x, r),
        "channel:3": add_drilled((-50, -y, 70), along_y, r),
        "channel:4": add_drilled((50, -y, 70), along_y, r),
        "channel:5": add_bent_channel(),
        "heater:1": add_drilled((-x, 22, 84), along_x, HEATER_RADIUS),
        "heater:2": add_drilled((x, -22, 84), (-BLIND_HEATER, 0, 0), HEATER_RADIUS),
    }


def join(components):
    """Cuts the block and the components along their common faces; name -> volume tags."""
    names, volumes = zip(*((name, v) for name, vs in components.items() for v in vs))
    block = (3, centred_box(BLOCK, 0, 0, 0))
    _, pieces = gmsh.model.occ.fragment([block], list(volumes))
    gmsh.model.occ.synchronize()
    joined, taken = {}, set()
    for name, piece in zip(names, pieces[1:]):
        tags = [tag for _, tag in piece]
        joined.setdefault(name, []).extend(tags)
        taken.update(tags)
    joined["moldbase"] = [tag for _, tag in pieces[0] if tag not in taken]
    return joined


def faces_of(volumes):
    return {abs(tag) for _, tag in gmsh.model.getBoundary([(3, v) for v in volumes], combined=True, oriented=False)}


def name_group(dim, tags, name):
    if not tags:
        sys.exit(f"make_mold.py: {name}: the drawing has no such entity")
    group = gmsh.model.addPhysicalGroup(dim, sorted(tags))
    gmsh.model.setPhysicalName(dim, group, name)


def name_channel_ends(volumes):
    """The end with the smaller x, then y, is the inlet."""
    for name in (n for n in volumes if n.startswith("channel:")):
        outside = faces_of(volumes[name]) - faces_of(volumes["moldbase"])
        ends = sorted(outside, key=lambda f: [round(c, 6) for c in gmsh.model.occ.getCenterOfMass(2, f)])
        if len(ends) != 2:
            sys.exit(f"make_mold.py: {name}: the drawing gives it {len(ends)} ends instead of 2")
        group = name.split(":")[1]
        name_group(2, ends[:1], f"inlet:{group}")
        name_group(2, ends[1:], f"outlet:{group}")


def name_gates(volumes):
    """The drop at -x is shared by part and hot runner, the one at +x closes between hot and cold."""
    gates = faces_of(volumes["hotrunner:201"]) & faces_of(volumes["part"])
    left, right = sorted(gates, key=lambda f: gmsh.model.occ.getCenterOfMass(2, f)[0])
    name_group(2, [left], "gate:common:1")
    name_group(2, [right], "gate:hotcold:1")
    return gates


def top_of_part(volumes, x, y):
    """The part's face at the top of the plate that holds (x, y)."""
    for face in faces_of(volumes["part"]):
        box = gmsh.model.getBoundingBox(2, face)
        if abs(box[2] - TOP_Z) + abs(box[5] - TOP_Z) < 1e-3 and box[0] < x < box[3] and box[1] < y < box[4]:
            if box[3] - box[0] > 4 * GATE_RADIUS:
                return face
    sys.exit("make_mold.py: the part has no face on top of its plate")


def place_sensors(volumes):
    placed = []
    for kind, display, at, where in SENSORS:
        point = gmsh.model.occ.addPoint(*at)
        dim, entity = (2, top_of_part(volumes, *at[:2])) if where.startswith("top") else (3, volumes[where][0])
        placed.append((point, dim, entity, f"sensor:{kind}:{display}"))
    gmsh.model.occ.synchronize()
    for point, dim, entity, name in placed:
        gmsh.model.mesh.embed(0, [point], dim, entity)
        name_group(0, [point], name)


def set_sizes(volumes, gates):
    def points_of(dim, tags):
        return gmsh.model.getBoundary([(dim, t) for t in tags], combined=False, oriented=False, recursive=True)

    for role in SIZES:
        for name in (n for n in volumes if n.split(":")[0] == role):
            gmsh.model.mesh.setSize(points_of(3, volumes[name]), SIZES[role])
    gmsh.model.mesh.setSize(points_of(2, gates), GATE_SIZE)


def draw():
    volumes = join(add_components())
    gates = name_gates(volumes)
    name_channel_ends(volumes)
    for name, tags in volumes.items():
        name_group(3, tags, name)
    set_sizes(volumes, gates)
    place_sensors(volumes)


def volume_elements():
    return sum(len(tags) for tags in gmsh.model.mesh.getElements(3)[1])


def mesh_once(factor):
    gmsh.model.mesh.clear()
    gmsh.option.setNumber("Mesh.MeshSizeFactor", factor)
    gmsh.model.mesh.generate(3)
    return volume_elements()


def mesh_to(target, tolerance=0.02, tries=7):
    """Meshes until the element count is near the target; counts fall with about the 2.5th power of the size."""
    factor, power, last = (FIRST_COUNT / target) ** 0.4, 2.5, None
    for _ in range(tries):
        count = mesh_once(factor)
        print(f"size factor {factor:.4f}: {count} elements", flush=True)
        if abs(count / target - 1) < tolerance:
            return
        if last and last != (factor, count):
            slope = -math.log(count / last[1]) / math.log(factor / last[0])
            power = min(max(slope, 1.5), 3.5)
        last = (factor, count)
        factor *= (count / target) ** (1 / power)


def refine(times):
    """Each pass splits every tetrahedron into eight without moving a node."""
    gmsh.option.setNumber("Mesh.SecondOrderLinear", 1)
    for _ in range(times):
        gmsh.model.mesh.refine()
        print(f"refined: {volume_elements()} elements", flush=True)


def default_passes(elements):
    """As many as keep the mesh that Gmsh has to make itself at 150 thousand elements or less."""
    return max(0, math.ceil(math.log(elements / 150e3, 8)))


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("out", help="mesh file to write, .msh")
    parser.add_argument("--elements", type=int, default=50000, help="volume elements, met within a few percent")
    parser.add_argument("--refine", type=int, metavar="K", help="passes of uniform refinement (default: by size)")
    parser.add_argument("--ascii", action="store_true", help="text instead of binary")
    parser.add_argument("--msh2", action="store_true", help="MSH 2.2 instead of 4.1")
    parser.add_argument("--volumes", action="store_true", help="also print meshed against drawn volumes")
    arguments = parser.parse_args()
    if arguments.elements < 15000:
        parser.error("--elements: the gates and ribs need at least 15000")
    return arguments


def group_volume(group):
    tetrahedron = gmsh.model.mesh.getElementType("tetrahedron", 1)
    entities = gmsh.model.getEntitiesForPhysicalGroup(3, group)
    return sum(gmsh.model.mesh.getJacobians(tetrahedron, [0.25] * 3, e)[1].sum() / 6 for e in entities)


def print_volumes():
    drawn = drawn_volumes()
    for dim, group in gmsh.model.getPhysicalGroups(3):
        name, volume = gmsh.model.getPhysicalName(dim, group), group_volume(group)
        exact = f"  drawn {drawn[name]:12.1f}" if name in drawn else ""
        print(f"{name:14} meshed {volume:12.1f}{exact}")


def main():
    arguments = parse_arguments()
    passes = default_passes(arguments.elements) if arguments.refine is None else arguments.refine
    gmsh.initialize()
    gmsh.option.setNumber("General.Verbosity", 1)
    gmsh.option.setNumber("General.NumThreads", 1)
    gmsh.option.setNumber("Mesh.Algorithm3D", 1)
    gmsh.option.setNumber("Mesh.MshFileVersion", 2.2 if arguments.msh2 else 4.1)
    gmsh.option.setNumber("Mesh.Binary", 0 if arguments.ascii else 1)
    draw()
    mesh_to(arguments.elements / 8**passes)
    refine(passes)
    if arguments.volumes:
        print_volumes()
    gmsh.write(arguments.out)
    gmsh.finalize()


if __name__ == "__main__":
    main()
