// A connection to an X server of this program's own, beside the one of its windows. Requests are
// sent and their answers taken when they have come: another client may hold the server for itself.
#pragma once

#include <xcb/xcb.h>

#include <QSocketNotifier>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "event/event.h"
#include "ports/scheduler.h"

namespace velt {

class XConnection {
 public:
  // `display`: the server's name; empty: what the session says. The server has to be one that
  // answers, as connecting waits for it.
  XConnection(Scheduler& scheduler, const std::string& display);
  ~XConnection();
  XConnection(const XConnection&) = delete;
  XConnection& operator=(const XConnection&) = delete;

  bool Works() const { return ::xcb_connection_has_error(connection_) == 0; }
  xcb_connection_t* Get() const { return connection_; }
  xcb_window_t Root() const { return root_; }

  // Waits for the server. Only before the loop runs.
  xcb_atom_t Atom(const char* name);

  // One of the server's events; errors of requests that were not asked about are not told.
  Event<const xcb_generic_event_t&> happened;

  // `answered` is called once with the request's reply, null where it failed.
  template <class Reply, class Cookie>
  void Ask(Cookie request, std::function<void(const Reply*)> answered) {
    asked_.push_back({request.sequence, [answered = std::move(answered)](const void* reply) {
                        answered(static_cast<const Reply*>(reply));
                      }});
    Send();
  }

  // What was requested goes out now.
  void Send();

  // Waits for the answers to all that was asked, and to what is asked by them. Only before the
  // loop runs.
  void Settle();

 private:
  struct Asked {
    unsigned int sequence;
    std::function<void(const void*)> answered;
  };

  void Process();
  bool TakeEvents();
  bool TakeReplies();
  void Answer(void* reply);

  Scheduler& scheduler_;
  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
  std::deque<Asked> asked_;  // answers come in this order
  bool processing_ = false;
  bool due_ = false;
  std::unique_ptr<QSocketNotifier> readable_;
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace velt
