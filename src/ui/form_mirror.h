// Keeps widgets in step with a form's controls: pulls the changed ones once per turn of the loop
// and compares before it sets, so widget code never runs in the middle of the program's logic.
#pragma once

#include <QObject>
#include <QWidget>
#include <functional>
#include <unordered_map>
#include <vector>

#include "form/controls.h"

namespace velt {

class FormMirror : public QObject {
 public:
  explicit FormMirror(Form& form);

  // Mirrors what every control has (enabled, visible, tool tip, place) and then calls `sync`,
  // at once and whenever the control changed. A control without a place is hidden when
  // `usesPlace`; otherwise its widget keeps the geometry that its layout gives it.
  void Bind(const Control& control, QWidget* widget, std::function<void()> sync,
            bool usesPlace = true);
  // For a control that is shown by something else than one widget.
  void Watch(const Control& control, std::function<void()> sync);

  // Brings every widget in step now.
  void Sync();

 private:
  Form& form_;
  std::unordered_map<const Control*, std::vector<std::function<void()>>> syncs_;
  Connections connections_;
};

}  // namespace velt
