#include "adapters/x11/x_connection.h"

#include <xcb/xcbext.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace velt {

XConnection::XConnection(Scheduler& scheduler, const std::string& display) : scheduler_(scheduler) {
  int screen = 0;
  connection_ = ::xcb_connect(display.empty() ? nullptr : display.c_str(), &screen);
  if (!Works()) return;
  auto screens = ::xcb_setup_roots_iterator(::xcb_get_setup(connection_));
  while (screen-- > 0 && screens.rem > 1) ::xcb_screen_next(&screens);
  root_ = screens.data->root;
  readable_ = std::make_unique<QSocketNotifier>(::xcb_get_file_descriptor(connection_),
                                                QSocketNotifier::Read);
  QObject::connect(readable_.get(), &QSocketNotifier::activated, readable_.get(),
                   [this] { Process(); });
}

XConnection::~XConnection() {
  readable_.reset();
  ::xcb_disconnect(connection_);
}

xcb_atom_t XConnection::Atom(const char* name) {
  const auto request =
      ::xcb_intern_atom(connection_, 0, static_cast<uint16_t>(std::strlen(name)), name);
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      ::xcb_intern_atom_reply(connection_, request, nullptr), &std::free);
  constexpr xcb_atom_t kNone = XCB_ATOM_NONE;
  return reply ? reply->atom : kNone;
}

// Sending may read, too, and what is read then makes no descriptor readable any more.
void XConnection::Send() {
  ::xcb_flush(connection_);
  if (processing_ || std::exchange(due_, true)) return;
  scheduler_.Post([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) Process();
  });
}

void XConnection::Settle() {
  while (Works() && !asked_.empty()) {
    xcb_generic_error_t* error = nullptr;
    void* reply = ::xcb_wait_for_reply(connection_, asked_.front().sequence, &error);
    std::free(error);
    Answer(reply);
  }
}

void XConnection::Process() {
  due_ = false;
  processing_ = true;
  for (bool more = true; more;) {
    more = TakeEvents();
    more |= TakeReplies();
  }
  processing_ = false;
  // Without a server there is no window either; that ends the program in its own way.
  if (!Works()) readable_->setEnabled(false);
}

bool XConnection::TakeEvents() {
  bool any = false;
  while (xcb_generic_event_t* event = ::xcb_poll_for_event(connection_)) {
    any = true;
    if (event->response_type != 0) happened.Raise(*event);
    std::free(event);
  }
  return any;
}

bool XConnection::TakeReplies() {
  bool any = false;
  while (Works() && !asked_.empty()) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (::xcb_poll_for_reply(connection_, asked_.front().sequence, &reply, &error) == 0) break;
    std::free(error);
    any = true;
    Answer(reply);
  }
  return any;
}

void XConnection::Answer(void* reply) {
  const auto answered = std::move(asked_.front().answered);
  asked_.pop_front();
  answered(reply);
  std::free(reply);
}

}  // namespace velt
