#include "sensor/sensor_list.h"

#include "base/ranges.h"

namespace orvmesh::sensor {
namespace {

enum class Seat { element, node, surface };
constexpr const char* kSeatNames[] = {"element", "node", "surface"};
enum class Block { plastic, mold, either };

// Where sensors of a type sit, and which of their numbers people know them by.
struct TypeRule {
  int type;
  Seat seat;
  Block block;
  int displayId;
};
constexpr TypeRule kTypes[] = {{1, Seat::element, Block::plastic, 2}, {2, Seat::node, Block::plastic, 2},
                               {3, Seat::surface, Block::either, 2},  {4, Seat::element, Block::mold, 2},
                               {5, Seat::node, Block::mold, 2},       {6, Seat::node, Block::either, 1}};

std::string named(const char* component, std::int32_t number) {
  return std::string(component) + " (" + std::to_string(number) + ")";
}
std::string plasticName(const ElementTable& table, std::int32_t e) {
  const std::int32_t group = table.group(e);
  return kHotRunnerGroup.holds(group) ? named("hot runner", group) : named("part", table.material(e));
}
std::string moldName(std::int32_t material) {
  if (kInsertWritten.holds(material)) return named("part insert", material);
  if (material > kHeaterMaterial) return named("heater", material - kHeaterMaterial);
  return named("mold base", material);
}

// The first plastic and the first mold element at each node that a sensor sits on; a part insert stands
// before the rest of the mold.
class ElementsAtNodes {
 public:
  explicit ElementsAtNodes(const MeshModel& model) : model_(model) {
    bool any = false;
    wanted_ = OneBasedArray<std::uint8_t>(model.nodes.count());
    for (const TypeRule& rule : kTypes)
      if (rule.seat == Seat::node)
        for (const Sensor& sensor : model.sensors[rule.type - 1]) any = mark(sensor.ids[0]) || any;
    if (!any) return;
    plastic_ = OneBasedArray<std::int32_t>(model.nodes.count());
    mold_ = OneBasedArray<std::int32_t>(model.nodes.count());
    visit(model.elemP, [&](std::int32_t e, std::int32_t n) {
      if (plastic_[n] == 0) plastic_[n] = e;
    });
    visit(model.elemM, [&](std::int32_t e, std::int32_t n) {
      if (mold_[n] == 0 || (isInsert(e) && !isInsert(mold_[n]))) mold_[n] = e;
    });
  }

  std::int32_t plastic(std::int32_t n) const { return known(n) ? plastic_[n] : 0; }
  std::int32_t mold(std::int32_t n) const { return known(n) ? mold_[n] : 0; }

 private:
  bool known(std::int32_t n) const { return 1 <= n && n <= wanted_.count() && wanted_[n] != 0; }
  bool mark(std::int32_t n) {
    const bool exists = 1 <= n && n <= wanted_.count();
    if (exists) wanted_[n] = 1;
    return exists;
  }
  bool isInsert(std::int32_t e) const { return kInsertWritten.holds(model_.elemM.material(e)); }
  template <class Take>
  void visit(const ElementTable& table, Take take) {
    for (std::int32_t e = 1; e <= table.count(); ++e)
      for (const std::int32_t n : table.nodes(e))
        if (wanted_[n] != 0) take(e, n);
  }

  const MeshModel& model_;
  OneBasedArray<std::uint8_t> wanted_;
  OneBasedArray<std::int32_t> plastic_, mold_;
};

// The elements that carry a sensor, 0 where there is none.
struct Carriers {
  std::int32_t plastic = 0, mold = 0;
};
Carriers carriersOf(const MeshModel& model, const ElementsAtNodes& at, Seat seat, std::int32_t seatNo) {
  if (seat == Seat::element) return {seatNo, seatNo};
  if (seat == Seat::node) return {at.plastic(seatNo), at.mold(seatNo)};
  if (seatNo < 1 || seatNo > model.surfaces.count()) return {};
  const SurfaceElement surface = model.surfaces[seatNo];
  return {surface.interfaceId == 1 ? surface.elementNo : 0, surface.interfaceId == 2 ? surface.elementNo : 0};
}

std::string componentOf(const MeshModel& model, const TypeRule& rule, const Carriers& carriers) {
  if (rule.block != Block::mold && model.elemP.holds(carriers.plastic))
    return plasticName(model.elemP, carriers.plastic);
  if (rule.block != Block::plastic && model.elemM.holds(carriers.mold))
    return moldName(model.elemM.material(carriers.mold));
  return "";
}

}  // namespace

std::vector<SensorRow> listSensors(const MeshModel& model) {
  const SensorMaps maps = makeMaps(model, variantOfTransfer(model));
  const ElementsAtNodes at(model);
  std::vector<SensorRow> rows;
  std::int32_t global = 0;
  for (const TypeRule& rule : kTypes) {
    for (const Sensor& sensor : model.sensors[rule.type - 1]) {
      SensorRow row;
      row.type = row.newType = rule.type;
      row.display = sensor.ids[rule.displayId];
      row.seat = kSeatNames[static_cast<std::size_t>(rule.seat)];
      row.seatNo = sensor.ids[0];
      row.position = {sensor.x, sensor.y, sensor.z};
      row.component = componentOf(model, rule, carriersOf(model, at, rule.seat, row.seatNo));
      if (SensorCounts::isNumbered(rule.type)) {
        row.global = ++global;
        row.newType = maps.oldToNew.type[global];
        row.newGlobal = maps.oldToNew.global[global];
      }
      rows.push_back(std::move(row));
    }
  }
  return rows;
}

}  // namespace orvmesh::sensor
