// The band preset dialog's window over the real dialog logic.
#include "ui/bands_window.h"

#include <QLineEdit>

#include "ui/window_fixture.h"

namespace velt {
namespace {

TEST_F(WindowFixture, TheBandDialogIsReadAndWorkedByKeyboard) {
  BandsWindow dialog(program->bandsForm, &window);
  PresetTable& presets = program->presets;
  presets.Cell(1, 0) = "M\xfcnchen";
  const auto in = [&dialog](const QString& name) -> QWidget& { return velt::Find(dialog, name); };
  const auto open = [&] {
    program->bandDialog.Open();
    Activate(dialog);
  };
  open();
  std::string order;
  for (int band = 1; band <= 10; ++band) {
    const std::string number = std::to_string(band);
    order += "Title of band " + number + "|Frequency of band " + number + " in kHz|";
  }
  EXPECT_EQ(TabWalk(24), order + "Import CSV...|Export CSV...|OK|Cancel");
  PressKey(Qt::Key_Tab);
  PressKey(Qt::Key_Return);
  EXPECT_FALSE(dialog.isVisible());
  open();
  TypeText("Top");
  PressKey(Qt::Key_0, Qt::AltModifier);
  PressKey(Qt::Key_Tab);
  TypeText("70200");
  EXPECT_EQ(dynamic_cast<QLineEdit&>(in("Title of band 2")).text(), "M\u00FCnchen");
  program->bandsForm.lblProblem.caption = "bad.csv, line 3";
  PressKey(Qt::Key_E, Qt::AltModifier);
  in("bad.csv, line 3");
  EXPECT_TRUE(
      QTest::qWaitFor([this] { return fileChooser.asked.title == "Export presets"; }, 2000));
  QTest::mouseClick(&in("OK"), Qt::LeftButton);
  EXPECT_EQ(presets.Cell(0, 0) + presets.Cell(1, 0) + presets.Cell(9, 6), "TopM\xfcnchen70200");
}

}  // namespace
}  // namespace velt
