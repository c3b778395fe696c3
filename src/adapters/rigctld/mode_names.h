// The server's names of the modes and the mode bits of the rig interface.
#pragma once

#include <cstdint>
#include <string_view>

namespace velt {

// The name to send for one of PM_...; empty when the value is no mode.
std::string_view ModeName(int32_t mode);

// The bit for a reported name; relatives (narrow FM, synchronous AM) count as their family. 0 when
// the rig interface has no such mode.
int32_t ModeOfName(std::string_view name);

}  // namespace velt
