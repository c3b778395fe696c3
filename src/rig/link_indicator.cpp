#include "rig/link_indicator.h"

#include "rig/link_words.h"

namespace velt {
namespace {

// The countdown to the next attempt is not an event of every server's.
constexpr Milliseconds kRefreshEvery{500};

}  // namespace

LinkIndicator::LinkIndicator(const Parts& parts) : parts_(parts) {
  connections_ += parts_.link.changed.Listen([this] { Refresh(); });
  connections_ += parts_.link.rigHeard.Listen([this] { Refresh(); });
  connections_ += parts_.dialog.settingsChanged.Listen([this] { Refresh(); });
  Refresh();
}

void LinkIndicator::Refresh() {
  const RigLink link = parts_.link.Link();
  const IOmniRigX::Capabilities can = parts_.server.Can();
  parts_.form.lblLink.caption = ShortLinkText(link, can.simulated);
  parts_.form.lampLink.colour = LampOf(link);

  const int32_t rig = parts_.state.rigChoice == 2 ? 2 : 1;
  std::string told = (can.simulated ? "Simulated rig " : "Rig ") + std::to_string(rig);
  if (can.addresses) told += " at " + parts_.server.Address(rig);
  told += ": " + LinkText(link);
  if (const std::string cause = CauseText(link.cause); !cause.empty()) told += ". " + cause;
  parts_.form.lblLink.toolTip = told;
  parts_.form.lampLink.toolTip = told;

  if (link.state == RigLink::State::Reconnecting) {
    countdown_ = parts_.scheduler.After(kRefreshEvery, [this] { Refresh(); });
  } else {
    countdown_.Cancel();
  }
}

}  // namespace velt
