#pragma once

#include <cstddef>

#include "AddInNative.h"

/// The parameters of one call.
class CAddInNative::Params {
 public:
  Params(tVariant* params, long count) : params_(params), count_(count) {}

  /// The parameter at `index`; null if the call has none there.
  tVariant* at(long index) const {
    return params_ != nullptr && index < count_ ? &params_[index] : nullptr;
  }
  /// The first parameter whatever the count says; null without parameters.
  tVariant* first() const { return params_; }

 private:
  tVariant* params_;
  long count_;
};

struct CAddInNative::Method {
  const wchar_t* name;
  const wchar_t* nameRu;
  long parameters;
  bool (CAddInNative::*handler)(tVariant* result, const Params& params);
};
