#pragma once

#include <memory>

// Draws faces of a node table into a binary STL file.
class COrvDrawSTLTool {
 public:
  COrvDrawSTLTool();
  virtual ~COrvDrawSTLTool();

  // 1-based coordinate arrays of the caller; they must outlive the object.
  void SetNode(float*& x, float*& y, float*& z);
  // Node numbers at positions 1 to nodeCount (3 or 4).
  void SetFace20(int nodeCount, int* nodes);
  // 1 when the file was written; a drawing without faces writes none and returns 0.
  int OutputFile(const char* path);

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

// Draws line segments into a binary STL file, each as a thin triangle.
class COrvDrawVectorTool {
 public:
  COrvDrawVectorTool();
  virtual ~COrvDrawVectorTool();

  void SetLine10(double x1, double y1, double z1, double x2, double y2, double z2);
  // 1 when the file was written, be it one without lines; else 0.
  int OutputFile_STL(const char* path);

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};
