#include "ui/face_palette.h"

#include <algorithm>
#include <cmath>

namespace velt {
namespace {

constexpr double kReadable = 4.5;
constexpr double kPale = 3.0;  // what is off, but still to be read

double Linear(float component) {
  return component <= 0.04045F ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
         0.0722 * Linear(colour.blueF());
}

// As pale as it can be read.
QColor PaleInk(const QColor& ink, const QColor& face) {
  constexpr double kPalest = 0.5;
  double share = kPalest;
  while (share > 0 && Contrast(Between(ink, face, share), face) < kPale) share -= 0.05;
  return Between(ink, face, std::max(share, 0.0));
}

// What Qt's own style makes of a button's colour, in the middle where its text is.
QColor Styled(const QColor& button) {
  const QColor lighter = button.lighter(100 + std::max(1, (180 - qGray(button.rgb())) / 6));
  return QColor::fromHsvF(std::max(lighter.hueF(), 0.0F), lighter.saturationF() * 0.75F,
                          lighter.valueF())
      .lighter(110);
}

// Edges are made by darkening: on a dark face a button has to be lighter to be seen, or else
// darker, as long as its text is read.
QColor ButtonOn(const QColor& face, const QColor& ink) {
  if (ink == Qt::black) return face;
  for (const double lighter : {0.18, 0.1}) {
    const QColor button = Between(face, Qt::white, lighter);
    if (IsRead(ink, Styled(button))) return button;
  }
  double darker = 0;
  QColor button = face;
  while (darker < 1 && !IsRead(ink, Styled(button))) {
    darker += 0.1;
    button = Between(face, Qt::black, darker);
  }
  return button;
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
  const auto [less, more] = std::minmax({Luminance(one), Luminance(other)});
  return (more + 0.05) / (less + 0.05);
}

bool IsSeen(const QColor& one, const QColor& other) {
  return Contrast(one, other) >= 1.8;
}

bool IsRead(const QColor& one, const QColor& other) {
  return Contrast(one, other) >= kReadable;
}

QColor InkOn(const QColor& face) {
  return Contrast(Qt::black, face) >= Contrast(Qt::white, face) ? Qt::black : Qt::white;
}

QColor Between(const QColor& from, const QColor& to, double share) {
  const auto part = [share](float a, float b) { return static_cast<float>(a + (b - a) * share); };
  return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                          part(from.blueF(), to.blueF()));
}

QPalette FacePalette(const QColor& face) {
  const QColor ink = InkOn(face);
  const bool dark = ink == Qt::white;
  const QColor button = ButtonOn(face, ink);

  QPalette colours;
  colours.setColor(QPalette::Window, face);
  colours.setColor(QPalette::Button, button);
  colours.setColor(QPalette::Base,
                   dark ? Between(face, Qt::black, 0.5) : Between(face, Qt::white, 0.5));
  colours.setColor(QPalette::Light, Between(face, Qt::white, 0.5));
  colours.setColor(QPalette::Midlight, Between(face, Qt::white, 0.25));
  colours.setColor(QPalette::Mid, Between(face, ink, 0.4));
  colours.setColor(QPalette::Dark, Between(face, Qt::black, 0.5));
  for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
    const QColor& below = role == QPalette::ButtonText ? button : face;
    colours.setColor(role, ink);
    colours.setColor(QPalette::Disabled, role, PaleInk(ink, below));
  }
  colours.setColor(QPalette::PlaceholderText, PaleInk(ink, face));
  if (!IsSeen(colours.color(QPalette::Highlight), face)) {
    colours.setColor(QPalette::Highlight, ink);
    colours.setColor(QPalette::HighlightedText, face);
  }
  return colours;
}

}  // namespace velt
