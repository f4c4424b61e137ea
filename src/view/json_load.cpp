#include <vector>

#include "base/failure.h"
#include "platform/header_counts.h"
#include "view/json_complaint.h"
#include "view/json_parse.h"
#include "view/ofe_json.h"
#include "view/text_io.h"

namespace orvmesh::view {
namespace {

FileContent contentOf(const JsonMesh& mesh) {
  FileContent content;
  content.entries = mesh.counts;
  const auto first = [&](int block, std::string_view key, const auto& add) {
    forEachArgument(mesh, block, [&](std::int64_t, const Argument& argument, auto values) {
      if (argument.key == key) add(values.front());
    });
  };
  first(kElementsPlastic, "a", [&](std::int32_t a) { content.plastic.add(a); });
  first(kElementsMoldBase, "a", [&](std::int32_t a) { content.addMoldMaterial(a); });
  first(kElementsCoolChannel, "a", [&](std::int32_t a) { content.channel.add(a); });
  first(kSensors, "type", [&](std::int32_t kind) { content.addSensor(kind); });
  first(kMoldMetal, "isPoint", [&](std::int32_t is) { content.moldPoints += is != 0 ? 1 : 0; });
  first(kChannelSurface, "isPoint",
        [&](std::int32_t is) { content.channelSurfacePoints += is != 0 ? 1 : 0; });

  forEachRow(mesh, kChannelLayout,
             [&](std::int64_t, auto values) { content.layoutPoints += values.front() != 0 ? 1 : 0; });
  return content;
}

void fillCounts(JsonMesh& mesh) {
  for (const FieldCount& row : headerCounts(contentOf(mesh)))
    if (!mesh.given.test(static_cast<std::size_t>(row.field)))
      mesh.header[row.field] = static_cast<std::int32_t>(row.count);
}

// All that can be written, descending.
const std::vector<int>& writableVersions() {
  constexpr int kAboveAll = 99'999;  // versions have at most five digits
  static const std::vector<int> versions = [] {
    std::vector<int> found;
    for (int version = kAboveAll; version > 0; --version)
      if (OFEIO_Manipulator::isWritableVersion(version)) found.push_back(version);
    return found;
  }();
  return versions;
}

// A field 0 of zero says nothing about the version.
int versionFor(const JsonMesh& mesh, const std::string& name, const LoadOptions& options) {
  const std::string legal = OFEIO_Manipulator::writableVersionsText();
  if (options.version && !OFEIO_Manipulator::isWritableVersion(*options.version))
    throw Failure(name, "version " + std::to_string(*options.version) + " (legal: " + legal + ")");
  if (options.version) return *options.version;
  const std::int32_t stated = mesh.header[m_HEADER_Version];
  for (const int version : writableVersions())
    if (stated == 0 || version <= stated) return version;
  refuse(name, "header.fields.0", std::to_string(stated), legal + " or between them");
}

void writeBlocks(const JsonMesh& mesh, OFEIO_Manipulator& file, const std::string& ofePath) {
  for (int block = 0; block < kBlockCount; ++block) {
    const BlockShape& shape = blockShape(block);
    WordCursor entry(mesh.words(block));
    for (std::int64_t no = 0; no < mesh.count(block); ++no)
      if (shape.write(file, entry) < 0) throw Failure(ofePath, file.errorText());
  }
}

void writeFile(const JsonMesh& mesh, int version, const std::string& ofePath) {
  OFEIO_Manipulator file;
  file.header = mesh.header;
  if (file.beginWriting(ofePath.c_str(), version, 0) != 1) throw Failure(ofePath, file.errorText());
  writeBlocks(mesh, file, ofePath);
  if (file.endWriting() != 1) throw Failure(ofePath, file.errorText());
}

}  // namespace

void loadJson(std::string_view text, const std::string& name, const std::string& ofePath,
              const LoadOptions& options) {
  JsonMesh mesh = parseJson(text, name);
  checkNumbers(mesh, name);
  checkRelations(mesh, name);
  const int version = versionFor(mesh, name, options);
  fillCounts(mesh);
  writeFile(mesh, version, ofePath);
}

void loadJsonFile(const std::string& jsonPath, const std::string& ofePath, const LoadOptions& options) {
  loadJson(readWholeFile(jsonPath), jsonPath, ofePath, options);
}

}  // namespace orvmesh::view
