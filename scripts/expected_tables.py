"""What each variant writes into the blocks after the boundary conditions, worked out with numpy: the second half of
expected_blocks.py. A text pool is a list of texts with the offsets of their bytes."""
import numpy as np

from expected_blocks import COOLANT_MARK, GROUP_MASK, HEATER, between, contacts, face_ids, faces_of, inlet_numbers, \
    is_insert, rows_of, tag_groups, hot_runner_kept

FLAGGED_VERSION = 2012
TAGGED_VERSION = 2009
THICKNESS_TYPE = 7


def version(source):
    return source["header"]["words"][0]


def factor(source):
    f = source["header"]["words"][29:30].view(np.float32)[0]
    return np.float64(f) if f else np.float64(1)


def there_and_back(source, lengths):
    """Lengths as a transfer writes them: to model units in double precision, back in single."""
    f = factor(source)
    return (lengths.astype(np.float64) * f).astype(np.float32) * (np.float32(1) / np.float32(f))


# --- faces of the mold base


def diameters(source):
    table = source["coolantChannelDiameters"]
    lengths = table["diameter"].astype(np.float64) * factor(source)
    return {tuple(n[:3]): d for n, d in zip(table["nodes"].tolist(), lengths)}


def hundredfold(source, triples):
    known = diameters(source)
    return np.array([int(known.get(tuple(n[:3]), 0.8) * 100.0) for n in triples.tolist()], np.int64)


def first_owner(ids, owner):
    """Face id -> row of the first element that has it."""
    unique, first = np.unique(ids, return_index=True)
    return dict(zip(unique.tolist(), first.tolist()))


def mold_base_faces(source):
    s, plastic, channel = (source[k] for k in ("elementSurfaces", "elementsPlastic", "elementsCoolChannel"))
    plastic_owner, plastic_nodes = faces_of(plastic)
    channel_owner, channel_nodes = faces_of(channel)
    of_plastic, of_channel, of_surface = face_ids(plastic_nodes, channel_nodes, s["nodes"])
    parts, channels = first_owner(of_plastic, plastic_owner), first_owner(of_channel, channel_owner)
    interface, kind = s["interfaceId"].astype(int), s["boundaryType"].astype(int)
    owner, contact, element = (s[k].astype(np.int64) for k in ("ownerCode", "contactCode", "elementNo"))
    tags = s["tag"].astype(np.int64) if version(source) >= TAGGED_VERSION else np.zeros(len(kind), np.int64)
    keep = (interface != 1) | ((contact != 0) & (kind != 1) & (kind < 6))
    kind = np.where(interface == 1, 0, kind)

    for row in np.flatnonzero(interface == 2):
        face = of_surface[row]
        if face in parts:
            contact[row], owner[row] = owner[row], plastic["fieldA"][plastic_owner[parts[face]]]
            kind[row] = 0
        elif face in channels:
            at = channels[face]
            contact[row], owner[row] = owner[row], channel["fieldA"][channel_owner[at]]
            tags[row] = COOLANT_MARK | ((int(channel["fieldB"][channel_owner[at]]) & GROUP_MASK) << 8)
            element[row], kind[row] = hundredfold(source, channel_nodes[at:at + 1])[0], 1
        else:
            kind[row] = 5

    wall, numbers, groups = interface == 3, inlet_numbers(source), tag_groups(s["tag"])
    listed = between(groups, 1, min(999, len(numbers) - 1))
    groups = np.where(listed, numbers[np.where(listed, groups, 0)], s["boundaryType"])
    tags = np.where(wall, COOLANT_MARK | ((groups & GROUP_MASK) << 8), tags)
    element[wall] = hundredfold(source, s["nodes"][wall])
    kind = np.where(wall, 1, kind)
    return rows_of(s, keep, interfaceId=np.where(between(interface, 2, 3), 1, interface), ownerCode=owner,
                   contactCode=contact, boundaryType=kind, elementNo=element, tag=tags)


# --- tables


def pool(texts):
    data = [text if isinstance(text, bytes) else text.encode() for text in texts]
    joined = np.frombuffer(b"".join(data), np.uint8)
    return joined, np.concatenate([[0], np.cumsum([len(d) for d in data], dtype=np.int64)]) if data else np.zeros(0)


def layers(rows, width):
    values = np.array(rows, np.int64).reshape(-1, width)
    names, offsets = pool([""] * len(values))
    return {"names": names, "values": values, "offsets": offsets}


def heater_groups(source):
    channel = source["elementsCoolChannel"]
    groups = np.unique(channel["fieldB"][channel["fieldA"] >= HEATER])
    return int(between(groups, 1, 1000).sum())


def mold_layers(heaters):
    def rows(source):
        flagged = version(source) >= FLAGGED_VERSION
        found = [(m, layer, 0, 0, 0, flag if flagged else 0)
                 for m, layer, _, _, _, flag in source["moldMetalLayers"]["values"].tolist()]
        last = max((row[1] for row in found), default=0) if flagged else 0
        count = heater_groups(source) if heaters else 0
        return layers(found + [(10900 + k, last + k, 0, 0, 0, 0) for k in range(1, count + 1)], 6)
    return rows


def mold_layers_as_inserts(source):
    rows = source["moldMetalLayers"]["values"].astype(np.int64).copy()
    m = rows[:, 0]
    rows[:, 0] = np.where(between(m, 2, 4999), m + 5000, np.where(m > 6000, m - 4000, m))
    rows[:, 2:5] = 0
    if version(source) < FLAGGED_VERSION:
        rows[:, 5] = 0
    return layers(rows, 6)


def insert_layers(source):
    rows = source["partInsertLayers"]["values"].copy()
    rows[:, 2:] = 0
    return layers(rows, 6)


def channel_layers(source):
    return layers(source["coolantChannelLayers"]["values"], 2)


def diameter_entries(without_heaters):
    def entries(source):
        table, channel = source["coolantChannelDiameters"], source["elementsCoolChannel"]
        heater_nodes = channel["connectivity"][np.repeat(channel["fieldA"] >= HEATER, channel["counts"])]
        keep, buffer, rows = [], np.zeros(8, np.int32), []
        for nodes in table["nodes"]:
            used = len(np.trim_zeros(nodes, "b"))
            buffer[:used] = nodes[:used]
            rows.append(buffer.copy())
            keep.append(not (without_heaters and np.isin(nodes[:used], heater_nodes).any()))
        rows, keep = np.array(rows, np.int32).reshape(-1, 8), np.array(keep, bool)
        return {"nodes": rows[keep], "diameter": there_and_back(source, table["diameter"])[keep]}
    return entries


def lines(source):
    table = source["coolantChannelLines"]
    return {"values": there_and_back(source, table["values"]), "codes": table["codes"]}


def layout(source):
    table = source["coolantChannelLayout"]
    is_point = table["codes"][:, 0] != 0
    order = np.concatenate([np.flatnonzero(is_point), np.flatnonzero(~is_point)]).astype(int)
    values, codes = table["values"][order].astype(np.float64), table["codes"][order].copy()
    points = int(is_point.sum())
    codes[:points, 0] = 1
    codes[:points, 2:] = 0
    values[:points, 3:] = 0
    f = factor(source)
    ten_thousandths = np.rint(values[points:, 3:] * np.array([f, f, *[1] * 8]) * 10000).astype(np.float32)
    r = np.float32(1) / np.float32(f)
    lengths = ten_thousandths[:, :2] * r / np.float32(10000)
    out = np.concatenate([there_and_back(source, values[:, :3].astype(np.float32)), values[:, 3:].astype(np.float32)],
                         axis=1)
    out[points:, 3:5], out[points:, 5:] = lengths, ten_thousandths[:, 2:] / np.float32(10000)
    if points:
        out[points:, :3], codes[points:, 1] = out[points - 1, :3], codes[points - 1, 1]
    return {"values": out, "codes": codes}


def geometry(name):
    def entries(source):
        table = source[name]
        point = table["isPoint"] != 0
        order = np.concatenate([np.flatnonzero(point), np.flatnonzero(~point)]).astype(int)
        out = {column: values[order].copy() for column, values in table.items()}
        out["position"] = there_and_back(source, out["position"])
        out["isPoint"] = np.where(point[order], 1, 0)
        out["nodes"][point[order]], out["codes"][point[order]] = 0, 0
        out["position"][~point[order]] = 0
        return out
    return entries


# --- names and lists of surface conditions


def texts_of(table):
    data, offsets = table["texts"].tobytes(), table["offsets"]
    return [data[a:b].decode() for a, b in zip(offsets, offsets[1:])]


def names_of(source):
    """Name, type and dictionary of every entry."""
    table = source["surfaceBoundaryConditionNames"]
    texts = iter(texts_of(table))
    return [(next(texts), kind, {next(texts): next(texts) for _ in range(size)})
            for kind, size in table["typeAndDictionarySize"].tolist()]


def names_block(entries):
    """Keys stand in alphabetical order; an entry without a dictionary (None) has size -1."""
    texts = [t for name, _, d in entries for t in (name, *(x for pair in sorted((d or {}).items()) for x in pair))]
    data, offsets = pool(texts)
    sizes = np.array([(kind, -1 if d is None else len(d)) for _, kind, d in entries], np.int64).reshape(-1, 2)
    return {"texts": data, "typeAndDictionarySize": sizes, "offsets": offsets}


def thickness_names(source):
    f = factor(source)
    return names_block([(name, kind, {"THICKNESS": f"{float(d.get('THICKNESS', 0)) * f / f:g}"}
                         if kind == THICKNESS_TYPE else None) for name, kind, d in names_of(source)])


def branch_names(source):
    entries, number = [], 0
    for name, kind, d in names_of(source):
        number = int(d.get("BRANCH_NUMBER", 0)) or number
        entries.append((name, kind, {"BRANCH_ID": str(int(d.get("BRANCH_ID", 0))),
                                     "BRANCH_OUTLET_ID": str(int(d.get("BRANCH_OUTLET_ID", 0))),
                                     "BRANCH_NUMBER": str(number)}))
    return names_block(entries)


def joined_numbers(source):
    """New number of every surface element in a joined mesh, 0 where it has none."""
    s = source["elementSurfaces"]
    interior, _ = contacts(source)
    counted = ~interior & ~((s["interfaceId"] == 3) & (s["ownerCode"] == HEATER))
    return np.where(counted, np.cumsum(counted), 0)


def hot_runner_numbers(source):
    kept = hot_runner_kept(source)
    return np.where(kept, np.cumsum(kept), 0)


def surface_lists(numbering):
    def entries(source):
        table, numbers = source["surfaceBoundaryConditions"], numbering(source)
        pieces = sorted((int(s), table["list"][a:b]) for s, a, b in
                        zip(table["surfaceNo"], table["offsets"], table["offsets"][1:]))
        taken = [(numbers[s - 1], piece) for s, piece in pieces if numbers[s - 1]]
        sizes = np.cumsum([len(piece) for _, piece in taken], dtype=np.int64)
        return {"list": np.concatenate([piece for _, piece in taken]) if taken else np.zeros(0, np.int32),
                "surfaceNo": np.array([n for n, _ in taken], np.int64),
                "offsets": np.concatenate([[0], sizes]) if taken else np.zeros(0)}
    return entries


# --- sensors and bad elements


def sensor_block(source, rows):
    """rows: (kind, first or second id replaced by, entry of the source)."""
    table = source["sensors"]
    entry = np.array([i for _, _, i in rows], int)
    ids = table["ids"][entry].reshape(-1, 4).copy()
    for row, (_, change, _) in enumerate(rows):
        for place, value in change.items():
            ids[row, place] = value
    return {"ids": ids, "type": np.array([kind for kind, _, _ in rows], np.int64),
            "position": there_and_back(source, table["position"][entry].reshape(-1, 3))}


def of_kind(source, kind):
    return np.flatnonzero(source["sensors"]["type"] == kind).tolist()


def mold_sensors(source):
    return sensor_block(source, [(1, {}, i) for i in of_kind(source, 4)] + [(2, {}, i) for i in of_kind(source, 5)])


def surface_sensors(source):
    numbers, ids = joined_numbers(source), source["sensors"]["ids"]
    return [(3, {1: numbers[ids[i, 1] - 1] if 1 <= ids[i, 1] <= len(numbers) else 0}, i) for i in of_kind(source, 3)]


def joined_sensors(source):
    mold, ids, offset = source["elementsMoldBase"], source["sensors"]["ids"], len(source["elementsPlastic"]["fieldA"])
    plain = {kind: [(kind, {}, i) for i in of_kind(source, kind)] for kind in (1, 2, 6)}
    if source["header"]["words"][2]:
        moved = [(1, {0: ids[i, 0] + offset}, i) for i in of_kind(source, 4)]
        nodes = [(2, {}, i) for i in of_kind(source, 5)]
        return sensor_block(source, plain[1] + moved + plain[2] + nodes + surface_sensors(source) + plain[6])
    insert = is_insert(mold)
    place = np.where(insert, np.cumsum(insert), np.cumsum(~insert))
    insert_nodes = set(mold["connectivity"][np.repeat(insert, mold["counts"])].tolist())
    inside = {i for i in of_kind(source, 4) if 1 <= ids[i, 0] <= len(insert) and insert[ids[i, 0] - 1]}
    known = {i for i in of_kind(source, 4) if 1 <= ids[i, 0] <= len(insert)}
    on_insert = [i for i in of_kind(source, 5) if ids[i, 0] in insert_nodes]
    return sensor_block(source, plain[1] + [(1, {0: offset + place[ids[i, 0] - 1]}, i) for i in sorted(inside)] +
                        plain[2] + [(2, {}, i) for i in on_insert] + surface_sensors(source) +
                        [(4, {0: place[ids[i, 0] - 1] if i in known else 0}, i)
                         for i in of_kind(source, 4) if i not in inside] +
                        [(5, {}, i) for i in of_kind(source, 5) if i not in on_insert] + plain[6])


def bad(pairs):
    table = np.array([pair for pair in pairs if pair[0] > 0], np.int64).reshape(-1, 2)
    return {"elementNo": table[:, 0], "code": table[:, 1]}


def bad_elements(heaters_move):
    """The three lists of a joined mesh, each element under its number in the block that it was written to."""
    def lists(source):
        plastic, mold, channel = (source[k] for k in ("elementsPlastic", "elementsMoldBase", "elementsCoolChannel"))
        entries = [list(zip(t["elementNo"].tolist(), t["code"].tolist())) for t in
                   (source[k] for k in ("badElementsPlastic", "badElementsMoldBase", "badElementsCoolChannel"))]
        insert, typed = is_insert(mold), between(mold["fieldA"], 5001, 9999)
        plastics, heater = len(plastic["fieldA"]), channel["fieldA"] == HEATER
        heater &= heaters_move
        place = np.where(insert, plastics + np.cumsum(insert), np.cumsum(~insert))
        heater_place = (~insert).sum() + np.cumsum(heater)
        inside = [[(e, c) for e, c in found if 1 <= e <= count] for found, count in
                  zip(entries, (plastics, len(insert), len(heater)))]
        return (bad(inside[0] + [(place[e - 1], c) for e, c in inside[1] if typed[e - 1]]),
                bad([(place[e - 1], c) for e, c in inside[1] if not typed[e - 1]] +
                    [(heater_place[e - 1], c) for e, c in inside[2] if heater[e - 1]]),
                bad([(np.cumsum(~heater)[e - 1], c) for e, c in inside[2] if not heater[e - 1]]))
    return lists


def joined_blocks(heaters_move):
    lists = bad_elements(heaters_move)
    blocks = {"coolantChannelDiameters": diameter_entries(heaters_move), "coolantChannelLines": lines,
              "badElementsMoldBase": lambda s: lists(s)[1], "badElementsCoolChannel": lambda s: lists(s)[2],
              "sensors": joined_sensors, "moldMetal": geometry("moldMetal"), "coolantChannelLayout": layout,
              "surfaceBoundaryConditions": surface_lists(joined_numbers),
              "surfaceBoundaryConditionNames": thickness_names, "moldMetalLayers": mold_layers(heaters_move),
              "partInsertLayers": insert_layers, "coolantChannelLayers": channel_layers,
              "coolingChannelSurface": geometry("coolingChannelSurface")}
    return blocks | ({"badElementsPlastic": lambda s: lists(s)[0]} if heaters_move else {})


TABLES = {
    "channels": {},
    "hot-runner": {"surfaceBoundaryConditions": surface_lists(hot_runner_numbers),
                   "surfaceBoundaryConditionNames": branch_names},
    "stream-line": {},
    "moldbase": {"elementSurfaces": mold_base_faces, "sensors": mold_sensors, "coolantChannelLayout": layout,
                 "partInsertLayers": mold_layers_as_inserts, "coolantChannelLayers": channel_layers},
    "part-inserts": joined_blocks(False),
    "part-inserts-channels": joined_blocks(True),
}
