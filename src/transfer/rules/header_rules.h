#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>

#include "platform/ofe_header.h"

class COrvSolverMeshWriter;

// How a variant makes the target's header from the source's: an ordered list of rows, each for fields
// first..last.
namespace orvmesh::transfer {

// A number that the pre-passes or the model give.
enum class Tally : std::uint8_t {
  None,
  ChannelGroups,
  ChannelFaces,
  InsertElements,
  InteriorContacts,
  OtherContacts,
  HeaterElements,
  HeaterGroups,
  HeaterWallFaces,
  NumberedWithList,
  BadPlastic,
  BadMold,
  BadChannel,
  HotRunnerElements,
  HotRunnerFaces,
  HotRunnerNodeEntries,
  HotRunnerNodes,
  MoldBaseFaces,
  SecondLengthFactor,  // a float
};
const char* tallyName(Tally tally);

struct Term {
  std::int8_t sign = 0;
  Tally tally = Tally::None;
};
constexpr Term plus(Tally tally) { return {1, tally}; }
constexpr Term minus(Tally tally) { return {-1, tally}; }

enum class HeaderAction : std::uint8_t {
  Copy,       // source fields from sourceFirst on, as many as the row has
  Set,        // the constant
  AtLeast,    // the source's own field, raised to the constant
  Add,        // source field sourceFirst (none when negative) plus the terms
  CopyBytes,  // `constant` bytes, from the first byte of the field on
};

struct HeaderRow {
  int first;
  int last;
  HeaderAction action;
  int sourceFirst;
  std::int32_t constant;
  Term terms[3];
};

constexpr HeaderRow copied(int first, int last) { return {first, last, HeaderAction::Copy, first, 0, {}}; }
constexpr HeaderRow copied(int field) { return copied(field, field); }
constexpr HeaderRow copiedFrom(int first, int last, int source) {
  return {first, last, HeaderAction::Copy, source, 0, {}};
}
constexpr HeaderRow is(int first, int last, std::int32_t value) {
  return {first, last, HeaderAction::Set, -1, value, {}};
}
constexpr HeaderRow is(int field, std::int32_t value) { return is(field, field, value); }
constexpr HeaderRow atLeast(int field, std::int32_t value) {
  return {field, field, HeaderAction::AtLeast, field, value, {}};
}
constexpr HeaderRow tally(int field, Tally count) {
  return {field, field, HeaderAction::Add, -1, 0, {plus(count), {}, {}}};
}
constexpr HeaderRow source(int field, Term a, Term b = {}, Term c = {}) {
  return {field, field, HeaderAction::Add, field, 0, {a, b, c}};
}
// Bytes from the first byte of a field on; the last field may be reached in part.
constexpr HeaderRow bytesFrom(int field, std::int32_t bytes) {
  return {field, field + (bytes + 3) / 4 - 1, HeaderAction::CopyBytes, field, bytes, {}};
}

enum class Unlisted : std::uint8_t { CopySource, KeepWriter };

struct HeaderRule {
  Unlisted unlisted;
  std::span<const HeaderRow> rows;
};

// True when the rows stand in field order and no field is set twice.
constexpr bool ascendingAndDisjoint(std::span<const HeaderRow> rows) {
  int previous = -1;
  for (const auto& row : rows) {
    if (row.first <= previous || row.last < row.first || row.last >= OFEHeader::kFirstBlockCount)
      return false;
    previous = row.last;
  }
  return true;
}

extern const HeaderRule kChannelHeader;
extern const HeaderRule kPartInsertHeader;
extern const HeaderRule kPartInsertAndChannelHeader;
extern const HeaderRule kHotRunnerHeader;
extern const HeaderRule kStreamLineHeader;
extern const HeaderRule kMoldBaseHeader;

// True when a row sets the field.
bool names(const HeaderRule& rule, int field);

// Fills the worker's target header; the four strings are always copied.
void applyHeaderRule(const HeaderRule& rule, COrvSolverMeshWriter& worker);

// The rule as lines of text, one row each.
std::string describeHeaderRule(const HeaderRule& rule);

// Diagnostic lines of the two variants that report their header.
void traceChannelHeader(COrvSolverMeshWriter& worker);
void traceMoldBaseHeader(COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
