#include <gtest/gtest.h>

#include "form/main_form.h"

namespace velt {
namespace {

TEST(Form, ChangedControlsAreListedOnceAndWakeOnce) {
  Main form;
  form.TakeChanged();
  int wakes = 0;
  form.wake = [&wakes] { ++wakes; };
  form.lblMode.caption = std::string("USB");
  form.lblMode.caption = std::string("LSB");
  form.lblMode.caption = std::string("LSB");
  form.Slider.Set(40);
  EXPECT_EQ(wakes, 1);
  const auto changed = form.TakeChanged();
  ASSERT_EQ(changed.size(), 2U);
  EXPECT_EQ(changed[0], &form.lblMode);
  EXPECT_TRUE(form.TakeChanged().empty());
  form.lblMode.caption = std::string("CW");
  EXPECT_EQ(wakes, 2);
}

TEST(Form, OnlyTheStatedAssignmentsRaiseAnEvent) {
  Main form;
  int raised = 0;
  const auto count = [&raised] { ++raised; };
  form.lblMode.caption.raised = count;
  form.Slider.value.raised = count;
  form.chkSpecMode.value.raised = count;
  form.lblMode.caption = std::string("USB");
  form.Slider.Set(40);
  form.Slider.Set(40);
  form.Slider.Set(400);  // held at the maximum
  form.chkSpecMode.UserPick(true);
  EXPECT_EQ(raised, 4);
  EXPECT_EQ(form.Slider.value, 100);
  int clicks = 0;
  form.mnudomfreq.onClick = [&clicks] { ++clicks; };
  form.mnudomfreq.checked = true;
  EXPECT_EQ(clicks, 0);
  form.mnudomfreq.Click();
  form.mnudomfreq.enabled = false;
  form.mnudomfreq.Click();
  EXPECT_EQ(clicks, 1);
}

}  // namespace
}  // namespace velt
