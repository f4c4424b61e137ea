#pragma once

#include <orvmesh/dmpio_manipulator.h>

#include <array>
#include <cstddef>
#include <string_view>

// What a mapping dump consists of; docs/formats/dmp.md is its page.
namespace orvmesh::dmpio {

// Header values by their number.
enum HeaderValue : unsigned char {
  kVersion,
  kAux1,
  kPlasticCount,
  kMoldBaseCount,
  kCoolChannelCount,
  kNodeCount,
  kCoolantEndCount,
  kFaceToLineCount,
  kLineToFaceCount,
  kSensorCount,
  kAux2,
  kHeaderValues
};

// The header members of a manipulator by number.
class Header {
 public:
  explicit Header(DMPIO_Manipulator_C& owner) : owner_(&owner) {}
  int& operator[](int value) const { return owner_->*member(value); }
  static constexpr int DMPIO_Manipulator_C::*member(int value) {
    return kMembers[static_cast<std::size_t>(value)];
  }

 private:
  static constexpr std::array<int DMPIO_Manipulator_C::*, kHeaderValues> kMembers{
      &DMPIO_Manipulator_C::m_HEADER_Version,
      &DMPIO_Manipulator_C::m_HEADER_Aux1,
      &DMPIO_Manipulator_C::m_HEADER_NElemPlasticMap,
      &DMPIO_Manipulator_C::m_HEADER_NElemMoldBaseMap,
      &DMPIO_Manipulator_C::m_HEADER_NElemCoolChannelMap,
      &DMPIO_Manipulator_C::m_HEADER_NNodeMap,
      &DMPIO_Manipulator_C::m_HEADER_NElemCoolantEndMap,
      &DMPIO_Manipulator_C::m_HEADER_NElemCoolFaceToLineMap,
      &DMPIO_Manipulator_C::m_HEADER_NElemCoolLineToFaceMap,
      &DMPIO_Manipulator_C::m_HEADER_NSensorMap,
      &DMPIO_Manipulator_C::m_HEADER_Aux2};
  DMPIO_Manipulator_C* owner_;
};

enum class Encoding : unsigned char { Text, Block };

inline constexpr int kFirstBlockVersion = 2001;
constexpr Encoding encodingOf(int version) {
  return version < kFirstBlockVersion ? Encoding::Text : Encoding::Block;
}

// The versions that can be written. The text form can be read in these only; the block form in any version.
struct VersionRow {
  int version;
  Encoding encoding;
  int headerValues;
};
inline constexpr std::array<VersionRow, 7> kVersions{{{1020, Encoding::Text, 7},
                                                      {1022, Encoding::Text, 9},
                                                      {1023, Encoding::Text, 11},
                                                      {2001, Encoding::Block, 7},
                                                      {2003, Encoding::Block, 9},
                                                      {2004, Encoding::Block, 11},
                                                      {2005, Encoding::Block, 11}}};
constexpr bool isSupported(int version) {
  for (const VersionRow& row : kVersions)
    if (row.version == version) return true;
  return false;
}
// How many header values a version has, be it a supported one or not.
constexpr int headerValues(Encoding encoding, int version) {
  int values = 7;
  for (const VersionRow& row : kVersions)
    if (row.encoding == encoding && row.version <= version) values = row.headerValues;
  return values;
}

// The header lines of the text form, each with the values [first, first + count).
struct HeaderLine {
  int first;
  int count;
};
inline constexpr std::array<HeaderLine, 5> kHeaderLines{{{0, 2}, {2, 3}, {5, 2}, {7, 2}, {9, 2}}};

enum class Shape : unsigned char { One, Pair, Groups };

// The blocks after the header, in file order.
enum Block : unsigned char {
  kNodeMap,
  kPlasticMap,
  kMoldBaseMap,
  kCoolChannelMap,
  kCoolantEndMap,
  kFaceToLineMap,
  kLineToFaceMap,
  kSensorMap,
  kSurfaceMap,
  kSurface103104Map,
  kBlocks
};
using BlockSet = unsigned;  // bit b: block b
constexpr BlockSet setOf(Block block) { return 1U << block; }

inline constexpr long kHeaderId = 10000;
inline constexpr long kAfterLastId = 70000;
inline constexpr std::string_view kHeaderHeading = "[HEADER]";

struct BlockRow {
  long id;
  Shape shape;
  HeaderValue textCount;          // counts the entries in the text form
  HeaderValue blockCount;         // counts them when the block form is written
  std::string_view written;       // heading when an entry is written
  std::string_view filledIn;      // heading of a block that was skipped
  std::string_view searched;      // what the reader looks for
  BlockSet alsoMarksInBlockForm;  // counts as written, too, once this one is started
  int refusal;                    // what the write operation returns for a refused entry
  const char* name;               // for people and as a JSON key
};
extern const std::array<BlockRow, kBlocks> kBlockRows;

}  // namespace orvmesh::dmpio
