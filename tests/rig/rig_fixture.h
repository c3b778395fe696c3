// The whole rig subsystem over a fake server, a virtual clock and prompts that a test answers.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rig/rig.h"
#include "support/fake_rig.h"
#include "support/virtual_scheduler.h"

namespace velt {

// Keeps what was asked until the test answers.
class RecordingPrompts : public Prompts {
 public:
  std::vector<std::string> told;
  std::vector<MessageBox> asked;
  std::vector<InputBox> inputs;
  std::function<void(bool)> answer;
  std::function<void(std::optional<std::string>)> type;

  void Tell(const MessageBox& box, std::function<void()>) override { told.push_back(box.text); }
  void Ask(const MessageBox& box, std::function<void(bool)> answered) override {
    asked.push_back(box);
    answer = std::move(answered);
  }
  void Input(const InputBox& box,
             std::function<void(std::optional<std::string>)> answered) override {
    inputs.push_back(box);
    type = std::move(answered);
  }
  bool Popup(const std::vector<PopupItem>&, std::function<void(std::function<void()>)>) override {
    return false;
  }
  void DropAll() override {}
};

struct RigFixture : testing::Test {
  using Texts = std::vector<std::string>;

  explicit RigFixture(OmniRigLink::Questions questions = OmniRigLink::Questions::Asked)
      : rig(form, dialogForm, {server, prompts, clock}, questions,
            [this](const std::string& text) { messages.push_back(text); }) {
    rig.display.writeStatusRX = [this](int32_t hz) { statusWrites.push_back(hz); };
    rig.guard.showNotice = [this](const std::string& text) { notices.push_back(text); };
    rig.guard.endNotice = [this](const std::string& text) { std::erase(notices, text); };
  }

  // Rig 1 is on 7.1 MHz LSB, rig 2 on 14.25 MHz USB.
  void Link() {
    server.rigs[0].shown = {.freq = 7100000, .rx = 7100000, .txOverride = {}, .mode = PM_SSB_L};
    server.rigs[1].shown = {.freq = 14250000, .rx = 14250000, .txOverride = {}, .mode = PM_SSB_U};
    rig.link.StartOmniRig();
    clock.RunPosted();
    rig1.TakeWrites();
  }
  Texts WritesAfter(const std::function<void()>& action) {
    rig1.TakeWrites();
    action();
    clock.RunPosted();
    return rig1.TakeWrites();
  }
  // The rig's own report of what it does reaches the program every 200 ms.
  void Pass(Milliseconds span) {
    for (Milliseconds passed{0}; passed < span; passed += Milliseconds(100)) {
      for (FakeRig& one : server.rigs) one.Report();
      clock.Advance(std::min(Milliseconds(100), span - passed));
    }
  }
  std::string Frequency() const { return form.lblFrequency.caption; }
  bool Transmits() const { return server.rigs[0].txReally == PM_TX; }

  VirtualScheduler clock;
  FakeOmniRig server{clock};
  FakeRig& rig1 = server.rigs[0];
  FakeRig& rig2 = server.rigs[1];
  RecordingPrompts prompts;
  Main form;
  OmniRigForm dialogForm;
  Texts messages;
  Texts notices;
  std::vector<int32_t> statusWrites;
  Rig rig;
};

}  // namespace velt
