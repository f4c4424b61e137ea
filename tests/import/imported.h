#pragma once

#include <gtest/gtest.h>

#include <string>
#include <valarray>
#include <vector>

#include "import/brick_mold.h"
#include "import/import.h"
#include "platform/cofedata.h"
#include "support/failure_of.h"
#include "support/temp_dir.h"

namespace orvmesh::test {

// A mesh file and its roles in a folder of their own.
struct ImportJob {
  explicit ImportJob(const std::string& bytes, const std::string& rolesJson = "",
                     importing::ImportOptions given = {})
      : options(std::move(given)) {
    options.mesh = dir / "mold.msh";
    options.target = dir / "mold.ofe";
    writeBytes(options.mesh, bytes);
    if (!rolesJson.empty()) writeBytes(options.roles = dir / "roles.json", rolesJson);
  }
  TempDir dir;
  importing::ImportOptions options;
};

// A mesh imported and read back.
struct Imported : ImportJob {
  explicit Imported(const Msh& mesh, importing::ImportOptions given = {}, const std::string& rolesJson = "",
                    Encoding encoding = Encoding::binary41)
      : ImportJob(writeMsh(mesh, encoding), rolesJson, std::move(given)),
        report(importing::importMesh(options)) {
    EXPECT_EQ(1, data.ReadDataBin(options.target.c_str(), nullptr, 0, false)) << data.errorText();
  }
  const MeshModel& model() const { return data.model(); }

  importing::ImportReport report;
  COFEData data;
};

inline void expectRefusal(const std::string& expected, const std::string& bytes,
                          const std::string& rolesJson = "", importing::ImportOptions given = {}) {
  const ImportJob job(bytes, rolesJson, std::move(given));
  const auto found = failureOf([&] { importing::importMesh(job.options); });
  EXPECT_TRUE(found.starts_with(job.options.mesh + ": ") || found.starts_with(job.options.roles + ": "))
      << found;
  EXPECT_NE(std::string::npos, found.find(expected)) << "expected: " << expected << "\nfound: " << found;
  EXPECT_FALSE(std::ifstream(job.options.target).good()) << "a target was left behind: " << found;
}
inline void expectRefusal(const std::string& expected, const Msh& mesh, const std::string& rolesJson = "",
                          importing::ImportOptions given = {}) {
  expectRefusal(expected, writeMsh(mesh, Encoding::text41), rolesJson, std::move(given));
}

inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const auto at = text.find(from);
  EXPECT_NE(std::string::npos, at) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

inline std::vector<SurfaceElement> surfacesOf(const MeshModel& model) {
  std::vector<SurfaceElement> surfaces;
  for (std::int32_t k = 1; k <= model.surfaces.count(); ++k) surfaces.push_back(model.surfaces[k]);
  return surfaces;
}

using Xyz = std::valarray<double>;

inline Xyz placeOf(const MeshModel& model, std::int32_t node) {
  const auto [x, y, z] = model.nodes[node];
  return {x, y, z};
}
inline Xyz middleOf(const MeshModel& model, std::span<const std::int32_t> nodes) {
  Xyz sum(3);
  for (const auto node : nodes) sum += placeOf(model, node);
  return sum / static_cast<double>(nodes.size());
}
inline double dot(const Xyz& a, const Xyz& b) { return (a * b).sum(); }
inline Xyz cross(const Xyz& a, const Xyz& b) { return a.cshift(1) * b.cshift(2) - a.cshift(2) * b.cshift(1); }

}  // namespace orvmesh::test
