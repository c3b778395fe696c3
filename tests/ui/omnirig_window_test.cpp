// The CAT dialog's window over the real dialog logic, a simulated rig and a virtual clock.
#include "ui/omnirig_window.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QTest>

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
  QWidget& Find(const QString& name) { return velt::Find(window, name); }
  void Press(const QString& name) {
    QTest::mouseClick(&Find(name), Qt::LeftButton, {}, {8, 8});
    Turn();
  }
  void Key(Qt::Key key, QWidget* widget = QApplication::focusWidget()) {
    QTest::keyClick(widget, key);
    Turn();
  }
  // Replaces what the field says, keystroke by keystroke.
  void Type(QWidget& field, const QString& text) {
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&field, text);
    Turn();
  }

  OmniRigWindow window{dialogForm, nullptr};
  QWidget& address1 = Find("Server address of rig 1");
  QWidget& limit = Find("Longest transmission in minutes");
  QWidget& modes = Find("Set mode");
};

TEST_F(OmniRigWindowTest, ItShowsTheLinkAndWhatTheRigReports) {
  QWidget& lamp = Find("Lamp of the link");
  const auto lit = [&lamp] { return lamp.grab().toImage().pixelColor(7, 7).name(); };
  EXPECT_EQ(lit(), "#8c8c8c");
  Find("Mode: \u2013");
  rig1.Select(PM_FM);
  rig1.TuneB(3600000);
  Press("Start the link");
  for (const char* text : {"Link: Linked", "Status: On-line", "Current frequency: 7100000",
                           "VFO A: 7100000", "VFO B: 3600000", "Mode: FM"}) {
    Find(text);
  }
  EXPECT_EQ(lit(), "#2ea043");
  rig1.Vanish();
  Turn();
  EXPECT_FALSE(modes.isEnabled());
  EXPECT_EQ(lit(), "#e89b0c");
  EXPECT_EQ(window.findChildren<QGroupBox*>().at(2)->title(), "Transceiver (last known values)");
  EXPECT_EQ(Find("VFO B: 3600000").foregroundRole(), QPalette::PlaceholderText);
  Turn(2500);  // a countdown is no event
  Find("Link: Stale values, reconnecting in 3 s");
  Press("Stop the link");
  EXPECT_EQ(rig1.Link().state, RigLink::State::Off);
}

TEST_F(OmniRigWindowTest, RigTargetAndModeAreChosen) {
  Link();
  Turn();
  Key(Qt::Key_U, &modes);
  EXPECT_EQ(writes1.Take(), Texts{"Mode " + std::to_string(PM_SSB_U)});
  EXPECT_EQ(modes.property("currentIndex"), -1);
  Press("Rig 2");
  EXPECT_EQ(rig.state.rigChoice, 2);
  Find("Current frequency: 14250000");
  Key(Qt::Key_Up, &Find("Rig 2"));
  EXPECT_EQ(rig.state.rigChoice, 1);
  EXPECT_TRUE(Find("Rig 1").property("checked").toBool());
  int16_t vfo = 3;
  for (const char* target : {"VFO B and A", "VFO B", "VFO A", "Current VFO"}) {
    Press(QString("Frequencies go to ") + target);
    EXPECT_EQ(rig.state.vfo, vfo--);
  }
}

TEST_F(OmniRigWindowTest, EnterAppliesAnAddressAndABadOneKeepsTheWindowOpen) {
  Type(Find("Server address of rig 2"), "radio:45");
  Key(Qt::Key_Return);
  EXPECT_EQ(server.Address(2), "radio:45");
  Type(address1, "<b>nonsense");
  Press("Close");
  EXPECT_TRUE(window.isVisible());
  const auto& message = dynamic_cast<QLabel&>(Find("Server address"));
  EXPECT_EQ(message.text(), ToQt(dialogForm.lblAddressMessage.caption.Get()));
  EXPECT_EQ(message.textFormat(), Qt::PlainText);
  EXPECT_GE(message.height(), message.heightForWidth(message.width()));
  Type(address1, "radio:1");
  Press("Apply the server addresses");
  EXPECT_EQ(server.Address(1), "radio:1");
  Key(Qt::Key_Return, &address1);
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
  EXPECT_EQ(limit.property("text"), "15");
  EXPECT_EQ(rig.guard.LimitMinutes(), 15);
  Type(limit, "99");
  Key(Qt::Key_Return);
  EXPECT_TRUE(window.isVisible());
  Find("Transmission limit: " + ToQt(dialogForm.lblLimitMessage.caption.Get()));
  window.close();  // by its frame
  EXPECT_FALSE(dialogForm.Window.visible);
}

}  // namespace
}  // namespace velt
