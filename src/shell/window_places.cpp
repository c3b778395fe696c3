#include "shell/window_places.h"

#include <algorithm>
#include <utility>

namespace velt {
namespace {

constexpr int kMargin = 3;
constexpr int kGap = 3;
constexpr int kPanelEdge = 4;  // between its line and its controls
constexpr int kTopRow = 24;
constexpr int kScales = 13;
constexpr int kBottomRow = 16;
constexpr int kSlider = 16;
constexpr int kMeter = 26;
constexpr int kModeSource = 64;
constexpr int kSource = 120;
constexpr int kLamp = 10;
constexpr int kLink = 100;
constexpr int kLeastSource = 50;
constexpr int kLeastLink = 49;
constexpr int kSmallButton = 24;
constexpr int kCompactButton = 22;
constexpr int kExpandButton = 18;
constexpr int kCompactExpandButton = 14;
constexpr int kCompactPeak = 73;
constexpr int kCursorHz = 62;
constexpr int kCursorDelta = 38;
constexpr int kCursorKilohertz = 68;
constexpr int kNotice = 18;
// Below this width the first row has no room for texts on its buttons.
constexpr int kRoomyWidth = 555;
constexpr int kDisplayTop = kMargin + kTopRow + kGap;

// The last row: what is always told, and the message. Narrow windows leave out where modes are sent
// to and give what is short as little as it needs.
struct LastRow {
  Rectangle modeSource, source, lamp, link, message;
  Rectangle cursorHz, cursorDelta, cursorKilohertz;  // below the message, which comes and goes

  explicit LastRow(const WindowGrid& grid) {
    const Rectangle whole = grid.Bottom(0, grid.Compact() ? kCompactPeak + kGap : 0);
    const int spare = grid.Compact() ? grid.Bottom(0, 0).width - (333 - 2 * kMargin) : 0;
    const int linkWidth = grid.Compact() ? std::min(kLink, kLeastLink + spare / 3) : kLink;
    const int sourceWidth = grid.Compact() ? std::min(kSource, kLeastSource + spare / 3) : kSource;
    int next = whole.left;
    const auto take = [&](int width) {
      const Rectangle place{next, whole.top, width, whole.height};
      next += width + kGap;
      return place;
    };
    if (!grid.Compact()) modeSource = take(kModeSource);
    source = take(sourceWidth);
    lamp = take(kLamp);
    link = take(linkWidth);
    message = take(whole.left + whole.width - next);
    // No message fits into what a narrow window has left: for its moments it has the whole row.
    if (grid.Compact()) message = whole;
    int end = message.left + message.width;
    const auto takeFromEnd = [&](int width) {
      end -= width + kGap;
      return Rectangle{end + kGap, whole.top, width, whole.height};
    };
    cursorKilohertz = takeFromEnd(kCursorKilohertz);
    if (!grid.Compact()) cursorDelta = takeFromEnd(kCursorDelta);
    cursorHz = takeFromEnd(kCursorHz);
  }
};

// The members of an array one behind the other, `columns` to a row of the panel, from row `first`
// on.
template <int columns, int first, class C, size_t... index>
void AddCells(std::vector<PlaceRule>& rules, ControlArray<C>& array,
              std::index_sequence<index...>) {
  (rules.push_back({&array[static_cast<int32_t>(index)],
                    [](WindowGrid& g) {
                      constexpr int i = static_cast<int>(index);
                      return g.Panel(first + i / columns, i % columns, i % columns, columns);
                    }}),
   ...);
}

}  // namespace

WindowGrid::WindowGrid(int widthPx, int heightPx, bool withPanel)
    : width_(std::max(widthPx - (withPanel ? kPanelWidth : 0), 333)),
      height_(std::max(heightPx, 100)),
      panel_(withPanel),
      compact_(width_ < kRoomyWidth),
      next_(kMargin) {}

Rectangle WindowGrid::Take(int roomyWidth, int compactWidth) {
  const int width = compact_ ? compactWidth : roomyWidth;
  if (width == 0) return {};
  const Rectangle place{next_, kMargin, width, kTopRow};
  next_ += width + kGap;
  return place;
}

Rectangle WindowGrid::TakeRest(int keptAtTheEnd) {
  const int left = next_ + kGap;
  return {left, kMargin, width_ - kMargin - keptAtTheEnd - kGap - left, kTopRow};
}

Rectangle WindowGrid::EndOfFirstRow(int width) const {
  return {width_ - kMargin - width, kMargin, width, kTopRow};
}

Rectangle WindowGrid::DisplayLeft(int width) const {
  return {kMargin, kDisplayTop, width, Scope().height};
}

Rectangle WindowGrid::DisplayRight(int offset, int width) const {
  return {width_ - kMargin - offset - width, kDisplayTop, width, Scope().height};
}

Rectangle WindowGrid::Scope() const {
  const int left = kMargin + kSlider + kGap;
  const int right = width_ - kMargin - kMeter - kGap - kSlider - kGap;
  const int bottom = height_ - kMargin - kBottomRow - 1 - kScales;
  return {left, kDisplayTop, right - left, bottom - kDisplayTop};
}

Rectangle WindowGrid::Scales() const {
  const Rectangle scope = Scope();
  return {scope.left, scope.top + scope.height, scope.width, kScales};
}

Rectangle WindowGrid::Bottom(int left, int rightOffset) const {
  const int from = kMargin + left;
  return {from, height_ - kMargin - kBottomRow, width_ - kMargin - rightOffset - from, kBottomRow};
}

Rectangle WindowGrid::BottomRight(int width) const {
  return {width_ - kMargin - width, height_ - kMargin - kBottomRow, width, kBottomRow};
}

Rectangle WindowGrid::Panel() const {
  return panel_ ? Rectangle{width_, 0, kPanelWidth, height_} : Rectangle{};
}

Rectangle WindowGrid::Panel(int row, int first, int last, int count) const {
  if (!panel_) return {};
  constexpr int kRows = 5;
  const int height = height_ - 2 * kMargin + kGap;
  const int width = kPanelWidth - 2 * kMargin - kPanelEdge + kGap;
  const int left = width_ + kMargin + kPanelEdge + first * width / count;
  const int top = kMargin + row * height / kRows;
  const int right = width_ + kMargin + kPanelEdge + (last + 1) * width / count;
  const int bottom = kMargin + (row + 1) * height / kRows;
  return {left, top, right - left - kGap, bottom - top - kGap};
}

std::vector<PlaceRule> PlaceRules(Main& form) {
  using Grid = WindowGrid;
  std::vector<PlaceRule> rules{
      {&form.cmdOptions, [](Grid& g) { return g.Take(56, 40); }},
      {&form.Image2, [](Grid& g) { return g.Take(36, 26); }},
      {&form.Image3, [](Grid& g) { return g.Take(40, 26); }},
      {&form.imgStartStop, [](Grid& g) { return g.Take(kSmallButton, kCompactButton); }},
      {&form.imgRecOnOff[0],
       [](Grid& g) {
         // A narrow window has room for it only beside the scales.
         const Rectangle scales = g.Scales();
         return g.Compact() ? Rectangle{g.DisplayRight(0, kMeter).left, scales.top, kMeter, kScales}
                            : g.Take(kSmallButton, 0);
       }},
      {&form.lblFrequency, [](Grid& g) { return g.Take(126, 98); }},
      {&form.lblMode, [](Grid& g) { return g.Take(38, 32); }},
      // The buttons tell the state too; where there is no room for them the label does.
      {&form.lblTRXMode, [](Grid& g) { return g.Take(0, 25); }},
      {&form.optTXRX[0], [](Grid& g) { return g.Take(31, 0); }},
      {&form.optTXRX[1], [](Grid& g) { return g.Take(31, 0); }},
      {&form.lblFreqDetect,
       [](Grid& g) {
         return g.Compact() ? g.BottomRight(kCompactPeak)
                            : g.TakeRest(kSmallButton + kGap + kExpandButton);
       }},
      {&form.chkSpecMode,
       [](Grid& g) {
         const Rectangle both =
             g.EndOfFirstRow(kGap + (g.Compact() ? kCompactButton + kCompactExpandButton
                                                 : kSmallButton + kExpandButton));
         return Rectangle{both.left, both.top, g.Compact() ? kCompactButton : kSmallButton,
                          both.height};
       }},
      {&form.chkExpand,
       [](Grid& g) { return g.EndOfFirstRow(g.Compact() ? kCompactExpandButton : kExpandButton); }},
      {&form.Slider, [](Grid& g) { return g.DisplayLeft(kSlider); }},
      {&form.Scope, [](Grid& g) { return g.Scope(); }},
      {&form.picScales, [](Grid& g) { return g.Scales(); }},
      {&form.Slider2, [](Grid& g) { return g.DisplayRight(kMeter + kGap, kSlider); }},
      {&form.Smeter, [](Grid& g) { return g.DisplayRight(0, kMeter); }},
      {&form.Label3, [](Grid& g) { return LastRow(g).modeSource; }},
      {&form.lblSource, [](Grid& g) { return LastRow(g).source; }},
      {&form.lampLink, [](Grid& g) { return LastRow(g).lamp; }},
      {&form.lblLink, [](Grid& g) { return LastRow(g).link; }},
      {&form.lblFreq, [](Grid& g) { return LastRow(g).cursorHz; }},
      {&form.lblDelta, [](Grid& g) { return LastRow(g).cursorDelta; }},
      {&form.lblCursor, [](Grid& g) { return LastRow(g).cursorKilohertz; }},
      {&form.lblMessage, [](Grid& g) { return LastRow(g).message; }},
      // These two lie over the display.
      {&form.lblListen,
       [](Grid& g) {
         // Below a notice, also where there is just room for the two.
         const Rectangle scope = g.Scope();
         const int down = std::max((scope.height - kNotice) / 2, kNotice);
         const int height = std::min(kNotice, scope.height - down);
         return Rectangle{scope.left, scope.top + down, scope.width, height};
       }},
      {&form.lblNotice,
       [](Grid& g) {
         Rectangle place = g.Scope();
         place.height = kNotice;
         return place;
       }},
      {&form.picExpand, [](Grid& g) { return g.Panel(); }},
      {&form.lblFrequencyExpand, [](Grid& g) { return g.Panel(0, 0, 4, 12); }},
      {&form.cmbPresetMode, [](Grid& g) { return g.Panel(0, 5, 7, 12); }},
      {&form.txtManualFrequency, [](Grid& g) { return g.Panel(0, 8, 10, 12); }},
      {&form.cmdokman, [](Grid& g) { return g.Panel(0, 11, 11, 12); }},
  };
  AddCells<5, 1>(rules, form.optBandsFreq, std::make_index_sequence<10>());
  AddCells<6, 3>(rules, form.optDefFreqs, std::make_index_sequence<6>());
  AddCells<6, 4>(rules, form.cmdFreqSteps, std::make_index_sequence<6>());
  return rules;
}

}  // namespace velt
