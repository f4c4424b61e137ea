#include "transfer/rules/boundary_codes.h"
#include "transfer/variants.h"

namespace orvmesh::transfer {
namespace {

std::string describeSteps(const Variant& variant) {
  std::string text = "| # | block | what |\n|---|---|---|\n";
  int number = 0;
  for (const Step& step : variant.steps)
    text += "| " + std::to_string(++number) + " | " + step.block + " | " + step.rule + " |\n";
  return text;
}

std::string describeElements(const Variant& variant) {
  std::string text = "| from | which | written as | material, group |\n|---|---|---|---|\n";
  for (const Step& step : variant.steps)
    if (step.elements != nullptr) text += describeElementBlock(*step.elements);
  return text;
}

std::string describeVariant(const Variant& variant) {
  return "## " + std::string(variant.name) + "\n\nOperation `" + variant.entry +
         "`.\n\n### Blocks, in order\n\n" + describeSteps(variant) + "\n### Volume elements\n\n" +
         describeElements(variant) + "\n### Header\n\n| field |\n|---|\n" +
         describeHeaderRule(variant.header) + "\n";
}

}  // namespace

std::string describeVariants() {
  std::string text = "# The six variants\n\nPrinted by `orvmesh variants --print`.\n\n";
  for (const Variant* variant : allVariants()) text += describeVariant(*variant);
  const std::string head = "| code | type |\n|---|---|\n";
  text +=
      "## Boundary-condition codes\n\nAn unknown code repeats the type before it.\n\n### All variants but "
      "channels\n\n" +
      head + describeBoundaryCodes(kBoundaryCodes) + "\n### channels\n\n" + head +
      describeBoundaryCodes(kChannelBoundaryCodes);
  return text;
}

}  // namespace orvmesh::transfer
