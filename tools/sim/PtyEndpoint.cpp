#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <termios.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <string>
#include <system_error>

#include "Endpoint.h"

namespace sim {

namespace {

/// Bytes that may wait unread before a streaming scale's old frames are thrown away. Small enough
/// that the line's own buffer never fills while no host has it open.
constexpr int kUnreadLimit = 1024;
/// What a host hasn't read when the line vanishes is gone; hosts look every 50 ms.
constexpr std::chrono::milliseconds kGraceBeforeHangUp{200};
constexpr std::chrono::milliseconds kStreamInterval{100};

/// A speed that no scale has counts as the highest.
int bitsPerSecondOf(speed_t constant) {
  static const std::map<speed_t, int> kSpeeds = {
      {B600, 600},     {B1200, 1200},   {B2400, 2400},   {B4800, 4800},    {B9600, 9600},
      {B19200, 19200}, {B38400, 38400}, {B57600, 57600}, {B115200, 115200}};
  const auto speed = kSpeeds.find(constant);
  return speed == kSpeeds.end() ? 115200 : speed->second;
}

/// Links of simulators lead to "/dev/./pts/7", and by the dot they are known again.
constexpr std::string_view kPtyFolder = "/dev/pts/";
constexpr std::string_view kMarkedPtyFolder = "/dev/./pts/";

/// Takes a name for this process, until the descriptor is closed or the process ends, however it
/// does: a socket's address that needs no file.
FileDescriptor claim(const std::filesystem::path& link) {
  FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  if (!socket) fail("socket");
  const auto folder = std::filesystem::weakly_canonical(link.parent_path());
  const std::size_t hash = std::hash<std::string>()(folder / link.filename());
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  // Behind a first byte of 0 stands no path but a name of its own kind.
  const std::string name = "scalesim-" + std::to_string(hash);
  std::ranges::copy(name, std::begin(address.sun_path) + 1);
  const void* any = &address;
  if (::bind(socket.get(), static_cast<const sockaddr*>(any), sizeof address) != 0) {
    errno = errno == EADDRINUSE ? EBUSY : errno;
    fail(link.string());
  }
  return socket;
}

/// Makes a link by way of a second name, so that at no moment it is missing.
void replaceLink(const std::string& target, const std::filesystem::path& link) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path old = fs::read_symlink(link, error);
  const bool ours = !error && old.string().starts_with(kMarkedPtyFolder);
  if (!ours && fs::exists(fs::symlink_status(link))) {
    errno = EEXIST;
    fail(link.string());
  }
  const std::string fresh = link.parent_path() / (".scalesim-" + std::to_string(::getpid()) + '-' +
                                                  link.filename().string());
  if (::symlink(target.c_str(), fresh.c_str()) != 0) fail(fresh);
  if (::rename(fresh.c_str(), link.c_str()) == 0) return;
  const int reason = errno;
  ::unlink(fresh.c_str());
  errno = reason;
  fail(link.string());
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
  std::string name = std::filesystem::temp_directory_path() / "scalesim-XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) fail("mkdtemp " + name);
  path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

PtyEndpoint::PtyEndpoint(std::filesystem::path link)
    : Endpoint(kGraceBeforeHangUp, kStreamInterval), link_(std::move(link)) {
  if (link_.empty()) {
    directory_.emplace();
    link_ = directory_->path() / "line";
  } else {
    link_ = std::filesystem::absolute(link_).lexically_normal();
  }
  claim_ = claim(link_);
  comeBack();
}

PtyEndpoint::~PtyEndpoint() { goAway(); }

void PtyEndpoint::comeBack() {
  if (master_) return;
  FileDescriptor master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (!master || ::grantpt(master.get()) != 0 || ::unlockpt(master.get()) != 0) {
    fail("pseudo-terminal");
  }
  std::array<char, 128> name = {};
  if (::ptsname_r(master.get(), name.data(), name.size()) != 0) fail("ptsname");
  FileDescriptor slave(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (!slave) fail(name.data());
  // Without this the line would echo the first frames back to the scale and wait for line ends.
  termios raw = {};
  ::tcgetattr(slave.get(), &raw);
  ::cfmakeraw(&raw);
  if (::tcsetattr(slave.get(), TCSANOW, &raw) != 0) fail("tcsetattr");

  slavePath_ = name.data();
  if (slavePath_.starts_with(kPtyFolder))
    slavePath_.replace(0, kPtyFolder.size(), kMarkedPtyFolder);
  replaceLink(slavePath_, link_);
  slave_ = std::move(slave);
  master_ = std::move(master);
}

void PtyEndpoint::goAway() {
  if (!master_) return;
  // A link that meanwhile leads elsewhere belongs to somebody else.
  std::error_code error;
  if (std::filesystem::read_symlink(link_, error) == slavePath_) {
    std::filesystem::remove(link_, error);
  }
  slave_.reset();
  master_.reset();
}

Bytes PtyEndpoint::receive() {
  std::array<std::uint8_t, 4096> chunk = {};
  const ssize_t got = ::read(master_.get(), chunk.data(), chunk.size());
  if (got <= 0) return {};
  const auto arrived = std::span(chunk).first(static_cast<std::size_t>(got));
  if (own_) return received(arrived, hostEnd(), *own_, Receiver::Strict);
  return {arrived.begin(), arrived.end()};
}

LineEnd PtyEndpoint::hostEnd() const {
  LineEnd host = *own_;
  termios settings = {};
  if (::tcgetattr(slave_.get(), &settings) == 0) {
    host.bitsPerSecond = bitsPerSecondOf(::cfgetospeed(&settings));
  }
  return host;
}

void PtyEndpoint::send(std::span<const std::uint8_t> bytes) {
  if (!master_) return;
  int unread = 0;
  if (::ioctl(slave_.get(), FIONREAD, &unread) == 0 && unread > kUnreadLimit) {
    ::tcflush(slave_.get(), TCIFLUSH);
  }
  fill(own_ ? received(bytes, *own_, hostEnd(), Receiver::TakesAll)
            : Bytes(bytes.begin(), bytes.end()));
}

std::size_t PtyEndpoint::fill(std::span<const std::uint8_t> bytes) {
  const ssize_t taken = master_ ? ::write(master_.get(), bytes.data(), bytes.size()) : 0;
  return static_cast<std::size_t>(std::max<ssize_t>(taken, 0));
}

}  // namespace sim
