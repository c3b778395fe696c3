#include "adapters/rigctld/tcp_channel.h"

#include <QElapsedTimer>
#include <QNetworkProxy>
#include <algorithm>

namespace velt {

namespace {

constexpr qint64 kReadAtOnce = qint64{64} * 1024;
// For each address of a host that has several.
constexpr Milliseconds kTryLimit{800};

int Remaining(const QElapsedTimer& since, Milliseconds limit) {
  return static_cast<int>(std::max<qint64>(limit.count() - since.elapsed(), 1));
}

void Write(QTcpSocket& socket, std::string_view bytes) {
  socket.write(bytes.data(), static_cast<qint64>(bytes.size()));
  socket.flush();
}

bool WaitUntilSent(QTcpSocket& socket, const QElapsedTimer& since, Milliseconds limit) {
  while (socket.bytesToWrite() > 0) {
    if (limit.count() <= 0 || !socket.waitForBytesWritten(Remaining(since, limit))) return false;
  }
  return socket.state() == QAbstractSocket::ConnectedState;
}

}  // namespace

TcpChannel::~TcpChannel() {
  Disconnect();
}

void TcpChannel::Connect(const ServerAddress& address) {
  Disconnect();
  if (address_.host != address.host) lastPeer_.clear();
  address_ = address;
  const QHostAddress numeric(QString::fromStdString(address.host));
  if (!numeric.isNull()) {
    untried_ = {numeric};
    return TryNext();
  }
  lookup_.Start(address.host, [this](const HostLookup::Addresses& found) {
    untried_ = found;
    if (found.empty()) return closed.Raise(RigLink::Cause::HostNotFound);
    TryNext();
  });
}

void TcpChannel::TryNext() {
  const QHostAddress peer = untried_.front();
  HostLookup::Addresses others(untried_.begin() + 1, untried_.end());
  Disconnect();
  untried_ = std::move(others);
  socket_ = std::make_unique<QTcpSocket>();
  alive_ = std::make_shared<char>();
  socket_->setProxy(QNetworkProxy::NoProxy);
  socket_->setReadBufferSize(kReadAtOnce);
  const auto notice = [this] { Notice(); };
  QObject::connect(socket_.get(), &QTcpSocket::connected, notice);
  QObject::connect(socket_.get(), &QTcpSocket::readyRead, notice);
  QObject::connect(socket_.get(), &QTcpSocket::disconnected, notice);
  QObject::connect(socket_.get(), &QTcpSocket::errorOccurred, notice);
  if (!untried_.empty()) tryLimit_ = scheduler_.After(kTryLimit, [this] { TryNext(); });
  socket_->connectToHost(peer, address_.port);
}

void TcpChannel::Disconnect() {
  lookup_.Cancel();
  tryLimit_.Cancel();
  untried_.clear();
  alive_.reset();
  noticed_ = connected_ = false;
  if (!socket_) return;
  socket_->disconnect();
  socket_->abort();
  socket_.reset();
}

void TcpChannel::Send(std::string_view bytes) {
  if (socket_ && connected_) Write(*socket_, bytes);
}

std::optional<ServerAddress> TcpChannel::Peer() const {
  if (!connected_) return std::nullopt;
  return ServerAddress{lastPeer_.toString().toStdString(), address_.port};
}

bool TcpChannel::SendNow(const ServerAddress& address, std::string_view bytes, Milliseconds limit) {
  if (!socket_ || !connected_) return SendOnce(address, bytes, limit);
  QElapsedTimer since;
  since.start();
  Write(*socket_, bytes);
  return WaitUntilSent(*socket_, since, limit);
}

// The socket's signals may come in the middle of one of its own calls; what happened is told in a
// turn of the loop of its own.
void TcpChannel::Notice() {
  if (noticed_) return;
  noticed_ = true;
  scheduler_.Post([this, weak = std::weak_ptr(alive_)] {
    if (weak.lock()) Deliver();
  });
}

void TcpChannel::Deliver() {
  noticed_ = false;
  const std::weak_ptr current = alive_;
  if (!connected_ && socket_->state() == QAbstractSocket::ConnectedState) {
    connected_ = true;
    tryLimit_.Cancel();
    socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket_->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    lastPeer_ = socket_->peerAddress();
    connected.Raise();
    if (current.expired()) return;
  }
  if (socket_->bytesAvailable() > 0) {
    const QByteArray bytes = socket_->read(kReadAtOnce);
    received.Raise({bytes.data(), static_cast<size_t>(bytes.size())});
    if (current.expired()) return;
    if (socket_->bytesAvailable() > 0) return Notice();
  }
  if (socket_->state() != QAbstractSocket::UnconnectedState) return;
  if (!connected_ && !untried_.empty()) return TryNext();
  const bool refused = socket_->error() == QAbstractSocket::ConnectionRefusedError;
  const auto cause = connected_ ? RigLink::Cause::Closed
                     : refused  ? RigLink::Cause::Refused
                                : RigLink::Cause::Unreachable;
  Disconnect();
  closed.Raise(cause);
}

bool TcpChannel::SendOnce(const ServerAddress& address, std::string_view bytes,
                          Milliseconds limit) const {
  if (limit.count() <= 0) return false;
  QHostAddress peer(QString::fromStdString(address.host));
  if (peer.isNull() && address.host == address_.host) peer = lastPeer_;
  if (peer.isNull() && address.host == "localhost") peer = QHostAddress::LocalHost;
  if (peer.isNull()) return false;
  QElapsedTimer since;
  since.start();
  QTcpSocket socket;
  socket.setProxy(QNetworkProxy::NoProxy);
  socket.connectToHost(peer, address.port);
  if (!socket.waitForConnected(Remaining(since, limit))) return false;
  Write(socket, bytes);
  return WaitUntilSent(socket, since, limit);
}

}  // namespace velt
