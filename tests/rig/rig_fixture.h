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
    server.reachable = {true, true};
    rig1.shown = {.freq = 7100000, .rx = 7100000, .mode = PM_SSB_L};
    rig2.shown = {.freq = 14250000, .rx = 14250000, .mode = PM_SSB_U};
  }

  void Link() {
    rig.link.StartOmniRig({});
    scheduler.RunPosted();
  }
  Texts WritesAfter(const std::function<void()>& action) {
    rig1.TakeWrites();
    action();
    scheduler.RunPosted();
    return rig1.TakeWrites();
  }
  // The rig's own report of what it does reaches the program every 100 ms.
  void Pass(Milliseconds span) {
    for (Milliseconds passed{0}; passed < span; passed += Milliseconds(100)) {
      rig1.Report();
      scheduler.Advance(std::min(Milliseconds(100), span - passed));
    }
  }
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

  FakeRig& rig1 = server.rigs[0];
  FakeRig& rig2 = server.rigs[1];
  Main& form = program->form;
  OmniRigForm& dialogForm = program->catForm;
  Rig& rig = program->rig;
};

}  // namespace velt
