#include "ui/about_window.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>

#include "ui/click_label.h"
#include "ui/face_palette.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kIcon = 64;
constexpr int kTextWidth = 340;
constexpr int kBesideIcon = 16;
constexpr int kBetweenTexts = 8;

void Enlarge(QWidget& widget) {
  QFont font = widget.font();
  font.setPointSizeF(font.pointSizeF() * 1.6);
  font.setBold(true);
  widget.setFont(font);
}

}  // namespace

AboutWindow::AboutWindow(AboutForm& form, QWidget* parent)
    : FormDialog(form, form.Window, parent), form_(form) {
  // Made in the order in which Tab walks through them.
  auto* rows = new QVBoxLayout(this);
  auto* upper = new QHBoxLayout;
  upper->setSpacing(kBesideIcon);
  auto* icon = new QLabel(this);
  icon->setPixmap(QApplication::windowIcon().pixmap(kIcon));
  upper->addWidget(icon, 0, Qt::AlignTop);
  upper->addWidget(MakeTexts(), 1);
  rows->addLayout(upper);
  rows->addStretch();
  rows->addSpacing(kBetweenTexts);
  rows->addWidget(MakeBottomRow());
  // Its texts have one width.
  rows->setSizeConstraint(QLayout::SetFixedSize);
  FollowForm();
}

QWidget* AboutWindow::MakeTexts() {
  auto* holder = new QWidget(this);
  auto* rows = new QVBoxLayout(holder);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(kBetweenTexts);
  auto* title = new QLabel("VELT-SA", this);
  Enlarge(*title);
  rows->addWidget(title);
  rows->addWidget(MakeText(form_.lblVersion, {"%1", "The program's version"}));
  rows->addWidget(MakeText(form_.lblDescription, {"%1"}));
  auto* links = new QGridLayout;
  links->setColumnStretch(1, 1);
  AddLink(*links, "Author:", form_.Label1, {"Mail to the author: %1", "Write to the author"});
  AddLink(*links, "Author's page:", form_.Label2,
          {"The author's page: %1", "Open the author's page"});
  AddLink(*links, "Program's page:", form_.Label5,
          {"The program's page: %1", "Open the program's page"});
  rows->addLayout(links);
  rows->addWidget(MakeText(form_.lblWarning, {"%1"}));
  return holder;
}

QLabel* AboutWindow::MakeText(const Label& control, const Words& words) {
  auto* text = new QLabel(this);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  text->setWordWrap(true);
  text->setFixedWidth(kTextWidth);
  return Binder().Bind(control, text, words);
}

void AboutWindow::AddLink(QGridLayout& grid, const QString& caption, Label& control,
                          const Words& words) {
  const int row = grid.rowCount();
  auto* name = new QLabel(caption, this);
  auto* link = new ClickLabel(this);
  link->SetSpokenRole(QAccessible::Link);
  link->SetAlignment(Qt::AlignLeft);
  QFont font = link->font();
  font.setUnderline(true);
  link->setFont(font);
  const QColor face = palette().color(QPalette::Window);
  const QColor ink = palette().color(QPalette::Link);
  link->SetFill({}, IsRead(ink, face) ? ink : palette().color(QPalette::WindowText));
  link->setFixedHeight(link->fontMetrics().height() + 4);
  Binder().Watch(control, [name, link, &control] {
    name->setVisible(control.visible);
    link->setFixedWidth(link->fontMetrics().horizontalAdvance(ToQt(control.caption.Get())) + 8);
  });
  grid.addWidget(name, row, 0);
  grid.addWidget(Binder().Bind(control, link, words), row, 1, Qt::AlignLeft);
}

QWidget* AboutWindow::MakeBottomRow() {
  auto* holder = new QWidget(this);
  auto* row = new QHBoxLayout(holder);
  row->setContentsMargins(0, 0, 0, 0);
  auto* info = Binder().Bind(form_.cmdSysInfo, new QPushButton(this),
                             {"%1", "What the program runs on, for a report of a fault", 'S'});
  info->setMinimumWidth(info->sizeHint().width() + kBetweenTexts);
  row->addWidget(info);
  row->addWidget(Binder().Bind(form_.Image3, new QPushButton(this),
                               {"%1", "Open the page for donations", 'D'}));
  row->addStretch();
  auto* close = new QPushButton(this);
  close->setDefault(true);
  row->addWidget(Binder().Bind(form_.cmdOK, close, {"%1", "Close this window"}));
  return holder;
}

}  // namespace velt
