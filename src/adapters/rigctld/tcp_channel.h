// The byte channel over a TCP socket.
#pragma once

#include <QTcpSocket>
#include <memory>
#include <string>

#include "adapters/rigctld/byte_channel.h"
#include "adapters/rigctld/host_lookup.h"

namespace velt {

class TcpChannel : public ByteChannel {
 public:
  explicit TcpChannel(Scheduler& scheduler) : scheduler_(scheduler), lookup_(scheduler) {}
  ~TcpChannel() override;

  void Connect(const ServerAddress& address) override;
  bool LooksUp() const override { return lookup_.Running(); }
  void Disconnect() override;
  void Send(std::string_view bytes) override;
  std::optional<ServerAddress> Peer() const override;
  bool SendNow(const ServerAddress& address, std::string_view bytes, Milliseconds limit) override;

 private:
  void TryNext();
  void Notice();
  void Deliver();
  bool SendOnce(const ServerAddress& address, std::string_view bytes, Milliseconds limit) const;

  Scheduler& scheduler_;
  HostLookup lookup_;
  HostLookup::Addresses untried_;  // of the host, besides the one being tried
  ServerAddress address_;          // of the present or last connection
  std::unique_ptr<QTcpSocket> socket_;
  std::shared_ptr<char> alive_;  // of the present socket
  QHostAddress lastPeer_;        // what the name of the host stood for
  bool noticed_ = false;         // a Deliver() is on its way
  bool connected_ = false;       // and told so
  Scheduler::Handle tryLimit_;
};

}  // namespace velt
