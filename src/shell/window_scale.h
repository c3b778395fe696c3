// How large the window and everything in it is shown, besides the desktop's own factor. It holds
// from the next start on: a window that is up cannot be given another scale as a whole.
#pragma once

#include <cstdint>
#include <string>

#include "form/main_form.h"
#include "ports/prompts.h"

namespace velt {

class WindowScale {
 public:
  // In the settings, in a section of its own.
  static constexpr const char* kSection = "Window";
  static constexpr const char* kKey = "Scale";

  WindowScale(ShellControls& form, Prompts& prompts);

  // The scale that a stored text means, in per cent: one of those in the menu, else 100.
  static int32_t Parse(const std::string& stored);

  // As stored; this is what the window is shown in.
  void Load(const std::string& stored);
  std::string Stored() const { return std::to_string(chosen_); }

 private:
  void mnuscales_Click(int32_t percent);
  void Choose(int32_t percent);

  ShellControls& form_;
  Prompts& prompts_;
  int32_t shown_ = 100;
  int32_t chosen_ = 100;
  Connections connections_;
};

}  // namespace velt
