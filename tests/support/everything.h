#pragma once

namespace orvmesh::test {

// Every block, every key, every kind of value, as dump prints them.
inline constexpr const char* kEverything = R"({"format": "ofe-json", "version": 1,
"header": {"fields": {"0": 14002, "1": -2147483648, "2": 2147483647, "4": 3, "5": 0, "6": 1, "7": 2, "12": 9,
  "15": 7, "16": 8, "17": 1, "18": 9, "29": 0.001, "30": -0.0, "36": 1e-45, "47": 3.4028235e+38, "48": 5, "119": 6,
  "120": 1, "126": 1, "127": 1, "128": 1, "129": 1, "130": 2, "131": 1, "132": 1, "133": 2, "134": 1, "136": 0,
  "137": 2, "138": 1, "139": 2, "140": 1, "141": 1, "142": 1, "159": 4},
  "source": "d:\temp", "dateTime": "größe \"7\" \\ ☃ 🙂", "unit": "mm", "remark": "a\u0000b\u001f\n"},
"nodes": [[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0], [0, 0, 1.1], [1, 0, 1], [1, 1, 1], [0, 1, 1],
  [-0.0, 1e-45, 16777216]],
"elementsPlastic": [{"nodes": [1, 2, 3, 5], "a": 1, "b": 201, "value": 0.5},
  {"nodes": [1, 2, 3, 4, 5, 6, 7, 8], "a": -1, "b": -2147483648, "value": -3.4028235e+38},
  {"nodes": [1, 2, 3, 4, 9], "a": 1, "b": 1, "value": 0}],
"elementsMoldBase": [{"nodes": [1, 2, 4, 5, 6, 8], "a": 11900, "b": 3, "value": 0.1}],
"elementsCoolChannel": [{"nodes": [1, 2, 3, 5], "a": 1, "b": 1000, "value": 0}],
"elementSurfaces": [{"nodes": [1, 2, 3, 3], "interfaceId": 1, "ownerCode": 2, "contactCode": 3, "boundaryType": 4,
  "elementNo": 99, "tag": 4294967295}, {"nodes": [1, 2, 3, 0], "interfaceId": 4, "ownerCode": 0, "contactCode": 0,
  "boundaryType": 0, "elementNo": 0, "tag": 0}],
"boundaryConditions": [{"entityNo": 1, "type": 9, "value": 0.5}],
"badElementsPlastic": [[3, -7]], "badElementsMoldBase": [[99, 0]], "badElementsCoolChannel": [[1, 5]],
"coolantChannelDiameters": [{"nodes": [1, 2, 3], "diameter": 8}],
"coolantChannelLines": [[0.1, 0.2, 0.3, 8, 1, 2, 3, 4], [0.5, 0.6, 0.7, 9, 5, 6, 7, 8]],
"coolantChannelLayout": [[1, 0.1, 0.2, 0.3, 1, 2, 3, 0.4, 0.5, 4, 5, 6, 0.6, 0.7, 0.8, 0.9, 1.1, 1.2, 1.3, 1.4],
  [0, 0, 0, 0, 0, 1, 1, 0.25, 0.5, 4, 5, 6, 1, 2, 3, 4, 5, 6, 7, 8]],
"sensors": [{"type": 1, "ids": [1, 2, 3, 4], "position": [0.5, 0.25, 0.125]}],
"moldMetal": [{"isPoint": 1, "position": [0, 0, 1], "nodes": [0, 0, 0, 0], "codeA": 0, "codeB": 0},
  {"isPoint": 0, "position": [0, 0, 0], "nodes": [1, 1, 1, 0], "codeA": 4, "codeB": 5}],
"coolingChannelSurface": [{"isPoint": 2, "position": [0, 0, 1], "nodes": [1, 2, 3, 4], "codeA": 1, "codeB": 2}],
"surfaceBoundaryConditions": [{"surfaceNo": 2, "list": [5, 4, 3]}, {"surfaceNo": 1, "list": []}],
"surfaceBoundaryConditionNames": [{"name": "gäte", "type": 7, "dictionary": {"A": "", "THICKNESS": "2.5"}},
  {"name": "", "type": 0, "dictionary": {}}, {"name": "plain", "type": -1}],
"moldMetalLayers": [[1, 2, "steel", 3, 4, 5, 6]], "partInsertLayers": [[5002, 1, "", 0, 0, 0, 1]],
"coolantChannelLayers": [[1, 1, "water"]],
"partingDirection": [0, 0.6, 0.8]})";

}  // namespace orvmesh::test
