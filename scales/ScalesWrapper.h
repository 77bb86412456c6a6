#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "Cancellation.h"
#include "CkString.h"
#include "ScalesObject.h"

/// Makes the driver of a model; null for a model without one.
using ScalesFactory = std::unique_ptr<IScalesObject> (*)(int model);

/// The scales of one component object, by device id, with the parameters for the next one and
/// the code of the last operation. Device ids, port names and hosts are bytes in the ANSI code
/// page. Called by one thread at a time. Nothing throws: an operation that memory was too short for
/// leaves the scales and parameters as they were, and `kUnknown` as the last error.
class CScalesWrapper {
 public:
  explicit CScalesWrapper(ScalesFactory factory);
  ~CScalesWrapper();
  CScalesWrapper(const CScalesWrapper&) = delete;
  CScalesWrapper& operator=(const CScalesWrapper&) = delete;

  /// The first scale whose device id or port name is `id`; null if there is none.
  IScalesObject* GetScalesObject(const char* id);
  /// Registers a scale and tests its connection; a scale that doesn't answer stays registered.
  /// `port` is a device path with the speed in `rate`, or (`conntype` not 0) a host with the TCP
  /// port in `rate`. A known id is replaced. With a null `id` the port name takes its part.
  int AddScalesObject(const char* port, int rate, int model, int conntype, const char* id,
                      int leave, double coeff);
  /// Registers a scale by the current parameters under a new random id. Always returns 0: the
  /// outcome stands in the last error. An empty id means that memory was too short for it.
  int CreateScalesObject(CkString& id);
  /// Registers a scale without device id. No method of the component calls it.
  int OpenComPort(const char* port, int rate, int model, int conntype);
  /// Forgets every scale that answers to `id`. Returns 0 also when there is none.
  int CloseComPort(const char* id);
  /// Forgets all scales.
  void CloseAllComPorts();

  /// Operations on a scale; each sets the last error and returns it, 8 for an unknown id.
  /// The weight comes multiplied by the scale's coefficient, whatever the code.
  int getScalesInfo(const char* id, double& weight, double& price, double& cost, long& stable);
  int setPrice(const char* id, long price);
  int pressT(const char* id, double tare);

  int GetLastError() const { return lastError; }
  /// For a call that couldn't take over what it was given. Returns the code.
  int refuse() { return lastError = kUnknown; }
  /// The text of the last error, valid until the next call; null if memory is too short for it.
  const wchar_t* GetLastTextError();
  static const wchar_t* GetVersion();
  int SetEvent(IAddInDefBase* base);

  /// Parameters of the scales to come; existing scales keep theirs. All return 0, or `kUnknown`
  /// for a text that memory was too short for.
  int Set_param_mp_model(int value);
  int Set_param_mp_conntypel(int value);
  int Set_param_mp_conleave(int value);
  int Set_param_mp_cbaudrate(int value);
  int Set_param_mp_eport(int value);
  int Set_param_mp_cport(CkString value);
  int Set_param_mp_ehost(CkString value);
  /// Digits with "." or ","; whatever can't be read gives 1.0.
  int Set_param_mp_coeff(CkString value);

  /// Takes the component's folder and registers the scales of its settings file in place of all
  /// others. 0, or 130 if it is no folder.
  int SetPathDllFolder(CkString& path);
  /// Reads the settings file again; 1 if it can't be loaded. Without such a file all scales go.
  /// Nothing calls it: the component sets the folder again.
  int LoadIniSettings();

 private:
  static constexpr std::size_t kMaxScales = 100;
  static constexpr int kSerialConnection = 0;
  static constexpr int kNetworkConnection = 1;

  /// What the operation gives becomes the last error.
  template <typename Operation>
  int concluded(Operation operation) {
    return unlessThrown([&] { return lastError = operation(); }, [&] { return refuse(); });
  }
  /// Takes a parameter by an operation that throws if it can't.
  template <typename Operation>
  int taken(Operation operation);

  // The steps of registration. Those that throw std::bad_alloc change nothing in the table.

  /// A scale with its names; null for a model without one. Throws.
  std::unique_ptr<IScalesObject> make(const std::string& folder, int model, const char* id,
                                      int leave, double coeff) const;
  /// Takes a scale into the first free slot and tests its connection; the code of the test.
  int enter(std::unique_ptr<IScalesObject> scale, const char* port, int rate, int conntype);
  /// Ends every scale that answers to `id`.
  void forget(const char* id);
  /// `AddScalesObject` without the last error. Throws.
  int add(const char* port, int rate, int model, int conntype, const char* id, int leave,
          double coeff);
  /// Takes the folder and the scales of its settings file, in place of all others; false if there
  /// is no file that can be loaded. Throws.
  bool load(std::string folder);

  ScalesFactory factory;
  std::int32_t lastError = kUnknown;
  IAddInDefBase* eventBase = nullptr;
  std::array<std::unique_ptr<IScalesObject>, kMaxScales> scaleObjects;
  /// UTF-8, "/" at its end.
  std::string dllFolder;
  /// One an object: the platform may keep components in several threads.
  std::wstring lastErrorText;
  std::int32_t mp_model = 0;
  std::int32_t mp_conntype = 0;
  std::int32_t mp_conleave = 0;
  double mp_coeff = 1.0;
  std::string mp_cport;
  std::int32_t mp_cbaudrate = 0;
  std::string mp_ehost;
  std::int32_t mp_eport = 0;
};
