#pragma once

#include <sstream>
#include <string>

#include "platform/ofeio.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace orvmesh::test {

// Writes two or more entries into every block, each value another one.
inline int writeAllBlocks(const std::string& path) {
  OFEIO_Manipulator f;
  for (int i = 0; i < OFEHeader::kWords; ++i) f.header[i] = 1000 + i;
  f.header.setFloatField(m_HEADER_ScaleFactor, 0.5F);
  f.setHeaderSourceString("source");
  f.setHeaderDateTimeString("");
  f.setHeaderUnitString("mm");
  f.setHeaderRemarkString("remark \xC3\xA4");
  if (f.beginWriting(path.c_str(), 13001, 0) != 1) return 0;
  // Not in the order of the table: blocks may come as the caller likes.
  f.writePartingDirectionBlockEntry(0, 0, 1);
  for (int i = 0; i < 9; ++i)
    f.writeNodeBlockEntry(static_cast<float>(i), 0.25F * static_cast<float>(i), -1.5F);
  const int tetrahedron[] = {1, 2, 3, 4};
  const int pyramid[] = {1, 2, 3, 4, 5};
  const int hexahedron[] = {1, 2, 3, 4, 5, 6, 7, 8};
  f.writeElementPlasticBlockEntry(4, tetrahedron, 1, 2, 0.5F);
  f.writeElementPlasticBlockEntry(4, tetrahedron, 3, 4, 1.5F);
  f.writeElementMoldBaseBlockEntry(4, tetrahedron, 5001, 6, 0);
  f.writeElementMoldBaseBlockEntry(8, hexahedron, 7, 8, 2.5F);
  f.writeElementMoldBaseBlockEntry(5, pyramid, 9, 10, 3.5F);
  f.writeElementCoolChannelBlockEntry(8, hexahedron, 2, 11, 4.5F);
  const int triangle[] = {1, 2, 3, 3};
  const int quadrangle[] = {1, 2, 3, 4};
  f.writeElementSurfaceBlockEntry(triangle, 1, 12, 13, 14, 1, -15);
  f.writeElementSurfaceBlockEntry(quadrangle, 4, 17, 18, 19, 1, 0x01020304);
  f.writeBoundaryConditionBlockEntry(5, 3, 0.75F);
  f.writeBoundaryConditionBlockEntry(6, 9, -0.75F);
  f.writeBadElementPlasticBlockEntry(2, 30);
  f.writeBadElementMoldBaseBlockEntry(3, 31);
  f.writeBadElementCoolChannelBlockEntry(1, 32);
  const int nodes[] = {1, 2, 3, 4, 5, 6, 7, 0};
  f.writeCoolantChannelDiameterBlockEntry(nodes, 8.5F);
  f.writeCoolantChannelLineBlockEntry(1, 2, 3, 4, 5, 6, 7, 8);
  f.writeCoolantChannelLineBlockEntry(9, 10, 11, 12, 13, 14, 15, 16);
  f.writeCoolantChannelLayoutBlockEntry(1, 2, 3, 4, 1, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19,
                                        20);
  f.writeCoolantChannelLayoutBlockEntry(1, 2, 3, 5, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  f.writeCoolantChannelLayoutBlockEntry(0, 0, 0, 0, 0, 1, 2, 8, 9.25F, 10, 11, 12, 0.1F, 0.2F, 0.3F, 0.4F,
                                        0.5F, 0.6F, 0.7F, -0.00005F);
  const int ids[] = {1, 2, 3, 4};
  f.writeSensorInfoBlockEntry(6, ids, 1.5F, 2.5F, 3.5F);
  f.writeSensorInfoBlockEntry(1, ids, 4.5F, 5.5F, 6.5F);
  const int none[] = {0, 0, 0, 0};
  f.writeMoldMetalBlockEntry(1, 1, 2, 3, none, 0, 0);
  f.writeMoldMetalBlockEntry(0, 0, 0, 0, quadrangle, 40, 41);
  f.writeCoolingChannelSurfaceEntry(0, 0, 0, 0, triangle, 42, 43);
  const int list[] = {50, 51, 52};
  f.writeSurfaceElementBoundaryConditionBlockEntry(2, 3, list);
  f.writeSurfaceElementBoundaryConditionBlockEntry(1, 0, nullptr);
  OFEIO_Dictionary dictionary;
  dictionary.AddEntry("THICKNESS", "1");
  dictionary.AddEntry("THICKNESS", "2.5");
  dictionary.AddEntry("BRANCH_ID", "-3");
  f.writeSurfaceElementBoundaryConditionNameBlockEntry("gate one", 7, &dictionary);
  f.writeSurfaceElementBoundaryConditionNameBlockEntry("", 8, nullptr);
  const OFEIO_Dictionary empty;
  f.writeSurfaceElementBoundaryConditionNameBlockEntry("e", 9, &empty);
  f.writeMoldMetalLayerBlockEntry(60, 61, "steel", 62, 63, 64, 65);
  f.writeMoldMetalLayerBlockEntry(66, 67, nullptr, 68, 69, 70, 71);
  f.writePartInsertLayerBlockEntry(72, 73, "", 74, 75, 76, 77);
  f.writeCoolantChannelLayerBlockEntry(78, 79, "water");
  f.header[m_HEADER_NBadC] = 77;  // a count set after the beginning
  return f.endWriting();
}

// Every entry of every block as text, a line each, in the reverse of the order in which they were written.
inline std::string readAllBlocks(OFEIO_Manipulator& f) {
  std::ostringstream out;
  int i, j, k, l, m, n, o, v[8];
  float x, y, z, w, a, b, c, d, e, g, h, p, q;
  const char* name;
  const int* list;
  const auto line = [&out](const char* block, const auto&... values) {
    out << block;
    ((out << ' ' << values), ...);
    out << '\n';
  };
  const auto ints = [](const int* values, int count) {
    std::string text;
    for (int t = 0; t < count; ++t) text += (t == 0 ? "" : ",") + std::to_string(values[t]);
    return text;
  };
  while (f.readCoolantChannelLayerBlockEntry(i, j, name) >= 0) line("layerC", i, j, name);
  while (f.readPartInsertLayerBlockEntry(i, j, name, k, l, m, n) >= 0) line("layerP", i, j, name, k, l, m, n);
  while (f.readMoldMetalLayerBlockEntry(i, j, name, k, l, m, n) >= 0) line("layerM", i, j, name, k, l, m, n);
  OFEIO_Dictionary dictionary;
  while (f.readSurfaceElementBoundaryConditionNameBlockEntry(name, i, j, dictionary) >= 0) {
    std::string text;
    for (const auto& [key, value] : dictionary.entries()) text += " " + key + "=" + value;
    line("name", name, i, j, text);
  }
  while (f.readSurfaceElementBoundaryConditionBlockEntry(i, j, list) >= 0) line("list", i, ints(list, j));
  while (f.readCoolingChannelSurfaceEntry(i, x, y, z, v, j, k) >= 0)
    line("ccs", i, x, y, z, ints(v, 4), j, k);
  while (f.readMoldMetalBlockEntry(i, x, y, z, v, j, k) >= 0) line("metal", i, x, y, z, ints(v, 4), j, k);
  while (f.readSensorInfoBlockEntry(i, v, x, y, z) >= 0) line("sensor", i, ints(v, 4), x, y, z);
  while (f.readCoolantChannelLayoutBlockEntry(i, x, y, z, j, k, l, w, a, m, n, o, b, c, d, e, g, h, p, q) >=
         0)
    line("layout", i, x, y, z, j, k, l, w, a, m, n, o, b, c, d, e, g, h, p, q);
  while (f.readCoolantChannelLineBlockEntry(x, y, z, w, i, j, k, l) >= 0)
    line("line", x, y, z, w, i, j, k, l);
  while (f.readCoolantChannelDiameterBlockEntry(v, x) >= 0) line("diameter", ints(v, 8), x);
  while (f.readBadElementCoolChannelBlockEntry(i, j) >= 0) line("badC", i, j);
  while (f.readBadElementMoldBaseBlockEntry(i, j) >= 0) line("badM", i, j);
  while (f.readBadElementPlasticBlockEntry(i, j) >= 0) line("badP", i, j);
  while (f.readBoundaryConditionBlockEntry(i, j, x) >= 0) line("bc", i, j, x);
  while (f.readElementSurfaceBlockEntry(v, i, j, k, l, m, n) >= 0)
    line("surface", ints(v, 4), i, j, k, l, m, n);
  while (f.readElementCoolChannelBlockEntry(i, v, j, k, x) >= 0) line("C", i, ints(v, 8), j, k, x);
  while (f.readElementMoldBaseBlockEntry(i, v, j, k, x) >= 0) line("M", i, ints(v, 8), j, k, x);
  while (f.readElementPlasticBlockEntry(i, v, j, k, x) >= 0) line("P", i, ints(v, 8), j, k, x);
  while (f.readNodeBlockEntry(x, y, z) >= 0) line("node", x, y, z);
  while (f.readPartingDirectionBlockEntry(x, y, z) >= 0) line("parting", x, y, z);
  return out.str();
}

// What the manipulator says against the file, its entries included; empty when it reads them all.
inline std::string entryRefusalOf(const std::string& path) {
  OFEIO_Manipulator file;
  if (file.beginReading(path.c_str(), nullptr, 0) == 1) readAllBlocks(file);
  return file.errorText();
}

inline std::string bytesOfAllBlocks() {
  const TempDir dir;
  return writeAllBlocks(dir / "mesh.ofe") == 1 ? bytesOf(dir / "mesh.ofe") : std::string();
}

}  // namespace orvmesh::test
