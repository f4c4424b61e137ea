#pragma once

#include <nlohmann/json.hpp>

namespace orvmesh::test {

// Three unit cubes in a row along x, each a hexahedron: part, mold base, coolant channel of group 1 (its end
// faces the ones at y = 0 and y = 1). All surfaces as `orvmesh import` derives them; nothing is wrong with
// it.
//
//   z  13--14--15--16     nodes 1..8 at y = 0, 9..16 at y = 1
//   |  5---6---7---8
//   |   part|mold|channel
//   +x 1---2---3---4
inline nlohmann::json smallMold() {
  return nlohmann::json::parse(R"({
    "header": { "fields": { "0": 14001, "2": 0 } },
    "nodes": [[0,0,0], [1,0,0], [2,0,0], [3,0,0], [0,0,1], [1,0,1], [2,0,1], [3,0,1],
              [0,1,0], [1,1,0], [2,1,0], [3,1,0], [0,1,1], [1,1,1], [2,1,1], [3,1,1]],
    "elementsPlastic":     [{ "nodes": [1,2,10,9,5,6,14,13],   "a": 1, "b": 1 }],
    "elementsMoldBase":    [{ "nodes": [2,3,11,10,6,7,15,14],  "a": 1, "b": 1 }],
    "elementsCoolChannel": [{ "nodes": [3,4,12,11,7,8,16,15],  "a": 1, "b": 1 }],
    "elementSurfaces": [
      { "nodes": [1,9,10,2],   "interfaceId": 1, "elementNo": 1, "ownerCode": 1, "tag": 1 },
      { "nodes": [2,10,14,6],  "interfaceId": 1, "elementNo": 1, "ownerCode": 1, "contactCode": 1, "tag": 1 },
      { "nodes": [2,6,14,10],  "interfaceId": 2, "elementNo": 1, "ownerCode": 1, "contactCode": 1 },
      { "nodes": [2,3,7,6],    "interfaceId": 2, "elementNo": 1, "ownerCode": 1 },
      { "nodes": [11,3,7,15],  "interfaceId": 3, "elementNo": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 1 },
      { "nodes": [3,4,8,7],    "interfaceId": 4, "elementNo": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 1 },
      { "nodes": [12,11,15,16],"interfaceId": 4, "elementNo": 1, "ownerCode": 1, "contactCode": 2, "boundaryType": 1 },
      { "nodes": [3,11,12,4],  "interfaceId": 4, "elementNo": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 1 },
      { "nodes": [7,8,16,15],  "interfaceId": 4, "elementNo": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 1 },
      { "nodes": [4,12,16,8],  "interfaceId": 4, "elementNo": 1, "ownerCode": 1, "contactCode": 1, "boundaryType": 1 }],
    "boundaryConditions": [{ "entityNo": 3, "type": 1, "value": 20 }],
    "badElementsMoldBase": [[1, 0]],
    "sensors": [{ "type": 1, "ids": [1, 0, 1, 0], "position": [0.5, 0.5, 0.5] },
                { "type": 2, "ids": [1, 0, 2, 0], "position": [0.2, 0.2, 0.2] },
                { "type": 3, "ids": [1, 1, 3, 0], "position": [0.5, 0.5, 0] },
                { "type": 4, "ids": [1, 0, 4, 0], "position": [1.5, 0.5, 0.5] },
                { "type": 5, "ids": [3, 0, 5, 0], "position": [1.9, 0, 0] },
                { "type": 6, "ids": [2, 6, 0, 0], "position": [1, 0, 0] }],
    "moldMetalLayers": [[1, 1, "steel", 0, 0, 0, 0]],
    "coolantChannelLayers": [[1, 1, "circuit"]]
  })");
}

}  // namespace orvmesh::test
