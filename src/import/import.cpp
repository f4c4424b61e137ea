#include "import/import.h"

#include <limits>
#include <map>

#include "base/failure.h"
#include "base/other_file.h"
#include "import/channel_surface.h"
#include "import/element_repair.h"
#include "import/msh_reader.h"
#include "import/node_numbers.h"
#include "import/ofe_output.h"

namespace orvmesh::importing {
namespace {

void checkOptions(const ImportOptions& options) {
  if (!(options.scale > 0) || options.scale > std::numeric_limits<float>::max())
    throw Failure(options.target, "the scale factor must be a positive number");
  if (options.merge && !(*options.merge >= 0 && *options.merge <= std::numeric_limits<float>::max()))
    throw Failure(options.mesh, "the merge tolerance must be a number of at least 0");
  requireOtherFile(options.target, {options.mesh, options.roles});
}

class Import {
 public:
  explicit Import(const ImportOptions& options)
      : options_(options),
        roles_(options.roles.empty() ? RolesFile{} : readRolesFile(options.roles)),
        mesh_(readMsh(options.mesh)),
        groups_(assignRoles(mesh_, roles_)),
        sensors_(listSensors(mesh_, groups_, roles_)),
        conditions_(listConditions(mesh_, groups_, roles_)),
        volumes_(mesh_, groups_) {}

  ImportReport run() {
    countReduced();
    listIgnored();
    prepareNodes();
    NamedFaces named(mesh_, groups_, mesh_.nodeCount());
    auto surfaces = deriveSurfaces(volumes_, named);
    report_.channels = measureChannels(volumes_, surfaces);
    placeSensors(volumes_, surfaces, sensors_);
    const auto names = placeNames(volumes_, surfaces, groups_, roles_);
    if (roles_.deriveChannelSurface) roles_.channelSurface = outlineChannels(volumes_, surfaces);
    writeOfe({volumes_, surfaces, report_.channels, sensors_, conditions_, names, repairs_.bad, roles_,
              options_.scale},
             options_.target);
    finishReport(surfaces, names);
    return std::move(report_);
  }

 private:
  // Joins and drops nodes and turns elements, so that what is left is what is written.
  void prepareNodes() {
    if (options_.merge) {
      measureVolumes(volumes_);
      report_.joinedNodes = joinNodes(mesh_, *options_.merge, joinedTo_);
      renumberCorners(mesh_, joinedTo_);
      for (auto& condition : conditions_)
        condition.node = joinedTo_[static_cast<std::size_t>(condition.node)];
    }
    repairs_ = turnElements(volumes_, roles_.badQuality);
    if (!options_.merge)
      for (auto& component : volumes_.components) component.volumeIn = component.volumeOut;
    dropWhatNobodyNeeds();
  }

  void dropWhatNobodyNeeds() {
    constexpr std::uint8_t kNeeded = 0x80;  // by no block
    auto& marks = volumes_.blocksOfNode;
    for (const auto& condition : conditions_) marks[static_cast<std::size_t>(condition.node)] |= kNeeded;
    for (std::size_t node = 1; node < marks.size(); ++node) {
      const bool joined = !joinedTo_.empty() && joinedTo_[node] != static_cast<std::int32_t>(node);
      if (marks[node] != 0 || joined) continue;
      ++report_.unusedNodes;
      marks[node] = options_.dropUnused ? 0 : kNeeded;
    }
    if (report_.joinedNodes == 0 && (report_.unusedNodes == 0 || !options_.dropUnused)) return;
    const auto newNumber = dropNodes(mesh_, marks);
    for (auto& condition : conditions_) condition.node = newNumber[static_cast<std::size_t>(condition.node)];
  }

  // Second-order elements of volumes and named faces.
  void countReduced() {
    for (const auto& run : mesh_.runs)
      if (run.type->order == 2 && groups_.ofSet[run.set].kind != RoleKind::ignore)
        report_.secondOrder += run.count;
  }

  void listIgnored() {
    for (const auto& group : groups_.groups)
      if (group.role.kind == RoleKind::ignore && !group.carries)
        report_.ignored.push_back({group.label(), group.elements});
    std::map<int, std::uint64_t> ofNoGroup;
    for (const auto& run : mesh_.runs)
      if (mesh_.sets[run.set].groupCount == 0) ofNoGroup[mesh_.sets[run.set].dimension] += run.count;
    static constexpr const char* kNames[] = {"points", "lines", "surfaces", "volumes"};
    for (const auto& [dimension, elements] : ofNoGroup)
      report_.ignored.push_back({std::string(kNames[dimension]) + " of no group", elements});
  }

  void countBad() {
    report_.badQuality = roles_.badQuality;
    for (const auto& bad : repairs_.bad) {
      ++report_.bad[static_cast<std::size_t>(blockOf(volumes_.componentOf(bad.element).role.kind))];
      if (bad.code == kNoVolume) ++report_.flat;
    }
  }

  void finishReport(const Surfaces& surfaces, const SurfaceNames& names) {
    countBad();
    report_.turned = repairs_.turned;
    report_.namedSurfaces = names.surfaces.size();
    report_.facesWithout = names.facesWithout;
    report_.mesh = options_.mesh;
    report_.format = mesh_.format;
    report_.target = options_.target;
    report_.nodes = mesh_.nodeCount();
    report_.components = std::move(volumes_.components);
    report_.sensors = std::move(sensors_);
    report_.conditions = conditions_.size();
    report_.unusedDropped = options_.dropUnused;
    report_.overlaps = surfaces.overlaps;
    for (int k = 1; k <= 4; ++k) report_.surfaces.ofInterface[k - 1] = surfaces.end(k) - surfaces.begin(k);
    report_.surfaces.partOnMold = surfaces.partOnMold;
    report_.surfaces.gates = surfaces.gates;
    report_.surfaces.meltInlets = surfaces.meltInlets;
  }

  const ImportOptions& options_;
  RolesFile roles_;
  MshMesh mesh_;
  GroupRoles groups_;
  std::vector<PlacedSensor> sensors_;
  std::vector<NodeCondition> conditions_;
  VolumeMesh volumes_;
  Repairs repairs_;
  std::vector<std::int32_t> joinedTo_;  // by node; empty without --merge
  ImportReport report_;
};

}  // namespace

ImportReport importMesh(const ImportOptions& options) {
  checkOptions(options);
  return Import(options).run();
}

}  // namespace orvmesh::importing
