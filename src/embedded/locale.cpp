#include "platform/locale.h"

#include <locale>
#include <stdexcept>

std::string COrvLocale::GetSystemDefaultLocale() {
  try {
    // The empty name is the locale of the environment (LC_ALL, LC_CTYPE, LANG).
    return std::locale("").name();
  } catch (const std::runtime_error&) {
    return "C";
  }
}
