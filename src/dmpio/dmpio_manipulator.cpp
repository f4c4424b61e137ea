#include <orvmesh/dmpio_manipulator.h>
#include <sys/stat.h>

#include <cstdint>
#include <limits>

#include "dmpio/layout.h"
#include "dmpio/sides.h"

using namespace orvmesh::dmpio;

// Hidden functions come from the base; those of State itself would be exported with the class.
struct DMPIO_Manipulator_C::State : Sides {};

namespace {

constexpr std::int64_t kNoLimit = std::numeric_limits<std::int64_t>::max();

// More entries than a file of this size can hold, so that no count in its header makes a copy allocate more
// than a small multiple of it.
std::int64_t mostEntriesOf(const char* path) {
  constexpr std::int64_t kAnyFile = 1 << 16;
  struct stat status {};
  return kAnyFile + (::stat(path, &status) == 0 ? status.st_size : 0);
}

}  // namespace

DMPIO_Manipulator_C::DMPIO_Manipulator_C() : m_State(std::make_unique<State>()) {}

DMPIO_Manipulator_C::DMPIO_Manipulator_C(const DMPIO_Manipulator_C& other) : DMPIO_Manipulator_C() {
  *this = other;
}

DMPIO_Manipulator_C& DMPIO_Manipulator_C::operator=(const DMPIO_Manipulator_C& other) {
  if (this == &other) return *this;
  *m_State = *other.m_State;
  for (int i = 0; i < kHeaderValues; ++i) this->*Header::member(i) = other.*Header::member(i);
  return *this;
}

DMPIO_Manipulator_C::~DMPIO_Manipulator_C() { DMPIO_Manipulator_C::destroy(); }

void DMPIO_Manipulator_C::destroy() {
  endReading();
  endWriting();
}

const char* DMPIO_Manipulator_C::getErrorText() const { return m_State->error.c_str(); }

int DMPIO_Manipulator_C::getFileVersion(const char* path) {
  return safely(-2, [&] { return DumpReader::versionOf(path); });
}

int DMPIO_Manipulator_C::isAsciiDMP(int version, int& known, int& supported) {
  const bool isText = encodingOf(version) == Encoding::Text;
  known = supported = isText && isSupported(version) ? 1 : 0;
  return isText ? 1 : 0;
}

// Unlike the text versions, every version of the block form is a known one (quirk 38).
int DMPIO_Manipulator_C::isBinaryDMP(int version, int& known, int& supported) {
  known = encodingOf(version) == Encoding::Block ? 1 : 0;
  supported = known == 1 && isSupported(version) ? 1 : 0;
  return known;
}

int DMPIO_Manipulator_C::beginReading(const char* path, const char*) {
  return m_State->reported([&] {
    const int result = m_State->reader.begin(path, Header(*this));
    m_State->error = m_State->reader.errorText();
    return result;
  });
}

int DMPIO_Manipulator_C::endReading() {
  m_State->error.clear();
  return m_State->reader.end();
}

int DMPIO_Manipulator_C::beginWriting(const char* path, int version) {
  return m_State->beginWriting(path, version, Header(*this), kNoLimit);
}

int DMPIO_Manipulator_C::endWriting() {
  State& state = *m_State;
  const bool wasOpen = state.writer.isWriting();
  const int result = state.reported([&] {
    const int ended = state.writer.end();
    state.error = state.writer.errorText();
    return ended;
  });
  if (result != 1 && wasOpen) state.writer.abandon();
  return result;
}

int DMPIO_Manipulator_C::convert(const char* inPath, const char* outPath, int version) {
  if (beginReading(inPath, nullptr) < 1) return 1;
  const Header header(*this);
  State& state = *m_State;
  const int begun =
      outPath == nullptr ? 0 : state.beginWriting(outPath, version, header, mostEntriesOf(inPath));
  const bool isCopied = begun >= 1 && state.reported([&] { return state.copyBlocks(header); }) == 1;
  if (isCopied)
    endWriting();
  else if (begun >= 1)
    state.writer.abandon();
  state.reader.end();
  return 1;
}

int DMPIO_Manipulator_C::readNodeMapBlockEntry(int& first, int& second) {
  return m_State->readPair(kNodeMap, Header(*this), first, second);
}
int DMPIO_Manipulator_C::readElementCoolantEndMapBlockEntry(int& first, int& second) {
  return m_State->readPair(kCoolantEndMap, Header(*this), first, second);
}
int DMPIO_Manipulator_C::readElementPlasticMapBlockEntry(int& value) {
  return m_State->readOne(kPlasticMap, Header(*this), value);
}
int DMPIO_Manipulator_C::readElementMoldBaseMapBlockEntry(int& value) {
  return m_State->readOne(kMoldBaseMap, Header(*this), value);
}
int DMPIO_Manipulator_C::readElementCoolChannelMapBlockEntry(int& value) {
  return m_State->readOne(kCoolChannelMap, Header(*this), value);
}
int DMPIO_Manipulator_C::readElementCoolFaceToLineMapBlockEntry(int& value) {
  return m_State->readOne(kFaceToLineMap, Header(*this), value);
}
int DMPIO_Manipulator_C::readSensorMapBlockEntry(int& value) {
  return m_State->readOne(kSensorMap, Header(*this), value);
}
int DMPIO_Manipulator_C::readElementSurfaceMapBlockEntry(int& value) {
  return m_State->readOne(kSurfaceMap, Header(*this), value);
}
int DMPIO_Manipulator_C::readElementSurface103104MapBlockEntry(int& value) {
  return m_State->readOne(kSurface103104Map, Header(*this), value);
}
int DMPIO_Manipulator_C::readElementCoolLineToFaceMapBlockEntryItemPair(bool& newGroup, int& itemCount,
                                                                        int& first, int& second) {
  return safely(-2,
                [&] { return m_State->reader.readItem(Header(*this), newGroup, itemCount, first, second); });
}

int DMPIO_Manipulator_C::writeNodeMapBlockEntry(int first, int second) {
  return m_State->writePair(kNodeMap, Header(*this), first, second);
}
int DMPIO_Manipulator_C::writeElementCoolantEndMapBlockEntry(int first, int second) {
  return m_State->writePair(kCoolantEndMap, Header(*this), first, second);
}
int DMPIO_Manipulator_C::writeElementPlasticMapBlockEntry(int value) {
  return m_State->writeOne(kPlasticMap, Header(*this), value);
}
int DMPIO_Manipulator_C::writeElementMoldBaseMapBlockEntry(int value) {
  return m_State->writeOne(kMoldBaseMap, Header(*this), value);
}
int DMPIO_Manipulator_C::writeElementCoolChannelMapBlockEntry(int value) {
  return m_State->writeOne(kCoolChannelMap, Header(*this), value);
}
int DMPIO_Manipulator_C::writeElementCoolFaceToLineMapBlockEntry(int value) {
  return m_State->writeOne(kFaceToLineMap, Header(*this), value);
}
int DMPIO_Manipulator_C::writeSensorMapBlockEntry(int value) {
  return m_State->writeOne(kSensorMap, Header(*this), value);
}
int DMPIO_Manipulator_C::writeElementSurfaceMapBlockEntry(int value) {
  return m_State->writeOne(kSurfaceMap, Header(*this), value);
}
int DMPIO_Manipulator_C::writeElementSurface103104MapBlockEntry(int value) {
  return m_State->writeOne(kSurface103104Map, Header(*this), value);
}
int DMPIO_Manipulator_C::writeElementCoolLineToFaceMapBlockEntryItemPair(bool newGroup, int itemCount,
                                                                         int first, int second) {
  return m_State->writeItem(Header(*this), newGroup, itemCount, first, second);
}
