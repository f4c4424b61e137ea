#include "transfer/open_target.h"

#include <cstdint>

#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {

int openTarget(COrvSolverMeshWriter& worker, const char* target) {
  constexpr int kLastExactVersion = 13001;
  constexpr int kRefused = -1;
  const int version = worker.writer.header[m_HEADER_Version];
  // Up to kLastExactVersion there is one attempt. Above, a multiple of 1000 lies below its own floor and is
  // never tried (quirk 9).
  const int floor = version <= kLastExactVersion ? version : version / 1000 * 1000 + 1;
  // Wider than a version, so that the step below the lowest one is one, too.
  for (std::int64_t tried = version; tried >= floor; --tried) {
    const int result = worker.writer.beginWriting(target, static_cast<int>(tried), 0);
    if (result == 0) worker.print("Write OFE file open error");
    if (result >= 0) return result;
  }
  return kRefused;
}

}  // namespace orvmesh::transfer
