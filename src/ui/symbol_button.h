// A button that shows a drawn symbol.
#pragma once

#include <QToolButton>

namespace velt {

class SymbolButton : public QToolButton {
 public:
  enum class Symbol { Play, Stop, Waterfall };

  SymbolButton(Symbol symbol, QWidget* parent);
  void SetSymbol(Symbol symbol);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Symbol symbol_;
};

}  // namespace velt
