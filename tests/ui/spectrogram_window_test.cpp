#include "ui/spectrogram_window.h"

#include <gtest/gtest.h>

#include <QTest>
#include <algorithm>

#include "ui/turn.h"

namespace velt {
namespace {

TEST(SpectrogramWindow, ShowsThePictureInEverySizeAndHandsOnWhatIsPressed) {
  RecordingSpectrogram spectrogram;
  spectrogram.file = "/r/Übung\n1.wav";
  spectrogram.plot = LevelPlot(1200, 512);
  spectrogram.plot.Row(100)[700] = 255;  // a single short signal
  spectrogram.toSeconds = 600;
  spectrogram.topHz = 22050;
  const RecordingSpectrogram* shown = nullptr;
  SpectrogramForm form;
  SpectrogramWindow window(
      form, [&shown] { return shown; }, nullptr);
  form.Window.visible = true;
  form.cmdCancel.enabled = form.cmdSave.enabled = true;
  Turn();
  Find(window, "No spectrogram");
  shown = &spectrogram;
  form.picSpectrogram.frame = 1;
  for (const QSize size : {QSize(400, 260), QSize(900, 500), QSize(1700, 900)}) {
    window.resize(size);
    Turn();
    QWidget& view = Find(window, "Spectrogram of Übung\n1.wav");
    const QImage picture = view.grab().toImage();
    // Right and above of the middle, at its full strength.
    int signals = 0;
    for (int y = 40; y < picture.height() / 2; ++y) {
      for (int x = picture.width() / 2; x < picture.width() - 90; ++x) {
        signals += picture.pixel(x, y) == 0xFFF7FFA0 ? 1 : 0;
      }
    }
    EXPECT_TRUE(signals >= 1 && signals <= 8) << size.width();
  }

  std::string pressed;
  Connections connections;
  for (Button* button : {&form.cmdCancel, &form.cmdOpen, &form.cmdSave, &form.cmdClose}) {
    connections += button->clicked.Listen([&pressed, button] { pressed += button->caption.Get(); });
  }
  for (const char* name : {"Cancel reading", "Open...", "Save...", "Close"}) {
    QTest::mouseClick(&Find(window, name), Qt::LeftButton);
  }
  EXPECT_EQ(pressed, "CancelOpen...Save...Close");
}

}  // namespace
}  // namespace velt
