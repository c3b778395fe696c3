#include "ui/message_view.h"

#include <QLabel>
#include <QVBoxLayout>

#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kTrackPixels = 270 / kTwipsPerPixel;

}  // namespace

MessageView::MessageView(MessageForm& form, QWidget* parent)
    : QDialog(parent), form_(form), binder_(form, FormBinder::Places::OfLayout) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  setFocusPolicy(Qt::NoFocus);
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(binder_.Bind(form_.Label1, new QLabel(this),
                               {"%1", "Closes by itself when the engine is there"}));
  auto* track = new QWidget(this);
  auto* moving = binder_.Bind(form_.lblani, new QLabel(track), {"Waiting", "VELT-SA is waiting"});
  moving->adjustSize();
  track->setFixedSize(moving->width() + kTrackPixels, moving->height());
  rows->addWidget(track, 0, Qt::AlignHCenter);
  binder_.Watch(form_.lblani, [this, moving] {
    moving->move(form_.lblani.leftTwips / kTwipsPerPixel, 0);
  });
  binder_.Watch(form_.Window, [this] { ShowWindow(); });
}

void MessageView::reject() {
  form_.Window.closeAsked.Raise();
  binder_.Sync();
}

void MessageView::ShowWindow() {
  setWindowTitle(ToQt(form_.Window.caption.Get()));
  setVisible(form_.Window.visible);
}

}  // namespace velt
