#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "import/msh_writer.h"

// Molds of unit cells drawn with letters along x, rows along y after '/', layers from below after ' '; '.' is
// nothing.
namespace orvmesh::test {

inline const std::map<char, std::string> kBrickRoles = {
    {'P', "part"},        {'Q', "part:7"},   {'H', "hotrunner:201"}, {'I', "insert:5002"},
    {'J', "insert:5003"}, {'M', "moldbase"}, {'N', "moldbase:2"},    {'C', "channel:1"},
    {'D', "channel:2"},   {'h', "heater:1"}, {'X', "ignore"}};

enum class Cells { hexahedra, wedges, tetrahedra, hexahedraAndPyramids };

class BrickMold {
 public:
  explicit BrickMold(const std::string& drawing, Cells cells = Cells::hexahedra) : drawing_(drawing) {
    for (int z = 0; z <= depth(); ++z)
      for (int y = 0; y <= height(); ++y)
        for (int x = 0; x <= width(); ++x)
          mesh.nodes.push_back({node(x, y, z), double(x), double(y), double(z)});
    for (const auto& [letter, role] : kBrickRoles) {
      const int group = static_cast<int>(mesh.names.size()) + 1;
      mesh.names.emplace_back(3, group, role);
      eachCell([&, sought = letter](int x, int y, int z) {
        if (at(x, y, z) == sought) addCell(group, x, y, z, cells);
      });
    }
  }

  Msh mesh;
  int width() const { return static_cast<int>(std::min(drawing_.find_first_of("/ "), drawing_.size())); }
  int height() const { return (layerSize() + 1) / (width() + 1); }
  int depth() const { return (static_cast<int>(drawing_.size()) + 1) / (layerSize() + 1); }
  char at(int x, int y, int z) const {
    if (x < 0 || y < 0 || z < 0 || x >= width() || y >= height() || z >= depth()) return '.';
    return drawing_[static_cast<std::size_t>((z * height() + y) * (width() + 1) + x)];
  }
  void eachCell(const auto& visit) const {
    for (int z = 0; z < depth(); ++z)
      for (int y = 0; y < height(); ++y)
        for (int x = 0; x < width(); ++x) visit(x, y, z);
  }
  std::uint64_t node(int x, int y, int z) const {
    return static_cast<std::uint64_t>((z * (height() + 1) + y) * (width() + 1) + x + 1);
  }

  // A surface group of one quadrilateral: the cell's face towards lower (side 0) or higher x.
  void nameFace(const std::string& role, int x, int y, int z, int side) {
    x += side;
    addGroup(2, role, 3, {node(x, y, z), node(x, y + 1, z), node(x, y + 1, z + 1), node(x, y, z + 1)});
  }
  void addPoint(const std::string& role, double x, double y, double z) {
    mesh.nodes.push_back({mesh.nodes.size() + 1, x, y, z});
    addGroup(0, role, 15, {mesh.nodes.size()});
  }
  void addGroup(int dimension, const std::string& name, int type, const std::vector<std::uint64_t>& nodes) {
    const int group = 100 + static_cast<int>(mesh.names.size());
    mesh.names.emplace_back(dimension, group, name);
    addElement(type, dimension, group, nodes);
  }
  void addElement(int type, int dimension, int group, const std::vector<std::uint64_t>& nodes) {
    mesh.elements.push_back({mesh.elements.size() + 1, type, dimension, group, group, nodes});
  }

 private:
  int layerSize() const { return static_cast<int>(std::min(drawing_.find(' '), drawing_.size())); }

  void addCell(int group, int x, int y, int z, Cells cells) {
    // Corners of the pieces, 8 being the middle; the tetrahedra are the six ways from corner 0 to corner 6.
    static const std::map<Cells, std::vector<std::vector<std::size_t>>> kPieces = {
        {Cells::hexahedra, {{0, 1, 2, 3, 4, 5, 6, 7}}},
        {Cells::wedges, {{0, 1, 2, 4, 5, 6}, {0, 2, 3, 4, 6, 7}}},
        {Cells::tetrahedra,
         {{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6}, {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}}},
        {Cells::hexahedraAndPyramids,
         {{0, 1, 2, 3, 8},
          {4, 7, 6, 5, 8},
          {0, 4, 5, 1, 8},
          {1, 5, 6, 2, 8},
          {2, 6, 7, 3, 8},
          {3, 7, 4, 0, 8}}}};
    static const std::map<std::size_t, int> kTypes = {{4, 4}, {8, 5}, {6, 6}, {5, 7}};  // by corners
    if (cells == Cells::hexahedraAndPyramids && (x + y + z) % 2 != 0) cells = Cells::hexahedra;
    std::vector<std::uint64_t> corners = {
        node(x, y, z),     node(x + 1, y, z),     node(x + 1, y + 1, z),     node(x, y + 1, z),
        node(x, y, z + 1), node(x + 1, y, z + 1), node(x + 1, y + 1, z + 1), node(x, y + 1, z + 1)};
    if (cells == Cells::hexahedraAndPyramids) {
      corners.push_back(mesh.nodes.size() + 1);
      mesh.nodes.push_back({corners.back(), x + 0.5, y + 0.5, z + 0.5});
    }
    for (const auto& piece : kPieces.at(cells)) {
      std::vector<std::uint64_t> nodes;
      for (const auto corner : piece) nodes.push_back(corners[corner]);
      addElement(kTypes.at(piece.size()), 3, group, nodes);
    }
  }

  std::string drawing_;
};

}  // namespace orvmesh::test
