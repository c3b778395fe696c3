// The CAT dialog's window over the real dialog logic, a simulated rig and a virtual clock.
#include "ui/omnirig_window.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <set>

#include "rig/rig_fixture.h"
#include "ui/qt_text.h"
#include "ui/turn.h"

namespace velt {
namespace {

struct OmniRigWindowTest : RigFixture {
  OmniRigWindowTest() { Open(); }
  void Open() {
    rig.dialog.Open();
    Turn();
    QApplication::setActiveWindow(&window);
  }
  void Turn(int milliseconds = 0) {
    scheduler.Advance(Milliseconds(milliseconds));
    velt::Turn();
  }
  template <class W>
  W* Find(const QString& name) {
    for (W* widget : window.findChildren<W*>()) {
      if (widget->accessibleName() == name) return widget;
    }
    return nullptr;
  }
  bool Says(const QString& name) { return Find<QLabel>(name) != nullptr; }
  void Press(const QString& name) {
    QTest::mouseClick(Find<QAbstractButton>(name), Qt::LeftButton, {}, {8, 8});
    Turn();
  }
  void Key(Qt::Key key) {
    QTest::keyClick(QApplication::focusWidget(), key);
    Turn();
  }
  // Replaces what the field says, keystroke by keystroke.
  void Type(QLineEdit& field, const QString& text) {
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, text);
    Turn();
  }

  OmniRigWindow window{dialogForm, nullptr};
  QLineEdit& address1 = *Find<QLineEdit>("Server address of rig 1");
  QLineEdit& address2 = *Find<QLineEdit>("Server address of rig 2");
  QLineEdit& limit = *Find<QLineEdit>("Longest transmission in minutes");
  QComboBox& modes = *Find<QComboBox>("Set mode");
};

TEST_F(OmniRigWindowTest, ItShowsTheLinkAndWhatTheRigReports) {
  QWidget& lamp = *Find<QWidget>("Lamp of the link");
  const auto lit = [&lamp] { return lamp.grab().toImage().pixelColor(7, 7).name(); };
  const QGroupBox& report = *window.findChildren<QGroupBox*>().at(2);
  EXPECT_EQ(lit(), "#8c8c8c");
  rig1.Select(PM_FM);
  rig1.TuneB(3600000);
  Press("Start the link");
  for (const char* text : {"Link: Linked", "Status: On-line", "Current frequency: 7100000",
                           "VFO A: 7100000", "VFO B: 3600000", "Mode: FM"}) {
    EXPECT_TRUE(Says(text)) << text;
  }
  EXPECT_EQ(lit(), "#2ea043");
  rig1.Vanish();
  Turn();
  EXPECT_FALSE(modes.isEnabled());
  EXPECT_EQ(lit(), "#e89b0c");
  EXPECT_EQ(report.title(), "Transceiver (last known values)");
  EXPECT_EQ(Find<QLabel>("VFO B: 3600000")->foregroundRole(), QPalette::PlaceholderText);
  Turn(2500);  // a countdown is no event
  EXPECT_TRUE(Says("Link: Stale values, reconnecting in 3 s"));
  Press("Stop the link");
  EXPECT_EQ(rig1.Link().state, RigLink::State::Off);
}

TEST_F(OmniRigWindowTest, RigTargetAndModeAreChosen) {
  Link();
  Turn();
  modes.setFocus();
  Key(Qt::Key_U);
  EXPECT_EQ(writes1.Take(), Texts{"Mode " + std::to_string(PM_SSB_U)});
  EXPECT_EQ(modes.currentIndex(), -1);
  Press("Rig 2");
  EXPECT_EQ(rig.state.rigChoice, 2);
  EXPECT_TRUE(Says("Current frequency: 14250000"));
  Find<QWidget>("Rig 2")->setFocus();
  Key(Qt::Key_Up);
  EXPECT_EQ(rig.state.rigChoice, 1);
  int16_t vfo = 3;
  for (const char* target : {"VFO B and A", "VFO B", "VFO A", "Current VFO"}) {
    Press(QString("Frequencies go to ") + target);
    EXPECT_EQ(rig.state.vfo, vfo--);
  }
}

TEST_F(OmniRigWindowTest, EnterAppliesAnAddressAndABadOneKeepsTheWindowOpen) {
  Type(address2, "radio:45");
  Key(Qt::Key_Return);
  EXPECT_EQ(server.Address(2), "radio:45");
  EXPECT_TRUE(window.isVisible());
  Type(address1, "<b>nonsense");
  Press("Close");
  EXPECT_TRUE(window.isVisible());
  const auto* message = Find<QLabel>(
      "Server address: Rig 1: \"<b>nonsense\" is no address. Use HOST:PORT, for example "
      "127.0.0.1:4532");
  ASSERT_NE(message, nullptr);
  EXPECT_GE(message->height(), message->heightForWidth(message->width()));
  Type(address1, "radio:1");
  Press("Apply the server addresses");
  EXPECT_EQ(server.Address(1), "radio:1");
  address1.setFocus();
  Key(Qt::Key_Return);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(OmniRigWindowTest, TheLimitIsTakenWhenItsTypingIsOver) {
  Type(limit, "1");
  EXPECT_EQ(rig.guard.LimitMinutes(), 10);
  QTest::keyClicks(&limit, "5");
  Key(Qt::Key_Tab);
  EXPECT_EQ(rig.guard.LimitMinutes(), 15);
  Type(limit, "20");
  Key(Qt::Key_Escape);
  EXPECT_FALSE(dialogForm.Window.visible);
  Open();
  EXPECT_EQ(limit.text(), "15");
  EXPECT_EQ(rig.guard.LimitMinutes(), 15);
  Type(limit, "99");
  Key(Qt::Key_Return);
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(Says("Transmission limit: " + ToQt(dialogForm.lblLimitMessage.caption.Get())));
  window.close();  // by its frame
  EXPECT_FALSE(dialogForm.Window.visible);
}

TEST_F(OmniRigWindowTest, TabReachesEveryControlAndEachHasAToolTip) {
  Link();
  EXPECT_EQ(window.windowTitle(), "OmniRig Configuration & Status");
  Type(address1, "radio:1");  // enables the button that applies it
  std::set<QString> reached;
  for (int step = 0; step < 9; ++step) {
    const QWidget& focused = *QApplication::focusWidget();
    EXPECT_FALSE(focused.toolTip().isEmpty()) << focused.accessibleName().toStdString();
    reached.insert(focused.accessibleName());
    Key(Qt::Key_Tab);
  }
  EXPECT_EQ(reached.size(), 9U);
  EXPECT_EQ(QApplication::focusWidget(), &address1);
}

}  // namespace
}  // namespace velt
