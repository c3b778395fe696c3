// Reads the frequency back out of a frequency label, whose text is part of the program's
// interface. No other place takes that caption apart.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "form/controls.h"

namespace velt {

inline constexpr const char* kRigOffLine = "RigOffLine";

// The shown frequency in Hz: the caption without its dots, times 10 (".475.00" is 475000 Hz).
// Empty when the caption is a text ("RigOffLine", "N/A", "Com error") or does not fit.
std::optional<int32_t> ShownFrequencyHz(const Label& label);

// The caption's leading number taken as MHz, in Hz: the tens of hertz after the second dot are not
// in it. 0 for a text, empty when it does not fit.
std::optional<int32_t> ShownMegahertzInHz(const Label& label);

// A frequency that somebody typed, in kHz; 0 for a text. Notations are told apart that would be far
// off: of two dots or commas the first sets the thousands apart ("14.074.00" as in the window,
// "14,074.5"), as a blank may do, and a number below 100 with a fraction is in MHz ("7.0745"): no
// amateur band lies there in kHz.
double TypedKilohertz(const std::string& text);

bool IsRigOffLine(const Label& label);

}  // namespace velt
