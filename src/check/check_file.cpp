#include <algorithm>

#include "base/failure.h"
#include "check/checkers.h"
#include "check/report.h"
#include "check/variants.h"
#include "platform/cofedata.h"
#include "platform/ofeio.h"

namespace orvmesh::check {
namespace {

// Elements and surfaces are counted with 32 bits here.
constexpr std::int64_t kMostItems = 0xFFFFFFFF;

void checkModel(const MeshModel& model, bool isComponentMesh, Collector& found) {
  checkReferences(model, found);
  checkHeaderCounts(model, found);
  checkComponents(model, isComponentMesh, found);
  checkMaterials(model, found);
  checkVolumes(model, found);
  {
    const NodeUses uses = usesOfNodes(model);
    checkUnusedNodes(model, uses, found);
    checkCoincidentNodes(model, uses, found);
    checkSensors(model, uses, found);
  }
  checkFaces(model, checkDuplicates(model, found), surfacesOffOwner(model), found);
  checkChannelEnds(model, found);
  checkChannelSurface(model, found);
}

// Whether the file itself is sound, so that only a value in it can have been refused.
bool opens(const std::string& path) {
  OFEIO_Manipulator file;
  const bool opened = file.beginReading(path.c_str(), nullptr, 0) == 1;
  file.endReading();
  return opened;
}

// The reader's line about a value, "elementsPlastic entry 3: node 2 is 99 (legal: 1 to 50)", as a finding.
// Other lines are no findings: nothing in such a file can be trusted.
bool tellOfRefusal(const std::string& error, Collector& found) {
  const auto legal = error.find(" (legal: ");
  if (legal == std::string::npos) return false;
  const std::string_view value = std::string_view(error).substr(0, legal);
  const std::string_view range = std::string_view(error).substr(legal + 9);
  const auto has = [](std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
  };
  const bool isNumber = has(value, " is ") && has(range, " to ") && !has(range, "model units");
  const Code code = has(value, ": material is ") ? Code::unknownMaterial
                    : isNumber                   ? Code::indexOutOfRange
                                                 : Code::illegalValue;
  found.add(code, 0, [&] { return Entity{"the reader stops at", 0, error, {}}; });
  return true;
}

bool comesBefore(const Finding& a, const Finding& b) {
  return a.severity != b.severity ? a.severity < b.severity : a.code < b.code;
}

// Rows of one code become one finding, but that what a variant documents stays apart, reason by reason.
std::vector<Finding> findingsOf(const std::vector<Row>& rows, std::optional<std::size_t> variant) {
  std::vector<Finding> findings;
  for (const Row& row : rows) {
    const Property* const property = variant ? propertyOf(*variant, row) : nullptr;
    const Severity severity = property != nullptr ? Severity::note : ruleOf(row.code).severity;
    const std::string reason = property != nullptr ? property->reason : "";
    auto at = std::find_if(findings.begin(), findings.end(), [&](const Finding& f) {
      return f.code == row.code && f.severity == severity && f.reason == reason;
    });
    if (at == findings.end()) at = findings.insert(at, {row.code, severity, reason, 0, {}});
    at->count += row.count;
    for (const Entity& entity : row.entities)
      if (at->entities.size() < Collector::kShown) at->entities.push_back(entity);
  }
  std::stable_sort(findings.begin(), findings.end(), comesBefore);
  return findings;
}

}  // namespace

std::uint64_t Report::countOf(Severity severity) const {
  return static_cast<std::uint64_t>(std::count_if(
      findings.begin(), findings.end(), [severity](const Finding& f) { return f.severity == severity; }));
}

Report checkFile(const std::string& path, std::optional<std::size_t> variant) {
  Report report;
  report.path = path;
  if (variant) report.variant = variantNames()[*variant];
  COFEData data;
  Collector found;
  const MeshModel& model = data.model();
  if (data.ReadDataBin(path.c_str(), nullptr, 0, false) == 1) {
    if (elementCount(model) + model.surfaces.count() > kMostItems)
      throw Failure(path, "has more than 4294967295 elements and surface elements; they cannot be checked");
    report.nodes = model.nodes.count();
    report.surfaces = model.surfaces.count();
    for (std::size_t block = 0; block < kBlocks; ++block)
      report.elements[block] = tableOf(model, block).count();
    checkModel(model, !variant, found);
  } else if (opens(path) && tellOfRefusal(data.errorText(), found)) {
    report.refused = true;
  } else {
    throw Failure(path, data.errorText());
  }
  report.findings = findingsOf(found.rows(), variant);
  if (!variant && !report.isSound())
    for (const std::size_t v : variantsExplaining(found.rows()))
      report.explainedBy.emplace_back(variantNames()[v]);
  return report;
}

}  // namespace orvmesh::check
