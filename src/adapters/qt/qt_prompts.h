// Message boxes, input boxes and pop-up menus as Qt windows that do not block.
#pragma once

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QWidget>
#include <memory>

#include "ports/prompts.h"

class QMenu;

namespace velt {

class QtPrompts : public Prompts {
 public:
  ~QtPrompts() override;

  // The window that boxes belong to; they stand by themselves while there is none.
  void SetOwner(QWidget* owner) { owner_ = owner; }

  void Tell(const MessagePrompt& box, std::function<void()> closed) override;
  void Ask(const MessagePrompt& box, std::function<void(bool)> answered) override;
  void Input(const InputPrompt& box,
             std::function<void(std::optional<std::string>)> answered) override;
  bool Popup(const std::vector<PopupItem>& items,
             std::function<void(std::function<void()>)> closed) override;
  void DropAll() override;

 private:
  void Show(QDialog* dialog);
  using Chosen = std::shared_ptr<std::function<void()>>;
  static void Fill(QMenu& menu, const std::vector<PopupItem>& items, const Chosen& chosen);

  QPointer<QWidget> owner_;
  QList<QPointer<QWidget>> open_;
  QPointer<QMenu> menu_;
  bool menuOpen_ = false;
};

}  // namespace velt
