// The CAT dialog's window over the real dialog logic, a simulated rig and a virtual clock.
#include "ui/omnirig_window.h"

#include <QClipboard>
#include <QGroupBox>

#include "rig/rig_fixture.h"
#include "ui/qt_text.h"
#include "ui/turn.h"

namespace velt {
namespace {

struct OmniRigWindowTest : RigFixture {
  OmniRigWindowTest() { Open(); }
  void Open() {
    rig.dialog.Open();
    Activate(window);
  }
  void Turn() {
    scheduler.RunPosted();
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
};

TEST_F(OmniRigWindowTest, ItShowsTheLinkAndWhatTheRigReports) {
  rig1.Select(PM_FM);
  rig1.TuneB(3600000);
  Press("Start the link");
  for (const char* text : {"Link: Linked", "Status: On-line", "Current frequency: 7 100 000 Hz",
                           "VFO A: 7 100 000 Hz", "VFO B: 3 600 000 Hz", "Mode: FM"}) {
    Find(text);
  }
  EXPECT_EQ(Find("Lamp of the link").grab().toImage().pixel(7, 7), 0xFF2EA043);
  rig1.Vanish();
  Turn();
  EXPECT_FALSE(Find("Set mode").isEnabled());
  scheduler.Advance(Milliseconds(2500));  // a countdown is no event
  Turn();
  Find("Link: Stale values, reconnecting in 3 s");
  Press("Stop the link");
  EXPECT_EQ(rig1.Link().state, RigLink::State::Off);
  EXPECT_EQ(window.findChildren<QGroupBox*>().at(2)->title(), "Transceiver (last known values)");
  Find("VFO B: 3 600 000 Hz");
  Press("Copy the command that starts the server");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), ToQt(dialogForm.lblCommand.caption.Get()));
}

TEST_F(OmniRigWindowTest, RigTargetAndModeAreChosen) {
  QWidget& modes = Find("Set mode");
  Link();
  Turn();
  EXPECT_EQ(modes.property("currentText"), "LSB");
  Key(Qt::Key_U, &modes);
  EXPECT_EQ(writes1.Take(), Texts{"Mode " + std::to_string(PM_SSB_U)});
  Press("Rig 2");
  EXPECT_EQ(rig.state.rigChoice, 2);
  Key(Qt::Key_Up, &Find("Rig 2"));
  EXPECT_EQ(rig.state.rigChoice, 1);
  int16_t vfo = 3;
  for (const char* target : {"VFO B and A", "VFO B", "VFO A", "Current VFO"}) {
    Press(QString("Frequencies go to ") + target);
    EXPECT_EQ(rig.state.vfo, vfo--);
  }
}

TEST_F(OmniRigWindowTest, EnterAppliesAnAddressAndABadOneKeepsTheWindowOpen) {
  QWidget& address1 = Find("Server address of rig 1");
  Type(address1, "<b>nonsense");
  Press("Close");
  EXPECT_TRUE(window.isVisible());
  Find("Server address: " + ToQt(dialogForm.lblAddressMessage.caption.Get()));
  Type(address1, "radio:1");
  Press("Apply the server addresses");
  EXPECT_EQ(server.Address(1), "radio:1");
  Type(Find("Server address of rig 2"), "radio:45");
  Key(Qt::Key_Return);
  EXPECT_EQ(server.Address(2), "radio:45");
  EXPECT_TRUE(window.isVisible());
  Key(Qt::Key_Return);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(OmniRigWindowTest, TheLimitIsTakenWhenItsTypingIsOver) {
  QWidget& limit = Find("Longest transmission in minutes");
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
  Type(limit, "99");
  Key(Qt::Key_Return);
  EXPECT_TRUE(window.isVisible());
  Find("Transmission limit: " + ToQt(dialogForm.lblLimitMessage.caption.Get()));
  window.close();  // by its frame
  EXPECT_FALSE(dialogForm.Window.visible);
}

}  // namespace
}  // namespace velt
