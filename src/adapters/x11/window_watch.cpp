#include "adapters/x11/window_watch.h"

#include <algorithm>
#include <utility>

#include "adapters/x11/property_text.h"

namespace velt {
namespace {

constexpr uint32_t kMostWords = 4096;  // of a property, four bytes each
constexpr uint32_t kSourceUser = 2;    // a request that the user has made, not the program
constexpr int kTreeDepth = 3;

constexpr uint32_t kWindowEvents =
    XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE;
constexpr uint32_t kRootEvents = XCB_EVENT_MASK_PROPERTY_CHANGE |
                                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE;

xcb_window_t FirstWindow(const xcb_get_property_reply_t* reply) {
  if (reply == nullptr || reply->format != 32 || ::xcb_get_property_value_length(reply) < 4)
    return 0;
  return *static_cast<const xcb_window_t*>(::xcb_get_property_value(reply));
}

void Select(const XConnection& server, xcb_window_t window, uint32_t events) {
  ::xcb_change_window_attributes(server.Get(), window, XCB_CW_EVENT_MASK, &events);
}

}  // namespace

WindowWatch::WindowWatch(XConnection& server)
    : server_(server),
      clientList_(server_.Atom("_NET_CLIENT_LIST")),
      activeWindow_(server_.Atom("_NET_ACTIVE_WINDOW")),
      managerCheck_(server_.Atom("_NET_SUPPORTING_WM_CHECK")),
      netName_(server_.Atom("_NET_WM_NAME")),
      utf8_(server_.Atom("UTF8_STRING")),
      closeWindow_(server_.Atom("_NET_CLOSE_WINDOW")),
      protocols_(server_.Atom("WM_PROTOCOLS")),
      takeFocus_(server_.Atom("WM_TAKE_FOCUS")),
      deleteWindow_(server_.Atom("WM_DELETE_WINDOW")) {
  connections_ += server_.happened.Listen([this](const xcb_generic_event_t& e) { Hear(e); });
  Select(server_, server_.Root(), kRootEvents);
  FindManager();
  server_.Settle();
}

xcb_window_t WindowWatch::Find(const std::string& title) const {
  for (const Window& window : windows_) {
    if (title == (window.title.empty() ? window.oldTitle : window.title)) return window.id;
  }
  return 0;
}

void WindowWatch::Activate(xcb_window_t window) {
  if (manager_ != 0) {
    SendMessage(server_.Root(), window,
                XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                activeWindow_, {kSourceUser, XCB_CURRENT_TIME, 0, 0, 0});
  } else {
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    ::xcb_configure_window(server_.Get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    SendMessage(window, window, XCB_EVENT_MASK_NO_EVENT, protocols_,
                {takeFocus_, XCB_CURRENT_TIME, 0, 0, 0});
  }
  server_.Send();
}

void WindowWatch::Close(xcb_window_t window) {
  if (manager_ != 0) {
    SendMessage(server_.Root(), window,
                XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                closeWindow_, {XCB_CURRENT_TIME, kSourceUser, 0, 0, 0});
  } else {
    SendMessage(window, window, XCB_EVENT_MASK_NO_EVENT, protocols_,
                {deleteWindow_, XCB_CURRENT_TIME, 0, 0, 0});
  }
  server_.Send();
}

void WindowWatch::LookAtActive(std::function<void()> done) {
  if (manager_ == 0) {
    return LookAtFocus([this, done = std::move(done)](const Focus& focus) {
      SetActive(focus.window);
      done();
    });
  }
  server_.Ask<xcb_get_property_reply_t>(
      ::xcb_get_property(server_.Get(), 0, server_.Root(), activeWindow_, XCB_ATOM_WINDOW, 0, 1),
      [this, done = std::move(done)](const xcb_get_property_reply_t* reply) {
        SetActive(FirstWindow(reply));
        done();
      });
}

void WindowWatch::LookAtFocus(std::function<void(const Focus&)> told) {
  server_.Ask<xcb_get_input_focus_reply_t>(
      ::xcb_get_input_focus(server_.Get()),
      [this, told = std::move(told)](const xcb_get_input_focus_reply_t* reply) {
        const xcb_window_t keyboard = reply == nullptr ? 0 : reply->focus;
        Climb(keyboard, {.keyboard = keyboard}, told);
      });
}

// The keyboard is given to a window somewhere inside of the one that has the title.
void WindowWatch::Climb(xcb_window_t window, Focus focus, std::function<void(const Focus&)> told) {
  const Window* known = Known(window);
  if (known != nullptr && !(known->title + known->oldTitle).empty()) focus.window = window;
  if (window <= XCB_INPUT_FOCUS_POINTER_ROOT || window == server_.Root()) return told(focus);
  server_.Ask<xcb_query_tree_reply_t>(
      ::xcb_query_tree(server_.Get(), window),
      [this, focus, told = std::move(told)](const xcb_query_tree_reply_t* reply) {
        Climb(reply == nullptr ? 0 : reply->parent, focus, told);
      });
}

void WindowWatch::SetActive(xcb_window_t window) {
  if (std::exchange(active_, window) != window) activeChanged.Raise();
}

void WindowWatch::Hear(const xcb_generic_event_t& event) {
  constexpr uint8_t kSent = 0x80;
  switch (event.response_type & ~kSent) {
    case XCB_PROPERTY_NOTIFY: {
      const auto& told = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      return HearProperty(told.window, told.atom);
    }
    case XCB_DESTROY_NOTIFY: {
      const auto& told = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
      Remove(told.window);
      if (told.window == manager_) SetManager(0);
      return;
    }
    case XCB_UNMAP_NOTIFY:
      if (manager_ == 0) Remove(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window);
      return;
    case XCB_MAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
      if (manager_ == 0) List();
      return;
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT:
      if (manager_ == 0) LookAtActive([] {});
      return;
    default:
      return;
  }
}

void WindowWatch::HearProperty(xcb_window_t window, xcb_atom_t property) {
  if (property == managerCheck_) {
    FindManager();
  } else if (window != server_.Root()) {
    const bool name = property == netName_ || property == XCB_ATOM_WM_NAME;
    if (name && Known(window) != nullptr) AskTitle(window);
  } else if (manager_ != 0 && property == clientList_) {
    List();
  } else if (manager_ != 0 && property == activeWindow_) {
    LookAtActive([] {});
  }
}

void WindowWatch::FindManager() {
  server_.Ask<xcb_get_property_reply_t>(
      ::xcb_get_property(server_.Get(), 0, server_.Root(), managerCheck_, XCB_ATOM_WINDOW, 0, 1),
      [this](const xcb_get_property_reply_t* reply) { VerifyManager(FirstWindow(reply)); });
}

// A window manager that has died leaves its properties behind, but not its window.
void WindowWatch::VerifyManager(xcb_window_t check) {
  if (check == 0) return SetManager(0);
  Select(server_, check, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
  server_.Ask<xcb_get_property_reply_t>(
      ::xcb_get_property(server_.Get(), 0, check, managerCheck_, XCB_ATOM_WINDOW, 0, 1),
      [this, check](const xcb_get_property_reply_t* reply) {
        SetManager(FirstWindow(reply) == check ? check : 0);
      });
}

void WindowWatch::SetManager(xcb_window_t check) {
  manager_ = check;
  List();
  LookAtActive([] {});
}

void WindowWatch::List() {
  if (manager_ != 0) {
    ListClients();
  } else {
    ListTree(server_.Root(), kTreeDepth);
  }
}

void WindowWatch::ListClients() {
  server_.Ask<xcb_get_property_reply_t>(
      ::xcb_get_property(server_.Get(), 0, server_.Root(), clientList_, XCB_ATOM_WINDOW, 0,
                         kMostWords),
      [this](const xcb_get_property_reply_t* reply) {
        if (reply == nullptr || manager_ == 0) return;
        const bool listed = reply->format == 32;
        Keep(static_cast<const xcb_window_t*>(::xcb_get_property_value(reply)),
             listed ? ::xcb_get_property_value_length(reply) / 4 : 0);
      });
}

void WindowWatch::ListTree(xcb_window_t below, int depth) {
  server_.Ask<xcb_query_tree_reply_t>(
      ::xcb_query_tree(server_.Get(), below), [this, depth](const xcb_query_tree_reply_t* reply) {
        if (reply == nullptr || manager_ != 0) return;
        const xcb_window_t* children = ::xcb_query_tree_children(reply);
        for (int i = 0; i < ::xcb_query_tree_children_length(reply); ++i) {
          AddIfSeen(children[i]);
          if (depth > 1) ListTree(children[i], depth - 1);
        }
      });
}

void WindowWatch::AddIfSeen(xcb_window_t window) {
  server_.Ask<xcb_get_window_attributes_reply_t>(
      ::xcb_get_window_attributes(server_.Get(), window),
      [this, window](const xcb_get_window_attributes_reply_t* reply) {
        if (reply == nullptr || manager_ != 0 || reply->map_state != XCB_MAP_STATE_VIEWABLE) return;
        Add(window);
      });
}

// Takes over a manager's list, in its order.
void WindowWatch::Keep(const xcb_window_t* windows, int count) {
  const auto listed = [&](const Window& window) {
    return std::find(windows, windows + count, window.id) != windows + count;
  };
  if (std::erase_if(windows_, [&](const Window& window) { return !listed(window); }) > 0) {
    titlesChanged.Raise();
  }
  for (int i = 0; i < count; ++i) Add(windows[i]);
}

void WindowWatch::Add(xcb_window_t window) {
  if (Known(window) != nullptr) return;
  windows_.push_back({window});
  Select(server_, window, kWindowEvents);
  AskTitle(window);
}

void WindowWatch::Remove(xcb_window_t window) {
  if (std::erase_if(windows_, [window](const Window& known) { return known.id == window; }) == 0)
    return;
  if (active_ == window) active_ = 0;
  titlesChanged.Raise();
}

void WindowWatch::AskTitle(xcb_window_t window) {
  const auto ask = [this, window](xcb_atom_t property, xcb_atom_t type,
                                  std::string Window::*which) {
    server_.Ask<xcb_get_property_reply_t>(
        ::xcb_get_property(server_.Get(), 0, window, property, type, 0, kMostWords),
        [this, window, which](const xcb_get_property_reply_t* reply) {
          SetTitle(window, which, PropertyText(reply));
        });
  };
  ask(netName_, utf8_, &Window::title);
  ask(XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, &Window::oldTitle);
}

void WindowWatch::SetTitle(xcb_window_t window, std::string Window::*which, std::string text) {
  Window* known = Known(window);
  if (known == nullptr || known->*which == text) return;
  known->*which = std::move(text);
  titlesChanged.Raise();
}

WindowWatch::Window* WindowWatch::Known(xcb_window_t window) {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [window](const Window& known) { return known.id == window; });
  return found == windows_.end() ? nullptr : &*found;
}

void WindowWatch::SendMessage(xcb_window_t to, xcb_window_t about, uint32_t mask, xcb_atom_t type,
                              const uint32_t (&data)[5]) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = about;
  message.type = type;
  std::copy(std::begin(data), std::end(data), message.data.data32);
  ::xcb_send_event(server_.Get(), 0, to, mask, reinterpret_cast<const char*>(&message));
}

}  // namespace velt
