#include "ui/press_button.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace velt {
namespace {

constexpr int kSmallestText = 8;
constexpr int kTextMargin = 2;
constexpr int kMarkHeight = 2;

}  // namespace

PressButton::PressButton(QWidget* parent) : QToolButton(parent) {
  setCheckable(true);
  setFocusPolicy(Qt::TabFocus);
  setContextMenuPolicy(Qt::CustomContextMenu);
}

void PressButton::SetLight(const QColor& colour) {
  if (light_ == colour) return;
  light_ = colour;
  update();
}

// A style cuts a long text off at both ends: "14074.125" would be read as another frequency.
void PressButton::initStyleOption(QStyleOptionToolButton* option) const {
  QToolButton::initStyleOption(option);
  const int room = width() - 2 * kTextMargin;
  const auto tooLong = [&] {
    return QFontMetrics(option->font).size(Qt::TextShowMnemonic, option->text).width() > room;
  };
  while (option->font.pixelSize() > kSmallestText && tooLong()) {
    option->font.setPixelSize(option->font.pixelSize() - 1);
  }
  option->fontMetrics = QFontMetrics(option->font);
  if (!tooLong()) return;
  option->text =
      option->fontMetrics.elidedText(option->text, Qt::ElideRight, room, Qt::TextShowMnemonic);
}

bool PressButton::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    QStyleOptionToolButton shown;
    initStyleOption(&shown);
    if (shown.text != text()) {
      QToolTip::showText(dynamic_cast<QHelpEvent&>(*event).globalPos(),
                         QString(text()).replace("&&", "&") + "\n" + toolTip(), this);
      return true;
    }
  }
  return QToolButton::event(event);
}

// A style makes a colour darker, paler or nothing of it; this one has to look the same everywhere.
void PressButton::paintEvent(QPaintEvent* event) {
  QToolButton::paintEvent(event);
  QPainter painter(this);
  // On a dark face the style's pressed look is hardly another one.
  if (isChecked() && !light_.isValid()) {
    painter.fillRect(
        rect().adjusted(kMarkHeight, height() - 2 * kMarkHeight, -kMarkHeight, -kMarkHeight),
        palette().highlight());
  }
  if (!light_.isValid()) return;
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(light_.darker(150));
  painter.setBrush(light_);
  painter.drawRoundedRect(face, 2.5, 2.5);
  if (hasFocus()) {
    painter.setPen(Qt::white);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(face.adjusted(2, 2, -2, -2), 1, 1);
  }
  painter.setPen(Qt::white);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

}  // namespace velt
