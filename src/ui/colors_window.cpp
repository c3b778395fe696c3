#include "ui/colors_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <array>

#include "ui/palette_strip.h"
#include "ui/qt_text.h"
#include "ui/swatch_button.h"

namespace velt {
namespace {

constexpr int kStripHeight = 20;
constexpr int kBeforeStrip = 2;
constexpr int kBeforeButtons = 6;

struct Row {
  QChar accessKey;
  const char* toolTip;
};
constexpr std::array<Row, 6> kRows{
    {{'D', "What the display shows where there is no signal"},
     {'G', "The grid's lines; what is behind them shines through"},
     {'W', "The main window's face, behind its buttons and texts"},
     {'S', "The spectrum's bars or lines"},
     {'O', "The oscilloscope's trace"},
     {'P', "The passband in the spectrum, and the lines that mark the carrier"}}};

}  // namespace

ColorsWindow::ColorsWindow(ColorsForm& form, QWidget* parent)
    : FormDialog(form, form.Window, parent), form_(form) {
  // Made in the order in which Tab walks through them. Low, so that it has room below the main
  // window.
  auto* rows = new QVBoxLayout(this);
  auto* grid = new QGridLayout;
  rows->addLayout(grid);
  for (auto& [index, button] : form_.cmdColor) AddColour(*grid, index);
  AddPalette(*grid);
  grid->setColumnStretch(2, 1);
  rows->addStretch();
  rows->addSpacing(kBeforeButtons);
  rows->addWidget(MakeBottomRow());
  FollowForm();
}

void ColorsWindow::AddColour(QGridLayout& grid, int index) {
  const ColourButton& control = form_.cmdColor[index];
  const Row& row = kRows.at(static_cast<size_t>(index));
  const QString name = PlainCaption(control.caption.Get());
  auto* swatch =
      Binder().Bind(control, new SwatchButton(this),
                    {"%1", QString("%1. Press to choose another colour.").arg(row.toolTip)});
  auto* caption = new QLabel(QString(name).insert(name.indexOf(row.accessKey), '&') + ":", this);
  caption->setBuddy(swatch);
  auto* value = new QLabel(this);
  value->setMinimumWidth(value->fontMetrics().horizontalAdvance("Desktop's own  "));
  Binder().Watch(control, [value, &control] { value->setText(ToQt(control.value.Get())); });
  auto* reset = new QPushButton(this);
  Binder().Bind(form_.cmdDefault[index], reset,
                {"%1 colour: " + name,
                 "Back to the colour that the program came with",
                 {},
                 {},
                 "This is the colour that the program came with"});
  int column = 0;
  for (QWidget* widget : std::initializer_list<QWidget*>{caption, swatch, value, reset}) {
    grid.addWidget(widget, index, column++);
  }
}

void ColorsWindow::AddPalette(QGridLayout& grid) {
  auto* strip = Binder().Bind(form_.picPalette, new PaletteStrip(this),
                              {"Waterfall palette: %1",
                               "The waterfall's colours as they are now, for weak signals at the "
                               "left and for strong ones at the right"});
  strip->setFixedHeight(kStripHeight);
  grid.setRowMinimumHeight(grid.rowCount(), kBeforeStrip);
  const int row = grid.rowCount();
  grid.addWidget(new QLabel("Waterfall palette:", this), row, 0);
  grid.addWidget(strip, row, 1, 1, 3);
  auto* caption = new QLabel(this);
  Binder().Watch(form_.picPalette,
                 [this, caption] { caption->setText(ToQt(form_.picPalette.caption.Get())); });
  auto* ends = new QHBoxLayout;
  ends->addWidget(new QLabel("Weak", this));
  ends->addWidget(caption, 1, Qt::AlignCenter);
  ends->addWidget(new QLabel("Strong", this));
  grid.addLayout(ends, row + 1, 1, 1, 3);
}

QWidget* ColorsWindow::MakeBottomRow() {
  auto* holder = new QWidget(this);
  auto* row = new QHBoxLayout(holder);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(Binder().Bind(form_.cmdDefaults, new QPushButton(this),
                               {"%1",
                                "All colours as the program came with them",
                                'A',
                                {},
                                "These are the colours that the program came with"}));
  row->addStretch();
  auto* keep = new QPushButton(this);
  keep->setDefault(true);
  row->addWidget(Binder().Bind(form_.cmdOK, keep, {"%1", "Keeps the colours"}));
  row->addWidget(Binder().Bind(form_.cmdCancel, new QPushButton(this),
                               {"%1", "Takes every change back", 'C'}));
  return holder;
}

}  // namespace velt
