#include "ui/about_window.h"

#include <QAccessible>
#include <QPushButton>

#include "ui/window_fixture.h"

namespace velt {
namespace {

struct AboutWindowTest : WindowFixture {
  AboutWindow box{program->aboutForm, &window};
};

TEST_F(AboutWindowTest, ItsLinksAndButtonsWorkByKeyboard) {
  program->aboutBox.mnuabout_Click();
  Turn();
  QApplication::setActiveWindow(&box);
  QWidget& mail = velt::Find(box, "Mail to the author");
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&mail)->role(), QAccessible::Link);
  QTest::keyClick(&mail, Qt::Key_Space);
  EXPECT_TRUE(QTest::qWaitFor([&] { return launcher.opened.size() == 1; }, 2000));
  mail.setFocus();
  for (const char* next :
       {"The author's page", "The program's page", "System Info...", "Donate...", "OK"}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &velt::Find(box, next)) << next;
  }
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  Turn();
  EXPECT_FALSE(box.isVisible());
}

}  // namespace
}  // namespace velt
