// OFV files: whatever is read and fits together can be told, shown and written again. Most mutations are
// sealed again, so that they get past the checksums.
#include <cstdlib>
#include <filesystem>

#include "base/failure.h"
#include "fuzz/reseal.h"
#include "fuzz/scratch.h"
#include "platform/ofv_writer.h"
#include "view/ofv_read.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  size = LLVMFuzzerMutate(data, size, maxSize);
  if (seed % 8 != 0) orvmesh::fuzzing::seal(data, size);
  return size;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvmesh;
  static const std::string source = fuzzing::scratchPath("source.ofv");
  static const std::string target = fuzzing::scratchPath("target");
  fuzzing::writeBytes(source, data, size);
  COrvOFVReader reader;
  if (reader.open(source.c_str()) != 1) return 0;
  // A mesh without faces or cells has arrays to write all the same.
  COrvOFVWriter writer;
  if (writeWholeOFV(writer, target.c_str(), reader.mesh()) != 1) std::abort();
  try {
    view::ofvInfoAsText(source);
  } catch (const Failure&) {
    return 0;
  }
  view::ofvInfoAsJson(source);
  view::exportOfv(source, target);
  // Points of a cell, faces and all their points on both sides, in words of eight bytes.
  constexpr std::uintmax_t kBase = std::uintmax_t{1} << 16;
  if (std::filesystem::file_size(target) > 16 * size + kBase) std::abort();
  return 0;
}
