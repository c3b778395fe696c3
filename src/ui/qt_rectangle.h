// A place on the desktop as the program's logic has it.
#pragma once

#include <QRect>

#include "form/control.h"

namespace velt {

inline Rectangle FromQt(const QRect& place) {
  return {place.left(), place.top(), place.width(), place.height()};
}

}  // namespace velt
