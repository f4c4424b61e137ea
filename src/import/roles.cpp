#include "import/roles.h"

#include <limits>
#include <vector>

#include "base/face_tag.h"
#include "base/nearest_name.h"
#include "base/ranges.h"
#include "base/text_number.h"

namespace orvmesh::importing {
namespace {

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
// Below the inserts; a mold material from 5001 on would be taken for one.
constexpr NumberRange kMoldMaterial{1, 5000};
constexpr NumberRange kPartMaterial{1, 9999};
constexpr NumberRange kInsertMaterial{kInsertWritten.first, kInsertTyped.last};
constexpr NumberRange kGate{1, static_cast<std::int32_t>(kTagGroupMask)};
constexpr NumberRange kSensorType{1, 6};

// A word that begins a role text, and the number behind it.
struct Form {
  const char* words;
  RoleKind kind;
  int dimension;
  NumberRange number;
  std::int32_t preset;  // where the number is left out; 0 where it must not be
  const char* usage;
};
constexpr Form kForms[] = {
    {"part", RoleKind::part, 3, kPartMaterial, 1, "part or part:MATERIAL"},
    {"hotrunner", RoleKind::hotRunner, 3, kHotRunnerGroup, 0, "hotrunner:GROUP"},
    {"insert", RoleKind::insert, 3, kInsertMaterial, 0, "insert:MATERIAL"},
    {"moldbase", RoleKind::moldBase, 3, kMoldMaterial, 1, "moldbase or moldbase:MATERIAL"},
    {"channel", RoleKind::coolant, 3, kTaggedGroup, 0, "channel:GROUP"},
    {"heater", RoleKind::heater, 3, kTaggedGroup, 0, "heater:GROUP"},
    {"inlet", RoleKind::inlet, 2, kTaggedGroup, 0, "inlet:GROUP"},
    {"outlet", RoleKind::outlet, 2, kTaggedGroup, 0, "outlet:GROUP"},
    {"hose", RoleKind::hose, 2, kTaggedGroup, 0, "hose:GROUP"},
    {"gate:common", RoleKind::commonGate, 2, kGate, 0, "gate:common:GROUP"},
    {"gate:hotcold", RoleKind::hotColdGate, 2, kGate, 0, "gate:hotcold:GROUP"},
    {"gate", RoleKind::commonGate, 2, kGate, 0, "gate:GROUP"},
    {"sensor", RoleKind::sensor, 0, kSensorType, 0, "sensor:TYPE:DISPLAY"},
    {"ignore", RoleKind::ignore, -1, {0, 0}, 0, "ignore"},
};

// Whether the text is these words alone or has something behind a colon.
bool begins(std::string_view text, std::string_view words) {
  return text.starts_with(words) && (text.size() == words.size() || text[words.size()] == ':');
}

const Form* formOf(std::string_view text) {
  for (const auto& form : kForms)
    if (begins(text, form.words)) return &form;
  return nullptr;
}
const Form& formOf(RoleKind kind) {
  const Form* form = kForms;
  while (form->kind != kind) ++form;
  return *form;
}

std::string nearestUsage(std::string_view text) {
  std::vector<std::string_view> words;
  for (const auto& form : kForms) words.emplace_back(form.words);
  return formOf(nearestName(text.substr(0, text.find(':')), words))->usage;
}

std::string wrongNumber(const Form& form, std::string_view found) {
  std::string text = "expected " + std::string(form.usage) + " with a number in ";
  appendInt(text, form.number.first);
  text += "..";
  appendInt(text, form.number.last);
  return found.empty() ? text : text + ", found '" + std::string(found) + "'";
}

std::string readDisplay(std::string_view text, std::int32_t& display) {
  const auto number = parseNumber<std::int32_t>(text);
  if (!number || *number < 1)
    return "expected sensor:TYPE:DISPLAY with a display number in 1.." + std::to_string(kLargest);
  display = *number;
  return {};
}

std::string readNumbers(const Form& form, std::string_view text, Role& role) {
  if (form.kind == RoleKind::ignore) return text.empty() ? "" : "expected ignore alone";
  if (text.empty()) {
    role.number = form.preset;
    return form.preset == 0 ? wrongNumber(form, {}) : "";
  }
  text.remove_prefix(1);
  const auto colon = form.kind == RoleKind::sensor ? text.find(':') : text.npos;
  const auto number = parseNumber<std::int32_t>(text.substr(0, colon));
  if (!number || !form.number.holds(*number)) return wrongNumber(form, text.substr(0, colon));
  role.number = *number;
  if (form.kind != RoleKind::sensor) return {};
  return readDisplay(colon == text.npos ? "" : text.substr(colon + 1), role.display);
}

}  // namespace

int dimensionOf(RoleKind kind) { return formOf(kind).dimension; }

std::string textOf(const Role& role) {
  std::string text = formOf(role.kind).words;
  if (role.kind == RoleKind::ignore) return text;
  text += ':';
  appendInt(text, role.number);
  if (role.kind != RoleKind::sensor) return text;
  text += ':';
  appendInt(text, role.display);
  return text;
}

RoleText parseRole(std::string_view text) {
  RoleText result;
  const Form* form = formOf(text);
  if (form == nullptr) {
    result.unknown = true;
    result.problem = "no known role; the nearest is " + nearestUsage(text);
    return result;
  }
  result.role.kind = form->kind;
  result.problem = readNumbers(*form, text.substr(std::string_view(form->words).size()), result.role);
  return result;
}

}  // namespace orvmesh::importing
