#include "dialogs/notices.h"

#include <algorithm>

namespace velt {

Notices::Notices(MessageControls& form) : form_(form) {
  connections_ += form_.lblNotice.clicked.Listen([this] { lblNotice_Click(); });
}

void Notices::Raise(NoticeKind kind, const std::string& text) {
  std::erase_if(notices_, [kind](const Notice& n) { return n.kind == kind; });
  notices_.push_back({kind, text});
  std::stable_sort(notices_.begin(), notices_.end(),
                   [](const Notice& a, const Notice& b) { return a.kind < b.kind; });
  Refresh();
}

void Notices::Over(NoticeKind kind) {
  std::erase_if(notices_, [kind](const Notice& n) { return n.kind == kind; });
  Refresh();
}

void Notices::lblNotice_Click() {
  if (!notices_.empty()) notices_.erase(notices_.begin());
  Refresh();
}

void Notices::Refresh() {
  form_.lblNotice.caption = notices_.empty() ? std::string() : notices_.front().text;
  form_.lblNotice.urgent = !notices_.empty() && notices_.front().kind == NoticeKind::Transmitter;
  form_.lblNotice.visible = !notices_.empty();
}

}  // namespace velt
