#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "base/atomic_file.h"
#include "base/failure.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "platform/cofedata.h"
#include "platform/text_stream.h"
#include "sensor/snc_rewrite.h"

namespace orvmesh::cli {
namespace {

struct Options {
  std::string file, mesh, target;
};

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code ignored;
  return std::filesystem::equivalent(a, b, ignored);
}

void refuseUnfinished(const std::string& file) {
  const std::string copy = file + ".tmc";
  std::error_code ignored;
  if (std::filesystem::exists(std::filesystem::symlink_status(copy, ignored)))
    throw Failure(file,
                  copy +
                      " exists: an earlier rewrite did not finish, that is the original; put it back or "
                      "remove it first");
}

sensor::SensorMaps readMaps(const std::string& mesh) {
  COFEData data;
  if (data.ReadDataBin(mesh.c_str(), nullptr, 0, false) != 1) throw Failure(mesh, data.errorText());
  return sensor::makeMaps(data.model(), sensor::variantOfTransfer(data.model()));
}

sensor::SncReport rewrite(const Options& options, const sensor::SensorMaps& maps, AtomicFile& out) {
  std::ifstream in;
  OpenTextStreamWithRetry(in, options.file.c_str());
  if (!in.is_open()) throw Failure(options.file, std::string("cannot be read: ") + std::strerror(errno));
  auto report = sensor::rewriteSnc(
      in, [&](std::string_view text) { return out.append(text.data(), text.size()); }, maps);
  if (!out.errorText().empty()) throw Failure(options.target, out.errorText());
  if (in.bad()) throw Failure(options.file, "cannot be read");
  if (!report.error.empty()) throw Failure(options.file, report.error);
  return report;
}

void warn(const std::string& file, std::int64_t count, const char* what) {
  if (count > 0)
    std::fprintf(stderr, "orvmesh: %s: warning: %lld %s\n", file.c_str(), static_cast<long long>(count),
                 what);
}

int rewriteFile(Options options) {
  if (options.target.empty()) options.target = options.file;
  if (isSameFile(options.target, options.mesh))
    throw Failure(options.target, "is the mesh; it would be overwritten");
  if (options.target == options.file || isSameFile(options.target, options.file))
    refuseUnfinished(options.file);
  const ProgressLine progress("rewriting " + options.file);
  const sensor::SensorMaps maps = readMaps(options.mesh);
  AtomicFile out;
  if (!out.open(options.target)) throw Failure(options.target, out.errorText());
  const sensor::SncReport report = rewrite(options, maps, out);
  if (!out.commit()) throw Failure(options.target, out.errorText());
  warn(options.file, report.longSensorLines,
       "sensor lines hold more than five numbers; the rest was dropped");
  warn(options.file, report.closingTexts, "history records had text in their closing line; it was dropped");
  std::printf("%s: %d sensors and %lld history records written\n", options.target.c_str(),
              maps.counts.total(), static_cast<long long>(report.records));
  return 0;
}

}  // namespace

void addSnc(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command =
      app.add_subcommand("snc", "Rewrite a sensor history file to the sensor numbers of the mesh");
  command->add_option("FILE", options->file, "SNC file, numbered as the mesh joined with its part inserts")
      ->required();
  command->add_option("MESH", options->mesh, "component OFE file that was joined")->required();
  command->add_option("-o,--output", options->target,
                      "write here and leave FILE as it is; appears complete or not at all");
  command->footer(
      "FILE is replaced only when all of it was understood and its sensors are those of the mesh.\n"
      "Example: orvmesh snc history.snc mold.ofe");
  command->callback([&job, options] { job = [options] { return rewriteFile(*options); }; });
}

}  // namespace orvmesh::cli
