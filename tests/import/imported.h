#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "import/brick_mold.h"
#include "import/import.h"
#include "platform/cofedata.h"
#include "support/failure_of.h"
#include "support/temp_dir.h"

namespace orvmesh::test {

// A mesh imported and read back.
struct Imported {
  explicit Imported(const Msh& mesh, importing::ImportOptions options = {}, const std::string& rolesJson = "",
                    Encoding encoding = Encoding::binary41) {
    options.mesh = dir / "mold.msh";
    options.target = dir / "mold.ofe";
    writeBytes(options.mesh, writeMsh(mesh, encoding));
    if (!rolesJson.empty()) writeBytes(options.roles = dir / "roles.json", rolesJson);
    report = importing::importMesh(options);
    EXPECT_EQ(1, data.ReadDataBin(options.target.c_str(), nullptr, 0, false)) << data.errorText();
  }
  const MeshModel& model() const { return data.model(); }

  TempDir dir;
  importing::ImportReport report;
  COFEData data;
};

// What the import of this text says when it is refused.
inline std::string refusal(const std::string& bytes, const std::string& rolesJson = "",
                           importing::ImportOptions options = {}) {
  const TempDir dir;
  options.mesh = dir / "mold.msh";
  options.target = dir / "mold.ofe";
  writeBytes(options.mesh, bytes);
  if (!rolesJson.empty()) writeBytes(options.roles = dir / "roles.json", rolesJson);
  const auto text = failureOf([&] { importing::importMesh(options); });
  EXPECT_FALSE(std::ifstream(options.target).good()) << "a target was left behind: " << text;
  return text.starts_with(dir.path() + "/") ? text.substr(dir.path().size() + 1) : text;
}

}  // namespace orvmesh::test
