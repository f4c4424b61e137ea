#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/json_mesh.h"

namespace orvmesh::test {

// Mold elements 1 to 5 in the materials around both edges of the part inserts' range; elements 1 and 4 are
// inserts, on nodes 1 to 4 and 8 to 11.
inline constexpr const char* kElements = R"(
  "nodes": [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [2, 0, 0], [3, 1, 0], [3, 0, 1], [4, 0, 0], [5, 1, 0],
            [5, 0, 1], [6, 2, 1], [7, 1, 1]],
  "elementsPlastic": [{ "nodes": [1, 2, 3, 5], "a": 1, "b": 1 }],
  "elementsMoldBase": [
    { "nodes": [1, 2, 3, 4], "a": 5002 }, { "nodes": [4, 5, 6, 7], "a": 1 }, { "nodes": [5, 6, 7, 8], "a": 5001 },
    { "nodes": [8, 9, 10, 11], "a": 10001 }, { "nodes": [7, 10, 11, 12], "a": 10002 }])";

struct TestSensor {
  int type;
  int seat;
  int display;
};

// Every kind, in inserts and elsewhere, on elements and nodes that do not exist, and stored out of order.
inline const std::vector<TestSensor> kSensors{{6, 3, 1},  {4, 2, 2},  {4, 1, 3},  {1, 1, 4},   {5, 7, 5},
                                              {5, 8, 6},  {3, 1, 7},  {2, 5, 8},  {4, 99, 9},  {5, -3, 10},
                                              {4, 4, 11}, {5, 4, 12}, {1, 1, 13}, {5, 12, 14}, {4, 3, 15},
                                              {4, 5, 16}, {6, 1, 17}, {2, 1, 18}};

inline std::string sensorMeshJson(const std::vector<TestSensor>& sensors, const std::string& fields = "") {
  auto mesh = nlohmann::json::parse(R"({ "header": { "fields": { "0": 14001, "18": 1)" + fields + "} }," +
                                    kElements + "}");
  for (const auto& [type, seat, display] : sensors) {
    // A number is either the sixth kind's second or everyone else's third.
    nlohmann::json ids{seat, -1, -1, 0};
    ids[type == 6 ? 1 : 2] = display;
    mesh["sensors"].push_back({{"type", type}, {"ids", ids}, {"position", {display, 0.5, 0}}});
  }
  return mesh.dump();
}

inline int displayOf(const nlohmann::json& sensor) { return sensor["ids"][sensor["type"] == 6 ? 1 : 2]; }

}  // namespace orvmesh::test
