#include "guardian/guardian_socket.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <vector>

namespace velt {
namespace {

constexpr size_t kMostDescriptors = 4;  // one is expected; the system drops what finds no room

union Control {
  cmsghdr header;
  std::array<char, CMSG_SPACE(sizeof(int) * kMostDescriptors)> bytes;
};

bool OptionIs(int descriptor, int option, int wanted) {
  int value = 0;
  socklen_t size = sizeof value;
  return ::getsockopt(descriptor, SOL_SOCKET, option, &value, &size) == 0 && value == wanted;
}

std::vector<Descriptor> DescriptorsOf(msghdr& packet) {
  std::vector<Descriptor> descriptors;
  for (cmsghdr* part = CMSG_FIRSTHDR(&packet); part != nullptr; part = CMSG_NXTHDR(&packet, part)) {
    if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS) continue;
    const size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (size_t i = 0; i < count; ++i) {
      int number = -1;
      std::memcpy(&number, CMSG_DATA(part) + i * sizeof number, sizeof number);
      descriptors.emplace_back(number);
    }
  }
  return descriptors;
}

// A device, and only a device, has its descriptor beside it.
bool IsComplete(const GuardianMessage& message, size_t descriptors) {
  const bool device = message.kind == GuardianMessage::Kind::Hold && message.recipe.host.empty();
  return descriptors == (device ? 1U : 0U);
}

}  // namespace

bool GuardianSocket::IsOne(int descriptor) {
  return OptionIs(descriptor, SO_DOMAIN, AF_UNIX) &&
         OptionIs(descriptor, SO_TYPE, SOCK_SEQPACKET) && OptionIs(descriptor, SO_ACCEPTCONN, 0);
}

GuardianSocket::Sent GuardianSocket::Send(const GuardianMessage& message) const {
  std::string bytes = Encode(message);
  if (bytes.empty()) return Sent::Unfit;
  iovec part{bytes.data(), bytes.size()};
  msghdr packet{};
  packet.msg_iov = &part;
  packet.msg_iovlen = 1;
  Control control{};
  if (message.recipe.descriptor >= 0) {
    packet.msg_control = control.bytes.data();
    packet.msg_controllen = CMSG_SPACE(sizeof(int));
    cmsghdr* header = CMSG_FIRSTHDR(&packet);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(header), &message.recipe.descriptor, sizeof(int));
  }
  ssize_t sent = -1;
  do {
    sent = ::sendmsg(Number(), &packet, MSG_NOSIGNAL | MSG_DONTWAIT);
  } while (sent < 0 && errno == EINTR);
  if (sent >= 0) return Sent::Yes;
  if (errno == EAGAIN) return Sent::Full;
  return errno == EPIPE || errno == ECONNRESET || errno == ENOTCONN ? Sent::Gone : Sent::Unfit;
}

GuardianSocket::Received GuardianSocket::Receive() const {
  std::array<char, GuardianMessage::kMostBytes> bytes;
  iovec part{bytes.data(), bytes.size()};
  msghdr packet{};
  packet.msg_iov = &part;
  packet.msg_iovlen = 1;
  Control control{};
  packet.msg_control = control.bytes.data();
  packet.msg_controllen = control.bytes.size();
  ssize_t size = -1;
  do {
    size = ::recvmsg(Number(), &packet, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
  } while (size < 0 && errno == EINTR);

  using What = Received::What;
  Received received;
  if (size <= 0) {
    received.what = size < 0 && errno == EAGAIN ? What::Nothing : What::End;
    return received;
  }
  std::vector<Descriptor> descriptors = DescriptorsOf(packet);
  auto message = Decode({bytes.data(), static_cast<size_t>(size)});
  if (!message || (packet.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0 ||
      !IsComplete(*message, descriptors.size())) {
    received.what = What::Damaged;
    return received;
  }
  received.what = What::Message;
  received.message = std::move(*message);
  if (!descriptors.empty()) received.device = std::move(descriptors[0]);
  return received;
}

}  // namespace velt
