#include "dmpio/number_maps.h"

#include <algorithm>

#include "base/failure.h"
#include "dmpio/layout.h"

namespace orvmesh::dmpio {
namespace {

using Numbers = std::span<const std::int32_t>;

int countOf(Numbers numbers) { return static_cast<int>(numbers.size()); }
int countKept(Numbers numbers) { return countOf(numbers) - static_cast<int>(std::ranges::count(numbers, 0)); }

std::int32_t targetOf(Numbers numbers, std::int32_t source) {
  return numbers[static_cast<std::size_t>(source) - 1];
}

int countKeptEnds(const NumberMaps& maps) {
  return static_cast<int>(
      std::ranges::count_if(maps.channelEnds, [&](auto end) { return targetOf(maps.surfaces, end) != 0; }));
}

void setCounts(DMPIO_Manipulator_C& dump, const NumberMaps& maps, bool withSensors) {
  dump.m_HEADER_NNodeMap = countKept(maps.nodes);
  dump.m_HEADER_NElemPlasticMap = countOf(maps.plastic);
  dump.m_HEADER_NElemMoldBaseMap = countOf(maps.moldBase);
  // The block form sizes the channel map by the second of these; the text form has the same header, so that a
  // dump can be converted.
  dump.m_HEADER_NElemCoolChannelMap = dump.m_HEADER_NElemCoolFaceToLineMap = countOf(maps.coolChannel);
  dump.m_HEADER_NElemCoolantEndMap = countKeptEnds(maps);
  dump.m_HEADER_NSensorMap = withSensors ? countOf(maps.sensors) : 0;
}

void writeEntries(DMPIO_Manipulator_C& dump, const NumberMaps& maps, bool withSensors) {
  for (int n = 1; n <= countOf(maps.nodes); ++n)
    if (const int target = targetOf(maps.nodes, n); target != 0) dump.writeNodeMapBlockEntry(n, target);
  for (const int target : maps.plastic) dump.writeElementPlasticMapBlockEntry(target);
  for (const int target : maps.moldBase) dump.writeElementMoldBaseMapBlockEntry(target);
  for (const int target : maps.coolChannel) dump.writeElementCoolChannelMapBlockEntry(target);
  for (const int end : maps.channelEnds)
    if (const int target = targetOf(maps.surfaces, end); target != 0)
      dump.writeElementCoolantEndMapBlockEntry(end, target);
  if (!withSensors) return;
  for (const int target : maps.sensors) dump.writeSensorMapBlockEntry(target);
}

}  // namespace

bool keepsSensorMap(int version) {
  return encodingOf(version) == Encoding::Block || headerValues(Encoding::Text, version) > kSensorCount;
}

void writeNumberMaps(const NumberMaps& maps, const std::string& path, int version) {
  const bool withSensors = keepsSensorMap(version);
  DMPIO_Manipulator_C dump;
  setCounts(dump, maps, withSensors);
  if (dump.beginWriting(path.c_str(), version) != 1) throw Failure(path, dump.getErrorText());
  writeEntries(dump, maps, withSensors);
  if (dump.endWriting() != 1) throw Failure(path, dump.getErrorText());
}

}  // namespace orvmesh::dmpio
