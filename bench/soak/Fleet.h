#pragma once

#include <string>
#include <thread>
#include <vector>

#include "ScaleModel.h"
#include "SimulationLoop.h"
#include "TempFolder.h"

/// As many simulated scales as the component takes, half of them on serial lines and half on TCP,
/// all on one thread.
class Fleet {
 public:
  explicit Fleet(int size);
  ~Fleet();
  Fleet(const Fleet&) = delete;
  Fleet& operator=(const Fleet&) = delete;

  struct Member {
    const sim::ScaleModel* model;
    bool overTcp;
    /// Device path or TCP port.
    std::string address;
    sim::Reading expected;
  };
  /// A member's device id is its index.
  const std::vector<Member>& members() const { return members_; }

  /// Writes a settings file with all of them and returns its folder.
  std::string writeSettings(bool keepConnections) const;

 private:
  void add(const sim::ScaleModel& model, bool overTcp);

  fixture::TempFolder folder_;
  std::vector<Member> members_;
  sim::SimulationLoop loop_;
  std::thread thread_;
};
