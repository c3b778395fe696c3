#include "ui/omnirig_window.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <array>

#include "rig/omnirig_dialog.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

// While "15" is typed, "1" must not become the limit of a transmission that is under way.
constexpr int kLimitPauseMs = 1000;
constexpr int kAddressCharacters = 24;
constexpr int kColumnGap = 24;
constexpr const char* kUnknown = "\u2013";

constexpr QColor kGreen(0x2E, 0xA0, 0x43);
constexpr QColor kAmber(0xE8, 0x9B, 0x0C);
constexpr QColor kGrey(0x8C, 0x8C, 0x8C);

bool LinkIs(RigLink::State state, const Label& link) {
  return link.caption.Get() == LinkText({.state = state, .retryInSeconds = 0, .stale = false});
}

int WidthOf(const QWidget& widget, const char* sample) {
  return widget.fontMetrics().horizontalAdvance(sample);
}

// The caption for a button that opens by Alt and `key`, which stands somewhere in it.
QString WithAccessKey(const std::string& caption, QChar key) {
  QString text = PlainCaption(caption).replace("&", "&&");
  const qsizetype at = key.isNull() ? -1 : text.indexOf(key);
  if (at >= 0) text.insert(at, '&');
  return text;
}

QLabel* MakeCaption(const char* text, QWidget* buddy = nullptr) {
  auto* caption = new QLabel(text);
  caption->setBuddy(buddy);
  return caption;
}

void Describe(QWidget* widget, const char* name, const char* toolTip) {
  widget->setAccessibleName(name);
  widget->setToolTip(toolTip);
}

// The link's lamp. The text beside it says the same without colour.
class Lamp : public QWidget {
 public:
  explicit Lamp(QWidget* parent) : QWidget(parent) { setFixedSize(14, 14); }
  void SetColour(const QColor& colour) {
    if (colour_ == colour) return;
    colour_ = colour;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colour_.darker(140));
    painter.setBrush(colour_);
    painter.drawEllipse(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5));
  }

 private:
  QColor colour_ = kGrey;
};

// A list whose choices act on the rig at once: the wheel and the arrow keys, which would run
// through all modes between here and there, do not choose while the list is closed.
class ModeList : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
  void keyPressEvent(QKeyEvent* event) override {
    const int key = event->key();
    if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
        key == Qt::Key_PageDown || key == Qt::Key_Home || key == Qt::Key_End) {
      showPopup();
    } else {
      QComboBox::keyPressEvent(event);
    }
  }
};

}  // namespace

OmniRigWindow::OmniRigWindow(OmniRigForm& form, QWidget* parent)
    : QDialog(parent), form_(form), mirror_(form) {
  // Made in the order in which Tab walks through them.
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(MakeServers());
  rows->addWidget(MakeLink());
  rows->addWidget(MakeReport());
  rows->addWidget(MakeTargets());
  rows->addWidget(MakeLimit());
  rows->addStretch();
  rows->addWidget(MakeBottomRow());

  mirror_.Watch(form_.lblLink, [this] { ShowLink(); });
  mirror_.Watch(form_.Label8, [this] { ShowLink(); });
  ShowErrorColour();
  mirror_.Watch(form_.Window, [this] { ShowWindow(); });
}

OmniRigWindow::~OmniRigWindow() {
  // Hiding takes the focus from the field, which is the end of typing, but nobody is left to tell.
  limit_->disconnect(this);
}

QGroupBox* OmniRigWindow::MakeServers() {
  auto* group = new QGroupBox("Rig", this);
  auto* grid = new QGridLayout(group);
  AddServer(*grid, 0, form_.Option1, form_.txtAddress1);
  AddServer(*grid, 1, form_.Option2, form_.txtAddress2);

  apply_ = new QPushButton(this);
  Describe(apply_, "Apply the server addresses", "Connect to the servers at the typed addresses");
  BindButton(form_.cmdApplyAddresses, apply_, 'A');
  auto* row = new QHBoxLayout;
  row->addWidget(MakeError("Server address", form_.lblAddressMessage), 1);
  row->addWidget(apply_);
  grid->addLayout(row, 2, 0, 1, 3);
  grid->setColumnStretch(2, 1);
  return group;
}

void OmniRigWindow::AddServer(QGridLayout& grid, int row, OptionButton& option, TextBox& address) {
  const bool first = row == 0;
  auto* choose = new QRadioButton(this);
  Describe(choose, first ? "Rig 1" : "Rig 2",
           first ? "Control and show rig 1" : "Control and show rig 2");
  BindOption(option, rigs_, choose);

  auto* edit = new QLineEdit(this);
  edit->setMinimumWidth(WidthOf(*edit, "0") * kAddressCharacters);
  edit->setPlaceholderText("HOST:PORT");
  Describe(edit, first ? "Server address of rig 1" : "Server address of rig 2",
           "Where the rig's CAT server is, for example 127.0.0.1:4532");
  connect(edit, &QLineEdit::textEdited, this,
          [&address](const QString& typed) { address.UserText(FromQt(typed)); });
  BindText(address, edit);

  grid.addWidget(choose, row, 0);
  auto* caption = MakeCaption(first ? "Ser&ver:" : "S&erver:", edit);
  caption->setContentsMargins(kColumnGap / 2, 0, 0, 0);
  grid.addWidget(caption, row, 1);
  grid.addWidget(edit, row, 2);
}

QGroupBox* OmniRigWindow::MakeLink() {
  auto* group = new QGroupBox("Link", this);
  auto* row = new QHBoxLayout(group);
  auto* lamp = new Lamp(this);
  Describe(lamp, "Lamp of the link", "Green: linked. Amber: no answer at present. Grey: stopped.");
  mirror_.Watch(form_.lblLink, [this, lamp] {
    lamp->SetColour(LinkIs(RigLink::State::Linked, form_.lblLink) ? kGreen
                    : LinkIs(RigLink::State::Off, form_.lblLink)  ? kGrey
                                                                  : kAmber);
  });
  row->addWidget(lamp);

  auto* link = MakeValue("Link", form_.lblLink);
  link->setToolTip("How the link to the chosen rig stands");
  QFont bold = link->font();
  bold.setBold(true);
  link->setFont(bold);
  row->addWidget(link, 1);

  auto* startStop = new QPushButton(this);
  startStop->setToolTip("Start or stop the link to the CAT servers");
  BindButton(form_.cmdStartStop, startStop, 'S');
  mirror_.Watch(form_.cmdStartStop, [this, startStop] {
    startStop->setAccessibleName(PlainCaption(form_.cmdStartStop.caption.Get()) + " the link");
  });
  row->addWidget(startStop);
  return group;
}

QGroupBox* OmniRigWindow::MakeReport() {
  report_ = new QGroupBox(this);
  auto* grid = new QGridLayout(report_);
  AddFrequency(*grid, 0, "Current frequency", form_.Label3);
  AddFrequency(*grid, 1, "VFO A", form_.Label4);
  AddFrequency(*grid, 2, "VFO B", form_.Label10);

  status_ = MakeValue("Status", form_.Label8, kUnknown);
  status_->setMinimumWidth(WidthOf(*status_, "Rig is not responding"));
  status_->setToolTip("What the rig's server says");
  auto* mode = MakeValue("Mode", form_.Label6, kUnknown);
  mode->setToolTip("The rig's modulation mode");
  values_.push_back(mode);

  auto* choose = new ModeList(this);
  choose->setPlaceholderText("Choose");
  Describe(choose, "Set mode", "Sets the rig's modulation mode");
  connect(choose, &QComboBox::activated, this, [this](int index) { form_.Combo1.UserPick(index); });
  mirror_.Bind(
      form_.Combo1, choose,
      [this, choose, shown = std::vector<std::string>()]() mutable {
        const QSignalBlocker quiet(choose);
        if (shown != form_.Combo1.items.Get()) {
          shown = form_.Combo1.items;
          choose->clear();
          for (const std::string& item : shown) choose->addItem(ToQt(item));
        }
        choose->setCurrentIndex(form_.Combo1.listIndex);
      },
      false);

  for (int row = 0; row < 3; ++row) grid->setRowMinimumHeight(row, choose->sizeHint().height());
  grid->setColumnMinimumWidth(3, kColumnGap);
  grid->addWidget(MakeCaption("Status:"), 0, 4);
  grid->addWidget(status_, 0, 5);
  grid->addWidget(MakeCaption("Mode:"), 1, 4);
  grid->addWidget(mode, 1, 5);
  grid->addWidget(MakeCaption("Set &mode:", choose), 2, 4);
  grid->addWidget(choose, 2, 5, Qt::AlignLeft);
  grid->setColumnStretch(5, 1);
  return report_;
}

void OmniRigWindow::AddFrequency(QGridLayout& grid, int row, const char* caption, Label& label) {
  auto* value = MakeValue(caption, label, kUnknown);
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  value->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  value->setFixedWidth(WidthOf(*value, "2000000000 "));
  value->setToolTip("In Hz, as the rig reports it; 0 while it is not known");
  values_.push_back(value);
  grid.addWidget(MakeCaption((std::string(caption) + ":").c_str()), row, 0);
  grid.addWidget(value, row, 1);
  grid.addWidget(MakeCaption("Hz"), row, 2);
}

QGroupBox* OmniRigWindow::MakeTargets() {
  auto* group = new QGroupBox("Frequencies go to", this);
  auto* row = new QHBoxLayout(group);
  static constexpr std::array<const char*, 4> kToolTips = {
      "A frequency set by the program goes to the VFO in use",
      "A frequency set by the program goes to VFO A",
      "A frequency set by the program goes to VFO B",
      "A frequency set by the program goes to VFO B first and then to VFO A"};
  for (auto& [index, option] : form_.optVFO) {
    auto* choose = new QRadioButton(this);
    choose->setToolTip(kToolTips.at(static_cast<size_t>(index)));
    BindOption(*option, targets_, choose);
    choose->setAccessibleName("Frequencies go to " + choose->text());
    row->addWidget(choose);
    row->addStretch();
  }
  return group;
}

QWidget* OmniRigWindow::MakeLimit() {
  auto* holder = new QWidget(this);
  auto* row = new QHBoxLayout(holder);
  row->setContentsMargins(0, 0, 0, 0);
  limit_ = new QLineEdit(this);
  limit_->setFixedWidth(WidthOf(*limit_, "00000000"));
  limit_->setAlignment(Qt::AlignRight);
  Describe(limit_, "Longest transmission in minutes",
           "A longer transmission is ended with a message; 1 to 60 minutes");
  limitPause_.setSingleShot(true);
  limitPause_.setInterval(kLimitPauseMs);
  connect(&limitPause_, &QTimer::timeout, this, [this] { TakeLimit(); });
  connect(limit_, &QLineEdit::textEdited, this, [this] { limitPause_.start(); });
  connect(limit_, &QLineEdit::editingFinished, this, [this] { TakeLimit(); });
  BindText(form_.txtLimit, limit_);

  row->addWidget(MakeCaption("Transmission &limit:", limit_));
  row->addWidget(limit_);
  row->addWidget(MakeCaption("min"));
  row->addSpacing(kColumnGap / 2);
  row->addWidget(MakeError("Transmission limit", form_.lblLimitMessage), 1);
  return holder;
}

QWidget* OmniRigWindow::MakeBottomRow() {
  auto* holder = new QWidget(this);
  auto* row = new QHBoxLayout(holder);
  row->setContentsMargins(0, 0, 0, 0);
  close_ = new QPushButton(this);
  Describe(close_, "Close", "Takes typed addresses and closes this window; the link stays");
  BindButton(form_.Command1, close_, 'C');
  mirror_.Watch(form_.cmdApplyAddresses, [this] {
    // Enter takes a typed address before it closes the dialog.
    apply_->setDefault(form_.cmdApplyAddresses.enabled);
    close_->setDefault(!form_.cmdApplyAddresses.enabled);
  });
  row->addStretch();
  row->addWidget(close_);
  return holder;
}

// A text of the form; texts from outside are never taken as markup.
QLabel* OmniRigWindow::MakeValue(const char* caption, Label& label, const char* unknown) {
  auto* value = new QLabel(this);
  value->setTextFormat(Qt::PlainText);
  // The layout stays as it is whatever the text says.
  value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  mirror_.Bind(
      label, value,
      [&label, value, name = QString(caption), unknown] {
        const std::string& told = label.caption;
        const QString text = ToQt(told.empty() ? unknown : told);
        if (value->text() != text) value->setText(text);
        const QString spoken = name + ": " + text;
        if (value->accessibleName() != spoken) value->setAccessibleName(spoken);
      },
      false);
  return value;
}

// Its lines are kept free while there is nothing to say.
QLabel* OmniRigWindow::MakeError(const char* name, Label& label) {
  QLabel* error = MakeValue(name, label);
  error->setToolTip("What has to be put right");
  error->setWordWrap(true);
  error->setFixedHeight(error->fontMetrics().lineSpacing() * 2);
  errors_.push_back(error);
  return error;
}

void OmniRigWindow::BindButton(Button& button, QPushButton* widget, QChar accessKey) {
  connect(widget, &QPushButton::clicked, this, [&button] { button.Click(); });
  mirror_.Bind(
      button, widget,
      [&button, widget, accessKey] {
        const QString text = WithAccessKey(button.caption, accessKey);
        if (widget->text() != text) widget->setText(text);
      },
      false);
}

void OmniRigWindow::BindOption(OptionButton& option, QButtonGroup& group, QAbstractButton* widget) {
  group.addButton(widget);
  // Only the user's own clicks and arrow keys raise this signal.
  connect(widget, &QAbstractButton::clicked, this, [&option] { option.UserPick(); });
  mirror_.Bind(
      option, widget,
      [&option, &group, widget] {
        const QString text = WithAccessKey(option.caption, {});
        if (widget->text() != text) widget->setText(text);
        // An exclusive group keeps its last button checked.
        group.setExclusive(false);
        widget->setChecked(option.value);
        group.setExclusive(true);
      },
      false);
}

void OmniRigWindow::BindText(TextBox& box, QLineEdit* edit) {
  mirror_.Bind(
      box, edit,
      [&box, edit, last = QString()]() mutable {
        const QString text = ToQt(box.text.Get());
        // What is being typed is replaced only when the program has changed the text.
        if (text == last) return;
        last = text;
        if (edit->text() == text) return;
        const QSignalBlocker quiet(edit);
        edit->setText(text);
      },
      false);
}

void OmniRigWindow::ShowWindow() {
  const QString title = ToQt(form_.Window.caption.Get());
  if (windowTitle() != title) setWindowTitle(title);
  if (isHidden() != form_.Window.visible) return;
  limitPause_.stop();
  if (!form_.Window.visible) {
    hide();
    return;
  }
  // Typed and dropped before the form had taken it.
  limit_->setText(ToQt(form_.txtLimit.text.Get()));
  if (!testAttribute(Qt::WA_Moved)) PlaceBelowParent();
  show();
  raise();
  activateWindow();
}

// In the middle of the main window, its usual place, it would hide what it is watched with.
void OmniRigWindow::PlaceBelowParent() {
  if (parentWidget() == nullptr) return;
  adjustSize();
  const QRect above = parentWidget()->frameGeometry();
  const int titleBar = parentWidget()->geometry().top() - above.top();
  const QRect wanted(above.bottomLeft() + QPoint(0, 1), size() + QSize(0, titleBar));
  if (parentWidget()->screen()->availableGeometry().contains(wanted)) move(wanted.topLeft());
}

void OmniRigWindow::ShowLink() {
  const bool current = LinkIs(RigLink::State::Linked, form_.lblLink);
  const bool known = !form_.Label8.caption.Get().empty();
  report_->setTitle(current || !known ? "Transceiver" : "Transceiver (last known values)");
  const auto show = [](QLabel* label, bool holds) {
    label->setForegroundRole(holds ? QPalette::WindowText : QPalette::PlaceholderText);
  };
  for (QLabel* value : values_) show(value, current);
  // A rig that does not answer is told by its status, which holds until the link is stopped.
  show(status_, !LinkIs(RigLink::State::Off, form_.lblLink));
}

void OmniRigWindow::ShowErrorColour() {
  const bool dark = palette().color(QPalette::Window).lightnessF() < 0.5;
  for (QLabel* error : errors_) {
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, dark ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB0, 0, 0x20));
    error->setPalette(colours);
  }
}

void OmniRigWindow::TakeLimit() {
  limitPause_.stop();
  const std::string typed = FromQt(limit_->text());
  if (!form_.Window.visible || typed == form_.txtLimit.text.Get()) return;
  form_.txtLimit.UserText(typed);
  // Before more is typed, which would differ from the form's text and be taken back.
  mirror_.Sync();
}

void OmniRigWindow::reject() {
  form_.Window.closeAsked.Raise();
  // At once: a close event that leaves its window open counts as a veto to ending the program.
  mirror_.Sync();
}

void OmniRigWindow::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowErrorColour();
}

void OmniRigWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  // Enter on a bad limit leaves the dialog open, so that its message is seen.
  if (enter && limit_->hasFocus() && !form_.lblLimitMessage.caption.Get().empty()) return;
  QDialog::keyPressEvent(event);
}

}  // namespace velt
