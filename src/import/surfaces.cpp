#include "import/surfaces.h"

#include <algorithm>

#include "base/checked.h"
#include "base/face_tables.h"
#include "base/face_tag.h"
#include "base/failure.h"
#include "import/face_matcher.h"

namespace orvmesh::importing {
namespace {

constexpr std::int32_t kPlain = 0, kAgainstMold = 1, kCommonGate = 4, kMeltInlet = 5, kHotColdGate = 9;
constexpr std::uint32_t kPartTag = 1, kMeltInletTag = 8;
constexpr std::uint32_t kCommonGateBits = 0b011, kHotColdGateBits = 0b110;

// Mold faces come before those of part and channels: readers who let a later surface decide over a node then
// see the part and the channels, not the mold behind them.
constexpr int kInterfaceAt[] = {2, 1, 3, 4};
constexpr std::uint64_t placeOf(int interfaceId) {
  constexpr std::uint64_t kPlaces[] = {0, 1, 0, 2, 3};
  return kPlaces[interfaceId];
}

// A surface to be: its owner's face and what lies behind it.
struct Entry {
  std::uint64_t key;    // place of the interface, owner, face: their order
  std::int32_t behind;  // element, -1 for none
  std::int32_t owner() const { return static_cast<std::int32_t>(key >> 3 & 0xFFFFFFFF); }
  std::uint8_t face() const { return key & 7; }
  int interfaceId() const { return kInterfaceAt[key >> 60]; }
};

// The element on one side of a face with its run and component.
struct Side {
  std::int32_t element = -1;
  const VolumeRun* run = nullptr;
  const Component* component = nullptr;  // null: nothing is there
  bool is(Block block) const { return component != nullptr && blockOf(component->role.kind) == block; }
  bool is(RoleKind kind) const { return component != nullptr && component->role.kind == kind; }
  std::int32_t material() const { return component == nullptr ? 0 : component->fieldA(); }
};

// What surfaces the links give, in writing order. Between hot runner and part there is one only where a gate
// is: it is listed as the hot runner's.
class Listing {
 public:
  explicit Listing(const VolumeMesh& volumes) : volumes_(volumes) {}

  std::vector<Entry> list(const std::vector<FaceLink>& links) {
    entries_.reserve(2 * links.size());
    for (const auto& link : links) {
      const auto first = blockAt(link.first.element);
      const auto second = link.second.element < 0 ? kNothing : blockAt(link.second.element);
      if (first == kPlastic && second == kPlastic) {
        add(1, link.second, link.first);
        continue;
      }
      add(interfaceOf(first, second), link.first, link.second);
      if (second != kNothing) add(interfaceOf(second, first), link.second, link.first);
    }
    std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
    return std::move(entries_);
  }

 private:
  static constexpr int kPlastic = 0, kMold = 1, kChannel = 2, kNothing = 3;
  int blockAt(std::int32_t element) const {
    return element < volumes_.blockEnd(Block::plastic)
               ? kPlastic
               : (element < volumes_.blockEnd(Block::mold) ? kMold : kChannel);
  }
  // 0 where the owner has no surface: a channel's wall is the channel's alone.
  static int interfaceOf(int owner, int behind) {
    constexpr int kInterfaces[3][4] = {{1, 1, 1, 1}, {2, 2, 0, 2}, {4, 3, 4, 4}};
    return kInterfaces[owner][behind];
  }
  void add(int interfaceId, const ElementFace& owner, const ElementFace& behind) {
    if (interfaceId == 0) return;
    entries_.push_back({placeOf(interfaceId) << 60 | static_cast<std::uint64_t>(owner.element) << 3 |
                            static_cast<std::uint64_t>(owner.face),
                        behind.element});
  }

  const VolumeMesh& volumes_;
  std::vector<Entry> entries_;
};

class Deriving {
 public:
  Deriving(const VolumeMesh& volumes, NamedFaces& named) : volumes_(volumes), named_(named) {}

  Surfaces derive(const std::vector<Entry>& entries) {
    result_.faces.reserve(entries.size());
    for (const auto& entry : entries) {
      const auto owner = sideOf(entry.owner());
      const auto behind = entry.behind < 0 ? Side{} : sideOf(entry.behind);
      auto surface = surfaceOf(owner, entry);
      if (fill(surface, owner, behind)) result_.faces.push_back(surface);
    }
    return std::move(result_);
  }

 private:
  // Neighbours in the list are mostly of one run.
  Side sideOf(std::int32_t element) {
    auto& run = lastRun_[element >= volumes_.blockEnd(Block::plastic) ? 1 : 0];
    const auto within = static_cast<std::uint32_t>(element - (run == nullptr ? 0 : run->firstElement));
    if (run == nullptr || within >= run->count) run = &volumes_.runOf(element);
    return {element, run, &volumes_.components[run->component]};
  }

  // A surface of this owner, its codes still to come.
  Surface surfaceOf(const Side& side, const Entry& entry) const {
    Surface surface{};
    const auto corners = static_cast<std::size_t>(cornersOf(side.run->shape));
    const auto k = static_cast<std::size_t>(side.element - side.run->firstElement);
    const auto nodes = volumes_.corners(*side.run).subspan(k * corners, corners);
    const auto& face = facesOf(static_cast<int>(corners))[entry.face()];
    for (int n = 0; n < 4; ++n)
      surface.nodes[n] = nodes[static_cast<std::size_t>(face.nodes[std::min(n, face.nodeCount - 1)])];
    surface.interfaceId = entry.interfaceId();
    surface.element = side.element;
    surface.elementNo = side.element - volumes_.blockFirst(blockOf(side.component->role.kind)) + 1;
    surface.ownerCode = side.material();
    surface.named = RoleKind::ignore;
    return surface;
  }

  // Sets the codes; false where there is no surface after all.
  bool fill(Surface& surface, const Side& owner, const Side& behind) {
    if (owner.is(Block::plastic)) return fillPlastic(surface, owner, behind);
    surface.contactCode = behind.material();
    if (owner.is(Block::channel)) fillChannel(surface, owner);
    return true;
  }

  bool fillPlastic(Surface& surface, const Side& owner, const Side& behind) {
    const bool isGate = owner.is(RoleKind::hotRunner) && makeGate(surface);
    if (behind.is(Block::plastic)) return isGate;
    if (behind.is(Block::mold)) {
      surface.contactCode = behind.material();
      ++result_.partOnMold;
    }
    if (isGate) return true;
    const bool hotRunner = owner.is(RoleKind::hotRunner);
    const bool inlet = hotRunner && behind.component == nullptr;
    surface.boundaryType = inlet ? kMeltInlet : (hotRunner ? kAgainstMold : kPlain);
    surface.tag = inlet ? kMeltInletTag : kPartTag;
    if (inlet) ++result_.meltInlets;
    return true;
  }

  bool makeGate(Surface& surface) {
    const Role* role = named_.find(surface.nodes, [](RoleKind kind) { return isGate(kind); });
    if (role == nullptr) return false;
    const bool common = role->kind == RoleKind::commonGate;
    surface.boundaryType = common ? kCommonGate : kHotColdGate;
    surface.tag = (common ? kCommonGateBits : kHotColdGateBits) | packedGroup(role->number);
    surface.named = role->kind;
    ++result_.gates;
    return true;
  }

  void fillChannel(Surface& surface, const Side& owner) {
    const auto group = owner.component->role.number;
    surface.boundaryType = group;
    surface.tag = coolantTag(group);
    if (surface.interfaceId == 3) return;
    surface.contactCode = 0;
    nameEnd(surface, group);
  }

  void nameEnd(Surface& surface, std::int32_t group) {
    const Role* role = named_.find(surface.nodes, [](RoleKind kind) { return isEnd(kind); });
    if (role == nullptr) return;
    if (role->number != group)
      throw Failure(volumes_.mesh().path, textOf(*role) + " names a face of " +
                                              volumes_.label(surface.element) +
                                              ", which is of channel group " + std::to_string(group));
    surface.named = role->kind;
  }

  const VolumeMesh& volumes_;
  NamedFaces& named_;
  const VolumeRun* lastRun_[2] = {};  // of plastic, of mold and channel
  Surfaces result_;
};

std::vector<ElementBlock> blocksOf(const VolumeMesh& volumes) {
  const auto regions = volumes.regionFirst();
  std::vector<ElementBlock> blocks;
  std::uint64_t faces = 0;
  for (const auto& run : volumes.runs()) {
    const auto region = std::upper_bound(regions.begin(), regions.end(), run.firstElement) - regions.begin();
    blocks.push_back({run.shape, static_cast<int>(region), volumes.corners(run)});
    faces += run.count * facesOf(cornersOf(run.shape)).size();
  }
  if (faces > kMaxElementFaces)
    throw Failure(volumes.mesh().path, "the elements have " + std::to_string(faces) + " faces; at most " +
                                           std::to_string(kMaxElementFaces) + " can be matched");
  return blocks;
}

void refuseShared(const VolumeMesh& volumes, const FaceMatches& matches) {
  if (!matches.twins.empty())
    throw Failure(volumes.mesh().path, volumes.label(matches.twins[0].element) + " and " +
                                           volumes.label(matches.twins[1].element) +
                                           " have the same nodes; two components cannot share elements");
  if (matches.crowd.empty()) return;
  constexpr std::size_t kShown = 4;
  std::string text = "more than two elements share one face:";
  for (std::size_t k = 0; k < std::min(matches.crowd.size(), kShown); ++k)
    text += (k == 0 ? " " : ", ") + volumes.label(matches.crowd[k].element);
  throw Failure(volumes.mesh().path, text);
}

}  // namespace

std::size_t Surfaces::firstAt(std::uint64_t place) const {
  const auto isBefore = [place](const Surface& face) { return placeOf(face.interfaceId) < place; };
  return static_cast<std::size_t>(std::partition_point(faces.begin(), faces.end(), isBefore) - faces.begin());
}
std::size_t Surfaces::begin(int interfaceId) const { return firstAt(placeOf(interfaceId)); }
std::size_t Surfaces::end(int interfaceId) const { return firstAt(placeOf(interfaceId) + 1); }

Surfaces deriveSurfaces(const VolumeMesh& volumes, NamedFaces& named) {
  const auto matches = matchFaces(blocksOf(volumes), volumes.mesh().nodeCount());
  refuseShared(volumes, matches);
  auto surfaces = Deriving(volumes, named).derive(Listing(volumes).list(matches.links));
  surfaces.overlaps = matches.overlaps;
  named.requireAllFound();
  if (surfaces.faces.size() > kMaxEntities)
    throw Failure(volumes.mesh().path, "more than 2147483647 surface elements");
  return surfaces;
}

}  // namespace orvmesh::importing
