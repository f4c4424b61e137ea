#include "orvmesh/mesh_format_transfer.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iostream>

#include "transfer/ctg/ctg_export.h"
#include "transfer/prepass/groups.h"
#include "transfer/prepass/hot_runner.h"
#include "transfer/prepass/inlets.h"
#include "transfer/prepass/node_typing.h"
#include "transfer/prepass/part_inserts.h"
#include "transfer/prepass/traces.h"
#include "transfer/solver_mesh_writer.h"
#include "transfer/variants.h"

using namespace orvmesh;
using namespace orvmesh::transfer;

namespace {

constexpr int kSourceTooOld = -4;
constexpr int kFirstHotRunnerVersion = 14001;

template <class Values>
std::shared_ptr<int[]> sharedCopy(const Values* first, std::int32_t count) {
  std::shared_ptr<int[]> copy(new int[static_cast<std::size_t>(count) + 1]());
  std::copy_n(first, count, copy.get() + 1);
  return copy;
}
std::shared_ptr<int[]> sharedCopy(const OneBasedArray<std::int32_t>& values) {
  return sharedCopy(values.data() + 1, values.count());
}

// Deletes the log at the end, also when memory has run out; unless its name is that of a mesh.
class LogRemoval {
 public:
  LogRemoval(const char* log, const char* src, const char* dst) : log_(log), meshes_{src, dst} {}
  LogRemoval(const LogRemoval&) = delete;
  LogRemoval& operator=(const LogRemoval&) = delete;
  ~LogRemoval() {
    struct stat log {};
    if (log_ == nullptr || ::stat(log_, &log) != 0) return;
    for (const char* path : meshes_) {
      struct stat mesh {};
      if (path != nullptr && ::stat(path, &mesh) == 0 && mesh.st_dev == log.st_dev &&
          mesh.st_ino == log.st_ino)
        return;
    }
    (void)std::remove(log_);
  }
  void keepLog() { log_ = nullptr; }

 private:
  const char* log_;
  const char* meshes_[2];
};

void copyOut(const std::shared_ptr<int[]>& values, int count, int* out) {
  if (values) std::copy_n(values.get() + 1, count, out + 1);
}

const int* handOut(const OneBasedArray<std::int32_t>& values, int& count) {
  count = values.count();
  return values.data();
}

std::string targetError(const COrvSolverMeshWriter& worker, const char* target) {
  const std::string name = std::string(target) + ": ";
  if (!worker.writer.errorText().empty()) return name + worker.writer.errorText();
  return name + "format version " + std::to_string(worker.writer.header[m_HEADER_Version]) +
         " cannot be written (writable: " + OFEIO_Manipulator::writableVersionsText() + ")";
}

void findInlets(COrvSolverMeshWriter& worker) {
  CoolantInletInfo info;
  const int count = OFEIO_Manipulator::extractCoolantInletInfo(worker.path().c_str(), 0, info);
  if (count > 0) worker.found.inlets = numberInlets(info);
  if (count < 0) worker.noteLost("coolant inlets");
}

void findGates(COrvSolverMeshWriter& worker) {
  int format = 0;
  GateInfo info;
  const char* path = worker.path().c_str();
  if (OFEIO_Manipulator::getFileFormat(path, format) != 1 ||
      OFEIO_Manipulator::extractGateInfo(path, format == 1, nullptr, info, nullptr) != 1)
    worker.noteLost("gates");
  worker.found.gates = numberGates(worker.model(), info);
}

void findNodeTypes(COrvSolverMeshWriter& worker) {
  worker.found.nodeTyping = typeNodes(worker.model());
  traceNodeTyping(worker);
}

// What both joined variants need to know about surfaces and bad elements.
void findJoinedNumbers(COrvSolverMeshWriter& worker, bool heatersMove) {
  worker.found.surfaceNumbering = numberSurfaces(worker.model().surfaces, worker.contactFaces());
  worker.found.bad = renumberBadElements(worker.model(), heatersMove);
}

}  // namespace

// The steps that entry operations share; a nested class, so that they reach the object's results.
struct COrvMeshFormatTransfer::Calls {
  COrvMeshFormatTransfer& self;

  // The frame of every operation: reads the source, does the work, deletes the log unless the work returns
  // kSourceTooOld. The worker is gone when this returns or throws.
  template <class Work>
  int run(const char* src, const char* dst, int mode, Work work) {
    LogRemoval logRemoval(self.m_LogFilePath, src, dst);
    COrvSolverMeshWriter worker(std::cout, std::cin);
    worker.m_DebugLog = self.m_DebugLog;
    worker.stlDiagnostics = self.m_STLDiagnostics;
    worker.stopsWhenLost = self.m_StopOnRefusedSource;
    self.m_ErrorMessage.clear();
    self.m_Warnings.clear();
    self.m_Dropped.clear();
    self.m_TargetNumbers.reset();
    const bool read = worker.ReadDataBin(src, self.m_LogFilePath, mode, false) == 1;
    if (!read) self.m_ErrorMessage = std::string(src) + ": " + worker.errorText();
    for (const auto& line : worker.warnings()) self.m_Warnings += line + "\n";
    const bool goesOn = read || !self.m_StopOnRefusedSource;
    const int result = goesOn ? work(worker) : 0;
    if (result == kSourceTooOld) logRemoval.keepLog();
    return result;
  }

  void write(const Variant& variant, COrvSolverMeshWriter& worker, const char* dst) {
    if (self.m_KeepTargetNumbers) worker.numbers = std::make_shared<TargetNumbers>(worker.model());
    const bool written = !worker.stops() && writeVariant(variant, worker, dst) == 1;
    if (written) self.m_TargetNumbers = worker.numbers;
    if (worker.lost != nullptr)
      self.m_ErrorMessage = worker.path() + ": its " + worker.lost +
                            " cannot be read (the file changed, cannot be read any more, or memory is short)";
    else if (!written && self.m_ErrorMessage.empty())
      self.m_ErrorMessage = targetError(worker, dst);
    for (const Dropped& entry : worker.found.dropped)
      self.m_Dropped += std::string(entry.what) + ": " + std::to_string(entry.count) + "\n";
  }

  void keepNodeTypes(const NodeTyping& typing) {
    self.m_TotalNodeNumber = typing.type.count();
    self.m_PIGlobalNodeType = sharedCopy(typing.type);
    self.m_NnodeContactPartAndPI = typing.contactNodes.count();
    self.m_PPINodeID = sharedCopy(typing.contactNodes);
  }

  void keepMoldBlocks(const MeshModel& model) {
    self.m_MeshBlockSize = static_cast<int>(model.blockToMaterial.size());
    self.m_MoldBlock2Mat = sharedCopy(model.blockToMaterial.data(), self.m_MeshBlockSize);
  }

  void keepGroups(const HeaterGroups& groups) {
    self.m_CCData.m_NGroupCoolant = groups.coolantGroups;
    self.m_CCData.m_NGroupHeater = groups.heaterGroups;
  }

  void keepChannelNodes(const ChannelNodeLists& lists) {
    COrvCCData* const kept[] = {&self.m_CCData.m_SurfaceCCData, &self.m_CCData.m_SurfaceHRData,
                                &self.m_CCData.m_SurfaceHRAirData, &self.m_CCData.m_SurfaceHeaterData};
    for (std::size_t i = 0; i < lists.nodes.size(); ++i) {
      *kept[i] = COrvCCData();
      kept[i]->m_Dim = static_cast<int>(lists.nodes[i].size());
      kept[i]->CreateNodeMemory();
      std::copy(lists.nodes[i].begin(), lists.nodes[i].end(), kept[i]->m_NodeID.get() + 1);
    }
  }

  // Node types, materials and contacts of a joined part.
  void findJoinedPart(COrvSolverMeshWriter& worker) {
    findNodeTypes(worker);
    self.m_PPIElemMaterial =
        sharedCopy(joinedElementMaterials(worker.model(), worker.found.nodeTyping->insertElements));
    worker.found.contacts = countContacts(worker.contactFaces());
  }

  void findHeaters(COrvSolverMeshWriter& worker, HeaterGroups (*find)(const MeshModel&)) {
    worker.found.heaters = find(worker.model());
    keepGroups(*worker.found.heaters);
    traceGroups(worker);
  }

  void findHeaterFacesAndNodes(COrvSolverMeshWriter& worker) {
    auto& found = worker.found;
    found.heaterFaces = markHeaterFaces(worker.model().surfaces, *found.heaters, *found.nodeTyping);
    traceHeaterFaces(worker);
    const ChannelNodeLists lists = listChannelNodes(*found.nodeTyping);
    traceChannelNodes(worker, lists);
    keepChannelNodes(lists);
  }
};

COrvMeshFormatTransfer::COrvMeshFormatTransfer() : m_LogFilePath{} {
  std::strcpy(m_LogFilePath, "MeshTranslate.log");
}

void COrvMeshFormatTransfer::TransferMesh_OnlyChannel(char* src, char* dst) {
  Calls calls{*this};
  calls.run(src, dst, 0, [&](COrvSolverMeshWriter& worker) {
    worker.found.channelGroupCount = highestChannelGroup(worker.model().surfaces);
    findInlets(worker);
    calls.write(kChannelOnly, worker, dst);
    return 1;
  });
}

int COrvMeshFormatTransfer::TransferMesh_OnlyHotRunner(char* src, char* dst) {
  Calls calls{*this};
  return calls.run(src, dst, 0, [&](COrvSolverMeshWriter& worker) {
    if (worker.model().formatVersion < kFirstHotRunnerVersion) return kSourceTooOld;
    worker.found.hotRunnerNodes = countHotRunnerNodes(worker.model());
    findGates(worker);
    worker.found.hotRunnerElements = numberHotRunnerElements(worker.model().elemP);
    calls.write(kHotRunnerOnly, worker, dst);
    return 1;
  });
}

int COrvMeshFormatTransfer::TransferMesh_StreamLineMesh(char* src, char* dst) {
  Calls calls{*this};
  return calls.run(src, dst, 0, [&](COrvSolverMeshWriter& worker) {
    calls.write(kStreamLine, worker, dst);
    return 1;
  });
}

int COrvMeshFormatTransfer::TransferMesh_OnlyMoldbase(const char* src, const char* dst) {
  Calls calls{*this};
  return calls.run(src, dst, 0, [&](COrvSolverMeshWriter& worker) {
    findInlets(worker);
    calls.findHeaters(worker, groupsOfMold);
    calls.write(kMoldBaseOnly, worker, dst);
    return 1;
  });
}

int COrvMeshFormatTransfer::TransferMesh_CombinePI(char* src, char* dst) {
  Calls calls{*this};
  return calls.run(src, dst, 0, [&](COrvSolverMeshWriter& worker) {
    if (worker.sourceHeader()[m_HEADER_NMatI] < 1) return 0;
    calls.findJoinedPart(worker);
    calls.keepNodeTypes(*worker.found.nodeTyping);
    findJoinedNumbers(worker, false);
    calls.keepMoldBlocks(worker.model());
    calls.write(kPartInsert, worker, dst);
    return 1;
  });
}

int COrvMeshFormatTransfer::TransferMesh_CombinePIAndChannel(char* src, char* dst) {
  Calls calls{*this};
  return calls.run(src, dst, 0, [&](COrvSolverMeshWriter& worker) {
    calls.keepMoldBlocks(worker.model());
    const bool inserts = worker.sourceHeader()[m_HEADER_NMatI] >= 1;
    const bool channels = worker.sourceHeader()[m_HEADER_NMatC] >= 1;
    if (!inserts && !channels) return 0;
    calls.findJoinedPart(worker);
    calls.findHeaters(worker, groupsOfChannels);
    calls.findHeaterFacesAndNodes(worker);
    calls.keepNodeTypes(*worker.found.nodeTyping);
    findJoinedNumbers(worker, true);
    calls.write(kPartInsertAndChannel, worker, dst);
    if (!channels) return 1;
    return inserts ? 3 : 2;
  });
}

int COrvMeshFormatTransfer::TransSolidOFEtoCTG(char* src, char* dst) {
  Calls calls{*this};
  return calls.run(src, dst, 0, [&](COrvSolverMeshWriter& worker) {
    const CtgOutcome outcome = exportCtg(worker, dst == nullptr ? "" : dst);
    if (m_ErrorMessage.empty()) m_ErrorMessage = outcome.error;
    m_Warnings += outcome.warnings;
    return 1;
  });
}

void COrvMeshFormatTransfer::SetPartInsertMeshFilePath(char* src, int mode) {
  Calls calls{*this};
  calls.run(src, nullptr, mode, [&](COrvSolverMeshWriter& worker) {
    findNodeTypes(worker);
    calls.keepNodeTypes(*worker.found.nodeTyping);
    return 1;
  });
}

bool COrvMeshFormatTransfer::IfMeshHasPartInsert(char* src) {
  Calls calls{*this};
  const int result = calls.run(src, nullptr, 0, [](COrvSolverMeshWriter& worker) {
    return worker.sourceHeader()[m_HEADER_NMatI] >= 1 ? 1 : 0;
  });
  return result == 1;
}

int COrvMeshFormatTransfer::GetTotalNodeNumber() const { return m_TotalNodeNumber; }
int COrvMeshFormatTransfer::GetNnodeContactPartAndPI() const { return m_NnodeContactPartAndPI; }
int COrvMeshFormatTransfer::GetMeshBlockSize() const { return m_MeshBlockSize; }

void COrvMeshFormatTransfer::GetPIGloalNodeType(int* out) const {
  copyOut(m_PIGlobalNodeType, m_TotalNodeNumber, out);
}
void COrvMeshFormatTransfer::GetPPINodeID(int* out) const {
  copyOut(m_PPINodeID, m_NnodeContactPartAndPI, out);
}
void COrvMeshFormatTransfer::GetMoldBlock2Mat(int*& out) const {
  copyOut(m_MoldBlock2Mat, m_MeshBlockSize, out);
}

void COrvMeshFormatTransfer::GetCCCombineMeshDataAndMemory(COrvCCDataForSolver& out) const {
  out.m_NGroupCoolant = m_CCData.m_NGroupCoolant;
  out.m_NGroupHeater = m_CCData.m_NGroupHeater;
  if (m_DebugLog != 0) {
    std::cout << "SolverCCData.m_SurfaceHRData.m_Dim=" << m_CCData.m_SurfaceHRData.m_Dim << '\n'
              << "SolverCCData.m_SurfaceCCData.m_Dim=" << m_CCData.m_SurfaceCCData.m_Dim << '\n';
  }
  for (const auto list :
       {&COrvCCDataForSolver::m_SurfaceCCData, &COrvCCDataForSolver::m_SurfaceHRData,
        &COrvCCDataForSolver::m_SurfaceHRAirData, &COrvCCDataForSolver::m_SurfaceHeaterData}) {
    COrvCCData& to = out.*list;
    to.m_Dim = (m_CCData.*list).m_Dim;
    to.CreateNodeMemory();
    copyOut((m_CCData.*list).m_NodeID, to.m_Dim, to.m_NodeID.get());
  }
}

void COrvMeshFormatTransfer::SetDebugLog(int level) { m_DebugLog = level; }
void COrvMeshFormatTransfer::SetSTLDiagnostics(bool on) { m_STLDiagnostics = on; }
void COrvMeshFormatTransfer::SetStopOnRefusedSource(bool stop) { m_StopOnRefusedSource = stop; }
const char* COrvMeshFormatTransfer::GetErrorMessage_Link() const { return m_ErrorMessage.c_str(); }
const char* COrvMeshFormatTransfer::GetDropped_Link() const { return m_Dropped.c_str(); }
const char* COrvMeshFormatTransfer::GetWarnings_Link() const { return m_Warnings.c_str(); }

void COrvMeshFormatTransfer::SetKeepTargetNumbers(bool on) { m_KeepTargetNumbers = on; }

const int* COrvMeshFormatTransfer::GetTargetNumbers_Link(TargetNumbering of, int& count) const {
  const auto* const numbers = static_cast<const TargetNumbers*>(m_TargetNumbers.get());
  switch (numbers == nullptr ? -1 : static_cast<int>(of)) {
    case TargetNumbering_Node:
      return handOut(numbers->nodes(), count);
    case TargetNumbering_ElementPlastic:
      return handOut(numbers->elements(ElementList::Plastic), count);
    case TargetNumbering_ElementMoldBase:
      return handOut(numbers->elements(ElementList::Mold), count);
    case TargetNumbering_ElementCoolChannel:
      return handOut(numbers->elements(ElementList::Channel), count);
    case TargetNumbering_ElementSurface:
      return handOut(numbers->surfaces(), count);
    case TargetNumbering_Sensor:
      return handOut(numbers->sensors(), count);
    default:
      count = 0;
      return nullptr;
  }
}

const int* COrvMeshFormatTransfer::GetChannelEnds_Link(int& count) const {
  count = 0;
  const auto* const numbers = static_cast<const TargetNumbers*>(m_TargetNumbers.get());
  return numbers == nullptr ? nullptr : handOut(numbers->channelEnds(), count);
}
