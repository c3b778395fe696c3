#include "adapters/x11/x_session.h"

#include <cstring>
#include <string_view>

namespace velt {
namespace {

constexpr uint32_t kLongestName = 64;  // in units of four bytes

auto AtomRequest(const XConnection& server, std::string_view name) {
  return ::xcb_intern_atom(server.Get(), 0, static_cast<uint16_t>(name.size()), name.data());
}

}  // namespace

XSession::XSession(XConnection& server) : server_(server) {}

void XSession::Ask() {
  if (!server_.Works()) return;
  const std::weak_ptr<char> alive = alive_;
  constexpr std::string_view kExtension = "XWAYLAND";
  server_.Ask<xcb_query_extension_reply_t>(
      ::xcb_query_extension(server_.Get(), static_cast<uint16_t>(kExtension.size()),
                            kExtension.data()),
      [this, alive](const xcb_query_extension_reply_t* reply) {
        if (alive.expired() || reply == nullptr || reply->present == 0) return;
        inXwayland_ = true;
        learnt.Raise();
      });
  const auto name = std::make_shared<xcb_atom_t>(0);
  server_.Ask<xcb_intern_atom_reply_t>(AtomRequest(server_, "_NET_WM_NAME"),
                                       [name](const xcb_intern_atom_reply_t* reply) {
                                         if (reply != nullptr) *name = reply->atom;
                                       });
  server_.Ask<xcb_intern_atom_reply_t>(AtomRequest(server_, "_NET_SUPPORTING_WM_CHECK"),
                                       [this, alive, name](const xcb_intern_atom_reply_t* reply) {
                                         if (!alive.expired() && reply != nullptr)
                                           AskManager(reply->atom, *name);
                                       });
}

void XSession::AskManager(xcb_atom_t check, xcb_atom_t name) {
  server_.Ask<xcb_get_property_reply_t>(
      ::xcb_get_property(server_.Get(), 0, server_.Root(), check, XCB_ATOM_WINDOW, 0, 1),
      [this, alive = std::weak_ptr(alive_), name](const xcb_get_property_reply_t* reply) {
        if (alive.expired()) return;
        if (reply == nullptr || reply->format != 32 || reply->value_len == 0) {
          windowManager_.clear();
          return;
        }
        xcb_window_t manager = 0;
        std::memcpy(&manager, ::xcb_get_property_value(reply), sizeof manager);
        AskName(manager, name);
      });
}

// A manager that has ended leaves the window's number behind: then nothing is told.
void XSession::AskName(xcb_window_t manager, xcb_atom_t name) {
  server_.Ask<xcb_get_property_reply_t>(
      ::xcb_get_property(server_.Get(), 0, manager, name, XCB_ATOM_ANY, 0, kLongestName),
      [this, alive = std::weak_ptr(alive_)](const xcb_get_property_reply_t* reply) {
        if (alive.expired()) return;
        windowManager_.clear();
        if (reply != nullptr && reply->format == 8) {
          windowManager_.assign(static_cast<const char*>(::xcb_get_property_value(reply)),
                                static_cast<size_t>(::xcb_get_property_value_length(reply)));
        }
        learnt.Raise();
      });
}

}  // namespace velt
