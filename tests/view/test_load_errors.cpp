#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/everything.h"
#include "support/failure_of.h"
#include "support/temp_dir.h"
#include "view/ofe_json.h"
#include "view/text_io.h"

namespace {

using namespace orvmesh;
using test::failureOf;
using test::TempDir;

class LoadErrors : public ::testing::Test {
 protected:
  LoadErrors() { std::ofstream(target_) << "old"; }
  ~LoadErrors() override { EXPECT_EQ(view::readWholeFile(target_), "old"); }

  // The message without the text's name.
  std::string load(const std::string& text) {
    const auto message = failureOf([&] { view::loadJson(text, "t.json", target_); });
    EXPECT_EQ(message.rfind("t.json: ", 0), 0U) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    return message.substr(std::min<std::size_t>(message.size(), 8));
  }
  std::string loadWith(const std::string& block) {
    return load(R"({"nodes": [[0,0,0],[1,0,0],[0,1,0],[0,0,1]], )" + block + "}");
  }

  TempDir dir_;
  std::string target_ = dir_ / "target.ofe";
};

// A text, or a block of a mesh of four nodes, and below it what is said of it.
TEST_F(LoadErrors, NameThePlaceAndWhatIsLegal) {
  std::istringstream cases(test::testData("view/data/load_errors.txt"));
  int tried = 0;
  for (std::string text, message; std::getline(cases, text) && std::getline(cases, message); ++tried)
    EXPECT_EQ("  " + (text[0] == '"' ? loadWith(text) : load(text)), message) << text;
  EXPECT_GT(tried, 40);
}

TEST_F(LoadErrors, OfTheTextGiveLineAndColumn) {
  EXPECT_EQ(load("{\n  \"nodes\": [[0, NaN, 0]]}"),
            "no JSON: line 2, column 17: syntax error while parsing value - invalid literal (read: 0, N)");
  EXPECT_EQ(
      load(R"({"nodes": []} {)"),
      "no JSON: line 1, column 15: syntax error while parsing value - unexpected '{'; expected end of input "
      "(read: \"nodes\": []} {)");
  EXPECT_EQ(load("").substr(0, 25), "no JSON: line 1, column 1");
  EXPECT_NE(load("{\"nodes\": \"\xFF\"}").find("ill-formed UTF-8"), std::string::npos);
  EXPECT_EQ(load(std::string(1'000'000, '[')), "top level: a list (legal: an object)");
  EXPECT_EQ(load(R"({"nodes": )" + std::string(1'000'000, '[')), "nodes[0][0]: a list (legal: a number)");
}

TEST_F(LoadErrors, AnyTruncationIsRefused) {
  const std::string& text = test::kEverything;
  for (std::size_t size = 0; size <= text.rfind('}'); ++size) load(text.substr(0, size));
}

}  // namespace
