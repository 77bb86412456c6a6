#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "CkString.h"
#include "ComLanPort.h"
#include "ResultCode.h"

class IAddInDefBase;

/// One physical scale: the contract between the registry and a protocol. The base opens and
/// closes the port, keeps the connection or not, and answers to its device id; a driver adds the
/// four protocol operations. Codes are those of ResultCode.h. An object owns its port and nothing
/// else; names are copied. Called by one thread at a time. Nothing throws but `SetPathToDll` and
/// `SetScalesName`, which throw std::bad_alloc: such an object is not to be used.
///
/// The registry sets an object up in this order, since each step needs the one before:
///
///     std::unique_ptr<IScalesObject> scale = createScales(20);
///     scale->SetPathToDll(folder);
///     scale->SetScalesName("7");
///     scale->SetCoeff(1.0);
///     scale->SetLeaveConn(0);
///     if (scale->SetComPort("/dev/ttyS0", 9600, nullptr) == kSuccess) {
///       scale->getScalesInfo(&weight, &price, &cost, &stable);
///     }
class IScalesObject {
 public:
  IScalesObject();
  virtual ~IScalesObject();
  IScalesObject(const IScalesObject&) = delete;
  IScalesObject& operator=(const IScalesObject&) = delete;

  /// Takes the device path and speed and tests the connection: opens it, and closes it again
  /// unless it is to be kept. Names are cut at 255 bytes; `base` stays the caller's. 1 for a null
  /// `port`, with nothing but `base` taken.
  virtual int SetComPort(const char* port, int baudRate, IAddInDefBase* base);
  /// The same with host and TCP port.
  virtual int SetLanPort(const char* host, int tcpPort, IAddInDefBase* base);
  /// Opens the port anew, by what `SetComPort` or `SetLanPort` took; a driver adds its line
  /// settings.
  virtual int OpenComPort();
  /// Returns 0.
  virtual int CloseComPort();

  /// Reads the scale once, connecting if need be. The units are the driver's own. `stable` is
  /// non-zero when the weight doesn't move. No output may be null; what a failed call leaves in
  /// them is the driver's matter.
  virtual int getScalesInfo(double* weight, double* price, double* cost, long* stable) = 0;
  /// Sets the tare; drivers let the scale take what lies on it.
  virtual int pressT(double tare) = 0;
  /// Lets the scale take what lies on it for zero. Nothing calls it: the platform knows no method
  /// for it.
  virtual int pressNull() = 0;
  /// Sends a price in the scale's own unit.
  virtual int setPrice(long price) = 0;

  /// True for this object's device id and for its port name or host, byte for byte.
  virtual bool isComPortCmp(const char* id);
  /// Takes the device id (cut at 255 bytes) and names the exchange log after it, so the folder
  /// must be set before. A null `name` does nothing. Returns 0, as do the setters below.
  virtual int SetScalesName(const char* name);
  virtual int SetLeaveConn(int leave);
  virtual int SetCoeff(double coeff);
  virtual double GetCoeff();
  /// The component's folder, with "/" at its end.
  virtual int SetPathToDll(CkString& path);

  /// 0 when the port is open and connected, 2 when it is not.
  virtual int isConnected();
  /// 0 when connected; otherwise opens the port and returns that code.
  virtual int isConnectedOrConnect();
  /// Closes the port unless the connection is to be kept. Returns 0.
  virtual int CloseIfMust();

 protected:
  COrbComLanPort port;
  /// Device path, or the host of a network scale.
  std::array<char, 256> comPortName = {};
  std::int32_t baudRate = 4800;
  /// 0 on a serial port.
  std::int32_t tcpPort = 0;
  /// Non-zero: the port stays open between calls.
  std::int32_t leaveConnection = 0;
  /// Factor for the weight, applied by the registry.
  double coeff = 1.0;
  /// Device id.
  std::array<char, 256> scalesName = {};
  /// Not owned. Kept for scales that would report events; none does.
  IAddInDefBase* addInBase = nullptr;
  /// The component's folder, UTF-8.
  std::string pathToDll;

 private:
  int testConnection();
};
