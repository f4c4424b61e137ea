#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "view/block_table.h"

namespace orvmesh::view {

// The one error of a JSON text: file, place, what stands there, what would be legal.
[[noreturn]] void refuse(const std::string& name, const std::string& path, const std::string& found,
                         const std::string& legal);
[[noreturn]] void refuseUnknownKey(const std::string& name, const std::string& path, std::string_view key,
                                   const std::vector<std::string_view>& known);
[[noreturn]] void refuseTwice(const std::string& name, const std::string& path);

// "elementsPlastic[2].nodes[1]"; an entry of -1 stands for the block itself, an empty key for an entry that
// is an array, a place of -1 for the whole list.
std::string jsonPath(const BlockShape& shape, std::int64_t entry, std::string_view key, std::int64_t place);

// "4", "1 to 8", "4, 5, 6 or 8": the lengths whose bits are set.
std::string lengthsText(unsigned lengths);

// Foreign text as a message shows it: one line of bounded length.
std::string shownText(std::string_view text);

}  // namespace orvmesh::view
