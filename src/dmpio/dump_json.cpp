#include "dmpio/dump_json.h"

#include "base/text_number.h"
#include "dmpio/dump_info.h"

namespace orvmesh::dmpio {
namespace {

constexpr std::array<const char*, kHeaderValues> kHeaderNames{"m_HEADER_Version",
                                                              "m_HEADER_Aux1",
                                                              "m_HEADER_NElemPlasticMap",
                                                              "m_HEADER_NElemMoldBaseMap",
                                                              "m_HEADER_NElemCoolChannelMap",
                                                              "m_HEADER_NNodeMap",
                                                              "m_HEADER_NElemCoolantEndMap",
                                                              "m_HEADER_NElemCoolFaceToLineMap",
                                                              "m_HEADER_NElemCoolLineToFaceMap",
                                                              "m_HEADER_NSensorMap",
                                                              "m_HEADER_Aux2"};

class JsonPrinter : public DumpVisitor {
 public:
  explicit JsonPrinter(const std::function<void(std::string_view)>& sink) : sink_(sink) {}

  void header(const DumpHeader& header);
  void beginBlock(Block block) override {
    out_ += ",\n\"";
    out_ += kBlockRows[block].name;
    out_ += "\": [";
    separator_ = "";
  }
  void endBlock() override { out_ += "]"; }
  void one(int value) override {
    next();
    appendInt(out_, value);
    separator_ = ", ";
  }
  void pair(int first, int second) override {
    next();
    out_ += '[';
    appendInt(out_, first);
    out_ += ", ";
    appendInt(out_, second);
    out_ += ']';
    separator_ = ", ";
  }
  void beginGroup() override {
    next();
    out_ += '[';
    separator_ = "";
  }
  void endGroup() override {
    out_ += ']';
    separator_ = ",\n  ";
  }
  void note(const std::string&) override {}
  void finish() {
    out_ += "}\n";
    sink_(out_);
  }

 private:
  static constexpr std::size_t kPiece = std::size_t{1} << 18;

  void next() {
    if (out_.size() >= kPiece) {
      sink_(out_);
      out_.clear();
    }
    out_ += separator_;
  }

  const std::function<void(std::string_view)>& sink_;
  std::string out_;
  const char* separator_ = "";
};

void JsonPrinter::header(const DumpHeader& header) {
  out_ += "{\"format\": \"dmp-json\", \"encoding\": ";
  out_ += header.encoding == Encoding::Text ? "\"text\"" : "\"block\"";
  out_ += ",\n\"header\": {";
  for (int i = 0; i < headerValues(header.encoding, header.version); ++i) {
    const auto k = static_cast<std::size_t>(i);
    out_ += i == 0 ? "\"" : ", \"";
    out_ += kHeaderNames[k];
    out_ += "\": ";
    appendInt(out_, header.values[k]);
  }
  out_ += "}";
}

}  // namespace

void dumpAsJson(const std::string& path, const std::function<void(std::string_view)>& sink) {
  const DumpInfo proven = readDumpInfo(path);
  JsonPrinter printer(sink);
  printer.header(proven.header);
  walkDump(path, proven.header.encoding, printer);
  printer.finish();
}

}  // namespace orvmesh::dmpio
