// The byte channel over a TCP socket.
#pragma once

#include <QHostAddress>
#include <QTcpSocket>
#include <memory>
#include <string>

#include "adapters/rigctld/byte_channel.h"

namespace velt {

class TcpChannel : public ByteChannel {
 public:
  explicit TcpChannel(Scheduler& scheduler) : scheduler_(scheduler) {}
  ~TcpChannel() override;

  void Connect(const ServerAddress& address) override;
  void Disconnect() override;
  void Send(std::string_view bytes) override;
  bool SendNow(const ServerAddress& address, std::string_view bytes, Milliseconds limit) override;

 private:
  void Notice();
  void Deliver();
  bool SendOnce(const ServerAddress& address, std::string_view bytes, Milliseconds limit) const;

  Scheduler& scheduler_;
  std::unique_ptr<QTcpSocket> socket_;
  std::shared_ptr<char> alive_;  // of the present socket
  std::string host_;             // of the present or last connection
  QHostAddress lastPeer_;        // and what its name stood for
  bool noticed_ = false;         // a Deliver() is on its way
  bool connected_ = false;       // and told so
};

}  // namespace velt
