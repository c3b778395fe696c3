#include "ui/omnirig_window.h"

#include <QClipboard>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <array>

#include "ui/choice_box.h"
#include "ui/error_label.h"
#include "ui/lamp_widget.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kAddressCharacters = 24;
constexpr int kColumnGap = 24;
constexpr const char* kUnknown = "\u2013";
constexpr const char* kToPutRight = "What has to be put right";

// "7100000" as "7 100 000 Hz"; what is not known is 0.
QString GroupedHertz(const QString& hertz) {
  if (hertz.isEmpty() || hertz == "0") return {};
  QString grouped = hertz;
  for (qsizetype at = grouped.size() - 3; at > 0; at -= 3) grouped.insert(at, ' ');
  return grouped + " Hz";
}

int WidthOf(const QWidget& widget, const char* sample) {
  return widget.fontMetrics().horizontalAdvance(sample);
}

QLabel* MakeCaption(const QString& text, QWidget* buddy = nullptr) {
  auto* caption = new QLabel(text);
  caption->setBuddy(buddy);
  return caption;
}

// The layout stays as it is whatever the text says.
QLabel* MakeValue(QWidget* parent, const char* sample = "") {
  auto* value = new QLabel(parent);
  value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  value->setMinimumWidth(WidthOf(*value, sample));
  return value;
}

// A row without margins of its own.
QHBoxLayout* MakeRow(QWidget* holder) {
  auto* row = new QHBoxLayout(holder);
  row->setContentsMargins(0, 0, 0, 0);
  return row;
}

}  // namespace

OmniRigWindow::OmniRigWindow(OmniRigForm& form, QWidget* parent)
    : FormDialog(form, form.Window, parent), form_(form) {
  // Made in the order in which Tab walks through them.
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(MakeServers());
  rows->addWidget(MakeLink());
  rows->addWidget(MakeReport());
  rows->addWidget(MakeTargets());
  rows->addWidget(MakeLimit());
  rows->addStretch();
  rows->addWidget(MakeBottomRow());
  FollowForm();
}

QWidget* OmniRigWindow::MakeServers() {
  auto* group = new QGroupBox("Rig", this);
  auto* grid = new QGridLayout(group);
  AddServer(*grid, 0, form_.Option1, form_.txtAddress1);
  AddServer(*grid, 1, form_.Option2, form_.txtAddress2);
  auto* row = new QHBoxLayout;
  row->addWidget(Binder().Bind(form_.lblAddressMessage, new ErrorLabel(this),
                               {"Server address: %1", kToPutRight}),
                 1);
  apply_ = new QPushButton(this);
  row->addWidget(Binder().Bind(
      form_.cmdApplyAddresses, apply_,
      {"%1 the server addresses", "Connect to the servers at the typed addresses", 'A'}));
  grid->addLayout(row, 2, 0, 1, 3);
  grid->setColumnStretch(2, 1);
  return group;
}

void OmniRigWindow::AddServer(QGridLayout& grid, int row, OptionButton& option, TextBox& address) {
  const bool first = row == 0;
  grid.addWidget(Binder().Bind(option, new QRadioButton(this), rigs_,
                               {"%1", first ? "Control and show rig 1" : "Control and show rig 2"}),
                 row, 0);
  auto* edit = new QLineEdit(this);
  edit->setMinimumWidth(WidthOf(*edit, "0") * kAddressCharacters);
  edit->setPlaceholderText("HOST:PORT");
  auto* caption = MakeCaption(first ? "Ser&ver:" : "S&erver:", edit);
  caption->setContentsMargins(kColumnGap / 2, 0, 0, 0);
  grid.addWidget(caption, row, 1);
  grid.addWidget(Binder().Bind(address, edit,
                               {first ? "Server address of rig 1" : "Server address of rig 2",
                                "Where the rig's CAT server is, for example 127.0.0.1:4532"}),
                 row, 2);
}

QWidget* OmniRigWindow::MakeLink() {
  auto* group = new QGroupBox("Link", this);
  auto* rows = new QVBoxLayout(group);
  auto* row = new QHBoxLayout;
  rows->addLayout(row);
  row->addWidget(Binder().Bind(
      form_.lampLink, new LampWidget(this),
      {"Lamp of the link", "Green: linked. Amber: no answer at present. Grey: stopped."}));
  QLabel* link = MakeValue(this);
  QFont bold = link->font();
  bold.setBold(true);
  link->setFont(bold);
  row->addWidget(
      Binder().Bind(form_.lblLink, link, {"Link: %1", "How the link to the chosen rig stands"}), 1);
  row->addWidget(Binder().Bind(form_.cmdStartStop, new QPushButton(this),
                               {"%1 the link", "Start or stop the link to the CAT servers", 'S'}));
  auto* cause = new ErrorLabel(this);
  cause->setFixedHeight(cause->fontMetrics().lineSpacing());
  rows->addWidget(Binder().Bind(form_.lblCause, cause, {"Why there is no link: %1", kToPutRight}));
  rows->addWidget(MakeCommand());
  return group;
}

QWidget* OmniRigWindow::MakeCommand() {
  auto* holder = new QWidget(this);
  QHBoxLayout* row = MakeRow(holder);
  row->addWidget(MakeCaption("Start it with:"));
  QLabel* command = MakeValue(this);
  command->setTextInteractionFlags(Qt::TextSelectableByMouse);
  row->addWidget(
      Binder().Bind(form_.lblCommand, command,
                    {"Command that starts the server: %1",
                     "Starts the server at the chosen rig's address. Put your radio's number for "
                     "MODEL (rigctl -l lists them) and its port for /dev/ttyUSB0.",
                     {},
                     kUnknown}),
      1);
  row->addWidget(Binder().Bind(
      form_.cmdCopyCommand, new QPushButton(this),
      {"%1 the command that starts the server", "Copy the command to the clipboard", 'p'}));
  connections_ += form_.cmdCopyCommand.clicked.Listen(
      [this] { QGuiApplication::clipboard()->setText(ToQt(form_.lblCommand.caption.Get())); });
  return holder;
}

QWidget* OmniRigWindow::MakeReport() {
  auto* group = Binder().Bind(form_.frmReport, new QGroupBox(this));
  auto* grid = new QGridLayout(group);
  AddFrequency(*grid, 0, "Current frequency", form_.Label3);
  AddFrequency(*grid, 1, "VFO A", form_.Label4);
  AddFrequency(*grid, 2, "VFO B", form_.Label10);
  grid->addWidget(MakeCaption("Status:"), 0, 4);
  grid->addWidget(Binder().Bind(form_.Label8, MakeValue(this, "Rig is not responding"),
                                {"Status: %1", "What the rig's server says", {}, kUnknown}),
                  0, 5);
  grid->addWidget(MakeCaption("Mode:"), 1, 4);
  grid->addWidget(Binder().Bind(form_.Label6, MakeValue(this),
                                {"Mode: %1", "The rig's modulation mode", {}, kUnknown}),
                  1, 5);
  auto* choose = new ChoiceBox(this);
  choose->setPlaceholderText("Choose");
  grid->addWidget(MakeCaption("Set &mode:", choose), 2, 4);
  grid->addWidget(
      Binder().Bind(form_.Combo1, choose, {"Set mode", "Sets the rig's modulation mode"}), 2, 5,
      Qt::AlignLeft);
  for (int row = 0; row < 3; ++row) grid->setRowMinimumHeight(row, choose->sizeHint().height());
  grid->setColumnMinimumWidth(3, kColumnGap);
  grid->setColumnStretch(5, 1);
  return group;
}

void OmniRigWindow::AddFrequency(QGridLayout& grid, int row, const QString& caption,
                                 RigLabel& label) {
  QLabel* value = MakeValue(this);
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  value->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  value->setFixedWidth(WidthOf(*value, "2 000 000 000 Hz "));
  grid.addWidget(MakeCaption(caption + ":"), row, 0);
  grid.addWidget(Binder().Bind(label, value,
                               {.name = caption + ": %1",
                                .toolTip = "As the rig reports it",
                                .unknown = kUnknown,
                                .spelled = GroupedHertz}),
                 row, 1);
}

QWidget* OmniRigWindow::MakeTargets() {
  auto* group = new QGroupBox("Frequencies go to", this);
  auto* row = new QHBoxLayout(group);
  static constexpr std::array<const char*, 4> kToolTips = {
      "A frequency set by the program goes to the VFO in use",
      "A frequency set by the program goes to VFO A",
      "A frequency set by the program goes to VFO B",
      "A frequency set by the program goes to VFO B first and then to VFO A"};
  for (auto& [index, option] : form_.optVFO) {
    row->addWidget(Binder().Bind(*option, new QRadioButton(this), targets_,
                                 {"Frequencies go to %1", kToolTips.at(size_t(index))}));
    row->addStretch();
  }
  return group;
}

QWidget* OmniRigWindow::MakeLimit() {
  auto* holder = new QWidget(this);
  QHBoxLayout* row = MakeRow(holder);
  limit_ = new QLineEdit(this);
  limit_->setFixedWidth(WidthOf(*limit_, "00000000"));
  limit_->setAlignment(Qt::AlignRight);
  row->addWidget(MakeCaption("Transmission &limit:", limit_));
  row->addWidget(Binder().Bind(form_.txtLimit, limit_,
                               {"Longest transmission in minutes",
                                "A longer transmission is ended with a message; 1 to 60 minutes"},
                               Typing::WhenOver));
  row->addWidget(MakeCaption("min"));
  row->addSpacing(kColumnGap / 2);
  row->addWidget(Binder().Bind(form_.lblLimitMessage, new ErrorLabel(this),
                               {"Transmission limit: %1", kToPutRight}),
                 1);
  return holder;
}

QWidget* OmniRigWindow::MakeBottomRow() {
  auto* holder = new QWidget(this);
  QHBoxLayout* row = MakeRow(holder);
  auto* close = new QPushButton(this);
  row->addStretch();
  row->addWidget(
      Binder().Bind(form_.Command1, close,
                    {"%1", "Takes typed addresses and closes this window; the link stays", 'C'}));
  Binder().Watch(form_.cmdApplyAddresses, [this, close] {
    // Enter takes a typed address before it closes the dialog.
    apply_->setDefault(form_.cmdApplyAddresses.enabled);
    close->setDefault(!form_.cmdApplyAddresses.enabled);
  });
  return holder;
}

void OmniRigWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  // Enter on a bad limit leaves the dialog open, so that its message is seen.
  if (enter && limit_->hasFocus() && !form_.lblLimitMessage.caption.Get().empty()) return;
  FormDialog::keyPressEvent(event);
}

}  // namespace velt
