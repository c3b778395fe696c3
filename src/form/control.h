// The base of the form model: a form knows which of its controls changed, a control belongs to one
// form, a property is one value of a control. Plain state without any widget; the window mirrors
// it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "event/event.h"

namespace velt {

class Control;

class Form {
 public:
  Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  // Puts the controls that changed since the last call into `taken`, each once, in place of what it
  // held.
  void TakeChanged(std::vector<Control*>& taken);

 private:
  friend class Control;
  std::vector<Control*> changed_;
};

// A rectangle in logical pixels of the window's content.
struct Rectangle {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Rectangle&) const = default;
  bool Overlaps(const Rectangle& other) const {
    return left < other.left + other.width && other.left < left + width &&
           top < other.top + other.height && other.top < top + height;
  }
};

// One value of a control. Assigning a different value marks the control as changed and then raises
// the control's own event, if that kind of assignment raises one.
template <class T>
class Property {
 public:
  Property(Control& owner, T initial) : owner_(owner), value_(std::move(initial)) {}
  Property(const Property&) = delete;
  Property& operator=(const Property& other) { return *this = other.value_; }
  inline Property& operator=(T value);

  const T& Get() const { return value_; }
  operator const T&() const { return value_; }

  // After an assignment that changed the value.
  Event<> changed;

 private:
  Control& owner_;
  T value_;
};

class Control {
 public:
  explicit Control(Form& form)
      : enabled(*this, true),
        visible(*this, true),
        toolTip(*this, {}),
        place(*this, {}),
        form_(form) {}
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Property<bool> enabled;
  Property<bool> visible;
  Property<std::string> toolTip;
  // Where the control stands in the window; set by the window's layout.
  Property<Rectangle> place;

  // Puts the control on its form's list of changes, once.
  void Touch();

 protected:
  ~Control() = default;

 private:
  friend class Form;
  Form& form_;
  bool listed_ = false;
};

template <class T>
Property<T>& Property<T>::operator=(T value) {
  if (value_ == value) return *this;
  value_ = std::move(value);
  owner_.Touch();
  changed.Raise();
  return *this;
}

}  // namespace velt
