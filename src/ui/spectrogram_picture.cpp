#include "ui/spectrogram_picture.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <vector>

#include "spectrum/level_palette.h"
#include "spectrum/scale_ticks.h"
#include "text/formats.h"
#include "text/paths.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kLeft = 64;
constexpr int kTop = 34;
constexpr int kRight = 84;
constexpr int kBottom = 44;
constexpr int kTickLength = 5;
constexpr int kTextGap = 4;
constexpr int kTextPixels = 12;
constexpr int kTitlePixels = 14;
constexpr int kLegendGap = 16;
constexpr int kLegendWidth = 14;
// The room that a tick needs along its scale, so that texts stand apart.
constexpr int kTimeTickRoom = 80;
constexpr int kOtherTickRoom = 36;
constexpr double kHour = 3600;

constexpr QRgb kInk = 0xFFDADADF;

// The pixels themselves, each level in its colour.
QImage PlotImage(const LevelPlot& plot) {
  const LevelPalette palette;
  QImage image(plot.Width(), plot.Height(), QImage::Format_RGB32);
  for (int y = 0; y < plot.Height(); ++y) {
    auto* pixel = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (const uint8_t level : plot.Row(y)) *pixel++ = palette[level].Argb();
  }
  return image;
}

// A name may hold anything that is no letter, line ends too.
QString ShownName(const std::filesystem::path& file) {
  QString name = ToQt(PathText(file.filename()));
  for (QChar& letter : name) {
    if (letter.category() == QChar::Other_Control || letter == QChar::LineSeparator ||
        letter == QChar::ParagraphSeparator) {
      letter = QChar::ReplacementCharacter;
    }
  }
  return name;
}

int MostTicks(int length, int room) {
  return std::max(length / room + 1, 2);
}

class Drawing {
 public:
  Drawing(QPainter& painter, const RecordingSpectrogram& spectrogram, QSize plotSize)
      : painter_(painter), spectrogram_(spectrogram), plot_(QPoint(kLeft, kTop), plotSize) {
    font_ = painter.font();
    font_.setPixelSize(kTextPixels);
    painter_.setFont(font_);
    painter_.setPen(QPen(QColor(kInk), 0));
  }

  void Draw() {
    Frame(plot_);
    Time();
    Frequency();
    Legend();
    Title();
  }

 private:
  // Around the outside, as lines of a pixel: the plot keeps every one of its own.
  void Frame(const QRect& inside) {
    painter_.fillRect(inside.left() - 1, inside.top() - 1, inside.width() + 2, 1, QColor(kInk));
    painter_.fillRect(inside.left() - 1, inside.bottom() + 1, inside.width() + 2, 1, QColor(kInk));
    painter_.fillRect(inside.left() - 1, inside.top() - 1, 1, inside.height() + 2, QColor(kInk));
    painter_.fillRect(inside.right() + 1, inside.top() - 1, 1, inside.height() + 2, QColor(kInk));
  }

  void Time() {
    const double from = spectrogram_.fromSeconds;
    const double span = spectrogram_.toSeconds - from;
    int free = 0;  // where the next text may begin
    // A tick that is less than half a pixel beyond the end stands on it.
    const double to = spectrogram_.toSeconds + span / plot_.width() / 2;
    for (const Tick& tick : TimeTicks(from, to, MostTicks(plot_.width(), kTimeTickRoom))) {
      const int x = At(plot_.left(), plot_.width() - 1, (tick.value - from) / span);
      painter_.fillRect(x, plot_.bottom() + 2, 1, kTickLength, QColor(kInk));
      const QString text = ToQt(tick.text);
      const int width = painter_.fontMetrics().horizontalAdvance(text);
      const int left = std::max(x - width / 2, 0);
      if (left < free) continue;
      painter_.drawText(left, plot_.bottom() + 2 + kTickLength + painter_.fontMetrics().ascent(),
                        text);
      free = left + width + 2 * kTextGap;
    }
    painter_.drawText(QRect(plot_.left(), plot_.bottom() + 24, plot_.width(), kBottom - 24),
                      Qt::AlignCenter,
                      painter_.fontMetrics().elidedText(
                          to < kHour ? "Time (minutes:seconds)" : "Time (hours:minutes:seconds)",
                          Qt::ElideRight, plot_.width()));
  }

  void Frequency() {
    const double top = spectrogram_.topHz;
    const bool kilohertz = top >= 2000;
    const double unit = kilohertz ? 1000 : 1;
    for (const Tick& tick : PlainTicks(0, top / unit, MostTicks(plot_.height(), kOtherTickRoom))) {
      const int y = At(plot_.bottom(), 1 - plot_.height(), tick.value * unit / top);
      painter_.fillRect(plot_.left() - 1 - kTickLength, y, kTickLength, 1, QColor(kInk));
      painter_.drawText(
          QRect(0, y - kTextPixels, plot_.left() - kTickLength - kTextGap - 1, 2 * kTextPixels),
          Qt::AlignRight | Qt::AlignVCenter, ToQt(tick.text));
    }
    Upright(2, kilohertz ? "Frequency (kHz)" : "Frequency (Hz)");
  }

  void Legend() {
    const QRect bar(plot_.right() + kLegendGap, plot_.top(), kLegendWidth, plot_.height());
    const LevelPalette palette;
    for (int y = 0; y < bar.height(); ++y) {
      const int level = 255 - y * 255 / std::max(bar.height() - 1, 1);
      painter_.fillRect(bar.left(), bar.top() + y, bar.width(), 1,
                        QColor(palette[static_cast<uint8_t>(level)].Argb()));
    }
    Frame(bar);
    for (const Tick& tick :
         PlainTicks(spectrogramFloorDb, 0, MostTicks(bar.height(), kOtherTickRoom))) {
      const int y = At(bar.top(), bar.height() - 1, tick.value / spectrogramFloorDb);
      painter_.fillRect(bar.right() + 2, y, kTickLength, 1, QColor(kInk));
      painter_.drawText(
          QRect(bar.right() + 2 + kTickLength + kTextGap, y - kTextPixels, kRight, 2 * kTextPixels),
          Qt::AlignLeft | Qt::AlignVCenter, ToQt(tick.text));
    }
    Upright(plot_.right() + kRight - kTextPixels - 4, "Level (dB of full scale)");
  }

  // The name gives way where there is no room for all, in its middle: its beginning and its end
  // tell files apart.
  void Title() {
    font_.setPixelSize(kTitlePixels);
    QFont bold = font_;
    bold.setBold(true);
    const int room = plot_.width() + kRight - kLegendGap;
    const QString length = ToQt(spectrogram_.length);
    const int lengthWidth = QFontMetrics(font_).horizontalAdvance(length);
    const int gap = kTitlePixels;
    const QFontMetrics metrics(bold);
    const QString name = metrics.elidedText(ShownName(spectrogram_.file), Qt::ElideMiddle,
                                            std::max(room - lengthWidth - gap, room / 3));
    const int base = (kTop + metrics.ascent() - metrics.descent()) / 2;
    painter_.setFont(bold);
    painter_.drawText(plot_.left(), base, name);
    painter_.setFont(font_);
    const int left = metrics.horizontalAdvance(name) + gap;
    painter_.drawText(plot_.left() + left, base,
                      QFontMetrics(font_).elidedText(length, Qt::ElideRight, room - left));
  }

  // From the bottom up, beside the middle of the plot.
  void Upright(int left, const QString& text) {
    const int room = plot_.height() + kTop;
    const QString shown = painter_.fontMetrics().elidedText(text, Qt::ElideRight, room);
    painter_.save();
    painter_.translate(left, plot_.center().y());
    painter_.rotate(-90);
    painter_.drawText(QRect(-room / 2, 0, room, kTextPixels + 4), Qt::AlignCenter, shown);
    painter_.restore();
  }

  static int At(int start, int length, double share) { return qRound(start + length * share); }

  QPainter& painter_;
  const RecordingSpectrogram& spectrogram_;
  const QRect plot_;
  QFont font_;
};

}  // namespace

QSize SpectrogramFrame() {
  return {kLeft + kRight, kTop + kBottom};
}

QImage DrawSpectrogram(const RecordingSpectrogram& spectrogram, QSize plotSize, double ratio) {
  plotSize = plotSize.expandedTo({1, 1});
  const QSize whole = plotSize + SpectrogramFrame();
  QImage picture((QSizeF(whole) * ratio).toSize(), QImage::Format_RGB32);
  if (picture.isNull()) return picture;
  picture.fill(kSpectrogramGround);
  QPainter painter(&picture);
  const QRect plot(qRound(kLeft * ratio), qRound(kTop * ratio),
                   std::max(qRound(plotSize.width() * ratio), 1),
                   std::max(qRound(plotSize.height() * ratio), 1));
  painter.drawImage(plot.topLeft(),
                    PlotImage(spectrogram.plot.Fitted(plot.width(), plot.height())));
  painter.scale(ratio, ratio);
  Drawing(painter, spectrogram, plotSize).Draw();
  painter.end();
  picture.setDevicePixelRatio(ratio);
  return picture;
}

}  // namespace velt
