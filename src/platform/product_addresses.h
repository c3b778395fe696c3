// Where the program's author and its pages are. Whoever distributes the program puts his own here;
// what is empty is not offered.
#pragma once

namespace velt {

inline constexpr const char* kAuthorMail = "author@velt-sa.invalid";
inline constexpr const char* kAuthorPage = "https://velt-sa.invalid/";
inline constexpr const char* kProgramPage = "https://velt-sa.invalid/program";
inline constexpr const char* kDonationPage = "https://velt-sa.invalid/donate";

}  // namespace velt
