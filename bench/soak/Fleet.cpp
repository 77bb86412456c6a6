#include "Fleet.h"

#include <memory>
#include <utility>

#include "Endpoint.h"
#include "ScaleLine.h"
#include "SettingsEntry.h"

namespace {

/// Models that answer at once when they are asked. The others wait for their own next frame, which
/// takes long and costs the component nothing.
std::vector<const sim::ScaleModel*> askedModels(bool overTcp) {
  std::vector<const sim::ScaleModel*> models;
  for (const sim::ScaleModel& model : sim::scaleModels()) {
    if (!model.streams() && (!overTcp || model.worksOverTcp())) models.push_back(&model);
  }
  return models;
}

}  // namespace

Fleet::Fleet(int size) {
  for (int i = 0; i < size; ++i) {
    const bool overTcp = i % 2 != 0;
    const auto models = askedModels(overTcp);
    add(*models[static_cast<std::size_t>(i / 2) % models.size()], overTcp);
  }
  thread_ = std::thread([this] { loop_.run(); });
}

Fleet::~Fleet() {
  loop_.stop();
  thread_.join();
}

void Fleet::add(const sim::ScaleModel& model, bool overTcp) {
  std::unique_ptr<sim::Endpoint> endpoint;
  std::string address;
  if (overTcp) {
    auto tcp = std::make_unique<sim::TcpEndpoint>();
    address = std::to_string(tcp->port());
    endpoint = std::move(tcp);
  } else {
    endpoint = std::make_unique<sim::PtyEndpoint>();
    address = endpoint->address();
  }
  const sim::Scale scale(model);
  members_.push_back({&model, overTcp, address, scale.expectedReading()});
  loop_.add(std::make_unique<sim::ScaleLine>(scale, std::move(endpoint)));
}

std::string Fleet::writeSettings(bool keepConnections) const {
  constexpr int kBaudRate = 115200;
  std::vector<SettingsEntry> entries;
  for (const Member& member : members_) {
    SettingsEntry& entry =
        entries.emplace_back(SettingsEntry{.number = static_cast<std::int32_t>(entries.size()),
                                           .model = member.model->number,
                                           .leaveConnection = keepConnections ? 1 : 0,
                                           .coefficient = "1"});
    if (member.overTcp) {
      entry.host = "127.0.0.1";
      entry.tcpPort = std::stoi(member.address);
    } else {
      entry.isComPort = 1;
      entry.comPortName = member.address;
      entry.baudRate = kBaudRate;
    }
  }
  folder_.write(kSettingsFile, settingsDocument("SETTINGS", entries));
  return folder_.path();
}
