#include "adapters/rigctld/tcp_channel.h"

#include <QElapsedTimer>
#include <QNetworkProxy>
#include <algorithm>

namespace velt {

namespace {

constexpr qint64 kReadAtOnce = qint64{64} * 1024;

int Remaining(const QElapsedTimer& since, Milliseconds limit) {
  return static_cast<int>(std::max<qint64>(limit.count() - since.elapsed(), 1));
}

void Write(QTcpSocket& socket, std::string_view bytes) {
  socket.write(bytes.data(), static_cast<qint64>(bytes.size()));
  socket.flush();
}

bool WaitUntilSent(QTcpSocket& socket, const QElapsedTimer& since, Milliseconds limit) {
  while (socket.bytesToWrite() > 0) {
    if (!socket.waitForBytesWritten(Remaining(since, limit))) return false;
  }
  return socket.state() == QAbstractSocket::ConnectedState;
}

}  // namespace

TcpChannel::~TcpChannel() {
  Disconnect();
}

void TcpChannel::Connect(const ServerAddress& address) {
  Disconnect();
  if (host_ != address.host) lastPeer_.clear();
  host_ = address.host;
  socket_ = std::make_unique<QTcpSocket>();
  alive_ = std::make_shared<char>();
  socket_->setProxy(QNetworkProxy::NoProxy);
  socket_->setReadBufferSize(kReadAtOnce);
  const auto notice = [this] { Notice(); };
  QObject::connect(socket_.get(), &QTcpSocket::connected, notice);
  QObject::connect(socket_.get(), &QTcpSocket::readyRead, notice);
  QObject::connect(socket_.get(), &QTcpSocket::disconnected, notice);
  QObject::connect(socket_.get(), &QTcpSocket::errorOccurred, notice);
  socket_->connectToHost(QString::fromStdString(address.host), address.port);
}

void TcpChannel::Disconnect() {
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
    socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket_->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    lastPeer_ = socket_->peerAddress();
    onConnected();
    if (current.expired()) return;
  }
  if (socket_->bytesAvailable() > 0) {
    const QByteArray bytes = socket_->read(kReadAtOnce);
    onBytes({bytes.data(), static_cast<size_t>(bytes.size())});
    if (current.expired()) return;
    if (socket_->bytesAvailable() > 0) return Notice();
  }
  if (socket_->state() == QAbstractSocket::UnconnectedState) {
    Disconnect();
    onClosed();
  }
}

bool TcpChannel::SendOnce(const ServerAddress& address, std::string_view bytes,
                          Milliseconds limit) const {
  QHostAddress peer(QString::fromStdString(address.host));
  if (peer.isNull() && address.host == host_) peer = lastPeer_;
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
