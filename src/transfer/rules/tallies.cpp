#include "transfer/rules/tallies.h"

#include <algorithm>
#include <bit>

#include "base/ranges.h"
#include "transfer/prepass/hot_runner.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

template <class Predicate>
std::int32_t countSurfaces(const MeshModel& model, Predicate counted) {
  std::int32_t count = 0;
  for (std::int32_t s = 1; s <= model.surfaces.count(); ++s) count += counted(model.surfaces[s]);
  return count;
}

std::int32_t hotRunnerFaces(const MeshModel& model, const GateNumbers& gates) {
  return gates.gateFaces + countSurfaces(model, [&](const SurfaceElement& face) {
           if (face.interfaceId != 1) return false;
           const std::int32_t b = face.boundaryType;
           if (b == 5) return ownerGroupIn(model, face, kHotRunnerFaceGroup);
           return b == 1 || b == 2 || b == 13;
         });
}

std::int32_t moldBaseFaces(const MeshModel& model) {
  return countSurfaces(model, [](const SurfaceElement& face) {
    const std::int32_t b = face.boundaryType;
    return face.interfaceId != 1 || (face.contactCode != 0 && b != 1 && b < 6);
  });
}

std::int32_t hotRunnerElements(const MeshModel& model) {
  return static_cast<std::int32_t>(std::count_if(model.elemP.fieldB.begin(), model.elemP.fieldB.end(),
                                                 [](std::int32_t b) { return kHotRunnerGroup.holds(b); }));
}

std::int32_t sizeOf(const std::vector<BadElement>& list) { return static_cast<std::int32_t>(list.size()); }

}  // namespace

const char* tallyName(Tally tally) {
  switch (tally) {
    case Tally::None:
      return "nothing";
    case Tally::ChannelGroups:
      return "highest channel group";
    case Tally::ChannelFaces:
      return "faces of interface 3 or 4";
    case Tally::InsertElements:
      return "part-insert elements (5001..9999)";
    case Tally::InteriorContacts:
      return "contact records of kind 0";
    case Tally::OtherContacts:
      return "contact records of other kinds";
    case Tally::HeaterElements:
      return "heater elements";
    case Tally::HeaterGroups:
      return "heater groups";
    case Tally::HeaterWallFaces:
      return "heater wall faces";
    case Tally::NumberedWithList:
      return "numbered surfaces with a condition list";
    case Tally::BadPlastic:
      return "bad plastic elements";
    case Tally::BadMold:
      return "bad mold-base elements";
    case Tally::BadChannel:
      return "bad channel elements";
    case Tally::HotRunnerElements:
      return "plastic elements of group 201..300";
    case Tally::HotRunnerFaces:
      return "part faces of type 1, 2, 13, gate faces, faces of type 5 on group 201..299";
    case Tally::HotRunnerNodeEntries:
      return "node entries of hot-runner condition lists";
    case Tally::HotRunnerNodes:
      return "distinct nodes of hot-runner condition lists";
    case Tally::MoldBaseFaces:
      return "faces off the part, part faces in contact of type below 6 but not 1";
    case Tally::SecondLengthFactor:
      return "the model's second length factor";
  }
  return "";
}

std::int32_t tallyValue(Tally tally, const COrvSolverMeshWriter& worker) {
  const MeshModel& model = worker.model();
  const PrepassResults& found = worker.found;
  switch (tally) {
    case Tally::None:
      return 0;
    case Tally::ChannelGroups:
      return found.channelGroupCount;
    case Tally::ChannelFaces:
      return countSurfaces(
          model, [](const SurfaceElement& face) { return face.interfaceId == 3 || face.interfaceId == 4; });
    case Tally::InsertElements:
      return found.nodeTyping ? found.nodeTyping->insertElements : 0;
    case Tally::InteriorContacts:
      return found.contacts.interior;
    case Tally::OtherContacts:
      return found.contacts.other;
    case Tally::HeaterElements:
      return found.heaters ? found.heaters->heaterElements : 0;
    case Tally::HeaterGroups:
      return found.heaters ? found.heaters->heaterGroups : 0;
    case Tally::HeaterWallFaces:
      return found.heaterFaces.wall;
    case Tally::NumberedWithList:
      return found.surfaceNumbering ? found.surfaceNumbering->numberedWithList : 0;
    case Tally::BadPlastic:
      return sizeOf(found.bad.plastic);
    case Tally::BadMold:
      return sizeOf(found.bad.mold);
    case Tally::BadChannel:
      return sizeOf(found.bad.channel);
    case Tally::HotRunnerElements:
      return hotRunnerElements(model);
    case Tally::HotRunnerFaces:
      return hotRunnerFaces(model, found.gates);
    case Tally::HotRunnerNodeEntries:
      return found.hotRunnerNodes.entries;
    case Tally::HotRunnerNodes:
      return found.hotRunnerNodes.distinct;
    case Tally::MoldBaseFaces:
      return moldBaseFaces(model);
    case Tally::SecondLengthFactor:
      return std::bit_cast<std::int32_t>(static_cast<float>(model.secondLengthFactor));
  }
  return 0;
}

}  // namespace orvmesh::transfer
