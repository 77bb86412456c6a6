#pragma once

#include <span>

#include "CkString.h"
#include "Platform.h"
#include "ScalesWrapper.h"

// The rules at the platform's boundary, for every operation here:
// - nothing throws, but the end of a cancelled thread passes through; an operation that runs out
//   of memory answers as if it had refused, a scale's operation with `kUnknown` as last error;
// - texts for the platform are blocks of its memory manager, one a string, and are the
//   platform's from then on;
// - a text from the platform is read up to its NUL, and a null pointer is an empty text;
// - no more parameters are read or written than the call has.

/// The component: what the platform gets for each attachment, with its own registry of scales.
class CAddInNative final : public IComponentBase {
 public:
  CAddInNative();
  ~CAddInNative() override;
  CAddInNative(const CAddInNative&) = delete;
  CAddInNative& operator=(const CAddInNative&) = delete;

  /// Takes the platform's object, not owned; true if there is one.
  bool Init(void* disp) override;
  /// Takes the memory manager, not owned; true if there is one.
  bool setMemManager(void* mem) override;
  /// The interface revision.
  long GetInfo() override;
  void Done() override;

  bool RegisterExtensionAs(WCHAR_T** name) override;
  /// One property with an empty name, for form's sake.
  long GetNProps() override;
  long FindProp(const WCHAR_T* name) override;
  const WCHAR_T* GetPropName(long num, long alias) override;
  bool GetPropVal(const long num, tVariant* value) override;
  bool SetPropVal(const long num, tVariant* value) override;
  bool IsPropReadable(const long num) override;
  bool IsPropWritable(const long num) override;
  long GetNMethods() override;
  /// By English or Russian name, exactly; -1 if there is none.
  long FindMethod(const WCHAR_T* name) override;
  /// Alias 0 gives the English name, 1 the Russian one.
  const WCHAR_T* GetMethodName(const long num, const long alias) override;
  long GetNParams(const long num) override;
  bool GetParamDefValue(const long method, const long param, tVariant* value) override;
  bool HasRetVal(const long num) override;
  bool CallAsProc(const long num, tVariant* params, const long count) override;
  /// Runs a method. False means that the call was refused; whether the scale did what it was
  /// asked stands in `result`.
  bool CallAsFunc(const long num, tVariant* result, tVariant* params, const long count) override;

  /// The component's texts are Russian whatever the locale.
  void SetLocale(const WCHAR_T* locale) override;

  /// Puts a text into a variant (type 22). False, with `out` left alone, for a null text. If the
  /// memory manager fails the text's pointer is null and its length 0.
  bool wstring_to_p(const wchar_t* text, tVariant* out);
  /// Takes a text out of a variant; false, with `out` empty, if it holds none.
  bool GetStrFromParam(tVariant* in, CkString& out);
  /// Reports an error to the platform, if it gave an object to report to. Nothing calls it: the
  /// platform asks for errors itself.
  void addError(unsigned code, const wchar_t* source, const wchar_t* description, long errorCode);
  /// The index of a name, or -1.
  static long findName(const wchar_t* const* names, const wchar_t* name, unsigned count);

 private:
  class Params;
  struct Method;

  /// The one table of methods; a method's number is its index.
  static std::span<const Method> methods();
  /// The row of a method; null for a number outside the table.
  static const Method* methodAt(long num);

  bool GetVersion(tVariant* result, const Params& params);
  bool GetDescription(tVariant* result, const Params& params);
  bool GetLastError(tVariant* result, const Params& params);
  bool GetParameters(tVariant* result, const Params& params);
  bool SetParameter(tVariant* result, const Params& params);
  bool Open(tVariant* result, const Params& params);
  bool Close(tVariant* result, const Params& params);
  bool DeviceTest(tVariant* result, const Params& params);
  bool NoAction(tVariant* result, const Params& params);
  bool Calibrate(tVariant* result, const Params& params);
  bool GetWeight(tVariant* result, const Params& params);
  bool SetPrice(tVariant* result, const Params& params);
  bool GetWeightPriceCost(tVariant* result, const Params& params);
  bool GetInterfaceRevision(tVariant* result, const Params& params);
  bool SetPathDllFolder(tVariant* result, const Params& params);

  /// Takes a parameter's text; false if it holds none, or if memory is too short for it, which is
  /// the last error then.
  bool textFrom(tVariant* in, CkString& out);
  /// Takes the device id out of the first parameter, for the registry in windows-1251; null if
  /// there is none or no memory for it. Points into `text`.
  const char* idFrom(const Params& params, CkString& text);
  /// Gives a text and the result "true"; false if there is no text.
  bool answer(const wchar_t* text, tVariant* result, tVariant* out);
  bool readScales(tVariant* result, const Params& params, bool withPrice);
  /// A block of the platform with the text and its NUL; null if there is no memory.
  WCHAR_T* toPlatform(const wchar_t* text);

  IAddInDefBase* connection;
  IMemoryManager* memoryManager;
  CScalesWrapper scales;
};
