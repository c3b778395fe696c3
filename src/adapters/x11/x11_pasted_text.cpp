#include "adapters/x11/x11_pasted_text.h"

#include <utility>

#include "adapters/x11/property_text.h"

namespace velt {
namespace {

constexpr uint32_t kMostWords = 16384;  // of four bytes; who pastes more does not mean a text field

}  // namespace

X11PastedText::X11PastedText(Scheduler& scheduler, const std::string& display)
    : scheduler_(scheduler), server_(scheduler, display) {
  if (!server_.Works()) return;
  clipboard_ = server_.Atom("CLIPBOARD");
  utf8_ = server_.Atom("UTF8_STRING");
  place_ = server_.Atom("PASTED_TEXT");
  window_ = ::xcb_generate_id(server_.Get());
  ::xcb_create_window(server_.Get(), 0, window_, server_.Root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  connections_ += server_.happened.Listen([this](const xcb_generic_event_t& event) {
    constexpr uint8_t kSent = 0x80;
    if ((event.response_type & ~kSent) == XCB_SELECTION_NOTIFY)
      Hear(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
  });
}

void X11PastedText::Ask(From from, std::function<void(const std::string&)> told) {
  told_ = std::move(told);
  from_ = from == From::Clipboard ? clipboard_ : xcb_atom_t{XCB_ATOM_PRIMARY};
  limit_ = scheduler_.After(kLimit, [this] { Tell({}); });
  Convert(utf8_);
}

void X11PastedText::Convert(xcb_atom_t kind) {
  ::xcb_convert_selection(server_.Get(), window_, from_, kind, place_, XCB_CURRENT_TIME);
  server_.Send();
}

// An owner that cannot give UTF-8 is asked for Latin-1. The answer to an earlier question may come
// late; it is known by where it comes from.
void X11PastedText::Hear(const xcb_selection_notify_event_t& answer) {
  if (!told_ || answer.selection != from_) return;
  if (answer.property == XCB_ATOM_NONE) {
    return answer.target == utf8_ ? Convert(XCB_ATOM_STRING) : Tell({});
  }
  server_.Ask<xcb_get_property_reply_t>(
      ::xcb_get_property(server_.Get(), 1, window_, place_, XCB_GET_PROPERTY_TYPE_ANY, 0,
                         kMostWords),
      [this](const xcb_get_property_reply_t* reply) { Tell(PropertyText(reply)); });
}

void X11PastedText::Tell(const std::string& text) {
  limit_.Cancel();
  if (const auto told = std::exchange(told_, nullptr)) told(text);
}

}  // namespace velt
