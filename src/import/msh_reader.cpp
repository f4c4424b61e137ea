#include "import/msh_reader.h"

#include <utility>

#include "base/text_number.h"
#include "import/msh_sections.h"

namespace orvmesh::importing {
namespace {

constexpr std::string_view kFormatSection = "$MeshFormat";

// The name of the section that begins here, passed together with its line.
std::string_view takeHeading(Cursor& in) {
  const auto word = in.peekWord();
  if (word.empty() || word.front() != '$')
    in.fail("expected a section ($Nodes, $Elements, ...), found '" + std::string(word.substr(0, 40)) + "'");
  const auto line = in.takeLine();
  return line.substr(0, word.size());
}

std::string endOf(std::string_view section) { return std::string("$End").append(section.substr(1)); }

void expectEnd(Cursor& in, std::string_view section) {
  const auto word = in.peekWord();
  if (word.empty()) in.failAtEnd(endOf(section).c_str());
  if (word != endOf(section))
    in.fail("expected " + endOf(section) + ", found '" + std::string(word.substr(0, 40)) + "'");
  in.advance(word.size());
}

// Data sections may hold any bytes: what ends them is their end mark at the beginning of a line.
void skipSection(Cursor& in, std::string_view section) {
  const auto mark = std::string("\n").append(endOf(section));
  // The heading's own line end may be the one before the mark.
  const std::string_view rest{in.at() - 1, in.rest().size() + 1};
  const auto found = rest.find(mark);
  if (found == rest.npos) in.fail(std::string(section) + " has no " + endOf(section));
  in.advance(found + mark.size() - 1);
}

void readEndianness(Cursor& in, MeshFile& file) {
  file.setBinary();
  BinarySource binary(in);
  const auto one = binary.int32("the number 1 that tells the byte order");
  constexpr std::int32_t kSwappedOne = 0x01000000;
  if (one == kSwappedOne)
    in.fail("big-endian binary data is not read; save the mesh as text or on a little-endian machine");
  if (one != 1) in.fail("expected the number 1 that tells the byte order, found " + std::to_string(one));
  in.advance(sizeof one);
}

MshVersion versionFrom(const Cursor& in, double version) {
  if (version == 2.0 || version == 2.1 || version == 2.2) return MshVersion::v22;
  if (version == 4.1) return MshVersion::v41;
  std::string text;
  appendExact(text, version);
  in.fail(
      "MSH version " + text +
      " is not read, only 2.2 and 4.1 (gmsh OLD.msh -save -format msh41 -bin -o NEW.msh rewrites a mesh)");
}

void readFormat(Cursor& in, MeshFile& file, MshReading& reading) {
  TextSource text(in);
  const auto version = text.real("a version");
  const auto type = text.int32("0 for text or 1 for binary");
  const auto dataSize = text.int32("a data size");
  reading.version = versionFrom(in, version);
  if (type != 0 && type != 1)
    in.fail("file type " + std::to_string(type) + "; expected 0 (text) or 1 (binary)");
  if (type == 1 && dataSize != 8)
    in.fail("binary data of size " + std::to_string(dataSize) + "; only 8 bytes are read");
  text.takeLine();
  in.advance(static_cast<std::size_t>(text.at() - in.at()));
  if (type == 1) readEndianness(in, file);
  reading.mesh.format = std::string("MSH ") + (reading.version == MshVersion::v41 ? "4.1" : "2.2") +
                        (type == 1 ? " binary" : " text");
}

// Sections of which a file has one, in the order of the row numbers where that matters.
struct Section {
  std::string_view name;
  void (*readText)(TextSource&, MshReading&);
  void (*readBinary)(BinarySource&, MshReading&);
  bool onlyIn41;
  bool seen = false;
};

class Reader {
 public:
  explicit Reader(const std::string& path) : file_(path), in_(file_) { reading_.mesh.path = path; }

  MshMesh readAll() {
    readStart();
    while (!in_.peekWord().empty()) readSection();
    if (!seen("$Nodes")) in_.fail("the file has no $Nodes section");
    if (!seen("$Elements")) in_.fail("the file has no $Elements section");
    formSets(reading_);
    return std::move(reading_.mesh);
  }

 private:
  void readStart() {
    while (in_.peekWord().starts_with('$') && in_.peekWord() != kFormatSection) {
      const auto heading = takeHeading(in_);
      if (heading.starts_with("$NOD")) in_.fail("MSH version 1 is not read, only 2.2 and 4.1");
      skipSection(in_, heading);
    }
    if (in_.peekWord() != kFormatSection)
      in_.fail("is no MSH file: expected $MeshFormat (gmsh IN -save -format msh41 -bin -o OUT.msh converts)");
    in_.setSection(takeHeading(in_));
    readFormat(in_, file_, reading_);
    expectEnd(in_, kFormatSection);
  }

  void readSection() {
    const auto heading = takeHeading(in_);
    in_.setSection(heading);
    if (heading == kFormatSection) in_.fail("a second $MeshFormat section");
    for (auto& section : sections_)
      if (section.name == heading && !(section.onlyIn41 && reading_.version == MshVersion::v22))
        return readKnown(section);
    skipSection(in_, heading);
  }

  void readKnown(Section& section) {
    if (section.seen) in_.fail("a second " + std::string(section.name) + " section");
    section.seen = true;
    if (section.name == "$Elements" && !seen("$Nodes")) in_.fail("$Elements stands before $Nodes");
    if (file_.binary() && section.readBinary != nullptr) {
      run<BinarySource>(section.readBinary);
    } else {
      run<TextSource>(section.readText);
    }
    expectEnd(in_, section.name);
  }

  template <class Source>
  void run(void (*read)(Source&, MshReading&)) {
    Source source(in_);
    read(source, reading_);
    in_.advance(static_cast<std::size_t>(source.at() - in_.at()));
  }

  bool seen(std::string_view name) const {
    for (const auto& section : sections_)
      if (section.name == name) return section.seen;
    return false;
  }

  MeshFile file_;
  Cursor in_;
  MshReading reading_;
  Section sections_[5] = {
      {"$PhysicalNames", readPhysicalNames, nullptr, false},
      {"$Entities", readEntities<TextSource>, readEntities<BinarySource>, true},
      {"$PartitionedEntities", readPartitionedEntities<TextSource>, readPartitionedEntities<BinarySource>,
       true},
      {"$Nodes", readNodes<TextSource>, readNodes<BinarySource>, false},
      {"$Elements", readElements<TextSource>, readElements<BinarySource>, false},
  };
};

}  // namespace

MshMesh readMsh(const std::string& path) { return Reader(path).readAll(); }

}  // namespace orvmesh::importing
