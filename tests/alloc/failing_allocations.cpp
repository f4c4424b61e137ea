#include "alloc/failing_allocations.h"

#include "support/allocation_hook.h"

namespace orvmesh::test {
namespace {

struct Plan {
  bool armed = false;
  bool stays = false;
  long at = 0;
  long count = 0;
} plan;

}  // namespace

bool grants(std::size_t) {
  if (!plan.armed) return true;
  ++plan.count;
  return plan.count != plan.at && !(plan.stays && plan.count > plan.at);
}

FailingAllocations::FailingAllocations(long n, Mode mode) { plan = {true, mode == Mode::FromThenOn, n, 0}; }
FailingAllocations::~FailingAllocations() { plan.armed = false; }
long FailingAllocations::count() { return plan.count; }

}  // namespace orvmesh::test
