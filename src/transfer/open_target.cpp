#include "transfer/open_target.h"

#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {

int openTarget(COrvSolverMeshWriter& worker, const char* target) {
  constexpr int kLastExactVersion = 13001;
  constexpr int kRefused = -1;
  int version = worker.writer.header[m_HEADER_Version];
  // Up to kLastExactVersion there is one attempt. Above, a multiple of 1000 lies below its own floor and is
  // never tried (quirk 9).
  const int floor = version <= kLastExactVersion ? version : version / 1000 * 1000 + 1;
  for (; version >= floor; --version) {
    const int result = worker.writer.beginWriting(target, version, 0);
    if (result == 0) worker.print("Write OFE file open error");
    if (result >= 0) return result;
  }
  return kRefused;
}

}  // namespace orvmesh::transfer
