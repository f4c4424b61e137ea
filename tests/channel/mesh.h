#pragma once

#include <gtest/gtest.h>

#include <functional>
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

inline void writePoint(OFEIO_Manipulator& file, float x, float y, float z, int type) {
  file.writeCoolantChannelLayoutBlockEntry(1, x, y, z, type, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
}
inline void writeBeam(OFEIO_Manipulator& file, int from, int to, float diameterA, float diameterB, int group,
                      int code) {
  file.writeCoolantChannelLayoutBlockEntry(0, 0, 0, 0, 0, from, to, diameterA, diameterB, group, code, 0, 0,
                                           0, 0, 0, 0, 0, 0, 0);
}

// What the job prints on standard output.
inline std::string printedBy(const std::function<void()>& job) {
  testing::internal::CaptureStdout();
  job();
  return testing::internal::GetCapturedStdout();
}

}  // namespace orvmesh::test
