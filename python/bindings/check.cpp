#include "check/report.h"

#include <pybind11/stl.h>

#include "bindings/arrays.h"
#include "bindings/parts.h"
#include "check/variants.h"

namespace orvmesh::python {
namespace {

py::dict entityOf(const check::Entity& entity) {
  py::dict result;
  result["kind"] = entity.kind;
  result["number"] = entity.number;
  result["detail"] = entity.detail;
  result["position"] = entity.position;
  return result;
}

py::dict findingOf(const check::Finding& finding) {
  const check::Rule& rule = check::ruleOf(finding.code);
  py::dict result;
  result["code"] = rule.name;
  result["severity"] = check::nameOf(finding.severity);
  result["entity_count"] = finding.count;
  result["meaning"] = rule.meaning;
  result["advice"] = rule.advice;
  result["reason"] = finding.reason;
  py::list entities;
  for (const auto& entity : finding.entities) entities.append(entityOf(entity));
  result["entities"] = entities;
  return result;
}

std::optional<std::size_t> variantAt(const std::optional<std::string>& name) {
  if (!name) return std::nullopt;
  const auto variant = check::variantAt(*name);
  if (!variant) throw Fault(kArgument, "", "variant: \"" + *name + "\" is none (see VARIANTS)");
  return variant;
}

py::dict checkMesh(const Path& path, const std::optional<std::string>& variantName) {
  const auto variant = variantAt(variantName);
  const std::string name = path.string();
  const auto report = unlocked({name, ""}, [&] { return check::checkFile(name, variant); });
  py::dict result;
  result["sound"] = report.isSound();
  result["refused"] = report.refused;
  result["nodes"] = report.nodes;
  result["elements"] = py::make_tuple(report.elements[0], report.elements[1], report.elements[2]);
  result["surfaces"] = report.surfaces;
  result["explained_by"] = report.explainedBy;
  result["text"] = check::reportAsText(report);
  py::list findings;
  for (const auto& finding : report.findings) findings.append(findingOf(finding));
  result["findings"] = findings;
  return result;
}

}  // namespace

void addCheck(py::module_& module) {
  module.def(
      "check_mesh", &checkMesh, py::arg("path"), py::arg("variant"),
      "Looks for what is wrong with an OFE file; a dict with a list of findings. Raises Error where it "
      "cannot.");
}

}  // namespace orvmesh::python
