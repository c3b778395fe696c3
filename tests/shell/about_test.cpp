#include <gtest/gtest.h>

#include "platform/product_addresses.h"
#include "support/doubles.h"

namespace velt {
namespace {

struct AboutTest : testing::Test, ProgramFixture {
  AboutForm& form = program->aboutForm;

  AboutTest() {
    Start();
    Form().mnuabout.Click();
  }
};

TEST_F(AboutTest, ItTellsTheVersionAndOpensMailAndPages) {
  EXPECT_EQ(form.lblVersion.caption.Get(), "Version 3.1.4");
  EXPECT_FALSE(Form().Window.topMost);
  for (const Label* link : {&form.Label1, &form.Label2, &form.Label5}) link->Click();
  form.Image3.Click();
  EXPECT_EQ(launcher.opened, (std::vector<std::string>{
                                 "mailto:" + std::string(kAuthorMail) + "?subject=VELT-SA%20v314",
                                 kAuthorPage, kProgramPage, kDonationPage}));
  EXPECT_EQ(Told(form.Window.forwardWanted, [&] { Form().mnuabout.Click(); }), 1);
  form.cmdOK.Click();
  EXPECT_TRUE(Form().Window.topMost);
  Form().mnuabout.Click();
  form.Window.closeAsked.Raise();
  EXPECT_FALSE(form.Window.visible);
}

TEST_F(AboutTest, TheSystemInformationTellsWhatIsKnownAndTheRestLater) {
  SysInfoForm& info = program->sysInfoForm;
  Reachable(true);
  scheduler.Advance(Milliseconds(10000));
  program->installation.settingsFile = "/home/om/.config/VELT-SA.ini";
  system.description = "";
  form.cmdSysInfo.Click();
  ASSERT_EQ(prompts.told.size(), 1U);
  EXPECT_EQ(prompts.told[0].text, "System Information Is Unavailable At This Time");
  system.description = "Some System 12";
  session.facts.screens = {"one", "two"};
  form.cmdSysInfo.Click();
  form.cmdOK.Click();
  EXPECT_FALSE(Form().Window.topMost);
  session.facts.soundServer = "PulseAudio 16.1";
  session.learnt.Raise();
  info.cmdCopy.Click();
  EXPECT_EQ(info.lblCopied.caption.Get(), "Copied");
  EXPECT_EQ(info.lblReport.caption.Get(),
            "VELT-SA:         3.1.4\n"
            "System:          Some System 12\n"
            "Screen:          one\n"
            "Screen:          two\n"
            "Sound server:    PulseAudio 16.1\n"
            "CAT rig 1:       127.0.0.1:4532, linked, Simulated rig, in use\n"
            "CAT rig 2:       127.0.0.1:4534, stopped\n"
            "PTT:             CAT\n"
            "Engine:          none\n"
            "Engine folder:   /opt/engine\n"
            "Program folder:  /opt/velt\n"
            "Data folder:     ~/VELT\n"
            "Settings:        ~/.config/VELT-SA.ini\n");
  info.Window.closeAsked.Raise();
  EXPECT_FALSE(info.Window.visible);
  EXPECT_TRUE(Form().Window.topMost);
  EXPECT_EQ(session.asked, 2);
}

TEST_F(AboutTest, TheSystemsInformationToolIsFoundAndItsLackTold) {
  const std::string key = "SOFTWARE\\Microsoft\\Shared Tools";
  const std::string path = "/tools\\MSINFO32.EXE";
  using Paths = std::vector<std::filesystem::path>;
  SysInfoForm& info = program->sysInfoForm;
  form.cmdSysInfo.Click();
  EXPECT_FALSE(info.cmdTool.visible);
  system.tool = "/usr/bin/hardinfo";
  form.cmdSysInfo.Click();
  EXPECT_TRUE(info.cmdTool.visible);
  info.cmdTool.Click();
  system.registry[key + " Location\\MSINFO"] = {RegistryValue::kText, "/tools"};
  info.cmdTool.Click();  // the file is not there
  files.files[path] = "";
  info.cmdTool.Click();
  EXPECT_EQ(launcher.programs, (Paths{system.tool, system.tool, path}));
  EXPECT_TRUE(prompts.told.empty());
  launcher.programError = 2;
  info.cmdTool.Click();
  EXPECT_EQ(prompts.told.size(), 1U);
}

}  // namespace
}  // namespace velt
