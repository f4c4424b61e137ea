#include <orvmesh/heat_source.h>

#include <exception>

#include "platform/octree.h"

namespace {

int countOf(int count, const double* x, const double* y, const double* z) {
  return x == nullptr || y == nullptr || z == nullptr ? 0 : count;
}

}  // namespace

COrvToolPoint2Point_MapRelation::COrvToolPoint2Point_MapRelation() = default;
COrvToolPoint2Point_MapRelation::COrvToolPoint2Point_MapRelation(const COrvToolPoint2Point_MapRelation&) =
    default;
COrvToolPoint2Point_MapRelation& COrvToolPoint2Point_MapRelation::operator=(
    const COrvToolPoint2Point_MapRelation&) = default;
COrvToolPoint2Point_MapRelation::~COrvToolPoint2Point_MapRelation() = default;

void COrvToolPoint2Point_MapRelation::SetMeshA(int count, double* x, double* y, double* z) {
  m_NPointA = countOf(count, x, y, z);
  m_XA = x;
  m_YA = y;
  m_ZA = z;
  m_Relation.reset();
}

void COrvToolPoint2Point_MapRelation::SetMeshB(int count, double* x, double* y, double* z) {
  m_NPointB = countOf(count, x, y, z);
  m_XB = x;
  m_YB = y;
  m_ZB = z;
  m_Relation.reset();
}

bool COrvToolPoint2Point_MapRelation::CreateRelation() try {
  if (m_NPointA < 1 || m_NPointB < 1) return false;
  m_Relation.reset();
  const auto relation = std::make_shared<int[]>(static_cast<std::size_t>(m_NPointB) + 1);
  COrv3DOctreeMimic octree;
  octree.SetNodeDimension(m_NPointA);
  for (int i = 1; i <= m_NPointA; ++i) octree.SetNodeData(i, m_XA[i], m_YA[i], m_ZA[i]);
  octree.Init();
  // Not cleared between searches: one that finds nothing repeats the number before it.
  int ids[10] = {};
  double dists[10] = {};
  for (int j = 1; j <= m_NPointB; ++j) {
    octree.Search(m_XB[j], m_YB[j], m_ZB[j], 2, ids, dists);
    relation[j] = ids[1];
  }
  m_Relation = relation;
  return true;
} catch (const std::exception&) {
  return false;
}

int COrvToolPoint2Point_MapRelation::GetMeshBNumber() const { return m_NPointB; }
int* COrvToolPoint2Point_MapRelation::GetRelation_Link() const { return m_Relation.get(); }

COrvTool_Point2PointMapping::COrvTool_Point2PointMapping() = default;
COrvTool_Point2PointMapping::COrvTool_Point2PointMapping(const COrvTool_Point2PointMapping&) = default;
COrvTool_Point2PointMapping& COrvTool_Point2PointMapping::operator=(const COrvTool_Point2PointMapping&) =
    default;
COrvTool_Point2PointMapping::~COrvTool_Point2PointMapping() = default;

void COrvTool_Point2PointMapping::SetMeshA(int count, double* x, double* y, double* z) {
  m_MapRelation.SetMeshA(count, x, y, z);
  m_IfRelationBuilt = 0;
}

void COrvTool_Point2PointMapping::SetMeshB(int count, double* x, double* y, double* z) {
  m_MapRelation.SetMeshB(count, x, y, z);
  m_IfRelationBuilt = 0;
}

bool COrvTool_Point2PointMapping::CreateRelation() {
  m_IfRelationBuilt = 0;
  if (!m_MapRelation.CreateRelation()) return false;
  m_NPointB = m_MapRelation.GetMeshBNumber();
  m_Relation = m_MapRelation.GetRelation_Link();
  m_IfRelationBuilt = 1;
  return true;
}

bool COrvTool_Point2PointMapping::MapValue(const double* valueA, double* valueB) const {
  if (m_IfRelationBuilt == 0 || valueA == nullptr || valueB == nullptr) return false;
  for (int j = 1; j <= m_NPointB; ++j) valueB[j] = valueA[m_Relation[j]];
  return true;
}

int* COrvTool_Point2PointMapping::GetRelation_Link() const {
  return m_IfRelationBuilt == 0 ? nullptr : m_Relation;
}
