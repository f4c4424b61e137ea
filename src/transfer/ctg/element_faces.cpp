#include "transfer/ctg/element_faces.h"

#include <algorithm>
#include <span>
#include <vector>

#include "transfer/ctg/face_buckets.h"
#include "transfer/ctg/repeated_nodes.h"

namespace orvmesh::transfer {
namespace {

// Above this size a bucket is sorted; a mesh that somebody meshed has no such buckets.
constexpr std::size_t kLargeBucket = 256;

// Gives each face of the bucket, at its place, the place of the first face that is the same.
void matchSmall(std::span<PlacedFace> bucket, std::int32_t* first) {
  auto end = bucket.begin();  // of the different faces seen so far, kept at the front
  for (const PlacedFace face : bucket) {
    auto same = bucket.begin();
    while (same != end && !same->sameFace(face)) ++same;
    if (same == end) *end++ = face;
    first[face.place] = static_cast<std::int32_t>(same->place);
  }
}

void matchLarge(std::span<PlacedFace> bucket, std::int32_t* first) {
  std::sort(bucket.begin(), bucket.end(), [](const PlacedFace& a, const PlacedFace& b) {
    if (a.key != b.key) return a.key < b.key;
    return a.fourth != b.fourth ? a.fourth < b.fourth : a.place < b.place;
  });
  const PlacedFace* same = bucket.data();
  for (const PlacedFace& face : bucket) {
    if (!same->sameFace(face)) same = &face;
    first[face.place] = static_cast<std::int32_t>(same->place);
  }
}

// Turns places of first faces into numbers, in place: a first face has its own place and comes before all
// others.
std::int32_t numberFaces(std::int32_t* entries, std::int32_t entryCount) {
  std::int32_t count = 0;
  for (std::int32_t place = 0; place < entryCount; ++place) {
    const std::int32_t first = entries[place];
    entries[place] = first == place ? ++count : -entries[first];
  }
  return count;
}

template <class Use>
void eachPlacedFace(const ElementTable& elements, Use&& use) {
  std::int32_t place = 0;
  eachElement(elements, [&]<int N>(const std::int32_t* nodes) {
    eachFaceOf<N>(nodes, [&](const auto& face) { use(std::span<const std::int32_t>(face), place++); });
  });
}

// The same where some faces repeat a node; `repeating` has their places, ascending.
std::int32_t numberFaces(const ElementTable& elements, std::int32_t* entries,
                         std::span<const std::uint32_t> repeating) {
  constexpr std::int32_t kRepeats = -1;
  for (const std::uint32_t place : repeating) entries[place] = kRepeats;
  RepeatedNodes repeated;
  eachPlacedFace(elements, [&](std::span<const std::int32_t> face, std::int32_t place) {
    if (entries[place] == kRepeats) repeated.want(face);
  });
  repeated.prepare();
  std::int32_t count = 0;
  eachPlacedFace(elements, [&](std::span<const std::int32_t> face, std::int32_t place) {
    std::int32_t& entry = entries[place];
    const std::int32_t same = entry == kRepeats ? repeated.find(face) : entry == place ? 0 : entries[entry];
    entry = same != 0 ? -same : ++count;
    if (same == 0) repeated.note(face, count);
  });
  return count;
}

std::int32_t countCrowded(std::span<const std::int32_t> entries, std::int32_t faceCount) {
  std::vector<bool> shared(static_cast<std::size_t>(faceCount) + 1);
  std::int32_t crowded = 0;
  for (const std::int32_t entry : entries) {
    if (entry > 0) continue;
    auto isShared = shared[static_cast<std::size_t>(-entry)];
    crowded += isShared ? 1 : 0;
    isShared = true;
  }
  return crowded;
}

}  // namespace

std::uint64_t countElementFaces(const ElementTable& elements) {
  std::uint64_t count = 0;
  eachElement(elements, [&]<int N>(const std::int32_t*) { count += kFacesOf<N>; });
  return count;
}

ElementFaces matchElementFaces(const ElementTable& elements, std::int32_t nodeCount) {
  ElementFaces faces;
  eachElement(elements, [&]<int N>(const std::int32_t*) { faces.skipped += N == 0 ? 1 : 0; });
  const std::uint64_t entryCount = countElementFaces(elements);
  faces.entries = std::make_unique_for_overwrite<std::int32_t[]>(entryCount + 1);
  FaceBuckets buckets(elements, nodeCount);
  for (std::size_t node = 0; node < buckets.count(); ++node) {
    const std::span<PlacedFace> bucket = buckets.bucket(node);
    (bucket.size() > kLargeBucket ? matchLarge : matchSmall)(bucket, faces.entries.get());
  }
  faces.faceCount = buckets.repeating().empty()
                        ? numberFaces(faces.entries.get(), static_cast<std::int32_t>(entryCount))
                        : numberFaces(elements, faces.entries.get(), buckets.repeating());
  faces.collapsed = static_cast<std::int32_t>(buckets.repeating().size());
  faces.crowded = countCrowded({faces.entries.get(), entryCount}, faces.faceCount);
  return faces;
}

}  // namespace orvmesh::transfer
