#include "ui/qt_text.h"

#include "text/utf8.h"

namespace velt {

QString ToQt(std::string_view text) {
  return QString::fromStdString(AsUtf8(text));
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
