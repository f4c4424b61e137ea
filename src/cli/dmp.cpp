#include <cstdio>
#include <memory>
#include <string>

#include "base/atomic_file.h"
#include "base/failure.h"
#include "base/other_file.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "dmpio/dump_info.h"
#include "dmpio/dump_json.h"
#include "view/text_io.h"
#include "view/text_table.h"

namespace orvmesh::cli {
namespace {

using dmpio::DumpInfo;

struct Options {
  std::string source, target;
  int version = 2004;
};

DumpInfo read(const std::string& file) {
  const ProgressLine progress("reading " + file);
  return dmpio::readDumpInfo(file);
}

std::string headerText(const dmpio::DumpHeader& header) {
  std::string text;
  for (int i = 0; i < dmpio::headerValues(header.encoding, header.version); ++i)
    text += " " + std::to_string(header.values[static_cast<std::size_t>(i)]);
  return text;
}

view::TextTable blockTable(const DumpInfo& info) {
  view::TextTable table({"block", "id", "entries", "items", "copied"});
  for (int b = 0; b < dmpio::kBlocks; ++b) {
    const auto block = static_cast<dmpio::Block>(b);
    const auto& row = dmpio::kBlockRows[block];
    const auto& held = info.blocks[block];
    const bool hasItems = row.shape == dmpio::Shape::Groups;
    table.add({row.name, std::to_string(row.id), held.isThere ? std::to_string(held.inFile.entries) : "-",
               hasItems ? std::to_string(held.inFile.items) : "",
               std::to_string(info.copied(block).entries)});
  }
  return table;
}

int info(const Options& options) {
  const DumpInfo content = read(options.source);
  const bool isText = content.header.encoding == dmpio::Encoding::Text;
  std::string text = "version  " + std::to_string(content.header.version) + ", " +
                     (isText ? "text" : "block") + " form\nheader  " + headerText(content.header) + "\n\n" +
                     blockTable(content).text();
  for (const std::string& note : content.notes) text += "\nnote: " + note;
  for (const std::string& loss : dmpio::lossesOfAnyCopy(content)) text += "\nnote: " + loss;
  view::printText(text + (text.ends_with('\n') ? "" : "\n"));
  return 0;
}

int dump(const Options& options) {
  requireOtherFile(options.target, {options.source});
  const DumpInfo content = read(options.source);
  for (const std::string& note : content.notes)
    std::fprintf(stderr, "orvmesh: %s: warning: %s\n", options.source.c_str(), note.c_str());
  const ProgressLine progress("dumping " + options.source);
  if (options.target.empty()) {
    dmpio::dumpAsJson(options.source, view::printText);
    return 0;
  }
  AtomicFile out;
  if (!out.open(options.target)) throw Failure(options.target, out.errorText());
  dmpio::dumpAsJson(options.source, [&out](std::string_view text) { out.append(text.data(), text.size()); });
  if (!out.commit()) throw Failure(options.target, out.errorText());
  return 0;
}

int convert(const Options& options) {
  requireOtherFile(options.target, {options.source});
  const DumpInfo source = read(options.source);
  {
    const ProgressLine progress("converting " + options.source);
    DMPIO_Manipulator_C dump;
    dump.convert(options.source.c_str(), options.target.c_str(), options.version);
    // The result is 1 whatever happened.
    if (*dump.getErrorText() != '\0') throw Failure(options.target, dump.getErrorText());
  }
  for (const std::string& note : source.notes)
    std::fprintf(stderr, "orvmesh: %s: warning: %s\n", options.source.c_str(), note.c_str());
  for (const std::string& loss : dmpio::lossesOfCopy(source, read(options.target)))
    std::fprintf(stderr, "orvmesh: %s: warning: %s\n", options.target.c_str(), loss.c_str());
  return 0;
}

CLI::App* addVerb(CLI::App& group, Job& job, const std::shared_ptr<Options>& options, const char* name,
                  const char* what, int (*run)(const Options&)) {
  auto* const verb = group.add_subcommand(name, what);
  verb->add_option("FILE", options->source, "mapping dump")->required();
  verb->callback([&job, options, run] { job = [options, run] { return run(*options); }; });
  return verb;
}

}  // namespace

void addDmp(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* const group = app.add_subcommand("dmp", "Look at mapping dumps (DMP files) and convert them");
  group->require_subcommand(1);
  group->footer("Example: orvmesh dmp convert map.dmp map-text.dmp --version 1023");

  addVerb(*group, job, options, "info", "Tell what a mapping dump holds", &info)
      ->footer(
          "Version, form and header values; per block its entries (items: pairs of all lines of the\n"
          "line-to-face map) and how many of them convert copies at the most; why it leaves some out.\n"
          "Example: orvmesh dmp info map.dmp");
  auto* const dumped = addVerb(*group, job, options, "dump", "Print a mapping dump as JSON", &dump);
  dumped->add_option("-o,--output", options->target, "write to this file; appears complete or not at all");
  dumped->footer("Every block as it stands in the file.\nExample: orvmesh dmp dump map.dmp -o map.json");
  auto* const copied =
      addVerb(*group, job, options, "convert", "Copy a mapping dump into another version", &convert);
  copied->add_option("OUT", options->target, "dump to write; appears complete or not at all")->required();
  copied->add_option("--version", options->version,
                     "1020, 1022, 1023 (text), 2001, 2003, 2004 or 2005 (block); default 2004");
  copied->footer(
      "The sensor map and the element surface maps are not copied. Whatever else does not come back\n"
      "out of the copy is warned of, a line each.\n"
      "Example: orvmesh dmp convert map.dmp map-text.dmp --version 1023");
}

}  // namespace orvmesh::cli
