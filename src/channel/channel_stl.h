#pragma once

#include <string>

#include "channel/channel_surface.h"

namespace orvmesh::channel {

// Draws all faces into a binary STL file. False when there is no face or the file cannot be written; nothing
// is left behind then.
bool drawSurface(const ChannelSurface& surface, const std::string& path);

}  // namespace orvmesh::channel
