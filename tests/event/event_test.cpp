#include "event/event.h"

#include <gtest/gtest.h>

namespace velt {
namespace {

TEST(Event, ListenersComeAndGoAlsoWhileItIsRaised) {
  auto event = std::make_unique<Event<int>>();
  std::string heard;
  Connection first, second, late;
  first = event->Listen([&](int value) {
    heard += "first " + std::to_string(value) + ";";
    second.Disconnect();
    late = event->Listen([&](int) { heard += "late;"; });
  });
  second = event->Listen([&](int) { heard += "second;"; });
  event->Raise(1);
  EXPECT_EQ(heard, "first 1;");
  first.Disconnect();
  event->Raise(2);
  EXPECT_EQ(heard, "first 1;late;");
  const Connection ending = event->Listen([&](int) { event.reset(); });
  event->Raise(3);  // ends with the event itself
  EXPECT_EQ(heard, "first 1;late;late;");
}

}  // namespace
}  // namespace velt
