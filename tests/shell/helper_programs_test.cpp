#include "shell/helper_programs.h"

#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(HelperPrograms, AreLookedForAndStartedFromTheMenu) {
  ProgramFixture f;
  f.setup.installation.currentFolder = "/here";
  f.setup.installation.documentationFolder = "/doc";
  f.files.files["/opt/engine/velt.jar"] = "";
  f.Restart();
  f.Start();
  const auto choose = [&](const char* caption) {
    f.Form().Image2.Click();
    EXPECT_TRUE(f.prompts.Choose(caption)) << caption;
  };
  choose("&Manual VELT-SA");
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "Manual VELT-SA.pdf was not found");
  for (const std::string file :
       {"/doc/Manual VELT-SA.pdf", "/opt/velt/Manual VELT-SA.pdf", "/here/Manual VELT-J.pdf"}) {
    f.files.files[file] = "";
    choose(file.ends_with("J.pdf") ? "Manual VELT-J Engine" : "&Manual VELT-SA");
    EXPECT_EQ(f.launcher.started.back(), file);
  }

  f.launcher.answer(Launcher::Start::NoProgram);
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "There is no program that opens Manual VELT-J.pdf");

  choose("Run &Java Spectrum Analyzer");
  EXPECT_EQ(f.launcher.started.back(), "/opt/velt/Spectrum Analyzer.jar java -jar");
  choose("Profile Manager...");
  EXPECT_EQ(f.launcher.programs, std::vector<std::filesystem::path>{"/opt/velt/VELT-PM.exe"});
  EXPECT_TRUE(f.prompts.told.empty());
  f.launcher.programError = ENOENT;
  choose("Profile Manager...");
  EXPECT_EQ(f.prompts.told.back().text,
            "Error runninf Profile Manager (2) No such file or directory");
}

}  // namespace
}  // namespace velt
