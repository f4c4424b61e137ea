#include <algorithm>

#include "embedded/ofeio_implementation.h"

using orvmesh::embedded::Block;
using orvmesh::embedded::EntryCursor;
namespace column = orvmesh::embedded::column;

namespace {

int readElement(const EntryCursor* entry, int& nodeCount, int nodes[8], int& a, int& b, float& value) {
  if (entry == nullptr) return -1;
  const auto list = entry->elementNodes();
  nodeCount = static_cast<int>(list.size());
  std::fill(std::copy(list.begin(), list.end(), nodes), nodes + 8, 0);
  a = entry->value<int>(column::kFieldA);
  b = entry->value<int>(column::kFieldB);
  value = entry->value<float>(column::kValue);
  return entry->index();
}

int readBad(const EntryCursor* entry, int& elementNo, int& code) {
  if (entry == nullptr) return -1;
  elementNo = entry->value<int>(0);
  code = entry->value<int>(1);
  return entry->index();
}

void copyPoint(const float* from, float& x, float& y, float& z) {
  x = from[0];
  y = from[1];
  z = from[2];
}

int readGeometry(const EntryCursor* entry, int& isPoint, float& x, float& y, float& z, int nodes[4],
                 int& codeA, int& codeB) {
  if (entry == nullptr) return -1;
  std::copy_n(entry->at<int>(0, 4), 4, nodes);
  isPoint = entry->value<int>(1);
  copyPoint(entry->at<float>(2, 3), x, y, z);
  codeA = entry->at<int>(3, 2)[0];
  codeB = entry->at<int>(3, 2)[1];
  return entry->index();
}

int readLayer(EntryCursor* entry, int& matId, int& layerId, const char*& name, int& a, int& b, int& c,
              int& flag) {
  if (entry == nullptr) return -1;
  const int* const values = entry->at<int>(column::kPoolValues, 6);
  matId = values[0];
  layerId = values[1];
  a = values[2];
  b = values[3];
  c = values[4];
  flag = values[5];
  name = entry->name();
  return entry->index();
}

}  // namespace

int OFEIO_Manipulator::readNodeBlockEntry(float& x, float& y, float& z) {
  const auto* entry = implementation_->advance(Block::Nodes);
  if (entry == nullptr) return -1;
  copyPoint(entry->at<float>(0, 3), x, y, z);
  return entry->index();
}

int OFEIO_Manipulator::readElementPlasticBlockEntry(int& nodeCount, int nodes[8], int& a, int& b,
                                                    float& value) {
  return readElement(implementation_->advance(Block::ElementsPlastic), nodeCount, nodes, a, b, value);
}
int OFEIO_Manipulator::readElementMoldBaseBlockEntry(int& nodeCount, int nodes[8], int& a, int& b,
                                                     float& value) {
  return readElement(implementation_->advance(Block::ElementsMoldBase), nodeCount, nodes, a, b, value);
}
int OFEIO_Manipulator::readElementCoolChannelBlockEntry(int& nodeCount, int nodes[8], int& a, int& b,
                                                        float& value) {
  return readElement(implementation_->advance(Block::ElementsCoolChannel), nodeCount, nodes, a, b, value);
}

int OFEIO_Manipulator::readElementSurfaceBlockEntry(int nodes[4], int& interfaceId, int& ownerCode,
                                                    int& contactCode, int& boundaryType, int& elementNo,
                                                    int& tag) {
  const auto* entry = implementation_->advance(Block::ElementSurfaces);
  if (entry == nullptr) return -1;
  std::copy_n(entry->at<int>(column::kSurfaceNodes, 4), 4, nodes);
  interfaceId = entry->value<int>(column::kInterfaceId);
  ownerCode = entry->value<int>(column::kOwnerCode);
  contactCode = entry->value<int>(column::kContactCode);
  boundaryType = entry->value<int>(column::kBoundaryType);
  elementNo = entry->value<int>(column::kElementNo);
  tag = entry->value<int>(column::kTag);
  return entry->index();
}

int OFEIO_Manipulator::readBoundaryConditionBlockEntry(int& entityNo, int& typeCode, float& value) {
  const auto* entry = implementation_->advance(Block::BoundaryConditions);
  if (entry == nullptr) return -1;
  entityNo = entry->value<int>(0);
  typeCode = entry->value<int>(1);
  value = entry->value<float>(2);
  return entry->index();
}

int OFEIO_Manipulator::readBadElementPlasticBlockEntry(int& elementNo, int& code) {
  return readBad(implementation_->advance(Block::BadElementsPlastic), elementNo, code);
}
int OFEIO_Manipulator::readBadElementMoldBaseBlockEntry(int& elementNo, int& code) {
  return readBad(implementation_->advance(Block::BadElementsMoldBase), elementNo, code);
}
int OFEIO_Manipulator::readBadElementCoolChannelBlockEntry(int& elementNo, int& code) {
  return readBad(implementation_->advance(Block::BadElementsCoolChannel), elementNo, code);
}

int OFEIO_Manipulator::readCoolantChannelDiameterBlockEntry(int nodes[8], float& diameter) {
  const auto* entry = implementation_->advance(Block::CoolantChannelDiameters);
  if (entry == nullptr) return -1;
  std::copy_n(entry->at<int>(0, 8), 8, nodes);
  diameter = entry->value<float>(1);
  return entry->index();
}

int OFEIO_Manipulator::readCoolantChannelLineBlockEntry(float& x, float& y, float& z, float& diameter, int& a,
                                                        int& b, int& c, int& d) {
  const auto* entry = implementation_->advance(Block::CoolantChannelLines);
  if (entry == nullptr) return -1;
  const float* const values = entry->at<float>(0, 4);
  const int* const codes = entry->at<int>(1, 4);
  copyPoint(values, x, y, z);
  diameter = values[3];
  a = codes[0];
  b = codes[1];
  c = codes[2];
  d = codes[3];
  return entry->index();
}

int OFEIO_Manipulator::readCoolantChannelLayoutBlockEntry(int& isPoint, float& x, float& y, float& z,
                                                          int& pointType, int& endA, int& endB,
                                                          float& diameterA, float& diameterB, int& code,
                                                          int& beamCode, int& extra, float& v1, float& v2,
                                                          float& v3, float& v4, float& v5, float& v6,
                                                          float& v7, float& v8) {
  const auto* entry = implementation_->advance(Block::CoolantChannelLayout);
  if (entry == nullptr) return -1;
  const float* value = entry->at<float>(0, 13);
  for (float* const out : {&x, &y, &z, &diameterA, &diameterB, &v1, &v2, &v3, &v4, &v5, &v6, &v7, &v8})
    *out = *value++;
  const int* number = entry->at<int>(1, 7);
  for (int* const out : {&isPoint, &pointType, &endA, &endB, &code, &beamCode, &extra}) *out = *number++;
  return entry->index();
}

int OFEIO_Manipulator::readSensorInfoBlockEntry(int& kind, int ids[4], float& x, float& y, float& z) {
  const auto* entry = implementation_->advance(Block::Sensors);
  if (entry == nullptr) return -1;
  std::copy_n(entry->at<int>(0, 4), 4, ids);
  kind = entry->value<int>(1);
  copyPoint(entry->at<float>(2, 3), x, y, z);
  return entry->index();
}

int OFEIO_Manipulator::readMoldMetalBlockEntry(int& isPoint, float& x, float& y, float& z, int nodes[4],
                                               int& codeA, int& codeB) {
  return readGeometry(implementation_->advance(Block::MoldMetal), isPoint, x, y, z, nodes, codeA, codeB);
}
int OFEIO_Manipulator::readCoolingChannelSurfaceEntry(int& isPoint, float& x, float& y, float& z,
                                                      int nodes[4], int& codeA, int& codeB) {
  return readGeometry(implementation_->advance(Block::CoolingChannelSurface), isPoint, x, y, z, nodes, codeA,
                      codeB);
}

int OFEIO_Manipulator::readSurfaceElementBoundaryConditionBlockEntry(int& surfaceNo, int& count,
                                                                     const int*& list) {
  const auto* entry = implementation_->advance(Block::SurfaceBoundaryConditions);
  if (entry == nullptr) return -1;
  surfaceNo = entry->value<int>(column::kPoolValues);
  count = static_cast<int>(entry->list().size());
  list = entry->list().data();
  return entry->index();
}

int OFEIO_Manipulator::readSurfaceElementBoundaryConditionNameBlockEntry(const char*& name, int& type,
                                                                         int& hasDictionary,
                                                                         OFEIO_Dictionary& dictionary) {
  auto* entry = implementation_->advance(Block::SurfaceBoundaryConditionNames);
  if (entry == nullptr) return -1;
  type = entry->at<int>(column::kPoolValues, 2)[0];
  const int size = entry->at<int>(column::kPoolValues, 2)[1];
  hasDictionary = size < 0 ? 0 : 1;
  dictionary = {};
  name = entry->name();
  for (int i = 0; i < size; ++i) {
    const std::string key = entry->text();
    dictionary.AddEntry(key.c_str(), entry->text().c_str());
  }
  return entry->index();
}

int OFEIO_Manipulator::readMoldMetalLayerBlockEntry(int& matId, int& layerId, const char*& name, int& a,
                                                    int& b, int& c, int& flag) {
  return readLayer(implementation_->advance(Block::MoldMetalLayers), matId, layerId, name, a, b, c, flag);
}
int OFEIO_Manipulator::readPartInsertLayerBlockEntry(int& matId, int& layerId, const char*& name, int& a,
                                                     int& b, int& c, int& flag) {
  return readLayer(implementation_->advance(Block::PartInsertLayers), matId, layerId, name, a, b, c, flag);
}

int OFEIO_Manipulator::readCoolantChannelLayerBlockEntry(int& matId, int& layerId, const char*& name) {
  auto* entry = implementation_->advance(Block::CoolantChannelLayers);
  if (entry == nullptr) return -1;
  matId = entry->at<int>(column::kPoolValues, 2)[0];
  layerId = entry->at<int>(column::kPoolValues, 2)[1];
  name = entry->name();
  return entry->index();
}

int OFEIO_Manipulator::readPartingDirectionBlockEntry(float& x, float& y, float& z) {
  const auto* entry = implementation_->advance(Block::PartingDirection);
  if (entry == nullptr) return -1;
  copyPoint(entry->at<float>(0, 3), x, y, z);
  return entry->index();
}
