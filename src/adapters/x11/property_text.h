// The text in a property of a window.
#pragma once

#include <xcb/xcb.h>

#include <string>

namespace velt {

// In UTF-8; empty where there is no property or it holds no text. `reply` may be null.
std::string PropertyText(const xcb_get_property_reply_t* reply);

}  // namespace velt
