// Windows of other programs on a real X server, with a window manager and without: a Java window
// that says what it was told, and one beside it that must not get anything.
#include "adapters/x11/x11_engine_window.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "adapters/x11/key_notation.h"
#include "adapters/x11/no_engine_window.h"
#include "support/java_engine.h"
#include "support/x_desktop.h"

namespace velt {
namespace {

using std::chrono::seconds;

TEST(KeyNotation, ChordsAreReadAndNonsenseIsRefused) {
  const KeyChord ctrlS{.control = true, .key = 's'}, s{.key = 's'};
  struct Case {
    const char* text;
    std::optional<std::vector<KeyChord>> chords;
  };
  for (const Case& c :
       {Case{"(^s)", {{ctrlS}}}, Case{"^ss", {{ctrlS, s}}},
        Case{"^(ss)1", {{ctrlS, ctrlS, {.key = '1'}}}},
        Case{"+%(^s)", {{{.control = true, .alt = true, .shift = true, .key = 's'}}}}, Case{"", {}},
        Case{"()", {}}, Case{"^", {}}, Case{"(^s", {}}, Case{"^s)", {}}, Case{"{ESC}", {}}}) {
    EXPECT_EQ(ReadKeys(c.text), c.chords) << c.text;
  }
}

struct Desk {
  explicit Desk(XDesktop::Manager manager)
      : desktop(manager), windows(scheduler, desktop.Display()) {
    connection = windows.changed.Listen([this] { ++changes; });
  }

  bool Appears(const std::string& title) {
    return LoopUntil([&] { return windows.Find(title) != 0; }, seconds(20));
  }
  bool Gone(const std::string& title) {
    return LoopUntil([&] { return windows.Find(title) == 0; });
  }
  // What a call says later.
  template <class Call>
  bool Says(const Call& call) {
    std::optional<bool> said;
    call([&said](bool ok) { said = ok; });
    EXPECT_FALSE(said) << "from within the call";
    EXPECT_TRUE(LoopUntil([&] { return said.has_value(); }, seconds(3)));
    return said.value_or(false);
  }
  bool Activate(const std::string& title) {
    return Says([&](auto done) { windows.Activate(windows.Find(title), done); });
  }
  bool Send(const std::string& title, const std::string& keys) {
    return Says([&](auto done) { windows.SendKeys(windows.Find(title), keys, done); });
  }
  // While windows and managers come or go it may take more than one attempt.
  bool Takes(const std::string& title, const std::string& keys) {
    for (int attempt = 0; attempt < 10; ++attempt) {
      if (Activate(title) && Send(title, keys)) return true;
    }
    return false;
  }
  void Tool(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "xdotool");
    Process tool(arguments, {.environment = desktop.Environment()});
    EXPECT_TRUE(tool.WaitForEnd(seconds(5)));
  }

  const int loop = (EnsureLoop(), 0);
  XDesktop desktop;
  QtScheduler scheduler;
  X11EngineWindow windows;
  int changes = 0;
  Connection connection;
};

constexpr const char* kTitle = "VELT V9.9 \xC3\xBC";
constexpr const char* kOther = "Event Tester";

struct X11EngineWindowTest : testing::TestWithParam<XDesktop::Manager> {
  Desk desk{GetParam()};
  TempFolder folder;
  Process other{{"xev", "-event", "keyboard"},
                {.environment = desk.desktop.Environment(), .output = folder.Path() / "xev"}};
  JavaEngine engine{desk.desktop.Environment(), kTitle};

  bool Ready() { return desk.Appears(kTitle) && desk.Appears(kOther); }
  bool OtherGotKeys() const {
    return ReadText(folder.Path() / "xev").find("KeyPress") != std::string::npos;
  }
};
INSTANTIATE_TEST_SUITE_P(Managers, X11EngineWindowTest,
                         testing::Values(XDesktop::Manager::Openbox, XDesktop::Manager::None),
                         [](const auto& manager) {
                           return manager.param == XDesktop::Manager::None ? "None" : "Openbox";
                         });

TEST_P(X11EngineWindowTest, EveryChordArrivesInOrderAndNowhereElse) {
  EXPECT_EQ(desk.windows.Unavailable(), "");
  EXPECT_EQ(desk.windows.Find(kTitle), 0U);
  ASSERT_TRUE(Ready());
  std::string expected;
  for (const char key : std::string("luwdirtsluwdirts")) {
    // Another window is in front before each.
    if (GetParam() == XDesktop::Manager::Openbox) {
      ASSERT_TRUE(desk.Activate(kOther));
    }
    ASSERT_TRUE(desk.Activate(kTitle));
    for (int time = 0; time < 2; ++time) {
      EXPECT_TRUE(desk.Takes(kTitle, std::string("(^") + key + ")"));
      expected += (expected.empty() ? "" : ", ") + ("Ctrl+" + std::string(1, char(key - 32)));
    }
  }
  EXPECT_FALSE(desk.Send(kTitle, "(^"));
  EXPECT_TRUE(LoopUntil([&] { return engine.Log().Chords().size() >= expected.size(); }));
  EXPECT_EQ(engine.Log().Chords(), expected);
  ASSERT_TRUE(engine.Log().Request("held"));
  EXPECT_EQ(engine.Log().All("held "), "[]");
  EXPECT_FALSE(OtherGotKeys());
}

TEST_P(X11EngineWindowTest, HeldModifiersDoNotMixInAndAreHeldAgain) {
  ASSERT_TRUE(Ready());
  ASSERT_TRUE(desk.Activate(kTitle));
  for (const char* held : {"shift", "alt", "super"}) desk.Tool({"keydown", held});
  EXPECT_TRUE(desk.Send(kTitle, "(^l)"));
  EXPECT_TRUE(LoopUntil([&] { return !engine.Log().Chords().empty(); }));
  EXPECT_EQ(engine.Log().Chords(), "Ctrl+L");
  for (const char* held : {"alt", "super"}) desk.Tool({"keyup", held});
  desk.Tool({"key", "a"});
  EXPECT_TRUE(LoopUntil([&] { return engine.Log().Chords() == "Ctrl+L, Shift+A"; }));
  desk.Tool({"keyup", "shift"});
  ASSERT_TRUE(engine.Log().Request("held"));
  EXPECT_EQ(engine.Log().All("held "), "[]");
}

TEST_P(X11EngineWindowTest, TheTitleIsFollowedAndTheWindowClosesLikeByItsUser) {
  ASSERT_TRUE(Ready());
  EXPECT_EQ(desk.windows.Find(std::string(kTitle) + " "), 0U);
  ASSERT_TRUE(engine.Log().Request("title VELT"));
  EXPECT_TRUE(desk.Appears("VELT"));
  EXPECT_TRUE(desk.Gone(kTitle));
  desk.changes = 0;
  desk.windows.Close(desk.windows.Find("VELT"));
  EXPECT_TRUE(desk.Gone("VELT"));
  EXPECT_GE(desk.changes, 1);
  EXPECT_TRUE(engine.Program().WaitForEnd(seconds(5)));
  EXPECT_EQ(engine.Program().ExitCode(), 0);
  EXPECT_EQ(engine.Log().Lines().back().text, "close");
}

TEST_P(X11EngineWindowTest, WhatDiesIsSeenAndWhatStandsStillHoldsNothingUp) {
  ASSERT_TRUE(Ready());
  engine.Program().Signal(SIGSTOP);
  if (GetParam() == XDesktop::Manager::Openbox) {
    ASSERT_TRUE(desk.Activate(kOther));
    EXPECT_FALSE(desk.Send(kTitle, "(^x)")) << "it is not the active one";
  }
  QElapsedTimer since;
  since.start();
  (void)desk.Activate(kTitle);  // the window manager may give the keyboard all the same
  EXPECT_LT(since.elapsed(), 1500);
  engine.Program().Kill();
  EXPECT_TRUE(desk.Gone(kTitle));
  EXPECT_FALSE(desk.Activate(kTitle));
  EXPECT_FALSE(desk.Send(kTitle, "(^s)"));
  EXPECT_FALSE(OtherGotKeys());
}

TEST(X11EngineWindow, AManagerMayGoAndComeBack) {
  Desk desk(XDesktop::Manager::Openbox);
  JavaEngine engine(desk.desktop.Environment(), kTitle);
  ASSERT_TRUE(desk.Appears(kTitle));
  EXPECT_TRUE(desk.Takes(kTitle, "(^u)"));
  ASSERT_TRUE(engine.Log().Request("iconify"));
  ASSERT_TRUE(LoopUntil([&] { return engine.Log().Lines().back().text == "icon"; }));
  EXPECT_TRUE(desk.Takes(kTitle, "(^i)")) << "an icon comes up";
  desk.desktop.KillManager();
  EXPECT_TRUE(desk.Takes(kTitle, "(^w)"));
  desk.desktop.StartManager();
  EXPECT_TRUE(desk.Takes(kTitle, "(^d)"));
  const std::string all = "Ctrl+U, Ctrl+I, Ctrl+W, Ctrl+D";
  EXPECT_TRUE(LoopUntil([&] { return engine.Log().Chords() == all; })) << engine.Log().Chords();
}

TEST(X11EngineWindow, WithoutAServerItSaysWhatIsNeeded) {
  EnsureLoop();
  QtScheduler scheduler;
  X11EngineWindow unreachable(scheduler, "/nowhere:7");
  NoEngineWindow none(scheduler);
  for (EngineWindow* windows :
       {static_cast<EngineWindow*>(&unreachable), static_cast<EngineWindow*>(&none)}) {
    EXPECT_NE(windows->Unavailable().find("needs X11"), std::string::npos);
    EXPECT_EQ(windows->Find("VELT V2.5."), 0U);
    std::string answers;
    windows->Activate(1, [&](bool ok) { answers += ok ? "yes " : "no "; });
    windows->SendKeys(1, "(^s)", [&](bool ok) { answers += ok ? "yes " : "no "; });
    windows->Close(1);
    EXPECT_EQ(answers, "");
    EXPECT_TRUE(LoopUntil([&] { return answers == "no no "; }));
  }
}

}  // namespace
}  // namespace velt
