#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "import/roles.h"

namespace orvmesh::importing {

using Position = std::array<float, 3>;

// Points with faces of their own, beside the mesh.
struct Outline {
  struct Face {
    std::array<std::int32_t, 4> nodes;  // 1-based among the points; a triangle repeats its third
    std::array<std::int32_t, 2> codes;
  };
  std::vector<Position> points;
  std::vector<Face> faces;
};

// What a roles file says; docs/import.md shows one.
struct RolesFile {
  std::string path;

  // A physical group by name, or as "DIMENSION:TAG".
  struct Mapping {
    std::string group;
    Role role;
  };
  std::vector<Mapping> mappings;
  bool ignoreUnlisted = false;

  struct SensorPoint {
    Role role;
    Position position;
  };
  std::vector<SensorPoint> sensors;

  // On the nodes of a group or on one node, named by its tag in the mesh file.
  struct Condition {
    std::string group;
    std::uint64_t node;
    std::int32_t type;
    float value;
    std::string path;
  };
  std::vector<Condition> conditions;

  struct BcName {
    std::string name;
    std::int32_t type;
    std::vector<std::pair<std::string, std::string>> properties;
    std::vector<std::string> groups;  // surface and volume groups whose surface elements carry the name
    std::string path;
  };
  std::vector<BcName> bcNames;

  struct LayerName {
    std::string name;
    std::int32_t flag;  // of mold layers
  };
  // By the role of their volumes.
  std::map<Role, LayerName> layerNames;

  struct Line {
    Role channel;
    Position ends[2];
    float diameters[2];
  };
  std::optional<std::vector<Line>> lines;

  struct LayoutPoint {
    std::int32_t type;
    Position position;
  };
  struct LayoutBeam {
    std::int32_t ends[2];  // 1-based among the points
    float diameters[2];
    std::int32_t code, beamCode;
  };
  struct Layout {
    std::vector<LayoutPoint> points;
    std::vector<LayoutBeam> beams;
  };
  std::optional<Layout> layout;

  Outline moldInsert;
  std::optional<Outline> channelSurface;
  bool deriveChannelSurface = false;

  // Elements of a lower quality are listed as bad.
  double badQuality = 0.01;

  Position partingDirection{0, 0, 1};
};

RolesFile readRolesFile(const std::string& path);

}  // namespace orvmesh::importing
