#include "ui/qt_text.h"

namespace velt {

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
