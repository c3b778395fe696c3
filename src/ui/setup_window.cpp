#include "ui/setup_window.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kNumberCharacters = 10;
constexpr int kDeviceCharacters = 34;

// "Waterfall Speed" for "&Waterfall Speed:".
QString NameOf(const QString& caption) {
  return QString(caption).remove('&').remove(':');
}

void AddRow(QGridLayout& grid, const QString& caption, QWidget* widget) {
  const int row = grid.rowCount();
  auto* label = new QLabel(caption, widget->parentWidget());
  if (caption.contains('&')) label->setBuddy(widget);
  grid.addWidget(label, row, 0);
  grid.addWidget(widget, row, 1);
  grid.setColumnStretch(1, 1);
}

}  // namespace

SetupWindow::SetupWindow(SetupForm& form, QWidget* parent)
    : FormDialog(form, form.Window, parent), form_(form) {
  // Made in the order in which Tab walks through them.
  auto* rows = new QVBoxLayout(this);
  auto* columns = new QHBoxLayout;
  rows->addLayout(columns);
  auto* left = new QVBoxLayout;
  left->addWidget(MakeAnalyser());
  left->addWidget(MakeRig());
  left->addStretch();
  columns->addLayout(left, 1);
  auto* right = new QVBoxLayout;
  right->addWidget(MakeWaterfall());
  right->addWidget(MakeAudio());
  right->addWidget(MakeReset());
  right->addStretch();
  columns->addLayout(right, 1);
  rows->addStretch();
  rows->addWidget(MakeBottomRow());
  FollowForm();
}

void SetupWindow::showEvent(QShowEvent* event) {
  FormDialog::showEvent(event);
  // Wherever the keyboard was when it was closed.
  first_->setFocus();
  first_->selectAll();
}

QLineEdit* SetupWindow::AddNumber(QGridLayout& grid, const QString& caption, TextBox& control) {
  auto* edit = new QLineEdit(this);
  edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance('0') * kNumberCharacters);
  edit->setAlignment(Qt::AlignRight);
  AddRow(grid, caption, Binder().Bind(control, edit, {NameOf(caption)}));
  return edit;
}

QComboBox* SetupWindow::AddList(QGridLayout& grid, const QString& caption, ListBox& control,
                                const Words& words) {
  auto* list = new QComboBox(this);
  // Instead of a choice that is in force and not in the list.
  list->setPlaceholderText("As it is");
  AddRow(grid, caption, Binder().Bind(control, list, words));
  return list;
}

void SetupWindow::AddButton(QGridLayout& grid, const QString& caption, const Button& control,
                            const Words& words) {
  auto* button = new QPushButton(this);
  button->setAutoDefault(false);
  AddRow(grid, caption, Binder().Bind(control, button, words));
}

QWidget* SetupWindow::MakeAnalyser() {
  auto* group = new QGroupBox("Analyser", this);
  auto* grid = new QGridLayout(group);
  first_ = AddNumber(*grid, "Spectrum &base Sensitivity:", form_.Text1);
  AddNumber(*grid, "&Oscilloscope Sensitivity:", form_.Text2);
  AddNumber(*grid, "S-&meter Sensitivity:", form_.Text3);
  AddList(*grid, "&Resolution:", form_.Combo1, {"Resolution"});
  AddList(*grid, "Scan Frequency &Timing:", form_.Combo4, {"Scan Frequency Timing"});
  AddButton(*grid, "User Color Settings:", form_.Command1,
            {"User Color Settings: %1", "The colours of the display and of the window", 'l'});
  return group;
}

QWidget* SetupWindow::MakeRig() {
  auto* group = new QGroupBox("Rig and presets", this);
  auto* grid = new QGridLayout(group);
  AddButton(
      *grid, "Change user defined frequency", form_.cmdFreqs,
      {"Change user defined frequency: %1", "Titles and first frequencies of the bands", 'P'});
  AddButton(*grid, "CAT OmniRig Configuration:", form_.cmdSetpOmniRig,
            {"CAT OmniRig Configuration: %1", "The rig, its server and what the rig reports", 'g'});
  return group;
}

QWidget* SetupWindow::MakeWaterfall() {
  auto* group = new QGroupBox("Waterfall", this);
  auto* grid = new QGridLayout(group);
  AddNumber(*grid, "Waterfall Cl&arity:", form_.Text4);
  AddNumber(*grid, "Waterfall Spee&d:", form_.Text5);
  AddList(*grid, "", form_.Combo3, {"Waterfall stream color"});
  return group;
}

QWidget* SetupWindow::MakeAudio() {
  auto* group = new QGroupBox("Recording and audio", this);
  auto* grid = new QGridLayout(group);
  AddList(*grid, "Recording &sample rate:", form_.Combo2, {"Recording sample rate"});
  QComboBox* devices = AddList(
      *grid, "Audio &input:", form_.cmbDevices,
      {"Audio input", "Where the analyser's sound comes from; another one is opened at once"});
  // As wide as the other fields, whatever the devices are called.
  devices->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  devices->setMinimumContentsLength(kDeviceCharacters);
  const int row = grid->rowCount();
  grid->addWidget(new QLabel("Soundcard Audio Input Settings:", group), row, 0);
  grid->addWidget(new QLabel("Soundcard Audio Output Settings:", group), row + 1, 0);
  auto* button = new QPushButton(this);
  button->setAutoDefault(false);
  grid->addWidget(Binder().Bind(form_.Command5, button,
                                {"Soundcard Audio Input and Output Settings: %1",
                                 "Opens the desktop's volume control", 'V'}),
                  row, 1, 2, 1);
  return group;
}

QWidget* SetupWindow::MakeReset() {
  auto* group = new QGroupBox("Reset", this);
  auto* grid = new QGridLayout(group);
  AddButton(*grid, "Total Reset to Defaults:", form_.Command4,
            {"Total Reset to Defaults: %1",
             "Deletes all settings and ends the program; presets and recordings stay", 'e'});
  return group;
}

QWidget* SetupWindow::MakeBottomRow() {
  auto* holder = new QWidget(this);
  auto* row = new QHBoxLayout(holder);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch();
  auto* keep = new QPushButton(this);
  keep->setDefault(true);
  row->addWidget(Binder().Bind(form_.Command3, keep, {"%1", "Puts everything here into force"}));
  row->addWidget(Binder().Bind(form_.Command2, new QPushButton(this),
                               {"%1", "Leaves everything as it was", 'C'}));
  return holder;
}

}  // namespace velt
