// SNC files against a mesh with a few sensors: what is accepted keeps its number of lines, and rewriting
// again in either numbering never fails.
#include <cstdlib>
#include <sstream>

#include "sensor/snc_rewrite.h"

using namespace orvmesh::sensor;

namespace {

std::string rewrite(const std::string& text, const SensorMaps& maps, SncReport& report) {
  std::istringstream in(text);
  std::string out;
  const auto sink = [&](std::string_view piece) {
    out += piece;
    return true;
  };
  report = rewriteSnc(in, sink, maps);
  return out;
}

}  // namespace

// The first byte chooses how many sensors there are.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::int32_t each = data[0] % 4;
  const InsertFlags flags{{true, false, true}, {false, true, true}};
  const SensorMaps maps = makeMaps({{1, each, each, each, 1}}, MapVariant::standard, flags);
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  SncReport report;
  const std::string out = rewrite(text, maps, report);
  if (out.rfind("1\n", 0) != 0 || out.size() < 7 || out.substr(out.size() - 5) != "[EOF]") std::abort();
  // Numbers grow to 13 characters at most, and lines that are missing once for each sensor.
  if (out.size() > 20 * text.size() + 1000) std::abort();
  if (report.error.empty() && text.find("[EOF]") == text.npos) std::abort();
  SncReport again;
  (void)rewrite(out, makeMaps({{1, each, each, each, 1}}, MapVariant::fast, {}), again);
  return 0;
}
