#include "check/report.h"

#include <nlohmann/json.hpp>

#include "base/text_number.h"
#include "check/variants.h"

namespace orvmesh::check {
namespace {

using Json = nlohmann::ordered_json;

std::string countText(std::uint64_t count, const char* what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string entityText(const Entity& entity) {
  std::string text = entity.kind;
  if (entity.number != 0) text += ' ' + std::to_string(entity.number);
  if (entity.position) {
    text += " at";
    for (const double x : *entity.position) appendDefault(text += ' ', x);
  }
  if (!entity.detail.empty()) text += ": " + entity.detail;
  return text;
}

std::string titleOf(const Report& report) {
  const auto& e = report.elements;
  if (report.refused) return report.path + ": the reader refuses it; nothing else was looked at\n";
  return report.path + ", " +
         (report.variant.empty() ? "a component mesh" : "a solver mesh of variant " + report.variant) + ": " +
         std::to_string(report.nodes) + " nodes, " + std::to_string(e[0]) + " plastic, " +
         std::to_string(e[1]) + " mold and " + std::to_string(e[2]) + " channel elements, " +
         std::to_string(report.surfaces) + " surface elements\n";
}

std::string findingText(const Finding& finding) {
  const Rule& rule = ruleOf(finding.code);
  std::string text = std::string(nameOf(finding.severity)) + ": " + rule.name + " (" +
                     std::to_string(finding.count) + "): " + rule.meaning + '\n';
  for (const Entity& entity : finding.entities) text += "    " + entityText(entity) + '\n';
  if (finding.count > finding.entities.size())
    text += "    ... and " + std::to_string(finding.count - finding.entities.size()) + " more\n";
  return text +
         (finding.reason.empty() ? std::string("  do: ") + rule.advice
                                 : "  as it should be: " + finding.reason) +
         '\n';
}

std::string hintText(const Report& report) {
  std::string names;
  for (const std::string& name : report.explainedBy) names += (names.empty() ? "" : ", ") + name;
  return names.empty()
             ? names
             : "All of this is as it should be in a solver mesh; if this is one, say which: --variant " +
                   names + '\n';
}

Json entityAsJson(const Entity& entity) {
  Json json{{"kind", entity.kind}};
  if (entity.number != 0) json["number"] = entity.number;
  if (entity.position) json["position"] = *entity.position;
  if (!entity.detail.empty()) json["detail"] = entity.detail;
  return json;
}

Json findingAsJson(const Finding& finding) {
  const Rule& rule = ruleOf(finding.code);
  Json json{{"code", rule.name},
            {"severity", nameOf(finding.severity)},
            {"count", finding.count},
            {"meaning", rule.meaning}};
  json[finding.reason.empty() ? "advice" : "reason"] =
      finding.reason.empty() ? std::string(rule.advice) : finding.reason;
  json["entities"] = Json::array();
  for (const Entity& entity : finding.entities) json["entities"].push_back(entityAsJson(entity));
  return json;
}

}  // namespace

std::string reportAsText(const Report& report) {
  std::string text = titleOf(report);
  for (const Finding& finding : report.findings) text += findingText(finding);
  text += countText(report.countOf(Severity::error), "error") + ", " +
          countText(report.countOf(Severity::warning), "warning") + ", " +
          countText(report.countOf(Severity::note), "note") + '\n';
  return text + hintText(report);
}

std::string reportAsJson(const Report& report) {
  Json json{
      {"file", report.path},
      {"variant", report.variant.empty() ? Json(nullptr) : Json(report.variant)},
      {"nodes", report.nodes},
      {"elements",
       {{"plastic", report.elements[0]}, {"mold", report.elements[1]}, {"channel", report.elements[2]}}},
      {"surfaces", report.surfaces},
      {"sound", report.isSound()},
      {"errors", report.countOf(Severity::error)},
      {"warnings", report.countOf(Severity::warning)},
      {"notes", report.countOf(Severity::note)},
      {"findings", Json::array()},
      {"explainedBy", report.explainedBy}};
  for (const Finding& finding : report.findings) json["findings"].push_back(findingAsJson(finding));
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

std::string rulesAsMarkdown() {
  std::string text = "| code | severity | what it means | what to do |\n|---|---|---|---|\n";
  for (const Rule& rule : allRules())
    text += std::string("| `") + rule.name + "` | " + nameOf(rule.severity) + " | " + rule.meaning + " | " +
            rule.advice + " |\n";
  text += "\n| variant | code | why it is a note there |\n|---|---|---|\n";
  for (const Property& property : allProperties())
    text += std::string("| `") + variantNames()[property.variant] + "` | `" + ruleOf(property.code).name +
            "` | " + property.reason + " |\n";
  return text;
}

}  // namespace orvmesh::check
