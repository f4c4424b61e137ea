#include "transfer/blocks/sensors.h"

#include <algorithm>

#include "base/checked.h"
#include "platform/insert_membership.h"
#include "transfer/blocks/mesh_blocks.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

using Sensors = std::vector<Sensor>;

const Sensors& ofKind(const COrvSolverMeshWriter& worker, int kind) {
  return worker.model().sensors[static_cast<std::size_t>(kind - 1)];
}

std::int32_t countOf(const COrvSolverMeshWriter& worker, int kind) {
  return static_cast<std::int32_t>(ofKind(worker, kind).size());
}

template <class Member>
std::int32_t countMembers(const Sensors& sensors, Member member) {
  return static_cast<std::int32_t>(std::count_if(sensors.begin(), sensors.end(), member));
}

// Writes those sensors of listKind for which `taken` holds as sensors of `kind`, after `change` has had the
// ids in hand.
template <class Taken, class Change>
void writeSensors(COrvSolverMeshWriter& worker, int listKind, int kind, Taken taken, Change change) {
  const float r = inverseLengthFactor(worker);
  const Sensors& sensors = ofKind(worker, listKind);
  for (std::size_t i = 0; i < sensors.size(); ++i) {
    const Sensor& sensor = sensors[i];
    if (!taken(sensor)) continue;
    int ids[4];
    std::copy_n(sensor.ids, 4, ids);
    change(ids);
    worker.writer.writeSensorInfoBlockEntry(kind, ids, static_cast<float>(sensor.x) * r,
                                            static_cast<float>(sensor.y) * r,
                                            static_cast<float>(sensor.z) * r);
    if (worker.numbers) worker.numbers->sensorWritten(listKind, i);
  }
}

constexpr const char* kLosses[] = {"sensors on part elements", "sensors on part nodes",
                                   "sensors on surfaces",      "sensors on mold elements",
                                   "sensors on mold nodes",    "sensors of the sixth kind"};
void dropKinds(COrvSolverMeshWriter& worker, std::initializer_list<int> kinds) {
  for (const int kind : kinds) worker.noteDropped(kLosses[kind - 1], countOf(worker, kind));
}

bool every(const Sensor&) { return true; }
void unchanged(int*) {}

void writeAsStored(COrvSolverMeshWriter& worker, int listKind, int kind) {
  writeSensors(worker, listKind, kind, every, unchanged);
}

void writeSurfaceSensors(COrvSolverMeshWriter& worker) {
  writeSensors(worker, 3, 3, every, [&](int* ids) {
    const auto& numbering = worker.found.surfaceNumbering;
    const bool known = numbering && 1 <= ids[1] && ids[1] <= numbering->newNumber.count();
    ids[1] = known ? numbering->newNumber[ids[1]] : 0;
  });
}

}  // namespace

void WriteOfeSensorBin(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Sensor");
  const Sensors& elements = ofKind(worker, 4);
  const Sensors& nodes = ofKind(worker, 5);
  const InsertMembership inserts(worker.model(), !elements.empty(), !nodes.empty());
  const auto elementIn = [&](const Sensor& sensor) { return inserts.holdsElement(sensor.ids[0]); };
  const auto elementOut = [&](const Sensor& sensor) { return !elementIn(sensor); };
  const auto nodeIn = [&](const Sensor& sensor) { return inserts.holdsNode(sensor.ids[0]); };
  const auto nodeOut = [&](const Sensor& sensor) { return !nodeIn(sensor); };
  const std::int32_t elementsIn = countMembers(elements, elementIn);
  const std::int32_t nodesIn = countMembers(nodes, nodeIn);
  worker.setCounts(m_HEADER_NSensor1,
                   {countOf(worker, 1) + elementsIn, countOf(worker, 2) + nodesIn, countOf(worker, 3),
                    countOf(worker, 4) - elementsIn, countOf(worker, 5) - nodesIn, countOf(worker, 6)});
  const int offset = worker.model().elemP.count();
  writeAsStored(worker, 1, 1);
  writeSensors(worker, 4, 1, elementIn, [&](int* ids) { ids[0] = offset + inserts.ordinal(ids[0]); });
  writeAsStored(worker, 2, 2);
  writeSensors(worker, 5, 2, nodeIn, unchanged);
  writeSurfaceSensors(worker);
  writeSensors(worker, 4, 4, elementOut, [&](int* ids) { ids[0] = inserts.ordinal(ids[0]); });
  writeSensors(worker, 5, 5, nodeOut, unchanged);
  writeAsStored(worker, 6, 6);
}

void WriteOfeSensorBin_Unsplit(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Sensor");
  worker.setCounts(m_HEADER_NSensor1,
                   {countOf(worker, 1) + countOf(worker, 4), countOf(worker, 2) + countOf(worker, 5),
                    countOf(worker, 3), 0, 0, countOf(worker, 6)});
  const int offset = worker.model().elemP.count();
  writeAsStored(worker, 1, 1);
  writeSensors(worker, 4, 1, every, [&](int* ids) { ids[0] = wrappingSum(ids[0], offset); });
  writeAsStored(worker, 2, 2);
  writeAsStored(worker, 5, 2);
  writeSurfaceSensors(worker);
  writeAsStored(worker, 6, 6);
}

void writeJoinedSensors(COrvSolverMeshWriter& worker) {
  if (worker.sourceHeader()[2] != 0) {
    WriteOfeSensorBin_Unsplit(worker);
  } else {
    WriteOfeSensorBin(worker);
  }
}

void WriteOfeSensorBin_OnlyMoldbase(COrvSolverMeshWriter& worker) {
  worker.trace("/// Writing Sensor///");
  worker.banner("Writing Sensor");
  worker.setCounts(m_HEADER_NSensor1, {countOf(worker, 4), countOf(worker, 5), 0, 0, 0, 0});
  writeAsStored(worker, 4, 1);
  writeAsStored(worker, 5, 2);
  dropKinds(worker, {1, 2, 3, 6});
}

void dropSensors(COrvSolverMeshWriter& worker) { dropKinds(worker, {1, 2, 3, 4, 5, 6}); }

}  // namespace orvmesh::transfer
