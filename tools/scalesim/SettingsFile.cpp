#include "SettingsFile.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "Texts.h"

namespace {

constexpr std::size_t kMostScales = 100;
constexpr const char* kFileName = "settings.xml";
/// By its root a file of ours is known again.
constexpr std::string_view kRoot = "SCALESIM";
constexpr int kUsualSpeed = 9600;

std::string attributeText(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&': escaped += "&amp;"; break;
      case '<': escaped += "&lt;"; break;
      case '"': escaped += "&quot;"; break;
      default: escaped += c;
    }
  }
  return escaped;
}

std::string documentOf(const std::vector<SettingsEntry>& entries) {
  std::ostringstream document;
  document << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<" << kRoot << ">\n";
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const SettingsEntry& entry = entries[i];
    const bool serial = entry.tcpPort == 0;
    const std::string port = attributeText(entry.port);
    document << "  <SCALES" << i << " fNum=\"" << entry.id << "\" fType=\"" << entry.model
             << "\" fIsComPort=\"" << (serial ? 1 : 0) << "\" fComBaudRate=\"" << kUsualSpeed
             << "\" fTCPPort=\"" << entry.tcpPort << "\" fLeaveConnect=\"0\" fComPortName=\""
             << (serial ? port : "") << "\" fHost=\"" << (serial ? "" : port)
             << "\" fCoeff=\"1.000\"/>\n";
  }
  document << "</" << kRoot << ">\n";
  return document.str();
}

}  // namespace

void refuseForeignSettings(const std::filesystem::path& folder) {
  const std::filesystem::path path = folder / kFileName;
  std::ifstream file(path);
  if (!file) return;
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (text.find("<" + std::string(kRoot) + ">") == std::string::npos) {
    throw std::runtime_error(fill(texts::kForeignSettings, {path.string()}));
  }
}

SettingsFile::SettingsFile(const std::filesystem::path& folder,
                           const std::vector<SettingsEntry>& entries)
    : path_(folder / kFileName) {
  if (entries.size() > kMostScales) throw std::runtime_error("more than 100 scales");
  refuseForeignSettings(folder);
  // By way of a second name, so that whoever waits for the file finds it whole.
  const std::filesystem::path fresh = path_.string() + ".new";
  {
    std::ofstream file(fresh);
    file << documentOf(entries) << std::flush;
    if (!file) throw std::system_error(errno, std::generic_category(), fresh.string());
  }
  std::filesystem::rename(fresh, path_);
}

SettingsFile::~SettingsFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}
