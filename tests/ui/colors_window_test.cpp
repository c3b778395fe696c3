// The colour dialog's window over the real dialog logic, and the colours of the main window.
#include "ui/colors_window.h"

#include <QColorDialog>
#include <QFileDialog>

#include "adapters/qt/qt_colour_chooser.h"
#include "adapters/qt/qt_file_chooser.h"
#include "ui/face_palette.h"
#include "ui/window_fixture.h"

namespace velt {
namespace {

struct ColorsWindowTest : WindowFixture {
  ColorsWindowTest() {
    program->display.options.InitWaterColor();
    program->colorDialog.Open();
    Activate(dialog);
  }
  QWidget& In(const QString& name) { return velt::Find(dialog, name); }
  // A button that is pressed so takes its time.
  void Choose(Qt::Key accessKey, const std::string& title, uint32_t colour) {
    QTest::keyClick(dialog.windowHandle(), accessKey, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return chooser.title == title; }, 2000)) << title;
    chooser.choose(colour);
    Turn();
  }

  ColorsWindow dialog{program->colorsForm, &window};
};

TEST_F(ColorsWindowTest, ItIsReadSeenAndWorkedByKeyboard) {
  const QImage palette = In("Waterfall palette: Gray, clarity 10").grab().toImage();
  EXPECT_EQ(palette.pixel(palette.width() - 3, 8), 0xFFFFFFFF);
  Choose(Qt::Key_D, "Display background", 0xFF123456);
  EXPECT_EQ(In("Display background: #123456").grab().toImage().pixel(30, 12), 0xFF123456);
  // From there on with Tab; what is off is passed over.
  PressKey(Qt::Key_Tab);
  EXPECT_EQ(TabWalk(9),
            "Default colour: Display background|Grid: #000000|Window: Desktop's own|"
            "Spectrum: #2D81FF|Oscilloscope: #FF0000|Passband: #0000FF|All Defaults|OK|Cancel");
  QTest::mouseClick(&In("All Defaults"), Qt::LeftButton);
  Choose(Qt::Key_S, "Spectrum", 0xFFFFFF00);
  In("OK").setFocus();
  PressKey(Qt::Key_Return);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(program->display.colours.spectrum, 0x00FFFF);
}

TEST_F(ColorsWindowTest, ThePlatformsChooserBlocksNothingAndIsDroppedUncalled) {
  QtColourChooser own;
  std::string heard;
  const auto pick = [&] {
    own.Pick("Grid", 0xFF000001, [&](auto colour) { heard += colour ? "chose" : "cancelled"; });
    Turn();
    return dynamic_cast<QColorDialog*>(QApplication::activeWindow());
  };
  QColorDialog* open = pick();
  ASSERT_TRUE(open != nullptr && !open->isModal() && open->currentColor() == QColor(0, 0, 1));
  open->close();
  ASSERT_NE(pick(), nullptr);
  own.Drop();
  EXPECT_EQ(dynamic_cast<QColorDialog*>(QApplication::activeWindow()), nullptr);
  QtFileChooser asking;
  asking.SetOwner(&window);
  auto question = asking.Ask({}, [&](const auto&) { heard += "file"; });
  const auto asked = [this] { return window.findChild<QFileDialog*>()->isVisible(); };
  EXPECT_TRUE(asked());
  question.reset();
  EXPECT_FALSE(asked());
  EXPECT_EQ(heard, "cancelled");
}

TEST(FacePalette, EveryTextIsReadOnEveryFace) {
  for (int shade = 0; shade < 216; ++shade) {
    const QColor face(shade / 36 * 51, shade / 6 % 6 * 51, shade % 6 * 51);
    const QPalette colours = FacePalette(face);
    SCOPED_TRACE(face.name().toStdString());
    for (const auto& [text, below] : {std::pair{QPalette::WindowText, QPalette::Window},
                                      {QPalette::ButtonText, QPalette::Button},
                                      {QPalette::Text, QPalette::Base}}) {
      const double read = Contrast(colours.color(text), colours.color(below));
      const double pale = Contrast(colours.color(QPalette::Disabled, text), colours.color(below));
      EXPECT_GE(read, 4.5);
      EXPECT_TRUE(pale >= 2.9 && pale < read) << pale;
    }
    EXPECT_TRUE(IsSeen(colours.color(QPalette::Highlight), face));
  }
}

}  // namespace
}  // namespace velt
