#include "DeviceAccess.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "Text.h"

namespace devices {

namespace {

constexpr uid_t kRoot = 0;
constexpr mode_t kReadWrite = S_IROTH | S_IWOTH;
constexpr unsigned kOwnerShift = 6;
constexpr unsigned kGroupShift = 3;

/// Behind the distribution's own rules for serial devices, so that it has the last word.
constexpr const char* kRulesFile = "/etc/udev/rules.d/70-scales.rules";

std::string ownerName(uid_t id) {
  const passwd* entry = ::getpwuid(id);
  return entry == nullptr ? std::to_string(id) : entry->pw_name;
}

std::string groupName(gid_t id) {
  const group* entry = ::getgrgid(id);
  return entry == nullptr ? std::to_string(id) : entry->gr_name;
}

std::vector<gid_t> groupsOfSession() {
  const int count = ::getgroups(0, nullptr);
  std::vector<gid_t> groups(count < 0 ? 0 : static_cast<std::size_t>(count));
  ::getgroups(static_cast<int>(groups.size()), groups.data());
  groups.push_back(::getegid());
  return groups;
}

std::vector<gid_t> groupsOfAccount(const std::string& name) {
  const passwd* entry = ::getpwnam(name.c_str());
  if (entry == nullptr) return {};
  const gid_t own = entry->pw_gid;
  int count = 0;
  ::getgrouplist(name.c_str(), own, nullptr, &count);
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(count, 0)));
  ::getgrouplist(name.c_str(), own, groups.data(), &count);
  return groups;
}

bool contains(const std::vector<gid_t>& groups, gid_t group) {
  return std::find(groups.begin(), groups.end(), group) != groups.end();
}

bool isFull(mode_t bits) { return (bits & kReadWrite) == kReadWrite; }

}  // namespace

User currentUser() {
  User user{.id = ::geteuid(), .name = {}, .groups = groupsOfSession(), .groupsOfNextLogin = {}};
  user.name = ownerName(user.id);
  user.groupsOfNextLogin = groupsOfAccount(user.name);
  return user;
}

std::string Access::modeText() const {
  static constexpr std::string_view kLetters = "rwxrwxrwx";
  std::string text(kLetters);
  for (std::size_t i = 0; i < kLetters.size(); ++i) {
    if ((mode >> (kLetters.size() - 1 - i) & 1U) == 0) text[i] = '-';
  }
  return text;
}

Lack Access::lackOf(const User& user) const {
  if (user.id == kRoot) return Lack::Nothing;
  // The system looks at one set of bits alone: the first that speaks of the user.
  if (user.id == ownerId) return isFull(mode >> kOwnerShift) ? Lack::Nothing : Lack::OwnBits;
  const bool groupMay = isFull(mode >> kGroupShift);
  if (contains(user.groups, groupId)) return groupMay ? Lack::Nothing : Lack::Rule;
  if (isFull(mode)) return Lack::Nothing;
  // Nobody is to join root's group for the sake of a scale.
  if (!groupMay || groupId == kRoot) return Lack::Rule;
  return contains(user.groupsOfNextLogin, groupId) ? Lack::NewLogin : Lack::Group;
}

std::string Access::remedy(Lack lack, const std::filesystem::path& device, const User& user) const {
  switch (lack) {
    case Lack::Nothing: return {};
    case Lack::Group:
      return fmt::format("sudo usermod -aG {} {}", shellWord(group), shellWord(user.name));
    case Lack::NewLogin: return "newgrp " + shellWord(group);
    case Lack::OwnBits: return "sudo chmod u+rw " + shellWord(device.string());
    case Lack::Rule: {
      // By the kernel's own name: a link to the device has another.
      const std::string name = std::filesystem::weakly_canonical(device).filename();
      const std::string rule = fmt::format("KERNEL==\"{}\", OWNER=\"{}\"", name, user.name);
      return fmt::format(
          "echo {} | sudo tee {} && sudo udevadm control --reload && sudo udevadm trigger",
          shellWord(rule), kRulesFile);
    }
  }
  return {};
}

std::optional<Access> accessOf(const std::filesystem::path& device) {
  struct stat info = {};
  if (::stat(device.c_str(), &info) != 0) return std::nullopt;
  return Access{.ownerId = info.st_uid,
                .groupId = info.st_gid,
                .owner = ownerName(info.st_uid),
                .group = groupName(info.st_gid),
                .mode = info.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)};
}

bool mayUse(const std::filesystem::path& device) {
  return ::faccessat(AT_FDCWD, device.c_str(), R_OK | W_OK, AT_EACCESS) == 0;
}

}  // namespace devices
