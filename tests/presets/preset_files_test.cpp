// The files of presets: their texts by themselves, and the program that starts and ends over real
// files in a folder of its own.
#include <gtest/gtest.h>

#include <filesystem>

#include "adapters/files/disk_files.h"
#include "adapters/files/full_disk.h"
#include "presets/preset_csv.h"
#include "presets/preset_text.h"
#include "support/doubles.h"
#include "support/temp_folder.h"
#include "text/formats.h"

namespace velt {
namespace {

namespace fs = std::filesystem;
using Fault = PresetTextFault;

// The program's own presets as their file has them, with one text in place of another.
std::string Text(const std::string& old = "", const std::string& replacement = "") {
  std::string text = PresetText(PresetTable());
  const size_t at = text.find(old);
  return at == std::string::npos ? "not found" : text.replace(at, old.size(), replacement);
}

std::string FirstLines(const std::string& text, int count) {
  size_t end = 0;
  while (count-- > 0) end = text.find('\n', end) + 1;
  return text.substr(0, end);
}

TEST(PresetText, ReadsWhatItWroteByteForByteAndAnythingElseNotAtAll) {
  PresetTable table;
  table.PresetModeList = "CW,,\xc3\xbcSB,";
  table.Cell(0, 0) = "M\xfcnchen, DX ";
  table.Cell(1, 0) = std::string("a\0b", 3);
  table.Cell(4, 8) = "";
  table.Cell(9, 17) = "L\r\nSB";
  const std::string text = PresetText(table);
  EXPECT_TRUE(
      text.starts_with(";Trekrik Presets Data v1.0, by KALVARO\r\n[Title]\r\nPresets\r\n"
                       "[Modes]\r\nCW,,\xc3\xbcSB,\r\n[Data]\r\nM\xfcnchen, DX \r\n1800\r\n"
                       "LSB\r\nP2\r\nLSB\r\n"));
  EXPECT_TRUE(text.ends_with("P6\r\nLSB\r\n[EOF]\r\n"));
  for (const std::string& read : {text, Without(text, '\r'), FirstLines(text, 136)}) {
    PresetTable again;
    EXPECT_EQ(ReadPresetText(read, again), Fault::None);
    EXPECT_EQ(PresetText(again), text);
  }
  const std::string modes = "CW,USB,LSB,AM,FM,DRM";
  std::map<Fault, std::vector<std::string>> others{
      {Fault::WrongHeader, {"", Text("Trekrik", "trekrik"), Text("KALVARO", "KALVARO ")}},
      {Fault::NoModes, {Text(modes, "USB"), Text(modes, ",")}},
      {Fault::LineTooLong, {Text("15m", std::string(10'000'000, 'x'))}},
      {Fault::None, {Text("[Title]\r\nPresets\r\n[Modes]", "a\r\n\r\nc")}}};
  for (int i = 1; i < 136; ++i) others[Fault::TooShort].push_back(FirstLines(text, i));
  for (const auto& [fault, texts] : others) {
    for (const std::string& other : texts) {
      PresetTable untouched;
      EXPECT_EQ(ReadPresetText(other, untouched), fault) << other.substr(0, 100);
      EXPECT_EQ(PresetText(untouched), Text());
    }
  }
}

std::string OldFile(const std::string& lastFrequency) {
  return "top, 160\r\n1800499\r\nb\r\n 3500000\r\nc\r\n7000000, x\r\n30 metres\r\n10100000\r\n"
         "\xc3\xa4\xc3\xb6\xc3\xbc\xc3\x9f\xe2\x82\xac!\r\n14243000\r\n"
         "f\r\n1\r\ng\r\n2\r\nh\r\n3\r\ni\r\n28000000\r\nlast\r\n" +
         lastFrequency;
}

TEST(PresetCsv, ComesBackAndTheFirstMistakeIsNamed) {
  PresetTable table;
  table.Cell(4, 0) = "20m, \"D\xdc\"";
  table.Cell(4, 8) = "14074.5";
  const std::string text = PresetCsv(table);
  EXPECT_EQ(FirstLines(text, 2),
            "band,band title,preset,frequency kHz,mode\r\n0,160m,0,1800,LSB\r\n");
  EXPECT_NE(text.find("\r\n4,\"20m, \"\"D\xdc\"\"\",2,14074.5,USB\r\n"), std::string::npos);
  for (const std::string& right : {text, "\xEF\xBB\xBF" + Without(text, '\r') + "\n\n"}) {
    PresetTable again;
    EXPECT_EQ(ReadPresetCsv(right, again), "");
    EXPECT_EQ(PresetText(again), PresetText(table));
  }
  using Case = std::tuple<std::string, std::string, std::vector<std::string>>;
  const std::string second = "\n0,160m,1", third = ",P3,LSB";
  const Case cases[] = {
      {"line 1: ", "band,", {"Band,", "band;"}},
      {"line 3, band: ", second, {"\nx,160m,1", "\n10,160m,1"}},
      {"line 3, band title: ",
       second,
       {"\n0,1m,1", "\n0,\"160m,1", "\n0,\"160m\"x,1", "\n0,\x01,1"}},
      {"line 3, preset: ", second, {"\n0,160m,6", "\n0,160m,0"}},
      {"line 4, frequency kHz: ",
       third,
       {",7o4,LSB", ",1e9,LSB", ",-7000,LSB", ",99999999999,LSB"}},
      {"line 4, mode: ", third, {",LSB,7074", ",P3", ",P3,LSB,x"}},
      {"line 61: there was no row for band 0, preset 2", "0,160m,2,P3,LSB\r\n", {""}}};
  for (const auto& [expected, right, wrongs] : cases) {
    for (const std::string& wrong : wrongs) {
      std::string bad = PresetCsv(PresetTable());
      bad.replace(bad.find(right), right.size(), wrong);
      PresetTable untouched;
      const std::string mistake = ReadPresetCsv(bad, untouched);
      EXPECT_TRUE(mistake.starts_with(expected)) << wrong << ": " << mistake;
      EXPECT_EQ(PresetText(untouched), Text());
    }
  }
}

struct PresetFilesTest : testing::Test, ProgramFixture {
  struct Disk : DiskFiles {
    std::function<void()> replaced = [] {};
    int Replace(const fs::path& path, std::string_view bytes, bool backup) override {
      replaced();
      return DiskFiles::Replace(path, bytes, backup);
    }
    bool removes = true;
    int Remove(const fs::path& path) override { return removes ? DiskFiles::Remove(path) : EPERM; }
  };
  const TempFolder folder;
  Disk realDisk;
  const std::string file = "ExpandPresets.ini", old = "FreqSets.ini";

  PresetFilesTest() {
    disk = &realDisk;
    setup.dataFolder = folder.Path();
  }
  // Starts over the files that are there; what was told before is forgotten.
  void Begin() {
    prompts.told.clear();
    Restart();
    Start();
  }
  std::string& Cell(int32_t band, int32_t column) { return program->presets.Cell(band, column); }
  std::string Table() { return PresetText(program->presets); }
  bool Is(const std::string& name) const { return fs::exists(folder / name); }
};

TEST_F(PresetFilesTest, AreWrittenAtTheEndWhenTheTableIsAnotherOne) {
  Begin();
  Close();
  EXPECT_EQ(folder.Read(file), Text());
  Begin();
  folder.Write(file, Text("160m", "by another"));
  Close();
  EXPECT_EQ(folder.Read(file), Text("160m", "by another")) << "nothing was changed here";
  Begin();
  Cell(4, 8) = "14074";
  realDisk.replaced = [this] { EXPECT_FALSE(program->rig.link.On()); };
  const FullDisk full;
  full.Fill();
  EXPECT_FALSE(Close());
  EXPECT_EQ(folder.Read(file), Text("160m", "by another"));
  full.Free();
  prompts.answer(true);
  scheduler.Advance(Milliseconds(5));
  EXPECT_TRUE(ended);
  EXPECT_EQ(folder.Read(file + ".bak"), Text("160m", "by another"));
  Begin();
  EXPECT_EQ(Cell(4, 8), "14074");
  Cell(4, 8) = "7";
  program->shutdown.mnucloseme_Click();
  fs::rename(folder / file, folder / "EXPANDPRESETS.ini");
  Begin();
  EXPECT_EQ(Cell(4, 8), "14074");
  const std::string kept = Table();
  setup.presets = PresetStore::Keeping::InMemory;
  folder.Write(old, OldFile("5"));
  Begin();
  EXPECT_EQ(Table(), Text());
  Cell(4, 8) = "7";
  Close();
  EXPECT_TRUE(Is(old));
  EXPECT_EQ(folder.Read("EXPANDPRESETS.ini"), kept);
}

TEST_F(PresetFilesTest, ThatCannotBeReadAreToldAndSetAsideBeforeTheyAreWrittenOver) {
  const auto error = [](int number) {
    return "Error opening INI. Error nr " + std::to_string(number);
  };
  const auto bytes = [this](const std::string& text) {
    return [this, text] { folder.Write(file, text); };
  };
  const auto has = [this](const std::string& name) {
    const fs::file_type type = fs::symlink_status(folder / name).type();
    return std::pair(type, type == fs::file_type::regular ? folder.Read(name) : "");
  };
  using Row = std::pair<std::function<void()>, std::string>;
  for (const auto& [put, title] :
       {Row{bytes("garbage"), "VELT-SA"}, Row{bytes(FirstLines(Text(), 135)), error(ENODATA)},
        Row{bytes(Text("CW,USB,LSB,AM,FM,DRM", "USB")), error(-1)},
        Row{bytes(Text("15m", std::string(10'000'000, 'x'))), error(EFBIG)},
        Row{[this] { fs::create_directory(folder / file); }, error(EISDIR)},
        Row{[this] { fs::create_symlink(file, folder / file); }, error(ELOOP)}}) {
    SCOPED_TRACE(title);
    put();
    const auto unreadable = has(file);
    folder.Write(file + ".damaged", "an older one");
    Begin();
    ASSERT_EQ(prompts.told.size(), 1U);
    EXPECT_EQ(prompts.told[0].title, title);
    EXPECT_EQ(Table(), Text());
    EXPECT_EQ(Form().cmbPresetMode.items.Get().size(), 6U);
    EXPECT_TRUE(Close()) << "nothing was changed, nothing is asked";
    EXPECT_EQ(has(file), unreadable);
    const FullDisk full;
    for (const bool isFull : {true, false}) {
      Begin();
      Cell(0, 0) = "new";
      if (isFull) full.Fill();
      Close(Shutdown::ClosedBy::System);
      full.Free();
      EXPECT_TRUE(!isFull || has(file) == unreadable);
    }
    EXPECT_EQ(folder.Read(file), Text("160m", "new"));
    EXPECT_EQ(folder.Read(file + ".damaged"), "an older one");
    EXPECT_EQ(has(file + ".damaged.2"), unreadable);
    EXPECT_FALSE(Is(file + ".bak"));
    for (const char* ending : {"", ".damaged", ".damaged.2"}) fs::remove(folder / (file + ending));
  }
  program->presetFiles.OpenExpandedPresets();
  EXPECT_EQ(prompts.told.back().title, error(ENOENT));

  fs::create_symlink("there.ini", folder / file);  // of a disk that is not there yet
  Begin();
  Cell(0, 0) = "new";
  EXPECT_TRUE(Close());
  EXPECT_EQ(folder.Read("there.ini"), Text("160m", "new"));
  EXPECT_TRUE(fs::is_symlink(folder / file));
}

TEST_F(PresetFilesTest, OfTheOldKindAreConvertedOnceAndGoWhenTheNewOneIsThere) {
  const auto expectConverted = [this] {
    EXPECT_EQ(Cell(0, 0) + Cell(3, 0) + Cell(9, 0), "top, 30 me6m");
    EXPECT_EQ(Cell(4, 0), "\xc3\xa4\xc3\xb6\xc3\xbc\xc3\x9f\xe2\x82\xac");
    EXPECT_EQ(Cell(0, 6) + Cell(1, 6) + Cell(2, 6) + Cell(4, 6) + Cell(5, 6) + Cell(9, 6),
              "18003500700014243050000");
    EXPECT_EQ(Cell(2, 17) + Cell(3, 12) + Cell(4, 12) + Cell(8, 7), "LSBCWUSBP2");
  };
  for (const bool isFull : {false, true}) {
    folder.Write(old, OldFile("5"));
    folder.Write(file, Text("160m", "before"));
    const FullDisk full;
    if (isFull) full.Fill();
    Begin();
    full.Free();
    expectConverted();
    EXPECT_EQ(Is(old), isFull);
    if (isFull) Close();
    EXPECT_EQ(folder.Read(file), Table()) << "a crash from now on loses nothing";
    EXPECT_EQ(folder.Read(file + ".bak"), Text("160m", "before"));
    EXPECT_FALSE(Is(old));
  }

  // An old file that stays is told, and does not push the user's own table out of the backup.
  folder.Write(file, Text("160m", "mine"));
  folder.Write(old, OldFile("5"));
  realDisk.removes = false;
  for (int start = 0; start < 2; ++start) {
    Begin();
    expectConverted();
    EXPECT_EQ(Form().lblMessage.caption.Get(),
              "FreqSets.ini cannot be deleted and will be converted again");
    EXPECT_TRUE(Close());
    EXPECT_EQ(folder.Read(file + ".bak"), Text("160m", "mine"));
  }
  realDisk.removes = true;

  // What is no such table, with a new file beside it and without.
  for (const std::string& bad : {OldFile("ten"), FirstLines(OldFile(""), 19), OldFile("1e9999"),
                                 OldFile("99999999999"), std::string(100, '\0')}) {
    folder.Write(old, bad);
    const std::string kept = Is(file) ? folder.Read(file) : Text();
    Begin();
    EXPECT_EQ(Table(), kept) << bad;
    EXPECT_TRUE(prompts.told.empty() && !Is(old));
    EXPECT_EQ(folder.Read(old + ".damaged"), bad);
    for (const std::string& name : {file, old + ".damaged"}) fs::remove(folder / name);
  }
}

TEST_F(PresetFilesTest, TakeOverATableAtOnceAndKeepTheOldOne) {
  Begin();
  Cell(1, 0) = "edited";
  const std::string edited = Table();
  PresetTable other;
  other.Cell(9, 0) = "4m";
  folder.Write("other.csv", PresetCsv(other));
  PresetFiles& presetFiles = program->presetFiles;
  for (int times = 0; times < 2; ++times) {
    EXPECT_EQ(presetFiles.ImportPresets(folder / "other.csv"), "");
    EXPECT_EQ(folder.Read(file), PresetText(other));
    EXPECT_EQ(folder.Read(file + ".bak"), edited);
  }
  fs::create_symlink(file, folder / "link.csv");
  for (const std::string& name : {file, std::string("link.csv")}) {
    EXPECT_NE(presetFiles.ExportPresets(folder / name), "");
  }
  EXPECT_EQ(folder.Read(file), PresetText(other));

  folder.Write("other.csv", PresetCsv(PresetTable()));
  folder.Write(file, "damaged");
  Begin();
  EXPECT_EQ(program->presetFiles.ImportPresets(folder / "other.csv"), "");
  EXPECT_EQ(folder.Read(file) + folder.Read(file + ".damaged"), Text() + "damaged");
}

}  // namespace
}  // namespace velt
