#pragma once

#include <exception>
#include <string>

#include "dmpio/dump_reader.h"
#include "dmpio/dump_writer.h"
#include "dmpio/layout.h"

namespace orvmesh::dmpio {

// Runs the work; what it throws (an allocation that failed) becomes the result.
template <class Work>
int safely(int failure, Work work) {
  try {
    return work();
  } catch (const std::exception&) {
    return failure;
  }
}

// The two sides of a manipulator and what its last begin, end or convert operation complained of.
struct Sides {
  DumpReader reader;
  DumpWriter writer;
  std::string error;

  // An operation that is to say why it failed. The words for this failure must not need memory themselves.
  template <class Work>
  int reported(Work work) {
    try {
      return work();
    } catch (const std::exception&) {
      error = "out of memory";
      return 0;
    }
  }
  int readOne(Block block, Header header, int& value) {
    return safely(-2, [&] { return reader.readOne(block, header, value); });
  }
  int readPair(Block block, Header header, int& first, int& second) {
    return safely(-2, [&] { return reader.readPair(block, header, first, second); });
  }
  int writeOne(Block block, Header header, int value) {
    return write(block, [&] { return writer.writeOne(block, header, value); });
  }
  int writePair(Block block, Header header, int first, int second) {
    return write(block, [&] { return writer.writePair(block, header, first, second); });
  }
  int writeItem(Header header, bool newGroup, int itemCount, int first, int second) {
    return write(kLineToFaceMap,
                 [&] { return writer.writeItem(header, newGroup, itemCount, first, second); });
  }
  int beginWriting(const char* path, int version, Header header, std::int64_t mostEntries) {
    const bool wasOpen = writer.isWriting();
    const int result = reported([&] {
      const int begun = writer.begin(path, version, header, mostEntries);
      error = writer.errorText();
      return begun;
    });
    if (result != 1 && !wasOpen) writer.abandon();
    return result;
  }
  // Copies from the file being read to the one being written: 1, or 0 when the source turned out damaged.
  int copyBlocks(Header header);

 private:
  // An entry that was written in part makes a file that must not be completed.
  template <class Work>
  int write(Block block, Work work) {
    try {
      return work();
    } catch (const std::exception&) {
      writer.giveUp();
      return kBlockRows[block].refusal;
    }
  }
  void copyBlock(Block block, Header header);
};

}  // namespace orvmesh::dmpio
