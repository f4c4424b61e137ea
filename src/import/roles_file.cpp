#include "import/roles_file.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string_view>

#include "base/text_number.h"
#include "import/json_value.h"

namespace orvmesh::importing {
namespace {

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();

Role readRole(const JsonValue& value) {
  const auto parsed = parseRole(value.text());
  if (!parsed.problem.empty()) value.fail("'" + value.text() + "': " + parsed.problem);
  return parsed.role;
}

Role readVolumeRole(const std::string& text, const JsonValue& where) {
  const auto parsed = parseRole(text);
  if (!parsed.problem.empty()) where.fail("'" + text + "': " + parsed.problem);
  if (!isVolume(parsed.role.kind)) where.fail("'" + text + "' is no role of a volume");
  return parsed.role;
}

void readSensor(const JsonValue& entry, RolesFile& roles) {
  entry.object({"type", "display", "position"});
  const Role role{RoleKind::sensor, entry["type"].integer(1, 6), entry["display"].integer(1, kLargest)};
  roles.sensors.push_back({role, entry["position"].position()});
}

// The stored type of a condition; the code "??" has none.
std::int32_t readCode(const JsonValue& value) {
  static constexpr std::string_view kCodes[] = {"EM", "EC", "OM", "PR", "MW", "SM"};
  const auto found = std::find(std::begin(kCodes), std::end(kCodes), value.text());
  if (found == std::end(kCodes))
    value.fail("expected EM, EC, OM, PR, MW or SM, found '" + value.text() + "'");
  return static_cast<std::int32_t>(found - std::begin(kCodes)) + 1;
}

void readCondition(const JsonValue& entry, RolesFile& roles) {
  entry.object({"group", "node", "code", "value"});
  if (entry.has("group") == entry.has("node")) entry.fail("needs either 'group' or 'node'");
  RolesFile::Condition condition{};
  if (entry.has("group")) {
    condition.group = entry["group"].text();
  } else {
    condition.node = static_cast<std::uint64_t>(entry["node"].integer(1, kLargest));
  }
  condition.type = readCode(entry["code"]);
  condition.value = static_cast<float>(entry["value"].number());
  condition.path = entry.path();
  roles.conditions.push_back(std::move(condition));
}

void readBcName(const JsonValue& entry, RolesFile& roles) {
  entry.object({"name", "type", "thickness", "branchId", "branchOutletId", "branchNumber", "groups"});
  RolesFile::BcName name{
      entry["name"].text(), entry["type"].integer(kSmallest, kLargest), {}, {}, entry.path()};
  static constexpr const char* kIntegers[][2] = {
      {"branchId", "BRANCH_ID"}, {"branchOutletId", "BRANCH_OUTLET_ID"}, {"branchNumber", "BRANCH_NUMBER"}};
  for (const auto& [key, property] : kIntegers)
    if (entry.has(key))
      name.properties.emplace_back(property, std::to_string(entry[key].integer(kSmallest, kLargest)));
  if (entry.has("thickness")) {
    std::string text;
    appendExact(text, entry["thickness"].number());
    name.properties.emplace_back("THICKNESS", text);
  }
  if (entry.has("groups"))
    entry["groups"].eachEntry([&](const JsonValue& group) { name.groups.push_back(group.text()); });
  roles.bcNames.push_back(std::move(name));
}

// One number for both ends or a pair.
void readDiameters(const JsonValue& value, float (&diameters)[2]) {
  if (!value.isArray()) {
    diameters[0] = diameters[1] = static_cast<float>(value.number());
    return;
  }
  float* out = diameters;
  value.eachEntry([&](const JsonValue& entry) { *out++ = static_cast<float>(entry.number()); }, 2, 2);
}

void readLine(const JsonValue& entry, std::vector<RolesFile::Line>& lines) {
  entry.object({"channel", "from", "to", "diameter"});
  RolesFile::Line line{};
  line.channel = readVolumeRole(entry["channel"].text(), entry["channel"]);
  if (blockOf(line.channel.kind) != Block::channel)
    entry["channel"].fail("expected channel:GROUP or heater:GROUP");
  line.ends[0] = entry["from"].position();
  line.ends[1] = entry["to"].position();
  readDiameters(entry["diameter"], line.diameters);
  lines.push_back(line);
}

RolesFile::Layout readLayout(const JsonValue& value) {
  value.object({"points", "beams"});
  RolesFile::Layout layout;
  value["points"].eachEntry([&](const JsonValue& entry) {
    entry.object({"type", "position"});
    layout.points.push_back({entry["type"].integer(kSmallest, kLargest), entry["position"].position()});
  });
  const auto points = static_cast<std::int32_t>(layout.points.size());
  value["beams"].eachEntry([&](const JsonValue& entry) {
    entry.object({"from", "to", "diameter", "code", "beamCode"});
    RolesFile::LayoutBeam beam{{entry["from"].integer(1, points), entry["to"].integer(1, points)}, {}, 0, 0};
    readDiameters(entry["diameter"], beam.diameters);
    if (entry.has("code")) beam.code = entry["code"].integer(kSmallest, kLargest);
    if (entry.has("beamCode")) beam.beamCode = entry["beamCode"].integer(kSmallest, kLargest);
    layout.beams.push_back(beam);
  });
  return layout;
}

// A name alone or with the flag that mold layers have.
void readLayerName(const std::string& roleText, const JsonValue& value, RolesFile& roles) {
  const auto role = readVolumeRole(roleText, value);
  if (!value.isObject()) {
    roles.layerNames[role] = {value.text(), 0};
    return;
  }
  value.object({"name", "flag"});
  RolesFile::LayerName layer{value["name"].text(), 0};
  if (value.has("flag")) {
    if (blockOf(role.kind) != Block::mold) value["flag"].fail("only layers of moldbase and insert have one");
    layer.flag = value["flag"].integer(kSmallest, kLargest);
  }
  roles.layerNames[role] = layer;
}

Outline readOutline(const JsonValue& value) {
  value.object({"points", "faces"});
  Outline outline;
  value["points"].eachEntry([&](const JsonValue& entry) { outline.points.push_back(entry.position()); });
  const auto points = static_cast<std::int32_t>(outline.points.size());
  if (!value.has("faces")) return outline;
  value["faces"].eachEntry([&](const JsonValue& entry) {
    entry.object({"nodes", "codes"});
    Outline::Face face{};
    auto node = face.nodes.begin();
    entry["nodes"].eachEntry([&](const JsonValue& n) { *node++ = n.integer(1, points); }, 3, 4);
    if (node != face.nodes.end()) *node = face.nodes[2];
    auto code = face.codes.begin();
    if (entry.has("codes"))
      entry["codes"].eachEntry([&](const JsonValue& c) { *code++ = c.integer(kSmallest, kLargest); }, 2, 2);
    outline.faces.push_back(face);
  });
  return outline;
}

// Points and faces, or whether import takes them from the channels.
void readChannelSurface(const JsonValue& value, RolesFile& roles) {
  if (value.isObject()) {
    roles.channelSurface = readOutline(value);
  } else {
    roles.deriveChannelSurface = value.truth();
  }
}

double readQuality(const JsonValue& value) {
  const auto quality = value.number();
  if (!(quality >= 0 && quality <= 1)) value.fail("expected a number from 0 to 1");
  return quality;
}

void readDirection(const JsonValue& value, RolesFile& roles) {
  roles.partingDirection = value.position();
  const auto& d = roles.partingDirection;
  if (d[0] == 0 && d[1] == 0 && d[2] == 0) value.fail("must not be zero");
}

bool readUnlisted(const JsonValue& value) {
  const auto text = value.text();
  if (text != "refuse" && text != "ignore") value.fail("expected refuse or ignore, found '" + text + "'");
  return text == "ignore";
}

// Every key that a roles file may have.
struct Key {
  const char* name;
  void (*read)(const JsonValue&, RolesFile&);
};
constexpr Key kKeys[] = {
    {"groups",
     [](const JsonValue& value, RolesFile& roles) {
       value.eachMember([&](const std::string& group, const JsonValue& role) {
         roles.mappings.push_back({group, readRole(role)});
       });
     }},
    {"unlisted",
     [](const JsonValue& value, RolesFile& roles) { roles.ignoreUnlisted = readUnlisted(value); }},
    {"sensors",
     [](const JsonValue& value, RolesFile& roles) {
       value.eachEntry([&](const JsonValue& entry) { readSensor(entry, roles); });
     }},
    {"boundaryConditions",
     [](const JsonValue& value, RolesFile& roles) {
       value.eachEntry([&](const JsonValue& entry) { readCondition(entry, roles); });
     }},
    {"bcNames",
     [](const JsonValue& value, RolesFile& roles) {
       value.eachEntry([&](const JsonValue& entry) { readBcName(entry, roles); });
     }},
    {"layerNames",
     [](const JsonValue& value, RolesFile& roles) {
       value.eachMember(
           [&](const std::string& role, const JsonValue& name) { readLayerName(role, name, roles); });
     }},
    {"coolantLines",
     [](const JsonValue& value, RolesFile& roles) {
       auto& lines = roles.lines.emplace();
       value.eachEntry([&](const JsonValue& entry) { readLine(entry, lines); });
     }},
    {"layout", [](const JsonValue& value, RolesFile& roles) { roles.layout = readLayout(value); }},
    {"moldInsert", [](const JsonValue& value, RolesFile& roles) { roles.moldInsert = readOutline(value); }},
    {"channelSurface", readChannelSurface},
    {"badQuality", [](const JsonValue& value, RolesFile& roles) { roles.badQuality = readQuality(value); }},
    {"partingDirection", readDirection},
};

}  // namespace

RolesFile readRolesFile(const std::string& path) {
  const auto json = parseJsonFile(path);
  RolesFile roles;
  roles.path = path;
  const JsonValue top(json, path, "");
  std::vector<std::string_view> names;
  for (const auto& key : kKeys) names.emplace_back(key.name);
  top.object(names);
  for (const auto& key : kKeys)
    if (top.has(key.name)) key.read(top[key.name], roles);
  return roles;
}

}  // namespace orvmesh::importing
