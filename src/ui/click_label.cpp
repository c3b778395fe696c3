#include "ui/click_label.h"

#include <QEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace velt {
namespace {

constexpr int kLeastPixels = 10;
constexpr double kRounded = 2.5;

}  // namespace

ClickLabel::ClickLabel(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  ShowCursor();
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
  ShowCursor();
}

void ClickLabel::ShowCursor() {
  setCursor(Acts() ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void ClickLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (fill_.isValid()) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill_);
    painter.drawRoundedRect(rect(), kRounded, kRounded);
  }
  if (underMouse() && Acts()) {
    QColor hover = palette().color(QPalette::Highlight);
    hover.setAlpha(50);
    painter.fillRect(rect(), hover);
  }
  // A text on which nothing can be done now is as true as ever.
  const auto group = stale_ ? QPalette::Disabled : QPalette::Active;
  painter.setPen(textColour_.isValid() && !stale_ ? textColour_
                                                  : palette().color(group, QPalette::WindowText));
  const QRect inner = rect().adjusted(2, 0, -2, 0);
  // A text that is too large for its place gets a smaller font rather than a new place.
  QFont fitted = font();
  while (fitted.pixelSize() > kLeastPixels &&
         (QFontMetrics(fitted).horizontalAdvance(text_) > inner.width() ||
          fitted.pixelSize() > inner.height())) {
    fitted.setPixelSize(fitted.pixelSize() - 1);
  }
  painter.setFont(fitted);
  painter.drawText(inner, static_cast<int>(alignment_ | Qt::AlignVCenter),
                   QFontMetrics(fitted).elidedText(text_, elision_, inner.width()));
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

void ClickLabel::changeEvent(QEvent* event) {
  QAbstractButton::changeEvent(event);
  if (event->type() == QEvent::EnabledChange) ShowCursor();
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
