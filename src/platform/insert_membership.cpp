#include "platform/insert_membership.h"

#include "base/ranges.h"

namespace orvmesh {

InsertMembership::InsertMembership(const MeshModel& model, bool needsElements, bool needsNodes)
    : mold_(model.elemM) {
  if (needsElements) {
    ordinal_ = OneBasedArray<std::int32_t>(mold_.count());
    std::int32_t inserts = 0;
    std::int32_t others = 0;
    for (std::int32_t e = 1; e <= mold_.count(); ++e) ordinal_[e] = holdsElement(e) ? ++inserts : ++others;
  }
  if (needsNodes) {
    nodes_ = OneBasedArray<std::uint8_t>(model.nodes.count());
    for (std::int32_t e = 1; e <= mold_.count(); ++e)
      if (holdsElement(e))
        for (const std::int32_t n : mold_.nodes(e)) nodes_[n] = 1;
  }
}

bool InsertMembership::holdsElement(std::int32_t e) const {
  return mold_.holds(e) && kInsertWritten.holds(mold_.material(e));
}

bool InsertMembership::holdsNode(std::int32_t n) const {
  return 1 <= n && n <= nodes_.count() && nodes_[n] != 0;
}

std::int32_t InsertMembership::ordinal(std::int32_t e) const {
  return 1 <= e && e <= ordinal_.count() ? ordinal_[e] : 0;
}

}  // namespace orvmesh
