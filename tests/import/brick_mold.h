#pragma once

#include <array>
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
  explicit BrickMold(const std::string& drawing, Cells cells = Cells::hexahedra) {
    layers_.emplace_back().emplace_back();
    for (const char letter : drawing) {
      if (letter == ' ')
        layers_.emplace_back().emplace_back();
      else if (letter == '/')
        layers_.back().emplace_back();
      else
        layers_.back().back() += letter;
    }
    for (int z = 0; z <= depth(); ++z)
      for (int y = 0; y <= height(); ++y)
        for (int x = 0; x <= width(); ++x)
          mesh.nodes.push_back({node(x, y, z), double(x), double(y), double(z)});
    for (const auto& [letter, role] : kBrickRoles) {
      groups_[letter] = static_cast<int>(groups_.size()) + 1;
      mesh.names.emplace_back(3, groups_[letter], role);
    }
    for (const auto& [letter, group] : groups_) addCells(letter, cells);
  }

  Msh mesh;
  int width() const { return static_cast<int>(layers_[0][0].size()); }
  int height() const { return static_cast<int>(layers_[0].size()); }
  int depth() const { return static_cast<int>(layers_.size()); }
  char at(int x, int y, int z) const {
    if (x < 0 || y < 0 || z < 0 || x >= width() || y >= height() || z >= depth()) return '.';
    return layers_[std::size_t(z)][std::size_t(y)][std::size_t(x)];
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
  void addCells(char letter, Cells cells) {
    for (int z = 0; z < depth(); ++z)
      for (int y = 0; y < height(); ++y)
        for (int x = 0; x < width(); ++x)
          if (at(x, y, z) == letter) addCell(groups_[letter], x, y, z, cells);
  }

  void addCell(int group, int x, int y, int z, Cells cells) {
    const std::array<std::uint64_t, 8> n = {
        node(x, y, z),     node(x + 1, y, z),     node(x + 1, y + 1, z),     node(x, y + 1, z),
        node(x, y, z + 1), node(x + 1, y, z + 1), node(x + 1, y + 1, z + 1), node(x, y + 1, z + 1)};
    const auto add = [&](int type, const std::vector<std::size_t>& corners) {
      std::vector<std::uint64_t> nodes;
      for (const auto c : corners) nodes.push_back(c == 8 ? mesh.nodes.size() : n[c]);
      addElement(type, 3, group, nodes);
    };
    const bool pyramids = cells == Cells::hexahedraAndPyramids && (x + y + z) % 2 == 0;
    if (pyramids) {
      mesh.nodes.push_back({mesh.nodes.size() + 1, x + 0.5, y + 0.5, z + 0.5});
      const std::size_t sides[][4] = {{0, 1, 2, 3}, {4, 7, 6, 5}, {0, 4, 5, 1},
                                      {1, 5, 6, 2}, {2, 6, 7, 3}, {3, 7, 4, 0}};
      for (const auto& side : sides) add(7, {side[0], side[1], side[2], side[3], 8});
    } else if (cells == Cells::tetrahedra) {
      // The six ways from corner 0 to corner 6 along edges.
      for (const std::vector<std::size_t>& t : std::vector<std::vector<std::size_t>>{
               {0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6}, {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}})
        add(4, t);
    } else if (cells == Cells::wedges) {
      add(6, {0, 1, 2, 4, 5, 6});
      add(6, {0, 2, 3, 4, 6, 7});
    } else {
      add(5, {0, 1, 2, 3, 4, 5, 6, 7});
    }
  }

  std::vector<std::vector<std::string>> layers_;
  std::map<char, int> groups_;
};

}  // namespace orvmesh::test
