// How long the player takes to come up over a folder of many recordings: from the call to the
// painted list, and for how long of that the window's thread is busy at a stretch.
#include <QApplication>
#include <QDeadlineTimer>
#include <chrono>
#include <cstdio>

#include "adapters/files/folder_worker.h"
#include "adapters/qt/qt_scheduler.h"
#include "adapters/system/linux_system_info.h"
#include "recording/folder_view.h"
#include "support/temp_folder.h"
#include "ui/player_window.h"

int main(int argc, char** argv) {
  using namespace velt;
  using Clock = std::chrono::steady_clock;
  constexpr int kFiles = 5000;
  const TempFolder folder;
  for (int i = 0; i < kFiles; ++i) {
    folder.Write("VELTSA_26-03-07_" + std::to_string(100000 + i) + ".wav", "RIFF");
  }
  QApplication application(argc, argv);
  QtScheduler scheduler;
  FolderWorker reader(scheduler);
  const LinuxSystemInfo system;
  for (int round = 0; round < 7; ++round) {
    PlayerForm form;
    FolderView view(form, {.folders = reader, .system = system});
    PlayerWindow window(form, nullptr);
    const auto start = Clock::now();
    auto longest = Clock::duration::zero();
    view.Load(folder.Path());
    form.Window.visible = true;
    const auto turn = [&longest] {
      const auto before = Clock::now();
      QApplication::processEvents();
      longest = std::max(longest, Clock::now() - before);
    };
    const QDeadlineTimer limit(5000);
    while (form.File1.items.Get().size() < kFiles && !limit.hasExpired()) turn();
    turn();
    window.grab();
    const std::chrono::duration<double, std::milli> took = Clock::now() - start, busy = longest;
    std::printf("%zu files listed and painted in %.1f ms, the thread busy for at most %.1f ms\n",
                form.File1.items.Get().size(), took.count(), busy.count());
  }
}
