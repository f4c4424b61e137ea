#pragma once

#include <memory>

#include "orvmesh/export.h"

// Reader, writer and converter of mapping dumps (DMP files): how the node, element, coolant-end, face/line
// and sensor numbers of one mesh map onto another. A dump is a header and ten blocks of 32-bit integers, in a
// text form (versions below 2001) or a block form (2001 and above); both carry the same content.
//
// Writing: set the header members, beginWriting, each block's write operation once per entry, blocks in the
// order in which the operations are declared below, endWriting. Skipped blocks are filled in empty.
// Reading: beginReading, take the header members, call each block's read operation until its result is
// negative, blocks in the same order (the text form is only scanned forward), endReading. One object may read
// one file and write another at the same time.
//
// An entry is known by its place in its block, counted from 0; what its numbers mean is the caller's affair.
// Nothing is printed and nothing throws but an allocation failure in a constructor or an assignment; every
// other failure is a result. Any bytes may be read.
//
// A target appears complete at endWriting, or not at all. Paths are the caller's, null-terminated, of any
// length, and not kept.
//
// Copies share the open files: an entry read or written through one copy moves the file on for all, and the
// first copy that ends (or is destroyed) closes it for all. State that is no file (header members, places in
// the current blocks) is each copy's own. An assignment gives up the files of the object assigned to: what it
// was writing never appears, unless another copy completes it.
class ORVMESH_API DMPIO_Manipulator_C {
 public:
  DMPIO_Manipulator_C();
  DMPIO_Manipulator_C(const DMPIO_Manipulator_C& other);
  DMPIO_Manipulator_C& operator=(const DMPIO_Manipulator_C& other);
  // Does what destroy does: a file being written is completed.
  virtual ~DMPIO_Manipulator_C();

  // Ends reading and ends writing.
  void destroy();

  // The version of the file; 0 a block file whose header block cannot be read; -1 neither form; -2 cannot be
  // opened. A text file without any number line has version 1.
  static int getFileVersion(const char* path);
  // 1 when the version belongs to the text form, else 0 with both outputs 0. known and supported: 1 for 1020,
  // 1022 and 1023, else 0.
  static int isAsciiDMP(int version, int& known, int& supported);
  // 1 when the version belongs to the block form, else 0 with both outputs 0. known: 1; supported: 1 for
  // 2001, 2003, 2004 and 2005, else 0.
  static int isBinaryDMP(int version, int& known, int& supported);

  // Opens a file and sets the header members that its version has (7, 9 or 11), leaving the others. extra is
  // not used. 1; 0 when path is null, a file is being read already or this one cannot be read; -1 when its
  // text version is not supported, or it is no dump at all.
  int beginReading(const char* path, const char* extra);
  int endReading();  // 1, or 0 when nothing was open

  // The read operations return the entry's place in its block (0, 1, ...) and set their arguments; -1 at the
  // block's end, at a text line without a number or when no file is open; -2 when the block is missing,
  // damaged or empty. A text line with one number of a pair leaves the second argument as it was.
  int readNodeMapBlockEntry(int& first, int& second);
  int readElementPlasticMapBlockEntry(int& value);
  int readElementMoldBaseMapBlockEntry(int& value);
  int readElementCoolChannelMapBlockEntry(int& value);
  int readElementCoolantEndMapBlockEntry(int& first, int& second);
  int readElementCoolFaceToLineMapBlockEntry(int& value);
  // One item of one line (group): newGroup is true at a line's first item, itemCount is the line's number of
  // items. A line without items is one call with itemCount 0 that leaves first and second. Returns the line's
  // place. A text file gives half the items that were written to a line.
  int readElementCoolLineToFaceMapBlockEntryItemPair(bool& newGroup, int& itemCount, int& first, int& second);
  int readSensorMapBlockEntry(int& value);
  int readElementSurfaceMapBlockEntry(int& value);
  int readElementSurface103104MapBlockEntry(int& value);

  // Sets m_HEADER_Version and creates the file with the header members its version has. 1; 0 when path is
  // null, a file is being written already or this one cannot be created; -1 when the version is none of 1020,
  // 1022, 1023, 2001, 2003, 2004 and 2005.
  int beginWriting(const char* path, int version);
  // 1 when the complete file stands at its name; 0 when nothing was open or the file could not be completed.
  int endWriting();

  // The write operations return the place that the entry got (0, 1, ...). A refused entry (nothing open, the
  // block or a later one already written, the count in the header reached) gives -1, for the node map and the
  // coolant end map 0. A block takes as many entries as its header member says when its first one is written.
  int writeNodeMapBlockEntry(int first, int second);
  int writeElementPlasticMapBlockEntry(int value);
  int writeElementMoldBaseMapBlockEntry(int value);
  // In the block form m_HEADER_NElemCoolFaceToLineMap counts this block, and no face-to-line entry can
  // follow.
  int writeElementCoolChannelMapBlockEntry(int value);
  int writeElementCoolantEndMapBlockEntry(int first, int second);
  // In the text form the reader does not find a block that this wrote.
  int writeElementCoolFaceToLineMapBlockEntry(int value);
  // newGroup with a line's first item and its number of items; a line without items is one call with
  // itemCount 0. Without newGroup, itemCount is not used.
  int writeElementCoolLineToFaceMapBlockEntryItemPair(bool newGroup, int itemCount, int first, int second);
  int writeSensorMapBlockEntry(int value);
  int writeElementSurfaceMapBlockEntry(int value);
  int writeElementSurface103104MapBlockEntry(int value);

  // Copies the file into another version; a null outPath only reads it. The sensor map and the element
  // surface maps are not copied: their blocks come out empty, their counts in the header stay. Always 1;
  // getErrorText tells whether outPath was written.
  int convert(const char* inPath, const char* outPath, int version);

  // Additional operation: why the last begin, end or convert operation failed, one line without the file's
  // name; empty when it did not. Valid until the next of them.
  const char* getErrorText() const;

  int m_HEADER_Version = 0;
  int m_HEADER_Aux1 = 0;  // carried, never interpreted
  int m_HEADER_NElemPlasticMap = 0;
  int m_HEADER_NElemMoldBaseMap = 0;
  int m_HEADER_NElemCoolChannelMap = 0;
  int m_HEADER_NNodeMap = 0;
  int m_HEADER_NElemCoolantEndMap = 0;
  int m_HEADER_NElemCoolFaceToLineMap = 0;  // from 1022 and 2003; also counts both element surface maps
  int m_HEADER_NElemCoolLineToFaceMap = 0;  // from 1022 and 2003; lines
  int m_HEADER_NSensorMap = 0;              // from 1023 and 2004
  int m_HEADER_Aux2 = 0;                    // from 1023 and 2004; carried, never interpreted

 private:
  struct State;
  std::unique_ptr<State> m_State;
};
