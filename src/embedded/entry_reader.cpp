#include "embedded/entry_reader.h"

namespace orvmesh::embedded {

std::span<const std::int32_t> EntryCursor::elementNodes() const {
  const auto entry = static_cast<std::size_t>(next_ - 1);
  const auto nodes = view_.values<std::int32_t>(column::kConnectivity);
  const auto offsets = view_.values<std::int64_t>(column::kOffsets);
  if (offsets.empty()) {
    const auto each = static_cast<std::size_t>(view_.commonNodeCount());
    return nodes.subspan(entry * each, each);
  }
  return nodes.subspan(static_cast<std::size_t>(offsets[entry]),
                       static_cast<std::size_t>(offsets[entry + 1] - offsets[entry]));
}

const char* EntryCursor::name() {
  name_ = text();
  return name_.c_str();
}

EntryCursor* EntryReader::advance(Block block) {
  State& state = states_[static_cast<std::size_t>(block)];
  if (!state.opened) {
    state.opened = true;
    if (const auto view = file_.block(block)) state.cursor = EntryCursor(*view);
  }
  if (state.cursor.atEnd()) return nullptr;
  state.cursor.step();
  return &state.cursor;
}

}  // namespace orvmesh::embedded
