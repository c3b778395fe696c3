#include "ui/bands_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <initializer_list>

#include "ui/error_label.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kBandsInABlock = 5;
constexpr int kColumnsOfABlock = 5;  // number, title, frequency, unit, gap
constexpr int kGap = 24;
constexpr int kTitleCharacters = 16;
constexpr int kFrequencyCharacters = 11;

QLineEdit* MakeEdit(QWidget* parent, int characters) {
  auto* edit = new QLineEdit(parent);
  edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance('0') * characters);
  return edit;
}

// Whatever the desktop has in its place is of the same kind.
QFont FixedPitch(const QFont& usual) {
  QFont font("Courier New");
  font.setStyleHint(QFont::TypeWriter);
  font.setFixedPitch(true);
  font.setPointSizeF(usual.pointSizeF());
  return font;
}

}  // namespace

BandsWindow::BandsWindow(BandsForm& form, QWidget* parent)
    : FormDialog(form, form.Window, parent), form_(form) {
  // Made in the order in which Tab walks through them.
  auto* rows = new QVBoxLayout(this);
  auto* grid = new QGridLayout;
  rows->addLayout(grid);
  for (const int column : {0, kColumnsOfABlock}) AddHeadings(*grid, column);
  for (auto& [band, box] : form_.txtFreqCaption) AddBand(*grid, band);
  grid->setColumnMinimumWidth(kColumnsOfABlock - 1, kGap);
  rows->addStretch();
  rows->addWidget(MakeOutcome());
  rows->addWidget(MakeBottomRow());
  FollowForm();
}

void BandsWindow::showEvent(QShowEvent* event) {
  FormDialog::showEvent(event);
  // Of a long title its beginning is to be seen.
  for (auto* edit : findChildren<QLineEdit*>()) edit->home(false);
  // Wherever the keyboard was when it was closed.
  first_->setFocus();
  first_->selectAll();
}

void BandsWindow::AddHeadings(QGridLayout& grid, int column) {
  grid.addWidget(new QLabel("Title", this), 0, column + 1);
  grid.addWidget(new QLabel("First frequency, in kHz", this), 0, column + 2, 1, 2);
  grid.setColumnStretch(column + 1, 1);
}

void BandsWindow::AddBand(QGridLayout& grid, int band) {
  const int row = 1 + band % kBandsInABlock;
  int column = band / kBandsInABlock * kColumnsOfABlock;
  const QString number = QString::number(band + 1);
  auto* title = Binder().Bind(
      form_.txtFreqCaption[band], MakeEdit(this, kTitleCharacters),
      {"Title of band " + number, "What stands on the band's button and in the menu"});
  auto* frequency = MakeEdit(this, kFrequencyCharacters);
  frequency->setFont(FixedPitch(frequency->font()));
  frequency->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  Binder().Bind(form_.txtFrequencies[band], frequency,
                {"Frequency of band " + number + " in kHz",
                 "The first of the band's presets, in kHz; the menu tunes there"});
  if (band == 0) first_ = title;
  auto* caption = new QLabel(QString(number).insert(number.size() - 1, '&') + ":", this);
  caption->setBuddy(title);
  auto* unit = Binder().Bind(form_.Label1[band], new QLabel(this),
                             {"%1", "The number is in kHz: 7074.5 is 7074500 Hz"});
  grid.addWidget(caption, row, column, Qt::AlignRight | Qt::AlignVCenter);
  for (QWidget* widget : std::initializer_list<QWidget*>{title, frequency, unit}) {
    grid.addWidget(widget, row, ++column);
  }
}

// One of the two is empty, so they have the same place.
QWidget* BandsWindow::MakeOutcome() {
  auto* holder = new QWidget(this);
  auto* place = new QGridLayout(holder);
  place->setContentsMargins(0, 0, 0, 0);
  auto* message = new QLabel(this);
  message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  message->setWordWrap(true);
  place->addWidget(Binder().Bind(form_.lblMessage, message, {"%1", "What was done"}), 0, 0);
  place->addWidget(Binder().Bind(form_.lblProblem, new ErrorLabel(this), {"%1"}), 0, 0);
  return holder;
}

void BandsWindow::AddButton(QHBoxLayout& row, const Button& control, const Words& words) {
  auto* button = new QPushButton(this);
  // Enter keeps what is typed, wherever it is pressed but on a button.
  button->setDefault(&control == &form_.Command1);
  row.addWidget(Binder().Bind(control, button, words));
}

QWidget* BandsWindow::MakeBottomRow() {
  auto* holder = new QWidget(this);
  auto* row = new QHBoxLayout(holder);
  row->setContentsMargins(0, 0, 0, 0);
  AddButton(*row, form_.cmdImport,
            {"%1",
             "Takes all presets of all bands from a file, at once; a file with a mistake changes "
             "nothing",
             'I'});
  AddButton(*row, form_.cmdExport,
            {"%1", "Writes all presets of all bands to a file for spreadsheets", 'E'});
  row->addStretch();
  AddButton(*row, form_.Command1, {"%1", "Keeps the titles and frequencies as they stand here"});
  AddButton(*row, form_.Command2, {"%1", "Leaves titles and frequencies as they were", 'C'});
  return holder;
}

}  // namespace velt
