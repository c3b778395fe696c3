#include "ui/main_window.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QShortcut>
#include <QSlider>
#include <QToolButton>
#include <QWindow>

#include "platform/placing.h"
#include "ports/prompts.h"
#include "ui/accessible.h"
#include "ui/click_label.h"
#include "ui/face_palette.h"
#include "ui/lamp_widget.h"
#include "ui/meter_widget.h"
#include "ui/panel_view.h"
#include "ui/press_button.h"
#include "ui/qt_rectangle.h"
#include "ui/qt_text.h"
#include "ui/scale_strip.h"
#include "ui/scope_widget.h"
#include "ui/symbol_button.h"
#include "ui/window_keys.h"

namespace velt {
namespace {

constexpr int kTextPixels = 11;
constexpr int kBoldPixels = 12;
constexpr int kSmallPixels = 9;
constexpr int kSmallBoldPixels = 10;
constexpr int kFrequencyPixels = 21;
// A menu button with less than this beside its text shows it smaller.
constexpr int kBesideText = 12;

// Told apart from each other and from every face, light or dark; white reads well on both.
constexpr QRgb kTransmitting = 0xFFC82020;
constexpr QRgb kReceiving = 0xFF1F62C4;

// As long as a window manager may take to give the window the size that it asked for.
constexpr int kSettlingMs = 300;

constexpr int kButtonLamp = 7;
constexpr int kRowLamp = 10;

constexpr QRgb kNotice = 0xFFFFD45E;
constexpr QRgb kNoticeInk = 0xFF201800;
constexpr QRgb kUrgent = 0xFFC4161C;
constexpr QRgb kUrgentInk = 0xFFFFFFFF;

int ToPixels(int32_t twips) {
  return static_cast<int>((twips + kTwipsPerPixel - 1) / kTwipsPerPixel);
}
QSize ToPixels(const WindowSize& size) {
  return {ToPixels(size.width), ToPixels(size.height)};
}
int32_t ToTwips(int pixels) {
  return static_cast<int32_t>(pixels) * kTwipsPerPixel;
}

void SetFontSize(QWidget& widget, int pixels, bool bold = false) {
  QFont font = widget.font();
  font.setPixelSize(pixels);
  font.setBold(bold);
  widget.setFont(font);
}

class MenuButton : public QToolButton {
 public:
  explicit MenuButton(QWidget* parent) : QToolButton(parent) { setFocusPolicy(Qt::TabFocus); }

 protected:
  // By its letter, too, it acts at once: a tool kit's button first shows itself pressed for a tenth
  // of a second, in which the next keys still went to the window and tuned the rig.
  bool event(QEvent* event) override {
    if (event->type() != QEvent::Shortcut) return QToolButton::event(event);
    click();
    return true;
  }
  void resizeEvent(QResizeEvent* event) override {
    QToolButton::resizeEvent(event);
    SetFontSize(*this, kTextPixels);
    if (fontMetrics().size(Qt::TextShowMnemonic, text()).width() + kBesideText > width()) {
      SetFontSize(*this, kSmallPixels);
    }
  }
};

PressButton* MakeTransmitButton(QWidget* parent) {
  auto* button = new PressButton(parent);
  SetFontSize(*button, kSmallBoldPixels, true);
  return button;
}

QSlider* MakeSlider(QWidget* parent) {
  auto* slider = new QSlider(Qt::Vertical, parent);
  slider->setFocusPolicy(Qt::TabFocus);
  return slider;
}

}  // namespace

MainWindow::MainWindow(Main& form, std::function<const Raster&()> picture)
    : form_(form), binder_(form, FormBinder::Places::OfForm) {
  InstallAccessibility();
  SetFontSize(*this, kTextPixels);
  // Made in the order in which Tab walks through them.
  BindTopRow();
  BindDisplay(std::move(picture));
  BindPanel(binder_, form_, this);
  BindMessages();
  settling_.setSingleShot(true);
  settling_.setInterval(kSettlingMs);
  connect(&settling_, &QTimer::timeout, this, [this] { TakeSize(); });
  binder_.Watch(form_.Window, [this] { ShowWindowState(); });
  new WindowKeys(form_.Window, this);
  auto* help = new QShortcut(Qt::Key_F1, this);
  help->setContext(Qt::ApplicationShortcut);
  help->setAutoRepeat(false);
  connect(help, &QShortcut::activated, this, [this] { form_.mnumanual.Click(); });
}

void MainWindow::BindTopRow() {
  binder_.Bind(form_.cmdOptions, new MenuButton(this),
               {"Options menu", "Options menu (Alt+O)", 'O'});
  binder_.Bind(form_.Image2, new MenuButton(this), {"File menu", "File menu (Alt+F)", 'F'});
  BindCatButton();
  binder_.Bind(form_.imgStartStop, new SymbolButton(SymbolButton::Symbol::Play, this),
               {"Start or stop the spectrum analyser"});
  auto* record =
      binder_.Bind(form_.imgRecOnOff[0], new SymbolButton(SymbolButton::Symbol::Record, this),
                   {.name = "Record",
                    .toolTip = "Record to wav (ON/Off)",
                    .toEnable = "Start the spectrum analyser (\u25B6) to record what it hears."});
  binder_.Watch(form_.imgRecOnOff[0], [this, record] {
    const bool recording = form_.imgRecOnOff[0].tag.Get() == "Rec";
    record->setAccessibleDescription(recording ? "A recording goes on" : "");
  });

  binder_.Bind(form_.lblFrequency, MakeLabel(kFrequencyPixels, true),
               {"Frequency %1", "Transceiver frequency"});
  binder_.Bind(
      form_.lblMode, MakeLabel(kBoldPixels, true),
      {.name = "Mode %1",
       .toolTip = "Modulation mode",
       .toEnable = "Modulation mode. Start the spectrum analyser (\u25B6) to choose one."});
  auto* state = binder_.Bind(form_.lblTRXMode, MakeLabel(kBoldPixels, true),
                             {.name = "State %1",
                              .toolTip = "Transmit or receive state; click to change it",
                              .toEnable = "Link a transceiver (CAT) to choose between TX and RX."});
  auto* transmit =
      binder_.Bind(form_.optTXRX[0], MakeTransmitButton(this), {"Transmit", "Transmit"});
  auto* receive = binder_.Bind(form_.optTXRX[1], MakeTransmitButton(this), {"Receive", "Receive"});
  // The transmitter can be released whatever is asked.
  for (QWidget* widget : {static_cast<QWidget*>(state), static_cast<QWidget*>(receive)}) {
    widget->setProperty(reachableBelowBoxes, true);
  }
  const auto light = [=, this] { LightTransmit(*state, *transmit, *receive); };
  binder_.Watch(form_.lblTRXMode, light);
  for (auto& [index, option] : form_.optTXRX) binder_.Watch(*option, light);
  auto* peak = binder_.Bind(form_.lblFreqDetect, MakeLabel(kBoldPixels, true),
                            {"Peak %1", "Dominant frequency %1; a click tunes to it"});
  peak->SetSpokenRole(QAccessible::Button);
  binder_.Bind(form_.chkSpecMode, new SymbolButton(SymbolButton::Symbol::Waterfall, this),
               {"Waterfall", "Waterfall instead of the spectrum"});
  auto* expand = new MenuButton(this);
  expand->setCheckable(true);
  binder_.Bind(form_.chkExpand, expand,
               {"Rig control panel", "Shows or hides the rig control panel"});
}

void MainWindow::BindCatButton() {
  const Words words{"CAT configuration", "CAT configuration and status (Alt+C)", 'C'};
  auto* button = new MenuButton(this);
  binder_.Bind(form_.Image3, button, words);
  auto* lamp = new LampWidget(button, kButtonLamp);
  lamp->setAttribute(Qt::WA_TransparentForMouseEvents);
  lamp->setGeometry(2, 2, kButtonLamp, kButtonLamp);
  binder_.Watch(form_.lampLink, [this, lamp] { lamp->SetColour(form_.lampLink.colour); });
  const auto tellLink = [this, button, words] {
    const QString link = ToQt(form_.lblLink.caption.Get());
    const QString name = words.name + ": " + link;
    if (button->accessibleName() == name) return;
    button->setAccessibleName(name);
    button->setToolTip(words.toolTip + "\nLink: " + link);
  };
  binder_.Watch(form_.lblLink, tellLink);
  // Whatever changes of the button itself gives it its plain name again.
  binder_.Watch(form_.Image3, tellLink);
}

// A keyed transmitter must not be overlooked, whoever keyed it.
void MainWindow::LightTransmit(ClickLabel& state, PressButton& transmit, PressButton& receive) {
  const RigLabel& told = form_.lblTRXMode;
  const bool transmits = told.caption.Get() == "TX";
  const bool receives = told.caption.Get() == "RX" && told.enabled && !told.stale;
  state.SetFill(transmits  ? QColor(kTransmitting)
                : receives ? QColor(kReceiving)
                           : QColor(),
                transmits || receives ? Qt::white : QColor());
  transmit.SetLight(transmits || form_.optTXRX[0].value ? QColor(kTransmitting) : QColor());
  transmit.setAccessibleDescription(transmits ? "The transceiver transmits" : "");
  receive.SetLight(form_.optTXRX[1].value && !transmits ? QColor(kReceiving) : QColor());
}

void MainWindow::BindDisplay(std::function<const Raster&()> picture) {
  binder_.Bind(form_.Slider, MakeSlider(this),
               {"Level of the spectrum", "Level of the spectrum: up makes the bars taller"});
  scope_ = binder_.Bind(
      form_.Scope, new ScopeWidget(std::move(picture), this),
      {"Spectrum display",
       "Spectrum, waterfall or oscilloscope of the received sound.\n"
       "A click tunes to what is under the cursor; the right button copies the picture."});
  binder_.Bind(form_.Slider2, MakeSlider(this),
               {"Gain of the waterfall", "Gain of the waterfall: up makes it brighter"});
  auto* meter = binder_.Bind(form_.Smeter, new MeterWidget(this),
                             {"S-meter", "S-meter: 6 dB to the S-unit, amber above S9"});
  SetFontSize(*meter, kSmallPixels);

  auto* scales = new ScaleStrip(form_.lblScales, this);
  SetFontSize(*scales, kSmallPixels);
  scales->setToolTip("Frequency scale");
  binder_.Watch(form_.picScales, [this, scales] { scales->ShowBelow(form_.picScales.place); });
  for (auto& [index, label] : form_.lblScales) {
    binder_.Watch(*label, [scales] {
      scales->update();
      const QString name = "Frequency scale: " + scales->Range();
      if (scales->accessibleName() != name) scales->setAccessibleName(name);
    });
  }

  auto* listen = binder_.Bind(form_.lblListen, MakePassiveLabel(kBoldPixels, true, Qt::AlignCenter),
                              {"%1", "Nothing is heard yet"});
  listen->setAttribute(Qt::WA_TransparentForMouseEvents);
  binder_.Watch(form_.Scope, [this, listen] {
    const QColor back = QColor::fromRgb(form_.Scope.backColour);
    listen->SetFill({}, Between(InkOn(back), back, 0.1));
  });
}

void MainWindow::BindMessages() {
  binder_.Bind(form_.Label3, MakePassiveLabel(kTextPixels, false, Qt::AlignLeft),
               {"Where modes are sent to: %1", "Where modes are sent to"});
  binder_.Bind(form_.lblSource, MakePassiveLabel(kTextPixels, false, Qt::AlignLeft),
               {.name = "Sound source: %1", .toolTip = "Sound source: %1", .unknown = "no sound"});
  binder_.Bind(form_.lampLink, new LampWidget(this, kRowLamp), {"Lamp of the link: %1"});
  binder_.Bind(form_.lblLink, MakePassiveLabel(kTextPixels, false, Qt::AlignLeft),
               {"Link to the rig: %1", "Link to the rig: %1"});
  binder_.Bind(form_.lblFreq, MakePassiveLabel(kTextPixels, false, Qt::AlignRight),
               {.name = "Sound frequency under the cursor: %1",
                .toolTip = "Sound frequency under the cursor"});
  binder_.Bind(form_.lblDelta, MakePassiveLabel(kTextPixels, false, Qt::AlignRight),
               {.name = "Offset of the cursor in tens of hertz: %1",
                .toolTip = "Sound frequency under the cursor, in tens of hertz"});
  binder_.Bind(form_.lblCursor, MakePassiveLabel(kTextPixels, false, Qt::AlignRight),
               {.name = "Radio frequency under the cursor in kHz: %1",
                .toolTip = "Radio frequency under the cursor, in kHz"});
  auto* message = binder_.Bind(
      form_.lblMessage, MakePassiveLabel(kTextPixels, true, Qt::AlignRight), {"Message: %1", "%1"});
  // The name of a recording is told apart by the time at its end.
  binder_.Watch(form_.lblMessage, [this, message] {
    const bool isPath = form_.lblMessage.caption.Get().find('\\') != std::string::npos;
    message->SetElision(isPath ? Qt::ElideMiddle : Qt::ElideRight);
  });
  // What it lies over in a narrow window would be read together with it.
  message->setBackgroundRole(QPalette::Window);
  message->setAutoFillBackground(true);
  AlertWith(form_.lblMessage, message);
  // The last one, so that it lies over the display.
  auto* notice = binder_.Bind(form_.lblNotice, MakeLabel(kTextPixels, true),
                              {"Notice, click to dismiss: %1", "%1\nClick to dismiss"});
  notice->SetSpokenRole(QAccessible::AlertMessage);
  binder_.Watch(form_.lblNotice, [this, notice] {
    const bool urgent = form_.lblNotice.urgent;
    notice->SetFill(QColor(urgent ? kUrgent : kNotice), QColor(urgent ? kUrgentInk : kNoticeInk));
  });
  AlertWith(form_.lblNotice, notice);
}

// Each text that comes up is announced once, however often it blinks.
void MainWindow::AlertWith(const Label& label, ClickLabel* widget) {
  binder_.Watch(label, [&label, widget, told = std::string()]() mutable {
    const std::string& text = label.caption;
    if (text == told || !label.visible) return;
    told = text;
    QAccessibleEvent alert(widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
  });
}

ClickLabel* MainWindow::MakeLabel(int pixelSize, bool bold) {
  auto* label = new ClickLabel(this);
  SetFontSize(*label, pixelSize, bold);
  return label;
}

// For a text on which a click does nothing.
ClickLabel* MainWindow::MakePassiveLabel(int pixelSize, bool bold, Qt::Alignment alignment) {
  auto* label = MakeLabel(pixelSize, bold);
  label->SetPassive(true);
  label->SetAlignment(alignment);
  return label;
}

void MainWindow::ShowWindowState() {
  const WindowFrame& frame = form_.Window;
  const QString title = ToQt(frame.caption.Get());
  if (windowTitle() != title) setWindowTitle(title);

  const QSize wanted(ToPixels(frame.widthTwips), ToPixels(frame.heightTwips));
  const bool widens = isVisible() && wanted.width() > width();
  const QSize withFrame = wanted + frameGeometry().size() - size();
  if (size() != wanted) settling_.start();
  if (frame.sizeable) {
    setMinimumSize(ToPixels(frame.least));
    setMaximumSize(ToPixels(frame.most));
    if (size() != wanted) resize(wanted);
  } else if (minimumSize() != wanted || maximumSize() != wanted) {
    setFixedSize(wanted);
  }
  if (frame.placed && !isVisible()) {
    MoveToSavedPlace({frame.leftTwips / kTwipsPerPixel, frame.topTwips / kTwipsPerPixel}, wanted);
  } else if (widens) {
    // The panel opens beyond the right edge of a window that stands there.
    const QPoint place = OnScreen({pos(), withFrame});
    if (place != pos()) move(place);
  }
  if (windowHandle() != nullptr) {
    windowHandle()->setFlag(Qt::WindowStaysOnTopHint, frame.topMost);
  } else {
    setWindowFlag(Qt::WindowStaysOnTopHint, frame.topMost);
  }
  ShowFaceColour();
}

QPoint MainWindow::OnScreen(const QRect& wanted) {
  std::vector<Rectangle> screens;
  for (const QScreen* screen : QGuiApplication::screens()) {
    screens.push_back(FromQt(screen->availableGeometry()));
  }
  const Rectangle place = BroughtOnScreen(FromQt(wanted), screens);
  return {place.left, place.top};
}

// It may be beyond every screen by now. The desktop's frame is not known before the window is
// shown: where the window fits without one it stood with its frame.
void MainWindow::MoveToSavedPlace(QPoint saved, const QSize& size) {
  constexpr QSize kMostFrames(16, 40);
  const bool fits = OnScreen({saved, size}) == saved;
  move(fits ? saved : OnScreen({saved, size + kMostFrames}));
}

void MainWindow::ShowFaceColour() {
  const uint32_t face = form_.Window.faceColour;
  if (face == shownFace_) return;
  shownFace_ = face;
  setPalette(face == 0 ? QPalette() : FacePalette(QColor::fromRgb(face)));
}

void MainWindow::FocusScope() {
  scope_->setFocus(Qt::OtherFocusReason);
}

// Buttons outside of dialogs take only the space bar by themselves.
void MainWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
  if (!enter || event->isAutoRepeat() || button == nullptr || button->window() != this) {
    return QWidget::keyPressEvent(event);
  }
  button->click();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  bool cancel = false;
  closing.Raise(cancel);
  event->setAccepted(!cancel);
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  // On the way to a new size the window manager may still tell of an older one.
  if (!settling_.isActive()) TakeSize();
}

void MainWindow::TakeSize() {
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
  if (event->type() != QEvent::WindowStateChange) return;
  form_.Window.minimised = isMinimized();
  // Nothing is painted that nobody sees; what changed meanwhile is painted afterwards.
  setUpdatesEnabled(!isMinimized());
}

}  // namespace velt
