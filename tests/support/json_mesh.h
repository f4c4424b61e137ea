#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "support/temp_dir.h"
#include "view/ofe_json.h"

// Meshes written as JSON in the tests. A test program that uses this takes the room `view`.
namespace orvmesh::test {

// The path of a new OFE file in the folder, loaded from the text (docs/formats/ofe-json.md).
inline std::string writeOfe(const std::string& dir, const std::string& jsonText) {
  static int serial = 0;
  const std::string path = dir + "/mesh" + std::to_string(++serial) + ".ofe";
  view::loadJson(jsonText, "test mesh", path);
  return path;
}

inline nlohmann::json readOfe(const std::string& path) { return nlohmann::json::parse(view::dumpJson(path)); }

}  // namespace orvmesh::test
