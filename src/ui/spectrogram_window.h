// The window that shows the spectrogram of a recording in whatever size it is given.
#pragma once

#include <QImage>
#include <functional>

#include "form/spectrogram_form.h"
#include "recording/recording_spectrogram.h"
#include "ui/form_dialog.h"

class QHBoxLayout;

namespace velt {

// The picture with its title and scales, drawn anew for each size: its text stays as large as that
// of the desktop, and no short signal is lost in a small one.
class SpectrogramView : public QWidget {
 public:
  // `source` gives what is to be shown, null for nothing.
  SpectrogramView(std::function<const RecordingSpectrogram*()> source, QWidget* parent);

  // There is another one.
  void Renew();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::function<const RecordingSpectrogram*()> source_;
  QImage drawn_;
};

class SpectrogramWindow : public FormDialog {
 public:
  // `form` has to outlive the window.
  SpectrogramWindow(SpectrogramForm& form, std::function<const RecordingSpectrogram*()> source,
                    QWidget* parent);

 private:
  void AddButton(QHBoxLayout& row, const Button& control, const Words& words);

  SpectrogramForm& form_;
};

}  // namespace velt
