#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace orvmesh::cli {

// What the chosen subcommand does once the command line is understood; returns the exit code (0 done, 1
// failed).
using Job = std::function<int()>;

// Each subcommand adds itself to the application and, when chosen, sets the job.
void addImport(CLI::App& app, Job& job);
void addInfo(CLI::App& app, Job& job);
void addCtg(CLI::App& app, Job& job);
void addOfv(CLI::App& app, Job& job);
void addDump(CLI::App& app, Job& job);
void addLoad(CLI::App& app, Job& job);
void addCheck(CLI::App& app, Job& job);
void addExport(CLI::App& app, Job& job);
void addTransfer(CLI::App& app, Job& job);
void addVariants(CLI::App& app, Job& job);
void addDmp(CLI::App& app, Job& job);
void addSensors(CLI::App& app, Job& job);
void addSnc(CLI::App& app, Job& job);
void addChannels(CLI::App& app, Job& job);
void addMap(CLI::App& app, Job& job);
void addHeat(CLI::App& app, Job& job);

}  // namespace orvmesh::cli
