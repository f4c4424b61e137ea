#include <cstdio>
#include <exception>
#include <memory>
#include <new>

#include "check/report.h"
#include "check/variants.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "view/text_io.h"

namespace orvmesh::cli {
namespace {

constexpr int kSound = 0, kFindings = 1, kCouldNotRun = 2;

struct Options {
  std::string file, variant;
  bool json = false;
  bool explain = false;
};

int check(const Options& options) {
  if (options.explain) {
    view::printText(check::rulesAsMarkdown());
    return kSound;
  }
  const auto report = [&] {
    const ProgressLine progress("checking " + options.file);
    return check::checkFile(options.file, check::variantAt(options.variant));
  }();
  view::printText(options.json ? check::reportAsJson(report) : check::reportAsText(report));
  return report.isSound() ? kSound : kFindings;
}

// The exit code 1 says that something is wrong with the mesh, not with the run.
int checkOrSayWhyNot(const Options& options) {
  const auto cannot = [](const char* what) {
    std::fprintf(stderr, "orvmesh: %s\n", what);
    return kCouldNotRun;
  };
  try {
    const int code = check(options);
    return std::fflush(stdout) == 0 ? code : cannot("standard output: cannot be written");
  } catch (const std::bad_alloc&) {
    return cannot("out of memory");
  } catch (const std::exception& failure) {
    return cannot(failure.what());
  }
}

}  // namespace

void addCheck(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command = app.add_subcommand("check", "Look for what is wrong with an OFE file");
  auto* file = command->add_option("FILE", options->file, "component mesh, or solver mesh (see --variant)");
  const auto names = check::variantNames();
  command
      ->add_option("--variant", options->variant,
                   "FILE is the solver mesh of this variant: what it documents is a note")
      ->check(CLI::IsMember(std::vector<std::string>(names.begin(), names.end())));
  command->add_flag("--json", options->json, "print the findings as JSON");
  command->add_flag("--explain", options->explain,
                    "print the tables of codes and of the variants' properties");
  command->footer(
      "Prints named findings with their number, the first entities, their coordinates and what to do.\n"
      "Exit codes: 0 no findings (notes are none), 1 findings, 2 could not run.\n"
      "Examples: orvmesh check mold.ofe\n"
      "          orvmesh check --variant moldbase solver.ofe");
  command->callback([&job, options, file] {
    if (file->count() == 0 && !options->explain) throw CLI::RequiredError("FILE");
    job = [options] { return checkOrSayWhyNot(*options); };
  });
}

}  // namespace orvmesh::cli
