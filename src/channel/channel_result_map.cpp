#include <orvmesh/channel_result_map.h>

#include <algorithm>
#include <cstddef>
#include <exception>

#include "channel/result_map.h"
#include "platform/cofedata.h"

using Class = COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV;
using orvmesh::channel::KeptNodes;
using orvmesh::channel::nodesInUse;
using orvmesh::channel::relateNodes;

namespace {

// A path shorter than its suffix is carried whole.
std::string logPathOf(const std::string& path) {
  constexpr std::size_t kSuffix = 4;
  return path.substr(0, path.size() < kSuffix ? path.size() : path.size() - kSuffix) + ".log";
}

template <class T>
std::shared_ptr<T[]> zeros(int count) {
  return std::shared_ptr<T[]>(new T[static_cast<std::size_t>(count) + 1]());
}

}  // namespace

Class::COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV() = default;
Class::~COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV() = default;
Class::COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV(const Class&) = default;
Class& Class::operator=(const Class&) = default;

int Class::SetOFEFile(const char* path) try {
  const std::string file = path == nullptr ? "" : path;
  const std::string log = logPathOf(file);
  COFEData data;
  // A refused file leaves the model empty; it is not told apart from one without elements (quirk 57).
  data.ReadDataBin(path, path == nullptr ? nullptr : log.c_str(), 0, false);
  const auto kept = std::make_shared<const KeptNodes>(nodesInUse(data.model()));
  const auto keptToInput = zeros<int>(kept->count());
  const auto result = zeros<double>(kept->count());
  m_ErrorMessage =
      data.errorText().empty() ? "" : (path == nullptr ? "no path" : file) + ": " + data.errorText();
  m_OFEPath = file;
  m_Kept = kept;
  m_NInput = 0;
  m_InputToKept.reset();
  m_KeptToInput = keptToInput;
  m_Result = result;
  return 1;
} catch (const std::exception&) {
  m_ErrorMessage = "out of memory";
  return 0;
}

int Class::SetInputNode(int n, double* x, double* y, double* z) try {
  const int count = x == nullptr || y == nullptr || z == nullptr ? 0 : std::max(n, 0);
  const auto inputToKept = zeros<int>(count);
  const auto keptToInput = zeros<int>(m_Kept ? m_Kept->count() : 0);
  if (m_Kept) relateNodes(*m_Kept, {count, x, y, z}, {inputToKept.get(), keptToInput.get(), nullptr});
  m_NInput = count;
  m_InputToKept = inputToKept;
  m_KeptToInput = keptToInput;
  return 1;
} catch (const std::exception&) {
  m_ErrorMessage = "out of memory";
  return 0;
}

int Class::SetInputNodeResult(double* values) {
  if (!m_Kept || values == nullptr) return 1;
  for (int k = 1; k <= m_Kept->count(); ++k)
    m_Result[k] = m_KeptToInput[k] > 0 ? values[m_KeptToInput[k]] : 0;
  return 1;
}

int Class::GetMapOFENodeID(int* out) const {
  if (out != nullptr && m_InputToKept) std::copy_n(m_InputToKept.get() + 1, m_NInput, out + 1);
  return 1;
}

int Class::GetMapOFENodeResult(double* out) const {
  if (out == nullptr) return -1;
  if (m_Kept) std::copy_n(m_Result.get() + 1, m_Kept->count(), out + 1);
  return 1;
}

const char* Class::GetErrorMessage_Link() const { return m_ErrorMessage.c_str(); }
