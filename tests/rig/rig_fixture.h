// The whole rig subsystem over a fake server, a virtual clock and prompts that a test answers.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rig/rig.h"
#include "support/doubles.h"

namespace velt {

struct RigFixture : testing::Test {
  using Texts = std::vector<std::string>;

  RigFixture() {
    rig.guard.showNotice = [this](const std::string& text) { notices.push_back(text); };
    rig.guard.endNotice = [this](const std::string& text) { std::erase(notices, text); };
  }

  // Rig 1 is on 7.1 MHz LSB, rig 2 on 14.25 MHz USB.
  void Link() {
    rig1.shown = {.freq = 7100000, .rx = 7100000, .mode = PM_SSB_L};
    rig2.shown = {.freq = 14250000, .rx = 14250000, .mode = PM_SSB_U};
    rig.link.StartOmniRig();
    clock.RunPosted();
  }
  Texts WritesAfter(const std::function<void()>& action) {
    rig1.TakeWrites();
    action();
    clock.RunPosted();
    return rig1.TakeWrites();
  }
  // The rig's own report of what it does reaches the program every 100 ms.
  void Pass(Milliseconds span) {
    for (Milliseconds passed{0}; passed < span; passed += Milliseconds(100)) {
      rig1.Report();
      clock.Advance(std::min(Milliseconds(100), span - passed));
    }
  }
  std::string Frequency() const { return form.lblFrequency.caption; }

  VirtualScheduler clock;
  FakeOmniRig server{clock};
  FakeRig& rig1 = server.rigs[0];
  FakeRig& rig2 = server.rigs[1];
  FakePrompts prompts;
  Main form;
  OmniRigForm dialogForm;
  Texts messages;
  Texts notices;
  Rig rig{form,
          dialogForm,
          {server, prompts, clock},
          OmniRigLink::Questions::Asked,
          [this](const std::string& text) { messages.push_back(text); }};
};

}  // namespace velt
