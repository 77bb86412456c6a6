#include "Variants.h"

void setBool(tVariant* out, bool value) {
  if (out == nullptr) return;
  out->vt = kVariantBool;
  out->value.bVal = value;
}

void setInt32(tVariant* out, std::int32_t value) {
  if (out == nullptr) return;
  out->vt = kVariantInt32;
  out->value.lVal = value;
}

void setUint32(tVariant* out, std::uint32_t value) {
  if (out == nullptr) return;
  out->vt = kVariantUint32;
  out->value.ulVal = value;
}

void setDouble(tVariant* out, double value) {
  if (out == nullptr) return;
  out->vt = kVariantDouble;
  out->value.dblVal = value;
}
