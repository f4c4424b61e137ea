#pragma once

#include <memory>

// Which faces of an OFE file touch which volume elements.
class COFEPatch_ElementSurface {
 public:
  COFEPatch_ElementSurface();
  ~COFEPatch_ElementSurface();
  COFEPatch_ElementSurface(const COFEPatch_ElementSurface&) = delete;
  COFEPatch_ElementSurface& operator=(const COFEPatch_ElementSurface&) = delete;

  // Builds the relation from a file: 1, or 0 when it cannot be read (every face then touches nothing).
  int CreateContactSurface(const char* ofePath);
  // faceNodes: four node numbers (a triangle repeats its third). 1 the face touches a part element, 3 a
  // channel element, 0 nothing; fills the element's number (1-based in its list) and the node numbers of its
  // matching face.
  int GetIfMolbaseFaceContact(int* faceNodes, int& matchedElement, int* matchedFaceNodes);

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};
