#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

#include "base/failure.h"
#include "cli/commands.h"
#include "cli/manual.h"

namespace {

using orvmesh::cli::Job;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

void addSubcommands(CLI::App& app, Job& job) {
  using namespace orvmesh::cli;
  for (const auto add : {addImport, addInfo, addCheck, addDump, addLoad, addExport, addTransfer, addCtg,
                         addOfv, addDmp, addSensors, addSnc, addChannels, addMap, addHeat, addVariants})
    add(app, job);
}

// An option for packagers: prints and ends.
void addPrinter(CLI::App& app, const char* name, std::string (*text)(const CLI::App&)) {
  app.add_flag_callback(name,
                        [&app, text] {
                          std::fputs(text(app).c_str(), stdout);
                          throw CLI::Success();
                        })
      ->group("");
}

int fail(const char* what) {
  std::fprintf(stderr, "orvmesh: %s\n", what);
  return kFailed;
}

int run(const Job& job) {
  try {
    const int code = job();
    if (std::fflush(stdout) != 0) return fail("standard output: cannot be written");
    return code;
  } catch (const orvmesh::Failure& failure) {
    return fail(failure.what());
  } catch (const std::bad_alloc&) {
    return fail("out of memory");
  } catch (const std::exception& unexpected) {
    return fail(unexpected.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  // A file that may not grow any more is a failed write like any other, not the end of the process.
  (void)std::signal(SIGXFSZ, SIG_IGN);
  CLI::App app{"orvmesh turns a meshed mold into the meshes that a mold-cooling solver reads."};
  app.name("orvmesh");
  app.set_version_flag("--version", "orvmesh " ORVMESH_VERSION_TEXT);
  app.require_subcommand(1);
  app.footer(
      "Exit codes: 0 done, 1 the job failed, 2 wrong usage.\nExample: orvmesh import mold.msh mold.ofe && "
      "orvmesh transfer moldbase mold.ofe solver.ofe");
  Job job;
  addSubcommands(app, job);
  addPrinter(app, "--manual", orvmesh::cli::manualPage);
  addPrinter(app, "--completion", orvmesh::cli::bashCompletion);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongUsage;
  }
  return run(job);
}
