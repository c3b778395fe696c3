#include "ui/error_label.h"

#include <QEvent>

namespace velt {

ErrorLabel::ErrorLabel(QWidget* parent) : QLabel(parent) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  setWordWrap(true);
  setFixedHeight(fontMetrics().lineSpacing() * 2);
  FollowPalette();
}

void ErrorLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) FollowPalette();
}

void ErrorLabel::FollowPalette() {
  const bool dark = palette().color(QPalette::Window).lightnessF() < 0.5;
  const QColor ink = dark ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB0, 0, 0x20);
  if (palette().color(QPalette::WindowText) == ink) return;
  QPalette colours;  // all others stay those of the desktop
  colours.setColor(QPalette::WindowText, ink);
  setPalette(colours);
}

}  // namespace velt
