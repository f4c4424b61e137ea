#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/failure_of.h"
#include "support/temp_dir.h"
#include "support/test_data.h"
#include "view/ctg_mesh.h"

using namespace orvmesh;
using namespace orvmesh::test;
using namespace orvmesh::view;

namespace {

std::string with(std::string text, const std::string& from, const std::string& to) {
  const auto at = text.find(from);
  EXPECT_NE(at, text.npos) << from;
  return at == text.npos ? text : text.replace(at, from.size(), to);
}

class Ctg : public ::testing::Test {
 protected:
  std::string failureWith(const std::string& text) const {
    std::filesystem::remove(path);  // some file systems flush a file that is cut and written again
    std::ofstream(path, std::ios::binary) << text;
    return failureOf([&] { ctgInfoAsText(path); });
  }
  const std::string whole = testData("support/data/two_tetrahedra.ctg");  // as the export writes it
  TempDir dir;
  std::string path = dir / "mesh.ctg";
};

TEST_F(Ctg, InfoCountsWhatIsThere) {
  // Without the faces against air; a property may be any number.
  const std::string open = with(with(whole, "Air Boundary Face = 2", "Air Boundary Face = 0"),
                                "[Air Boundary Face]\n1 = 4 0\n2 = 6 0\n", "[Air Boundary Face]\n");
  ASSERT_EQ(failureWith(with(open, "2 = 5002 0", "2 = -8 0")), "no failure");
  EXPECT_TRUE(looksLikeCtg(path));
  const std::string text = ctgInfoAsText(path);
  for (const char* part : {"0 0 -4e-06 to 1 1.25 4e+06\n", "tetrahedra 2\n",
                           "7 (1 between two elements, 6 of one element, of these 2 on no boundary)",
                           "cool             1      2      3\n", "-8               1\n"})
    EXPECT_NE(text.find(part), std::string::npos) << part << text;
  EXPECT_NE(ctgInfoAsJson(path).find("\"untypedBoundary\": 2"), std::string::npos);
}

TEST_F(Ctg, FaultsAreNamed) {
  const struct {
    const char *from, *to, *failure;
  } cases[] = {
      {"[Header]\n", "[Header]\r\n", "line 1: is \"[Header]\\r\" (legal: [Header])"},
      {"Version = 1004", "Version = 1005", "line 2: is \"Version = 1005\" (legal: Version = 1004)"},
      {"Element = 2\n", "Element = -1\n", "line 11: Element = is no count (legal: 0 to 2147483647)"},
      {"Element = 2\n", "Element = 2147483647\n",
       "line 38: ends Element Node with 2 lines (legal: 2147483647, as"},
      {"Node = 5\n", "Node = 4\n", "line 33: is one too many: the header counts 4"},
      {"Face = 7\n", "Face = 8\n", "line 55: ends Face with 7 lines (legal: 8, as"},
      {"2 = 1 0 0", "3 = 1 0 0", "line 30: has number 3 (legal: 2)"},
      {"2 = 1 0 0", "2 = nan 0 0", "line 30: x is \"nan\" (legal: a finite number)"},
      {"2 = 1 0 0\n", "2 = 1 0\n", "line 30: ends too early"},
      {"1 2 3 4 0", "1 2 0 3 4", "line 36: has a node behind an empty slot"},
      {"1 = 4 1 2 3 4", "1 = 5 1 2 3 4 5", "line 44: the number of faces is \"5\" (legal: 4 to 4)"},
      {"-1 5 6 7", "-8 5 6 7", "line 45: a face is \"-8\" (legal: -7 to 7)"},
      {"[/Outlet Face]\n", "[/Outlet Face]\n\n", "line 95: stands behind the end of the last section"},
      {"[Inlet Face]\n", "[Inlet Face]\n1 = 1\n", "line 92: is one too many: the header counts 0"},
      {"1 2 3 4\n2 =", "1 3 2 4\n2 =", ": element 1, face 2 is made as number 3 (legal: 2)"},
      {"-1 5 6 7", "-7 5 6 7", ": element 2, face 1 is -7, which no element before it has made"},
      {"-1 5 6 7", "-2 5 6 7", ": element 2, face 1 has other nodes than face 2"},
      {"1 = 1 4 2 0", "1 = 2 4 1 0", ": element 1, face 2 has other nodes than face 2"},
      {"6 = 2 6 4 0", "6 = 6 4 2 0", ": element 2, face 3 has other nodes than face 6"},
      {"5 = 4 6 1 0", "5 = 4 6 1 9", ": element 2, face 2 has other nodes than face 5"},
      {"2 = 1 3 2 5 0", "2 = 1 2 3 5 0", ": element 2, face 2 has other nodes than face 5"}};
  for (const auto& c : cases) {
    const std::string failure = failureWith(with(whole, c.from, c.to));
    EXPECT_TRUE(failure.starts_with(path + ": ") && failure.find(c.failure) != std::string::npos)
        << c.failure << '\n'
        << failure;
  }
}

// The second element mirrored: it names the same faces and lies on the same side as the first.
TEST_F(Ctg, AnElementOnTheWrongSideIsNotClosed) {
  std::string text = with(whole, "2 = 1 3 2 5 0", "2 = 1 2 3 5 0");
  text = with(text, "5 = 4 6 1 0\n6 = 2 6 4 0\n7 = 1 6 2 0", "5 = 2 6 1 0\n6 = 4 6 2 0\n7 = 1 6 4 0");
  EXPECT_NE(failureWith(text).find(": element 2 is not closed"), std::string::npos) << failureWith(text);
}

TEST_F(Ctg, EveryCutIsSeen) {
  for (std::size_t size = 0; size < whole.size(); ++size)
    ASSERT_TRUE(failureWith(whole.substr(0, size)).starts_with(path + ": line ")) << size;
  EXPECT_NE(failureWith(std::string(2 << 20, '[')).find("line 1: is longer than 4096 bytes"),
            std::string::npos);
}

}  // namespace
