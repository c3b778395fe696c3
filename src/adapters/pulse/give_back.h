// The end of a stream that somebody here had, whatever state it is in.
#pragma once

#include <pulse/stream.h>

namespace velt {

// Under the loop's lock. The stream may not be used afterwards; its other callbacks have to be
// taken off before, the one for its state is.
void GiveBack(pa_stream& stream);

}  // namespace velt
