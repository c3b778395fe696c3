#include "ui/player_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/error_label.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kFolderCharacters = 20;
constexpr int kFileCharacters = 34;  // a recording's name is 28 long

// One line whose end may be hidden behind its edge; the tool tip holds the whole.
QLabel* MakeLine(QWidget* parent) {
  auto* line = new QLabel(parent);
  line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  line->setTextFormat(Qt::PlainText);
  return line;
}

}  // namespace

ChoosingList::ChoosingList(int characters, QWidget* parent)
    : QListWidget(parent), characters_(characters) {
  setUniformItemSizes(true);
}

QSize ChoosingList::SizeFor(int lines) const {
  const QFontMetrics metrics = fontMetrics();
  return QSize(metrics.horizontalAdvance('0') * characters_, metrics.lineSpacing() * lines) +
         QSize(2, 2) * frameWidth();
}

// The view itself would choose the first item, unseen, as soon as the keyboard comes here.
void ChoosingList::focusInEvent(QFocusEvent* event) {
  if (currentRow() < 0) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
  } else {
    QListWidget::focusInEvent(event);
  }
}

// The style shows nowhere that the keyboard is in a list, least of all in one without a choice.
void ChoosingList::paintEvent(QPaintEvent* event) {
  QListWidget::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Highlight));
  painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
}

PlayerWindow::PlayerWindow(PlayerForm& form, QWidget* parent)
    : FormDialog(form, form.Window, parent), form_(form) {
  setSizeGripEnabled(true);
  // Made in the order in which Tab walks through them.
  auto* rows = new QVBoxLayout(this);
  rows->addLayout(MakePlace());
  rows->addLayout(MakeLists(), 1);
  AddProgress(*rows);
  rows->addLayout(MakeBottomRow());
  FollowForm();
  wanted_ = form_.fileListWanted.Listen([this] { files_->setFocus(); });
}

QHBoxLayout* PlayerWindow::MakePlace() {
  auto* row = new QHBoxLayout;
  auto* places = new QComboBox(this);
  auto* label = new QLabel("P&lace:", this);
  label->setBuddy(places);
  row->addWidget(label);
  row->addWidget(Binder().Bind(form_.Drive1, places,
                               {"Place", "Where to look: recordings, home, plugged in media"}));
  row->addWidget(Binder().Bind(form_.lblFolder, MakeLine(this),
                               {"Folder: %1", "The folder that the files are in: %1"}),
                 1);
  return row;
}

QHBoxLayout* PlayerWindow::MakeLists() {
  auto* row = new QHBoxLayout;
  folders_ = AddList(*row, form_.Dir1, kFolderCharacters, "&Folders:",
                     {"Folders", "A double click or Enter opens a folder; .. is the one above"});
  files_ = AddList(*row, form_.File1, kFileCharacters,
                   "F&iles:", {"Files", "A double click or Enter plays a file"});
  auto* column = new QVBoxLayout;
  row->addLayout(column);
  column->addSpacing(fontMetrics().height());
  AddButton(*column, form_.cmdfiles[0], {.name = "Delete", .accessKey = 'D'});
  AddButton(*column, form_.cmdfiles[1], {.name = "Rename", .accessKey = 'R'});
  AddButton(*column, form_.cmdfiles[2], {.name = "%1", .accessKey = 'E'});
  column->addStretch();
  return row;
}

ChoosingList* PlayerWindow::AddList(QHBoxLayout& row, ListBox& control, int characters,
                                    const QString& caption, const Words& words) {
  auto* column = new QVBoxLayout;
  row.addLayout(column, characters);
  auto* list = new ChoosingList(characters, this);
  auto* label = new QLabel(caption, this);
  label->setBuddy(list);
  column->addWidget(label);
  column->addWidget(Binder().Bind(control, list, words), 1);
  connect(list, &QListWidget::itemDoubleClicked, this, [&control] { control.UserDoubleClick(); });
  return list;
}

void PlayerWindow::AddProgress(QVBoxLayout& rows) {
  rows.addWidget(Binder().Bind(form_.lblProgress, MakeLine(this), {"%1", "%1"}));
  auto* progress = new QProgressBar(this);
  progress->setTextVisible(false);
  progress->setAccessibleName("Position in the file");
  progress->setFixedHeight(progress->fontMetrics().height() / 2);
  QSizePolicy keeps = progress->sizePolicy();
  keeps.setRetainSizeWhenHidden(true);
  progress->setSizePolicy(keeps);
  rows.addWidget(progress);
  Binder().Watch(form_.prgPlay, [this, progress] {
    progress->setVisible(form_.prgPlay.visible);
    progress->setValue(form_.prgPlay.percent);
  });
  rows.addWidget(Binder().Bind(form_.lblProblem, new ErrorLabel(this), {"%1"}));
}

QHBoxLayout* PlayerWindow::MakeBottomRow() {
  auto* row = new QHBoxLayout;
  row->addWidget(Binder().Bind(form_.chkPtt, new QCheckBox(this), {"%1", {}, 'K'}));
  row->addStretch();
  AddButton(*row, form_.CmdPlay[0], {"%1", "Play the chosen file", 'P'});
  AddButton(*row, form_.CmdPlay[1], {"%1", "Stop playing, and let the rig receive", 'S'});
  return row;
}

void PlayerWindow::AddButton(QBoxLayout& row, const Button& control, const Words& words) {
  auto* button = new QPushButton(this);
  // Enter in a list acts on the list.
  button->setAutoDefault(false);
  row.addWidget(Binder().Bind(control, button, words));
}

void PlayerWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && files_->hasFocus()) return form_.File1.UserDoubleClick();
  if (enter && folders_->hasFocus()) return form_.Dir1.UserDoubleClick();
  FormDialog::keyPressEvent(event);
}

void PlayerWindow::showEvent(QShowEvent* event) {
  if (!place_.isNull()) move(place_);
  FormDialog::showEvent(event);
}

void PlayerWindow::hideEvent(QHideEvent* event) {
  place_ = pos();
  FormDialog::hideEvent(event);
}

}  // namespace velt
