#include <orvmesh/write_mesh_data_as_ofe.h>

#include <algorithm>
#include <exception>
#include <iostream>
#include <numeric>

#include "platform/ofeio.h"

namespace {

constexpr int kFileVersion = 2002;
constexpr int kCubeNodes = 8;
constexpr float kCube[kCubeNodes][3] = {{1, -1, -1}, {1, 1, -1}, {-1, 1, -1}, {-1, -1, -1},
                                        {1, -1, 1},  {1, 1, 1},  {-1, 1, 1},  {-1, -1, 1}};

template <class To, class From>
std::shared_ptr<To[]> copyOf(const From* values, int count) {
  std::shared_ptr<To[]> copy(new To[static_cast<std::size_t>(count) + 1]());
  if (count > 0)
    std::transform(values + 1, values + 1 + count, copy.get() + 1,
                   [](From value) { return static_cast<To>(value); });
  return copy;
}

void setWords(OFEHeader& header, int first, std::initializer_list<int> values) {
  std::copy(values.begin(), values.end(), header.words.begin() + first);
}
void setZero(OFEHeader& header, int first, int last) {
  std::fill(header.words.begin() + first, header.words.begin() + last + 1, 0);
}

}  // namespace

CWriteMeshDataAsOFE::CWriteMeshDataAsOFE() = default;
CWriteMeshDataAsOFE::~CWriteMeshDataAsOFE() = default;
CWriteMeshDataAsOFE::CWriteMeshDataAsOFE(const CWriteMeshDataAsOFE&) = default;
CWriteMeshDataAsOFE& CWriteMeshDataAsOFE::operator=(const CWriteMeshDataAsOFE&) = default;

template <class T, class Count>
void CWriteMeshDataAsOFE::CopyMesh(int nNode, const T* x, const T* y, const T* z, int nElem,
                                   const Count* nodeCount, int* material) {
  m_NNode = m_NElem = 0;
  for (auto* axis : {&m_X, &m_Y, &m_Z}) axis->reset();
  const bool hasNodes = nNode == 0 || (nNode > 0 && x != nullptr && y != nullptr && z != nullptr);
  const bool hasElements =
      nElem == 0 || (nElem > 0 && nodeCount != nullptr && (m_ElemNodes != nullptr || m_FlatNodes != nullptr));
  if (!hasNodes || !hasElements) return;
  try {
    m_ElemNodeCount = copyOf<int>(nodeCount, nElem);
    m_Y = copyOf<float>(y, nNode);
    m_Z = copyOf<float>(z, nNode);
    m_X = copyOf<float>(x, nNode);
  } catch (const std::exception&) {
    return;
  }
  m_Material = material;
  m_NNode = nNode;
  m_NElem = nElem;
}

void CWriteMeshDataAsOFE::SetMesh(int nNode, double* x, double* y, double* z, int nElem, int* nodeCount,
                                  int** elemNodes, int* material) {
  m_ElemNodes = elemNodes;
  m_FlatNodes = nullptr;
  CopyMesh(nNode, x, y, z, nElem, nodeCount, material);
}

void CWriteMeshDataAsOFE::SetMesh(int nNode, float* x, float* y, float* z, int nElem,
                                  unsigned char* nodeCount, int* flatNodes, int* material) {
  m_ElemNodes = nullptr;
  m_FlatNodes = flatNodes;
  CopyMesh(nNode, x, y, z, nElem, nodeCount, material);
}

int CWriteMeshDataAsOFE::WriteOFE(const char* path) {
  bool done = false;
  try {
    m_ErrorMessage.clear();
    CreateWriter();
    done = WriteSteps(path);
    if (done) WriteOFE_EOF();
    if (const std::string& error = m_pWriter->errorText(); !error.empty()) m_ErrorMessage = error;
    if (!m_ErrorMessage.empty() && path != nullptr) m_ErrorMessage = path + (": " + m_ErrorMessage);
  } catch (const std::exception&) {
    done = false;
  }
  DestroyWriter();
  return done ? 0 : -1;
}

bool CWriteMeshDataAsOFE::WriteSteps(const char* path) {
  if (!m_X && !m_TestCube) {
    m_ErrorMessage = "no mesh was set";
    return false;
  }
  return SetHeaderData_to_Writer() == 0 && WriteOFE_Header(path) == 0 && WriteOFE_Node() == 0 &&
         WriteOFE_ElementPlastic() == 0;
}

void CWriteMeshDataAsOFE::CreateWriter() {
  if (m_pWriter) DestroyWriter();
  m_pWriter = std::make_shared<OFEIO_Manipulator>();
}

// Takes the coordinates along: a mesh is written once (quirk 51).
void CWriteMeshDataAsOFE::DestroyWriter() {
  m_pWriter.reset();
  for (auto* axis : {&m_X, &m_Y, &m_Z}) axis->reset();
}

// Words 22 and 35 and those from 58 on keep the writer's values.
int CWriteMeshDataAsOFE::SetHeaderData_to_Writer() {
  if (!m_pWriter) return -1;
  OFEHeader& header = m_pWriter->header;
  setWords(header, m_HEADER_Version, {2009, 1003, 1, 0});
  header[m_HEADER_NElemP] = m_TestCube ? 1 : m_NElem;
  setZero(header, 5, 11);
  header[m_HEADER_NNode] = m_TestCube ? kCubeNodes : m_NNode;
  setZero(header, 13, 14);
  header[m_HEADER_NMatP] = m_NMaterial;
  setZero(header, 16, 18);
  setZero(header, 19, 21);
  setZero(header, 23, 28);
  // A tabulator in the source, "cm" as the date: required as they stand (quirk 52).
  m_pWriter->setHeaderSourceString("d:\temp");
  m_pWriter->setHeaderDateTimeString("cm");
  m_pWriter->setHeaderUnitString("mm");
  header.setFloatField(m_HEADER_ScaleFactor, 1.0F);
  setZero(header, 30, 34);
  for (int word = 36; word < 48; word += 2) {
    header.setFloatField(word, -1.0F);
    header.setFloatField(word + 1, 1.0F);
  }
  setZero(header, 48, 53);
  m_pWriter->setHeaderRemarkString(" ");
  setZero(header, 54, 57);
  if (m_Verbose) EchoHeader();
  return 0;
}

void CWriteMeshDataAsOFE::EchoHeader() const {
  const OFEHeader& header = m_pWriter->header;
  std::cout << "m_pWriter->m_HEADER_NElemP =" << header[m_HEADER_NElemP] << std::endl
            << "m_pWriter->m_HEADER_NNode =" << header[m_HEADER_NNode] << std::endl
            << "m_pWriter->m_HEADER_NMatP =" << header[m_HEADER_NMatP] << std::endl
            << "m_pWriter->setHeaderSourceString =" << header.source << std::endl
            << "m_pWriter->setHeaderUnitString =" << header.unit << std::endl
            << "m_pWriter->m_HEADER_ScaleFactor =" << header.floatField(m_HEADER_ScaleFactor) << std::endl;
}

int CWriteMeshDataAsOFE::WriteOFE_Header(const char* path) {
  return m_pWriter->beginWriting(path, kFileVersion, 0) < 1 ? -1 : 0;
}

// What an entry returns is not asked: a refused one is told by endWriting (quirk 53).
int CWriteMeshDataAsOFE::WriteOFE_Node() {
  if (m_TestCube) {
    for (const auto& corner : kCube) m_pWriter->writeNodeBlockEntry(corner[0], corner[1], corner[2]);
    return 0;
  }
  for (int i = 1; i <= m_NNode; ++i) m_pWriter->writeNodeBlockEntry(m_X[i], m_Y[i], m_Z[i]);
  return 0;
}

int CWriteMeshDataAsOFE::WriteOFE_ElementPlastic() {
  if (m_TestCube) {
    int nodes[kCubeNodes];
    std::iota(std::begin(nodes), std::end(nodes), 1);
    m_pWriter->writeElementPlasticBlockEntry(kCubeNodes, nodes, 1, 1, 2.0F);
    return 0;
  }
  std::ptrdiff_t offset = 1;
  for (int i = 1; i <= m_NElem; ++i) {
    const int count = m_ElemNodeCount[i];
    if (m_Material != nullptr && m_Material[i] < 1) continue;
    const int material = m_Material != nullptr ? m_Material[i] : 1;
    const int* nodes = nullptr;
    if (m_FlatNodes != nullptr) {
      nodes = m_FlatNodes + offset;
      offset += std::max(count, 0);
    } else if (m_ElemNodes[i] != nullptr) {
      nodes = m_ElemNodes[i] + 1;
    }
    m_pWriter->writeElementPlasticBlockEntry(count, nodes, 1, material, 0.0F);
  }
  return 0;
}

int CWriteMeshDataAsOFE::WriteOFE_EOF() {
  m_pWriter->endWriting();
  return 0;
}

const char* CWriteMeshDataAsOFE::GetErrorMessage_Link() const { return m_ErrorMessage.c_str(); }
