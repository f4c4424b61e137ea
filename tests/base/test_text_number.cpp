#include "base/text_number.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

using namespace orvmesh;

namespace {

void expectSame(double value) {
  std::string text;
  appendDefault(text, value);
  char wanted[32];
  std::snprintf(wanted, sizeof wanted, "%g", value);
  ASSERT_EQ(text, wanted) << std::bit_cast<std::uint64_t>(value);
}

// Bit patterns of all kinds, and numbers of few digits: the middles between two texts are among these.
TEST(TextNumber, DefaultFormIsThatOfSixSignificantDigits) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 100000; ++i) {
    expectSame(std::bit_cast<double>(random()));
    const auto decimal = static_cast<double>(random() % 20000000) / 2;
    const double scale = std::pow(10, static_cast<double>(random() % 12));
    for (const double value :
         {decimal / scale, -decimal / scale, static_cast<double>(static_cast<float>(decimal / scale))}) {
      expectSame(value);
      expectSame(std::nextafter(value, 0));
      expectSame(std::nextafter(value, 1e9));
    }
  }
  for (const double power : {1e-5, 1e-4, 1e-3, 1.0, 10.0, 99999.95, 999999.0, 999999.5, 1e6, 1e7})
    for (const double value : {power, std::nextafter(power, 0), std::nextafter(power, 1e9), -power})
      expectSame(value);
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double value : {0.0, -0.0, kInfinity, -kInfinity, std::nan("")}) expectSame(value);
}

TEST(TextNumber, OnlyAWholeFittingNumberIsOne) {
  EXPECT_EQ(parseNumber<int>("-17"), -17);
  for (const char* bad : {"", " 1", "1 ", "1x", "2147483648", "+1", "1.0"})
    EXPECT_FALSE(parseNumber<int>(bad)) << bad;
  EXPECT_EQ(parseNumber<double>("1e3"), 1000);
}

}  // namespace
