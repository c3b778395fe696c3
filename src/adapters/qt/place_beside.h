// Where boxes and choosers come up.
#pragma once

#include <QWidget>

namespace velt {

// Moves a dialog that is not shown yet beside the main window, whose transmitter has to be within
// reach. Where there is no room it is left to its usual place.
void PlaceBeside(QWidget& dialog, const QWidget* main);

}  // namespace velt
