#include "base/field_scan.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using orvmesh::FieldScan;

bool isSame(double a, double b) {
  return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

// The standard library reads the same line, from zeroed variables.
void expectAsScanf(const std::string& line) {
  double wanted[4] = {}, found[4] = {};
  const int scanned =  // NOLINTNEXTLINE(cert-err34-c): what it does not report is compared
      std::sscanf(line.c_str(), "%lf %lf %lf %lf", &wanted[0], &wanted[1], &wanted[2], &wanted[3]);
  const int count = std::max(0, scanned);
  FieldScan fields(line);
  int got = 0;
  while (got < 4 && fields.number(found[got])) ++got;
  EXPECT_EQ(got, count) << line;
  for (int k = 0; k < 4; ++k)
    EXPECT_TRUE(isSame(found[k], wanted[k])) << line << " at " << k << ": " << found[k];
}

TEST(FieldScan, ReadsNumbersAsScanfDoes) {
  std::istringstream list(
      "0 -0 +7 1.5 .5 5. -.25e2 1E+05 1e-05 nan NaN -nan inf -INF Infinity +infinity 1e400 -1e400 1e-400 "
      "4.9e-324 1e-310 -2e-320 1e99999 -1e-99999 0x1p3 -0x.8 0X1F +-1 ++1 -+1 --1 1.5abc abc 1,5 . - + 1.2.3 "
      "1-2 0x1p2000 0x1p-2000 17976931348623157e292 1.7976931348623159e308");
  std::vector<std::string> words{std::istream_iterator<std::string>(list), {}};
  for (const std::size_t digits : {400U, 6000U}) {
    words.push_back("-" + std::string(digits, '9'));
    words.push_back("0." + std::string(digits, '0') + "1");
  }
  for (const auto& word : words) expectAsScanf("3 " + word + "\t-4 5");
  std::mt19937 random(3);
  for (int i = 0; i < 20000; ++i) {
    std::string line;
    for (int k = 0; k < 5; ++k)
      line += std::string(random() % 3 == 0 ? "\t " : " ") + (random() % 4 == 0 ? "" : "\v\f") +
              words[random() % words.size()];
    expectAsScanf(line);
    char exact[100];
    std::snprintf(exact, sizeof exact, "%.*e", static_cast<int>(random() % 20),
                  std::bit_cast<double>(std::uint64_t{random()} << 32 | random()));
    expectAsScanf(exact);
  }
}

}  // namespace
