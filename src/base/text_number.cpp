#include "base/text_number.h"

#include <cmath>

namespace orvmesh {
namespace {

constexpr int kDigits = 6;
constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};

// Six digits and the power of ten of the first one; no digits where the quick way cannot tell them.
struct SixDigits {
  std::int32_t digits = 0;
  int exponent = 0;
};

// For magnitudes that are written without an exponent. The scaled value is off by at most 2^-53 of itself,
// about 1e-10; where it lies closer than 1e-9 to the middle between two integers the rounding stays open.
SixDigits sixDigits(double magnitude) {
  if (!(magnitude >= 1e-4 && magnitude < 999999)) return {};
  int exponent = 5;
  while (exponent > -4 && magnitude * kPowers[5 - exponent] < 100000) --exponent;
  const double scaled = magnitude * kPowers[5 - exponent];
  const auto below = static_cast<std::int32_t>(scaled);
  const double rest = scaled - below;
  if (std::abs(rest - 0.5) < 1e-9) return {};
  const std::int32_t digits = below + (rest > 0.5 ? 1 : 0);
  return digits == 1000000 ? SixDigits{100000, exponent + 1} : SixDigits{digits, exponent};
}

}  // namespace

char* writeDefault(char* at, double value) {
  const auto [digits, exponent] = sixDigits(std::abs(value));
  if (digits == 0 || exponent == kDigits)
    return std::to_chars(at, at + kNumberRoom, value, std::chars_format::general, kDigits).ptr;
  if (value < 0) *at++ = '-';
  char text[kDigits];
  std::int32_t rest = digits;
  for (int i = kDigits - 1; i >= 0; --i, rest /= 10) text[i] = static_cast<char>('0' + rest % 10);
  int used = kDigits;
  while (used > 1 && text[used - 1] == '0') --used;
  const int whole = exponent + 1;  // digits before the point
  for (int i = 0; i < whole; ++i) *at++ = text[i];
  if (used <= whole) return at;
  if (whole <= 0) *at++ = '0';
  *at++ = '.';
  for (int i = whole; i < 0; ++i) *at++ = '0';
  for (int i = whole > 0 ? whole : 0; i < used; ++i) *at++ = text[i];
  return at;
}

}  // namespace orvmesh
