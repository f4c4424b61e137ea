#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "platform/ofeio.h"
#include "support/temp_dir.h"

namespace orvmesh::test {

// Writes a file whose header counts are right, unless `fill` sets them otherwise.
inline std::string writeMesh(const std::string& path, const std::function<void(OFEIO_Manipulator&)>& fill) {
  OFEIO_Manipulator file;
  file.header[m_HEADER_Version] = 14001;
  EXPECT_EQ(file.beginWriting(path.c_str(), 14001, 0), 1);
  fill(file);
  EXPECT_EQ(file.endWriting(), 1) << file.errorText();
  return path;
}

inline void writeFace(OFEIO_Manipulator& file, std::vector<int> nodes, int interfaceId, int surfaceCode,
                      int endCode, int group) {
  ++file[m_HEADER_NElemS];
  file.writeElementSurfaceBlockEntry(nodes.data(), interfaceId, surfaceCode, endCode, group, 0, 0);
}

// A cloud of random nodes; its places are multiples of 1/8 so that equal distances are frequent.
inline std::vector<float> writeCloud(OFEIO_Manipulator& file, int count, std::mt19937& random) {
  std::vector<float> xyz;
  for (int n = 0; n < count; ++n) {
    for (int axis = 0; axis < 3; ++axis) xyz.push_back(static_cast<float>(random() % 80) / 8);
    file.writeNodeBlockEntry(xyz[xyz.size() - 3], xyz[xyz.size() - 2], xyz[xyz.size() - 1]);
  }
  file[m_HEADER_NNode] = count;
  return xyz;
}

inline double squareDistance(const double (&a)[3], const double (&b)[3]) {
  double sum = 0;
  for (int axis = 0; axis < 3; ++axis) sum += (a[axis] - b[axis]) * (a[axis] - b[axis]);
  return sum;
}

// What the job prints on standard output.
inline std::string printedBy(const std::function<void()>& job) {
  testing::internal::CaptureStdout();
  job();
  return testing::internal::GetCapturedStdout();
}

}  // namespace orvmesh::test
