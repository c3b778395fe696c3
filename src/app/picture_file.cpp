#include "app/picture_file.h"

#include <QBuffer>
#include <QImage>
#include <cerrno>

#include "adapters/files/output_file.h"

namespace velt {

int WritePicture(const QImage& picture, OutputFile& file, PngEffort effort) {
  // Qt tells no reason for a file that it could not write, so it writes to memory.
  QBuffer png;
  const int quality = effort == PngEffort::Usual ? -1 : 85;
  if (!png.open(QIODevice::WriteOnly) || !picture.save(&png, "PNG", quality)) return ENOMEM;
  const QByteArray& bytes = png.data();
  file.Write({bytes.constData(), static_cast<size_t>(bytes.size())});
  return file.Commit();
}

}  // namespace velt
