#pragma once

#include <array>
#include <string>
#include <vector>

#include "sensor/maps.h"

namespace orvmesh::sensor {

// A sensor of a mesh, for people. Numbers that a sensor has not got are 0.
struct SensorRow {
  int type = 0;
  std::int32_t display = 0;
  std::int32_t global = 0;
  const char* seat = "";  // what it sits on: "element", "node", "surface"
  std::int32_t seatNo = 0;
  std::array<double, 3> position{};  // model units
  std::string component;             // that it lies in, with the number of that; empty when there is none
  int newType = 0;                   // in the joined mesh
  std::int32_t newGlobal = 0;
};

// All sensors by type, those on surfaces too.
std::vector<SensorRow> listSensors(const MeshModel& model);

}  // namespace orvmesh::sensor
