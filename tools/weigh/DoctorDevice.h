#pragma once

#include <optional>

#include "Doctor.h"

namespace weigh {

/// What keeps a serial device from being used; none if nothing does. Gives the diagnosis the
/// serial devices that there are, where the user named something else.
std::optional<Finding> deviceTrouble(const Connection& connection, const devices::Roots& roots,
                                     Diagnosis& diagnosis);

/// What is worth knowing of a device that works.
std::vector<Finding> deviceNotes(const std::filesystem::path& device, const devices::Roots& roots);

/// The paths of the serial devices that there are: "/dev/ttyS0, /dev/ttyUSB0".
std::string serialDevicesText(const devices::Roots& roots = {});

/// "FTDI FT232R USB UART", or the driver's name for a port without adapter.
std::string adapterText(const devices::SerialDevice& device);

}  // namespace weigh
