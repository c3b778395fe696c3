// The one place where the program's texts become Qt's.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace velt {

// Texts are UTF-8. What is none comes from a file of an older system and is Latin-1.
QString ToQt(std::string_view text);
inline std::string FromQt(const QString& text) {
  return text.toStdString();
}

// A caption for a widget that does not treat "&" as an access mark.
QString PlainCaption(std::string_view caption);

}  // namespace velt
