#pragma once

#include <cstddef>

namespace orvmesh::test {

// Asked for each allocation of the program's own objects, operator new in all forms among them; with false
// the allocation fails. Defined by the program that orvmesh_hook_allocations() is called for.
bool grants(std::size_t size);

}  // namespace orvmesh::test
