// OFE files in memory: each block operation appends to, or takes from, one column per argument.
#include "platform/ofeio.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <span>

#include "memory_files.h"

using namespace memory_platform;
using namespace orvmesh;

namespace {

constexpr int kVersions[] = {2002, 2008, 2009, 2010, 2011, 2012, 13001, 14001, 14002, 14003};

// What an entry holds in one column. Int and float arrays of a fixed or any length are spans.
bool fits(int) { return true; }
bool fits(float value) { return std::isfinite(value); }
bool fits(const char*) { return true; }
bool fits(std::span<const int>) { return true; }
bool fits(std::span<const float> values) {
  return std::all_of(values.begin(), values.end(), [](float v) { return std::isfinite(v); });
}

void append(Column& column, int value) { column.ints.push_back(value); }
void append(Column& column, float value) { column.floats.push_back(value); }
void append(Column& column, const char* value) { column.texts.emplace_back(value == nullptr ? "" : value); }
template <class T>
void append(Column& column, std::span<const T> values) {
  auto& to = [&]() -> std::vector<T>& {
    if constexpr (std::is_same_v<T, int>)
      return column.ints;
    else
      return column.floats;
  }();
  to.insert(to.end(), values.begin(), values.end());
  column.ends.push_back(static_cast<std::int64_t>(to.size()));
}

struct Piece {  // copied out
  int& count;
  int* to;
};
struct Link {  // pointed at
  int& count;
  const int*& to;
};
std::span<const int> pieceOf(const Column& column, std::size_t i) {
  const auto begin = static_cast<std::size_t>(column.ends[i]);
  return std::span(column.ints).subspan(begin, static_cast<std::size_t>(column.ends[i + 1]) - begin);
}

void extract(const Column& column, std::size_t i, int& out) { out = column.ints[i]; }
void extract(const Column& column, std::size_t i, float& out) { out = column.floats[i]; }
void extract(const Column& column, std::size_t i, const char*& out) { out = column.texts[i].c_str(); }
void extract(const Column& column, std::size_t i, Piece out) {
  const auto piece = pieceOf(column, i);
  out.count = static_cast<int>(std::copy(piece.begin(), piece.end(), out.to) - out.to);
}
void extract(const Column& column, std::size_t i, Link out) {
  out.count = static_cast<int>(pieceOf(column, i).size());
  out.to = pieceOf(column, i).data();
}

}  // namespace

struct OFEIO_Manipulator::Implementation {
  std::shared_ptr<const OfeFile> source;
  PerBlock<std::int32_t> next{};  // entry to be read
  int firstBlock = 0;             // those before it seem empty
  std::unique_ptr<OfeFile> target;
  std::string targetPath;
  int lastBlock = -1;  // being written
  std::string error;
  int version = 0;

  int refuse(const char* what) {
    if (error.empty()) error = what;
    return -1;
  }
  template <class... Values>
  int put(BlockId id, const Values&... values) {
    if (!target) return -1;
    Block& block = target->blocks[id];
    if (lastBlock != id && block.entries > 0) return refuse("a block that was finished gets another entry");
    if (!(fits(values) && ...)) return refuse("a value is no finite number");
    lastBlock = id;
    block.columns.resize(sizeof...(values));
    std::size_t i = 0;
    (append(block.columns[i++], values), ...);
    return block.entries++;
  }
  int putElement(BlockId id, int count, const int* nodes, int a, int b, float value) {
    if (count < 1 || count > 8)
      return target ? refuse("an element has fewer than 1 or more than 8 nodes") : -1;
    return put(id, std::span(nodes, static_cast<std::size_t>(count)), a, b, value);
  }
  template <class... Outs>
  int take(BlockId id, Outs&&... outs) {
    if (!source || id < firstBlock || next[id] >= source->blocks[id].entries) return -1;
    const auto entry = static_cast<std::size_t>(next[id]);
    std::size_t i = 0;
    (extract(source->blocks[id].columns[i++], entry, outs), ...);
    return next[id]++;
  }
};

bool OFEIO_Dictionary::AddEntry(const char* key, const char* value) {
  if (key == nullptr || value == nullptr) return false;
  entries_[key] = value;
  return true;
}

OFEIO_Manipulator::OFEIO_Manipulator() : implementation_(std::make_unique<Implementation>()) {}
OFEIO_Manipulator::~OFEIO_Manipulator() = default;
const std::string& OFEIO_Manipulator::errorText() const { return implementation_->error; }
int OFEIO_Manipulator::fileVersion() const { return implementation_->version; }
bool OFEIO_Manipulator::isWritableVersion(int version) {
  return std::find(std::begin(kVersions), std::end(kVersions), version) != std::end(kVersions);
}
const char* OFEIO_Manipulator::writableVersionsText() { return "2002, 2008 to 2012, 13001, 14001 to 14003"; }

int OFEIO_Manipulator::beginReading(const char* path, const char* logPath, int secondBlockOnly) {
  Implementation& self = *implementation_;
  self.error = self.source || self.target ? "another file is still open" : "";
  if (!self.error.empty()) return 0;
  self.source = find<OfeFile>(path);
  self.next = {};
  self.firstBlock = secondBlockOnly == 1 ? kChannelDiameters : 0;
  header = self.source ? self.source->header : OFEHeader{};
  self.version = self.source ? self.source->version : 0;
  if (self.source) return 1;
  self.error = "there is no such OFE file in memory";
  if (logPath != nullptr) std::ofstream(logPath, std::ios::app) << path << ": " << self.error << '\n';
  return 0;
}

int OFEIO_Manipulator::endReading() {
  const bool wasOpen = implementation_->source != nullptr;
  implementation_->source.reset();
  return wasOpen ? 1 : 0;
}

int OFEIO_Manipulator::beginWriting(const char* path, int version, int) {
  Implementation& self = *implementation_;
  self.error.clear();
  if (!isWritableVersion(version)) return self.refuse("the version cannot be written");
  // A path of the disk that is no file is none here either.
  if (path == nullptr || *path == '\0' || self.source || self.target)
    return self.refuse("cannot be written") + 1;
  self.target = std::make_unique<OfeFile>();
  self.target->version = version;
  self.targetPath = path;
  self.lastBlock = -1;
  return 1;
}

int OFEIO_Manipulator::endWriting() {
  Implementation& self = *implementation_;
  const auto target = std::move(self.target);
  if (!target || !self.error.empty()) return 0;
  target->header = header;
  files()[self.targetPath] = std::make_shared<const OfeFile>(*target);
  return 1;
}

int OFEIO_Manipulator::getFileSecondBlockExsistency(const char* path) {
  const auto file = find<OfeFile>(path);
  if (!file) return -1;
  return std::any_of(file->blocks.begin() + kChannelDiameters, file->blocks.end(),
                     [](const Block& block) { return block.entries > 0; })
             ? 1
             : 0;
}

int OFEIO_Manipulator::getFileFormat(const char* path, int& format) {
  return format = find<OfeFile>(path) ? 1 : 0;
}

// Arguments pass as they stand; arrays of a fixed length become spans.
namespace {
template <class T>
std::span<const T> several(const T* values, std::size_t count) {
  return {values, count};
}
}  // namespace

int OFEIO_Manipulator::writeNodeBlockEntry(float x, float y, float z) {
  const float xyz[] = {x, y, z};
  return implementation_->put(kNodes, several(xyz, 3));
}
int OFEIO_Manipulator::readNodeBlockEntry(float& x, float& y, float& z) {
  Implementation& self = *implementation_;
  if (!self.source || self.firstBlock > kNodes || self.next[kNodes] >= self.source->blocks[kNodes].entries)
    return -1;
  const float* const p =
      &self.source->blocks[kNodes].columns[0].floats[3 * static_cast<std::size_t>(self.next[kNodes])];
  x = p[0], y = p[1], z = p[2];
  return self.next[kNodes]++;
}

// Six pairs of operations whose arguments are the columns, for each kind of element.
#define ELEMENTS(Name, id)                                                                              \
  int OFEIO_Manipulator::write##Name##BlockEntry(int count, const int nodes[], int a, int b, float v) { \
    return implementation_->putElement(id, count, nodes, a, b, v);                                      \
  }                                                                                                     \
  int OFEIO_Manipulator::read##Name##BlockEntry(int& count, int nodes[8], int& a, int& b, float& v) {   \
    return implementation_->take(id, Piece{count, nodes}, a, b, v);                                     \
  }
ELEMENTS(ElementPlastic, kElementsPlastic)
ELEMENTS(ElementMoldBase, kElementsMoldBase)
ELEMENTS(ElementCoolChannel, kElementsCoolChannel)

#define BAD(Name, id)                                                        \
  int OFEIO_Manipulator::write##Name##BlockEntry(int elementNo, int code) {  \
    return implementation_->put(id, elementNo, code);                        \
  }                                                                          \
  int OFEIO_Manipulator::read##Name##BlockEntry(int& elementNo, int& code) { \
    return implementation_->take(id, elementNo, code);                       \
  }
BAD(BadElementPlastic, kBadElementsPlastic)
BAD(BadElementMoldBase, kBadElementsMoldBase)
BAD(BadElementCoolChannel, kBadElementsCoolChannel)

int OFEIO_Manipulator::writeElementSurfaceBlockEntry(const int nodes[4], int interfaceId, int ownerCode,
                                                     int contactCode, int boundaryType, int elementNo,
                                                     int tag) {
  return implementation_->put(kElementSurfaces, several(nodes, 4), interfaceId, ownerCode, contactCode,
                              boundaryType, elementNo, tag);
}
int OFEIO_Manipulator::readElementSurfaceBlockEntry(int nodes[4], int& interfaceId, int& ownerCode,
                                                    int& contactCode, int& boundaryType, int& elementNo,
                                                    int& tag) {
  int four = 0;
  return implementation_->take(kElementSurfaces, Piece{four, nodes}, interfaceId, ownerCode, contactCode,
                               boundaryType, elementNo, tag);
}
int OFEIO_Manipulator::writeBoundaryConditionBlockEntry(int entityNo, int typeCode, float value) {
  return implementation_->put(kBoundaryConditions, entityNo, typeCode, value);
}
int OFEIO_Manipulator::readBoundaryConditionBlockEntry(int& entityNo, int& typeCode, float& value) {
  return implementation_->take(kBoundaryConditions, entityNo, typeCode, value);
}
int OFEIO_Manipulator::writeCoolantChannelDiameterBlockEntry(const int nodes[8], float diameter) {
  return implementation_->put(kChannelDiameters, several(nodes, 8), diameter);
}
int OFEIO_Manipulator::readCoolantChannelDiameterBlockEntry(int nodes[8], float& diameter) {
  int eight = 0;
  return implementation_->take(kChannelDiameters, Piece{eight, nodes}, diameter);
}
int OFEIO_Manipulator::writeCoolantChannelLineBlockEntry(float x, float y, float z, float diameter, int a,
                                                         int b, int c, int d) {
  return implementation_->put(kChannelLines, x, y, z, diameter, a, b, c, d);
}
int OFEIO_Manipulator::readCoolantChannelLineBlockEntry(float& x, float& y, float& z, float& diameter, int& a,
                                                        int& b, int& c, int& d) {
  return implementation_->take(kChannelLines, x, y, z, diameter, a, b, c, d);
}
int OFEIO_Manipulator::writeCoolantChannelLayoutBlockEntry(int isPoint, float x, float y, float z,
                                                           int pointType, int endA, int endB, float diameterA,
                                                           float diameterB, int code, int beamCode, int extra,
                                                           float v1, float v2, float v3, float v4, float v5,
                                                           float v6, float v7, float v8) {
  return implementation_->put(kChannelLayout, isPoint, x, y, z, pointType, endA, endB, diameterA, diameterB,
                              code, beamCode, extra, v1, v2, v3, v4, v5, v6, v7, v8);
}
int OFEIO_Manipulator::readCoolantChannelLayoutBlockEntry(int& isPoint, float& x, float& y, float& z,
                                                          int& pointType, int& endA, int& endB,
                                                          float& diameterA, float& diameterB, int& code,
                                                          int& beamCode, int& extra, float& v1, float& v2,
                                                          float& v3, float& v4, float& v5, float& v6,
                                                          float& v7, float& v8) {
  return implementation_->take(kChannelLayout, isPoint, x, y, z, pointType, endA, endB, diameterA, diameterB,
                               code, beamCode, extra, v1, v2, v3, v4, v5, v6, v7, v8);
}
int OFEIO_Manipulator::writeSensorInfoBlockEntry(int kind, const int ids[4], float x, float y, float z) {
  return implementation_->put(kSensors, kind, several(ids, 4), x, y, z);
}
int OFEIO_Manipulator::readSensorInfoBlockEntry(int& kind, int ids[4], float& x, float& y, float& z) {
  int four = 0;
  return implementation_->take(kSensors, kind, Piece{four, ids}, x, y, z);
}
#define GEOMETRY(Name, id)                                                                              \
  int OFEIO_Manipulator::write##Name(int isPoint, float x, float y, float z, const int nodes[4], int a, \
                                     int b) {                                                           \
    return implementation_->put(id, isPoint, x, y, z, several(nodes, 4), a, b);                         \
  }                                                                                                     \
  int OFEIO_Manipulator::read##Name(int& isPoint, float& x, float& y, float& z, int nodes[4], int& a,   \
                                    int& b) {                                                           \
    int four = 0;                                                                                       \
    return implementation_->take(id, isPoint, x, y, z, Piece{four, nodes}, a, b);                       \
  }
GEOMETRY(MoldMetalBlockEntry, kMoldMetal)
GEOMETRY(CoolingChannelSurfaceEntry, kChannelSurface)

int OFEIO_Manipulator::writeSurfaceElementBoundaryConditionBlockEntry(int surfaceNo, int count,
                                                                      const int list[]) {
  if (count < 0) return implementation_->target ? implementation_->refuse("a list of negative length") : -1;
  return implementation_->put(kSurfaceConditions, surfaceNo, several(list, static_cast<std::size_t>(count)));
}
int OFEIO_Manipulator::readSurfaceElementBoundaryConditionBlockEntry(int& surfaceNo, int& count,
                                                                     const int*& list) {
  return implementation_->take(kSurfaceConditions, surfaceNo, Link{count, list});
}
int OFEIO_Manipulator::writeSurfaceElementBoundaryConditionNameBlockEntry(
    const char* name, int type, const OFEIO_Dictionary* dictionary) {
  const int index = implementation_->put(kSurfaceConditionNames, name, type);
  if (index < 0) return index;
  auto& entry = implementation_->target->blocks[kSurfaceConditionNames].dictionaries.emplace_back();
  if (dictionary != nullptr) entry = *dictionary;
  return index;
}
int OFEIO_Manipulator::readSurfaceElementBoundaryConditionNameBlockEntry(const char*& name, int& type,
                                                                         int& hasDictionary,
                                                                         OFEIO_Dictionary& dictionary) {
  const int index = implementation_->take(kSurfaceConditionNames, name, type);
  if (index < 0) return index;
  const auto& dictionaries = implementation_->source->blocks[kSurfaceConditionNames].dictionaries;
  const auto& entry = dictionaries[static_cast<std::size_t>(index)];
  hasDictionary = entry ? 1 : 0;
  dictionary = entry.value_or(OFEIO_Dictionary{});
  return index;
}
#define LAYERS(Name, id)                                                                                     \
  int OFEIO_Manipulator::write##Name##BlockEntry(int matId, int layerId, const char* name, int a, int b,     \
                                                 int c, int flag) {                                          \
    return implementation_->put(id, matId, layerId, name, a, b, c, flag);                                    \
  }                                                                                                          \
  int OFEIO_Manipulator::read##Name##BlockEntry(int& matId, int& layerId, const char*& name, int& a, int& b, \
                                                int& c, int& flag) {                                         \
    return implementation_->take(id, matId, layerId, name, a, b, c, flag);                                   \
  }
LAYERS(MoldMetalLayer, kMoldMetalLayers)
LAYERS(PartInsertLayer, kPartInsertLayers)

int OFEIO_Manipulator::writeCoolantChannelLayerBlockEntry(int matId, int layerId, const char* name) {
  return implementation_->put(kChannelLayers, matId, layerId, name);
}
int OFEIO_Manipulator::readCoolantChannelLayerBlockEntry(int& matId, int& layerId, const char*& name) {
  return implementation_->take(kChannelLayers, matId, layerId, name);
}
int OFEIO_Manipulator::writePartingDirectionBlockEntry(float x, float y, float z) {
  return implementation_->put(kPartingDirection, x, y, z);
}
int OFEIO_Manipulator::readPartingDirectionBlockEntry(float& x, float& y, float& z) {
  return implementation_->take(kPartingDirection, x, y, z);
}
