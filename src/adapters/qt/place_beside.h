// Where boxes and choosers come up.
#pragma once

#include <QWidget>

namespace velt {

// Moves a dialog that is not shown yet beside the main window, whose transmitter has to be within
// reach; where there is no room, to where it hides least of it.
void PlaceBeside(QWidget& dialog, const QWidget* main);

}  // namespace velt
