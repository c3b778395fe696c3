#include "ui/click_label.h"

#include <QPainter>
#include <QStyleOptionFocusRect>

namespace velt {
namespace {

constexpr int kLeastPixels = 10;

}  // namespace

ClickLabel::ClickLabel(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
}

// A button's own text would be announced besides the name, and take "&" as a mark.
void ClickLabel::SetText(const QString& plain) {
  if (text_ == plain) return;
  text_ = plain;
  update();
}

void ClickLabel::SetAlignment(Qt::Alignment alignment) {
  alignment_ = alignment;
  update();
}

void ClickLabel::SetStale(bool stale) {
  if (stale_ == stale) return;
  stale_ = stale;
  update();
}

void ClickLabel::SetFill(const QColor& fill, const QColor& text) {
  if (fill_ == fill && textColour_ == text) return;
  fill_ = fill;
  textColour_ = text;
  update();
}

void ClickLabel::SetPassive(bool passive) {
  passive_ = passive;
  setFocusPolicy(passive ? Qt::NoFocus : Qt::TabFocus);
  setCursor(passive ? Qt::ArrowCursor : Qt::PointingHandCursor);
}

void ClickLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (fill_.isValid()) painter.fillRect(rect(), fill_);
  if (!passive_ && underMouse() && isEnabled()) {
    QColor hover = palette().color(QPalette::Highlight);
    hover.setAlpha(50);
    painter.fillRect(rect(), hover);
  }
  const bool dim = stale_ || !isEnabled();
  const auto group = dim ? QPalette::Disabled : QPalette::Active;
  painter.setPen(textColour_.isValid() && !dim ? textColour_
                                               : palette().color(group, QPalette::WindowText));
  const QRect inner = rect().adjusted(2, 0, -2, 0);
  // A text that is too long for its place gets a smaller font rather than a new place.
  QFont fitted = font();
  while (fitted.pixelSize() > kLeastPixels &&
         QFontMetrics(fitted).horizontalAdvance(text_) > inner.width()) {
    fitted.setPixelSize(fitted.pixelSize() - 1);
  }
  painter.setFont(fitted);
  painter.drawText(inner, static_cast<int>(alignment_ | Qt::AlignVCenter),
                   QFontMetrics(fitted).elidedText(text_, Qt::ElideRight, inner.width()));
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

void ClickLabel::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void ClickLabel::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

}  // namespace velt
