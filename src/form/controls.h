// The kinds of controls. Each kind states which assignments raise its own event: a label's
// caption, a slider's value, a check box's and an option button's value and a list's index do; a
// menu item's check mark, a combo's text and Enabled do not. What the user does enters by Click()
// and the User... functions, which act only while the control is enabled.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "form/control.h"

namespace velt {

struct Label : Control {
  explicit Label(Form& form, std::string text = {})
      : Control(form), caption(*this, std::move(text)) {}
  Property<std::string> caption;  // raises the label's Change event
  Event<> clicked;
  void Click() const {
    if (enabled) clicked.Raise();
  }
};

// A label that shows what a rig reports.
struct RigLabel : Label {
  explicit RigLabel(Form& form, std::string text = {})
      : Label(form, std::move(text)), stale(*this, false) {}
  Property<bool> stale;  // the text is the last one of a link that is lost or stopped
};

// A text that has to be seen; one that is urgent before all else.
struct NoticeLabel : Label {
  explicit NoticeLabel(Form& form) : Label(form), urgent(*this, false) {}
  Property<bool> urgent;
};

// The title of controls that stand together.
struct Frame : Control {
  explicit Frame(Form& form, std::string text = {})
      : Control(form), caption(*this, std::move(text)) {}
  Property<std::string> caption;
};

// A lamp that tells how something stands.
enum class LampColour { Grey, Green, Amber };
struct Lamp : Control {
  explicit Lamp(Form& form) : Control(form), colour(*this, LampColour::Grey) {}
  Property<LampColour> colour;
};

struct Button : Control {
  explicit Button(Form& form, std::string text = {})
      : Control(form), caption(*this, std::move(text)) {}
  Property<std::string> caption;
  Event<> clicked;
  void Click() const {
    if (enabled) clicked.Raise();
  }
};

// A button that shows a colour, which it lets the user choose.
struct ColourButton : Button {
  explicit ColourButton(Form& form, std::string text = {})
      : Button(form, std::move(text)), colour(*this, 0), value(*this, {}) {}
  Property<uint32_t> colour;    // 0xFFRRGGBB, or 0 for the desktop's own button face
  Property<std::string> value;  // the colour in words
};

// Colours side by side, as 0xFFRRGGBB, and what they are called.
struct PalettePicture : Control {
  explicit PalettePicture(Form& form) : Control(form), colours(*this, {}), caption(*this, {}) {}
  Property<std::vector<uint32_t>> colours;
  Property<std::string> caption;
};

// A picture that acts as a button; its tag tells which of its pictures it shows.
struct Image : Control {
  explicit Image(Form& form, std::string text = {}) : Control(form), tag(*this, std::move(text)) {}
  Property<std::string> tag;
  Event<> clicked;
  Event<> menuAsked;  // by another mouse button, or the menu key
  void Click() const {
    if (enabled) clicked.Raise();
  }
  void UserMenu() const {
    if (enabled) menuAsked.Raise();
  }
};

struct CheckBox : Control {
  explicit CheckBox(Form& form, std::string text = {})
      : Control(form), caption(*this, std::move(text)), value(*this, 0) {}
  Property<std::string> caption;
  Property<int32_t> value;  // 0 or 1; a change raises Click
  void UserPick(bool checked) {
    if (enabled) value = checked ? 1 : 0;
  }
};

struct OptionButton : Control {
  explicit OptionButton(Form& form, std::string text = {})
      : Control(form), caption(*this, std::move(text)), value(*this, false) {}
  Property<std::string> caption;
  Property<bool> value;  // a change raises Click
  Event<int> mouseDown;  // 1 left, 2 right button
  void UserPick() {
    if (enabled) value = true;
  }
  void UserPress(int button) const {
    if (enabled) mouseDown.Raise(button);
  }
};

struct SliderControl : Control {
  SliderControl(Form& form, int32_t least, int32_t most, int32_t initial)
      : Control(form), minimum(least), maximum(most), value(*this, initial) {}
  const int32_t minimum;
  const int32_t maximum;
  Property<int32_t> value;  // clamped by Set; a change raises Change

  // Assigns the value held inside the slider's range.
  void Set(int32_t wanted);
  void UserPick(int32_t wanted) {
    if (enabled) Set(wanted);
  }
};

struct ListBox : Control {
  explicit ListBox(Form& form)
      : Control(form),
        items(*this, {}),
        listIndex(*this, -1),
        inForce(*this, -1),
        text(*this, {}) {}
  Property<std::vector<std::string>> items;
  Property<int32_t> listIndex;  // -1: nothing chosen; a change raises Click
  Property<int32_t> inForce;    // shown while nothing is chosen; -1: none; raises nothing
  Property<std::string> text;   // of an editable list; raises nothing
  Event<> doubleClicked;
  void UserPick(int32_t index) {
    if (enabled) listIndex = index;
  }
  void UserText(const std::string& typed) {
    if (enabled) text = typed;
  }
  void UserDoubleClick() const {
    if (enabled) doubleClicked.Raise();
  }
};

struct TextBox : Control {
  explicit TextBox(Form& form, std::string initial = {})
      : Control(form), text(*this, std::move(initial)) {}
  Property<std::string> text;
  Event<> edited;   // by the user
  Event<> entered;  // by the Enter key
  Event<> focusWanted;

  // Gives the keyboard to the field.
  void SetFocus() const { focusWanted.Raise(); }

  void UserEnter() const {
    if (enabled) entered.Raise();
  }
  void UserText(const std::string& typed) {
    if (!enabled) return;
    text = typed;
    edited.Raise();
  }
};

struct MenuItem : Control {
  explicit MenuItem(Form& form, std::string text = {})
      : Control(form), caption(*this, std::move(text)), checked(*this, false) {}
  Property<std::string> caption;
  Property<bool> checked;  // raises nothing
  Event<> clicked;
  void Click() const {
    if (enabled) clicked.Raise();
  }
};

// The main display. Its picture is drawn elsewhere; `frame` tells that there is a new one. Lines
// are an overlay over the picture, in pixels of the display.
struct ScopeLine {
  int x1 = 0;
  int y1 = 0;
  int x2 = 0;
  int y2 = 0;
  bool visible = true;
  bool dotted = false;
  bool operator==(const ScopeLine&) const = default;
};

struct ScopeControl : Control {
  explicit ScopeControl(Form& form)
      : Control(form),
        scaleWidth(*this, 0),
        scaleHeight(*this, 0),
        frame(*this, 0),
        verticalGrid(*this, {}),
        horizontalGrid(*this, {}),
        markers(*this, {}),
        backColour(*this, 0xFF000000U),
        gridColour(*this, 0xFF000000U),
        markerColour(*this, 0xFF000000U) {}
  Property<int32_t> scaleWidth;   // columns that the analysis draws
  Property<int32_t> scaleHeight;  // rows
  Property<uint32_t> frame;
  Property<std::vector<ScopeLine>> verticalGrid;  // element 5 is the centre line
  Property<std::vector<ScopeLine>> horizontalGrid;
  Property<std::vector<ScopeLine>> markers;
  // Colours as 0xFFRRGGBB.
  Property<uint32_t> backColour;
  Property<uint32_t> gridColour;
  Property<uint32_t> markerColour;
  // The mouse, in pixels of the display; buttons are 1 left, 2 right.
  Event<int> mouseMove;       // x
  Event<int, int> mouseDown;  // button, x
  Event<int> mouseUp;         // button
  Event<> focusWanted;

  // Gives the keyboard to the display.
  void SetFocus() const { focusWanted.Raise(); }

  void UserMove(int x) const { mouseMove.Raise(x); }
  // A finger presses where no mouse has moved to before.
  void UserPress(int button, int x) const {
    mouseMove.Raise(x);
    mouseDown.Raise(button, x);
  }
  // Only of a button that was pressed and let go over the display.
  void UserRelease(int button) const { mouseUp.Raise(button); }
};

// A picture that slides upward inside its frame; `top` is 0 at rest and negative as it rises.
struct MeterPicture : Control {
  explicit MeterPicture(Form& form) : Control(form), topTwips(*this, 0) {}
  Property<int32_t> topTwips;
};

// A timer of the form. It is driven by a TimerDriver.
struct Timer : Control {
  Timer(Form& form, int32_t initialIntervalMs, bool initiallyEnabled = false)
      : Control(form), interval(*this, initialIntervalMs) {
    enabled = initiallyEnabled;
  }
  Property<int32_t> interval;  // milliseconds; 0 or less never ticks
  Event<> ticked;
};

// Controls that share a name and are told apart by an index; indices may have gaps.
template <class C>
class ControlArray {
 public:
  ControlArray(Form& form, std::initializer_list<std::pair<int32_t, std::string>> members) {
    for (const auto& [index, caption] : members) {
      members_.emplace(index, std::make_unique<C>(form, caption));
    }
  }
  // Indices 0 to `count` - 1 with the same caption.
  ControlArray(Form& form, int32_t count, const std::string& caption) {
    for (int32_t index = 0; index < count; ++index) {
      members_.emplace(index, std::make_unique<C>(form, caption));
    }
  }
  // Throws std::out_of_range for an index that the array does not have.
  C& operator[](int32_t index) { return *members_.at(index); }
  const C& operator[](int32_t index) const { return *members_.at(index); }
  bool Has(int32_t index) const { return members_.contains(index); }
  auto begin() { return members_.begin(); }
  auto end() { return members_.end(); }

 private:
  std::map<int32_t, std::unique_ptr<C>> members_;
};

}  // namespace velt
