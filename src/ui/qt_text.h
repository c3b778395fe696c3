// The one place where the program's texts become Qt's.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace velt {

inline QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string FromQt(const QString& text) {
  return text.toStdString();
}

// A caption for a widget that does not treat "&" as an access mark.
QString PlainCaption(std::string_view caption);

}  // namespace velt
