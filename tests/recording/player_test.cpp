#include <algorithm>

#include "rig/rig_fixture.h"

namespace velt {
namespace {

using Kind = PlayerEvent::Kind;

constexpr const char* kWav = "/home/om/VELT/WAV";

struct PlayerTest : RigFixture {
  PlayerForm& player = program->playerForm;

  PlayerTest() {
    Start();
    folders.folders = {
        {kWav, {.folders = {"old", ".hid"}, .files = {"b.wav", ".x", "A.wav", "c\xFF.wav"}}},
        {"/home/om/VELT/WAV/old", {.files = {"x.wav"}}},
        {"/home/om", {.folders = {"VELT"}, .files = {"letter.txt"}}}};
    for (const char* name : {"A.wav", "b.wav", "c\xFF.wav"}) {
      files.files[std::filesystem::path(kWav) / name] = name;
    }
    form.mnuopenrec.Click();
    Pass(Milliseconds(1));
    Link();
    soundPlayer.heard = {Milliseconds(1234), Milliseconds(62000)};
  }
  void Play(int32_t index = 0) {
    player.File1.UserPick(index);
    player.CmdPlay[0].Click();
  }
  void PlayOnAir() {
    player.chkPtt.UserPick(true);
    Play();
    soundPlayer.Tell(Kind::Ready);
    Pass(Milliseconds(300));
    ASSERT_EQ(rig1.Transmitter(), TxReport::Transmits);
    soundPlayer.calls.clear();
  }
  bool Keyed() {
    Pass(Milliseconds(200));
    return rig1.Transmitter() == TxReport::Transmits;
  }
};

TEST_F(PlayerTest, TheRigIsKeyedOnceTheFileCanBeHeardAndReleasedByStop) {
  const auto calls = [this] { return std::exchange(soundPlayer.calls, {}); };
  player.CmdPlay[0].Click();
  EXPECT_EQ(prompts.told.back().text, "Select a file first");
  player.chkPtt.UserPick(true);
  Play(1);
  EXPECT_FALSE(Keyed()) << "it is not known yet whether it can be played";
  soundPlayer.Tell(Kind::Failed, "b.wav: not a sound file.");
  EXPECT_FALSE(Keyed());
  EXPECT_EQ(player.lblProblem.caption.Get(), "b.wav: not a sound file.");

  calls();
  player.File1.UserPick(0);
  player.File1.UserDoubleClick();
  soundPlayer.Tell(Kind::Ready);
  EXPECT_EQ(calls(), Texts{"prepare /home/om/VELT/WAV/A.wav"}) << "the key goes first";
  Pass(Milliseconds(300));
  EXPECT_EQ(calls(), Texts{"start"});
  EXPECT_EQ(player.lblProgress.caption.Get(), "A.wav   0:01 of 1:02, on the air");

  // Another file follows without a break; at its end the rig is not released, which is told.
  writes1.Take();
  Play(1);
  Pass(Milliseconds(200));
  soundPlayer.Tell(Kind::Ready);
  EXPECT_EQ(calls(), (Texts{"prepare /home/om/VELT/WAV/b.wav", "start"}));
  soundPlayer.Tell(Kind::Drained);
  EXPECT_TRUE(Keyed());
  EXPECT_EQ(writes1.Take(), Texts{});
  EXPECT_NE(Notice().find("still transmits"), std::string::npos);
  player.chkPtt.UserPick(false);
  player.CmdPlay[1].Click();
  EXPECT_FALSE(Keyed());
  EXPECT_EQ(Notice(), "");
}

TEST_F(PlayerTest, WhateverEndsThePlayingOrTheTransmissionReleasesTheRig) {
  struct End {
    const char* name;
    std::function<void()> happens;
    bool soundEnds = true;
  };
  for (const End& end : std::vector<End>{
           {"the sound server dies", [&] { soundPlayer.Tell(Kind::Failed, "Gone."); }, false},
           {"Stop", [&] { player.CmdPlay[1].Click(); }},
           {"the operator's RX", [&] { form.optTXRX[1].UserPress(1); }},
           {"the limit", [&] { Pass(std::chrono::minutes(11)); }},
           {"a file that is not to be sent",
            [&] {
              player.chkPtt.UserPick(false);
              Play(1);
              soundPlayer.calls = {"stop"};
            }},
           {"the window is closed", [&] { player.Window.closeAsked.Raise(); }},
           {"the program ends", [&] { Close(); }}}) {
    SCOPED_TRACE(end.name);
    form.mnuopenrec.Click();
    Pass(Milliseconds(1));
    PlayOnAir();
    end.happens();
    EXPECT_FALSE(Keyed());
    EXPECT_EQ(std::ranges::count(soundPlayer.calls, "stop") > 0, end.soundEnds);
    // Nothing that comes late keys or plays.
    soundPlayer.calls.clear();
    Pass(std::chrono::seconds(20));
    EXPECT_FALSE(Keyed());
    EXPECT_EQ(soundPlayer.calls, Texts{});
    player.CmdPlay[1].Click();
  }
  EXPECT_FALSE(player.Window.visible);
}

TEST_F(PlayerTest, ReceiveEndsWhatIsAboutToBeKeyedAndTheOperatorsTransmissionGoesOn) {
  player.chkPtt.UserPick(true);
  Play();
  form.optTXRX[1].UserPress(1);
  soundPlayer.Tell(Kind::Ready);
  EXPECT_FALSE(Keyed());
  Play();
  soundPlayer.Tell(Kind::Ready);
  soundPlayer.calls.clear();
  form.optTXRX[1].UserPress(1);
  EXPECT_FALSE(Keyed());
  Pass(std::chrono::seconds(1));
  EXPECT_EQ(soundPlayer.calls, Texts{"stop"}) << "nor is heard what was keyed for";

  PlayOnAir();
  form.optTXRX[0].UserPress(1);
  player.Window.closeAsked.Raise();
  EXPECT_TRUE(Keyed());
  // Nor does a rig that takes no second key end it.
  rig1.RefuseKeys(true);
  form.mnuopenrec.Click();
  Pass(Milliseconds(1));
  PlayOnAir();
  EXPECT_TRUE(Keyed());
  player.Window.closeAsked.Raise();
  EXPECT_TRUE(Keyed());
  form.optTXRX[1].UserPress(1);
  EXPECT_FALSE(Keyed());

  // Without a link the sound is heard, and nothing is keyed when the link comes back.
  Reachable(false);
  Pass(std::chrono::seconds(3));
  form.mnuopenrec.Click();
  Pass(Milliseconds(1));
  EXPECT_EQ(player.chkPtt.value, 0) << "chosen anew each time";
  player.chkPtt.UserPick(true);
  Play();
  soundPlayer.Tell(Kind::Ready);
  EXPECT_EQ(soundPlayer.calls.back(), "start");
  EXPECT_NE(player.lblProblem.caption.Get(), "");
  Reachable(true);
  Pass(std::chrono::seconds(10));
  EXPECT_FALSE(Keyed());
}

TEST_F(PlayerTest, FilesAreDeletedAndRenamedInTheirFolderOnly) {
  EXPECT_EQ(player.File1.items.Get(), (Texts{"A.wav", "b.wav", "c\xFF.wav"}));
  const auto rename = [&](int32_t index, const std::string& name) {
    prompts.told.clear();
    player.File1.UserPick(index);
    player.cmdfiles[1].Click();
    if (prompts.input) std::exchange(prompts.input, nullptr)(name);
    Pass(Milliseconds(2));
    return prompts.told.empty() ? std::string() : prompts.told.back().title;
  };
  const auto all = files.files;
  for (const char* name :
       {"old/d.wav", "../d.wav", "/d.wav", "a\\d.wav", ".", "..", "c\uFFFD.wav"}) {
    EXPECT_EQ(rename(2, name), "Rename error nr22") << name;
  }
  EXPECT_EQ(rename(0, "b.wav"), "Rename error nr17");
  EXPECT_EQ(rename(0, "") + rename(0, "A.wav"), "");
  EXPECT_EQ(files.files, all);
  EXPECT_EQ(rename(2, "b"), "");
  EXPECT_TRUE(files.files.contains("/home/om/VELT/WAV/b"));

  PlayOnAir();
  auto& listed = folders.folders[kWav].files;
  const auto before = std::exchange(listed, {"about.wav", "renamed.wav"});
  EXPECT_EQ(rename(0, "renamed.wav"), "");
  EXPECT_EQ(player.File1.listIndex, 1) << "under its new name";
  player.cmdfiles[0].Click();
  prompts.answer(true);
  EXPECT_FALSE(Keyed()) << "it is still what is played";
  files.files = all;
  listed = before;
  player.Window.closeAsked.Raise();
  form.mnuopenrec.Click();
  Pass(Milliseconds(1));

  prompts.told.clear();
  PlayOnAir();
  for (const char* title : {"", "Delete error nr13"}) {
    player.cmdfiles[0].Click();
    EXPECT_EQ(prompts.asked.back().text, "Are you sure to delete A.wav?");
    prompts.answer(false);
    EXPECT_EQ(files.files.contains("/home/om/VELT/WAV/A.wav"), *title == '\0');
    folders.takes = Milliseconds(400);
    prompts.answer(true);
    Pass(Milliseconds(350));
    EXPECT_EQ(player.lblProblem.caption.Get(), "The disk does not answer: deleting A.wav.");
    Pass(std::exchange(folders.takes, Milliseconds(1)));
    EXPECT_EQ(prompts.told.empty() ? "" : prompts.told.back().title, title);
    EXPECT_EQ(player.lblProblem.caption.Get().empty(), *title == '\0');
  }
  EXPECT_FALSE(Keyed()) << "what is played is stopped first";
  form.imgStartStop.Click();
  form.imgRecOnOff[0].Click();
  recorder.happened.Raise({RecorderEvent::Kind::Started, "", "/home/om/VELT/WAV/b.wav"});
  EXPECT_EQ(rename(1, "d.wav"), "Wav Player");
  prompts.asked.clear();
  player.cmdfiles[0].Click();
  EXPECT_EQ(prompts.asked.size(), 0u) << "nor asked whether to delete it";
  EXPECT_TRUE(files.files.contains("/home/om/VELT/WAV/b.wav"));
}

TEST_F(PlayerTest, FoldersAreWalkedThrough) {
  player.Dir1.UserPick(1);
  player.Dir1.UserDoubleClick();
  Pass(Milliseconds(1));
  Play();
  EXPECT_EQ(soundPlayer.calls.back(), "prepare /home/om/VELT/WAV/old/x.wav");
  player.Drive1.UserPick(1);
  Pass(Milliseconds(1));
  EXPECT_EQ(player.File1.items.Get(), Texts{"letter.txt"});
  EXPECT_EQ(player.File1.listIndex, -1);
  // What cannot be read changes nothing.
  player.Drive1.UserPick(2);
  Pass(Milliseconds(1));
  EXPECT_EQ(player.File1.items.Get(), Texts{"letter.txt"});
  EXPECT_EQ(player.Drive1.listIndex, 1);
}

}  // namespace
}  // namespace velt
