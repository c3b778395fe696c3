// What a screen reader sees of a program: a session bus and an accessibility bus of the test's own,
// and the tree of accessible objects on it.
#pragma once

#include <QDBusConnection>
#include <optional>
#include <string>
#include <vector>

#include "support/process.h"

namespace velt {

struct SpokenObject {
  QString service;
  QString path;
  std::string name;
  std::string role;  // "push button", "label", ...
};

class ScreenReader {
 public:
  // Throws std::runtime_error when the buses are not up after 10 s.
  ScreenReader();
  ~ScreenReader();

  // What a program needs to be heard ("NAME=value").
  std::vector<std::string> Environment() const;

  // The first showing object of that application whose name begins so; empty after 8 s without.
  std::optional<SpokenObject> Find(const std::string& name);
  // Whether there is one within 8 s.
  bool Hears(const std::string& name) { return Find(name).has_value(); }

  bool IsChecked(const SpokenObject& object) { return HasState(object, 4); }
  double Value(const SpokenObject& object);
  // Does the first thing that can be done with it.
  void Act(const SpokenObject& object);

 private:
  std::optional<SpokenObject> Search(const SpokenObject& below, const std::string& name);
  bool HasState(const SpokenObject& object, unsigned state);

  TempFolder folder_;
  const std::string address_ = "unix:path=" + (folder_ / "bus").string();
  Process bus_;
  std::optional<QDBusConnection> connection_;
};

}  // namespace velt
