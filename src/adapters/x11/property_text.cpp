#include "adapters/x11/property_text.h"

#include <string_view>

namespace velt {

std::string PropertyText(const xcb_get_property_reply_t* reply) {
  if (reply == nullptr || reply->format != 8) return {};
  const std::string_view bytes(static_cast<const char*>(::xcb_get_property_value(reply)),
                               static_cast<size_t>(::xcb_get_property_value_length(reply)));
  if (reply->type != XCB_ATOM_STRING) return std::string(bytes);
  std::string text;  // from Latin-1
  for (const char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | (code >> 6));
      text += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return text;
}

}  // namespace velt
