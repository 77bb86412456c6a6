// Which processes have a line open.

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "Holders.h"
#include "Program.h"
#include "PtyLine.h"

namespace {

TEST(Holders, NamesOtherProcessesOnly) {
  fixture::PtyLine line;
  EXPECT_TRUE(devices::holdersOf(line.path()).processes.empty()) << "this process holds it too";
  fixture::Program holder({"sh", "-c", "exec 3<>\"$0\"; echo; read x", line.path()},
                          fixture::Program::Errors::Apart);
  holder.line();
  // Also by another path to the same device.
  for (const std::string& path : {line.path(), std::filesystem::canonical(line.path()).string()}) {
    const auto holders = devices::holdersOf(path).processes;
    ASSERT_EQ(holders.size(), 1U) << path;
    EXPECT_EQ(holders[0].pid, holder.pid());
    EXPECT_EQ(holders[0].name, "sh");
  }
  EXPECT_TRUE(devices::holdersOf("/dev/no-such-scale").processes.empty());
}

TEST(Holders, TheOtherEndOfAPseudoTerminalIsNone) {
  // As a simulator does it: both ends open in one process, seen from another.
  fixture::PtyLine line;
  const pid_t child = ::fork();
  if (child == 0) {
    // The child has both ends too; for itself it is no holder, and its parent isn't one either.
    const bool none = devices::holdersOf(line.path()).processes.empty();
    ::_exit(none ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

}  // namespace
