#include <gtest/gtest.h>

#include "form/main_form.h"

namespace velt {
namespace {

TEST(Form, ChangedControlsAreListedOnceAndOnlyTheStatedAssignmentsRaiseAnEvent) {
  Main form;
  int raised = 0;
  const auto count = [&raised] { ++raised; };
  Connections connections;
  connections += form.lblMode.caption.changed.Listen(count);
  connections += form.Slider.value.changed.Listen(count);
  connections += form.mnudomfreq.clicked.Listen(count);
  std::vector<Control*> changed;
  form.TakeChanged(changed);
  for (const char* mode : {"USB", "LSB", "LSB"}) form.lblMode.caption = std::string(mode);
  for (const int value : {40, 400, 100}) form.Slider.Set(value);  // held at the maximum
  form.mnudomfreq.checked = true;
  EXPECT_EQ(raised, 4);
  form.TakeChanged(changed);
  EXPECT_EQ(changed, (std::vector<Control*>{&form.lblMode, &form.Slider, &form.mnudomfreq}));
  form.Slider.Set(100);
  form.TakeChanged(changed);
  EXPECT_TRUE(changed.empty());
  form.mnudomfreq.Click();
  form.mnudomfreq.enabled = false;
  form.mnudomfreq.Click();
  EXPECT_EQ(raised, 5);
}

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
