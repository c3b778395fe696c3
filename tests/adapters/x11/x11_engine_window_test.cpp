// Windows of other programs on a real X server, with a window manager and without: a Java window
// that says what it was told, and one beside it that must not get anything.
#include "adapters/x11/x11_engine_window.h"

#include <gtest/gtest.h>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "support/java_engine.h"
#include "support/x_desktop.h"

namespace velt {
namespace {

using std::chrono::seconds;

constexpr const char* kTitle = "VELT V9.9 \xC3\xBC";
constexpr const char* kOther = "Event Tester";

struct Desk {
  explicit Desk(XDesktop::Manager manager) : desktop(manager) {
    EXPECT_TRUE(Appears(kTitle) && Appears(kOther));
  }
  ~Desk() { EXPECT_EQ(ReadText(folder / "xev").find("KeyPress"), std::string::npos); }

  bool Appears(const std::string& title) {
    return LoopUntil([&] { return windows->Find(title) != 0; }, seconds(20));
  }
  bool Gone(const std::string& title) {
    return LoopUntil([&] { return windows->Find(title) == 0; });
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
    return Says([&](auto done) { windows->Activate(windows->Find(title), done); });
  }
  bool Send(const std::string& title, const std::string& keys) {
    return Says([&](auto done) { windows->SendKeys(windows->Find(title), keys, done); });
  }
  // While windows and managers come or go it may take more than one attempt.
  bool Takes(const std::string& keys) {
    for (int attempt = 0; attempt < 10; ++attempt) {
      if (Activate(kTitle) && Send(kTitle, keys)) return true;
    }
    return false;
  }
  // All that the engine has got, each once, and nothing is held any more.
  void Got(const std::string& chords) const {
    EXPECT_TRUE(LoopUntil([&] { return engine.log.All("chord ").size() >= chords.size(); }));
    EXPECT_EQ(engine.log.All("chord "), chords);
  }
  void Tool(const std::vector<std::string>& command) const {
    Output(command, desktop.Environment());
  }

  const int loop = (EnsureLoop(), 0);
  XDesktop desktop;
  QtScheduler scheduler;
  std::optional<X11EngineWindow> windows{std::in_place, scheduler, desktop.Display()};
  TempFolder folder;
  Process other{{"xev", "-event", "keyboard"},
                {.environment = desktop.Environment(), .output = folder / "xev"}};
  JavaEngine engine{desktop.Environment(), kTitle};
};

struct X11EngineWindowTest : testing::TestWithParam<XDesktop::Manager> {};
INSTANTIATE_TEST_SUITE_P(Managers, X11EngineWindowTest,
                         testing::Values(XDesktop::Manager::Openbox, XDesktop::Manager::None));

TEST_P(X11EngineWindowTest, EveryChordArrivesInOrderAndNowhereElse) {
  Desk desk(GetParam());
  const bool managed = GetParam() == XDesktop::Manager::Openbox;
  std::string expected;
  for (const char key : std::string("luwdirts")) {
    // Another window is in front before each.
    EXPECT_TRUE(!managed || desk.Activate(kOther));
    for (int time = 0; time < 2; ++time) {
      EXPECT_TRUE(desk.Takes(std::string("(^") + key + ")"));
      expected += "Ctrl+" + std::string(1, char(key - 32)) + " ";
    }
  }
  EXPECT_FALSE(desk.Send(kTitle, "(^"));
  desk.Got(expected);

  // One that comes later, when the engine has the keyboard already.
  desk.windows.emplace(desk.scheduler, desk.desktop.Display());
  ASSERT_TRUE(desk.Appears(kTitle));
  EXPECT_TRUE(desk.Takes("(^s)"));
  desk.Got(expected += "Ctrl+S ");

  // What the operator holds does not mix in and is held again.
  for (const char* held : {"shift", "alt", "super"}) desk.Tool({"xdotool", "keydown", held});
  EXPECT_TRUE(desk.Send(kTitle, "(^l)"));
  desk.Got(expected += "Ctrl+L ");
  for (const char* held : {"alt", "super"}) desk.Tool({"xdotool", "keyup", held});
  desk.Tool({"xdotool", "key", "a"});
  desk.Got(expected += "Shift+A ");
  desk.Tool({"xdotool", "keyup", "shift"});
  ASSERT_TRUE(desk.engine.log.Request("held"));
  EXPECT_EQ(desk.engine.log.All("held "), "[] ");

  desk.Tool({"setxkbmap", "fr"});  // W is where Z was
  EXPECT_TRUE(desk.Takes("(^w)"));
  desk.Got(expected += "Ctrl+W ");

  // What stands still holds nothing up, and what dies is seen.
  desk.engine.process->Signal(SIGSTOP);
  if (managed) {
    EXPECT_TRUE(desk.Activate(kOther));
    EXPECT_FALSE(desk.Send(kTitle, "(^x)")) << "it is not the active one";
  }
  (void)desk.Activate(kTitle);  // the window manager may give the keyboard all the same
  desk.engine.process->Kill();
  EXPECT_TRUE(desk.Gone(kTitle));
  EXPECT_FALSE(desk.Activate(kTitle) || desk.Send(kTitle, "(^s)"));
}

TEST(X11EngineWindow, ManagersAndTitlesChangeAndItClosesLikeByItsUser) {
  Desk desk(XDesktop::Manager::Openbox);
  EXPECT_TRUE(desk.Takes("(^u)"));
  ASSERT_TRUE(desk.engine.log.Request("iconify"));
  ASSERT_TRUE(LoopUntil([&] { return desk.engine.log.All("").ends_with("icon "); }));
  EXPECT_TRUE(desk.Takes("(^i)")) << "an icon comes up";
  desk.desktop.KillManager();
  EXPECT_TRUE(desk.Takes("(^w)"));
  desk.desktop.StartManager();
  // It announces itself before it takes the windows over, from which on it obeys.
  EXPECT_TRUE(LoopUntil([&] { return desk.Activate(kOther); }));
  EXPECT_TRUE(desk.Takes("(^d)"));
  desk.Got("Ctrl+U Ctrl+I Ctrl+W Ctrl+D ");

  ASSERT_TRUE(desk.engine.log.Request("title VELT"));
  EXPECT_TRUE(desk.Appears("VELT") && desk.Gone(kTitle));
  desk.windows->Close(desk.windows->Find("VELT"));
  EXPECT_TRUE(desk.Gone("VELT") && desk.engine.process->WaitForEnd(seconds(5)));
  EXPECT_TRUE(desk.engine.log.All("").ends_with("close "));
}

TEST(X11EngineWindow, WithoutAServerItSaysWhatIsNeeded) {
  EnsureLoop();
  QtScheduler scheduler;
  X11EngineWindow windows(scheduler, "/nowhere:7");
  EXPECT_NE(windows.Unavailable().find("needs X11"), std::string::npos);
  EXPECT_EQ(windows.Find("VELT V2.5."), 0U);
  std::string answers;
  windows.SendKeys(1, "(^s)", [&](bool ok) { answers += ok ? "yes" : "no"; });
  windows.Close(1);
  EXPECT_TRUE(LoopUntil([&] { return answers == "no"; }));
}

}  // namespace
}  // namespace velt
