#include "transfer/ctg/boundaries.h"

#include <algorithm>

#include "transfer/ctg/element_walk.h"

namespace orvmesh::transfer {
namespace {

// Wraps around at the end of the range, where a hostile number would lead.
std::int32_t coolantType(std::int32_t boundaryNumber) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(boundaryNumber) + 2U);
}

// The type that a surface gives to its nodes; counts the surface. Nothing for other interfaces.
bool typeOfSurface(const SurfaceElement& surface, BoundaryCounts& counts, std::int32_t& type) {
  switch (surface.interfaceId) {
    case 1:
      ++counts.part;
      type = kPartBoundary;
      return true;
    case 2:
      ++counts.air;
      type = kAirBoundary;
      return true;
    case 3:
      ++counts.coolant;
      type = coolantType(surface.boundaryType);
      return true;
    default:
      return false;
  }
}

}  // namespace

BoundaryNodes findBoundaryNodes(const SurfaceTable& surfaces, std::int32_t nodeCount) {
  BoundaryNodes nodes;
  nodes.type = OneBasedArray<std::int32_t>(nodeCount);
  for (std::int32_t s = 1; s <= surfaces.count(); ++s) {
    const SurfaceElement surface = surfaces[s];
    std::int32_t type = 0;
    if (!typeOfSurface(surface, nodes.surfaces, type)) continue;
    for (int k = 0; k < surface.nodeCount; ++k) nodes.type[surface.nodes[k]] = type;
  }
  for (std::int32_t n = 1; n <= nodeCount; ++n) {
    const std::int32_t type = nodes.type[n];
    // Coolant boundaries from number 2 on are in no list (quirk 27).
    if (type == kPartBoundary) nodes.part.push_back(n);
    if (type == kAirBoundary) nodes.air.push_back(n);
    if (type == kFirstCoolantBoundary) nodes.coolant.push_back(n);
  }
  return nodes;
}

BoundaryFaces findBoundaryFaces(const ElementTable& elements, const ElementFaces& faces,
                                const OneBasedArray<std::int32_t>& nodeType) {
  BoundaryFaces found;
  const std::int32_t* entry = faces.entries.get();
  const auto add = [&](std::int32_t face, std::int32_t type) {
    found.face.push_back(face);
    found.type.push_back(type);
    found.faces.part += type == kPartBoundary ? 1 : 0;
    found.faces.air += type == kAirBoundary ? 1 : 0;
    found.faces.coolant += type >= kFirstCoolantBoundary ? 1 : 0;
  };
  eachElement(elements, [&]<int N>(const std::int32_t* nodes) {
    const std::int32_t* own = entry;
    entry += kFacesOf<N>;
    if (std::all_of(nodes, nodes + N, [&](std::int32_t n) { return nodeType[n] == 0; })) return;
    eachFaceOf<N>(nodes, [&](const auto& face) {
      const std::int32_t number = *own++;
      // The last typed node decides, and a single one is enough (quirk 28).
      std::int32_t type = 0;
      for (const std::int32_t n : face) type = nodeType[n] != 0 ? nodeType[n] : type;
      if (number > 0 && type != 0) add(number, type);
    });
  });
  return found;
}

}  // namespace orvmesh::transfer
