// The engine's files: whole ones, ones that are cut anywhere, and ones that are none at all.
#include "rig/engine_files.h"

#include <gtest/gtest.h>

#include <regex>

#include "rig/engine_wish.h"
#include "rig/serial_config.h"

namespace velt {
namespace {

constexpr const char* kStatus = "CW-USB\n300.5\n2700\n1\nlock_to_txcr\non\n";
constexpr const char* kCalibration =
    "10,20,30\r\n\"USB\",1,2,3\r\nLSB\r\n4\r\n5\r\n6\r\nCW-USB,7,8,9\r\nCW-LSB,-10,40000,12.5\r\n";

std::string Text(const EngineStatus& s) {
  return s.mode + "|" + std::to_string(s.values[0]) + "|" + std::to_string(s.values[1]) + "|" +
         std::to_string(s.values[2]) + "|" + s.transmitterLine + "|" + s.invertedSideband;
}

TEST(EngineFiles, WholeOnesAreReadItemByItem) {
  const Calibrations read = ReadCalibrations(FieldReader(kCalibration), {});
  EXPECT_EQ(read.Of("AM"), (Calibration{10, 20, 30}));
  EXPECT_EQ(read.Of("USB"), (Calibration{1, 2, 3}));
  EXPECT_EQ(read.Of("LSB"), (Calibration{4, 5, 6}));
  EXPECT_EQ(read.Of("CW-USB"), (Calibration{7, 8, 9}));
  EXPECT_EQ(read.Of("CW-LSB"), (Calibration{-10, 0, 12})) << "40000 has no 16 bits";
  EXPECT_EQ(StatusRxText(7074000, " TX ", 1500), "7074000\r\nTX\r\n1500\r\n");
}

// While the engine writes, the file ends anywhere. What is not there yet stays as it was, and no
// number is taken for the whole one of which it is the beginning.
TEST(EngineFiles, ACutFileChangesNothingThatItDoesNotHold) {
  const EngineStatus before{"AM", {1, 2, 3}, "usb", "off"};
  const std::string_view whole = kStatus;
  const std::regex expected(
      "(AM|CW-USB)\\|(1\\.|300\\.5)0*\\|(2|2700)\\.0*\\|[13]\\.0*\\|(usb|lock_to_txcr)\\|(off|on)");
  std::string read;
  for (size_t length = 0; length <= whole.size(); ++length) {
    const FieldReader cut(whole.substr(0, length), FieldReader::Tail::MayGoOn);
    read = Text(ReadEngineStatus(cut, before));
    EXPECT_TRUE(std::regex_match(read, expected)) << length;
  }
  EXPECT_EQ(read, "CW-USB|300.500000|2700.000000|1.000000|lock_to_txcr|on");
}

TEST(EngineFiles, OnlyWhatCanBeReadIsAskedOfTheTransmitter) {
  constexpr auto kWhole = FieldReader::Tail::Whole, kMayGoOn = FieldReader::Tail::MayGoOn;
  // What is read: state and frequency, "-" where there is none.
  using Case = std::tuple<std::string, FieldReader::Tail, std::string>;
  for (const auto& [text, tail, expected] :
       {Case{"on\n7074000\n", kMayGoOn, "on 7074000"}, Case{"on\r7074000\r", kWhole, "on 7074000"},
        Case{"on\r\n\"7074000\"\r\n", kWhole, "on 7074000"}, Case{"off\n7074", kMayGoOn, "off -"},
        Case{"off\n7074", kWhole, "off 7074"}, Case{"on", kMayGoOn, "- -"}, Case{"", kWhole, "- -"},
        Case{"off\n\n", kWhole, "off 0"}, Case{"off\n99999999999\n", kWhole, "off -"},
        Case{"off\n7074000Hz\n", kWhole, "off -"}, Case{"off\n1e400\n", kWhole, "off -"},
        Case{std::string("\0\n\0\n", 4), kWhole, std::string("\0 -", 3)},
        Case{"off\n\"7074000\n", kWhole, "off -"}}) {
    const TransmitFile read = ReadTransmitFile(FieldReader(text, tail));
    const auto hertz = read.frequencyHz ? std::to_string(*read.frequencyHz) : "-";
    EXPECT_EQ(read.state.value_or("-") + " " + hertz, expected) << text;
  }
}

TEST(EngineFiles, TheSerialPortIsConfiguredOnlyByAWholeFile) {
  // What is summed up: settings, method, lines; empty: the port is not used.
  const std::pair<const char*, const char*> cases[] = {
      {"3\n0\nnone\n8\n1\n0\nNONE\ncom\ndtr\n", "9600,N,8,1 COM DTR"},
      {"3,4800,Even,7,2,0,XON/XOFF,Arduino\nX\n", "4800,E,7,2 ARDUINO DTR RTS"},
      {"3\n4800\nodd\n8\n1\n0\nHARDWARE\nCOM\nRTS", "4800,O,8,1 COM RTS"},
      {"3\n4800\nN\n8\n1\n0\nNONE\nCOM\nnothing known\n", "4800,N,8,1 COM"},
      {"3\n4800\nN\n8\n1\n0\nNONE\nOmniRig\nDTR\n", ""},
      {"0\n4800\nN\n8\n1\n0\nNONE\nCOM\nDTR\n", ""},
      {"COM3\n4800\nN\n8\n1\n0\nNONE\nCOM\nDTR\n", ""},
      {"3\nfast\nN\n8\n1\n0\nNONE\nCOM\nDTR\n", ""},
  };
  for (const auto& [text, expected] : cases) {
    const SerialConfig config = ReadSerialConfig(text);
    const std::string summary = config.settings + " " + config.pttMethod +
                                (config.raisesDtr ? " DTR" : "") + (config.raisesRts ? " RTS" : "");
    EXPECT_EQ(config.UsesPort() ? summary : "", expected) << text;
    EXPECT_TRUE(config.UsesPort() || config.pttMethod == "NONE");
  }
  const std::string whole = cases[0].first;
  // Without its line end the last item is still all there.
  for (size_t length = 0; length + 4 < whole.size(); ++length) {
    EXPECT_FALSE(ReadSerialConfig(whole.substr(0, length)).UsesPort()) << length;
  }
}

// Each row is a way in which a state that means nothing could key.
TEST(EngineWish, OnlyAnOnThatFollowsAnOffOfTheSameWindowKeys) {
  using Change = EngineWish::Change;
  // What happens; the rounds: 1 on, 0 off, ? unreadable, w no window, W another one, p a pause;
  // what changes: K begins, R ends.
  using Case = std::tuple<const char*, std::string, const char*>;
  const Case cases[] = {
      {"on from the start", "11111", "....."},
      {"on after the window appeared", "ww111", "....."},
      {"off, then on", "0001100", "...K.R."},
      {"the first round only remembers", "011", "..."},
      {"off was read before the window", "w00w11", "......"},
      {"the window goes", "00011w11", "...K.R.."},
      {"another window", "0001W11", "...KR.."},
      {"a pause", "0001p110", "...KR..."},
      {"off was read before a pause", "000p11", "......"},
      {"unreadable once", "0001??11", "...K...."},
      {"unreadable for long", "0001???11", "...K..R.."},
      {"off was read before it could not be read", "000???1", "......."},
      {"again and again", "00010101", "...KRKRK"},
  };
  for (const auto& [what, rounds, expected] : cases) {
    EngineWish wish;
    uint32_t window = 7;
    std::string changes;
    for (const char round : rounds) {
      window += round == 'W' ? 1 : 0;
      const bool readable = round == '0' || round == '1' || round == 'W';
      const auto on = readable ? std::optional(round != '0') : std::nullopt;
      const Change change = round == 'p' ? wish.Pause() : wish.Round(round == 'w' ? 0 : window, on);
      changes += change == Change::Begins ? 'K' : change == Change::Ends ? 'R' : '.';
    }
    EXPECT_EQ(changes, expected) << what << ": " << rounds;
  }
}

}  // namespace
}  // namespace velt
