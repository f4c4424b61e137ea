#include "check/findings.h"

#include <algorithm>

namespace orvmesh::check {
namespace {

constexpr Severity kError = Severity::error, kWarning = Severity::warning, kNote = Severity::note;

constexpr Rule kRules[] = {
    {Code::indexOutOfRange, "index-out-of-range", kError,
     "a number names a node, element, surface or point that is not in the file",
     "write the file again with the program that made it; transfers refuse it or leave the entry out"},
    {Code::illegalValue, "illegal-value", kError, "a value that no reader takes",
     "write the file again with the program that made it; transfers refuse it"},
    {Code::invertedElement, "inverted-element", kError, "a volume element is turned inside out",
     "import the mesh again (`orvmesh import` turns such elements), or swap two of its nodes"},
    {Code::zeroVolume, "zero-volume-element", kError,
     "a volume element is flat, or has a number of nodes that no volume has", "mesh this spot anew"},
    {Code::duplicateElement, "duplicate-element", kError,
     "an element has the same nodes as an earlier one of any component",
     "remove one of the two in the mesher; often a volume is in two physical groups or was copied"},
    {Code::crowdedFace, "crowded-face", kError, "more than two volume elements share a face",
     "mesh this spot anew; usually two components overlap"},
    {Code::surfaceOffMesh, "surface-off-mesh", kError,
     "a surface element is a face of no volume element of the file",
     "derive the surfaces anew with `orvmesh import`"},
    {Code::surfaceNotOfOwner, "surface-not-of-owner", kError,
     "a surface element is a face of some element, but not of the one it names",
     "derive the surfaces anew with `orvmesh import`"},
    {Code::surfaceWithoutOwner, "surface-without-owner", kError,
     "a surface element names no volume element (0)", "derive the surfaces anew with `orvmesh import`"},
    {Code::openChannel, "open-channel", kError,
     "the walls and ends of the channels do not close: an edge of a face has no neighbour",
     "look for a missing wall or end face at this place; `orvmesh import` derives closed surfaces"},
    {Code::channelEnds, "channel-ends", kError,
     "a coolant circuit has no inlet or no outlet, and no hose either",
     "name its end faces in the mesher (surface groups `inlet:G`, `outlet:G`, `hose:G`) and import again"},
    {Code::unknownMaterial, "unknown-material", kError,
     "an element's material (kind, for channels) is none that the transfers know",
     "use 1 and up for plastic; 1 to 5000, 5002 to 9999 (inserts) or 10900 + heater group for the mold; kind "
     "1 "
     "(coolant) or 2 (heater) for channels"},
    {Code::headerCount, "header-count", kError, "a header field counts otherwise than the file holds",
     "write the file again with the program that made it; solvers may size their arrays by this field"},
    {Code::emptyComponent, "empty-component", kWarning,
     "surfaces, sensors or a layer speak of a component or material that has no elements",
     "import the missing component too, or drop what speaks of it"},
    {Code::sensorOutside, "sensor-outside", kWarning,
     "a sensor does not lie on what it names, or not in its component",
     "move the sensor into its component, or change its type"},
    {Code::coincidentNodes, "coincident-nodes", kWarning,
     "two nodes of one component lie at the same place: heat does not pass between them",
     "join them with `orvmesh import --merge TOL`"},
    {Code::unusedNode, "unused-node", kWarning, "a node belongs to no volume or surface element",
     "drop such nodes with `orvmesh import --drop-unused`"},
    {Code::separateNodes, "separate-nodes", kNote,
     "nodes of different components lie at the same place: the components are numbered separately",
     "nothing, if it is meant so: contacts are found by coordinates; else `orvmesh import --merge TOL`"},
    {Code::absentComponent, "absent-component", kNote,
     "a component has no elements, and nothing in the file speaks of it", "nothing, if the mold has none"},
};

constexpr bool inOrder() {
  for (std::size_t i = 0; i < std::size(kRules); ++i)
    if (static_cast<std::size_t>(kRules[i].code) != i) return false;
  return true;
}
static_assert(inOrder());

}  // namespace

const char* nameOf(Severity severity) {
  constexpr const char* kNames[] = {"error", "warning", "note"};
  return kNames[static_cast<std::size_t>(severity)];
}

std::span<const Rule> allRules() { return kRules; }
const Rule& ruleOf(Code code) { return kRules[static_cast<std::size_t>(code)]; }

Row& Collector::rowOf(Code code, int part) {
  const auto wanted = [code, part](const Row& row) { return row.code == code && row.part == part; };
  if (last_ < rows_.size() && wanted(rows_[last_])) return rows_[last_];
  last_ = static_cast<std::size_t>(std::find_if(rows_.begin(), rows_.end(), wanted) - rows_.begin());
  if (last_ == rows_.size()) rows_.push_back({code, part});
  return rows_[last_];
}

}  // namespace orvmesh::check
