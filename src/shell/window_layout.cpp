#include "shell/window_layout.h"

#include <utility>

namespace velt {

WindowLayout::WindowLayout(Main& form, MainDisplay& display)
    : form_(form), display_(display), rules_(PlaceRules(form)) {
  SetLimits();
  form_.Window.widthTwips = WindowLimits::kMaxWidth;
  form_.Window.heightTwips = WindowLimits::kMaxHeight;
  connections_ += form_.Window.widthTwips.changed.Listen([this] { Form_Resize(); });
  connections_ += form_.Window.heightTwips.changed.Listen([this] { Form_Resize(); });
  connections_ += form_.Window.minimised.changed.Listen([this] { Form_Resize(); });
  connections_ += form_.Window.sizeable.changed.Listen([this] { Form_Resize(); });
  connections_ += form_.Window.panelShown.changed.Listen([this] {
    SetLimits();
    Form_Resize();
  });
}

void WindowLayout::SetLimits() {
  const int32_t panel = form_.Window.panelShown ? kPanelWidthTwips : 0;
  form_.Window.least = WindowSize{WindowLimits::kMinWidth + panel, WindowLimits::kMinHeight};
  form_.Window.most = WindowSize{WindowLimits::kMaxWidth + panel, WindowLimits::kMaxHeight};
}

void WindowLayout::Form_Resize() {
  if (form_.Window.minimised || quitting) return;
  // A correction raises a new resize, which lays out the window.
  if (CorrectSize()) return;
  WindowGrid grid(form_.Window.widthTwips / kTwipsPerPixel,
                  form_.Window.heightTwips / kTwipsPerPixel, form_.Window.panelShown);
  for (const PlaceRule& rule : rules_) rule.control->place = rule.place(grid);
  form_.Scope.scaleWidth = form_.Scope.place.Get().width;
  form_.Scope.scaleHeight = form_.Scope.place.Get().height;
  display_.Refresh();
}

void WindowLayout::ApplySavedSize() {
  if (std::exchange(savedSizeApplied_, true) || !form_.mnusettings[3].checked) return;
  const SavedWindowSize size = saved;
  if (size.widthTwips != WindowLimits::kMaxWidth) form_.Window.widthTwips = size.widthTwips;
  if (size.heightTwips != WindowLimits::kMaxHeight) form_.Window.heightTwips = size.heightTwips;
}

bool WindowLayout::CorrectSize() {
  if (!form_.mnusettings[3].checked || saved.widthTwips <= 0 || saved.heightTwips <= 0) {
    return false;
  }
  auto& width = form_.Window.widthTwips;
  auto& height = form_.Window.heightTwips;
  const WindowSize least = form_.Window.least;
  const WindowSize most = form_.Window.most;
  if (width < least.width) {
    width = least.width;
  } else if (width > most.width) {
    width = most.width;
  } else if (height > most.height) {
    height = most.height;
  } else if (height < least.height) {
    height = least.height;
  } else {
    return false;
  }
  return true;
}

}  // namespace velt
