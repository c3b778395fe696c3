// Text of the clipboard where the window system hands it over by itself.
#pragma once

#include <QClipboard>
#include <QGuiApplication>

#include "ports/pasted_text.h"
#include "ports/scheduler.h"

namespace velt {

class QtPastedText final : public PastedText {
 public:
  explicit QtPastedText(Scheduler& scheduler) : scheduler_(scheduler) {}

  void Ask(From from, std::function<void(const std::string&)> told) override {
    const auto mode = from == From::Clipboard ? QClipboard::Clipboard : QClipboard::Selection;
    asked_ = scheduler_.After(Milliseconds(0), [mode, told = std::move(told)] {
      told(QGuiApplication::clipboard()->text(mode).toStdString());
    });
  }

 private:
  Scheduler& scheduler_;
  Scheduler::Handle asked_;
};

}  // namespace velt
