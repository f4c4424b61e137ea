// OFV files: every input is read whole and checked. Of those that the reader accepts, one in 8 is written
// again, told and shown; the last two ask that its faces and cells fit together.
#include <cstdlib>
#include <filesystem>

#include "fuzz/scratch.h"
#include "platform/ofv_writer.h"
#include "view/ofv_read.h"

namespace {

using namespace orvmesh;

// A mesh without faces or cells has arrays to write all the same.
void writeAgain(const OFVMesh& mesh, const std::string& target) {
  COrvOFVWriter writer;
  if (writeWholeOFV(writer, target.c_str(), mesh) != 1) std::abort();
}

void tellAndShow(const std::string& source, std::size_t size, const std::string& target) {
  view::ofvInfoAsText(source);
  view::ofvInfoAsJson(source);
  view::exportOfv(source, target);
  // Points of a cell, faces and all their points on both sides, in words of eight bytes.
  constexpr std::uintmax_t kBase = std::uintmax_t{1} << 16;
  if (std::filesystem::file_size(target) > 16 * size + kBase) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzzing::InputFile input;
  static const fuzzing::ScratchFile target("target");
  const std::string& source = input.put(data, size);
  COrvOFVReader reader;
  if (reader.open(source.c_str()) != 1) return 0;
  const bool fits = faultOfRelations(reader.mesh()).empty();
  if (!fuzzing::Turn(data, size).oneIn(8)) return 0;
  writeAgain(reader.mesh(), target.path());
  if (fits) tellAndShow(source, size, target.path());
  return 0;
}
