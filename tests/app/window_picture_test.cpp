// The scale of the window, from the settings file to the picture.
#include <QImage>

#include "app/program_call.h"

namespace velt {
namespace {

TEST_F(CommandLine, TheStoredScaleMultipliesTheDesktops) {
  struct Row {
    const char* file;
    const char* stored;
    const char* desktop;
    QSize picture;
  };
  for (const Row& row : {Row{"VELT-SA.ini", "[Window]\nScale=150\n", "", {839, 246}},
                         {"VELT-SA.ini", "[Window]\nScale=150\n", "2", {1677, 492}},
                         {"VELT-SA.ini", "[Window]\nScale=130\n", "2", {1118, 328}},
                         {"VELT-SA.ini.bak", "[Window]\nScale=200\n", "", {1118, 328}}}) {
    const std::filesystem::path home = folder.Path() / "data";
    std::filesystem::remove_all(home);
    std::filesystem::create_directories(home);
    std::ofstream(home / "VELT-SA.ini") << "damaged";
    std::ofstream(home / row.file) << row.stored;
    const std::string desktop = std::string("QT_SCALE_FACTOR=") + row.desktop;
    const Result result = Call({"--demo", "--headless", "--seconds", "1", "--data-folder",
                                home.string(), "--screenshot", Path("window.png")},
                               With({desktop}));
    EXPECT_EQ(result.exitCode, 0) << result.said;
    EXPECT_EQ(QImage(QString::fromStdString(Path("window.png"))).size(), row.picture)
        << row.stored << row.desktop;
  }
}

}  // namespace
}  // namespace velt
