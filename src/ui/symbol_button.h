// A button that shows a drawn symbol.
#pragma once

#include <QToolButton>
#include <string_view>

namespace velt {

class SymbolButton : public QToolButton {
 public:
  enum class Symbol { Play, Stop, Record, Recording, Waterfall };

  SymbolButton(Symbol symbol, QWidget* parent);
  // The symbol that a tag names: "Play" or "Stop", or "Rec" while recording.
  void SetSymbol(std::string_view tag);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Symbol symbol_;
};

}  // namespace velt
