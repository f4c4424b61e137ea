#pragma once

#include <optional>
#include <string>

#include "embedded/entry_reader.h"
#include "embedded/ofe_writer.h"
#include "platform/ofeio.h"

// What stands behind the manipulator's operations.
struct OFEIO_Manipulator::Implementation {
  orvmesh::embedded::EntryCursor* advance(orvmesh::embedded::Block block) {
    return reader ? reader->advance(block) : nullptr;
  }

  orvmesh::embedded::OfeWriter writer;
  std::optional<orvmesh::embedded::EntryReader> reader;
  std::string error;
  int version = 0;
};
