#include <algorithm>
#include <filesystem>
#include <sstream>

#include "import/imported.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

constexpr const char* kSmall = "MCM/MPM";

Msh smallMesh() {
  BrickMold mold(kSmall, Cells::hexahedraAndPyramids);
  mold.nameFace("ignore", 1, 0, 0, 0);
  mold.addPoint("sensor:2:5", 1.2, 1.1, 0.2);
  mold.addElement(1, 1, 0, {1, 2});
  return mold.mesh;
}

// The bytes of the OFE file made of these, the mesh file's name and time being always the same.
std::string ofeOf(const std::string& bytes) {
  const ImportJob job(bytes);
  std::filesystem::last_write_time(job.options.mesh, std::filesystem::file_time_type{});
  importing::importMesh(job.options);
  return bytesOf(job.options.target);
}

// Imported into a file that reads, or refused in one line, and nothing else.
bool isImported(const std::string& bytes) {
  const ImportJob job(bytes);
  const auto text = failureOf([&] { importing::importMesh(job.options); });
  if (text == "no failure") {
    COFEData data;
    EXPECT_EQ(1, data.ReadDataBin(job.options.target.c_str(), nullptr, 0, false)) << data.errorText();
    return true;
  }
  EXPECT_TRUE(text.starts_with(job.options.mesh + ": ")) << text;
  EXPECT_EQ(std::string::npos, text.find('\n')) << text;
  return false;
}

}  // namespace

TEST(MshFiles, EncodingsAndTagsOfNodesChangeNothing) {
  const auto expected = ofeOf(writeMsh(smallMesh(), Encoding::binary41));
  // Tags from 1 or a higher one on, with small and with wide gaps, and all back to front.
  for (const auto& [offset, factor] : {std::pair{0U, 1U}, {17U, 1U}, {17U, 3U}, {17U, 70000U}}) {
    for (const bool reversed : {false, true}) {
      auto mesh = smallMesh();
      for (auto& node : mesh.nodes) node.tag = offset + factor * node.tag;
      for (auto& element : mesh.elements)
        for (auto& node : element.nodes) node = offset + factor * node;
      if (reversed) std::reverse(mesh.nodes.begin(), mesh.nodes.end());
      for (const auto encoding : kEncodings) EXPECT_EQ(expected, ofeOf(writeMsh(mesh, encoding)));
    }
  }
  auto crlf = writeMsh(smallMesh(), Encoding::text41);
  for (std::size_t at = 0; (at = crlf.find('\n', at)) != crlf.npos; at += 2) crlf.insert(at, 1, '\r');
  EXPECT_EQ(expected, ofeOf(crlf)) << "Windows line ends";
}

TEST(MshFiles, CutAtAnyByteAreRefusedAndWithAnyChangedImportedOrRefused) {
  constexpr int kFlips[] = {0x01, 0x80, 0xFF};
  // In memory where there is such a folder: every target is synced to its disk.
  if (std::filesystem::is_directory("/dev/shm")) ::setenv("TMPDIR", "/dev/shm", 1);
  for (const auto encoding : kEncodings) {
    const auto bytes = writeMsh(smallMesh(), encoding);
    ASSERT_TRUE(isImported(bytes));
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      ASSERT_EQ(at + 1 == bytes.size(), isImported(bytes.substr(0, at))) << "cut at " << at;
      auto changed = bytes;
      changed[at] = static_cast<char>(changed[at] ^ kFlips[at % 3]);
      (void)isImported(changed);
    }
  }
}

TEST(MshFiles, UnknownAndPartitionedSectionsArePassed) {
  const auto text = writeMsh(smallMesh(), Encoding::text41);
  const auto expected = ofeOf(text);
  EXPECT_EQ(expected, ofeOf("$Comments\nany $EndComment text\n$EndComments\n" + text));
  EXPECT_EQ(expected, ofeOf(replaced(text, "$Nodes", "$Empty\n$EndEmpty\n$Nodes")));
  EXPECT_EQ(expected, ofeOf(replaced(text, "$Nodes", "$Periodic\n1\n2 3 4\n$EndPeriodic\n$Nodes")));
  // Groups that come with the partitioned entities instead.
  const auto first = text.find("$Entities\n"), last = text.find("$EndEntities\n");
  std::istringstream entities(text.substr(first, last - first));
  std::string line, partitioned = "$PartitionedEntities\n2 1 7 1\n";
  std::getline(entities, line);
  std::getline(entities, line);
  partitioned += line + "\n";
  while (std::getline(entities, line)) partitioned += line.insert(line.find(' '), " 3 1 2 1 2") + "\n";
  EXPECT_EQ(expected, ofeOf(text.substr(0, first) + partitioned + "$EndPartitionedEntities\n" +
                            text.substr(text.find("$Nodes"))));
}

TEST(MshFiles, RefusalsSayWhereAndWhatWouldBeRight) {
  const auto text = writeMsh(smallMesh(), Encoding::text41);
  const auto text22 = writeMsh(smallMesh(), Encoding::text22);
  const auto binary = writeMsh(smallMesh(), Encoding::binary41);
  const std::pair<std::string, const char*> rows[] = {
      {"", ": is empty; expected a mesh file"},
      {"solid cube\n", "line 1: is no MSH file: expected $MeshFormat"},
      {replaced(text, "4.1 0 8", "4 0 8"), "line 2: MSH version 4 is not read, only 2.2 and 4.1"},
      {replaced(text, "4.1 0 8", "4.1 2 8"), "file type 2; expected 0 (text) or 1 (binary)"},
      {replaced(binary, "4.1 1 8", "4.1 1 4"), "binary data of size 4; only 8 bytes are read"},
      {replaced(binary, std::string("\1\0\0\0", 4), std::string("\0\0\0\1", 4)),
       "byte 20: big-endian binary data is not read"},
      {replaced(text, "$Nodes", "$Elements\n$EndElements\n$Nodes"), "$Elements stands before $Nodes"},
      {text + "junk", "expected a section ($Nodes, $Elements, ...), found 'junk'"},
      {text + "$Nodes\n", "a second $Nodes section"},
      {replaced(text, "$Nodes\n2 28", "$Nodes\n2 29"), "$Nodes announces 29 nodes and holds 28"},
      {replaced(text22, "$Nodes\n28", "$Nodes\n999999999999"),
       "$Nodes announces 999999999999 nodes; the rest of the file cannot hold them"},
      {replaced(text22, "$Nodes\n28", "$Nodes\n-1"), "$Nodes: expected a number of nodes, found '-1'"},
      {replaced(text22, "\n2 1 0 0\n", "\n1 1 0 0\n"), "node 1 stands twice in $Nodes"},
      {replaced(text22, "\n2 1 0 0\n", "\n2 nan 0 0\n"), "a coordinate is not finite"},
      {replaced(text22, "\n2 1 0 0\n", "\n2 1e39 0 0\n"), "a coordinate is not finite in single precision"},
      {replaced(text22, "\n2 1 0 0\n", "\n222 1 0 0\n"), "names node 2, which $Nodes does not have"},
      {replaced(text22, "\n1 5 2 ", "\n1 35 2 "), "element type 35 is unknown"},
      {replaced(text, "\n3 1 5 ", "\n2 1 5 "),
       "a block of dimension 2 holds elements of type 5 (hexahedron)"},
  };
  for (const auto& [bytes, expected] : rows) expectRefusal(expected, bytes);
}
