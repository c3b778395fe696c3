// The double of a serial port: a device that a test plays.
#pragma once

#include <cerrno>
#include <string>
#include <vector>

#include "ports/scheduler.h"
#include "ports/serial_port.h"

namespace velt {

class FakeSerialPort : public SerialPort {
 public:
  explicit FakeSerialPort(Scheduler& scheduler) : scheduler_(scheduler) {}

  int openError = 0;
  bool takes = true;  // what is written; else it stays in the buffer
  int16_t number = 0;
  std::string settings;
  // What came to the device since the last Take: "open", "DTR up", "T", "RTS down", "close".
  std::vector<std::string> Take() { return std::exchange(seen_, {}); }
  bool Lines() const { return open_ && (dtr_ || rts_); }
  // Each of them at the moment when it happens.
  Event<const std::string&> happened;

  void Say(std::string_view text) {
    input_ += open_ ? text : "";
    scheduler_.Post([this] { received.Raise(); });
  }
  // The open device goes away; it can be opened again unless there is an error.
  void HangUp(int error = 0) {
    openError = error;
    scheduler_.Post([this] {
      if (!open_) return;
      Close();
      failed.Raise(EIO);
    });
  }

  void SetCommPort(int16_t wanted) override { number = wanted; }
  void SetSettings(const std::string& wanted) override { settings = wanted; }
  void SetDTREnable(bool on) override { Bring(dtr_, on, "DTR"); }
  void SetRTSEnable(bool on) override { Bring(rts_, on, "RTS"); }
  int Open() override {
    if (open_ || openError != 0) return open_ ? 0 : openError;
    See("open");
    open_ = true;
    ++openings_;
    if (dtr_) See("DTR up");
    if (rts_) See("RTS up");
    return 0;
  }
  void Close() override {
    if (!open_) return;
    if (dtr_) See("DTR down");
    if (rts_) See("RTS down");
    open_ = false;
    input_.clear();
    waiting_ = 0;
    See("close");
  }
  bool IsOpen() const override { return open_; }
  void Output(std::string_view bytes) override {
    if (!open_) return;
    See(std::string(bytes));
    waiting_ += bytes.size();
    if (!takes) return;
    scheduler_.Post([this] {
      if (std::exchange(waiting_, 0) > 0) drained.Raise();
    });
  }
  size_t OutBufferCount() const override { return waiting_; }
  size_t InBufferCount() const override { return input_.size(); }
  std::string Input(size_t count) override {
    const std::string taken = input_.substr(0, count);
    input_.erase(0, count);
    return taken;
  }
  int Descriptor() const override { return open_ ? 76 + openings_ : -1; }

 private:
  void See(const std::string& what) {
    seen_.push_back(what);
    happened.Raise(what);
  }
  void Bring(bool& line, bool on, const std::string& name) {
    if (line != on && open_) See(name + (on ? " up" : " down"));
    line = on;
  }

  Scheduler& scheduler_;
  bool dtr_ = false, rts_ = false, open_ = false;
  int openings_ = 0;
  size_t waiting_ = 0;
  std::string input_;
  std::vector<std::string> seen_;
};

}  // namespace velt
