// The colour dialog's window over the real dialog logic, and the colours of the main window.
#include "ui/colors_window.h"

#include <QColorDialog>
#include <QPushButton>

#include "adapters/qt/qt_colour_chooser.h"
#include "ui/face_palette.h"
#include "ui/palette_strip.h"
#include "ui/window_fixture.h"

namespace velt {
namespace {

struct ColorsWindowTest : WindowFixture {
  ColorsWindowTest() {
    program->display.options.InitWaterColor();
    program->colorDialog.Open();
    Turn();
    QApplication::setActiveWindow(&dialog);
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
  In("Passband: #0000FF");
  In("Window: Desktop's own");
  const QImage palette = In("Waterfall palette: Gray, clarity 10").grab().toImage();
  EXPECT_EQ(palette.pixel(palette.width() - 3, 8), 0xFFFFFFFF);
  EXPECT_EQ(palette.pixel(1, 8), 0xFF0A0A0A);
  Choose(Qt::Key_D, "Display background", 0xFF123456);
  EXPECT_EQ(In("Display background: #123456").grab().toImage().pixel(30, 12), 0xFF123456);
  // From there on with Tab; what is off is passed over.
  for (const char* next : {"Default colour: Display background", "Grid", "Window", "Spectrum",
                           "Oscilloscope", "Passband", "All Defaults", "OK", "Cancel"}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &In(next)) << next;
  }
  QTest::mouseClick(&In("Default colour: Display background"), Qt::LeftButton);
  Turn();
  EXPECT_FALSE(In("All Defaults").isEnabled());
  Choose(Qt::Key_S, "Spectrum", 0xFFFFFF00);
  In("OK").setFocus();
  QTest::keyClick(&In("OK"), Qt::Key_Return);
  Turn();
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(program->display.colours.spectrum, 0x00FFFF);
}

TEST_F(ColorsWindowTest, ThePlatformsChooserTellsAndBlocksNothing) {
  QtColourChooser own;
  own.SetOwner(&window);
  std::string heard;
  const Connection pointed =
      own.pointedAt.Listen([&](uint32_t c) { heard += std::to_string(c & 0xFF) + ";"; });
  const auto pick = [&] {
    own.Pick("Grid", 0xFF000001, [&](std::optional<uint32_t> c) {
      heard += c ? "chose " + std::to_string(*c & 0xFF) + ";" : "cancelled;";
    });
    Turn();
    QColorDialog* open = nullptr;
    for (auto* each : window.findChildren<QColorDialog*>()) {
      if (each->isVisible()) open = each;
    }
    return open;
  };
  QColorDialog* open = pick();
  ASSERT_NE(open, nullptr);
  EXPECT_FALSE(open->isModal());
  EXPECT_EQ(open->currentColor(), QColor(0, 0, 1));
  open->setCurrentColor(QColor(0, 0, 2));
  open->accept();
  Turn();
  pick()->close();
  Turn();
  open = pick();
  own.Drop();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(window.findChildren<QColorDialog*>().size(), 0);
  EXPECT_EQ(heard, "2;chose 2;cancelled;");
}

TEST(FacePalette, EveryTextIsReadOnEveryFace) {
  for (int red = 0; red < 256; red += 51) {
    for (int green = 0; green < 256; green += 51) {
      for (int blue = 0; blue < 256; blue += 51) {
        const QColor face(red, green, blue);
        const QPalette colours = FacePalette(face);
        SCOPED_TRACE(face.name().toStdString());
        const auto contrast = [&](QPalette::ColorGroup group, QPalette::ColorRole text,
                                  QPalette::ColorRole below) {
          return Contrast(colours.color(group, text), colours.color(group, below));
        };
        for (const auto& [text, below] : {std::pair{QPalette::WindowText, QPalette::Window},
                                          {QPalette::ButtonText, QPalette::Button},
                                          {QPalette::Text, QPalette::Base}}) {
          EXPECT_GE(contrast(QPalette::Active, text, below), 4.5);
          EXPECT_GE(contrast(QPalette::Disabled, text, below), 2.9);
          EXPECT_LT(contrast(QPalette::Disabled, text, below),
                    contrast(QPalette::Active, text, below));
        }
        EXPECT_TRUE(IsSeen(colours.color(QPalette::Highlight), face));
      }
    }
  }
}

}  // namespace
}  // namespace velt
