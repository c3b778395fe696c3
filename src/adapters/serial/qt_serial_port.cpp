#include "adapters/serial/qt_serial_port.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <QString>
#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "text/numbers.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr Milliseconds kLookAgain{10};

// The system's number for what Qt made of it.
int ErrorNumber(QSerialPort::SerialPortError error) {
  switch (error) {
    case QSerialPort::DeviceNotFoundError:
      return ENOENT;
    case QSerialPort::PermissionError:
      return EBUSY;  // those who may not open it at all were told before
    case QSerialPort::UnsupportedOperationError:
      return EINVAL;
    default:
      return EIO;
  }
}

// Empty: the fifth field and those behind it are nobody's.
std::optional<std::array<std::string_view, 4>> FieldsOf(std::string_view settings) {
  std::array<std::string_view, 4> fields;
  for (size_t i = 0; i < fields.size(); ++i) {
    const size_t comma = settings.find(',');
    const bool last = i + 1 == fields.size();
    if (last != (comma == std::string_view::npos)) return std::nullopt;
    fields.at(i) = Trimmed(settings.substr(0, comma));
    if (!last) settings.remove_prefix(comma + 1);
  }
  return fields;
}

std::optional<QSerialPort::Parity> ParityOf(std::string_view letter) {
  if (letter == "N") return QSerialPort::NoParity;
  if (letter == "O") return QSerialPort::OddParity;
  if (letter == "E") return QSerialPort::EvenParity;
  return std::nullopt;
}

// The lines fall when the last descriptor of the device is gone, however that comes.
void HangUpOnClose(int descriptor) {
  termios settings{};
  if (::tcgetattr(descriptor, &settings) != 0) return;
  settings.c_cflag |= HUPCL;
  ::tcsetattr(descriptor, TCSANOW, &settings);
}

// Closes it as it is. Qt would first bring back the speed that it found, and what was written last
// would leave at that one, or be garbled on its way.
void CloseAsItIs(QSerialPort& device) {
  const int descriptor = static_cast<int>(device.handle());
  ::ioctl(descriptor, TIOCNXCL);
  const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  if (nothing >= 0) {
    ::dup3(nothing, descriptor, O_CLOEXEC);
    ::close(nothing);
  }
  device.close();
}

}  // namespace

QtSerialPort::QtSerialPort(Scheduler& scheduler, DeviceNames names)
    : scheduler_(scheduler), names_(std::move(names)) {}

QtSerialPort::~QtSerialPort() {
  Close();
}

void QtSerialPort::SetDTREnable(bool on) {
  dtr_ = on;
  if (device_) device_->setDataTerminalReady(on);
}

void QtSerialPort::SetRTSEnable(bool on) {
  rts_ = on;
  if (device_) device_->setRequestToSend(on);
}

int QtSerialPort::Open() {
  if (device_) return 0;
  const std::string path = PathText(names_.Of(number_));
  auto device = std::make_unique<QSerialPort>();
  if (!ApplySettings(*device)) return EINVAL;
  if (::access(path.c_str(), R_OK | W_OK) != 0) return errno;
  device->setPortName(QString::fromStdString(path));
  if (!device->open(QIODevice::ReadWrite)) return ErrorNumber(device->error());
  BringLines(*device);
  HangUpOnClose(device->handle());
  QSerialPort* port = device.get();
  device_ = std::move(device);
  QObject::connect(port, &QSerialPort::readyRead, port, [this] { TakeInput(); });
  QObject::connect(
      port, &QSerialPort::errorOccurred, port, [this](QSerialPort::SerialPortError error) {
        // A device without control lines says so at each attempt.
        if (error == QSerialPort::NoError || error == QSerialPort::UnsupportedOperationError) {
          return;
        }
        Failed(ErrorNumber(error));
      });
  return 0;
}

void QtSerialPort::Close() {
  failing_.Cancel();
  drainLook_.Cancel();
  if (!device_) return;
  device_->disconnect();
  device_->setDataTerminalReady(false);
  device_->setRequestToSend(false);
  // Closing would wait for what a stuck device does not take.
  const bool stuck = scheduler_.Now() - lastOutput_ > kStuckAfter && OutBufferCount() > 0;
  if (stuck) ::tcflush(device_->handle(), TCOFLUSH);
  CloseAsItIs(*device_);
  // It may be one of its own signals that led here.
  device_.release()->deleteLater();
}

void QtSerialPort::Output(std::string_view bytes) {
  if (!device_) return;
  device_->write(bytes.data(), static_cast<qint64>(bytes.size()));
  device_->flush();  // as much as the device takes now: the program may end before its next turn
  lastOutput_ = scheduler_.Now();
  LookWhetherDrained();
}

size_t QtSerialPort::OutBufferCount() const {
  return device_ ? static_cast<size_t>(device_->bytesToWrite()) + Count(TIOCOUTQ) : 0;
}

size_t QtSerialPort::InBufferCount() const {
  return device_ ? static_cast<size_t>(device_->bytesAvailable()) + Count(FIONREAD) : 0;
}

std::string QtSerialPort::Input(size_t count) {
  if (!device_) return {};
  return device_->read(static_cast<qint64>(std::min(count, kMostInput))).toStdString();
}

int QtSerialPort::Descriptor() const {
  return device_ ? static_cast<int>(device_->handle()) : -1;
}

bool QtSerialPort::ApplySettings(QSerialPort& device) const {
  const auto fields = FieldsOf(settings_);
  if (!fields) return false;
  const auto baud = ParseWhole((*fields)[0]);
  const auto parity = ParityOf((*fields)[1]);
  const auto dataBits = ParseWhole((*fields)[2]);
  const auto stopBits = ParseWhole((*fields)[3]);
  if (!baud || *baud < 1 || !parity || !dataBits || *dataBits < QSerialPort::Data5 ||
      *dataBits > QSerialPort::Data8 || !stopBits || *stopBits < 1 || *stopBits > 2) {
    return false;
  }
  return device.setBaudRate(*baud) && device.setParity(*parity) &&
         device.setDataBits(static_cast<QSerialPort::DataBits>(*dataBits)) &&
         device.setStopBits(*stopBits == 2 ? QSerialPort::TwoStop : QSerialPort::OneStop) &&
         device.setFlowControl(QSerialPort::NoFlowControl);
}

// The system has raised both by opening it. What is not wanted goes first.
void QtSerialPort::BringLines(QSerialPort& device) const {
  if (!dtr_) device.setDataTerminalReady(false);
  if (!rts_) device.setRequestToSend(false);
  if (dtr_) device.setDataTerminalReady(true);
  if (rts_) device.setRequestToSend(true);
}

void QtSerialPort::TakeInput() {
  const auto unread = device_->bytesAvailable() - static_cast<qint64>(kMostInput);
  if (unread > 0) device_->skip(unread);
  received.Raise();
}

void QtSerialPort::LookWhetherDrained() {
  drainLook_ = scheduler_.After(kLookAgain, [this] {
    if (OutBufferCount() > 0) {
      LookWhetherDrained();
    } else {
      drained.Raise();
    }
  });
}

// Qt goes on signalling for as long as a dead device is open. Whatever comes meanwhile counts as
// the same failure.
void QtSerialPort::Failed(int error) {
  device_->disconnect();
  failing_ = scheduler_.After(Milliseconds(0), [this, error] {
    Close();
    failed.Raise(error);
  });
}

size_t QtSerialPort::Count(unsigned long request) const {
  int count = 0;
  if (::ioctl(static_cast<int>(device_->handle()), request, &count) != 0 || count < 0) return 0;
  return static_cast<size_t>(count);
}

}  // namespace velt
