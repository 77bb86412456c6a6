#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace devices {

/// Who asks for a device.
struct User {
  uid_t id = 0;
  std::string name;
  /// What this session may act as.
  std::vector<gid_t> groups;
  /// What a session begun now could act as.
  std::vector<gid_t> groupsOfNextLogin;
};

/// Whose session this process belongs to.
User currentUser();

/// What a user lacks for reading and writing a device.
enum class Lack {
  Nothing,
  /// Membership in the device's group.
  Group,
  /// A member already, but the session is older than that.
  NewLogin,
  /// The permission bits of a device of the user's own.
  OwnBits,
  /// The device's group can't use it either, or is root's: the system has to hand it out.
  Rule,
};

/// The owner of a device and what others may do with it.
struct Access {
  uid_t ownerId = 0;
  gid_t groupId = 0;
  /// Names, or the numbers where there is no name.
  std::string owner;
  std::string group;
  /// The nine bits of permission.
  mode_t mode = 0;

  /// "rw-rw----"
  std::string modeText() const;
  /// What these bits deny. Nothing for root.
  Lack lackOf(const User& user) const;
  /// The shell command that gives `user` what is lacking; empty for nothing.
  std::string remedy(Lack lack, const std::filesystem::path& device, const User& user) const;
};

/// None for a path that leads nowhere.
std::optional<Access> accessOf(const std::filesystem::path& device);

/// Whether this process may read and write a device, by whatever right.
bool mayUse(const std::filesystem::path& device);

}  // namespace devices
