#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/header_counts.h"
#include "platform/ofeio.h"
#include "view/entry_words.h"

namespace orvmesh::view {

// One value of an entry: a 32-bit integer, a tag (printed unsigned, read in both signs), a float or a text.
enum class ValueType : char { Int = 'i', Tag = 'u', Float = 'f', Text = 't', Dictionary = 'd' };

// Integers that have a legal range beyond their type.
enum class Legal : std::uint8_t {
  Any,
  Node,          // a number of a node
  SurfaceNodes,  // a list of them whose fourth may be 0
  Surface,
  MoldMaterial,
  ChannelGroup,
  SensorKind
};

// A named value, or list of values, of an entry that is an object.
struct Argument {
  const char* key;
  ValueType type;
  Legal legal = Legal::Any;
  bool list = false;
  unsigned lengths = 0;  // of a list: bit n is set when it may hold n values; no bit: any number of them

  constexpr bool fixedLength() const { return std::has_single_bit(lengths); }
  constexpr std::size_t length() const { return static_cast<std::size_t>(std::countr_zero(lengths)); }
  // The values may be left out, a node list may not.
  constexpr bool required() const { return legal == Legal::Node || legal == Legal::SurfaceNodes; }
};

// How the entries of a block stand in JSON, and how they are moved between packed words and the file. One row
// per block serves dump and load.
struct BlockShape {
  const char* key;
  // Appends the next entry to the words; false at the block's end.
  bool (*read)(OFEIO_Manipulator& file, EntryWords& entry);
  // Takes one entry; returns what the write operation did.
  int (*write)(OFEIO_Manipulator& file, WordCursor& entry);
  const char* row = nullptr;                 // entries that are arrays: a value type per place
  std::span<const Argument> arguments = {};  // entries that are objects
  bool single = false;                       // the key holds one entry, not a list of them

  bool isObject() const { return row == nullptr; }
};

const BlockShape& blockShape(int block);

}  // namespace orvmesh::view
