#include "transfer/ofv/cavity_record.h"

#include <orvmesh/mesh_format_transfer.h>

#include <initializer_list>
#include <limits>
#include <span>
#include <utility>

#include "platform/ofv_writer.h"

namespace orvmesh::transfer {
namespace {

CavityFault refused(std::string text) { return {CavityResult_Refused, std::move(text)}; }

// Entries 1 to count of a caller's array.
template <class T>
std::span<const T> entries(const T* memory, std::int64_t count) {
  return {memory + 1, static_cast<std::size_t>(count)};
}
template <class T>
void assign(std::vector<T>& to, std::span<const T> from) {
  to.assign(from.begin(), from.end());
}

std::string faultOfNull(std::initializer_list<std::pair<const char*, const void*>> arrays) {
  for (const auto& [name, memory] : arrays)
    if (memory == nullptr) return std::string(name) + " is null (legal: an array that counts from 1)";
  return {};
}

std::string faultOfCount(const char* name, std::int64_t count, std::int64_t least, std::int64_t most) {
  if (least <= count && count <= most) return {};
  return std::string(name) + " is " + std::to_string(count) + " (legal: " + std::to_string(least) + " to " +
         std::to_string(most) + ")";
}

// The sum of the counts must be what was announced before as many nodes are looked at.
std::string faultOfNodeCounts(std::span<const std::int32_t> counts, std::int64_t announced) {
  std::int64_t sum = 0;
  for (std::size_t f = 0; f < counts.size(); ++f) {
    if (counts[f] < 3)
      return "face " + std::to_string(f + 1) + ": its number of points is " + std::to_string(counts[f]) +
             " (legal: 3 or more)";
    sum += counts[f];
  }
  if (sum == announced) return {};
  return "the faces have " + std::to_string(sum) + " points (legal: " + std::to_string(announced) +
         ", as SetCTGMeshInfo was told)";
}

std::vector<std::int64_t> offsetsOf(std::span<const std::int32_t> counts) {
  std::vector<std::int64_t> offsets(counts.size() + 1);
  for (std::size_t f = 0; f < counts.size(); ++f) offsets[f + 1] = offsets[f] + counts[f];
  return offsets;
}

}  // namespace

const char* CavityRecord::nameOf(Part part) {
  static constexpr const char* kNames[kParts] = {
      "SetCTG2OFVFilePath",   "SetCTGMeshInfo",       "SetCTGCavityInfo",       "SetCTGCavityCellInfo",
      "SetCTGCavityNodeInfo", "SetCTGCavityFaceInfo", "SetInletID2ChannelGrpID"};
  return kNames[part];
}

CavityFault CavityRecord::missing(std::initializer_list<Part> wanted) const {
  for (const Part part : wanted)
    if (!given_[part]) return {CavityResult_OutOfOrder, std::string("call ") + nameOf(part) + " first"};
  return {};
}

// Before anything of them changes: an allocation may fail on the way.
void CavityRecord::drop(std::initializer_list<Part> parts) {
  for (const Part part : parts) given_[part] = false;
}

CavityFault CavityRecord::setPath(const char* path) {
  if (path == nullptr || *path == '\0')
    return refused(path == nullptr ? "the path is null" : "the path is empty");
  path_ = path;
  given_[kPath] = true;
  return {};
}

CavityFault CavityRecord::setCounts(const CavityCounts& counts) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  for (const auto& fault :
       {faultOfCount("nodeCount", counts.nodes, 1, kMost), faultOfCount("faceCount", counts.faces, 1, kMost),
        faultOfCount("faceNodeCount", counts.faceNodes, 3 * std::int64_t{counts.faces},
                     std::numeric_limits<std::int64_t>::max() / 8),
        faultOfCount("cellCount", counts.cells, 1, kMost),
        faultOfCount("cavityCount", counts.cavities, 1, kMost),
        faultOfCount("inletCount", counts.inlets, 0, kMost)})
    if (!fault.empty()) return refused(fault);
  counts_ = counts;
  arrays_ = {};
  drop({kCavities, kCells, kNodes, kFaces, kInlets});
  given_[kCounts] = true;
  given_[kInlets] = counts.inlets == 0;
  return {};
}

CavityFault CavityRecord::setCavities(const int* number, const int* kind) {
  if (auto fault = missing({kCounts}); fault.result != 1) return fault;
  if (auto fault = faultOfNull({{"number", number}, {"kind", kind}}); !fault.empty()) return refused(fault);
  OFVMesh mesh;
  mesh.cavityNumber = entries(number, counts_.cavities);
  mesh.cavityKind = entries(kind, counts_.cavities);
  if (auto fault = faultOfCavities(mesh); !fault.empty()) return refused(fault);
  drop({kCavities, kCells, kFaces});
  assign(arrays_.cavityNumber, mesh.cavityNumber);
  assign(arrays_.cavityKind, mesh.cavityKind);
  given_[kCavities] = true;
  return {};
}

CavityFault CavityRecord::setCells(const int* cavity) {
  if (auto fault = missing({kCounts, kCavities}); fault.result != 1) return fault;
  if (auto fault = faultOfNull({{"cavity", cavity}}); !fault.empty()) return refused(fault);
  OFVMesh mesh = arrays_.mesh();
  mesh.cellCavity = entries(cavity, counts_.cells);
  if (auto fault = faultOfCells(mesh); !fault.empty()) return refused(fault);
  drop({kCells, kFaces});
  assign(arrays_.cellCavity, mesh.cellCavity);
  given_[kCells] = true;
  return {};
}

CavityFault CavityRecord::setNodes(const double* x, const double* y, const double* z) {
  if (auto fault = missing({kCounts}); fault.result != 1) return fault;
  if (auto fault = faultOfNull({{"x", x}, {"y", y}, {"z", z}}); !fault.empty()) return refused(fault);
  std::vector<double> xyz;
  xyz.reserve(3 * static_cast<std::size_t>(counts_.nodes));
  for (std::int64_t n = 1; n <= counts_.nodes; ++n) xyz.insert(xyz.end(), {x[n], y[n], z[n]});
  OFVMesh mesh;
  mesh.xyz = xyz;
  if (auto fault = faultOfPoints(mesh); !fault.empty()) return refused(fault);
  arrays_.xyz = std::move(xyz);
  drop({kFaces});
  given_[kNodes] = true;
  return {};
}

CavityFault CavityRecord::setFaces(const int* nodeCount, const int* nodes, const int* owner,
                                   const int* neighbour) {
  if (auto fault = missing({kCounts, kCavities, kCells, kNodes}); fault.result != 1) return fault;
  if (auto fault = faultOfNull(
          {{"nodeCount", nodeCount}, {"nodes", nodes}, {"owner", owner}, {"neighbour", neighbour}});
      !fault.empty())
    return refused(fault);
  const auto counts = entries(nodeCount, counts_.faces);
  if (auto fault = faultOfNodeCounts(counts, counts_.faceNodes); !fault.empty()) return refused(fault);
  std::vector<std::int64_t> offsets = offsetsOf(counts);
  OFVMesh mesh = arrays_.mesh();
  mesh.faceOffsets = offsets;
  mesh.faceNodes = entries(nodes, counts_.faceNodes);
  mesh.owner = entries(owner, counts_.faces);
  mesh.neighbour = entries(neighbour, counts_.faces);
  for (const auto check : {faultOfFaces, faultOfRelations})
    if (auto fault = check(mesh); !fault.empty()) return refused(fault);
  drop({kFaces});
  arrays_.faceOffsets = std::move(offsets);
  assign(arrays_.faceNodes, mesh.faceNodes);
  assign(arrays_.owner, mesh.owner);
  assign(arrays_.neighbour, mesh.neighbour);
  given_[kFaces] = true;
  return {};
}

CavityFault CavityRecord::setInlets(const int* inlet, const int* group) {
  if (auto fault = missing({kCounts}); fault.result != 1) return fault;
  if (counts_.inlets == 0) return {};
  if (auto fault = faultOfNull({{"inlet", inlet}, {"group", group}}); !fault.empty()) return refused(fault);
  OFVMesh mesh;
  mesh.inletID = entries(inlet, counts_.inlets);
  mesh.inletGroup = entries(group, counts_.inlets);
  if (auto fault = faultOfInlets(mesh); !fault.empty()) return refused(fault);
  drop({kInlets});
  assign(arrays_.inletID, mesh.inletID);
  assign(arrays_.inletGroup, mesh.inletGroup);
  given_[kInlets] = true;
  return {};
}

CavityFault CavityRecord::write(bool onlyChannels) const {
  if (auto fault = missing({kPath, kCounts, kCavities, kCells, kNodes, kFaces, kInlets}); fault.result != 1)
    return fault;
  COrvOFVWriter writer;
  int written = 0;
  if (onlyChannels) {
    const CavityArrays channels = channelsOf(arrays_.mesh());
    if (channels.cellCavity.empty())
      return refused("no cell belongs to a channel (legal: a cavity of kind " +
                     std::to_string(kCavityChannel) + " with cells)");
    written = writeWholeOFV(writer, path_.c_str(), channels.mesh());
  } else {
    written = writeWholeOFV(writer, path_.c_str(), arrays_.mesh());
  }
  if (written == 1) return {};
  return {CavityResult_NotWritten, path_ + ": " + writer.errorText()};
}

CavityRecord& cavityRecord() {
  static CavityRecord record;
  return record;
}

void freeCavityRecord() { cavityRecord() = {}; }

}  // namespace orvmesh::transfer
