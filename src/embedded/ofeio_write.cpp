#include <cmath>

#include "embedded/ofeio_implementation.h"

using orvmesh::embedded::Block;
using orvmesh::embedded::OfeWriter;
namespace column = orvmesh::embedded::column;

namespace {

std::string_view textOf(const char* text) { return text == nullptr ? std::string_view{} : text; }

int writeBad(OfeWriter& writer, Block block, int elementNo, int code) {
  if (!writer.admit(block)) return -1;
  writer.column(0).push(elementNo);
  writer.column(1).push(code);
  return writer.accept();
}

// Lengths and places; a file with an infinite one would be refused by its readers.
template <std::size_t N>
bool pushFinite(OfeWriter& writer, std::size_t column, const float (&values)[N]) {
  for (const float value : values)
    if (!std::isfinite(value))
      return writer.refuse("has a coordinate or length that is no finite number (a wrong scale factor?)");
  writer.column(column).push(values, N);
  return true;
}

int writeGeometry(OfeWriter& writer, Block block, int isPoint, const float (&position)[3], const int nodes[4],
                  const int (&codes)[2]) {
  if (!writer.admit(block)) return -1;
  if (!pushFinite(writer, 2, position)) return -1;
  writer.column(0).push(nodes, 4);
  writer.column(1).push(isPoint);
  writer.column(3).push(codes, 2);
  return writer.accept();
}

template <std::size_t N>
int writeLayer(OfeWriter& writer, Block block, const int (&values)[N], const char* name) {
  if (!writer.admit(block)) return -1;
  writer.column(column::kPoolValues).push(values, N);
  writer.addText(textOf(name));
  return writer.accept();
}

}  // namespace

int OFEIO_Manipulator::writeNodeBlockEntry(float x, float y, float z) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::Nodes)) return -1;
  return pushFinite(writer, 0, {x, y, z}) ? writer.accept() : -1;
}

int OFEIO_Manipulator::writeElementPlasticBlockEntry(int nodeCount, const int nodes[], int a, int b,
                                                     float value) {
  return implementation_->writer.addElement(Block::ElementsPlastic, nodeCount, nodes, a, b, value);
}
int OFEIO_Manipulator::writeElementMoldBaseBlockEntry(int nodeCount, const int nodes[], int a, int b,
                                                      float value) {
  return implementation_->writer.addElement(Block::ElementsMoldBase, nodeCount, nodes, a, b, value);
}
int OFEIO_Manipulator::writeElementCoolChannelBlockEntry(int nodeCount, const int nodes[], int a, int b,
                                                         float value) {
  return implementation_->writer.addElement(Block::ElementsCoolChannel, nodeCount, nodes, a, b, value);
}

int OFEIO_Manipulator::writeElementSurfaceBlockEntry(const int nodes[4], int interfaceId, int ownerCode,
                                                     int contactCode, int boundaryType, int elementNo,
                                                     int tag) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::ElementSurfaces)) return -1;
  writer.column(column::kSurfaceNodes).push(nodes, 4);
  writer.column(column::kInterfaceId).push(interfaceId);
  writer.column(column::kOwnerCode).push(ownerCode);
  writer.column(column::kContactCode).push(contactCode);
  writer.column(column::kBoundaryType).push(boundaryType);
  writer.column(column::kElementNo).push(elementNo);
  writer.column(column::kTag).push(tag);
  return writer.accept();
}

int OFEIO_Manipulator::writeBoundaryConditionBlockEntry(int entityNo, int typeCode, float value) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::BoundaryConditions)) return -1;
  writer.column(0).push(entityNo);
  writer.column(1).push(typeCode);
  writer.column(2).push(value);
  return writer.accept();
}

int OFEIO_Manipulator::writeBadElementPlasticBlockEntry(int elementNo, int code) {
  return writeBad(implementation_->writer, Block::BadElementsPlastic, elementNo, code);
}
int OFEIO_Manipulator::writeBadElementMoldBaseBlockEntry(int elementNo, int code) {
  return writeBad(implementation_->writer, Block::BadElementsMoldBase, elementNo, code);
}
int OFEIO_Manipulator::writeBadElementCoolChannelBlockEntry(int elementNo, int code) {
  return writeBad(implementation_->writer, Block::BadElementsCoolChannel, elementNo, code);
}

int OFEIO_Manipulator::writeCoolantChannelDiameterBlockEntry(const int nodes[8], float diameter) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::CoolantChannelDiameters)) return -1;
  if (!pushFinite(writer, 1, {diameter})) return -1;
  writer.column(0).push(nodes, 8);
  return writer.accept();
}

int OFEIO_Manipulator::writeCoolantChannelLineBlockEntry(float x, float y, float z, float diameter, int a,
                                                         int b, int c, int d) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::CoolantChannelLines)) return -1;
  if (!pushFinite(writer, 0, {x, y, z, diameter})) return -1;
  const int codes[4] = {a, b, c, d};
  writer.column(1).push(codes, 4);
  return writer.accept();
}

int OFEIO_Manipulator::writeCoolantChannelLayoutBlockEntry(int isPoint, float x, float y, float z,
                                                           int pointType, int endA, int endB, float diameterA,
                                                           float diameterB, int code, int beamCode, int extra,
                                                           float v1, float v2, float v3, float v4, float v5,
                                                           float v6, float v7, float v8) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::CoolantChannelLayout)) return -1;
  if (!pushFinite(writer, 0, {x, y, z, diameterA, diameterB, v1, v2, v3, v4, v5, v6, v7, v8})) return -1;
  const int codes[7] = {isPoint, pointType, endA, endB, code, beamCode, extra};
  writer.column(1).push(codes, 7);
  return writer.accept();
}

int OFEIO_Manipulator::writeSensorInfoBlockEntry(int kind, const int ids[4], float x, float y, float z) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::Sensors)) return -1;
  if (!pushFinite(writer, 2, {x, y, z})) return -1;
  writer.column(0).push(ids, 4);
  writer.column(1).push(kind);
  return writer.accept();
}

int OFEIO_Manipulator::writeMoldMetalBlockEntry(int isPoint, float x, float y, float z, const int nodes[4],
                                                int codeA, int codeB) {
  return writeGeometry(implementation_->writer, Block::MoldMetal, isPoint, {x, y, z}, nodes, {codeA, codeB});
}
int OFEIO_Manipulator::writeCoolingChannelSurfaceEntry(int isPoint, float x, float y, float z,
                                                       const int nodes[4], int codeA, int codeB) {
  return writeGeometry(implementation_->writer, Block::CoolingChannelSurface, isPoint, {x, y, z}, nodes,
                       {codeA, codeB});
}

int OFEIO_Manipulator::writeSurfaceElementBoundaryConditionBlockEntry(int surfaceNo, int count,
                                                                      const int list[]) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::SurfaceBoundaryConditions)) return -1;
  if (count < 0 || (count > 0 && list == nullptr)) {
    writer.refuse("has a list of " + std::to_string(count) + " values");
    return -1;
  }
  writer.column(column::kPoolValues).push(surfaceNo);
  writer.addList(list, static_cast<std::size_t>(count));
  return writer.accept();
}

int OFEIO_Manipulator::writeSurfaceElementBoundaryConditionNameBlockEntry(
    const char* name, int type, const OFEIO_Dictionary* dictionary) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::SurfaceBoundaryConditionNames)) return -1;
  const int size = dictionary == nullptr ? -1 : static_cast<int>(dictionary->entries().size());
  writer.column(column::kPoolValues).push(type);
  writer.column(column::kPoolValues).push(size);
  writer.addText(textOf(name));
  if (dictionary != nullptr) {
    for (const auto& [key, value] : dictionary->entries()) {
      writer.addText(key);
      writer.addText(value);
    }
  }
  return writer.accept();
}

int OFEIO_Manipulator::writeMoldMetalLayerBlockEntry(int matId, int layerId, const char* name, int a, int b,
                                                     int c, int flag) {
  return writeLayer(implementation_->writer, Block::MoldMetalLayers, {matId, layerId, a, b, c, flag}, name);
}
int OFEIO_Manipulator::writePartInsertLayerBlockEntry(int matId, int layerId, const char* name, int a, int b,
                                                      int c, int flag) {
  return writeLayer(implementation_->writer, Block::PartInsertLayers, {matId, layerId, a, b, c, flag}, name);
}
int OFEIO_Manipulator::writeCoolantChannelLayerBlockEntry(int matId, int layerId, const char* name) {
  return writeLayer(implementation_->writer, Block::CoolantChannelLayers, {matId, layerId}, name);
}

int OFEIO_Manipulator::writePartingDirectionBlockEntry(float x, float y, float z) {
  OfeWriter& writer = implementation_->writer;
  if (!writer.admit(Block::PartingDirection)) return -1;
  return pushFinite(writer, 0, {x, y, z}) ? writer.accept() : -1;
}
