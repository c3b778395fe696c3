// Where everything stands in the window: one table, a rule for each control.
#pragma once

#include <vector>

#include "form/main_form.h"

namespace velt {

// The window's rows and columns at one size of its content, in logical pixels; sizes below 333 x
// 100 are laid out as 333 x 100. The first row is handed out from left to right.
class WindowGrid {
 public:
  static constexpr int kPanelWidth = kPanelWidthTwips / kTwipsPerPixel;

  // With the panel, its width is taken off at the right edge.
  WindowGrid(int widthPx, int heightPx, bool withPanel = false);

  // Narrow windows have no room for the texts of the first row's buttons, nor for all its controls.
  bool Compact() const { return compact_; }

  // The next place of the first row. A width of 0 leaves the control out.
  Rectangle Take(int roomyWidth, int compactWidth);
  // What is left of the first row up to a place that ends it.
  Rectangle TakeRest(int keptAtTheEnd);
  Rectangle EndOfFirstRow(int width) const;

  // The display's row: from the left or the right edge, and what lies between them.
  Rectangle DisplayLeft(int width) const;
  Rectangle DisplayRight(int offset, int width) const;
  Rectangle Scope() const;
  Rectangle Scales() const;

  // The last row, from `left` to `rightOffset` before its end.
  Rectangle Bottom(int left, int rightOffset) const;
  Rectangle BottomRight(int width) const;

  // The panel has five rows of the same height: cells `first` to `last` of `count` cells of the
  // same width in one of them; all of it. Empty without the panel.
  Rectangle Panel(int row, int first, int last, int count) const;
  Rectangle Panel() const;

 private:
  int width_;
  int height_;
  bool panel_;
  bool compact_;
  int next_;
};

struct PlaceRule {
  Control* control;
  Rectangle (*place)(WindowGrid& grid);
};

// In the order in which their places are handed out.
std::vector<PlaceRule> PlaceRules(Main& form);

}  // namespace velt
