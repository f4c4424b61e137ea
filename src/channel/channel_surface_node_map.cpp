#include <orvmesh/channel_surface_node_map.h>

#include <exception>
#include <iostream>

#include "channel/surface_node_map.h"

using Class = COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode;
using orvmesh::channel::NodeMapOptions;
using orvmesh::channel::SurfaceNodeMap;

Class::COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode() = default;
Class::~COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode() = default;
Class::COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode(const Class&) = default;
Class& Class::operator=(const Class&) = default;

void Class::SetDebugMode(bool on) { m_Debug = on; }

int Class::SetOFEFile(const char* path) try {
  m_ErrorMessage.clear();
  NodeMapOptions options{{&std::cout, m_Debug ? &std::cout : nullptr}, {}};
  if (m_Debug && path != nullptr) options.stlPath = std::string(path) + orvmesh::channel::kNodeMapDrawing;
  const auto map = std::make_shared<SurfaceNodeMap>();
  const int result = mapSurfaceNodes(path, options, *map, m_ErrorMessage);
  std::cout.flush();
  if (result > 0) m_Map = map;
  return result > 0 ? 1 : result;
} catch (const std::exception&) {
  return 0;
}

int Class::GetCCSurfNodeNumber() const { return m_Map ? m_Map->count() : 0; }

// Both fill nothing (quirk 55).
void Class::GetCCSurfNodeID(int*) const {}
void Class::GetCCSurfNodeIDMapToGlobalNodeIDInMoldbase_Link(int*) const {}

const char* Class::GetErrorMessage_Link() const { return m_ErrorMessage.c_str(); }
