// A test's steps as a text.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

namespace velt {

// Plays "what happens; what happens > what comes of it; ...": `act` takes what happens and what is
// expected, and returns what came of it.
inline void Play(const std::string& story,
                 const std::function<std::string(const std::string&, const std::string&)>& act) {
  SCOPED_TRACE(story);
  for (size_t at = 0, end = 0; at < story.size(); at = end + 2) {
    end = std::min(story.find("; ", at), story.size());
    const std::string step = story.substr(at, end - at);
    const size_t arrow = step.find(" > ");
    const std::string expected = arrow == std::string::npos ? "" : step.substr(arrow + 3);
    EXPECT_EQ(act(step.substr(0, arrow), expected), expected) << step;
  }
}

}  // namespace velt
