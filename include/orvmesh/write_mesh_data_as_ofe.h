#pragma once

#include <memory>
#include <string>

#include "orvmesh/export.h"

class OFEIO_Manipulator;

// Writes a plastic part that the caller holds in arrays as an OFE file: header, nodes, plastic elements.
//
// Arrays of the caller are 1-based (entry 0 is not looked at). Coordinates and node counts are copied; node
// lists and materials are not: they must live until WriteOFE returns. Copies of an object share what it
// holds. Nothing throws.
class ORVMESH_API CWriteMeshDataAsOFE {
 public:
  CWriteMeshDataAsOFE();
  ~CWriteMeshDataAsOFE();
  CWriteMeshDataAsOFE(const CWriteMeshDataAsOFE&);
  CWriteMeshDataAsOFE& operator=(const CWriteMeshDataAsOFE&);

  // x, y, z    nNode + 1 values each, mm; kept as floats
  // nodeCount  nElem + 1 values: nodes of each element, 1 to 8
  // elemNodes  nElem + 1 rows: the nodes of an element in the entries 1..nodeCount of its row
  // material   nElem + 1 values, or null: material of each element, 1 without it; an element whose material
  // is
  //            below 1 is left out of the file
  // A count below 0, a null array other than material where the count asks for one, or a lack of memory leave
  // the object without a mesh.
  void SetMesh(int nNode, double* x, double* y, double* z, int nElem, int* nodeCount, int** elemNodes,
               int* material);
  // The same with the nodes of all elements one after another in flatNodes, from entry 1; an element that is
  // left out has none there.
  void SetMesh(int nNode, float* x, float* y, float* z, int nElem, unsigned char* nodeCount, int* flatNodes,
               int* material);

  // Writes the file, whole or not at all. 0, or -1 when there is no mesh or the file cannot be created. An
  // element that the format refuses and a full disk give 0, too: nothing is written then, and
  // GetErrorMessage_Link says why. The coordinates are gone afterwards, whatever the result: another file
  // needs another SetMesh. The header counts elements that are left out.
  int WriteOFE(const char* path);

  // Additional operation: why the last WriteOFE wrote nothing, one line that names the file; empty when it
  // did. Valid until the next WriteOFE.
  const char* GetErrorMessage_Link() const;

 protected:
  // No operation sets these.
  bool m_Verbose = false;   // header values are told on standard output
  bool m_TestCube = false;  // a cube of one element is written instead of the mesh

 private:
  template <class T, class Count>
  void CopyMesh(int nNode, const T* x, const T* y, const T* z, int nElem, const Count* nodeCount,
                int* material);
  void CreateWriter();
  void DestroyWriter();
  bool WriteSteps(const char* path);
  int SetHeaderData_to_Writer();
  void EchoHeader() const;
  int WriteOFE_Header(const char* path);
  int WriteOFE_Node();
  int WriteOFE_ElementPlastic();
  int WriteOFE_EOF();

  int m_NElem = 0;
  int m_NNode = 0;
  int m_NMaterial = 1;
  std::shared_ptr<float[]> m_X, m_Y, m_Z;        // m_NNode + 1 entries each
  std::shared_ptr<int[]> m_ElemNodeCount;        // m_NElem + 1 entries
  int** m_ElemNodes = nullptr;                   // the caller's
  int* m_FlatNodes = nullptr;                    // the caller's
  int* m_Material = nullptr;                     // the caller's
  std::shared_ptr<OFEIO_Manipulator> m_pWriter;  // during WriteOFE only
  std::string m_ErrorMessage;
};
