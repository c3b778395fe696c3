// Test doubles of the ports, and a whole program over them with a clock that a test advances.
#pragma once

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "adapters/files/memory_store.h"
#include "adapters/simulated_rig/simulated_rig.h"
#include "shell/program.h"
#include "support/fake_engine_window.h"
#include "support/fake_serial_port.h"
#include "support/virtual_scheduler.h"

namespace velt {

struct FakeAudioInput : AudioInput {
  Scheduler& scheduler;
  bool opens = true;  // else it fails to
  TakeResult result = TakeResult::Block;
  std::vector<int16_t> samples = std::vector<int16_t>(kBlockSamples);
  bool open = false;
  bool watching = false;
  std::vector<std::string> opened;  // the devices, as they were asked for
  std::string source = "usb";       // what opens

  explicit FakeAudioInput(Scheduler& of) : scheduler(of) {}
  std::vector<AudioDevice> devices;
  std::vector<AudioDevice> Devices() const override { return devices; }
  void FindDevices() override { ++lookedFor; }
  int lookedFor = 0;
  void Open(const std::string& name) override {
    opened.push_back(name);
    watching = false;
    open = opens;
    if (opens) return Tell(AudioEvent::Kind::Opened, source);
    Tell(AudioEvent::Kind::OpenFailed, "No sound server.");
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
    scheduler.Post([this, kind, text] { happened.Raise({kind, text, "The " + text}); });
  }
};

// Records its calls; a test tells the events.
struct FakeRecorder : SoundRecorder {
  std::vector<std::string> calls;
  void Open(const RecordingSource& source, int32_t rateHz) override {
    calls.push_back("open " + source.device + "|" + source.heard + " " + std::to_string(rateHz));
  }
  void Record() override { calls.emplace_back("record"); }
  void SaveAs(const std::filesystem::path& file) override {
    calls.push_back("save " + file.string());
  }
  void Close() override { calls.emplace_back("close"); }
  std::vector<std::string> Take() { return std::exchange(calls, {}); }
};

struct FakeFiles : Files {
  std::map<std::filesystem::path, std::string> files;
  std::set<std::filesystem::path> folders;
  std::set<std::filesystem::path> unmakable;
  bool writable = true;
  uint64_t number = 1;  // of every file: changed, they were all replaced

  bool IsFile(const std::filesystem::path& path) const override { return files.contains(path); }
  bool IsFolder(const std::filesystem::path& path) const override { return folders.contains(path); }
  FileContent Read(const std::filesystem::path& path) const override {
    return IsFile(path) ? FileContent{0, files.at(path)} : FileContent{ENOENT, ""};
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
    if (!IsFile(path)) return std::nullopt;
    const std::string& bytes = files.at(path);
    return FileStamp{bytes.size(), static_cast<int64_t>(std::hash<std::string>()(bytes)), number};
  }
  std::vector<std::filesystem::path> Names(const std::filesystem::path&) const override {
    return {};
  }
  int Remove(const std::filesystem::path& path) override {
    return files.erase(path) != 0 ? 0 : EACCES;
  }
  int Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
    if (files.contains(to)) return EEXIST;
    if (!IsFile(from)) return EACCES;
    files[to] = files.at(from);
    return Remove(from);
  }
  int MakeFolder(const std::filesystem::path& path) override {
    return !unmakable.contains(path) && folders.insert(path).second ? 0 : EACCES;
  }
};

struct FakePrompts : Prompts {
  using Chosen = std::function<void()>;
  using Typed = std::function<void(std::optional<std::string>)>;
  std::vector<MessagePrompt> told;
  std::vector<MessagePrompt> asked;
  std::vector<PopupItem> popup;
  PopupPlace popupPlace;
  InputPrompt inputAsked;
  std::function<void(Chosen)> popupClosed;
  std::function<void(bool)> answer;
  Typed input;

  std::function<void()> dismiss;  // of what was told last
  void Tell(const MessagePrompt& box, std::function<void()> closed) override {
    told.push_back(box);
    dismiss = std::move(closed);
  }
  void Ask(const MessagePrompt& box, std::function<void(bool)> answered) override {
    asked.push_back(box);
    answer = std::move(answered);
  }
  void Input(const InputPrompt& box, Typed answered) override {
    inputAsked = box;
    input = std::move(answered);
  }
  bool Popup(const PopupPlace& opener, const std::vector<PopupItem>& items,
             std::function<void(Chosen)> closed) override {
    if (popupClosed) return false;
    popupPlace = opener;
    popup = items;
    popupClosed = std::move(closed);
    return true;
  }
  void DropAll() override {
    popupClosed = nullptr;
    answer = nullptr;
    dismiss = nullptr;
  }
  // Closes the open pop-up with the line of that caption chosen; false: it has no such line.
  bool Choose(const std::string& caption) {
    const auto closed = std::exchange(popupClosed, nullptr);
    const auto chosen = Find(popup, caption);
    if (closed) closed(chosen);
    return closed && chosen;
  }

  static Chosen Find(const std::vector<PopupItem>& items, const std::string& caption) {
    for (const PopupItem& item : items) {
      if (item.caption == caption) return item.choose;
      if (auto found = Find(item.items, caption)) return found;
    }
    return {};
  }
};

struct FakeColourChooser : ColourChooser {
  std::string title;  // of the open one; empty: none is open
  uint32_t initial = 0;
  std::function<void(std::optional<uint32_t>)> choose;
  void Pick(const std::string& of, uint32_t colour,
            std::function<void(std::optional<uint32_t>)> chosen) override {
    title = of;
    initial = colour;
    choose = std::move(chosen);
  }
  void Drop() override { title.clear(); }
};

struct FakeSystem : SystemInfo {
  std::optional<SystemVersion> Version() const override { return SystemVersion{5, 1, ""}; }
  std::string Description() const override { return description; }
  std::string description = "Some System 12";
  std::string Processor() const override { return ""; }
  std::string SystemFolder() const override { return "/windows"; }
  std::string SpecialFolder(int32_t identifier) const override {
    return identifier == 40 ? "/home/om" : "";
  }
  std::string RegistryString(RegistryRoot, const std::string&, const std::string&) const override {
    return "";
  }
  std::vector<StoragePlace> StoragePlaces() const override { return {{"Stick", "/media/om/s"}}; }
  std::map<std::string, RegistryValue> registry;  // by key and name: "KEY\\NAME"
  std::optional<RegistryValue> RegistryData(RegistryRoot, const std::string& subkey,
                                            const std::string& name) const override {
    const auto found = registry.find(subkey + "\\" + name);
    return found == registry.end() ? std::nullopt : std::optional(found->second);
  }
  std::filesystem::path tool;
  std::filesystem::path InformationTool() const override { return tool; }
};

struct FakeSession : SessionInfo {
  SessionFacts facts;
  int asked = 0;
  SessionFacts Facts() const override { return facts; }
  void Ask() override { ++asked; }
};

struct FakeLauncher : Launcher {
  std::vector<std::string> opened;
  void OpenDocument(const std::string& target) override { opened.push_back(target); }

  std::vector<std::filesystem::path> programs;
  int programError = 0;
  int StartProgram(const std::filesystem::path& program) override {
    programs.push_back(program);
    return programError;
  }

  // Of programs that are looked for, those that are there, and those that were started.
  std::set<std::string> installed;
  std::vector<std::vector<std::string>> commands;
  int StartCommand(const std::vector<std::string>& command) override {
    if (!installed.contains(command.front())) return ENOENT;
    if (programError == 0) commands.push_back(command);
    return programError;
  }

  // Documents to be started, with the command for want of a program; answered by the test.
  std::vector<std::string> started;
  std::function<void(Start)> answer;
  void StartDocument(const std::filesystem::path& document, const std::vector<std::string>& command,
                     std::function<void(Start)> told) override {
    started.push_back(document.string());
    for (const std::string& word : command) started.back() += " " + word;
    answer = std::move(told);
  }
};

struct FakePictures : Pictures {
  std::vector<uint32_t> clipboard;  // pixels
  void CopyToClipboard(const PictureView& picture) override {
    clipboard.assign(picture.pixels.begin(), picture.pixels.end());
  }
  std::string Png(const PictureView& picture) const override {
    return std::to_string(picture.width);
  }
};

// A recording of whole blocks, each of which takes its time to read.
struct FakeSoundFile : SoundFile {
  VirtualScheduler& scheduler;
  std::string failure;  // of the next Open
  std::string warning;
  std::vector<std::array<int16_t, kBlockSamples>> blocks;
  Milliseconds each{0};
  bool tellsLength = true;
  size_t next = 0;

  explicit FakeSoundFile(VirtualScheduler& of) : scheduler(of) {}
  std::string Open(const std::filesystem::path&) override {
    next = 0;
    return failure;
  }
  SoundFileInfo Info() const override {
    const auto frames = static_cast<int64_t>(blocks.size() * kBlockSamples);
    return {tellsLength ? frames : std::numeric_limits<int64_t>::max(), kSampleRateHz, 1};
  }
  std::string Warning() const override { return warning; }
  bool ReadBlock(std::span<int16_t, kBlockSamples> block) override {
    if (next == blocks.size()) return false;
    scheduler.Pass(each);
    std::ranges::copy(blocks[next++], block.begin());
    return true;
  }
  bool Rewind() override {
    next = 0;
    return true;
  }
};

// What a test lets happen to a file that is played.
struct FakeSoundPlayer : SoundPlayer {
  std::vector<std::string> calls;  // "prepare /r/a.wav", "start", "stop"
  Progress heard;
  bool busy = false;
  void Prepare(const std::filesystem::path& file) override {
    calls.push_back("prepare " + file.string());
    busy = true;
  }
  void Start() override { calls.emplace_back("start"); }
  void Stop() override {
    calls.emplace_back("stop");
    busy = false;
  }
  Progress Heard() const override { return heard; }
  void Tell(PlayerEvent::Kind kind, const std::string& text = "") {
    if (busy) happened.Raise({kind, text});
  }
};

// Folders by path; one that is not there gives ENOENT.
struct FakeFolders : Folders {
  Scheduler& scheduler;
  FakeFiles& files;
  std::map<std::filesystem::path, FolderListing> folders;
  Milliseconds takes{1};
  Scheduler::Handle answer, done;
  FakeFolders(Scheduler& of, FakeFiles& in) : scheduler(of), files(in) {}
  void List(const std::filesystem::path& folder,
            std::function<void(const FolderListing&)> told) override {
    answer = scheduler.After(takes, [this, folder, told] {
      told(folders.contains(folder) ? folders.at(folder) : FolderListing{.error = ENOENT});
    });
  }
  void Remove(const std::filesystem::path& file, const std::filesystem::path& kept,
              std::function<void(int error)> told) override {
    done = scheduler.After(
        takes, [this, file, kept, told] { told(file == kept ? EBUSY : files.Remove(file)); });
  }
  void Rename(const std::filesystem::path& from, const std::filesystem::path& to,
              const std::filesystem::path& kept, std::function<void(int error)> told) override {
    done = scheduler.After(takes, [this, from, to, kept, told] {
      told(from == kept ? EBUSY : files.Rename(from, to));
    });
  }
};

struct FakeFileChooser : FileChooser {
  using Answered = std::function<void(std::optional<std::filesystem::path>)>;
  FileQuestion asked;
  Answered answer;
  int number = 0;  // of the latest question
  std::unique_ptr<Question> Ask(const FileQuestion& question, Answered answered) override {
    if (answer) return nullptr;
    asked = question;
    answer = std::move(answered);
    return std::make_unique<Held>(*this);
  }
  struct Held : Question {
    FakeFileChooser& chooser;
    const int number = ++chooser.number;
    explicit Held(FakeFileChooser& of) : chooser(of) {}
    ~Held() override {
      if (chooser.number == number) chooser.answer = nullptr;
    }
  };
  void Choose(const std::filesystem::path& file) { std::exchange(answer, nullptr)(file); }
};

struct FakeSpectrogramWriter : SpectrogramWriter {
  int error = 0;
  std::vector<std::filesystem::path> written;
  int Write(const RecordingSpectrogram&, const std::filesystem::path& path) override {
    if (error == 0) written.push_back(path);
    return error;
  }
};

struct FakeLock : InstanceLock {
  bool alone = true;
  bool TryHold() override { return alone; }
};

struct FakeLog : Log {
  std::vector<std::string> lines;
  void Write(LogLevel, const char*, std::string_view text) override { lines.emplace_back(text); }
};

struct FakeClock : Clock {
  const Scheduler& scheduler;
  explicit FakeClock(const Scheduler& of) : scheduler(of) {}
  Milliseconds slept{0};  // while the scheduler's time stood still
  LocalTime Now() const override { return {2026, 3, 7, 9, 5, 1}; }
  SteadyTime Elapsed() const override { return scheduler.Now() + slept; }
};

struct FakeGuardian : Guardian {
  bool present = true;
  std::map<uint32_t, ReleaseRecipe> held;
  size_t followed = 0;
  int beats = 0;
  uint32_t last = 0;
  uint32_t Hold(const ReleaseRecipe& recipe) override {
    return present ? held.emplace(++last, recipe).first->first : 0;
  }
  void Forget(uint32_t ticket) override { held.erase(ticket); }
  void Follow(uint32_t ticket) override { followed += held.erase(ticket); }
  void Beat() override { ++beats; }
};

struct FakeSleepLock : SleepLock {
  bool held = false;
  void Hold() override { held = true; }
  void LetGo() override { held = false; }
};

struct FakeStore : MemoryStore {
  std::function<int()> commit = [] { return 0; };
  int Commit() override { return commit(); }
};

// How often that is told while `action` runs.
template <class... Args>
int Told(Event<Args...>& event, const std::function<void()>& action) {
  int times = 0;
  const Connection listening = event.Listen([&times](const Args&...) { ++times; });
  action();
  return times;
}

// What has come to a simulated rig and was not taken yet.
struct RigWrites {
  std::vector<std::string> writes;
  Connection connection;
  explicit RigWrites(SimulatedRig& rig)
      : connection(rig.written.Listen([this](const std::string& w) { writes.push_back(w); })) {}
  std::vector<std::string> Take() { return std::exchange(writes, {}); }
  // The same in one line, a space behind each.
  std::string TakeLine() {
    std::string line;
    for (const std::string& write : Take()) line += write + " ";
    return line;
  }
};

// Everything around the program. A test may restart the program over the same surroundings.
struct ProgramFixture {
  VirtualScheduler scheduler;
  FakeClock clock{scheduler};
  FakeAudioInput audio{scheduler};
  FakeRecorder recorder;
  SimulatedRigServer server{scheduler, {}};
  SimulatedRig& rig1 = server.Rig1();
  SimulatedRig& rig2 = server.Rig2();
  RigWrites writes1{rig1}, writes2{rig2};
  FakeGuardian guardian;
  FakeSleepLock sleepLock;
  FakeEngineWindow engineWindow{scheduler};
  FakeSerialPort serialPort{scheduler};
  FakeFiles files;
  Files* disk = nullptr;  // instead of these from the next Restart on
  FakeStore store;
  FakeSystem system;
  FakeSession session;
  FakePrompts prompts;
  FakeColourChooser chooser;
  FakeLauncher launcher;
  FakePictures pictures;
  FakeSoundFile soundFile{scheduler};
  FakeSoundPlayer soundPlayer;
  FakeFolders folders{scheduler, files};
  FakeFileChooser fileChooser;
  FakeSpectrogramWriter spectrograms;
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
  void Restart() {
    program.reset();
    program = std::make_unique<Program>(Program::Ports{.scheduler = scheduler,
                                                       .clock = clock,
                                                       .audio = audio,
                                                       .recorder = recorder,
                                                       .server = server,
                                                       .guardian = guardian,
                                                       .sleepLock = sleepLock,
                                                       .engineWindow = engineWindow,
                                                       .serial = serialPort,
                                                       .files = disk != nullptr ? *disk : files,
                                                       .settings = store,
                                                       .system = system,
                                                       .session = session,
                                                       .prompts = prompts,
                                                       .colours = chooser,
                                                       .launcher = launcher,
                                                       .pictures = pictures,
                                                       .soundFile = soundFile,
                                                       .player = soundPlayer,
                                                       .folders = folders,
                                                       .fileChooser = fileChooser,
                                                       .spectrogramWriter = spectrograms,
                                                       .lock = lock,
                                                       .log = log},
                                        setup);
    ended = false;
    connections += program->shutdown.ended.Listen([this] { ended = true; });
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
