#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace orvmesh {

// Faces, edges and elements that several things share, found by node buckets: whatever is to be compared lies
// in the bucket of its smallest node, under a key made of the others.

struct BucketEntry {
  std::uint64_t key;
  std::uint32_t rest;
  std::uint32_t item;  // whose it is
  bool sameAs(const BucketEntry& other) const { return key == other.key && rest == other.rest; }
  bool operator<(const BucketEntry& other) const {
    if (key != other.key) return key < other.key;
    return rest != other.rest ? rest < other.rest : item < other.item;
  }
};

// A face whichever way round it is seen and wherever its node list starts: bucket, key and rest are the same
// for all that see it. A bucket of 0 is no face.
struct FaceKey {
  std::uint32_t bucket = 0;
  std::uint32_t rest = 0;
  std::uint64_t key = 0;
  bool operator==(const FaceKey&) const = default;
};

inline FaceKey triangleKey(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
  if (b < a) std::swap(a, b);
  if (c < b) std::swap(b, c);
  if (b < a) std::swap(a, b);
  if (a == b || b == c) return {};
  return {a, 0, std::uint64_t{b} << 32 | c};
}

// A node that stands twice makes a triangle, two such make no face.
inline FaceKey quadrilateralKey(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
  if (a == b || a == d) return triangleKey(b, c, d);
  if (c == b || c == d) return triangleKey(a, b, d);
  if (a == c || b == d) return {};
  if (std::min(b, d) < std::min(a, c)) {
    std::swap(a, b);
    std::swap(c, d);
  }
  if (c < a) std::swap(a, c);
  if (d < b) std::swap(b, d);
  return {a, d, std::uint64_t{c} << 32 | b};
}

// The first three or four of the nodes; numbers count from 1.
inline FaceKey faceKey(const std::int32_t* nodes, int count) {
  const auto at = [nodes](int k) { return static_cast<std::uint32_t>(nodes[k]); };
  return count == 3 ? triangleKey(at(0), at(1), at(2)) : quadrilateralKey(at(0), at(1), at(2), at(3));
}

// Calls visit(bucket, entries) for every set of entries that have bucket, key and rest in common, by bucket,
// items ascending. each(use) calls use(bucket, entry) for all entries, buckets 1..lastBucket; it is asked
// several times and must tell the same each time. The entries are kept in memory a quarter at a time, but for
// few of them.
template <class Each, class Visit>
void forEachGroup(std::int32_t lastBucket, Each each, Visit visit, std::size_t few = std::size_t{1} << 20) {
  const auto buckets = static_cast<std::size_t>(lastBucket) + 1;
  std::vector<std::size_t> places(buckets + 1);
  std::size_t total = 0;
  each([&](std::uint32_t bucket, const BucketEntry&) {
    ++places[bucket + 1];
    ++total;
  });
  const std::size_t most = std::max(few, total / 4);

  std::vector<BucketEntry> entries;
  for (std::size_t first = 1; first < buckets;) {
    // places[b + 1]: how many bucket b has; then where its next entry goes; at last where it ends.
    std::size_t end = first;
    std::size_t size = 0;
    while (end < buckets && (end == first || size + places[end + 1] <= most)) {
      const std::size_t count = places[end + 1];
      places[end + 1] = size;
      size += count;
      ++end;
    }
    entries.resize(size);
    each([&](std::uint32_t bucket, const BucketEntry& entry) {
      if (first <= bucket && bucket < end) entries[places[bucket + 1]++] = entry;
    });
    std::size_t begin = 0;
    for (std::size_t bucket = first; bucket < end; ++bucket) {
      const auto stop = places[bucket + 1];
      std::sort(entries.data() + begin, entries.data() + stop);
      while (begin < stop) {
        std::size_t next = begin + 1;
        while (next < stop && entries[next].sameAs(entries[begin])) ++next;
        visit(static_cast<std::uint32_t>(bucket),
              std::span<const BucketEntry>(&entries[begin], next - begin));
        begin = next;
      }
    }
    first = end;
  }
}

}  // namespace orvmesh
