#include "base/field_scan.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <system_error>

namespace orvmesh {
namespace {

bool isPlusBeforeNumber(std::string_view text) {
  return text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
}
bool isHex(std::string_view digits) { return digits.starts_with("0x") || digits.starts_with("0X"); }

// For texts that not even a long double holds.
bool isTiny(std::string_view number) {
  const auto exponent = number.find_first_of("eEpP");
  if (exponent != number.npos && exponent + 1 < number.size()) return number[exponent + 1] == '-';
  return number.find_first_not_of("-0") == number.find('.');
}

double nearestTo(std::string_view text, const char* end, long double wide, std::errc error) {
  if (error == std::errc{}) return static_cast<double>(wide);
  const std::string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
  const double size = isTiny(number) ? 0 : std::numeric_limits<double>::infinity();
  return number.front() == '-' ? -size : size;
}

}  // namespace

std::string_view FieldScan::word() {
  skipBlanks();
  const auto length =
      static_cast<std::size_t>(std::find_if(rest_.begin(), rest_.end(), isBlank) - rest_.begin());
  const std::string_view found = rest_.substr(0, length);
  rest_.remove_prefix(length);
  return found;
}

bool FieldScan::atEnd() {
  skipBlanks();
  return rest_.empty();
}

std::size_t FieldScan::countWords() {
  std::size_t count = 0;
  while (!word().empty()) ++count;
  return count;
}

bool FieldScan::number(double& value) {
  skipBlanks();
  if (isPlusBeforeNumber(rest_)) rest_.remove_prefix(1);
  const bool isNegative = rest_.starts_with('-');
  if (isHex(rest_.substr(isNegative ? 1 : 0))) return hexNumber(isNegative, value);
  const char* const last = rest_.data() + rest_.size();
  const auto [end, error] = std::from_chars(rest_.data(), last, value);
  if (error == std::errc::result_out_of_range) return numberOutOfRange(value);
  if (error != std::errc{}) return false;
  rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
  return true;
}

bool FieldScan::hexNumber(bool isNegative, double& value) {
  const std::string_view digits = rest_.substr(isNegative ? 3 : 2);
  long double wide = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), wide, std::chars_format::hex);
  if (error == std::errc::invalid_argument || digits.starts_with('-')) {  // "0x" alone: the 0 is a number
    value = isNegative ? -0.0 : 0;
    rest_ = digits;
    return true;
  }
  const double size = nearestTo(digits, end, wide, error);
  value = isNegative ? -size : size;
  rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
  return true;
}

bool FieldScan::numberOutOfRange(double& value) {
  long double wide = 0;
  const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), wide);
  value = nearestTo(rest_, end, wide, error);
  rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
  return true;
}

bool FieldScan::integer(int& value) {
  skipBlanks();
  if (isPlusBeforeNumber(rest_)) rest_.remove_prefix(1);
  const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
  if (error != std::errc{}) return false;
  rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
  return true;
}

}  // namespace orvmesh
