#include "check/variants.h"

#include <algorithm>
#include <limits>

#include "platform/ofe_header.h"

namespace orvmesh::check {
namespace {

constexpr const char* kNames[] = {"channels", "hot-runner",   "stream-line",
                                  "moldbase", "part-inserts", "part-inserts-channels"};
enum : std::size_t { kChannels, kHotRunner, kStreamLine, kMoldBase, kInserts, kInsertsChannels };

constexpr int kAny = std::numeric_limits<int>::max();
constexpr const char* kEveryNode = "every node of the source is written, whatever uses it";
constexpr const char* kCopied = "this field is the source's";
constexpr const char* kSourceNumbers = "surfaces keep the element numbers of the source";
constexpr const char* kContactFaces = "faces between inserts and mold are new part faces without an owner";
constexpr const char* kNewBlocks =
    "fields 4 and 5 count inserts from 5001 to 9999, written are 5002 to 10001";
constexpr const char* kUnsplit =
    "the source asks for unsplit sensors: those of the mold stand among the part's";
constexpr const char* kLayersOfSource = "layers are the source's, their materials renumbered";

constexpr Property kProperties[] = {
    {kChannels, Code::unusedNode, 0, kAny, kEveryNode},
    {kChannels, Code::headerCount, m_HEADER_NMatP, m_HEADER_NMatP, "field 15 is the source's field 17"},
    {kChannels, Code::headerCount, m_HEADER_NMatI, m_HEADER_NMatI, kCopied},
    {kHotRunner, Code::unusedNode, 0, kAny, kEveryNode},
    {kHotRunner, Code::headerCount, m_HEADER_NMatP, m_HEADER_NMatP, kCopied},
    {kStreamLine, Code::unusedNode, 0, kAny, kEveryNode},
    {kStreamLine, Code::headerCount, m_HEADER_NElemM, m_HEADER_NElemC, kCopied},
    {kStreamLine, Code::headerCount, m_HEADER_NMatM, m_HEADER_NMatI, kCopied},
    {kStreamLine, Code::emptyComponent, 2, 3,
     "the surfaces of mold and channels stay, their elements do not"},
    {kMoldBase, Code::unusedNode, 0, kAny, kEveryNode},
    {kMoldBase, Code::surfaceNotOfOwner, 1, 1,
     "channel faces hold their diameter times 100 in place of the owner, part faces the part's element"},
    {kMoldBase, Code::surfaceWithoutOwner, 1, 1, "channel faces of less than 0.01 hold the diameter 0"},
    {kMoldBase, Code::openChannel, 0, kAny, "channel ends stay, channel walls become faces of the mold"},
    {kMoldBase, Code::headerCount, m_HEADER_NMatP, m_HEADER_NMatP, "field 15 is the source's field 16"},
    {kMoldBase, Code::headerCount, m_HEADER_NMatI, m_HEADER_NMatI, "field 18 is the source's field 16"},
    {kMoldBase, Code::emptyComponent, 3, 3, "channel ends stay, channel elements do not"},
    {kMoldBase, Code::emptyComponent, 5, 6, kLayersOfSource},
    {kInserts, Code::unusedNode, 0, kAny, kEveryNode},
    {kInserts, Code::surfaceNotOfOwner, 2, 2, kSourceNumbers},
    {kInserts, Code::surfaceWithoutOwner, 1, 1, kContactFaces},
    {kInserts, Code::headerCount, m_HEADER_NElemP, m_HEADER_NElemM, kNewBlocks},
    {kInserts, Code::headerCount, m_HEADER_NMatP, m_HEADER_NMatI, kCopied},
    {kInserts, Code::sensorOutside, kUnsplitSensors + 1, kUnsplitSensors + 2, kUnsplit},
    {kInsertsChannels, Code::unusedNode, 0, kAny, kEveryNode},
    {kInsertsChannels, Code::surfaceNotOfOwner, 2, 4, kSourceNumbers},
    {kInsertsChannels, Code::surfaceWithoutOwner, 1, 1, kContactFaces},
    {kInsertsChannels, Code::headerCount, m_HEADER_NElemP, m_HEADER_NElemM, kNewBlocks},
    {kInsertsChannels, Code::headerCount, m_HEADER_NMatP, m_HEADER_NMatI,
     "these fields are the source's, field 16 with the heater groups added"},
    {kInsertsChannels, Code::sensorOutside, kUnsplitSensors + 1, kUnsplitSensors + 2, kUnsplit},
    {kInsertsChannels, Code::emptyComponent, 4, 4,
     "heater layers are numbered 10901, 10902, ... without gaps"},
};

}  // namespace

std::span<const char* const> variantNames() { return kNames; }

std::optional<std::size_t> variantAt(std::string_view name) {
  const auto* const at = std::find(std::begin(kNames), std::end(kNames), name);
  if (at == std::end(kNames)) return std::nullopt;
  return static_cast<std::size_t>(at - std::begin(kNames));
}

std::span<const Property> allProperties() { return kProperties; }

const Property* propertyOf(std::size_t variant, const Row& row) {
  const auto* const at = std::find_if(std::begin(kProperties), std::end(kProperties), [&](const Property& p) {
    return p.variant == variant && p.code == row.code && p.firstPart <= row.part && row.part <= p.lastPart;
  });
  return at == std::end(kProperties) ? nullptr : at;
}

std::vector<std::size_t> variantsExplaining(const std::vector<Row>& rows) {
  std::vector<std::size_t> variants;
  for (std::size_t v = 0; v < std::size(kNames); ++v)
    if (std::all_of(rows.begin(), rows.end(), [v](const Row& row) {
          return ruleOf(row.code).severity == Severity::note || propertyOf(v, row) != nullptr;
        }))
      variants.push_back(v);
  return variants;
}

}  // namespace orvmesh::check
