// Where boxes and choosers come up.
#pragma once

#include <QWidget>

namespace velt {

// Moves a dialog that is not shown yet beside the main window, whose transmitter has to be within
// reach, and over the dialog that asks if there is one; where there is no room, to where it hides
// least of the main window.
void PlaceBeside(QWidget& dialog, const QWidget* main, const QWidget* asking = nullptr);

}  // namespace velt
