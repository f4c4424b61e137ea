#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace orvmesh::bench {

// What matching the faces of tetrahedra takes at the least, and what it takes with a hash map: the partner of
// each face, no numbers, no rules.

struct BareFace {
  std::uint32_t smallest;
  std::uint64_t others;
};

inline BareFace bareFace(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
  const std::uint32_t low = std::min(a, b);
  const std::uint32_t high = std::max(a, b);
  const std::uint32_t smallest = std::min(low, c);
  const std::uint32_t other = std::max(low, c);
  return {smallest, std::uint64_t{std::min(high, other)} << 32 | std::max(high, other)};
}

template <class Use>
void eachBareFace(std::span<const std::int32_t> tetrahedra, Use&& use) {
  std::uint32_t place = 0;
  for (std::size_t i = 0; i < tetrahedra.size(); i += 4) {
    std::uint32_t n[4];
    for (std::size_t k = 0; k < 4; ++k) n[k] = static_cast<std::uint32_t>(tetrahedra[i + k]);
    use(bareFace(n[0], n[2], n[1]), place++);
    use(bareFace(n[1], n[3], n[0]), place++);
    use(bareFace(n[2], n[3], n[1]), place++);
    use(bareFace(n[0], n[3], n[2]), place++);
  }
}

constexpr std::uint32_t kNoPartner = 0xFFFFFFFF;

// A counting sort by smallest node, then pairs within each bucket.
inline std::vector<std::uint32_t> bareBuckets(std::span<const std::int32_t> tetrahedra,
                                              std::size_t nodeCount) {
  struct Placed {
    std::uint64_t others;
    std::uint32_t place;
  };
  std::vector<std::uint32_t> ends(nodeCount + 2);
  eachBareFace(tetrahedra, [&](const BareFace& face, std::uint32_t) { ++ends[face.smallest + 1]; });
  for (std::size_t k = 1; k < ends.size(); ++k) ends[k] += ends[k - 1];
  std::vector<Placed> faces(tetrahedra.size());
  eachBareFace(tetrahedra, [&](const BareFace& face, std::uint32_t place) {
    faces[ends[face.smallest]++] = {face.others, place};
  });
  std::vector<std::uint32_t> partner(tetrahedra.size(), kNoPartner);
  std::uint32_t first = 0;
  for (const std::uint32_t end : ends) {
    for (std::uint32_t i = first; i < end; ++i)
      for (std::uint32_t k = first; k < i; ++k)
        if (faces[k].others == faces[i].others) {
          partner[faces[i].place] = faces[k].place;
          partner[faces[k].place] = faces[i].place;
          break;
        }
    first = end;
  }
  return partner;
}

inline std::vector<std::uint32_t> hashedFaces(std::span<const std::int32_t> tetrahedra) {
  struct Key {
    std::uint32_t smallest;
    std::uint64_t others;
    bool operator==(const Key&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Key& key) const {
      return (key.others ^ key.smallest * 0x9E3779B97F4A7C15ULL) * 0xD6E8FEB86659FD93ULL >> 7;
    }
  };
  std::unordered_map<Key, std::uint32_t, Hash> open;
  open.reserve(tetrahedra.size() / 2);
  std::vector<std::uint32_t> partner(tetrahedra.size(), kNoPartner);
  eachBareFace(tetrahedra, [&](const BareFace& face, std::uint32_t place) {
    const auto [at, isNew] = open.try_emplace({face.smallest, face.others}, place);
    if (isNew) return;
    partner[place] = at->second;
    partner[at->second] = place;
  });
  return partner;
}

}  // namespace orvmesh::bench
