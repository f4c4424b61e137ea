#include "sensor/snc_rewrite.h"

#include <array>
#include <cmath>
#include <iostream>

#include "base/field_scan.h"
#include "base/text_number.h"
#include "sensor/line_reader.h"

namespace orvmesh::sensor {
namespace {

constexpr char kSectionMark = '[';
constexpr std::string_view kEndMark = "[EOF]";
constexpr int kAllTypes = 6;  // a file counts type 3, too

bool opensSection(std::string_view line) { return line.find(kSectionMark) != line.npos; }
bool holds(std::string_view line, std::string_view text) { return line.find(text) != line.npos; }
bool isBlank(std::string_view line) { return line.find_first_not_of(" \t\r") == line.npos; }

// Text of a file as it may stand in a message.
std::string quoted(std::string_view text) {
  constexpr std::size_t kShown = 40;
  std::string shown(text.substr(0, kShown));
  for (char& c : shown)
    if (static_cast<unsigned char>(c) < ' ' || c == 127) c = '?';
  return "\"" + shown + (text.size() > kShown ? "...\"" : "\"");
}

std::string found(std::string_view line) {
  return ", found " + (line.empty() ? std::string("nothing") : quoted(line));
}

// Text that goes to the sink in large pieces.
class Output {
 public:
  explicit Output(const TextSink& sink) : sink_(sink) {}
  std::string& text() { return text_; }
  void line(std::string_view line) {
    text_.append(line);
    text_ += '\n';
    if (text_.size() >= kPiece) flush();
  }
  void flush() {
    taken_ = taken_ && sink_(text_);
    text_.clear();
  }
  bool taken() const { return taken_; }

 private:
  static constexpr std::size_t kPiece = std::size_t{1} << 18;
  const TextSink& sink_;
  std::string text_;
  bool taken_ = true;
};

// Lines kept to be written in another order, counted from 1.
class KeptLines {
 public:
  void clear() {
    text_.clear();
    ends_.assign(1, 0);
  }
  std::string& text() { return text_; }
  void close() { ends_.push_back(text_.size()); }
  std::string_view operator[](std::int32_t i) const {
    const auto at = static_cast<std::size_t>(i);
    return std::string_view(text_).substr(ends_[at - 1], ends_[at] - ends_[at - 1]);
  }
  std::string_view all() const { return text_; }

 private:
  std::string text_;
  std::vector<std::size_t> ends_;
};

class Rewriter {
 public:
  Rewriter(std::istream& in, const TextSink& sink, const SensorMaps& maps)
      : reader_(in), out_(sink), maps_(maps), total_(maps.counts.total()) {}

  SncReport run();

 private:
  using Handler = void (Rewriter::*)();
  struct Section {
    std::string_view mark;
    Handler handler;
  };
  // A line that one section leaves may open a later one of these, never an earlier one (quirk 47).
  static const std::array<Section, 5> kSections;

  void copySection();
  void sensorInfo();
  void historyData();

  void dispatch();
  void readCounts();
  void compareCounts(const std::array<int, kAllTypes>& counts);
  void readSensors();
  void historyRecord();

  void nextIntoCurrent() {
    std::string_view line;
    reader_.next(line);
    current_ = line;
  }
  // An empty line where the text has ended.
  std::string_view nextLine() {
    std::string_view line;
    reader_.next(line);
    return line;
  }
  // Only the first error is told, and only its text is made: a text may have an error in every line.
  template <class Text>
  void complain(const Text& text) {
    complainOfLine(reader_.lineNumber(), text);
  }
  template <class Text>
  void complainOfLine(std::int64_t number, const Text& text) {
    if (report_.error.empty()) report_.error = "line " + std::to_string(number) + ": " + text();
  }
  void complainOfLostLine();

  LineReader reader_;
  Output out_;
  const SensorMaps& maps_;
  const std::int32_t total_;
  std::string current_;
  KeptLines kept_;
  bool hasSensors_ = false, hasEnd_ = false;
  SncReport report_;
};

constexpr std::array<Rewriter::Section, 5> Rewriter::kSections{{{"[HEADER]", &Rewriter::copySection},
                                                                {"[SENSOR INFO]", &Rewriter::sensorInfo},
                                                                {"[VARBLE INFO]", &Rewriter::copySection},
                                                                {"[HISTORY DATA]", &Rewriter::historyData},
                                                                {"[TIMESTEP]", &Rewriter::copySection}}};

SncReport Rewriter::run() {
  out_.line("1");
  for (nextIntoCurrent(); reader_.good(); nextIntoCurrent())
    if (!current_.empty()) dispatch();
  complainOfLostLine();
  out_.text() += kEndMark;
  out_.flush();

  if (!hasSensors_) complain([&] { return "the text ends without a section [SENSOR INFO]"; });
  if (!hasEnd_) complain([&] { return "the text ends without [EOF]; it was cut short"; });
  if (!out_.taken()) report_.error = "the rewritten text cannot be written";
  return report_;
}

void Rewriter::dispatch() {
  for (const Section& section : kSections)
    if (holds(current_, section.mark)) (this->*section.handler)();
  complainOfLostLine();
}

void Rewriter::complainOfLostLine() {
  if (holds(current_, kEndMark)) {
    hasEnd_ = true;
  } else if (!isBlank(current_) && (reader_.lineNumber() > 1 || opensSection(current_))) {
    complain([&] {
      return quoted(current_) +
             " belongs to no section and would be lost; sections stand in the order [HEADER], [SENSOR INFO], "
             "[VARBLE INFO], [HISTORY DATA], [TIMESTEP]";
    });
  }
}

void Rewriter::copySection() {
  out_.line(current_);
  std::string_view line;
  while (reader_.next(line) && !opensSection(line)) out_.line(line);
  current_ = line;
}

void Rewriter::sensorInfo() {
  hasSensors_ = true;
  out_.line(current_);
  out_.line(nextLine());
  readCounts();
  for (int type = 1; type <= kAllTypes; ++type) {
    appendInt(out_.text(), maps_.counts.ofType(type));
    out_.line("");
  }
  readSensors();
  for (std::int32_t i = 1; i <= total_; ++i) {
    const std::int32_t g = maps_.oldToNew.global[i];
    appendInt(out_.text(), maps_.newToOld.type[g]);
    out_.text() += "  ";
    out_.line(kept_[g]);
  }
  std::string_view line;
  while (reader_.next(line) && !opensSection(line))
    if (!isBlank(line))
      complain([&] {
        return quoted(line) + " stands behind the last of the mesh's " + std::to_string(total_) + " sensors";
      });
  current_ = line;
}

void Rewriter::readCounts() {
  std::array<int, kAllTypes> counts{};
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const std::string_view line = nextLine();
    if (!FieldScan(line).integer(counts[i]))
      complain(
          [&] { return "expected the count of sensors of type " + std::to_string(i + 1) + found(line); });
  }
  compareCounts(counts);
}

void Rewriter::compareCounts(const std::array<int, kAllTypes>& counts) {
  const SensorCounts joined = maps_.newCounts();
  std::string foundText, joinedText;
  bool same = true, own = true;
  for (int type = 1; type <= kAllTypes; ++type) {
    const int count = counts[static_cast<std::size_t>(type) - 1];
    foundText += ' ';
    appendInt(foundText, count);
    joinedText += ' ';
    joinedText += type == 3 ? "*" : std::to_string(joined.ofType(type));
    same = same && (type == 3 || count == joined.ofType(type));
    own = own && (type == 3 || count == maps_.counts.ofType(type));
  }
  if (same) return;
  complain([&] {
    return "sensor counts of types 1 to 6 are" + foundText + (own ? ", those of the mesh itself" : "") +
           "; the mesh joined with its part inserts has" + joinedText +
           (own ? "; was the file rewritten before?" : " (* any)");
  });
}

void Rewriter::readSensors() {
  kept_.clear();
  int lead = 0, number = 0;
  double x = 0, y = 0, z = 0;
  for (std::int32_t i = 1; i <= total_; ++i) {
    const std::string_view line = nextLine();
    FieldScan fields(line);
    if (!(fields.integer(lead) && fields.integer(number) && fields.number(x) && fields.number(y) &&
          fields.number(z) && std::isfinite(x) && std::isfinite(y) && std::isfinite(z)))
      complain([&] {
        return "expected sensor " + std::to_string(i) + " of " + std::to_string(total_) +
               " (type, number, x, y, z)" + found(line);
      });
    else if (!fields.atEnd())
      ++report_.longSensorLines;
    std::string& text = kept_.text();
    appendInt(text, number);
    text += "      ";
    appendDefault(text, x);
    text += ' ';
    appendDefault(text, y);
    text += ' ';
    appendDefault(text, z);
    kept_.close();
  }
}

void Rewriter::historyData() {
  out_.line(current_);
  for (nextIntoCurrent(); reader_.good() && !opensSection(current_); nextIntoCurrent()) historyRecord();
}

void Rewriter::historyRecord() {
  ++report_.records;
  const std::int64_t first = reader_.lineNumber();
  out_.line(current_);
  kept_.clear();
  bool whole = true;
  for (std::int32_t i = 1; i <= total_; ++i) {
    std::string_view line;
    whole = reader_.next(line) && whole;
    kept_.text().append(line);
    kept_.close();
  }
  for (std::int32_t i = 1; i <= total_; ++i) out_.line(kept_[maps_.oldToNew.global[i]]);
  std::string_view closing;
  whole = reader_.next(closing) && whole && !opensSection(kept_.all()) && !opensSection(closing);
  if (!whole)
    complainOfLine(first, [&] {
      return "history record " + std::to_string(report_.records) +
             (report_.records > 1 ? " or one before it" : "") + " has not the mesh's " +
             std::to_string(total_) + " sensor lines and a closing line";
    });
  report_.closingTexts += isBlank(closing) ? 0 : 1;
  // The closing line becomes an empty one, whatever it holds (quirk 45).
  out_.line("");
  std::cout.flush();  // a program that watches the output sees how far it is (quirk 46)
}

}  // namespace

SncReport rewriteSnc(std::istream& in, const TextSink& sink, const SensorMaps& maps) {
  return Rewriter(in, sink, maps).run();
}

}  // namespace orvmesh::sensor
