"""What each variant writes, worked out from the source's columns with numpy.

An independent statement of the variants: whole columns at once, faces matched by sorting rows, no code shared with
the library. `BLOCKS[variant]` gives block name -> function from the source to column name -> values, up to the boundary
conditions; the blocks after them are in expected_tables.py. A mesh is the same mapping, as read from a file; volume elements carry "counts" (nodes of each element) in place
of offsets, and a triangle's fourth node is its third.
"""
import numpy as np

ELEMENT_COLUMNS = ("connectivity", "counts", "fieldA", "fieldB", "value")
SURFACE_COLUMNS = ("nodes", "interfaceId", "ownerCode", "contactCode", "boundaryType", "elementNo", "tag")

# Faces of an element by its number of nodes; local nodes from 0, seen from outside, a triangle's third node twice.
FACES = {
    4: [(0, 2, 1, 1), (1, 3, 0, 0), (2, 3, 1, 1), (0, 3, 2, 2)],
    5: [(0, 3, 2, 1), (1, 4, 0, 0), (2, 4, 1, 1), (3, 4, 2, 2), (0, 4, 3, 3)],
    6: [(0, 2, 1, 1), (3, 4, 5, 5), (0, 1, 4, 3), (1, 2, 5, 4), (2, 0, 3, 5)],
    8: [(0, 3, 2, 1), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7)],
}
COOLANT, HEATER = 1, 2
GROUP_MASK, KEPT_MASK, COOLANT_MARK = 0xFFFFF, 0xF00000FF, 0x80000000


def between(values, first, last):
    return (values >= first) & (values <= last)


def pick(elements, mask, a=None, b=None):
    """The elements of the mask, with fields A and B as they are or replaced."""
    chosen = {name: elements[name][mask] for name in ("counts", "fieldA", "fieldB", "value")}
    chosen["connectivity"] = elements["connectivity"][np.repeat(mask, elements["counts"])]
    for name, value in (("fieldA", a), ("fieldB", b)):
        if value is not None:
            chosen[name] = np.broadcast_to(value, elements[name].shape)[mask].astype(np.int32)
    return chosen


def joined(*tables):
    return {name: np.concatenate([t[name] for t in tables]) for name in tables[0]}


def is_insert(mold):
    return between(mold["fieldA"], 5002, 10001)


def is_hot_runner(plastic):
    return between(plastic["fieldB"], 201, 300)


# --- faces


def faces_of(elements):
    """Owner (from 0) and nodes of every face, by element, then by face."""
    starts = np.cumsum(elements["counts"]) - elements["counts"]
    owners, places, nodes = [], [], []
    for count, table in FACES.items():
        of_type = np.flatnonzero(elements["counts"] == count)
        local = starts[of_type][:, None, None] + np.array(table)
        owners.append(np.repeat(of_type, len(table)))
        places.append(np.tile(np.arange(len(table)), len(of_type)))
        nodes.append(elements["connectivity"][local].reshape(-1, 4))
    owner, place, nodes = np.concatenate(owners), np.concatenate(places), np.concatenate(nodes)
    order = np.lexsort((place, owner))
    return owner[order], nodes[order]


def face_ids(*node_lists):
    """The same number for the same set of nodes, in all lists."""
    rows = np.sort(np.concatenate(node_lists), axis=1)
    for k in (1, 2):  # whichever node a triangle doubles, the key doubles its highest one
        doubled = rows[:, k] == rows[:, k - 1]
        rows[doubled, k] = rows[doubled, 3]
    rows.sort(axis=1)
    ids = np.unique(rows, axis=0, return_inverse=True)[1].ravel()
    return np.split(ids, np.cumsum([len(n) for n in node_lists])[:-1])


def contacts(source):
    """Which surface elements lie between part and insert, and the new part faces between insert and other steel."""
    plastic, mold, surfaces = (source[k] for k in ("elementsPlastic", "elementsMoldBase", "elementSurfaces"))
    _, plastic_nodes = faces_of(plastic)
    owner, nodes = faces_of(mold)
    of_plastic, of_mold, of_surface = face_ids(plastic_nodes, nodes, surfaces["nodes"])
    on_insert = is_insert(mold)[owner]
    shared = np.intersect1d(of_plastic, of_mold[on_insert])
    interior = np.isin(of_surface, shared) & between(surfaces["interfaceId"], 1, 2)

    other = dict(zip(of_mold[~on_insert], owner[~on_insert]))
    rows = [i for i in np.flatnonzero(on_insert) if of_mold[i] in other]
    steel = np.array([other[of_mold[i]] for i in rows], int)
    count = len(rows)
    new = {name: np.zeros(count, np.int32) for name in SURFACE_COLUMNS}
    new |= {"nodes": nodes[rows].reshape(-1, 4), "interfaceId": np.full(count, 1), "tag": np.full(count, 1),
            "ownerCode": mold["fieldA"][steel], "contactCode": np.full(count, 1)}
    return interior, new


def imported_faces(source):
    """Of each interface: the faces that an imported mesh must have as surface elements, and those it has, as ids.
    Gates between part and hot runner, inside the plastic, come on top."""
    surfaces = source["elementSurfaces"]
    of_block = [faces_of(source[b])[1] for b in ("elementsPlastic", "elementsMoldBase", "elementsCoolChannel")]
    *ids, found = face_ids(*of_block, surfaces["nodes"])
    plastic, mold, channel = (np.bincount(i, minlength=max(map(max, ids)) + 1) for i in ids)
    wanted = {1: plastic == 1, 2: (mold == 1) & (channel == 0), 3: (mold == 1) & (channel == 1),
              4: (channel == 1) & (mold == 0)}
    gates = (surfaces["interfaceId"] == 1) & (plastic[found] == 2)
    for interface, mask in wanted.items():
        yield interface, np.flatnonzero(mask), np.sort(found[(surfaces["interfaceId"] == interface) & ~gates])


# --- surface elements, by variant


def rows_of(surfaces, mask, **changed):
    """The surface elements of the mask, some columns replaced."""
    table = {name: surfaces[name][mask] for name in SURFACE_COLUMNS}
    for name, values in changed.items():
        table[name] = np.broadcast_to(values, surfaces[name].shape)[mask]
    return table


def tag_groups(tags):
    return (tags.astype(np.int64) >> 8) & GROUP_MASK


def with_groups(tags, groups):
    return (tags.astype(np.int64) & KEPT_MASK) | ((groups & GROUP_MASK) << 8)


def layout_inlets(source):
    """Places of the layout's inlets that belong to no heater."""
    layout = source["coolantChannelLayout"]
    codes, values = layout["codes"], layout["values"]
    points, beams = codes[:, 0] != 0, codes[codes[:, 0] == 0]
    code = np.zeros(points.sum() + 1, int)
    for end in (2, 3):
        code[beams[:, end]] = beams[:, 5]
    inlet = (codes[points, 1] == 1) & ~np.isin(code[1:], (6, 60000))
    return values[points][inlet, :3]


def inlet_numbers(source):
    """The coolant inlet list, entry 0 unused."""
    surfaces, xyz = source["elementSurfaces"], source["nodes"]["xyz"]
    ends = (surfaces["interfaceId"] == 4) & (surfaces["contactCode"] == 1)
    groups = tag_groups(surfaces["tag"])
    groups = np.where(between(groups, 1, 999), groups, surfaces["boundaryType"])
    taken, places = [], layout_inlets(source)
    free = np.ones(len(places), bool)
    for group in np.unique(groups[ends]):
        corners = xyz[np.unique(surfaces["nodes"][ends & (groups == group)]) - 1]
        centre = corners.mean(axis=0)
        free &= np.linalg.norm(places - centre, axis=1) > np.linalg.norm(corners - centre, axis=1).max()
        taken.append(len(places) + len(taken))
    return np.array([0, *(np.flatnonzero(free) + 1), *taken])


def channel_faces(source):
    s = source["elementSurfaces"]
    wall, end = s["interfaceId"] == 3, s["interfaceId"] == 4
    inlet, hose = end & (s["contactCode"] == 1), end & (s["contactCode"] == 0)
    numbers, groups = inlet_numbers(source), tag_groups(s["tag"])
    in_list = between(groups, 1, min(999, len(numbers) - 1))
    groups = np.where(in_list, numbers[np.where(in_list, groups, 0)], s["boundaryType"])
    tags = np.where(inlet, COOLANT_MARK | ((groups & GROUP_MASK) << 8), s["tag"])
    last_end = np.maximum.accumulate(np.where(end, np.arange(len(end)), -1)) if len(end) else np.zeros(0, int)
    carried = np.where(last_end < 0, 0, tags[last_end])
    return rows_of(s, wall | end, interfaceId=1, ownerCode=1, contactCode=np.where(end, 1, s["contactCode"]),
                   boundaryType=np.where(inlet, 1, np.where(hose, 7, 0)), tag=np.where(wall, carried, tags))


def gate_kinds(tags):
    bit = [(tags >> k) & 1 == 1 for k in range(3)]
    return bit[0] & (bit[1] | bit[2]), ~bit[0] & bit[1] & bit[2]


def gate_numbers(source):
    """Group -> running number, for common and for hot/cold gates."""
    s, plastic = source["elementSurfaces"], source["elementsPlastic"]
    common, hot_cold = gate_kinds(s["tag"])
    groups = tag_groups(s["tag"])
    on_part_faces = s["interfaceId"] == 1
    owner = np.where(on_part_faces, s["elementNo"], 1) - 1
    hot = on_part_faces & is_hot_runner(plastic)[owner]
    first = {g: i + 1 for i, g in enumerate(np.unique(groups[common & hot]))}
    second = {g: i + 1 + len(first) for i, g in enumerate(np.unique(groups[hot_cold]))}
    return first, second


def hot_runner_decided(source):
    """Which faces a hot-runner mesh keeps, their types and tags, and the owner of each face."""
    s, plastic = source["elementSurfaces"], source["elementsPlastic"]
    component = plastic["fieldB"]
    kind, tags, groups = s["boundaryType"].copy(), s["tag"].astype(np.int64), tag_groups(s["tag"])
    two_bits = (tags & 6) == 6
    keep = (s["interfaceId"] == 1) & (np.isin(kind, (1, 2, 4, 5, 13)) | two_bits)
    owner = np.where(s["interfaceId"] == 1, s["elementNo"], 1) - 1
    common, hot_cold = gate_kinds(tags)
    numbers = [np.array([table.get(g, -1) for g in groups], int) for table in gate_numbers(source)]
    changes = kind != 1
    gate, cold, melt = changes & common, changes & hot_cold, changes & ~common & ~hot_cold & (kind == 5)
    rest = changes & ~common & ~hot_cold & (kind != 5)
    keep &= ~(gate & (numbers[0] < 1)) & ~(melt & ~between(component[owner], 201, 299))
    new_tags = np.select([gate, cold, melt, rest],
                         [with_groups(tags, numbers[0]), with_groups(tags, numbers[1]), 8, 1], tags)
    return keep, np.select([gate | cold, rest], [7, 0], kind), new_tags, owner


def hot_runner_kept(source):
    return hot_runner_decided(source)[0]


def hot_runner_faces(source):
    keep, kind, tags, owner = hot_runner_decided(source)
    hot = is_hot_runner(source["elementsPlastic"])
    new_number = np.where(hot, np.cumsum(hot), 0)
    return rows_of(source["elementSurfaces"], keep, boundaryType=kind, tag=tags, elementNo=new_number[owner])


def stream_line_faces(source):
    s = source["elementSurfaces"]
    kind = np.where((s["interfaceId"] == 1) & (s["boundaryType"] == 5), 7, s["boundaryType"])
    return rows_of(s, s["nodes"][:, 0] > 0, ownerCode=s["contactCode"], boundaryType=kind)


def part_insert_faces(source):
    interior, new = contacts(source)
    return joined(rows_of(source["elementSurfaces"], ~interior), new)


def part_insert_and_channel_faces(source):
    s, heater = source["elementSurfaces"], source["elementsCoolChannel"]["fieldA"] >= HEATER
    interior, new = contacts(source)
    end = s["interfaceId"] == 4
    owner = np.where(end, s["elementNo"], 1) - 1
    heater_end = end & heater[owner] if len(heater) else end & False
    wall = (s["interfaceId"] == 3) & (s["ownerCode"] == HEATER)
    return joined(rows_of(s, ~interior & ~wall, interfaceId=np.where(heater_end, 2, s["interfaceId"]),
                          boundaryType=np.where(heater_end, 1, s["boundaryType"])), new)


# --- volume elements and conditions, by variant


def plastic_and_inserts(source):
    plastic, mold = source["elementsPlastic"], source["elementsMoldBase"]
    return joined(plastic, pick(mold, is_insert(mold), 1, mold["fieldA"]))


def mold_as_part(source):
    mold = source["elementsMoldBase"]
    a = mold["fieldA"]
    shifted = np.select([between(a, 2, 5000), between(a, 10002, 10899) | (a > 10900)], [a + 5000, a - 4000], a)
    return pick(mold, mold["counts"] > 0, 1, shifted)


def mold_without_inserts(source):
    mold = source["elementsMoldBase"]
    return pick(mold, ~is_insert(mold))


def mold_and_heaters(source):
    channel = source["elementsCoolChannel"]
    heaters = pick(channel, channel["fieldA"] == HEATER, channel["fieldB"] + 10900)
    return joined(mold_without_inserts(source), heaters)


def channels_as_part(source):
    channel = source["elementsCoolChannel"]
    return pick(channel, channel["counts"] > 0, channel["fieldB"] + 1000, 201)


def coolant_only(source):
    channel = source["elementsCoolChannel"]
    return pick(channel, channel["fieldA"] != HEATER)


def hot_runner(source):
    plastic = source["elementsPlastic"]
    return pick(plastic, is_hot_runner(plastic), 1, plastic["fieldB"] - 200)


def whole(name):
    return lambda source: source[name]


def conditions(source, codes):
    table, last, types = source["boundaryConditions"], 0, []
    for kind in table["type"]:
        last = codes.get(int(kind), last)
        types.append(last)
    return {"entityNo": table["entityNo"], "type": np.array(types, np.int32), "value": table["value"]}


def usual_conditions(source):
    return conditions(source, {k: k for k in range(1, 7)})


def channel_conditions(source):
    return conditions(source, {1: 2, 2: 1, 3: 3, 4: 4, 5: 5, 6: 6})


def one_direction(source):
    table = source["partingDirection"]
    return table if len(table["direction"]) else {"direction": np.zeros((1, 3), np.float32)}


NODES = {"nodes": whole("nodes")}
CONDITIONS = {"boundaryConditions": usual_conditions}
PART_INSERTS = NODES | CONDITIONS | {"elementsPlastic": plastic_and_inserts}
BLOCKS = {
    "channels": NODES | {"elementsPlastic": channels_as_part, "elementSurfaces": channel_faces,
                         "boundaryConditions": channel_conditions},
    "hot-runner": NODES | CONDITIONS | {"elementsPlastic": hot_runner, "elementSurfaces": hot_runner_faces,
                                        "partingDirection": one_direction},
    "stream-line": NODES | {"elementsPlastic": whole("elementsPlastic"), "elementSurfaces": stream_line_faces},
    "moldbase": NODES | CONDITIONS | {"elementsPlastic": mold_as_part},
    "part-inserts": PART_INSERTS | {"elementsMoldBase": mold_without_inserts,
                                    "elementsCoolChannel": whole("elementsCoolChannel"),
                                    "elementSurfaces": part_insert_faces},
    "part-inserts-channels": PART_INSERTS | {"elementsMoldBase": mold_and_heaters,
                                             "elementsCoolChannel": coolant_only,
                                             "elementSurfaces": part_insert_and_channel_faces},
}

