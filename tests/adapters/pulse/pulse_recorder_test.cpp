// Where a recording comes from, and how it ends when that goes away.
#include "adapters/pulse/pulse_recorder.h"

#include <gtest/gtest.h>

#include "support/pulse_server.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using namespace std::chrono_literals;

struct FakeWriter : SoundWriter {
  std::string begun;  // the file and its rate; empty: nothing is written
  std::atomic<size_t> samples = 0;
  void Begin(const std::filesystem::path& file, int32_t rateHz) override {
    begun = file.string() + " " + std::to_string(rateHz);
    happened.Raise({WriterEvent::Kind::Created, file});
  }
  void Write(std::span<const int16_t> more) override { samples += more.size(); }
  void WriteSilence(size_t more) override { samples += more; }
  void End() override { begun.clear(); }
};

TEST(PulseRecorder, RecordsWhatIsHeardFollowsItAndEndsWithIt) {
  PulseServer server;
  server.ExportEnvironment();
  server.Pactl({"load-module", "module-null-source", "source_name=mic", "description=Mic"});
  server.Pactl({"load-module", "module-null-source", "source_name=line", "description=Line"});
  server.Pactl({"set-default-source", "test.monitor"});
  VirtualScheduler scheduler;
  FakeWriter writer;
  PulseRecorder recorder(scheduler, writer);
  std::string told;
  const auto listening = recorder.happened.Listen([&told](const RecorderEvent& event) {
    constexpr const char* kinds[] = {"Started", "Moved", "NextFile", "Failed", "Finished"};
    told += kinds[static_cast<int>(event.kind)] + (" " + event.text + "|") + event.file.string();
  });
  const auto tells = [&](const std::string& expected) {
    WaitUntil([&] { return scheduler.RunPosted(), told == expected; }, 5s);
    EXPECT_EQ(std::exchange(told, ""), expected);
    EXPECT_EQ(writer.begun.empty(), expected.starts_with("Failed"));
  };
  const auto record = [&](const RecordingSource& source) {
    recorder.Open(source, 22050);
    recorder.Record();
    recorder.SaveAs("/W/a.wav");
    tells("Started |/W/a.wav");
    EXPECT_EQ(writer.begun, "/W/a.wav 22050");
    const size_t before = writer.samples;
    EXPECT_TRUE(WaitUntil([&] { return writer.samples > before; }, 5s));
  };
  const auto move = [&server](const std::string& name) {
    const std::string outputs = server.Pactl({"list", "short", "source-outputs"});
    server.Pactl({"move-source-output", outputs.substr(0, outputs.find('\t')), name});
  };

  // The user has moved the analyser's stream of the default: it is recorded from there.
  record({"", "mic"});
  move("line");
  tells("Moved Line|/W/a.wav");
  recorder.Close();
  EXPECT_TRUE(writer.begun.empty());
  // What was heard is the default: it is followed when that changes.
  record({"", "test.monitor"});
  server.Pactl({"set-default-source", "mic"});
  tells("Moved Mic|/W/a.wav");
  // A source chosen by name ends with it.
  record({"line", "line"});
  server.Pactl({"unload-module", "module-null-source"});
  tells("Failed Sound source Line was removed.|/W/a.wav");

  record({"", ""});
  server.Signal(SIGSTOP);
  scheduler.Advance(3000ms);
  scheduler.Advance(3000ms);
  tells("Failed The sound server has stopped delivering.|/W/a.wav");
  server.Signal(SIGCONT);
  record({"", ""});
  server.Kill();
  tells("Failed Sound server is gone.|/W/a.wav");
  recorder.Open({}, 44100);
  tells("Failed No sound server: Connection refused.|");
  recorder.Open({}, 0);
  scheduler.Advance(1ms);
  tells("Failed The sound server does not record 0 samples a second.|");
}

}  // namespace
}  // namespace velt
