#include "adapters/x11/property_text.h"

#include <string_view>

#include "text/utf8.h"

namespace velt {

std::string PropertyText(const xcb_get_property_reply_t* reply) {
  if (reply == nullptr || reply->format != 8) return {};
  const std::string_view bytes(static_cast<const char*>(::xcb_get_property_value(reply)),
                               static_cast<size_t>(::xcb_get_property_value_length(reply)));
  return reply->type == XCB_ATOM_STRING ? FromLatin1(bytes) : std::string(bytes);
}

}  // namespace velt
