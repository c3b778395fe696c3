#include "ui/spectrogram_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "text/paths.h"
#include "ui/error_label.h"
#include "ui/qt_text.h"
#include "ui/spectrogram_picture.h"

namespace velt {
namespace {

constexpr QSize kUsualPlot(780, 340);
constexpr QSize kSmallestPlot(200, 80);
constexpr int kProgressWidth = 200;

}  // namespace

SpectrogramView::SpectrogramView(std::function<const RecordingSpectrogram*()> source,
                                 QWidget* parent)
    : QWidget(parent), source_(std::move(source)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAttribute(Qt::WA_OpaquePaintEvent);
  Renew();
}

void SpectrogramView::Renew() {
  drawn_ = {};
  const RecordingSpectrogram* const shown = source_();
  setAccessibleName(shown == nullptr ? "No spectrogram"
                                     : "Spectrogram of " + ToQt(PathText(shown->file.filename())));
  setAccessibleDescription(shown == nullptr ? QString() : ToQt(StrongestText(*shown)));
  update();
}

QSize SpectrogramView::sizeHint() const {
  return kUsualPlot + SpectrogramFrame();
}

QSize SpectrogramView::minimumSizeHint() const {
  return kSmallestPlot + SpectrogramFrame();
}

void SpectrogramView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const RecordingSpectrogram* const shown = source_();
  if (shown == nullptr) {
    painter.fillRect(rect(), QColor(kSpectrogramGround));
    return;
  }
  const QSize wanted = (QSizeF(size()) * devicePixelRatioF()).toSize();
  if (drawn_.size() != wanted) {
    drawn_ = DrawSpectrogram(*shown, size() - SpectrogramFrame(), devicePixelRatioF());
  }
  painter.drawImage(QPoint(), drawn_);
}

SpectrogramWindow::SpectrogramWindow(SpectrogramForm& form,
                                     std::function<const RecordingSpectrogram*()> source,
                                     QWidget* parent)
    : FormDialog(form, form.Window, parent), form_(form) {
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setSizeGripEnabled(true);
  auto* rows = new QVBoxLayout(this);
  auto* view = new SpectrogramView(std::move(source), this);
  rows->addWidget(view, 1);
  Binder().Watch(form_.picSpectrogram, [view] { view->Renew(); });
  rows->addWidget(Binder().Bind(form_.lblProblem, new ErrorLabel(this),
                                {"%1", "What is wrong with the recording, or with saving"}));
  auto* row = new QHBoxLayout;
  rows->addLayout(row);
  auto* message = new QLabel(this);
  message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  row->addWidget(Binder().Bind(form_.lblMessage, message, {"%1", "What is done, or was"}), 1);
  auto* progress = new QProgressBar(this);
  progress->setFixedWidth(kProgressWidth);
  progress->setAccessibleName("Reading the recording");
  row->addWidget(progress);
  Binder().Watch(form_.prgWork, [this, progress] {
    progress->setVisible(form_.prgWork.visible);
    progress->setValue(form_.prgWork.percent);
  });
  AddButton(*row, form_.cmdCancel,
            {.name = "%1 reading",
             .toolTip = "Stop reading the recording",
             .accessKey = 'n',
             .toEnable = "Stops reading a recording; none is being read"});
  AddButton(*row, form_.cmdOpen,
            {.name = "%1", .toolTip = "Choose another recording", .accessKey = 'O'});
  AddButton(*row, form_.cmdSave,
            {.name = "%1",
             .toolTip = "Save the picture as a PNG file",
             .accessKey = 'S',
             .toEnable = "Saves the picture; there is none yet"});
  AddButton(*row, form_.cmdClose, {.name = "%1", .toolTip = "Close this window", .accessKey = 'C'});
  FollowForm();
}

void SpectrogramWindow::AddButton(QHBoxLayout& row, const Button& control, const Words& words) {
  auto* button = new QPushButton(this);
  button->setAutoDefault(false);
  row.addWidget(Binder().Bind(control, button, words));
}

}  // namespace velt
