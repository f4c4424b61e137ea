#include "transfer/rules/element_rules.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>

#include "base/ranges.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

using L = ElementList;
constexpr ElementPick kEvery{};
constexpr ElementPick kInserts{ElementPick::A, true, kInsertWritten};
constexpr ElementPick kNoInserts{ElementPick::A, false, kInsertWritten};
constexpr ElementPick kHotRunners{ElementPick::B, true, kHotRunnerGroup};
constexpr ElementPick kHeaters{ElementPick::A, true, {kChannelKindHeater, kChannelKindHeater}};
constexpr ElementPick kNoHeaters{ElementPick::A, false, {kChannelKindHeater, kChannelKindHeater}};

constexpr Mark kA{Mark::A};
constexpr Mark kB{Mark::B};
constexpr Mark number(std::int32_t n) { return {Mark::Number, n}; }
constexpr Mark bPlus(std::int32_t n) { return {Mark::B, n}; }

constexpr std::array kChannelPasses{ElementPass{L::Channel, kEvery, L::Plastic, bPlus(1000), number(201)}};
constexpr std::array kJoinedPartPasses{ElementPass{L::Plastic, kEvery, L::Plastic, kA, kB},
                                       ElementPass{L::Mold, kInserts, L::Plastic, number(1), kA}};
constexpr std::array kHotRunnerPasses{
    ElementPass{L::Plastic, kHotRunners, L::Plastic, number(1), bPlus(-200)}};
constexpr std::array kStreamLinePasses{ElementPass{L::Plastic, kEvery, L::Plastic, kA, kB}};
constexpr std::array kMoldLeftPasses{ElementPass{L::Mold, kNoInserts, L::Mold, kA, kB}};
constexpr std::array kMoldAndHeaterPasses{
    ElementPass{L::Mold, kNoInserts, L::Mold, kA, kB},
    ElementPass{L::Channel, kHeaters, L::Mold, bPlus(kHeaterMaterial), kB}};
constexpr std::array kEveryChannelPasses{ElementPass{L::Channel, kEvery, L::Channel, kA, kB}};
constexpr std::array kCoolantPasses{ElementPass{L::Channel, kNoHeaters, L::Channel, kA, kB}};
constexpr std::array kMoldBasePasses{
    ElementPass{L::Mold, kEvery, L::Plastic, number(1), {Mark::MoldBaseOfA}}};

inline bool picks(const ElementPick& pick, const COFE_Elem& element) {
  if (pick.field == ElementPick::Any) return true;
  const std::int32_t value = pick.field == ElementPick::A ? element.fieldA : element.fieldB;
  return pick.range.holds(value) == pick.inside;
}

inline std::int32_t markOf(const Mark& mark, const COFE_Elem& element) {
  if (mark.from == Mark::MoldBaseOfA) return moldBaseMaterial(element.fieldA);
  const std::int32_t base = mark.from == Mark::A ? element.fieldA : mark.from == Mark::B ? element.fieldB : 0;
  // Fields come from a file and may be any number: the sum wraps instead of trapping.
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(base) + static_cast<std::uint32_t>(mark.plus));
}

std::string describe(const ElementPick& pick) {
  if (pick.field == ElementPick::Any) return "every";
  const std::string range = pick.range.first == pick.range.last
                                ? std::to_string(pick.range.first)
                                : std::to_string(pick.range.first) + ".." + std::to_string(pick.range.last);
  return std::string(pick.field == ElementPick::A ? "A" : "B") + (pick.inside ? " in " : " not in ") + range;
}

std::string describe(const Mark& mark) {
  switch (mark.from) {
    case Mark::Number:
      return std::to_string(mark.plus);
    case Mark::MoldBaseOfA:
      return "A' (A + 5000 for 2..5000; A - 4000 for 10002..10899 and above 10900; else A)";
    case Mark::A:
    case Mark::B:
      break;
  }
  std::string text = mark.from == Mark::A ? "A" : "B";
  if (mark.plus != 0) text += (mark.plus < 0 ? " - " : " + ") + std::to_string(std::abs(mark.plus));
  return text;
}

const ElementTable& tableOf(const MeshModel& model, ElementList list) {
  switch (list) {
    case ElementList::Plastic:
      return model.elemP;
    case ElementList::Mold:
      return model.elemM;
    case ElementList::Channel:
      break;
  }
  return model.elemC;
}

using WriteEntry = int (OFEIO_Manipulator::*)(int, const int[], int, int, float);

WriteEntry writeEntryOf(ElementList list) {
  switch (list) {
    case ElementList::Plastic:
      return &OFEIO_Manipulator::writeElementPlasticBlockEntry;
    case ElementList::Mold:
      return &OFEIO_Manipulator::writeElementMoldBaseBlockEntry;
    case ElementList::Channel:
      break;
  }
  return &OFEIO_Manipulator::writeElementCoolChannelBlockEntry;
}

void writePass(const ElementPass& pass, COrvSolverMeshWriter& worker) {
  const ElementTable& table = tableOf(worker.model(), pass.from);
  const WriteEntry write = writeEntryOf(pass.to);
  for (std::int32_t e = 1; e <= table.count(); ++e) {
    const COFE_Elem element = table[e];
    if (!picks(pass.pick, element)) continue;
    int nodes[8] = {};
    std::copy_n(element.nodes.begin(), std::min<std::size_t>(element.nodes.size(), 8), nodes);
    (worker.writer.*write)(element.nodeCount(), nodes, markOf(pass.material, element),
                           markOf(pass.group, element), static_cast<float>(element.value));
    if (worker.numbers) worker.numbers->elementWritten(pass.from, e);
  }
}

struct MoldBaseCounts {
  std::map<std::int32_t, std::int32_t> perMaterial;
  std::int32_t insert = 0;
  std::int32_t hotRunner = 0;
};

MoldBaseCounts countMoldBase(const ElementTable& mold) {
  MoldBaseCounts counts;
  for (const std::int32_t a : mold.fieldA) {
    ++counts.perMaterial[moldBaseMaterial(a)];
    if (a > kHeaterMaterial) {
      ++counts.hotRunner;
    } else if (moldBaseMaterial(a) != a) {
      ++counts.insert;
    }
  }
  return counts;
}

}  // namespace

constinit const ElementBlock kElements_Channel{"Writing ElemCChannel", kChannelPasses};
constinit const ElementBlock kElementsP_PartInsert{"Writing ElemP", kJoinedPartPasses};
constinit const ElementBlock kElementsP_HotRunner{"Writing ElemP", kHotRunnerPasses};
constinit const ElementBlock kElementsP_StreamLine{"Writing ElemP", kStreamLinePasses};
constinit const ElementBlock kElementsM_PartInsert{"Writing ElemM", kMoldLeftPasses};
constinit const ElementBlock kElementsM_PartInsertAndChannel{"Writing ElemM", kMoldAndHeaterPasses};
constinit const ElementBlock kElementsC_PartInsert{"Writing ElemC", kEveryChannelPasses};
constinit const ElementBlock kElementsC_PartInsertAndChannel{"Writing ElemC", kCoolantPasses};
constinit const ElementBlock kElementsP_MoldBase{"WriteOfeElemPBin_OnlyMoldbase", kMoldBasePasses};

const char* elementListName(ElementList list) {
  switch (list) {
    case ElementList::Plastic:
      return "plastic";
    case ElementList::Mold:
      return "mold";
    case ElementList::Channel:
      break;
  }
  return "channel";
}

void writeElements(const ElementBlock& block, COrvSolverMeshWriter& worker) {
  worker.banner(block.banner);
  for (const ElementPass& pass : block.passes) writePass(pass, worker);
}

std::int32_t moldBaseMaterial(std::int32_t a) {
  if (2 <= a && a <= 5000) return a + 5000;
  if ((10002 <= a && a < kHeaterMaterial) || a > kHeaterMaterial) return a - 4000;
  return a;  // 1, 5001..10001 and exactly 10900
}

std::string describeElementBlock(const ElementBlock& block) {
  std::string text;
  for (const ElementPass& pass : block.passes)
    text += std::string("| ") + elementListName(pass.from) + " | " + describe(pass.pick) + " | " +
            elementListName(pass.to) + " | " + describe(pass.material) + ", " + describe(pass.group) + " |\n";
  return text;
}

void WriteOfeElemPBin_OnlyMoldbase(COrvSolverMeshWriter& worker) {
  worker.trace("/// WriteOfeElemPBin_OnlyMoldbase ///");
  writeElements(kElementsP_MoldBase, worker);
  if (!worker.stlDiagnostics) return;
  const MoldBaseCounts counts = countMoldBase(worker.model().elemM);
  worker.print("Mold OFE->Part OFE");
  for (const auto& [material, number] : counts.perMaterial)
    worker.print("Type ", material, " Number = ", number);
  worker.print("count_MB = ", worker.model().elemM.count() - counts.insert - counts.hotRunner,
               ",count_MI=", counts.insert, ",count_HR=", counts.hotRunner);
}

}  // namespace orvmesh::transfer
