#pragma once

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "platform/cofedata.h"
#include "platform/ofeio.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace orvmesh::test {

// A small mesh that a test fills, changes and writes.
struct Mesh {
  struct Elem {
    std::vector<int> nodes;
    int a, b;
  };
  struct Surface {
    std::array<int, 4> nodes;
    int interfaceId, owner, contact, boundary, elementNo, tag;
  };
  std::vector<std::array<float, 3>> nodes;
  std::vector<Elem> plastic, mold, channel;
  std::vector<Surface> surfaces;
  float scale = 1;
  std::function<void(OFEIO_Manipulator&)> more;  // writes further blocks

  int write(const std::string& path) const {
    OFEIO_Manipulator file;
    file.header[m_HEADER_Version] = 14001;
    file.header.setFloatField(m_HEADER_ScaleFactor, scale);
    EXPECT_EQ(file.beginWriting(path.c_str(), 14001, 0), 1);
    for (const auto& n : nodes) file.writeNodeBlockEntry(n[0], n[1], n[2]);
    const auto count = [](const Elem& e) { return static_cast<int>(e.nodes.size()); };
    for (const Elem& e : plastic) file.writeElementPlasticBlockEntry(count(e), e.nodes.data(), e.a, e.b, 0);
    for (const Elem& e : mold) file.writeElementMoldBaseBlockEntry(count(e), e.nodes.data(), e.a, e.b, 0);
    for (const Elem& e : channel)
      file.writeElementCoolChannelBlockEntry(count(e), e.nodes.data(), e.a, e.b, 0);
    for (const Surface& s : surfaces)
      file.writeElementSurfaceBlockEntry(s.nodes.data(), s.interfaceId, s.owner, s.contact, s.boundary,
                                         s.elementNo, s.tag);
    if (more) more(file);
    return file.endWriting();
  }
};

// Two tetrahedra on one face, in all three components, with a surface on the common face.
inline Mesh twoTetrahedra() {
  Mesh mesh;
  mesh.nodes = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}};
  mesh.plastic = {{{1, 2, 3, 4}, 1, 1}};
  mesh.mold = {{{2, 3, 4, 5}, 1, 0}, {{1, 2, 3, 5}, 10903, 3}};
  mesh.channel = {{{1, 2, 3, 4}, 1, 7}};
  mesh.surfaces = {{{2, 3, 4, 4}, 1, 1, 1, 0, 1, 1}, {{2, 3, 4, 0}, 2, 1, 1, 0, 1, 0}};
  return mesh;
}

// Why the model refuses the file; empty when it reads it. A refused file must leave nothing behind.
inline std::string refusalOf(const std::string& path) {
  COFEData data;
  const int result = data.ReadDataBin(path.c_str(), nullptr, 0, false);
  EXPECT_EQ(result == 1, data.errorText().empty());
  if (result != 1) {
    EXPECT_EQ(data.model().nodes.count(), 0);
    EXPECT_EQ(data.model().elemM.count() + data.model().surfaces.count(), 0);
    EXPECT_TRUE(data.contactFaces().empty());
  }
  return data.errorText();
}

}  // namespace orvmesh::test
