#include "transfer/prepass/inlets.h"

namespace orvmesh::transfer {

std::vector<std::int32_t> numberInlets(const CoolantInletInfo& info) {
  const std::size_t layout = info.layoutInletFlags.size();
  const std::size_t surface = info.surfaceInletFlags.size();
  std::vector<std::int32_t> numbers(layout + surface + 1);
  std::size_t next = 0;
  for (std::size_t i = 0; i < layout; ++i)
    if (info.layoutInletFlags[i] == 0) numbers[++next] = static_cast<std::int32_t>(i + 1);
  // Surface inlets count from the number of layout inlets, so that the first one shares the number of the
  // last layout inlet (quirk 4).
  for (std::size_t j = 0; j < surface; ++j)
    if (info.surfaceInletFlags[j] != 0) numbers[++next] = static_cast<std::int32_t>(layout + j);
  return numbers;
}

}  // namespace orvmesh::transfer
