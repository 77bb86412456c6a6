// What the bits of a device mean for a user, and what mends it.

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DeviceAccess.h"
#include "TempFolder.h"

namespace {

using devices::Access;
using devices::Lack;
using devices::User;
using testing::HasSubstr;

constexpr uid_t kAnna = 1000;
constexpr gid_t kDialout = 20;

TEST(Access, NamesWhatIsLackingAndTheRemedy) {
  const User outsider{.id = kAnna, .name = "anna", .groups = {1000}, .groupsOfNextLogin = {1000}};
  const User newMember{
      .id = kAnna, .name = "anna", .groups = {1000}, .groupsOfNextLogin = {1000, kDialout}};
  const User member{.id = kAnna,
                    .name = "anna",
                    .groups = {1000, kDialout},
                    .groupsOfNextLogin = {1000, kDialout}};
  const User root{.id = 0, .name = "root", .groups = {0}, .groupsOfNextLogin = {0}};
  const struct {
    uid_t owner;
    gid_t group;
    mode_t mode;
    const User& user;
    Lack lack;
    const char* remedy;
  } cases[] = {
      {0, kDialout, 0660, root, Lack::Nothing, ""},
      {0, kDialout, 0660, member, Lack::Nothing, ""},
      {0, kDialout, 0666, outsider, Lack::Nothing, ""},
      {kAnna, kDialout, 0600, outsider, Lack::Nothing, ""},
      {0, kDialout, 0660, outsider, Lack::Group, "sudo usermod -aG dialout anna"},
      {0, kDialout, 0660, newMember, Lack::NewLogin, "newgrp dialout"},
      // Reading alone is too little for a scale that is asked.
      {0, kDialout, 0664, outsider, Lack::Group, "sudo usermod -aG dialout anna"},
      {0, kDialout, 0640, member, Lack::Rule, "KERNEL==\"ttyS0\", OWNER=\"anna\""},
      {0, 0, 0660, outsider, Lack::Rule, "sudo udevadm trigger"},
      {0, kDialout, 0600, outsider, Lack::Rule, "/etc/udev/rules.d/"},
      // The owner's bits count alone, even if all others may.
      {kAnna, kDialout, 0066, member, Lack::OwnBits, "sudo chmod u+rw /dev/ttyS0"},
  };
  for (const auto& row : cases) {
    const Access access{.ownerId = row.owner,
                        .groupId = row.group,
                        .owner = "root",
                        .group = "dialout",
                        .mode = row.mode};
    SCOPED_TRACE(access.modeText() + " for " + row.user.name);
    EXPECT_EQ(access.lackOf(row.user), row.lack);
    EXPECT_THAT(access.remedy(row.lack, "/dev/ttyS0", row.user), HasSubstr(row.remedy));
  }
  // Commands to copy hold any name.
  EXPECT_EQ(Access{}.remedy(Lack::OwnBits, "/dev/my scale's", root),
            "sudo chmod u+rw '/dev/my scale'\\''s'");
  EXPECT_THAT(Access{}.remedy(Lack::Rule, "/dev/a'b", root), HasSubstr("KERNEL==\"a'\\''b\""));
}

TEST(Access, ReadsOwnerGroupAndBitsOfAFile) {
  const fixture::TempFolder folder;
  const std::string file = folder.write("device", "");
  ::chmod(file.c_str(), 0640);
  const auto access = devices::accessOf(file);
  ASSERT_TRUE(access);
  EXPECT_EQ(access->modeText(), "rw-r-----");
  EXPECT_EQ(access->ownerId, ::geteuid());
  EXPECT_EQ(access->owner, devices::currentUser().name);
  EXPECT_TRUE(devices::mayUse(file));
  const std::string link = folder.file("link");
  std::filesystem::create_symlink(file, link);
  EXPECT_THAT(access->remedy(Lack::Rule, link, devices::currentUser()),
              HasSubstr("KERNEL==\"device\""));
  EXPECT_FALSE(devices::accessOf(folder.file("none")));
  EXPECT_FALSE(devices::mayUse(folder.file("none")));
}

}  // namespace
