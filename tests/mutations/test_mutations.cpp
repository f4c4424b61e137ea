#include "mutations/mutations.h"

#include <gtest/gtest.h>
#include <orvmesh/mesh_format_transfer.h>

#include <iostream>
#include <regex>

#include "embedded/all_blocks.h"
#include "embedded/block_reader.h"
#include "fuzz/scratch.h"
#include "mutations/readers.h"
#include "platform/ofv_reader.h"
#include "platform/ofv_writer.h"
#include "support/box_grid.h"
#include "support/everything.h"
#include "support/failure_of.h"
#include "support/json_mesh.h"
#include "support/test_data.h"

// Damaged files of every kind, all the mutations of mutations.h. ORVMESH_LONG tries every one.
namespace orvmesh::test {
namespace {

// Why the container refuses the file; empty when it does not.
std::string refusalOfBlocks(const std::string& path) {
  embedded::BlockReader reader;
  if (!reader.open(path)) return reader.errorText();
  for (const embedded::BlockEntry& block : reader.blocks())
    for (std::size_t i = 0; i < block.columns.size(); ++i)
      if (!reader.verify(block, i)) return reader.errorText();
  return {};
}

std::string ofvRefusal(const std::string& path) {
  COrvOFVReader reader;
  return reader.open(path.c_str()) == 1 ? std::string() : reader.errorText();
}

// Every change of a file with checksums is reported, and in words.
void expectAllReported(const std::string& bytes, std::size_t stride,
                       std::string (*refusal)(const std::string&)) {
  ASSERT_LE(bytes.size(), 20480U);
  fuzzing::InputFile file;
  file.put(bytes);
  ASSERT_EQ(refusal(file.path()), "");
  std::size_t tried = 0;
  eachMutation(bytes, stride, [&](const char* what, std::size_t position, const std::string& mutated) {
    file.put(mutated);
    ++tried;
    EXPECT_NE(refusal(file.path()), "") << what << " at " << position;
  });
  std::cout << tried << " damages of " << bytes.size() << " bytes, all reported\n";
}

std::string makeDump(const TempDir& dir, int version) {
  return writeFile(dir / "map.dmp", version, everything()) == 1 ? bytesOf(dir / "map.dmp") : std::string();
}

TEST(Mutations, OfABlockFileAreAllReported) { expectAllReported(bytesOfAllBlocks(), 1, &refusalOfBlocks); }

TEST(Mutations, OfABlockDumpAreAllReported) { expectAllReported(makeDump(TempDir(), 2004), 3, &dumpRefusal); }

TEST(Mutations, OfAnOfvFileAreAllReported) {
  const TempDir dir;
  COrvOFVWriter writer;
  ASSERT_EQ(writeWholeOFV(writer, (dir / "mesh.ofv").c_str(), BoxGrid({1, 1, 1}).mesh()), 1);
  expectAllReported(bytesOf(dir / "mesh.ofv"), 1, &ofvRefusal);
}

// A text and the use of its reader.
struct TextFormat {
  const char* name;
  std::string (*make)(const TempDir& dir);
  void (*use)(const std::string& path, const TempDir& dir);
  std::size_t stride;
};

std::string makeCtg(const TempDir& dir) {
  std::string source = writeOfe(dir.path(), kEverything), target = dir / "mold.ctg";
  COrvMeshFormatTransfer transfer;
  transfer.TransSolidOFEtoCTG(source.data(), target.data());
  return bytesOf(target);
}

const TextFormat kTextFormats[] = {
    {"JSON", [](const TempDir&) { return kEverything; }, &useJson, 37},
    {"MSH", [](const TempDir&) { return testData("mutations/data/mold.msh"); }, &useMsh, 5},
    {"DMP", [](const TempDir& dir) { return makeDump(dir, 1023); }, &useSoundDump, 5},
    {"CTG", &makeCtg, &useCtg, 11},
    {"SNC", [](const TempDir&) { return std::string(kSncText); }, &useSnc, 1}};

// One line: the file, the place in it (unless it is no such file at all), and what would be right.
void expectClear(const std::string& line, const std::string& path) {
  static const std::regex place(
      R"(^(no JSON: )?line \d+|^(element|face|node) \d+|\w+ entry \d+|^[\w.]+(\[\d+\])+|: unknown key)"
      R"(|group |^(header\.[\w.]+|top level): |the header|^has (version|no complete header)|^is (empty|no ))");
  static const std::regex remedy(
      "legal|expected|nearest|needs|announces|cut |ends without|has no |twice|begin|no JSON|mesh|order|--|"
      "items|integer");
  EXPECT_TRUE(line.starts_with(path + ": ")) << line;
  const std::string text = line.substr(std::min(line.size(), path.size() + 2));
  EXPECT_TRUE(std::regex_search(text, place)) << line;
  EXPECT_TRUE(std::regex_search(text, remedy)) << line;
  EXPECT_TRUE(std::ranges::none_of(line, [](unsigned char byte) { return byte < 0x20; })) << line;
}

TEST(Mutations, OfTextAreRefusedInWordsOrMakeAValidModel) {
  std::streambuf* const output = std::cout.rdbuf();
  for (const TextFormat& format : kTextFormats) {
    const TempDir dir;
    fuzzing::InputFile file;
    std::cout.rdbuf(nullptr);  // what the operations print
    const std::string text = format.make(dir);
    file.put(text);
    EXPECT_NO_THROW(format.use(file.path(), dir)) << format.name;
    std::size_t tried = 0, accepted = 0;
    eachMutation(text, format.stride,
                 [&](const char* what, std::size_t position, const std::string& mutated) {
                   SCOPED_TRACE(std::string(format.name) + " " + what + " at " + std::to_string(position));
                   file.put(mutated);
                   ++tried;
                   try {
                     format.use(file.path(), dir);
                     ++accepted;
                   } catch (const Failure& failure) {
                     expectClear(failure.what(), file.path());
                   }
                 });
    std::cout.rdbuf(output);
    std::cout << format.name << ": " << tried << " damages, " << accepted << " make another valid file\n";
  }
}

}  // namespace
}  // namespace orvmesh::test
