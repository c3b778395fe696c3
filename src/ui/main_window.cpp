#include "ui/main_window.h"

#include <QCloseEvent>
#include <QEvent>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <QWindow>
#include <array>

#include "ui/click_label.h"
#include "ui/meter_widget.h"
#include "ui/qt_text.h"
#include "ui/scale_strip.h"
#include "ui/scope_widget.h"
#include "ui/symbol_button.h"

namespace velt {
namespace {

constexpr int kTextPixels = 11;
constexpr int kSmallPixels = 9;
constexpr int kFrequencyPixels = 21;
// Below this width the menu buttons' texts are shown smaller.
constexpr int kRoomyButton = 39;

int ToPixels(int32_t twips) {
  return static_cast<int>((twips + kTwipsPerPixel - 1) / kTwipsPerPixel);
}
int32_t ToTwips(int pixels) {
  return static_cast<int32_t>(pixels) * kTwipsPerPixel;
}

QFont SizedFont(const QWidget& widget, int pixels, bool bold) {
  QFont font = widget.font();
  font.setPixelSize(pixels);
  font.setBold(bold);
  return font;
}

}  // namespace

MainWindow::MainWindow(Main& form, std::function<const Raster&()> picture)
    : form_(form), picture_(std::move(picture)), mirror_(form), desktopPalette_(palette()) {
  setFont(SizedFont(*this, kTextPixels, false));
  BindTopRow();
  BindDisplay();
  BindMessages();
  BindWindow();
}

template <class C>
void MainWindow::BindMenuButton(C& control, QToolButton* widget) {
  connect(widget, &QToolButton::clicked, this, [&control] { control.Click(); });
  mirror_.Bind(control, widget, [this, widget] {
    const int pixels = widget->width() < kRoomyButton ? kSmallPixels : kTextPixels;
    if (widget->font().pixelSize() != pixels) widget->setFont(SizedFont(*this, pixels, false));
  });
}

void MainWindow::BindTopRow() {
  BindMenuButton(form_.cmdOptions, MakeMenuButton("Options", "Options menu", "Options menu"));
  BindMenuButton(form_.Image2, MakeMenuButton("File", "File menu", "File menu"));
  BindMenuButton(form_.Image3,
                 MakeMenuButton("CAT", "CAT configuration and status", "CAT configuration"));

  auto* startStop = new SymbolButton(SymbolButton::Symbol::Play, this);
  startStop->setAccessibleName("Start or stop the spectrum analyzer");
  connect(startStop, &QToolButton::clicked, this, [this] { form_.imgStartStop.Click(); });
  mirror_.Bind(form_.imgStartStop, startStop, [this, startStop] {
    const bool stopped = form_.imgStartStop.tag.Get() == "Play";
    startStop->SetSymbol(stopped ? SymbolButton::Symbol::Play : SymbolButton::Symbol::Stop);
  });

  BindRigLabel(form_.lblFrequency,
               MakeLabel(kFrequencyPixels, true, "Transceiver frequency", "Transceiver frequency"));
  BindRigLabel(form_.lblMode,
               MakeLabel(kTextPixels + 1, true, "Modulation mode", "Modulation mode"));
  auto* state =
      MakeLabel(kTextPixels + 1, true, "Transmit or receive", "Transmit or receive state");
  BindRigLabel(form_.lblTRXMode, state);
  // A keyed transmitter must not be overlooked.
  mirror_.Watch(form_.lblTRXMode, [this, state] {
    const bool transmits = form_.lblTRXMode.caption.Get() == "TX";
    state->SetFill(transmits ? QColor(0xC8, 0x20, 0x20) : QColor(),
                   transmits ? Qt::white : QColor());
  });
  BindTransmitButton(0, "Transmit");
  BindTransmitButton(1, "Receive");
  auto* peak = MakeLabel(kTextPixels + 1, true, "Dominant frequency", "Dominant frequency");
  peak->SetPassive(true);
  BindLabel(form_.lblFreqDetect, peak);

  auto* waterfall = new SymbolButton(SymbolButton::Symbol::Waterfall, this);
  waterfall->setCheckable(true);
  waterfall->setToolTip("Waterfall instead of the spectrum");
  waterfall->setAccessibleName("Waterfall");
  connect(waterfall, &QToolButton::toggled, this,
          [this](bool checked) { form_.chkSpecMode.UserPick(checked); });
  mirror_.Bind(form_.chkSpecMode, waterfall, [this, waterfall] {
    const QSignalBlocker quiet(waterfall);
    waterfall->setChecked(form_.chkSpecMode.value != 0);
  });
}

void MainWindow::BindDisplay() {
  auto* level = new QSlider(Qt::Vertical, this);
  level->setToolTip("Level of the spectrum");
  level->setAccessibleName("Level of the spectrum");
  BindSlider(form_.Slider, level);

  scope_ = new ScopeWidget(form_.Scope, picture_, this);
  scope_->setAccessibleName("Spectrum display");
  scope_->setToolTip("Spectrum, waterfall or oscilloscope of the received sound");
  // Frames and lines both mark the control, so what was shown last is compared.
  mirror_.Bind(
      form_.Scope, scope_,
      [this, shownFrame = uint32_t{0}, vertical = std::vector<ScopeLine>{},
       markers = std::vector<ScopeLine>{}, colours = std::array<uint32_t, 3>{}]() mutable {
        const ScopeControl& scope = form_.Scope;
        const std::array<uint32_t, 3> now{scope.backColour, scope.gridColour, scope.markerColour};
        if (vertical != scope.verticalGrid.Get() || markers != scope.markers.Get() ||
            colours != now) {
          vertical = scope.verticalGrid;
          markers = scope.markers;
          colours = now;
          scope_->ShowLines();
        }
        if (shownFrame == scope.frame) return;
        shownFrame = scope.frame;
        if (!form_.Window.minimised) scope_->ShowFrame();
      });

  auto* gain = new QSlider(Qt::Vertical, this);
  gain->setToolTip("Gain of the waterfall: lower values are brighter");
  gain->setAccessibleName("Gain of the waterfall");
  BindSlider(form_.Slider2, gain);

  auto* meter = new MeterWidget(this);
  meter->setToolTip("S-meter");
  meter->setAccessibleName("S-meter");
  mirror_.Bind(form_.Smeter, meter,
               [this, meter] { meter->SetLevel(-form_.Smeter.topTwips / kTwipsPerPixel); });

  auto* scales = new ScaleStrip(form_.lblScales, this);
  scales->setFont(SizedFont(*this, kSmallPixels, false));
  scales->setToolTip("Frequency scale");
  mirror_.Bind(
      form_.picScales, scales, [this, scales] { scales->ShowBelow(form_.picScales.place); }, false);
  for (auto& [index, label] : form_.lblScales) {
    mirror_.Watch(*label, [scales] { scales->update(); });
  }
}

void MainWindow::BindMessages() {
  auto* source =
      MakeLabel(kTextPixels, false, "Where modes are sent to", "Where modes are sent to");
  source->SetPassive(true);
  source->SetAlignment(Qt::AlignLeft);
  BindLabel(form_.Label3, source);

  auto* message = MakeLabel(kTextPixels, true, "Messages", "Message");
  message->SetPassive(true);
  message->SetAlignment(Qt::AlignRight);
  BindLabel(form_.lblMessage, message);

  auto* notice =
      MakeLabel(kTextPixels, true, "A notice; click to dismiss it", "Notice, click to dismiss");
  notice->SetFill(QColor(0xFF, 0xD4, 0x5E), QColor(0x20, 0x18, 0x00));
  BindLabel(form_.lblNotice, notice);
  notice->raise();
}

void MainWindow::BindWindow() {
  mirror_.Watch(form_.Window, [this] { ShowWindowState(); });
}

void MainWindow::BindLabel(Label& label, ClickLabel* widget) {
  connect(widget, &QAbstractButton::clicked, this, [&label] { label.Click(); });
  mirror_.Bind(label, widget, [&label, widget] {
    const QString text = ToQt(label.caption.Get());
    // Each "&" of the text is shown.
    const QString shown = QString(text).replace("&", "&&");
    if (widget->text() != shown) widget->setText(shown);
  });
}

void MainWindow::BindRigLabel(RigLabel& label, ClickLabel* widget) {
  BindLabel(label, widget);
  mirror_.Watch(label, [&label, widget] { widget->SetStale(label.stale); });
}

void MainWindow::BindTransmitButton(int32_t index, const char* toolTip) {
  OptionButton& option = form_.optTXRX[index];
  auto* button = new QToolButton(this);
  button->setCheckable(true);
  button->setToolTip(toolTip);
  button->setAccessibleName(toolTip);
  button->setFocusPolicy(Qt::TabFocus);
  button->setFont(SizedFont(*this, kSmallPixels + 1, true));
  // The button shows what the rig was told, which a refused click does not change.
  const auto show = [&option, button] {
    const QSignalBlocker quiet(button);
    button->setText(ToQt(option.caption.Get()));
    button->setChecked(option.value);
  };
  connect(button, &QToolButton::clicked, this, [&option, show] {
    option.mouseDown.Raise(1);
    show();
  });
  mirror_.Bind(option, button, show);
}

void MainWindow::BindSlider(SliderControl& slider, QSlider* widget) {
  widget->setRange(slider.minimum, slider.maximum);
  widget->setFocusPolicy(Qt::TabFocus);
  connect(widget, &QSlider::valueChanged, this, [&slider](int value) { slider.UserPick(value); });
  mirror_.Bind(slider, widget, [&slider, widget] {
    const QSignalBlocker quiet(widget);
    widget->setValue(slider.value);
  });
}

QToolButton* MainWindow::MakeMenuButton(const char* text, const char* toolTip,
                                        const char* accessibleName) {
  auto* button = new QToolButton(this);
  button->setText(text);
  button->setToolTip(toolTip);
  button->setAccessibleName(accessibleName);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

ClickLabel* MainWindow::MakeLabel(int pixelSize, bool bold, const char* toolTip,
                                  const char* accessibleName) {
  auto* label = new ClickLabel(this);
  label->setFont(SizedFont(*this, pixelSize, bold));
  label->setToolTip(toolTip);
  label->setAccessibleName(accessibleName);
  return label;
}

void MainWindow::ShowWindowState() {
  const WindowFrame& frame = form_.Window;
  const QString title = ToQt(frame.caption.Get());
  if (windowTitle() != title) setWindowTitle(title);

  const QSize wanted(ToPixels(frame.widthTwips), ToPixels(frame.heightTwips));
  if (frame.sizeable) {
    setMinimumSize(ToPixels(5000), ToPixels(1500));
    setMaximumSize(ToPixels(8385), ToPixels(2460));
    if (size() != wanted) resize(wanted);
  } else if (minimumSize() != wanted || maximumSize() != wanted) {
    setFixedSize(wanted);
  }
  if (frame.placed && !isVisible()) {
    move(frame.leftTwips / kTwipsPerPixel, frame.topTwips / kTwipsPerPixel);
  }
  if (windowHandle() != nullptr) {
    windowHandle()->setFlag(Qt::WindowStaysOnTopHint, frame.topMost);
  } else {
    setWindowFlag(Qt::WindowStaysOnTopHint, frame.topMost);
  }
  ShowFaceColour();
}

void MainWindow::ShowFaceColour() {
  const uint32_t face = form_.Window.faceColour;
  if (face == shownFace_) return;
  shownFace_ = face;
  if (face == 0) {
    setPalette(desktopPalette_);
    return;
  }
  const QColor colour = QColor::fromRgb(face);
  // Buttons, texts and edges that go with the chosen colour, readable on dark ones too.
  setPalette(QPalette(colour, colour));
}

void MainWindow::FocusScope() {
  scope_->setFocus(Qt::OtherFocusReason);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  bool cancel = false;
  closing.Raise(cancel);
  event->setAccepted(!cancel);
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  WindowFrame& frame = form_.Window;
  if (ToPixels(frame.widthTwips) != width()) frame.widthTwips = ToTwips(width());
  if (ToPixels(frame.heightTwips) != height()) frame.heightTwips = ToTwips(height());
}

void MainWindow::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  if (!isVisible()) return;
  form_.Window.leftTwips = ToTwips(pos().x());
  form_.Window.topTwips = ToTwips(pos().y());
}

void MainWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) form_.Window.minimised = isMinimized();
}

}  // namespace velt
