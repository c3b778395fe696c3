// The manual's text against the program: it names no menu item, key, option or picture that is not
// there, and no key is left out.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <regex>
#include <set>
#include <string>

#include "app/options.h"
#include "support/doubles.h"
#include "support/process.h"

namespace velt {
namespace {

using Texts = std::set<std::string>;

Texts Found(const std::string& text, const char* pattern) {
  const std::regex wanted(pattern);
  Texts found;
  for (std::sregex_iterator at(text.begin(), text.end(), wanted), end; at != end; ++at) {
    found.insert(std::regex_replace(at->str(1), std::regex("\\s+"), " "));
  }
  return found;
}

void AddPaths(const std::string& above, const std::vector<MenuEntry>& menu, Texts& paths,
              Texts& keys) {
  for (const MenuEntry& entry : menu) {
    if (entry.item == nullptr) continue;
    // Without the marks of access keys.
    const std::string shown =
        std::regex_replace(entry.item->caption.Get(), std::regex("&(\\S)| +$"), "$1");
    const std::string path = above + " \u25B8 " + shown;
    paths.insert(path);
    if (!entry.shortcut.empty()) keys.insert(entry.shortcut);
    AddPaths(path, entry.entries, paths, keys);
  }
}

Texts Without(const Texts& all, const Texts& known) {
  Texts left;
  std::ranges::set_difference(all, known, std::inserter(left, left.end()));
  return left;
}

const std::filesystem::path kDocuments = VELT_DOCUMENTS;

TEST(Manual, NamesWhatTheProgramHas) {
  const std::string text = ReadText(kDocuments / "manual.md");
  ProgramFixture f;
  Texts paths, keys;
  AddPaths("Options", f.program->menus.options, paths, keys);
  AddPaths("File", f.program->menus.file, paths, keys);
  const Texts named = Found(text, "\\*\\*((?:Options|File)\\s\u25B8[^*]+)\\*\\*");
  EXPECT_GT(named.size(), 20U);
  EXPECT_EQ(Without(named, paths), Texts());
  EXPECT_EQ(Found(text, "\\| (F\\d+) \\|"), keys);
  EXPECT_EQ(Without(Found(text, "\\b(F\\d+)\\b"), keys), Texts{"F10"}) << "for Shift only";

  const std::string help = ParseOptions(std::array<std::string, 1>{"--help"}, "").text;
  for (const std::string& option : Found(text, "[`(](--[a-z0-9-]+)")) {
    EXPECT_TRUE(option == "--reset" || help.find(option) != std::string::npos) << option;
  }
  Texts pictures;
  for (const auto& entry : std::filesystem::directory_iterator(kDocuments / "pictures")) {
    pictures.insert("pictures/" + entry.path().filename().string());
  }
  EXPECT_EQ(Found(text, "\\]\\((pictures/[^)]+)\\)"), pictures);
}

TEST(Manual, IsMadeToBePrinted) {
  const std::string pdf = ReadText(VELT_MANUAL);
  // Of ten pages or more.
  EXPECT_TRUE(pdf.starts_with("%PDF") && pdf.find("/Count 1") != std::string::npos);
}

}  // namespace
}  // namespace velt
