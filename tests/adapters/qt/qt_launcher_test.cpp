// How a document is started: by the desktop's program for it, or by a command.
#include "adapters/qt/qt_launcher.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "adapters/rigctld/live_loop.h"

namespace velt {
namespace {

// The desktop's tools and Java, as scripts in a PATH of their own that say what they were called with.
TEST(QtLauncher, TheDesktopsProgramGoesFirstUnlessItOnlyLooksIntoArchives) {
  EnsureLoop();
  const std::string answerJava = "echo java.desktop", answerArchives = "echo archives.desktop";
  using Start = Launcher::Start;
  struct Case {
    const char* what;
    std::string xdgMime;  // what the script does; empty: there are no such tools
    bool java;
    Start start;
    std::string called;
  };
  for (const Case& c : {Case{"no desktop", "", true, Start::Started, "java -jar "},
                        Case{"no desktop, no Java", "", false, Start::NoProgram, ""},
                        Case{"a desktop that runs it", answerJava, false, Start::Started, "xdg-open "},
                        Case{"an archive manager", answerArchives, true, Start::Started, "java -jar "},
                        Case{"unknown to the desktop", "true", true, Start::Started, "java -jar "},
                        Case{"an entry that is gone", "echo gone.desktop", false, Start::NoProgram, ""},
                        Case{"a tool that fails", "exit 3", true, Start::Started, "java -jar "},
                        Case{"a tool that hangs", "read line < pipe", true, Start::Started,
                             "java -jar "}}) {
    SCOPED_TRACE(c.what);
    const TempFolder folder;
    const auto script = [&](const std::string& name, const std::string& body) {
      folder.Write(name, "#!/bin/sh\n" + body + "\n");
      std::filesystem::permissions(folder / name, std::filesystem::perms::owner_all);
    };
    const std::string tell =
        "echo \"${0##*/} $*|$(pwd)\" > '" + (folder / "part").string() + "'\n/bin/mv '" +
        (folder / "part").string() + "' '" + (folder / "called").string() + "'";
    if (!c.xdgMime.empty()) {
      script("xdg-mime", "cd '" + folder.Path().string() + "'\n" + c.xdgMime);
      script("xdg-open", tell);
      ASSERT_EQ(std::system(("mkfifo " + (folder / "pipe").string()).c_str()), 0);
    }
    if (c.java) script("java", tell);
    std::filesystem::create_directories(folder / "data/applications");
    folder.Write("data/applications/java.desktop", "[Desktop Entry]\nCategories=Java;\n");
    folder.Write("data/applications/archives.desktop",
                 "[Desktop Entry]\nCategories=GTK;Archiving;Compression;\n");
    const std::filesystem::path engine = folder / "engine \xC3\xBC";
    std::filesystem::create_directory(engine);
    const std::string path = std::getenv("PATH");
    ::setenv("PATH", folder.Path().c_str(), 1);
    ::setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);

    QtLauncher launcher;
    std::optional<Start> answer;
    launcher.StartDocument(engine / "velt.jar", {"java", "-jar"},
                           [&answer](Start start) { answer = start; });
    EXPECT_FALSE(answer) << "from within the call";
    EXPECT_TRUE(LoopUntil([&] { return answer.has_value(); }, std::chrono::seconds(5)));
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(answer, c.start);
    if (c.called.empty()) continue;
    EXPECT_TRUE(LoopUntil([&] { return std::filesystem::exists(folder / "called"); }));
    EXPECT_EQ(folder.Read("called"),
              c.called + (engine / "velt.jar").string() + "|" + engine.string() + "\n");
  }
}

}  // namespace
}  // namespace velt
