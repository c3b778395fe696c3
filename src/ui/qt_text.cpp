#include "ui/qt_text.h"

#include <QStringDecoder>

namespace velt {

QString ToQt(std::string_view text) {
  const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString decoded = decoder(bytes);
  return decoder.hasError() ? QString::fromLatin1(bytes) : decoded;
}

QString PlainCaption(std::string_view caption) {
  QString plain;
  const QString marked = ToQt(caption);
  for (qsizetype i = 0; i < marked.size(); ++i) {
    if (marked[i] == '&' && ++i == marked.size()) break;
    plain += marked[i];
  }
  return plain;
}

}  // namespace velt
