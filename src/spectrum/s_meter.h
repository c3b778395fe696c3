// The S-meter's scale: what its picture makes of the level.
#pragma once

#include <cstdint>

namespace velt {

// What the picture reaches up to.
constexpr double kMostSUnits = 12;

// S-units of a level in twips: 9 + log2(level / 200000), so that twice the level, 6 dB, is one unit
// more. Not below 0, which is anything 54 dB below S9 and silence, and without an upper limit.
//
// The level is the mean of the spectrum's amplitudes times the sensitivity. At the default
// sensitivity 4 a tone of full scale gives some 250000, speech or a tone 20 to 26 dB below full
// scale some 25000: S6, the middle of the scale. A station's receiver is fitted to it with the
// sensitivity, whose doubling is one unit too.
double SUnits(int32_t levelTwips);

// How much of a frame `height` pixels high the bar fills for a level; S-units are even steps.
int SMeterBar(int32_t levelTwips, int height);

}  // namespace velt
