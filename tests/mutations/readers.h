#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "base/failure.h"
#include "dmpio/dump_content.h"
#include "dmpio/dump_json.h"
#include "import/import.h"
#include "platform/cofedata.h"
#include "sensor/snc_rewrite.h"
#include "support/failure_of.h"
#include "view/ctg_mesh.h"
#include "view/ofe_json.h"

// One use of every reader: throws Failure, or uses what it accepted and fails the test when that is no valid
// model.
namespace orvmesh::test {

inline std::string dumpRefusal(const std::string& path) {
  const std::string text = failureOf([&] { dmpio::dumpAsJson(path, [](std::string_view) {}); });
  return text == "no failure" ? std::string() : text;
}

inline void expectSurvives(const std::string& ofe) {
  const std::string first = view::dumpJson(ofe);
  view::loadJson(first, "dump", ofe);
  EXPECT_EQ(view::dumpJson(ofe), first);
}

inline void useJson(const std::string& path, const TempDir& dir) {
  view::loadJsonFile(path, dir / "mesh.ofe", {});
  expectSurvives(dir / "mesh.ofe");
}

inline void useMsh(const std::string& path, const TempDir& dir) {
  importing::ImportOptions options;
  options.mesh = path;
  options.target = dir / "mold.ofe";
  importing::importMesh(options);
  COFEData model;
  EXPECT_EQ(model.ReadDataBin(options.target.c_str(), nullptr, 0, false), 1) << model.errorText();
  expectSurvives(options.target);
}

inline void useDump(const std::string& path, const TempDir& dir) {
  dmpio::dumpAsJson(path, [](std::string_view) {});
  Dump dump;
  dump.convert(path.c_str(), (dir / "copy").c_str(), 2004);
  if (*dump.getErrorText() != '\0') throw Failure(path, dump.getErrorText());
  EXPECT_LT(std::filesystem::file_size(dir / "copy"), 4U << 20);  // whatever the counts in the header say
  EXPECT_EQ(dumpRefusal(dir / "copy"), "");
}

// Of a dump whose header does not lie about its counts, besides.
inline void useSoundDump(const std::string& path, const TempDir& dir) {
  useDump(path, dir);
  Dump dump;
  // As it is read: entries that the header's counts do not admit are written, but not found (quirk 34).
  dump.convert((dir / "copy").c_str(), (dir / "again").c_str(), 2004);
  EXPECT_EQ(readFile(dir / "again"), readFile(dir / "copy"));
}

inline void useCtg(const std::string& path, const TempDir&) { view::ctgInfoAsText(path); }

// Accepted by useSnc.
inline constexpr const char* kSncText =
    "9\n[HEADER] text\n[SENSOR INFO]\nnumbers\n2\n1\n0\n0\n0\n0\n1  7      1 2 3\n1  8      1 2 3\n"
    "2  9      1 2 3\n[VARBLE INFO]\nv\n[HISTORY DATA]\n0.5\n35.00\n36.00\n37.00\n\n[TIMESTEP]\n1\n[EOF]\n";

// A mesh with one sensor each of types 1, 2 and 4, the last in a part insert or not: joined with its inserts
// it has another numbering only in the first case.
inline std::string rewritten(const std::string& path, const std::string& text, bool inInsert) {
  std::istringstream in(text);
  std::string out;
  const auto maps = sensor::makeMaps({{1, 1, 1, 0, 0}}, sensor::MapVariant::standard, {{inInsert}, {}});
  const auto append = [&out](std::string_view piece) { return out.append(piece), true; };
  const auto report = sensor::rewriteSnc(in, append, maps);
  if (!report.error.empty()) throw Failure(path, report.error);
  return out;
}

inline void useSnc(const std::string& path, const TempDir&) {
  const std::string out = rewritten(path, bytesOf(path), true);
  EXPECT_TRUE(out.ends_with("[EOF]"));
  EXPECT_EQ(failureOf([&] { EXPECT_EQ(rewritten(path, out, false), out); }), "no failure");
}

}  // namespace orvmesh::test
