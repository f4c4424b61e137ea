#include <nlohmann/json.hpp>

#include "view/file_info.h"

namespace orvmesh::view {
namespace {

using Json = nlohmann::ordered_json;

Json typesAsJson(const TypeCounts& types) {
  Json json = Json::object();
  for (std::size_t i = 0; i < types.size(); ++i) json[kElementTypes[i]] = types[i];
  return json;
}

Json componentAsJson(const ComponentInfo& component, std::size_t index) {
  Json parts = Json::array();
  for (const auto& [key, types] : component.parts)
    parts.push_back({{"a", key.first},
                     {"b", key.second},
                     {"role", roleOf(index, key.first, key.second)},
                     {"types", typesAsJson(types)}});
  return {{"elements", component.elements},
          {"bad", component.bad},
          {"types", typesAsJson(component.types)},
          {"parts", std::move(parts)}};
}

Json surfacesAsJson(const FileInfo& info) {
  Json rows = Json::array();
  for (const auto& [key, counts] : info.interfaces)
    rows.push_back({{"interfaceId", key.first},
                    {"boundaryType", key.second},
                    {"triangles", counts.triangles},
                    {"quadrangles", counts.quadrangles},
                    {"withList", counts.withList}});
  return rows;
}

}  // namespace

std::string fileInfoAsJson(const FileInfo& info) {
  Json json{{"file", info.path},
            {"version", info.header[m_HEADER_Version]},
            {"writtenVersion", info.writtenVersion},
            {"source", info.header.source},
            {"dateTime", info.header.dateTime},
            {"unit", info.header.unit},
            {"remark", info.header.remark},
            {"lengthFactor", info.lengthFactor},
            {"nodes", info.nodes}};
  if (info.nodes > 0) json["boundingBox"] = {info.boxMin, info.boxMax};
  for (std::size_t i = 0; i < info.components.size(); ++i)
    json["components"][std::string(info.components[i].name)] = componentAsJson(info.components[i], i);
  json["surfaces"] = info.surfaces;
  json["interfaces"] = surfacesAsJson(info);
  json["boundaryConditions"] = info.conditions;
  json["sensors"] = info.sensors;
  for (const auto& [name, count] : info.others) json["others"][name] = count;
  json["notes"] = info.notes;
  json["warnings"] = info.warnings;
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace orvmesh::view
