#include "form/controls.h"

#include <algorithm>

namespace velt {

void SliderControl::Set(int32_t wanted) {
  value = std::clamp(wanted, minimum, maximum);
}

}  // namespace velt
