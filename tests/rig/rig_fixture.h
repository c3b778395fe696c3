// The whole program over doubles, started with rig 1 on 7.1 MHz LSB and rig 2 on 14.25 MHz USB.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/doubles.h"

namespace velt {

struct RigFixture : testing::Test, ProgramFixture {
  using Texts = std::vector<std::string>;

  RigFixture() {
    rig1.Tune(7100000);
    rig1.Select(PM_SSB_L);
    rig2.Tune(14250000);
    rig2.Select(PM_SSB_U);
    Reachable(true);
  }

  void Link() {
    rig.link.StartOmniRig({});
    scheduler.RunPosted();
  }
  Texts WritesAfter(const std::function<void()>& action) {
    writes1.Take();
    action();
    scheduler.RunPosted();
    return writes1.Take();
  }
  Texts WritesWithin(Milliseconds span) {
    return WritesAfter([&] { scheduler.Advance(span); });
  }
  void Pass(Milliseconds span) { scheduler.Advance(span); }
  std::string Frequency() const { return form.lblFrequency.caption; }
  // What the message line holds, which is emptied.
  std::string Message() {
    const std::string text = form.lblMessage.caption;
    form.lblMessage.caption = std::string();
    return text;
  }
  std::string Notice() const {
    return form.lblNotice.visible ? form.lblNotice.caption.Get() : std::string();
  }

  Main& form = program->form;
  OmniRigForm& dialogForm = program->catForm;
  Rig& rig = program->rig;
};

}  // namespace velt
