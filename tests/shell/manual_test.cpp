#include "shell/manual.h"

#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(Manual, IsOpenedFromTheProgramsFolderOrSaidToBeMissing) {
  ProgramFixture f;
  f.Start();
  f.Form().mnumanual.Click();
  EXPECT_TRUE(f.launcher.opened.empty());
  EXPECT_EQ(f.Form().lblMessage.caption.Get(),
            "No manual found: there is no /opt/velt/Manual VELT-SA.pdf");
  f.files.files["/opt/velt/Manual VELT-SA.pdf"] = "";
  f.Form().Image2.Click();  // from the menu below its button
  EXPECT_EQ(f.prompts.popupPlace.left, f.Form().Image2.place.Get().left);
  EXPECT_EQ(f.prompts.popupPlace.height, f.Form().Image2.place.Get().height);
  EXPECT_TRUE(f.prompts.Choose("&Manual VELT-SA"));
  EXPECT_EQ(f.launcher.opened, std::vector<std::string>{"/opt/velt/Manual VELT-SA.pdf"});
}

}  // namespace
}  // namespace velt
