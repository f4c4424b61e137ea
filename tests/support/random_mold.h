#pragma once

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "base/face_tables.h"
#include "platform/ofeio.h"

namespace orvmesh::test {

// A mold of a few cells, each of random kind and cut into random elements: parts, hot runners, inserts, mold,
// channels, heaters and nothing. Components may have nodes of their own where they meet, nodes may be unused,
// faces of all interfaces lie on random element faces. Every element is told by its value, every face by the
// order of its nodes, every sensor by its place.
struct RandomMold {
  struct Element {
    std::vector<int> nodes;
    int a, b;
    float value;
  };
  struct Face {
    std::array<int, 4> nodes;  // as they are written: a triangle repeats its third
    int interfaceId, ownerCode, contactCode, type, element;
    unsigned tag;
  };
  struct Sensor {
    int kind;
    std::array<int, 4> ids;
    float x;
  };

  explicit RandomMold(unsigned seed) : random_(seed) {
    const int size[] = {upTo(4), upTo(3), upTo(3)};
    for (bool& own : ownNodes_) own = upTo(3) == 1;
    for (int cell = 0; cell < size[0] * size[1] * size[2]; ++cell)
      addCell({cell % size[0], cell / size[0] % size[1], cell / size[0] / size[1]});
    for (int list = 0; list < 3; ++list)
      for (std::size_t e = 0; e < elements[list].size(); ++e) addFaces(list, static_cast<int>(e));
    std::shuffle(faces.begin(), faces.end(), random_);
    for (int s = upTo(12); s > 0; --s)
      sensors.push_back({upTo(6), {upTo(30), upTo(30), 0, s}, static_cast<float>(s)});
  }

  void write(const std::string& path) const;

  std::vector<std::array<float, 3>> nodes;
  std::vector<Element> elements[3];  // plastic, mold, channel
  std::vector<Face> faces;
  std::vector<Sensor> sensors;

 private:
  using Place = std::array<int, 3>;

  int upTo(int most) { return 1 + static_cast<int>(random_() % static_cast<unsigned>(most)); }
  int oneOf(std::initializer_list<int> values) {
    return values.begin()[upTo(static_cast<int>(values.size())) - 1];
  }

  // Doubled coordinates, so that the middle of a cell has a place.
  int node(int kind, const Place& place) {
    if (upTo(20) == 1) nodes.push_back({0.25F, 0.25F, static_cast<float>(upTo(4))});
    const auto [at, isNew] = numbers_.try_emplace({ownNodes_[kind] ? kind : 0, place}, 0);
    if (isNew) {
      nodes.push_back(
          {static_cast<float>(place[0]), static_cast<float>(place[1]), static_cast<float>(place[2])});
      at->second = static_cast<int>(nodes.size());
    }
    return at->second;
  }

  void addCell(const Place& cell) {
    static const std::vector<const char*> kCuts[] = {{"01234567"},
                                                     {"012456", "023467"},
                                                     {"0126", "0236", "0376", "0746", "0456", "0516"},
                                                     {"01238", "47658", "04518", "15628", "26738", "37408"}};
    static constexpr Place kCorners[] = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {0, 0, 2},
                                         {2, 0, 2}, {2, 2, 2}, {0, 2, 2}, {1, 1, 1}};
    const int kind = upTo(6) - 1;
    if (kind == 5) return;
    for (const std::string corners : kCuts[upTo(4) - 1]) {
      Element element{{}, 0, 0, static_cast<float>(++serial_)};
      for (const char c : corners) {
        Place place = kCorners[c - '0'];
        for (std::size_t axis = 0; axis < 3; ++axis) place[axis] += 2 * cell[axis];
        element.nodes.push_back(node(kind, place));
      }
      element.b = kind < 2 ? oneOf({1, 200, 201, 250, 299, 300, 301}) : upTo(5);
      element.a = kind < 2    ? upTo(3)
                  : kind == 2 ? oneOf({5002, 6000, 9999, 10000, 10001})
                  : kind == 3 ? oneOf({1, 2, 4999, 5000, 5001, 10002, 10899, 10900, 10901})
                              : upTo(3);
      elements[kind < 2 ? 0 : kind < 4 ? 1 : 2].push_back(element);
    }
  }

  void addFaces(int list, int e) {
    const auto& of = elements[list][static_cast<std::size_t>(e)].nodes;
    for (const LocalFace& local : facesOf(static_cast<int>(of.size()))) {
      if (upTo(2) == 1) continue;
      std::vector<int> around;
      for (int k = 0; k < local.nodeCount; ++k)
        around.push_back(of[static_cast<std::size_t>(local.nodes[k])]);
      std::rotate(around.begin(), around.begin() + upTo(local.nodeCount) - 1, around.end());
      if (upTo(2) == 1) std::reverse(around.begin(), around.end());
      around.resize(4, around[2]);
      Face face{
          {around[0], around[1], around[2], around[3]}, 0, upTo(3), upTo(3) - 1, upTo(15) - 1, e + 1, 0};
      if (!taken_.insert(face.nodes).second) continue;
      face.interfaceId = upTo(12) == 1 ? upTo(7) : list == 0 ? 1 : list == 1 ? upTo(2) + 1 : upTo(2) + 2;
      if (upTo(10) == 1) face.element = upTo(200);
      face.tag = random_() & 0xF0000007U;
      face.tag |= static_cast<unsigned>(oneOf({0, 1, 2, 3, 4, 5, 999, 1000, 0xFFFFF})) << 8;
      faces.push_back(face);
    }
  }

  std::mt19937 random_;
  bool ownNodes_[6] = {};
  std::map<std::pair<int, Place>, int> numbers_;
  std::set<std::array<int, 4>> taken_;
  int serial_ = 0;
  int version_ = oneOf({2008, 2009, 2012, 13001, 14001, 14001, 14002, 14003});
  float factor_ = upTo(2) == 1 ? 1.0F : 0.5F;
  int unsplit_ = upTo(2) - 1;
};

inline void RandomMold::write(const std::string& path) const {
  OFEIO_Manipulator file;
  file[m_HEADER_Version] = version_;
  file.header[2] = unsplit_;
  file[m_HEADER_NMatC] = file[m_HEADER_NMatI] = 1;
  file.header.setFloatField(m_HEADER_ScaleFactor, factor_);
  file.beginWriting(path.c_str(), version_, 0);
  for (const auto& [x, y, z] : nodes) file.writeNodeBlockEntry(x, y, z);
  for (const auto& [list, entry] : {std::pair{0, &OFEIO_Manipulator::writeElementPlasticBlockEntry},
                                    {1, &OFEIO_Manipulator::writeElementMoldBaseBlockEntry},
                                    {2, &OFEIO_Manipulator::writeElementCoolChannelBlockEntry}})
    for (const Element& e : elements[list])
      (file.*entry)(static_cast<int>(e.nodes.size()), e.nodes.data(), e.a, e.b, e.value);
  for (const Face& f : faces)
    file.writeElementSurfaceBlockEntry(f.nodes.data(), f.interfaceId, f.ownerCode, f.contactCode, f.type,
                                       f.element, static_cast<int>(f.tag));
  for (const Sensor& s : sensors) file.writeSensorInfoBlockEntry(s.kind, s.ids.data(), s.x, 0.5F, 0);
  if (file.endWriting() != 1) ADD_FAILURE() << file.errorText();
}

}  // namespace orvmesh::test
