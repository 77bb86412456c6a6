#include "Fleet.h"

#include <memory>
#include <sstream>
#include <utility>

#include "Endpoint.h"
#include "ScaleLine.h"

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
  std::ostringstream xml;
  xml << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SETTINGS>\n";
  for (std::size_t i = 0; i < members_.size(); ++i) {
    const Member& member = members_[i];
    xml << "  <SCALES" << i << " fNum=\"" << i << "\" fType=\"" << member.model->number
        << "\" fLeaveConnect=\"" << (keepConnections ? 1 : 0) << "\" fCoeff=\"1\" ";
    if (member.overTcp) {
      xml << "fIsComPort=\"0\" fHost=\"127.0.0.1\" fTCPPort=\"" << member.address << "\"/>\n";
    } else {
      xml << "fIsComPort=\"1\" fComPortName=\"" << member.address << "\" fComBaudRate=\""
          << kBaudRate << "\"/>\n";
    }
  }
  xml << "</SETTINGS>\n";
  folder_.write("settings.xml", xml.str());
  return folder_.path();
}
