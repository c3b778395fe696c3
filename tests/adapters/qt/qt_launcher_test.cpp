// How a document is started: by the desktop's program for it, or by a command.
#include "adapters/qt/qt_launcher.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "adapters/rigctld/live_loop.h"

namespace velt {
namespace {

// The desktop's tools and Java, as scripts in a PATH of their own that say what they were called
// with.
TEST(QtLauncher, TheDesktopsProgramGoesFirstUnlessItOnlyLooksIntoArchives) {
  struct Case {
    const char* xdgMime;  // what the desktop's tool does
    bool java;            // whether there is one
    Launcher::Start start;
    std::string called;
  };
  for (const Case& c :
       {Case{"echo runs.desktop", false, Launcher::Start::Started, "xdg-open "},
        Case{"echo archives.desktop", true, Launcher::Start::Started, "java -jar "},
        Case{"echo gone.desktop", false, Launcher::Start::NoProgram, "(no file)"},
        Case{"exit 3", true, Launcher::Start::Started, "java -jar "},
        Case{"exec /usr/bin/tail -f /dev/null", true, Launcher::Start::Started, "java -jar "}}) {
    SCOPED_TRACE(c.xdgMime);
    const TempFolder folder;
    const auto script = [&](const std::string& name, const std::string& body) {
      folder.Write(name, "#!/bin/sh\n" + body + "\n");
      std::filesystem::permissions(folder / name, std::filesystem::perms::owner_all);
    };
    const std::string called = (folder / "called").string();
    script("xdg-mime", c.xdgMime);
    for (const char* name : {"xdg-open", c.java ? "java" : "other"}) {
      script(name, "echo \"${0##*/} $*|$(pwd)\" > '" + called + "'");
    }
    std::filesystem::create_directory(folder / "applications");
    folder.Write("applications/runs.desktop", "[Desktop Entry]\nCategories=Java;\n");
    folder.Write("applications/archives.desktop", "[Desktop Entry]\nCategories=GTK;Archiving;\n");
    const std::filesystem::path engine = folder / "engine \xC3\xBC";
    std::filesystem::create_directory(engine);
    const std::string path = std::getenv("PATH");
    ::setenv("PATH", folder.Path().c_str(), 1);
    ::setenv("XDG_DATA_HOME", folder.Path().c_str(), 1);

    EnsureLoop();
    QtLauncher launcher;
    std::optional<Launcher::Start> answer;
    launcher.StartDocument(engine / "velt.jar", {"java", "-jar"},
                           [&answer](Launcher::Start start) { answer = start; });
    EXPECT_TRUE(LoopUntil([&] { return answer.has_value(); }));
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(answer, c.start);
    const std::string expected =
        c.start == Launcher::Start::Started
            ? c.called + (engine / "velt.jar").string() + "|" + engine.string() + "\n"
            : c.called;
    EXPECT_TRUE(LoopUntil([&] { return folder.Read("called") == expected; }));
  }
}

}  // namespace
}  // namespace velt
