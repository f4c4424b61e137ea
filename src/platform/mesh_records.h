#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/ofe_header.h"

// The mesh model's tables: struct of arrays, spans over storage that the model owns, 1-based record access.

// Node coordinates; COFE_Node is the record view, in model units (the file's floats times the length factor).
struct COFE_Node {
  double x, y, z;
};
struct NodeTable {
  std::span<const float> xyz;  // 3 per node, as in the file
  double factor = 1;
  std::int32_t count() const { return static_cast<std::int32_t>(xyz.size() / 3); }
  COFE_Node operator[](std::int32_t n) const {
    const float* p = xyz.data() + 3 * (static_cast<std::size_t>(n) - 1);
    return {p[0] * factor, p[1] * factor, p[2] * factor};
  }
};

// One volume element. fieldA is the material (for channel elements the kind), fieldB the group or secondary
// material.
struct COFE_Elem {
  std::span<const std::int32_t> nodes;
  std::int32_t fieldA;
  std::int32_t fieldB;
  double value;
  std::int32_t nodeCount() const { return static_cast<std::int32_t>(nodes.size()); }
};
struct ElementTable {
  std::span<const std::int32_t> connectivity;
  std::span<const std::int64_t>
      offsets;  // count + 1 entries; empty when all elements have nodesPerElement nodes
  std::int32_t nodesPerElement = 0;
  std::span<const std::int32_t> fieldA;
  std::span<const std::int32_t> fieldB;
  std::span<const float> value;

  std::int32_t count() const { return static_cast<std::int32_t>(fieldA.size()); }
  bool holds(std::int32_t e) const { return 1 <= e && e <= count(); }
  std::span<const std::int32_t> nodes(std::int32_t e) const {
    const auto i = static_cast<std::size_t>(e) - 1;
    if (offsets.empty()) {
      const auto n = static_cast<std::size_t>(nodesPerElement);
      return connectivity.subspan(i * n, n);
    }
    return connectivity.subspan(static_cast<std::size_t>(offsets[i]),
                                static_cast<std::size_t>(offsets[i + 1] - offsets[i]));
  }
  std::int32_t material(std::int32_t e) const { return fieldA[static_cast<std::size_t>(e) - 1]; }
  std::int32_t group(std::int32_t e) const { return fieldB[static_cast<std::size_t>(e) - 1]; }
  COFE_Elem operator[](std::int32_t e) const {
    const auto i = static_cast<std::size_t>(e) - 1;
    return {nodes(e), fieldA[i], fieldB[i], value[i]};
  }
};

// One boundary face. elementNo may lie outside its list (combined files number their faces so): whoever
// follows it asks the list first.
struct SurfaceElement {
  std::int32_t nodeCount;  // 3 or 4; the fourth node of a triangle is 0
  std::int32_t interfaceId;
  std::int32_t ownerCode;
  std::int32_t contactCode;
  std::int32_t boundaryType;
  std::int32_t elementNo;
  std::int32_t nodes[4];
  std::uint32_t tag;
};
struct SurfaceTable {
  std::span<const std::int32_t>
      nodes;  // 4 per surface, as in the file: a triangle's fourth is its third or 0
  std::span<const std::int32_t> interfaceId;
  std::span<const std::int32_t> ownerCode;
  std::span<const std::int32_t> contactCode;
  std::span<const std::int32_t> boundaryType;
  std::span<const std::int32_t> elementNo;
  std::span<const std::int32_t> tag;
  // Boundary-condition lists: count + 1 entries, 0 where a surface has none, else 1 + position in lists.
  std::vector<std::int32_t> listOf;
  std::vector<std::span<const std::int32_t>> lists;

  std::int32_t count() const { return static_cast<std::int32_t>(interfaceId.size()); }
  bool hasList(std::int32_t s) const { return !listOf.empty() && listOf[static_cast<std::size_t>(s)] != 0; }
  std::span<const std::int32_t> list(std::int32_t s) const {
    return hasList(s) ? lists[static_cast<std::size_t>(listOf[static_cast<std::size_t>(s)]) - 1]
                      : std::span<const std::int32_t>{};
  }
  std::uint32_t tagOf(std::int32_t s) const {
    return static_cast<std::uint32_t>(tag[static_cast<std::size_t>(s) - 1]);
  }
  SurfaceElement operator[](std::int32_t s) const {
    const auto i = static_cast<std::size_t>(s) - 1;
    const std::int32_t* n = nodes.data() + 4 * i;
    const bool triangle = n[3] == 0 || n[3] == n[2];
    return {triangle ? 3 : 4,
            interfaceId[i],
            ownerCode[i],
            contactCode[i],
            boundaryType[i],
            elementNo[i],
            {n[0], n[1], n[2], triangle ? 0 : n[3]},
            tagOf(s)};
  }
};

// Nodal boundary conditions. The code is two letters, "??" for a stored type that has none.
struct BoundaryCondition {
  std::int32_t entityNo;
  const char* code;
  double value;
};
struct BoundaryConditionTable {
  std::span<const std::int32_t> entityNo;
  std::span<const std::int32_t> type;
  std::span<const float> value;
  std::int32_t count() const { return static_cast<std::int32_t>(entityNo.size()); }
  BoundaryCondition operator[](std::int32_t i) const {
    static constexpr const char* kCodes[] = {"??", "EM", "EC", "OM", "PR", "MW", "SM"};
    const auto k = static_cast<std::size_t>(i) - 1;
    return {entityNo[k], kCodes[1 <= type[k] && type[k] <= 6 ? type[k] : 0], value[k]};
  }
};

struct BadElementTable {
  std::span<const std::int32_t> elementNo;
  std::span<const std::int32_t> code;
  std::int32_t count() const { return static_cast<std::int32_t>(elementNo.size()); }
};

// Lengths of the records below are in model units.
struct ChannelDiameter {
  std::int32_t nodeCount;
  std::int32_t nodes[8];
  double diameter;
};
struct ChannelLineEnd {
  float values[4];  // x, y, z, diameter
  std::int32_t codes[4];
};
struct ChannelLine {
  ChannelLineEnd ends[2];
};
struct BeamPoint {
  double x, y, z;
  std::int32_t id;
};
struct BeamSegment {
  std::int32_t segValue;
  std::int32_t segCode;
  std::int32_t values[13];  // a0 to a12; lengths and ratios times 10000
};
struct Sensor {
  double x, y, z;
  std::int32_t ids[4];
};
struct GeometryPoint {
  double x, y, z;
};
struct GeometryFace {
  std::int32_t nodeCount;
  std::int32_t nodes[4];
  std::int32_t faceCodeA, faceCodeB;
};
struct Geometry {
  std::vector<GeometryPoint> points;
  std::vector<GeometryFace> faces;
};
struct SurfaceBCName {
  std::string name;
  std::int32_t type;
  std::int32_t branchId, branchOutletId, branchNumber;
  std::int32_t valueIndex;  // into MeshModel::bcValues
};
struct LayerMaterial {
  std::int32_t materialId, layerId;
  std::int32_t additionalFlag;
  std::string name;
};

// A face where part and insert, or insert and mold, meet.
struct ContactFaceRecord {
  std::int32_t surfaceNo;  // the surface element that lies on the face; 0 when there is none
  std::int32_t faceType;   // 0 interior when part and insert are joined; 1 becomes a part surface; 3 skipped
  std::int32_t faceOwner;  // material of the mold element on the other side (kind 1)
  std::int32_t nodes[5];   // 1-based; a triangle repeats its third node
};

// Everything a whole OFE file holds. Empty when the file was refused.
struct MeshModel {
  OFEHeader header;
  std::int32_t formatVersion = 0;  // header field 0
  double lengthFactor = 1;         // the header's scale factor; 1 where the file has 0
  double secondLengthFactor = 0;   // header field 30
  NodeTable nodes;
  ElementTable elemP, elemM, elemC;
  SurfaceTable surfaces;
  BoundaryConditionTable conditions;
  BadElementTable badP, badM, badC;
  std::vector<std::int32_t> blockToMaterial;  // material of each mold block: distinct materials, ascending

  std::vector<ChannelDiameter> diameters;
  std::vector<ChannelLine> lines;
  std::vector<BeamPoint> beamPoints;
  std::vector<BeamSegment> beamSegments;
  std::vector<Sensor>
      sensors[6];  // kinds 1 to 6: part element, part node, surface, mold element, mold node, sixth
  Geometry moldInsert;
  Geometry channelSurface;
  std::vector<SurfaceBCName> bcNames;
  std::vector<double> bcValues;
  std::vector<LayerMaterial> moldMetalLayers, partInsertLayers, channelLayers;
  bool hasPartingDirection = false;
  double partingDirection[3] = {0, 0, 0};
};
