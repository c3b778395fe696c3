// The desktop's colour chooser. Not even the dialog below it is blocked: a transmitter can be
// released while it is open.
#pragma once

#include <QColorDialog>
#include <QPointer>
#include <QWidget>

#include "ports/colour_chooser.h"

namespace velt {

class QtColourChooser : public ColourChooser {
 public:
  ~QtColourChooser() override;

  // The program's window; the chooser stands over that of its dialogs which the user is at.
  void SetOwner(QWidget* owner) { owner_ = owner; }

  void Pick(const std::string& title, uint32_t initial,
            std::function<void(std::optional<uint32_t>)> chosen) override;
  void Drop() override;

 private:
  QPointer<QWidget> owner_;
  QPointer<QColorDialog> open_;
};

}  // namespace velt
