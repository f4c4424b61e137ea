#include <orvmesh/heat_source.h>

#include <algorithm>
#include <cstdio>
#include <exception>

#include "base/text_number.h"
#include "heatsource/comsol_reader.h"

namespace {

constexpr double kSquareCmPerSquareM = 0.0001;

void printLine(const char* label, double value, const char* unit) {
  std::string line = label;
  orvmesh::appendDefault(line, value);
  std::printf("%s%s\n", line.c_str(), unit);
}

void printRange(double largest, double smallest) {
  printLine("MAX surface resistive losses= ", largest * kSquareCmPerSquareM, " W/cm2");
  printLine("MIN surface resistive losses= ", smallest * kSquareCmPerSquareM, " W/cm2");
}

}  // namespace

COrvCool_Electromagnetic_HeatSource::COrvCool_Electromagnetic_HeatSource() = default;
COrvCool_Electromagnetic_HeatSource::COrvCool_Electromagnetic_HeatSource(
    const COrvCool_Electromagnetic_HeatSource&) = default;
COrvCool_Electromagnetic_HeatSource& COrvCool_Electromagnetic_HeatSource::operator=(
    const COrvCool_Electromagnetic_HeatSource&) = default;
COrvCool_Electromagnetic_HeatSource::~COrvCool_Electromagnetic_HeatSource() = default;

bool COrvCool_Electromagnetic_HeatSource::SetInputFile_Comsol(const char* comsolFile) {
  orvmesh::heatsource::ComsolReport report;
  const std::string path = comsolFile == nullptr ? "" : comsolFile;
  if (!orvmesh::heatsource::readComsolFile(
          comsolFile, m_PointTable, report,
          [](double largest, double smallest) { printRange(largest, smallest); })) {
    std::printf("can not open fileName=%s\n", path.c_str());
    m_ErrorMessage = path + ": cannot be opened";
    return false;
  }
  if (report.blocks == 0 && report.error.empty())
    report.error = "holds no table: no \"% Nodes:\" line with a number of points and a \"% x\" line after it";
  m_ErrorMessage = report.error.empty() ? "" : path + ": " + report.error;
  return true;
}

bool COrvCool_Electromagnetic_HeatSource::SetStep1_InputParmeter(const char* comsolFile, double heatingStart,
                                                                 double heatingEnd) try {
  if (!SetInputFile_Comsol(comsolFile)) return false;
  m_HeatingStart = heatingStart;
  m_HeatingEnd = heatingEnd;
  return true;
} catch (const std::exception&) {
  m_PointTable.SetPointNumber(0);
  m_ErrorMessage = "out of memory";
  return false;
}

bool COrvCool_Electromagnetic_HeatSource::SetStep2_InputMesh(int nNode, double* x, double* y, double* z) try {
  m_ErrorMessage.clear();
  SetMeshInfo(nNode, x, y, z);
  MappingVaulesFromMeshA_2MeshB();
  return true;
} catch (const std::exception&) {
  m_ErrorMessage = "out of memory";
  return false;
}

void COrvCool_Electromagnetic_HeatSource::SetMeshInfo(int nNode, double* x, double* y, double* z) {
  m_NNode = nNode;
  m_X = x;
  m_Y = y;
  m_Z = z;
  m_Output.reset();
  m_Output = std::make_shared<double[]>(static_cast<std::size_t>(std::max(nNode, 0)) + 1);
}

void COrvCool_Electromagnetic_HeatSource::MappingVaulesFromMeshA_2MeshB() {
  m_Mapping.SetMeshA(m_PointTable.GetPointNumber(), m_PointTable.GetX_Link(), m_PointTable.GetY_Link(),
                     m_PointTable.GetZ_Link());
  m_Mapping.SetMeshB(m_NNode, m_X, m_Y, m_Z);
  if (m_Mapping.CreateRelation())
    m_Mapping.MapValue(m_PointTable.GetValue_Link(), m_Output.get());
  else
    m_ErrorMessage = "nothing is mapped: no points, no nodes, or no memory for their relation";
}

double* COrvCool_Electromagnetic_HeatSource::GetOutputHeatSourceValue_Link() { return m_Output.get(); }

void COrvCool_Electromagnetic_HeatSource::GetHeatingTime(double& start, double& end) {
  start = m_HeatingStart;
  end = m_HeatingEnd;
}

bool COrvCool_Electromagnetic_HeatSource::IfActiveElectromagnetic(const double& time) {
  return m_HeatingStart <= time && time <= m_HeatingEnd;
}

const char* COrvCool_Electromagnetic_HeatSource::GetErrorMessage_Link() const {
  return m_ErrorMessage.c_str();
}
