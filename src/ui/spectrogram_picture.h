// Draws a spectrogram with its title, its scales and a legend of its colours.
#pragma once

#include <QColor>
#include <QImage>
#include <QSize>

#include "recording/recording_spectrogram.h"

namespace velt {

// Behind the text.
inline constexpr QRgb kSpectrogramGround = 0xFF17171C;

// What stands around the plot, in pixels at scale factor 1.
QSize SpectrogramFrame();

// The plot gets `plotSize`, in pixels at scale factor 1; `ratio` pixels of the picture make one of
// them. Needs a QGuiApplication for its text.
QImage DrawSpectrogram(const RecordingSpectrogram& spectrogram, QSize plotSize, double ratio = 1.0);

}  // namespace velt
