#pragma once

#include <gtest/gtest.h>
#include <orvmesh/mesh_format_transfer.h>

#include <string>
#include <vector>

#include "support/json_mesh.h"

namespace orvmesh::test {

// A source in which every rule of every variant has something to decide. Only numbers matter: the elements
// share the faces that they name, their geometry is arbitrary. The header's word i holds 1000 + i, but for
// version and scale.
//
//   contacts: part P1 and insert M1 share 1 2 3; insert M1 and mold M2 share 1 2 8; M4 (10001, written as an
//   insert) and M3 (5001, written as mold) share 9 10 11.
inline const char* const kMoldBlocks = R"(
  "elementsPlastic": [
    { "nodes": [1, 2, 3, 4], "a": 1, "b": 200, "value": 0.5 },
    { "nodes": [2, 3, 4, 5], "a": 2, "b": 201, "value": 0 },
    { "nodes": [3, 4, 5, 6], "a": 1, "b": 300, "value": 0 },
    { "nodes": [4, 5, 6, 7], "a": 1, "b": 301, "value": 0 }],
  "elementsMoldBase": [
    { "nodes": [1, 2, 3, 8], "a": 5002, "b": 11, "value": 0 },
    { "nodes": [1, 2, 8, 9], "a": 1, "b": 12, "value": 0 },
    { "nodes": [8, 9, 10, 11], "a": 5001, "b": 13, "value": 0 },
    { "nodes": [9, 10, 11, 12], "a": 10001, "b": 14, "value": 0 },
    { "nodes": [10, 11, 12, 15], "a": 10002, "b": 15, "value": 0 },
    { "nodes": [13, 14, 15, 16], "a": 10900, "b": 16, "value": 0 },
    { "nodes": [12, 13, 14, 15, 16], "a": 10905, "b": 17, "value": 0 }],
  "elementsCoolChannel": [
    { "nodes": [12, 13, 15, 16], "a": 1, "b": 1, "value": 0 },
    { "nodes": [13, 14, 16, 1], "a": 2, "b": 3, "value": 0 },
    { "nodes": [2, 14, 15, 16], "a": 3, "b": 4, "value": 0 },
    { "nodes": [13, 14, 15, 1], "a": 2, "b": 3, "value": 0 }],
  "elementSurfaces": [
    { "nodes": [1, 3, 2, 2], "interfaceId": 1, "ownerCode": 1, "contactCode": 5002, "boundaryType": 0, "elementNo": 1, "tag": 1 },
    { "nodes": [1, 2, 3, 3], "interfaceId": 2, "ownerCode": 5002, "contactCode": 1, "boundaryType": 0, "elementNo": 1, "tag": 0 },
    { "nodes": [2, 3, 5, 0], "interfaceId": 1, "ownerCode": 2, "contactCode": 1, "boundaryType": 1, "elementNo": 2, "tag": 1 },
    { "nodes": [3, 4, 5, 5], "interfaceId": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 4, "elementNo": 3, "tag": 1342177795 },
    { "nodes": [3, 4, 6, 6], "interfaceId": 1, "ownerCode": 1, "contactCode": 0, "boundaryType": 5, "elementNo": 3, "tag": 0 },
    { "nodes": [2, 4, 5, 5], "interfaceId": 1, "ownerCode": 2, "contactCode": 1, "boundaryType": 5, "elementNo": 2, "tag": 16 },
    { "nodes": [4, 5, 6, 7], "interfaceId": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 9, "elementNo": 4, "tag": 774 },
    { "nodes": [1, 2, 4, 4], "interfaceId": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 13, "elementNo": 1, "tag": 1 },
    { "nodes": [3, 5, 6, 6], "interfaceId": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 2, "elementNo": 3, "tag": 0 },
    { "nodes": [12, 13, 15, 15], "interfaceId": 3, "ownerCode": 1, "contactCode": 10002, "boundaryType": 1, "elementNo": 1, "tag": 2147483904 },
    { "nodes": [12, 15, 16, 16], "interfaceId": 4, "ownerCode": 1, "contactCode": 1, "boundaryType": 9, "elementNo": 1, "tag": 2147484160 },
    { "nodes": [13, 14, 16, 16], "interfaceId": 3, "ownerCode": 2, "contactCode": 1, "boundaryType": 3, "elementNo": 2, "tag": 5 },
    { "nodes": [13, 14, 16, 16], "interfaceId": 4, "ownerCode": 2, "contactCode": 0, "boundaryType": 30, "elementNo": 2, "tag": 77 },
    { "nodes": [2, 14, 15, 15], "interfaceId": 4, "ownerCode": 3, "contactCode": 2, "boundaryType": 4, "elementNo": 3, "tag": 78 },
    { "nodes": [13, 15, 16, 16], "interfaceId": 3, "ownerCode": 1, "contactCode": 10002, "boundaryType": 1, "elementNo": 1, "tag": 9 },
    { "nodes": [12, 13, 16, 16], "interfaceId": 4, "ownerCode": 1, "contactCode": 1, "boundaryType": 6, "elementNo": 1, "tag": 0 },
    { "nodes": [5, 6, 7, 7], "interfaceId": 7, "ownerCode": 8, "contactCode": 9, "boundaryType": 5, "elementNo": 99, "tag": 11 },
    { "nodes": [1, 3, 4, 4], "interfaceId": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 4, "elementNo": 1, "tag": 2307 }],
  "boundaryConditions": [
    { "entityNo": 3, "type": 9, "value": 1 }, { "entityNo": 4, "type": 1, "value": 2.5 },
    { "entityNo": 5, "type": 0, "value": 3 }, { "entityNo": 6, "type": 2, "value": 4 },
    { "entityNo": 7, "type": 3, "value": 5 }, { "entityNo": 8, "type": 4, "value": 6 },
    { "entityNo": 9, "type": 5, "value": 7 }, { "entityNo": 10, "type": 6, "value": 8 },
    { "entityNo": 11, "type": 7, "value": 9 }],
  "badElementsPlastic": [[2, 5], [3, 15], [4, 16], [5, 99]],
  "badElementsMoldBase": [[1, 6], [2, 7], [3, 8], [4, 9], [6, 10]],
  "badElementsCoolChannel": [[1, 11], [2, 12], [3, 13], [4, 14]],
  "coolantChannelDiameters": [
    { "nodes": [12, 13, 15], "diameter": 8 }, { "nodes": [3, 4, 5, 6, 7], "diameter": 10 },
    { "nodes": [12, 4, 5], "diameter": 9 }, { "nodes": [12, 13, 15], "diameter": 8.125 },
    { "nodes": [12, 6, 7], "diameter": 7 }, { "nodes": [13, 16, 15], "diameter": 6 }],
  "coolantChannelLines": [[1, 2, 3, 8, 1, 1, 1, 0], [4, 5, 6, 8, 1, 1, 2, 0],
                          [7, 8, 9, 7, 3, 2, 1, 0], [10, 11, 12, 7, 3, 2, 2, 0]],
  "coolantChannelLayout": [
    [1, 100, 100, 100, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0],
    [0, 0, 0, 0, 0, 1, 2, 8.5, 9.25, 7, 1, 21, 0.125, 0.25, 0.5, 1, 2, 3, 4, 5],
    [1, 200, 50, 25, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0]],
  "sensors": [
    { "type": 6, "ids": [7, 1, 1, 1], "position": [1, 2, 3] }, { "type": 4, "ids": [3, 0, 0, 1], "position": [4, 5, 6] },
    { "type": 4, "ids": [4, 0, 0, 2], "position": [7, 8, 9] }, { "type": 1, "ids": [2, 0, 0, 3], "position": [1, 1, 1] },
    { "type": 5, "ids": [13, 0, 0, 4], "position": [2, 2, 2] }, { "type": 5, "ids": [8, 0, 0, 5], "position": [3, 3, 3] },
    { "type": 3, "ids": [4, 4, 0, 6], "position": [4, 4, 4] }, { "type": 3, "ids": [99, 99, 0, 7], "position": [5, 5, 5] },
    { "type": 2, "ids": [5, 0, 0, 8], "position": [6, 6, 6] }, { "type": 4, "ids": [99, 0, 0, 9], "position": [7, 7, 7] },
    { "type": 5, "ids": [-3, 0, 0, 10], "position": [8, 8, 8] }, { "type": 4, "ids": [1, 0, 0, 11], "position": [9, 9, 9] }],
  "moldMetal": [
    { "isPoint": 0, "position": [0, 0, 0], "nodes": [1, 2, 3, 0], "codeA": 5, "codeB": 6 },
    { "isPoint": 1, "position": [1, 2, 3], "nodes": [0, 0, 0, 0], "codeA": 0, "codeB": 0 },
    { "isPoint": 0, "position": [0, 0, 0], "nodes": [4, 3, 2, 1], "codeA": 7, "codeB": 8 }],
  "coolingChannelSurface": [
    { "isPoint": 1, "position": [4, 5, 6], "nodes": [0, 0, 0, 0], "codeA": 0, "codeB": 0 },
    { "isPoint": 0, "position": [0, 0, 0], "nodes": [1, 2, 3, 4], "codeA": 1, "codeB": 2 }],
  "surfaceBoundaryConditionNames": [
    { "name": "wall", "type": 7, "dictionary": { "THICKNESS": "2.5", "BRANCH_ID": "9" } },
    { "name": "first", "type": 3, "dictionary": { "BRANCH_ID": "1", "BRANCH_OUTLET_ID": "2", "BRANCH_NUMBER": "3" } },
    { "name": "second", "type": 3, "dictionary": { "BRANCH_ID": "4" } },
    { "name": "third", "type": 3, "dictionary": { "BRANCH_NUMBER": "5" } }],
  "moldMetalLayers": [[4999, 2, "a", 1, 1, 1, 11], [5000, 4, "b", 1, 1, 1, 12], [6001, 1, "c", 1, 1, 1, 13]],
  "partInsertLayers": [[5002, 1, "core", 1, 1, 1, 14]],
  "coolantChannelLayers": [[1, 1, "circuit"], [10903, 2, "rod"]],
  "surfaceBoundaryConditions": [
    { "surfaceNo": 1, "list": [4] }, { "surfaceNo": 3, "list": [1, 2] }, { "surfaceNo": 9, "list": [2, 3, 2] },
    { "surfaceNo": 12, "list": [5] }, { "surfaceNo": 17, "list": [6] }],
  "partingDirection": [0, 0.5, 1]
)";

inline std::string headerFields(int version) {
  std::string fields;
  for (int i = 1; i < 120; ++i) {
    const std::string value = i == 29 ? "1" : std::to_string(1000 + i);
    fields += "\"" + std::to_string(i) + "\": " + value + ", ";
  }
  return fields + "\"0\": " + std::to_string(version);
}

inline std::string moldJson(int version = 14001) {
  std::string nodes;
  for (int i = 1; i <= 16; ++i)
    nodes += (i > 1 ? ", [" : "[") + std::to_string(i) + ", " + std::to_string(i * i % 7) + ", " +
             std::to_string(-i) + "]";
  return R"({ "format": "ofe-json", "version": 1, "header": { "fields": {)" + headerFields(version) +
         R"(}, "source": "a source", "dateTime": "a date", "unit": "mm", "remark": "a remark" }, "nodes": [)" +
         nodes + "]," + kMoldBlocks + "}";
}

// Runs a variant under its command-line name; the result code (1 for the operation without one).
inline int runVariant(COrvMeshFormatTransfer& transfer, const std::string& name, std::string src,
                      std::string dst) {
  if (name == "channels") {
    transfer.TransferMesh_OnlyChannel(src.data(), dst.data());
    return 1;
  }
  if (name == "hot-runner") return transfer.TransferMesh_OnlyHotRunner(src.data(), dst.data());
  if (name == "stream-line") return transfer.TransferMesh_StreamLineMesh(src.data(), dst.data());
  if (name == "moldbase") return transfer.TransferMesh_OnlyMoldbase(src.c_str(), dst.c_str());
  if (name == "part-inserts") return transfer.TransferMesh_CombinePI(src.data(), dst.data());
  return transfer.TransferMesh_CombinePIAndChannel(src.data(), dst.data());
}

// The blocks of a result as lines of text, numbers in the order of the write operations.
inline std::vector<std::string> elementLines(const nlohmann::json& file, const char* block) {
  std::vector<std::string> lines;
  for (const auto& e : file.value(block, nlohmann::json::array())) {
    std::string line;
    for (const auto& n : e["nodes"]) line += n.dump() + " ";
    lines.push_back(line + "| " + e["a"].dump() + " " + e["b"].dump());
  }
  return lines;
}
inline std::vector<std::string> surfaceLines(const nlohmann::json& file) {
  std::vector<std::string> lines;
  for (const auto& s : file.value("elementSurfaces", nlohmann::json::array())) {
    std::string line;
    for (const auto& n : s["nodes"]) line += n.dump() + " ";
    line += "|";
    for (const char* key : {"interfaceId", "ownerCode", "contactCode", "boundaryType", "elementNo"})
      line += " " + s[key].dump();
    char tag[16];
    std::snprintf(tag, sizeof tag, " %x", static_cast<std::uint32_t>(s["tag"].get<std::int64_t>()));
    lines.push_back(line + tag);
  }
  return lines;
}

using Lines = std::vector<std::string>;

}  // namespace orvmesh::test
