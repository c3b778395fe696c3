#include <gtest/gtest.h>

#include "form/main_form.h"

namespace velt {
namespace {

TEST(Form, ChangedControlsAreListedOnce) {
  Main form;
  std::vector<Control*> changed;
  form.TakeChanged(changed);
  form.lblMode.caption = std::string("USB");
  form.lblMode.caption = std::string("LSB");
  form.lblMode.caption = std::string("LSB");
  form.Slider.Set(40);
  form.TakeChanged(changed);
  EXPECT_EQ(changed, (std::vector<Control*>{&form.lblMode, &form.Slider}));
  form.TakeChanged(changed);
  EXPECT_TRUE(changed.empty());
  form.lblMode.caption = std::string("CW");
  form.TakeChanged(changed);
  EXPECT_EQ(changed, std::vector<Control*>{&form.lblMode});
}

TEST(Form, OnlyTheStatedAssignmentsRaiseAnEvent) {
  Main form;
  int raised = 0;
  const auto count = [&raised] { ++raised; };
  Connections connections;
  connections += form.lblMode.caption.changed.Listen(count);
  connections += form.Slider.value.changed.Listen(count);
  connections += form.chkSpecMode.value.changed.Listen(count);
  form.lblMode.caption = std::string("USB");
  form.Slider.Set(40);
  form.Slider.Set(40);
  form.Slider.Set(400);  // held at the maximum
  form.chkSpecMode.UserPick(true);
  EXPECT_EQ(raised, 4);
  EXPECT_EQ(form.Slider.value, 100);
  int clicks = 0;
  connections += form.mnudomfreq.clicked.Listen([&clicks] { ++clicks; });
  form.mnudomfreq.checked = true;
  EXPECT_EQ(clicks, 0);
  form.mnudomfreq.Click();
  form.mnudomfreq.enabled = false;
  form.mnudomfreq.Click();
  EXPECT_EQ(clicks, 1);
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
  EXPECT_TRUE(event->HasListeners());
  const Connection ending = event->Listen([&](int) { event.reset(); });
  event->Raise(3);  // ends with the event itself
  EXPECT_EQ(heard, "first 1;late;late;");
}

}  // namespace
}  // namespace velt
