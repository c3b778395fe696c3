#include "ui/about_window.h"

#include <QAccessible>

#include "ui/window_fixture.h"

namespace velt {
namespace {

using AboutWindowTest = WindowFixture;

TEST_F(AboutWindowTest, ItsLinksAndButtonsWorkByKeyboard) {
  AboutWindow box(program->aboutForm, &window);
  program->aboutBox.mnuabout_Click();
  Turn();
  QApplication::setActiveWindow(&box);
  QWidget& mail = velt::Find(box, "Mail to the author");
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&mail)->role(), QAccessible::Link);
  mail.setFocus();
  for (const char* next :
       {"The author's page", "The program's page", "System Info...", "Donate...", "OK"}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &velt::Find(box, next)) << next;
  }
  EXPECT_EQ(launcher.opened.size() + prompts.told.size(), 5U);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  Turn();
  EXPECT_FALSE(box.isVisible());
}

}  // namespace
}  // namespace velt
