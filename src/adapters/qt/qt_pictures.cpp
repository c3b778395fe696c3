#include "adapters/qt/qt_pictures.h"

#include <QBuffer>
#include <QByteArray>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

namespace velt {
namespace {

// Over the picture's own memory.
QImage ImageOf(const PictureView& picture) {
  return QImage(reinterpret_cast<const uchar*>(picture.pixels.data()), picture.width,
                picture.height, qsizetype{4} * picture.width, QImage::Format_RGB32);
}

}  // namespace

void QtPictures::CopyToClipboard(const PictureView& picture) {
  QClipboard* clipboard = QGuiApplication::clipboard();
  clipboard->clear();
  clipboard->setImage(ImageOf(picture).copy());
}

std::string QtPictures::Png(const PictureView& picture) const {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!ImageOf(picture).save(&buffer, "PNG")) return {};
  return bytes.toStdString();
}

}  // namespace velt
