#include <algorithm>
#include <limits>

#include "base/checked.h"
#include "embedded/ofe_reader.h"

// How the pieces of a pool lie: element nodes, lists, texts.
namespace orvmesh::embedded {
namespace {

struct Lengths {
  std::int64_t least;
  std::int64_t most;
};

// Where the offsets leave their legal range, in words; empty when they cut the pool from end to end.
std::string wrongOffset(std::span<const std::int64_t> offsets, std::uint64_t poolSize, Lengths lengths) {
  if (offsets.front() != 0) return "offset 0 is " + std::to_string(offsets.front()) + " (legal: 0)";
  for (std::size_t i = 1; i < offsets.size(); ++i) {
    // In unsigned arithmetic no difference overflows; a falling offset shows as a very long piece.
    const std::uint64_t length =
        static_cast<std::uint64_t>(offsets[i]) - static_cast<std::uint64_t>(offsets[i - 1]);
    if (length < static_cast<std::uint64_t>(lengths.least) ||
        length > static_cast<std::uint64_t>(lengths.most))
      return "entry " + std::to_string(i) + " reaches from " + std::to_string(offsets[i - 1]) + " to " +
             std::to_string(offsets[i]) + " (legal: " + std::to_string(lengths.least) + " to " +
             std::to_string(lengths.most) + " values)";
  }
  if (static_cast<std::uint64_t>(offsets.back()) != poolSize)
    return "the last offset is " + std::to_string(offsets.back()) + " (legal: " + std::to_string(poolSize) +
           ")";
  return {};
}

// Elements of one common node count have no offsets.
std::string wrongCommonCount(std::uint64_t poolSize, std::int32_t count) {
  const auto entries = static_cast<std::uint64_t>(count);
  if (entries != 0 && poolSize % entries == 0 && 1 <= poolSize / entries &&
      poolSize / entries <= kMaxElementNodes)
    return {};
  return std::to_string(poolSize) + " node numbers for " + std::to_string(count) +
         " elements without offsets (legal: 1 to 8 each, the same for all)";
}

// Every name has its text, every dictionary entry two.
std::string wrongTextCount(const BlockView& view, std::uint64_t texts) {
  std::uint64_t expected = 0;
  for (std::int32_t i = 0; i < view.count(); ++i) {
    const std::int32_t size = view.at<std::int32_t>(column::kPoolValues, i, 2)[1];
    if (size < -1) return "entry " + std::to_string(i + 1) + ": dictionary size is " + std::to_string(size);
    expected += 1 + 2 * static_cast<std::uint64_t>(std::max(size, 0));
  }
  return texts == expected
             ? std::string{}
             : std::to_string(texts) + " texts where names and dictionaries need " + std::to_string(expected);
}

}  // namespace

bool OfeReader::checkPieces(const BlockLayout& layout, const BlockView& view) {
  const Per per = layout.columns.back().per;
  if (per != Per::Offsets && per != Per::OffsetsIfMixed && per != Per::TextOffsets) return true;
  const auto offsets = view.values<std::int64_t>(layout.columns.size() - 1);
  const bool isText = layout.columns[column::kPool].type == 'C';
  const std::uint64_t poolSize =
      isText ? view.values<char>(column::kPool).size() : view.values<std::int32_t>(column::kPool).size();
  std::string wrong;
  if (per == Per::OffsetsIfMixed)
    wrong = offsets.empty() ? wrongCommonCount(poolSize, view.count())
                            : wrongOffset(offsets, poolSize, {1, kMaxElementNodes});
  else
    wrong = wrongOffset(offsets, poolSize, {0, static_cast<std::int64_t>(kMaxEntities)});
  if (wrong.empty() && per == Per::TextOffsets) wrong = wrongTextCount(view, offsets.size() - 1);
  if (wrong.empty() && isText) {
    const auto text = view.values<char>(column::kPool);
    const auto zero = std::find(text.begin(), text.end(), '\0');
    if (zero != text.end())
      wrong = "a zero byte in a text, at position " + std::to_string(zero - text.begin());
  }
  return wrong.empty() || fail(std::string(layout.name) + ": " + wrong);
}

}  // namespace orvmesh::embedded
