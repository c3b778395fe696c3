// Test doubles of the ports, and a whole program over them with a clock that a test advances.
#pragma once

#include <cerrno>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "adapters/files/memory_store.h"
#include "adapters/simulated_rig/simulated_rig.h"
#include "shell/program.h"
#include "support/fake_serial_port.h"
#include "support/virtual_scheduler.h"

namespace velt {

class FakeAudioInput : public AudioInput {
 public:
  enum class Answer { Opened, Failed, Nothing };
  Answer answer = Answer::Opened;
  TakeResult result = TakeResult::Block;
  std::vector<int16_t> samples = std::vector<int16_t>(kBlockSamples);
  bool open = false;
  bool watching = false;
  int opened = 0;
  std::string device;
  std::string source = "usb";  // what opens

  explicit FakeAudioInput(Scheduler& scheduler) : scheduler_(scheduler) {}
  std::vector<AudioDevice> Devices() const override { return devices; }
  void Open(const std::string& name) override {
    device = name;
    watching = false;
    ++opened;
    open = answer == Answer::Opened;
    if (answer == Answer::Opened) Tell(AudioEvent::Kind::Opened, source);
    if (answer == Answer::Failed) Tell(AudioEvent::Kind::OpenFailed, "No sound server.");
  }
  void Start() override {}
  TakeResult TakeNewest(std::span<int16_t, kBlockSamples> block) override {
    if (!open) return TakeResult::Gone;
    if (result == TakeResult::Block) std::copy(samples.begin(), samples.end(), block.begin());
    return result;
  }
  std::function<void()> closed = [] {};
  void Close() override {
    open = watching = false;
    closed();
  }
  void WatchForReturn() override { watching = true; }
  void Tell(AudioEvent::Kind kind, const std::string& text) {
    scheduler_.Post([this, kind, text] { happened.Raise({kind, text, "The " + text}); });
  }
  std::vector<AudioDevice> devices;

 private:
  Scheduler& scheduler_;
};

class FakeFiles : public Files {
 public:
  std::map<std::filesystem::path, std::string> files;
  std::set<std::filesystem::path> folders;
  std::set<std::filesystem::path> unmakable;
  bool writable = true;

  bool IsFile(const std::filesystem::path& path) const override { return files.contains(path); }
  bool IsFolder(const std::filesystem::path& path) const override {
    return folders.contains(path) || folders.contains(path.parent_path() / path.filename());
  }
  FileContent Read(const std::filesystem::path& path) const override {
    const auto found = files.find(path);
    return found == files.end() ? FileContent{ENOENT, ""} : FileContent{0, found->second};
  }
  int Replace(const std::filesystem::path& path, std::string_view bytes, bool) override {
    if (!writable) return EACCES;
    files[path] = bytes;
    return 0;
  }
  int Publish(const std::filesystem::path& path, std::string_view bytes) override {
    return Replace(path, bytes, false);
  }
  int ReplaceIfSame(const std::filesystem::path& path, std::string_view expected,
                    std::string_view bytes) override {
    return Read(path).bytes == expected ? Replace(path, bytes, false) : EAGAIN;
  }
  // Tells different contents apart.
  std::optional<FileStamp> Stamp(const std::filesystem::path& path) const override {
    const auto found = files.find(path);
    if (found == files.end()) return std::nullopt;
    return FileStamp{found->second.size(),
                     static_cast<int64_t>(std::hash<std::string>()(found->second)), 1};
  }
  std::vector<std::filesystem::path> Names(const std::filesystem::path&) const override {
    return {};
  }
  int Remove(const std::filesystem::path& path) override {
    return files.erase(path) == 1 ? 0 : ENOENT;
  }
  int Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
    if (files.contains(to)) return EEXIST;
    auto node = files.extract(from);
    if (node.empty()) return ENOENT;
    node.key() = to;
    files.insert(std::move(node));
    return 0;
  }
  int MakeFolder(const std::filesystem::path& path) override {
    if (!writable || unmakable.contains(path)) return EACCES;
    folders.insert(path);
    return 0;
  }
};

class FakePrompts : public Prompts {
 public:
  std::vector<MessagePrompt> told;
  std::vector<MessagePrompt> asked;
  std::vector<PopupItem> popup;
  std::function<void(std::function<void()>)> popupClosed;
  std::function<void(bool)> answer;
  std::function<void()> dismiss;
  std::function<void(std::optional<std::string>)> input;

  void Tell(const MessagePrompt& box, std::function<void()> closed) override {
    told.push_back(box);
    dismiss = std::move(closed);
  }
  void Ask(const MessagePrompt& box, std::function<void(bool)> answered) override {
    asked.push_back(box);
    answer = std::move(answered);
  }
  void Input(const InputPrompt&,
             std::function<void(std::optional<std::string>)> answered) override {
    input = std::move(answered);
  }
  bool Popup(const std::vector<PopupItem>& items,
             std::function<void(std::function<void()>)> closed) override {
    if (popupClosed) return false;
    popup = items;
    popupClosed = std::move(closed);
    return true;
  }
  void DropAll() override {
    popupClosed = nullptr;
    dismiss = nullptr;
    answer = nullptr;
  }
  // Closes the open pop-up with the line of that caption chosen; false: it has no such line.
  bool Choose(const std::string& caption) {
    const auto closed = std::exchange(popupClosed, nullptr);
    const auto chosen = Find(popup, caption);
    if (closed) closed(chosen);
    return closed && chosen;
  }

 private:
  static std::function<void()> Find(const std::vector<PopupItem>& items,
                                    const std::string& caption) {
    for (const PopupItem& item : items) {
      if (item.caption == caption) return item.choose;
      if (auto found = Find(item.items, caption)) return found;
    }
    return {};
  }
};

class FakeSystem : public SystemInfo {
 public:
  std::optional<SystemVersion> version = SystemVersion{5, 1, ""};
  std::string folder = "/windows";
  std::string registry;
  std::optional<SystemVersion> Version() const override { return version; }
  std::string SystemFolder() const override { return folder; }
  std::string SpecialFolder(int32_t identifier) const override {
    return identifier == 40 ? "/home/om" : "";
  }
  std::string RegistryString(RegistryRoot, const std::string&, const std::string&) const override {
    return registry;
  }
};

class FakeLauncher : public Launcher {
 public:
  std::vector<std::string> opened;
  void OpenDocument(const std::string& target) override { opened.push_back(target); }
};

class FakeLock : public InstanceLock {
 public:
  bool alone = true;
  bool TryHold() override { return alone; }
};

class FakeLog : public Log {
 public:
  std::vector<std::string> lines;
  void Write(LogLevel, const char*, std::string_view text) override { lines.emplace_back(text); }
};

class FakeClock : public Clock {
 public:
  explicit FakeClock(const Scheduler& scheduler) : scheduler_(scheduler) {}
  LocalTime now{2026, 3, 7, 9, 5, 1};
  Milliseconds slept{0};  // while the scheduler's time stood still
  LocalTime Now() const override { return now; }
  SteadyTime Elapsed() const override { return scheduler_.Now() + slept; }

 private:
  const Scheduler& scheduler_;
};

class FakeGuardian : public Guardian {
 public:
  bool present = true;
  std::map<uint32_t, ReleaseRecipe> held;
  std::vector<uint32_t> followed;
  int beats = 0;
  uint32_t Hold(const ReleaseRecipe& recipe) override {
    if (!present) return 0;
    held[++last_] = recipe;
    return last_;
  }
  void Forget(uint32_t ticket) override { held.erase(ticket); }
  void Follow(uint32_t ticket) override {
    if (held.erase(ticket) == 1) followed.push_back(ticket);
  }
  void Beat() override { ++beats; }

 private:
  uint32_t last_ = 0;
};

class FakeSleepLock : public SleepLock {
 public:
  bool held = false;
  void Hold() override { held = true; }
  void LetGo() override { held = false; }
};

class FakeStore : public MemoryStore {
 public:
  std::function<void()> committed = [] {};
  int error = 0;
  int Commit() override {
    committed();
    return error != 0 ? error : MemoryStore::Commit();
  }
};

// What has come to a simulated rig and was not taken yet.
class RigWrites {
 public:
  explicit RigWrites(SimulatedRig& rig)
      : connection_(rig.written.Listen([this](const std::string& w) { writes_.push_back(w); })) {}
  std::vector<std::string> Take() { return std::exchange(writes_, {}); }

 private:
  std::vector<std::string> writes_;
  Connection connection_;
};

// Everything around the program. A test may restart the program over the same surroundings.
struct ProgramFixture {
  VirtualScheduler scheduler;
  FakeClock clock{scheduler};
  FakeAudioInput audio{scheduler};
  SimulatedRigServer server{scheduler, {}};
  SimulatedRig& rig1 = server.Rig1();
  SimulatedRig& rig2 = server.Rig2();
  RigWrites writes1{rig1}, writes2{rig2};
  FakeGuardian guardian;
  FakeSleepLock sleepLock;
  FakeSerialPort serialPort{scheduler};
  FakeFiles files;
  FakeStore store;
  FakeSystem system;
  FakePrompts prompts;
  FakeLauncher launcher;
  FakeLock lock;
  FakeLog log;
  bool ended = false;
  RunSetup setup;  // of the next Restart
  std::unique_ptr<Program> program;
  Connections connections;

  ProgramFixture() {
    Reachable(false);
    setup.installation.version = {3, 1, 4};
    setup.installation.programFolder = "/opt/velt";
    setup.installation.engineFolder = "/opt/engine";
    Restart();
  }

  // Whether the rigs' servers are there.
  void Reachable(bool are) {
    for (SimulatedRig* rig : {&rig1, &rig2}) are ? rig->ComeBack() : rig->Vanish();
  }
  // Makes the program without starting it.
  Main& Restart() {
    program.reset();
    program = std::make_unique<Program>(Program::Ports{.scheduler = scheduler,
                                                       .clock = clock,
                                                       .audio = audio,
                                                       .server = server,
                                                       .guardian = guardian,
                                                       .sleepLock = sleepLock,
                                                       .serial = serialPort,
                                                       .files = files,
                                                       .settings = store,
                                                       .system = system,
                                                       .prompts = prompts,
                                                       .launcher = launcher,
                                                       .lock = lock,
                                                       .log = log},
                                        setup);
    ended = false;
    connections += program->shutdown.ended.Listen([this] { ended = true; });
    return program->form;
  }
  Startup::Result Start() {
    const auto result = program->startup.Run();
    scheduler.Advance(Milliseconds(10));
    return result;
  }
  Main& Form() { return program->form; }
  // Presses the start picture and lets the device open.
  void StartCapture() {
    Form().imgStartStop.Click();
    scheduler.RunPosted();
  }
  bool Close(Shutdown::ClosedBy by = Shutdown::ClosedBy::User) {
    bool cancel = false;
    program->shutdown.Form_Unload(cancel, by);
    return !cancel;
  }
  std::string Stored(const std::string& key) {
    return store.Get("VELT-SA", key).value_or("(missing)");
  }
};

}  // namespace velt
