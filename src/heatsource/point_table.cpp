#include <orvmesh/heat_source.h>

#include <exception>

COrvTool_PointFileReader::COrvTool_PointFileReader() = default;
COrvTool_PointFileReader::COrvTool_PointFileReader(const COrvTool_PointFileReader&) = default;
COrvTool_PointFileReader& COrvTool_PointFileReader::operator=(const COrvTool_PointFileReader&) = default;
COrvTool_PointFileReader::~COrvTool_PointFileReader() = default;

bool COrvTool_PointFileReader::SetPointNumber(int count) try {
  const auto arrays = {&m_X, &m_Y, &m_Z, &m_Value};
  for (auto* array : arrays) array->reset();
  m_NPoint = 0;
  if (count < 0) return false;
  for (auto* array : arrays) *array = std::make_shared<double[]>(static_cast<std::size_t>(count) + 1);
  m_NPoint = count;
  return true;
} catch (const std::exception&) {
  for (auto* array : {&m_X, &m_Y, &m_Z, &m_Value}) array->reset();
  return false;
}

int COrvTool_PointFileReader::GetPointNumber() const { return m_NPoint; }
double* COrvTool_PointFileReader::GetX_Link() const { return m_X.get(); }
double* COrvTool_PointFileReader::GetY_Link() const { return m_Y.get(); }
double* COrvTool_PointFileReader::GetZ_Link() const { return m_Z.get(); }
double* COrvTool_PointFileReader::GetValue_Link() const { return m_Value.get(); }
