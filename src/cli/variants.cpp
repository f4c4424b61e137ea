#include <cstdio>
#include <memory>

#include "cli/commands.h"
#include "transfer/variants.h"

namespace orvmesh::cli {

void addVariants(CLI::App& app, Job& job) {
  auto* command = app.add_subcommand("variants", "List the six variants of the transfer");
  const auto print = std::make_shared<bool>(false);
  command->add_flag("--print", *print, "print every rule of every variant as Markdown tables");
  command->footer("Example: orvmesh variants --print > variants.md");
  command->callback([&job, print] {
    job = [print] {
      if (*print) {
        std::fputs(transfer::describeVariants().c_str(), stdout);
        return 0;
      }
      for (const transfer::Variant* variant : transfer::allVariants())
        std::printf("%-22s %s\n", variant->name, variant->entry);
      return 0;
    };
  });
}

}  // namespace orvmesh::cli
