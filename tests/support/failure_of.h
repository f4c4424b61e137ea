#pragma once

#include <string>

#include "base/failure.h"

namespace orvmesh::test {

// What the failure of the job says; "no failure" when it does not fail.
std::string failureOf(const auto& job) {
  try {
    job();
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "no failure";
}

}  // namespace orvmesh::test
