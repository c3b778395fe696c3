// Message boxes, input boxes and pop-up menus as Qt windows that do not block.
//
// A box keeps the user from the window below it. It is not modal to Qt, where nothing at all could
// be reached; and boxes wait until the one before is gone.
#pragma once

#include <QDialog>
#include <QPointer>
#include <QWidget>
#include <deque>
#include <functional>
#include <memory>

#include "ports/prompts.h"

class QMenu;
class QMouseEvent;

namespace velt {

class QtPrompts : public QObject, public Prompts {
 public:
  ~QtPrompts() override;

  // The window that boxes belong to; they stand by themselves while there is none, and wait while
  // it is not shown.
  void SetOwner(QWidget* owner);

  void Tell(const MessagePrompt& box, std::function<void()> closed) override;
  void Ask(const MessagePrompt& box, std::function<void(bool)> answered) override;
  void Input(const InputPrompt& box,
             std::function<void(std::optional<std::string>)> answered) override;
  bool Popup(const PopupPlace& opener, const std::vector<PopupItem>& items,
             std::function<void(std::function<void()>)> closed) override;
  void DropAll() override;

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  // What a box stands over: the dialog that the user is at, if there is one.
  QWidget* Parent() const;
  bool IsBlocked(const QObject* watched) const;
  bool ReachesThrough(const QMouseEvent& press) const;
  // Makes the dialog when its turn has come.
  void Queue(std::function<QDialog*()> make);
  void OwnerIsPlaced();
  void ShowNextSoon();
  void ShowNext();
  using Chosen = std::shared_ptr<std::function<void()>>;
  static void Fill(QMenu& menu, const std::vector<PopupItem>& items, const Chosen& chosen);

  QPointer<QWidget> owner_;
  std::deque<std::function<QDialog*()>> waiting_;
  QPointer<QDialog> shown_;
  QPointer<QWidget> below_;    // what the last box stood over
  bool pressReaches_ = false;  // of the mouse, while a box is shown
  bool ownerPlaced_ = false;   // and shown: where it stands is known
  QPointer<QMenu> menu_;
  bool menuOpen_ = false;
  bool usesMouse_ = false;  // the user's last input to the owner
};

}  // namespace velt
