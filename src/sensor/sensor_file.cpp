#include <orvmesh/sensor_file.h>

#include <cstdio>
#include <exception>

#include "platform/file_copy.h"
#include "platform/text_stream.h"
#include "sensor/snc_rewrite.h"

namespace {

using orvmesh::sensor::SensorMaps;

// Not atomic, and other programs rely on these steps: a copy that is left over means that the file was not
// rewritten, or not wholly (quirk 43). Returns what went wrong.
std::string rewriteInPlace(const std::string& path, const SensorMaps& maps) {
  const std::string copy = path + ".tmc";
  if (!CopyFileA(path.c_str(), copy.c_str(), true))
    return "cannot be copied to " + copy + " (does that exist?)";
  (void)std::remove(path.c_str());
  std::ofstream out;
  std::ifstream in;
  OpenTextStreamWithRetry(out, path.c_str());
  OpenTextStreamWithRetry(in, copy.c_str());
  if (!out.is_open()) return "cannot be written; its content is in " + copy;
  if (!in.is_open()) return "cannot be rewritten; its content is in " + copy;

  const auto write = [&](std::string_view text) {
    return static_cast<bool>(out.write(text.data(), static_cast<std::streamsize>(text.size())));
  };
  const auto report = orvmesh::sensor::rewriteSnc(in, write, maps);
  in.close();
  out.close();
  if (!out) return "cannot be written whole; its content is in " + copy;
  (void)std::remove(copy.c_str());
  return report.error;
}

}  // namespace

void COrvMeshTransfer_SensorFile::TransferSensorFile_SNC(const char* sncPath, const char* meshPath,
                                                         int readOption, int ignoredOption) try {
  SetMeshFilePath_Std(meshPath, readOption, ignoredOption);
  if (sncPath == nullptr || maps() == nullptr) return;
  const std::string problem = rewriteInPlace(sncPath, *maps());
  if (m_ErrorMessage.empty() && !problem.empty()) m_ErrorMessage = std::string(sncPath) + ": " + problem;
} catch (const std::exception& failure) {
  m_ErrorMessage = failure.what();
}
