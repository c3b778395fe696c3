// Which windows there are, with their titles, and which one has the keyboard: kept up to date by
// the server's events. Without a window manager, the windows of the tree that have a title.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "adapters/x11/x_connection.h"

namespace velt {

class WindowWatch {
 public:
  // Knows everything when it is made; waits for the server's answers for that.
  explicit WindowWatch(XConnection& server);

  Event<> titlesChanged;
  Event<> activeChanged;

  // 0 when there is none. Of several the one that was there first.
  xcb_window_t Find(const std::string& title) const;
  // The one that keys go to; 0 when none of the windows known is.
  xcb_window_t Active() const { return active_; }

  // Both only ask; what comes of it is told by the events.
  void Activate(xcb_window_t window);
  void Close(xcb_window_t window);

  // Asks again which window is the active one and calls `done` when that is known.
  void LookAtActive(std::function<void()> done);

  struct Focus {
    xcb_window_t window = 0;    // the one known that it is in; 0: none
    xcb_window_t keyboard = 0;  // the very window that gets the keys
  };
  // Asks which window keys go to now. A manager tells a little later which one is active.
  void LookAtFocus(std::function<void(const Focus&)> told);

 private:
  struct Window {
    xcb_window_t id;
    std::string title = {};
    std::string oldTitle = {};  // WM_NAME, of programs that set nothing else
  };

  void Hear(const xcb_generic_event_t& event);
  void HearProperty(xcb_window_t window, xcb_atom_t property);

  void FindManager();
  void VerifyManager(xcb_window_t check);
  void SetManager(xcb_window_t check);
  void List();
  void ListClients();
  void ListTree(xcb_window_t below, int depth);
  void AddIfSeen(xcb_window_t window);
  void Keep(const xcb_window_t* windows, int count);
  void Add(xcb_window_t window);
  void Remove(xcb_window_t window);
  void AskTitle(xcb_window_t window);
  void SetTitle(xcb_window_t window, std::string Window::*which, std::string text);
  void Climb(xcb_window_t window, Focus focus, std::function<void(const Focus&)> told);
  void SetActive(xcb_window_t window);
  Window* Known(xcb_window_t window);
  void SendMessage(xcb_window_t to, xcb_window_t about, uint32_t mask, xcb_atom_t type,
                   const uint32_t (&data)[5]);

  XConnection& server_;
  const xcb_atom_t clientList_, activeWindow_, managerCheck_, netName_, utf8_, closeWindow_,
      protocols_, takeFocus_, deleteWindow_;
  xcb_window_t manager_ = 0;  // its window; 0: there is none
  std::vector<Window> windows_;
  xcb_window_t active_ = 0;
  Connections connections_;
};

}  // namespace velt
