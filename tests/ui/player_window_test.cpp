#include "ui/player_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "ui/turn.h"

namespace velt {
namespace {

TEST(PlayerWindow, EveryControlIsReachedAndWorkedByKeys) {
  PlayerForm form;
  PlayerWindow window(form, nullptr);
  std::string done;
  Connections connections;
  const auto listen = [&](Event<>& event, const std::string& what) {
    connections += event.Listen([&done, what] { done += what + ";"; });
  };
  listen(form.File1.doubleClicked, "file");
  listen(form.Dir1.doubleClicked, "folder");
  listen(form.Drive1.listIndex.changed, "place");
  for (const auto& [index, button] : form.CmdPlay) listen(button->clicked, button->caption);
  for (const auto& [index, button] : form.cmdfiles) listen(button->clicked, button->caption);
  listen(form.chkPtt.value.changed, "key");
  form.Drive1.items = {"Recordings", "Home"};
  form.Drive1.listIndex = 0;
  form.Dir1.items = {"..", "old"};
  form.File1.items = {"a.wav", "b.wav"};
  form.fileListWanted.Raise();
  form.Window.visible = true;
  Turn();
  QApplication::setActiveWindow(&window);
  done.clear();

  QWidget* files = window.focusWidget();
  EXPECT_EQ(files->accessibleName(), "Files");
  EXPECT_EQ(form.File1.listIndex, -1) << "nothing is chosen unasked";
  QTest::keyClick(files, Qt::Key_Down);
  EXPECT_EQ(form.File1.listIndex, 0);
  QTest::keyClick(files, Qt::Key_Return);
  const std::string expected[] = {"Del;",  "Ren;",   "Run Explorer;", "key;", "Play;",
                                  "Stop;", "place;", "folder;",       "file;"};
  EXPECT_EQ(std::exchange(done, {}), "file;");
  for (const std::string& what : expected) {
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    QWidget* widget = window.focusWidget();
    const bool list = qobject_cast<QListWidget*>(widget) != nullptr;
    if (list || what == "place;") QTest::keyClick(widget, Qt::Key_Down);
    if (what != "place;") QTest::keyClick(widget, list ? Qt::Key_Return : Qt::Key_Space);
    EXPECT_EQ(std::exchange(done, {}), what);
  }
}

}  // namespace
}  // namespace velt
