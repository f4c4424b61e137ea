#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace orvmesh::cli {

// The whole command as a manual page (roff), from the table that --help prints.
std::string manualPage(const CLI::App& app);
// The same as a completion script for bash.
std::string bashCompletion(const CLI::App& app);

}  // namespace orvmesh::cli
