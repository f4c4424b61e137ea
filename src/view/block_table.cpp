#include "view/block_table.h"

#include <array>
#include <initializer_list>
#include <tuple>
#include <utility>

namespace orvmesh::view {
namespace {

using File = OFEIO_Manipulator;

template <class T>
T take(WordCursor& entry);
template <>
int take<int>(WordCursor& entry) {
  return entry.takeInt();
}
template <>
float take<float>(WordCursor& entry) {
  return entry.takeFloat();
}
template <>
const char* take<const char*>(WordCursor& entry) {
  return entry.takeText().data();
}
// Node lists of four, as surfaces, sensors and mold metal have them.
template <>
const int* take<const int*>(WordCursor& entry) {
  return entry.takeInts(4).data();
}

// What a read operation's parameter is filled into.
template <class T>
struct Place {
  T value{};
  T& parameter() { return value; }
};
template <>
struct Place<int*> {
  std::array<int, 4> value{};
  int* parameter() { return value.data(); }
};

void put(EntryWords& entry, const Place<int>& place) { entry.putInt(place.value); }
void put(EntryWords& entry, const Place<float>& place) { entry.putFloat(place.value); }
void put(EntryWords& entry, const Place<const char*>& place) { entry.putText(place.value); }
void put(EntryWords& entry, const Place<int*>& place) { entry.putInts(place.value); }

// Operations whose parameters are the entry's values one for one.
template <class... Parameters>
int callWrite(File& file, WordCursor& entry, int (File::*operation)(Parameters...)) {
  const std::tuple<Parameters...> values{take<Parameters>(entry)...};
  return std::apply([&](auto... value) { return (file.*operation)(value...); }, values);
}
template <class... Parameters>
bool callRead(File& file, EntryWords& entry, int (File::*operation)(Parameters...)) {
  std::tuple<Place<std::remove_reference_t<Parameters>>...> places;
  const auto read = [&](auto&... place) { return (file.*operation)(place.parameter()...); };
  if (std::apply(read, places) < 0) return false;
  std::apply([&](const auto&... place) { (put(entry, place), ...); }, places);
  return true;
}
template <auto Operation>
int write(File& file, WordCursor& entry) {
  return callWrite(file, entry, Operation);
}
template <auto Operation>
bool read(File& file, EntryWords& entry) {
  return callRead(file, entry, Operation);
}

template <auto Operation>
int writeElement(File& file, WordCursor& entry) {
  const auto nodes = entry.takeList();
  const int a = entry.takeInt();
  const int b = entry.takeInt();
  return (file.*Operation)(static_cast<int>(nodes.size()), nodes.data(), a, b, entry.takeFloat());
}
template <auto Operation>
bool readElement(File& file, EntryWords& entry) {
  int count = 0, nodes[8] = {}, a = 0, b = 0;
  float value = 0;
  if ((file.*Operation)(count, nodes, a, b, value) < 0) return false;
  entry.putList(std::span(nodes, static_cast<std::size_t>(count)));
  entry.putInt(a);
  entry.putInt(b);
  entry.putFloat(value);
  return true;
}

// The file holds eight places; those after the last node are 0.
int writeDiameter(File& file, WordCursor& entry) {
  int nodes[8] = {};
  std::size_t place = 0;
  for (const int node : entry.takeList()) nodes[place++] = node;
  return file.writeCoolantChannelDiameterBlockEntry(nodes, entry.takeFloat());
}
bool readDiameter(File& file, EntryWords& entry) {
  int nodes[8] = {};
  float diameter = 0;
  if (file.readCoolantChannelDiameterBlockEntry(nodes, diameter) < 0) return false;
  std::size_t count = 8;
  while (count > 0 && nodes[count - 1] == 0) --count;
  entry.putList(std::span(nodes, count));
  entry.putFloat(diameter);
  return true;
}

int writeSurfaceCondition(File& file, WordCursor& entry) {
  const int surface = entry.takeInt();
  const auto list = entry.takeList();
  return file.writeSurfaceElementBoundaryConditionBlockEntry(surface, static_cast<int>(list.size()),
                                                             list.data());
}
bool readSurfaceCondition(File& file, EntryWords& entry) {
  int surface = 0, count = 0;
  const int* list = nullptr;
  if (file.readSurfaceElementBoundaryConditionBlockEntry(surface, count, list) < 0) return false;
  entry.putInt(surface);
  entry.putList(std::span(list, static_cast<std::size_t>(count)));
  return true;
}

// The dictionary's words: 0 for none, else 1 + the number of its pairs, then key and value of each.
int writeConditionName(File& file, WordCursor& entry) {
  const char* name = entry.takeText().data();
  const int type = entry.takeInt();
  const int pairs = entry.takeInt() - 1;
  OFEIO_Dictionary dictionary;
  for (int i = 0; i < pairs; ++i) {
    const char* key = entry.takeText().data();
    dictionary.AddEntry(key, entry.takeText().data());
  }
  return file.writeSurfaceElementBoundaryConditionNameBlockEntry(name, type,
                                                                 pairs < 0 ? nullptr : &dictionary);
}
bool readConditionName(File& file, EntryWords& entry) {
  const char* name = nullptr;
  int type = 0, hasDictionary = 0;
  OFEIO_Dictionary dictionary;
  if (file.readSurfaceElementBoundaryConditionNameBlockEntry(name, type, hasDictionary, dictionary) < 0)
    return false;
  entry.putText(name);
  entry.putInt(type);
  entry.putInt(hasDictionary == 0 ? 0 : 1 + static_cast<int>(dictionary.entries().size()));
  if (hasDictionary == 0) return true;
  for (const auto& [key, value] : dictionary.entries()) {
    entry.putText(key);
    entry.putText(value);
  }
  return true;
}

using enum ValueType;

constexpr unsigned kAnyLength = 0;
constexpr unsigned oneOf(std::initializer_list<int> lengths) {
  unsigned bits = 0;
  for (const int n : lengths) bits |= 1U << n;
  return bits;
}
constexpr Argument list(const char* key, ValueType type, unsigned lengths, Legal legal = Legal::Any) {
  return {key, type, legal, true, lengths};
}

constexpr Argument kNodeList = list("nodes", Int, oneOf({4, 5, 6, 8}), Legal::Node);
constexpr Argument kPlastic[] = {kNodeList, {"a", Int}, {"b", Int}, {"value", Float}};
constexpr Argument kMold[] = {kNodeList, {"a", Int, Legal::MoldMaterial}, {"b", Int}, {"value", Float}};
constexpr Argument kChannel[] = {kNodeList, {"a", Int}, {"b", Int, Legal::ChannelGroup}, {"value", Float}};
constexpr Argument kSurface[] = {list("nodes", Int, oneOf({4}), Legal::SurfaceNodes),
                                 {"interfaceId", Int},
                                 {"ownerCode", Int},
                                 {"contactCode", Int},
                                 {"boundaryType", Int},
                                 {"elementNo", Int},
                                 {"tag", Tag}};
constexpr Argument kCondition[] = {{"entityNo", Int}, {"type", Int}, {"value", Float}};
constexpr Argument kDiameter[] = {list("nodes", Int, oneOf({1, 2, 3, 4, 5, 6, 7, 8}), Legal::Node),
                                  {"diameter", Float}};
constexpr Argument kSensor[] = {
    {"type", Int, Legal::SensorKind}, list("ids", Int, oneOf({4})), list("position", Float, oneOf({3}))};
constexpr Argument kGeometry[] = {{"isPoint", Int},
                                  list("position", Float, oneOf({3})),
                                  list("nodes", Int, oneOf({4})),
                                  {"codeA", Int},
                                  {"codeB", Int}};
constexpr Argument kSurfaceCondition[] = {{"surfaceNo", Int, Legal::Surface}, list("list", Int, kAnyLength)};
constexpr Argument kConditionName[] = {{"name", Text}, {"type", Int}, {"dictionary", Dictionary}};

// clang-format off
constexpr std::array<BlockShape, kBlockCount> kBlocks{{
    {"nodes", read<&File::readNodeBlockEntry>, write<&File::writeNodeBlockEntry>, "fff"},
    {"elementsPlastic", readElement<&File::readElementPlasticBlockEntry>,
     writeElement<&File::writeElementPlasticBlockEntry>, nullptr, kPlastic},
    {"elementsMoldBase", readElement<&File::readElementMoldBaseBlockEntry>,
     writeElement<&File::writeElementMoldBaseBlockEntry>, nullptr, kMold},
    {"elementsCoolChannel", readElement<&File::readElementCoolChannelBlockEntry>,
     writeElement<&File::writeElementCoolChannelBlockEntry>, nullptr, kChannel},
    {"elementSurfaces", read<&File::readElementSurfaceBlockEntry>, write<&File::writeElementSurfaceBlockEntry>,
     nullptr, kSurface},
    {"boundaryConditions", read<&File::readBoundaryConditionBlockEntry>,
     write<&File::writeBoundaryConditionBlockEntry>, nullptr, kCondition},
    {"badElementsPlastic", read<&File::readBadElementPlasticBlockEntry>,
     write<&File::writeBadElementPlasticBlockEntry>, "ii"},
    {"badElementsMoldBase", read<&File::readBadElementMoldBaseBlockEntry>,
     write<&File::writeBadElementMoldBaseBlockEntry>, "ii"},
    {"badElementsCoolChannel", read<&File::readBadElementCoolChannelBlockEntry>,
     write<&File::writeBadElementCoolChannelBlockEntry>, "ii"},
    {"coolantChannelDiameters", readDiameter, writeDiameter, nullptr, kDiameter},
    {"coolantChannelLines", read<&File::readCoolantChannelLineBlockEntry>,
     write<&File::writeCoolantChannelLineBlockEntry>, "ffffiiii"},
    {"coolantChannelLayout", read<&File::readCoolantChannelLayoutBlockEntry>,
     write<&File::writeCoolantChannelLayoutBlockEntry>, "ifffiiiffiiiffffffff"},
    {"sensors", read<&File::readSensorInfoBlockEntry>, write<&File::writeSensorInfoBlockEntry>, nullptr, kSensor},
    {"moldMetal", read<&File::readMoldMetalBlockEntry>, write<&File::writeMoldMetalBlockEntry>,
     nullptr, kGeometry},
    {"coolingChannelSurface", read<&File::readCoolingChannelSurfaceEntry>,
     write<&File::writeCoolingChannelSurfaceEntry>, nullptr, kGeometry},
    {"surfaceBoundaryConditions", readSurfaceCondition, writeSurfaceCondition, nullptr, kSurfaceCondition},
    {"surfaceBoundaryConditionNames", readConditionName, writeConditionName, nullptr, kConditionName},
    {"moldMetalLayers", read<&File::readMoldMetalLayerBlockEntry>, write<&File::writeMoldMetalLayerBlockEntry>,
     "iitiiii"},
    {"partInsertLayers", read<&File::readPartInsertLayerBlockEntry>,
     write<&File::writePartInsertLayerBlockEntry>, "iitiiii"},
    {"coolantChannelLayers", read<&File::readCoolantChannelLayerBlockEntry>,
     write<&File::writeCoolantChannelLayerBlockEntry>, "iit"},
    {"partingDirection", read<&File::readPartingDirectionBlockEntry>,
     write<&File::writePartingDirectionBlockEntry>, "fff", {}, true},
}};
// clang-format on

}  // namespace

const BlockShape& blockShape(int block) { return kBlocks[static_cast<std::size_t>(block)]; }

}  // namespace orvmesh::view
