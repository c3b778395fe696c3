// Colours that go with a face which the user chose, light or dark or in between: every text on it
// can be read.
#pragma once

#include <QColor>
#include <QPalette>

namespace velt {

// How well one colour is seen on another, by their luminances: 1 (not at all) to 21.
double Contrast(const QColor& one, const QColor& other);

// Whether a symbol or an edge of one colour is seen on the other.
bool IsSeen(const QColor& one, const QColor& other);

// Whether a text of one colour is read on the other.
bool IsRead(const QColor& one, const QColor& other);

// Black or white, whichever is read better on that.
QColor InkOn(const QColor& face);

// So much of the way from one colour to the other, 0 to 1.
QColor Between(const QColor& from, const QColor& to, double share);

// What is not said in it is the desktop's.
QPalette FacePalette(const QColor& face);

}  // namespace velt
