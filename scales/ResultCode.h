#pragma once

/// How an operation on a scale ended. One numbering for drivers, registry and platform.
enum ResultCode : int {
  kSuccess = 0,
  /// No connection can be made, or an exception left the port.
  kNoConnection = 1,
  /// Reserved for the serial port; nothing gives it today.
  kSerialPortError = 2,
  kNoAnswer = 3,
  kPriceFormat = 4,
  /// The scale, or the driver for its model, doesn't know the command.
  kNotSupported = 5,
  kOverload = 7,
  kDeviceIdNotFound = 8,
  kAlreadyOpen = 9,
  kWrongFolder = 130,
  /// Nothing done yet, no free slot, or a reading that a scale marks as none.
  kUnknown = 1099,
};

/// The Russian text of a code, UTF-8. For `kWrongFolder` it is the part in front of the folder's
/// name, which `kWrongFolderEnd` follows. "UnknownError" for every code without a text.
const char* resultText(int code);

inline constexpr const char* kWrongFolderEnd = "'";
