#include "ui/sysinfo_window.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kColumns = 90;
constexpr int kLines = 20;

}  // namespace

SysInfoWindow::SysInfoWindow(SysInfoForm& form, QWidget* parent)
    : FormDialog(form, form.Window, parent), form_(form) {
  setSizeGripEnabled(true);
  // Made in the order in which Tab walks through them.
  auto* rows = new QVBoxLayout(this);
  auto* text = new QPlainTextEdit(this);
  text->setReadOnly(true);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  text->setAccessibleName("System information");
  const QFontMetrics metrics = text->fontMetrics();
  text->setMinimumSize(metrics.averageCharWidth() * kColumns, metrics.lineSpacing() * kLines);
  rows->addWidget(text, 1);
  // A selection stays while nothing has changed.
  Binder().Watch(form_.lblReport, [this, text] {
    const QString report = ToQt(form_.lblReport.caption.Get());
    if (text->toPlainText() != report) text->setPlainText(report);
  });

  auto* row = new QHBoxLayout;
  rows->addLayout(row);
  AddButton(
      *row, form_.cmdTool,
      {.name = "%1", .toolTip = "Start the desktop's own information tool", .accessKey = 'T'});
  row->addWidget(Binder().Bind(form_.lblCopied, new QLabel(this), {.name = "%1"}), 1);
  QPushButton* copy = AddButton(
      *row, form_.cmdCopy,
      {.name = "%1", .toolTip = "Copy this text to the clipboard, for a report", .accessKey = 'o'});
  connect(copy, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(ToQt(form_.lblReport.caption.Get())); });
  QPushButton* close = AddButton(*row, form_.cmdClose,
                                 {.name = "%1", .toolTip = "Close this window", .accessKey = 'C'});
  close->setDefault(true);
  FollowForm();
}

QPushButton* SysInfoWindow::AddButton(QHBoxLayout& row, const Button& control, const Words& words) {
  auto* button = new QPushButton(this);
  row.addWidget(Binder().Bind(control, button, words));
  return button;
}

}  // namespace velt
