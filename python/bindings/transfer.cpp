#include <orvmesh/mesh_format_transfer.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <array>

#include "bindings/arrays.h"
#include "bindings/parts.h"
#include "check/variants.h"

namespace orvmesh::python {
namespace {

using Transfer = COrvMeshFormatTransfer;

struct Variant {
  const char* name;
  int (*run)(Transfer& transfer, char* source, char* target);
  const char* nothingToDo;  // the reason of a result below 1
};
constexpr std::array kVariants{
    Variant{"channels",
            [](Transfer& t, char* s, char* d) {
              t.TransferMesh_OnlyChannel(s, d);
              return 1;
            },
            ""},
    Variant{"hot-runner", [](Transfer& t, char* s, char* d) { return t.TransferMesh_OnlyHotRunner(s, d); },
            "its format version (header word 0) is below 14001, the first one with hot-runner data"},
    Variant{"stream-line", [](Transfer& t, char* s, char* d) { return t.TransferMesh_StreamLineMesh(s, d); },
            ""},
    Variant{"moldbase", [](Transfer& t, char* s, char* d) { return t.TransferMesh_OnlyMoldbase(s, d); }, ""},
    Variant{"part-inserts", [](Transfer& t, char* s, char* d) { return t.TransferMesh_CombinePI(s, d); },
            "it has no part-insert material (header word 18 must be at least 1)"},
    Variant{"part-inserts-channels",
            [](Transfer& t, char* s, char* d) { return t.TransferMesh_CombinePIAndChannel(s, d); },
            "it has neither part-insert nor channel material (header word 18 or 17 must be at least 1)"},
};

const Variant& variantOf(const std::string& name) {
  std::string known;
  for (const Variant& variant : kVariants) {
    if (variant.name == name) return variant;
    known += (known.empty() ? "" : ", ") + std::string(variant.name);
  }
  throw Fault(kArgument, "", "variant: \"" + name + "\" (legal: " + known + ")");
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0, end = 0; (end = text.find('\n', at)) != std::string::npos; at = end + 1)
    lines.push_back(text.substr(at, end - at));
  return lines;
}

// An error line of an operation that names either file.
void checkDone(const Transfer& transfer, const Paths& paths) {
  const std::string error = transfer.GetErrorMessage_Link();
  if (!error.empty()) throw faultOf(error, paths);
}

constexpr std::pair<const char*, TargetNumbering> kNumbers[] = {
    {"nodes", TargetNumbering_Node},
    {"plastic", TargetNumbering_ElementPlastic},
    {"mold", TargetNumbering_ElementMoldBase},
    {"channel", TargetNumbering_ElementCoolChannel},
    {"surfaces", TargetNumbering_ElementSurface},
    {"sensors", TargetNumbering_Sensor}};

py::dict numbersOf(const Transfer& transfer, py::handle owner) {
  py::dict result;
  const auto add = [&](const char* name, const int* numbers, int count) {
    const std::span<const int> kept(numbers == nullptr ? nullptr : numbers + 1,
                                    static_cast<std::size_t>(count));
    result[name] = view<int>(kept, shapeOf(kept.size(), 1), owner);
  };
  int count = 0;
  for (const auto& [name, of] : kNumbers) {
    const int* const numbers = transfer.GetTargetNumbers_Link(of, count);
    add(name, numbers, count);
  }
  const int* const ends = transfer.GetChannelEnds_Link(count);
  add("channel_ends", ends, count);
  return result;
}

// A getter that fills entries 1..count of a caller's array.
template <class Get>
py::array filled(int count, const Get& get) {
  std::vector<int> values(static_cast<std::size_t>(count) + 1);
  int* out = values.data();
  get(out);
  values.erase(values.begin());
  return adopt(std::move(values));
}

py::array listOf(const COrvCCData& data) {
  if (data.m_Dim == 0) return adopt(std::vector<int>{});
  return adopt(std::vector<int>(data.m_NodeID.get() + 1, data.m_NodeID.get() + 1 + data.m_Dim));
}

void addPartInserts(py::dict& result, const Transfer& t) {
  result["node_types"] = filled(t.GetTotalNodeNumber(), [&t](int* out) { t.GetPIGloalNodeType(out); });
  result["shared_nodes"] = filled(t.GetNnodeContactPartAndPI(), [&t](int* out) { t.GetPPINodeID(out); });
  result["block_materials"] = filled(t.GetMeshBlockSize(), [&t](int*& out) { t.GetMoldBlock2Mat(out); });
}

void addChannelLists(py::dict& result, const Transfer& transfer) {
  COrvCCDataForSolver data;
  transfer.GetCCCombineMeshDataAndMemory(data);
  result["heater_nodes"] = listOf(data.m_SurfaceHRData);
  result["heater_face_nodes"] = listOf(data.m_SurfaceHeaterData);
  result["coolant_groups"] = data.m_NGroupCoolant;
  result["heater_groups"] = data.m_NGroupHeater;
}

py::dict resultOf(std::unique_ptr<Transfer> kept, int code) {
  const Transfer& transfer = *kept;
  py::dict result;
  result["code"] = code;
  result["warnings"] = linesOf(transfer.GetWarnings_Link());
  result["dropped"] = linesOf(transfer.GetDropped_Link());
  addPartInserts(result, transfer);
  addChannelLists(result, transfer);
  result["numbers"] = numbersOf(transfer, owning(std::move(kept)));
  return result;
}

std::unique_ptr<Transfer> newTransfer() {
  auto transfer = std::make_unique<Transfer>();
  transfer->SetStopOnRefusedSource(true);
  return transfer;
}

py::dict transferMesh(const std::string& name, const Path& source, const Path& target, bool stl) {
  const Variant& variant = variantOf(name);
  Paths paths{source.string(), target.string()};
  auto transfer = newTransfer();
  transfer->SetKeepTargetNumbers(true);
  transfer->SetSTLDiagnostics(stl);
  const int code = unlocked(paths, [&] {
    const std::scoped_lock turn(oneAtATime());
    std::string from = paths.source, to = paths.target;
    return variant.run(*transfer, from.data(), to.data());
  });
  checkDone(*transfer, paths);
  if (code < 1) throw Fault(kNothingToDo, paths.source, variant.nothingToDo);
  return resultOf(std::move(transfer), code);
}

void exportCtg(const Path& source, const Path& target) {
  const Paths paths{source.string(), target.string()};
  const auto transfer = newTransfer();
  unlocked(paths, [&] {
    const std::scoped_lock turn(oneAtATime());
    std::string from = paths.source, to = paths.target;
    transfer->TransSolidOFEtoCTG(from.data(), to.data());
  });
  checkDone(*transfer, paths);
}

py::array nodeTypes(const Path& source) {
  const Paths paths{source.string(), ""};
  const auto transfer = newTransfer();
  unlocked(paths, [&] {
    const std::scoped_lock turn(oneAtATime());
    std::string from = paths.source;
    transfer->SetPartInsertMeshFilePath(from.data(), 0);
  });
  checkDone(*transfer, paths);
  return filled(transfer->GetTotalNodeNumber(), [&](int* out) { transfer->GetPIGloalNodeType(out); });
}

}  // namespace

void addTransfer(py::module_& module) {
  module.def(
      "variant_names",
      [] {
        std::vector<std::string> names;
        names.reserve(kVariants.size());
        for (const Variant& variant : kVariants) names.emplace_back(variant.name);
        return names;
      },
      "The six variants of transfer, as a list.");
  module.def("transfer_mesh", &transferMesh, py::arg("variant"), py::arg("source"), py::arg("target"),
             py::arg("stl"),
             "Assembles a solver mesh; a dict of code, warnings, dropped, numbers (dict of read-only int32 "
             "arrays of "
             "shape (n,))\nand the node lists of the operation. Raises Error.");
  module.def("export_ctg", &exportCtg, py::arg("source"), py::arg("target"),
             "Writes the mold elements as CTG text; prints counts. Raises Error.");
  module.def("node_types", &nodeTypes, py::arg("source"),
             "Type of every node in the part-insert analysis, int32 of shape (N,). Raises Error.");
}

}  // namespace orvmesh::python
