#include <gtest/gtest.h>

#include "platform/product_addresses.h"
#include "support/doubles.h"

namespace velt {
namespace {

struct AboutTest : testing::Test, ProgramFixture {
  AboutForm& form = program->aboutForm;

  AboutTest() {
    Start();
    Form().Image2.Click();
    EXPECT_TRUE(prompts.Choose("&About"));
  }
};

TEST_F(AboutTest, ItTellsTheVersionAndOpensMailAndPages) {
  EXPECT_EQ(form.Window.caption.Get(), "About VELT-SA");
  EXPECT_EQ(form.lblVersion.caption.Get(), "Version 3.1.4");
  EXPECT_FALSE(Form().Window.topMost);
  for (const Label* link : {&form.Label1, &form.Label2, &form.Label5}) link->Click();
  form.Image3.Click();
  EXPECT_EQ(launcher.opened, (std::vector<std::string>{
                                 "mailto:" + std::string(kAuthorMail) + "?subject=VELT-SA%20v314",
                                 kAuthorPage, kProgramPage, kDonationPage}));
  int broughtForward = 0;
  const Connection forward = form.Window.forwardWanted.Listen([&] { ++broughtForward; });
  Form().mnuabout.Click();
  EXPECT_EQ(broughtForward, 1);
  form.cmdOK.Click();
  EXPECT_TRUE(Form().Window.topMost);
  Form().mnuabout.Click();
  form.Window.closeAsked.Raise();
  EXPECT_FALSE(form.Window.visible);
}

TEST_F(AboutTest, TheSystemsInformationToolIsFoundAndItsLackTold) {
  const std::string key = "SOFTWARE\\Microsoft\\Shared Tools";
  const std::string path = "/tools\\MSINFO32.EXE";
  using Paths = std::vector<std::filesystem::path>;
  form.cmdSysInfo.Click();
  ASSERT_EQ(prompts.told.size(), 1U);
  EXPECT_EQ(prompts.told[0].text, "System Information Is Unavailable At This Time");
  system.tool = "/usr/bin/hardinfo";
  form.cmdSysInfo.Click();
  system.registry[key + " Location\\MSINFO"] = {RegistryValue::kText, "/tools"};
  form.cmdSysInfo.Click();  // the file is not there
  files.files[path] = "";
  form.cmdSysInfo.Click();
  system.registry[key + "\\MSINFO\\PATH"] = {RegistryValue::kText, std::string("/info\0?", 7)};
  form.cmdSysInfo.Click();
  EXPECT_EQ(launcher.programs, (Paths{system.tool, system.tool, path, "/info"}));
  EXPECT_EQ(prompts.told.size(), 1U);
  launcher.programError = 2;
  form.cmdSysInfo.Click();
  EXPECT_EQ(prompts.told.size(), 2U);

  system.registry["K\\N"] = {RegistryValue::kNumber, std::string("\x01\x02\0\xFF", 4)};
  std::string value;
  EXPECT_TRUE(program->platform.GetKeyValue(RegistryRoot::LocalMachine, "K", "N", value));
  EXPECT_EQ(value, "4278190593");
}

}  // namespace
}  // namespace velt
