// What is said to people about the link to a rig's server.
#pragma once

#include <string>

#include "form/controls.h"
#include "ports/omnirig.h"

namespace velt {

// How a link stands, in a few words: "Linked", "Reconnecting in 4 s", ...
std::string LinkText(const RigLink& link);

// The same in the fewest words, for a place where something else tells what is stale: "linked",
// "reconnecting in 4 s", "stopped". Of a rig that is only simulated it says so.
std::string ShortLinkText(const RigLink& link, bool simulated);

// Why a link does not stand, and what helps where something does; empty while it does.
std::string CauseText(RigLink::Cause cause);

LampColour LampOf(const RigLink& link);

// What starts a server for that address, but for the radio's number and port; empty when the text
// names no port.
std::string ServerCommand(const std::string& address);

}  // namespace velt
