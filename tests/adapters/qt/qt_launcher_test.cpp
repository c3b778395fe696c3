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
  // What the desktop's tool does, whether there is a Java, and what is called.
  const std::vector<std::string> byJava{"java", "-jar"}, byDesktop;
  for (const auto& [xdgMime, java, command, calls] :
       {std::tuple{"echo runs.desktop", false, byJava, "xdg-open "},
        {"echo archives.desktop", true, byJava, "java -jar "},
        {"echo gone.desktop", false, byJava, ""},
        {"exit 3", true, byJava, "java -jar "},
        {"exit 3", false, byDesktop, "xdg-open "},
        {"exec /usr/bin/tail -f /dev/null", true, byJava, "java -jar "}}) {
    SCOPED_TRACE(xdgMime);
    const TempFolder folder;
    const auto script = [&](const std::string& name, const std::string& body) {
      folder.Write(name, "#!/bin/sh\n" + body + "\n");
      std::filesystem::permissions(folder / name, std::filesystem::perms::owner_all);
    };
    const std::string called = (folder / "called").string();
    script("xdg-mime", xdgMime);
    for (const char* name : {"xdg-open", java ? "java" : "other"}) {
      script(name, "echo \"${0##*/} $*|$(pwd)\" > '" + called + "'");
    }
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
    launcher.StartDocument(engine / "velt.jar", command,
                           [&answer](Launcher::Start start) { answer = start; });
    EXPECT_TRUE(LoopUntil([&] { return answer.has_value(); }));
    ::setenv("PATH", path.c_str(), 1);
    const bool starts = *calls != '\0';
    EXPECT_EQ(answer, starts ? Launcher::Start::Started : Launcher::Start::NoProgram);
    const std::string expected =
        starts ? calls + (engine / "velt.jar").string() + "|" + engine.string() + "\n"
               : "(no file)";
    EXPECT_TRUE(LoopUntil([&] { return folder.Read("called") == expected; }));
  }
}

}  // namespace
}  // namespace velt
