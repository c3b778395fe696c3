// The main window over a program's form, laid out, shown and active.
#pragma once

#include <gtest/gtest.h>

#include "support/doubles.h"
#include "ui/main_window.h"
#include "ui/turn.h"

namespace velt {

struct WindowFixture : testing::Test, ProgramFixture {
  WindowFixture() {
    program->layout.Form_Resize();
    raster = Raster(form.Scope.scaleWidth, form.Scope.scaleHeight, Colour(0xFFFFFF));
    window.show();
    Activate(window);
  }
  QWidget& Find(const QString& name) { return velt::Find(window, name); }
  // What a widget has on the screen, so far right of and below its upper left corner.
  QRgb Pixel(const QWidget& widget, QPoint at) {
    return OnScreen(window).pixel(widget.geometry().topLeft() + at);
  }

  Main& form = program->form;
  Raster raster;
  int painted = 0;
  MainWindow window{form, [this]() -> const Raster& {
                      ++painted;
                      return raster;
                    }};
};

}  // namespace velt
