// Test doubles of the ports, and a whole program over them with a clock that a test advances.
#pragma once

#include <cerrno>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "adapters/files/memory_store.h"
#include "shell/program.h"
#include "support/fake_rig.h"
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
  void Close() override { open = watching = false; }
  void WatchForReturn() override { watching = true; }
  void Tell(AudioEvent::Kind kind, const std::string& text) {
    scheduler_.Post([this, kind, text] { onEvent({kind, text, "The " + text}); });
  }
  std::vector<AudioDevice> devices;

 private:
  Scheduler& scheduler_;
};

class FakeFiles : public Files {
 public:
  std::map<std::filesystem::path, std::string> files;
  std::set<std::filesystem::path> folders;
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
    if (!writable) return EACCES;
    folders.insert(path);
    return 0;
  }
};

class FakePrompts : public Prompts {
 public:
  std::vector<MessageBox> told;
  std::vector<MessageBox> asked;
  std::vector<PopupItem> popup;
  std::function<void(std::function<void()>)> popupClosed;
  std::function<void(bool)> answer;
  std::function<void()> dismiss;
  std::function<void(std::optional<std::string>)> input;

  void Tell(const MessageBox& box, std::function<void()> closed) override {
    told.push_back(box);
    dismiss = std::move(closed);
  }
  void Ask(const MessageBox& box, std::function<void(bool)> answered) override {
    asked.push_back(box);
    answer = std::move(answered);
  }
  void Input(const InputBox&, std::function<void(std::optional<std::string>)> answered) override {
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
  }
  // Closes the open pop-up with the line of that caption chosen; with none for an empty caption.
  void Choose(const std::string& caption) {
    const auto closed = std::exchange(popupClosed, nullptr);
    closed(caption.empty() ? std::function<void()>() : Find(popup, caption));
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

class FixedClock : public Clock {
 public:
  LocalTime now{2026, 3, 7, 9, 5, 1};
  LocalTime Now() const override { return now; }
};

// Everything around the program. A test may restart the program over the same surroundings.
struct ProgramFixture {
  VirtualScheduler scheduler;
  FixedClock clock;
  FakeAudioInput audio{scheduler};
  FakeOmniRig server{scheduler};
  FakeFiles files;
  MemoryStore store;
  FakeSystem system;
  FakePrompts prompts;
  FakeLauncher launcher;
  FakeLock lock;
  FakeLog log;
  bool ended = false;
  std::unique_ptr<Program> program;

  ProgramFixture() {
    server.reachable = {false, false};
    Restart();
  }

  // Makes the program without starting it.
  Main& Restart() {
    Installation where;
    where.version = {3, 1, 4};
    where.programFolder = "/opt/velt";
    where.engineFolder = "/opt/engine";
    program.reset();
    program = std::make_unique<Program>(ProgramPorts{scheduler, clock, audio, server, files, store,
                                                     system, prompts, launcher, lock, log},
                                        where, OmniRigLink::Questions::Asked);
    ended = false;
    program->shutdown.endProgram = [this] { ended = true; };
    return program->form;
  }
  Startup::Result Start(const RunOptions& options = {}) {
    const auto result = program->startup.Run(options);
    scheduler.Advance(Milliseconds(10));
    return result;
  }
  Main& Form() { return program->form; }
  // Presses the start picture and lets the device open.
  void StartCapture() {
    Form().imgStartStop.Click();
    scheduler.RunPosted();
  }
  bool Close() {
    bool cancel = false;
    program->shutdown.Form_Unload(cancel);
    return !cancel;
  }
  std::string Stored(const std::string& key) {
    return store.Get("VELT-SA", key).value_or("(missing)");
  }
};

}  // namespace velt
