#include "ui/symbol_button.h"

#include <QPainter>
#include <QPolygonF>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <array>

#include "ui/face_palette.h"

namespace velt {

SymbolButton::SymbolButton(Symbol symbol, QWidget* parent) : QToolButton(parent), symbol_(symbol) {
  setFocusPolicy(Qt::TabFocus);
}

void SymbolButton::SetSymbol(std::string_view tag) {
  const Symbol symbol = tag == "Play"                  ? Symbol::Play
                        : tag == "Stop"                ? Symbol::Stop
                        : tag == "Rec"                 ? Symbol::Recording
                        : symbol_ == Symbol::Recording ? Symbol::Record
                                                       : symbol_;
  if (symbol_ == symbol) return;
  symbol_ = symbol;
  update();
}

void SymbolButton::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionToolButton option;
  initStyleOption(&option);
  option.text.clear();  // the symbol stands for it
  painter.drawComplexControl(QStyle::CC_ToolButton, option);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF box = QRectF(rect().center() - QPointF(5.5, 5.5), QSizeF(12, 12));
  painter.setPen(Qt::NoPen);
  const QColor ink =
      palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
  const auto coloured = [&](const QColor& colour) {
    for (const QColor& shade : {colour, colour.lighter(150)}) {
      if (isEnabled() && IsSeen(shade, palette().color(QPalette::Button)) &&
          IsSeen(shade, palette().color(QPalette::Window))) {
        return shade;
      }
    }
    return ink;
  };
  switch (symbol_) {
    case Symbol::Play:
      painter.setBrush(coloured(QColor(0x2E, 0xA0, 0x43)));
      painter.drawPolygon(
          QPolygonF({box.topLeft() + QPointF(1, 0), box.bottomLeft() + QPointF(1, 0),
                     QPointF(box.right(), box.center().y())}));
      break;
    case Symbol::Stop:
      painter.setBrush(coloured(QColor(0xCF, 0x3A, 0x32)));
      painter.drawRect(box.adjusted(1, 1, -1, -1));
      break;
    case Symbol::Record:
      painter.setBrush(coloured(QColor(0xCF, 0x3A, 0x32)));
      painter.drawEllipse(box.adjusted(1, 1, -1, -1));
      break;
    case Symbol::Recording: {
      // The same in a ring: it differs in shape too.
      const QColor red = coloured(QColor(0xE0, 0x20, 0x20));
      painter.setBrush(red);
      painter.drawEllipse(box.adjusted(3.5, 3.5, -3.5, -3.5));
      painter.setBrush(Qt::NoBrush);
      painter.setPen(QPen(red, 1.6));
      painter.drawEllipse(box.adjusted(0.8, 0.8, -0.8, -0.8));
      break;
    }
    case Symbol::Waterfall: {
      // Rows of dashes that shift from row to row.
      static constexpr std::array<int, 4> kShift{4, 3, 4, 6};
      for (int row = 0; row < 4; ++row) {
        const double y = box.top() + row * 3.0 + 0.5;
        QColor faint = ink;
        faint.setAlpha(90);
        painter.setBrush(faint);
        painter.drawRect(QRectF(box.left(), y, 12, 2));
        painter.setBrush(ink);
        painter.drawRect(QRectF(box.left() + kShift[static_cast<size_t>(row)], y, 3, 2));
      }
      break;
    }
  }
}

}  // namespace velt
