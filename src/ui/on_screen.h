// Where a window stands when its whole frame is to be seen.
#pragma once

#include <QRect>
#include <QVector>

namespace velt {

// The window as it is when one of the screens holds all of it; else moved onto the nearest one. A
// window that is larger than its screen keeps its top left corner there. Without a screen: as it
// is.
QRect BroughtOnScreen(const QRect& window, const QVector<QRect>& screens);

}  // namespace velt
