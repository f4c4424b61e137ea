#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvmesh::view {

// OFE files as JSON text and back (docs/formats/ofe-json.md). Every operation throws Failure with one line
// that names the file, and the place in the JSON where there is one; no target is touched before it is
// complete.

// Takes the next piece of a text; throws to stop.
using TextSink = std::function<void(std::string_view)>;

// The whole file as JSON text in one pass; memory does not grow with the file. Nothing is handed to the sink
// of a file that the reader refuses.
void dumpJson(const std::string& ofePath, const TextSink& sink);
std::string dumpJson(const std::string& ofePath);
// Into a file that appears whole or not at all.
void dumpJsonFile(const std::string& ofePath, const std::string& jsonPath);

struct LoadOptions {
  // The version the file is written as; where there is none, the nearest writable one at or below header
  // field 0, and the newest for a field 0 of zero.
  std::optional<int> version;
};

// Writes the OFE file that the JSON text describes. `name` stands for the text in messages.
void loadJson(std::string_view text, const std::string& name, const std::string& ofePath,
              const LoadOptions& options = {});
void loadJsonFile(const std::string& jsonPath, const std::string& ofePath, const LoadOptions& options = {});

}  // namespace orvmesh::view
