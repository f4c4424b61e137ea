#pragma once

#include <string>

class COrvLocale {
 public:
  // The name under which std::locale finds the system's default locale; "C" when the system names none that
  // exists.
  static std::string GetSystemDefaultLocale();
};
