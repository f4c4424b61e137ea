#include "import/face_matcher.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/face_tables.h"

namespace orvmesh::importing {
namespace {

// A face as one element sees it: its smallest node, the two or three others as `key` and `rest`, and in the
// lowest bit of `rest` the sense in which they go round. Two elements that share a face have the same key and
// rest but for that bit.
struct SeenFace {
  std::uint32_t smallest;
  std::uint32_t largest;
  std::uint64_t key;
  std::uint32_t rest;
  bool positive() const { return (rest & 1) != 0; }
};

std::uint64_t packed(std::uint32_t high, std::uint32_t low) { return std::uint64_t{high} << 32 | low; }

inline SeenFace seenTriangle(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
  bool positive = true;
  const auto order = [&positive](std::uint32_t& low, std::uint32_t& high) {
    const bool swap = high < low;
    positive ^= swap;
    const auto kept = low;
    low = swap ? high : low;
    high = swap ? kept : high;
  };
  order(a, b);
  order(b, c);
  order(a, b);
  return {a, c, packed(b, c), positive ? 1U : 0U};
}

inline SeenFace seenQuadrilateral(std::array<std::uint32_t, 4> n) {
  std::size_t start = 0;
  for (std::size_t k = 1; k < 4; ++k)
    if (n[k] < n[start]) start = k;
  const auto next = n[(start + 1) % 4];
  const auto opposite = n[(start + 2) % 4];
  const auto previous = n[(start + 3) % 4];
  const auto far = std::max(next, previous);
  return {n[start], std::max(far, opposite), packed(opposite, std::min(next, previous)),
          far << 1 | (next < previous ? 1U : 0U)};
}

template <int Corners, std::size_t Face>
SeenFace seen(const std::int32_t* nodes) {
  constexpr auto face = facesOf(Corners)[Face];
  const auto at = [nodes](int k) { return static_cast<std::uint32_t>(nodes[k]); };
  if constexpr (face.nodeCount == 3) {
    return seenTriangle(at(face.nodes[0]), at(face.nodes[1]), at(face.nodes[2]));
  } else {
    return seenQuadrilateral({at(face.nodes[0]), at(face.nodes[1]), at(face.nodes[2]), at(face.nodes[3])});
  }
}

// Calls use(face as seen, number of the element face) for the faces of all elements that look(nodes) lets
// pass.
template <int Corners, class Look, class Use>
void eachFaceOf(const ElementBlock& block, std::uint32_t firstFace, Look&& look, Use&& use) {
  constexpr std::uint32_t kFaces = facesOf(Corners).size();
  const auto* end = block.corners.data() + block.corners.size();
  auto number = firstFace;
  for (const auto* nodes = block.corners.data(); nodes != end; nodes += Corners, number += kFaces) {
    if (!look(std::span<const std::int32_t, Corners>(nodes, Corners))) continue;
    [&]<std::size_t... Face>(std::index_sequence<Face...>) {
      (use(seen<Corners, Face>(nodes), number + static_cast<std::uint32_t>(Face)), ...);
    }
    (std::make_index_sequence<kFaces>{});
  }
}

template <class Look, class Use>
void eachFace(const ElementBlock& block, std::uint32_t firstFace, Look&& look, Use&& use) {
  switch (block.shape) {
    case Shape::tetrahedron:
      return eachFaceOf<4>(block, firstFace, look, use);
    case Shape::pyramid:
      return eachFaceOf<5>(block, firstFace, look, use);
    case Shape::wedge:
      return eachFaceOf<6>(block, firstFace, look, use);
    case Shape::hexahedron:
      return eachFaceOf<8>(block, firstFace, look, use);
    default:
      return;
  }
}

std::size_t facesPerElement(Shape shape) { return facesOf(cornersOf(shape)).size(); }

// A pseudo-random number of a face, from all its nodes but the smallest.
std::uint64_t weight(std::uint64_t key, std::uint32_t rest) {
  const auto x = key + std::uint64_t{rest >> 1} * 0xD6E8FEB86659FD93ULL;
  const auto product = static_cast<unsigned __int128>(x ^ 0x9E3779B97F4A7C15ULL) *
                       ((x >> 23 | x << 41) ^ 0xA0761D6478BD642FULL);
  return static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
}
// The same from all its nodes.
std::uint64_t fullWeight(const SeenFace& face) {
  return weight(face.key + face.smallest * 0xC2B2AE3D27D4EB4FULL, face.rest);
}

// Factor of a weight: opposite for the two elements of one region that share the face.
std::uint64_t signFactor(const SeenFace& face, std::uint64_t regionFactor) {
  return face.positive() ? regionFactor : 0 - regionFactor;
}

std::uint64_t regionFactor(int region) {
  constexpr std::uint64_t kFactors[] = {1,
                                        0xE7037ED1A0B428DBULL,
                                        0x8EBC6AF09C88C6E3ULL,
                                        0x589965CC75374CC3ULL,
                                        0x1D8E4E27C47D124FULL,
                                        0xEB44ACCAB455D165ULL,
                                        0xC6A4A7935BD1E995ULL,
                                        0x2127599BF4325C37ULL};
  return kFactors[region];
}

// Adds the signed weights of all faces at their smallest nodes.
void addBySmallest(const ElementBlock& block, std::uint64_t factor, std::vector<std::uint64_t>& sums) {
  eachFace(
      block, 0, [](const auto&) { return true; },
      [&](const SeenFace& face, std::uint32_t) {
        sums[face.smallest] += weight(face.key, face.rest) * signFactor(face, factor);
      });
}

// The same for tetrahedra, whose faces are seen all at once: of sorted nodes a < b < c < d they are bcd, acd,
// abd and abc with alternating signs.
void addTetrahedraBySmallest(const ElementBlock& block, std::uint64_t factor,
                             std::vector<std::uint64_t>& sums) {
  constexpr std::ptrdiff_t kAhead = 48;  // twelve elements on, whose sums are fetched meanwhile
  const auto* end = block.corners.data() + block.corners.size();
  for (const auto* nodes = block.corners.data(); nodes != end; nodes += 4) {
    if (end - nodes > kAhead)
      for (int c = 0; c < 4; ++c) __builtin_prefetch(&sums[static_cast<std::size_t>(nodes[kAhead + c])], 1);
    std::uint32_t n[4];
    std::copy_n(nodes, 4, n);
    auto sign = factor;
    const auto order = [&](int low, int high) {
      const bool swap = n[high] < n[low];
      const auto smaller = swap ? n[high] : n[low];
      n[high] = swap ? n[low] : n[high];
      n[low] = smaller;
      sign = swap ? 0 - sign : sign;
    };
    order(0, 1);
    order(2, 3);
    order(0, 2);
    order(1, 3);
    order(1, 2);
    const auto cd = weight(packed(n[2], n[3]), 0);
    sums[n[1]] += sign * cd;
    sums[n[0]] += sign * (weight(packed(n[1], n[3]), 0) - cd - weight(packed(n[1], n[2]), 0));
  }
}

struct Candidate {
  std::uint64_t key;
  std::uint32_t rest;
  std::uint32_t number;
  bool sameFace(const Candidate& other) const { return key == other.key && (rest ^ other.rest) <= 1; }
  bool operator<(const Candidate& other) const {
    return key != other.key ? key < other.key : rest < other.rest;
  }
};

class Matcher {
 public:
  Matcher(std::span<const ElementBlock> blocks, std::int32_t nodeCount)
      : blocks_(blocks), places_(static_cast<std::size_t>(nodeCount) + 1), open_(places_) {
    std::uint32_t face = 0;
    std::int32_t element = 0;
    for (const auto& block : blocks) {
      firstFace_.push_back(face);
      firstElement_.push_back(element);
      const auto elements = block.corners.size() / static_cast<std::size_t>(cornersOf(block.shape));
      element += static_cast<std::int32_t>(elements);
      face += static_cast<std::uint32_t>(elements * facesPerElement(block.shape));
    }
  }

  FaceMatches match() {
    balance();
    sortIntoBuckets();
    for (std::size_t node = 0; node + 1 < offsets_.size(); ++node)
      matchBucket({candidates_.data() + offsets_[node], candidates_.data() + offsets_[node + 1]});
    return std::move(result_);
  }

 private:
  // The weights of a face with a neighbour of its own region on the other side add up to zero, and so does
  // the sum over all faces with the same smallest node if all are such faces: none of these need be looked
  // at. The same again by largest node leaves few faces apart from the wanted ones. A wanted face can be
  // missed only where 64-bit sums cancel by chance.
  void balance() {
    std::vector<std::uint64_t> sums(places_);
    for (const auto& block : blocks_) {
      const auto add = block.shape == Shape::tetrahedron ? addTetrahedraBySmallest : addBySmallest;
      add(block, regionFactor(block.region), sums);
    }
    flagNonZero(sums, kSmallestOpen);
    std::fill(sums.begin(), sums.end(), 0);
    for (std::size_t k = 0; k < blocks_.size(); ++k)
      eachOpenFace(k, kSmallestOpen,
                   [&, factor = regionFactor(blocks_[k].region)](const SeenFace& face, std::uint32_t) {
                     sums[face.largest] += fullWeight(face) * signFactor(face, factor);
                   });
    flagNonZero(sums, kLargestOpen);
  }
  void flagNonZero(const std::vector<std::uint64_t>& sums, std::uint8_t flag) {
    for (std::size_t node = 0; node < sums.size(); ++node)
      open_[node] = static_cast<std::uint8_t>(open_[node] | (sums[node] != 0 ? flag : 0));
  }

  // The faces of a block whose smallest node is open, of elements among whose nodes all these flags occur.
  template <class Use>
  void eachOpenFace(std::size_t block, std::uint8_t flags, Use&& use) {
    const auto* open = open_.data();
    eachFace(
        blocks_[block], firstFace_[block],
        [open, flags](const auto& nodes) {
          std::uint8_t any = 0;
          for (const auto node : nodes) any |= open[node];
          return (any & flags) == flags;
        },
        [&](const SeenFace& face, std::uint32_t number) {
          if ((open[face.smallest] & kSmallestOpen) != 0) use(face, number);
        });
  }

  // Counting sort by smallest node; offsets_ has the bounds of the buckets.
  void sortIntoBuckets() {
    std::vector<std::uint32_t> smallest;
    std::vector<Candidate> found;
    for (std::size_t k = 0; k < blocks_.size(); ++k)
      eachOpenFace(k, kSmallestOpen | kLargestOpen, [&](const SeenFace& face, std::uint32_t number) {
        if ((open_[face.largest] & kLargestOpen) == 0) return;
        smallest.push_back(face.smallest);
        found.push_back({face.key, face.rest, number});
      });
    offsets_.assign(places_ + 2, 0);
    for (const auto node : smallest) ++offsets_[node + 2];
    for (std::size_t k = 2; k < offsets_.size(); ++k) offsets_[k] += offsets_[k - 1];
    candidates_.resize(found.size());
    for (std::size_t k = 0; k < found.size(); ++k) candidates_[offsets_[smallest[k] + 1]++] = found[k];
    offsets_.pop_back();
  }

  void matchBucket(std::span<Candidate> bucket) {
    std::sort(bucket.begin(), bucket.end());
    for (auto first = bucket.begin(); first != bucket.end();) {
      auto last = first + 1;
      while (last != bucket.end() && last->sameFace(*first)) ++last;
      matchFace({first, last});
      first = last;
    }
  }

  void matchFace(std::span<Candidate> sides) {
    if (sides.size() > 2) return noteCrowd(sides);
    const auto a = place(sides.front().number);
    if (sides.size() == 1) {
      result_.links.push_back({a.side, {-1, 0}});
      return;
    }
    const auto b = place(sides.back().number);
    if (sides[0].rest == sides[1].rest) noteOverlap(a, b);
    if (regionOf(a) < regionOf(b)) result_.links.push_back({a.side, b.side});
    if (regionOf(b) < regionOf(a)) result_.links.push_back({b.side, a.side});
  }

  struct Place {
    std::size_t block;
    ElementFace side;
  };
  Place place(std::uint32_t number) const {
    const auto after = std::upper_bound(firstFace_.begin(), firstFace_.end(), number);
    const auto block = static_cast<std::size_t>(after - firstFace_.begin()) - 1;
    const auto perElement = static_cast<std::uint32_t>(facesPerElement(blocks_[block].shape));
    const auto within = number - firstFace_[block];
    return {block,
            {firstElement_[block] + static_cast<std::int32_t>(within / perElement),
             static_cast<std::int32_t>(within % perElement)}};
  }
  int regionOf(const Place& at) const { return blocks_[at.block].region; }

  std::vector<std::int32_t> sortedNodes(const Place& at) const {
    const auto& block = blocks_[at.block];
    const auto corners = static_cast<std::size_t>(cornersOf(block.shape));
    const auto nodes = block.corners.subspan(
        static_cast<std::size_t>(at.side.element - firstElement_[at.block]) * corners, corners);
    std::vector<std::int32_t> sorted(nodes.begin(), nodes.end());
    std::sort(sorted.begin(), sorted.end());
    return sorted;
  }

  // Of several offences the one with the lowest elements is kept, whatever the order of the search.
  static void keepLowest(std::vector<ElementFace>& kept, std::vector<ElementFace> found) {
    const auto byElement = [](const ElementFace& a, const ElementFace& b) { return a.element < b.element; };
    std::sort(found.begin(), found.end(), byElement);
    if (kept.empty() || byElement(found.front(), kept.front())) kept = std::move(found);
  }

  void noteOverlap(const Place& a, const Place& b) {
    ++result_.overlaps;
    if (sortedNodes(a) == sortedNodes(b)) keepLowest(result_.twins, {a.side, b.side});
  }

  void noteCrowd(std::span<const Candidate> sides) {
    std::vector<ElementFace> found;
    for (const auto& side : sides) found.push_back(place(side.number).side);
    keepLowest(result_.crowd, found);
    constexpr std::size_t kLooked = 16;
    for (std::size_t a = 0; a < std::min(sides.size(), kLooked); ++a)
      for (std::size_t b = 0; b < a; ++b)
        if (sortedNodes(place(sides[a].number)) == sortedNodes(place(sides[b].number)))
          keepLowest(result_.twins, {found[a], found[b]});
  }

  static constexpr std::uint8_t kSmallestOpen = 1, kLargestOpen = 2;

  std::span<const ElementBlock> blocks_;
  std::size_t places_;
  std::vector<std::uint32_t> firstFace_;
  std::vector<std::int32_t> firstElement_;
  std::vector<std::uint8_t> open_;  // by node: whether the sum of weights there is not zero
  std::vector<std::uint32_t> offsets_;
  std::vector<Candidate> candidates_;
  FaceMatches result_;
};

}  // namespace

FaceMatches matchFaces(std::span<const ElementBlock> blocks, std::int32_t nodeCount) {
  return Matcher(blocks, nodeCount).match();
}

}  // namespace orvmesh::importing
