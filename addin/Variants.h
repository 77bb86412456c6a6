#pragma once

#include <cstdint>

#include "Platform.h"

// Setting a variant: its type and that member of the union, no other byte. Null variants are
// parameters that the call doesn't have.

void setBool(tVariant* out, bool value);
void setInt32(tVariant* out, std::int32_t value);
void setUint32(tVariant* out, std::uint32_t value);
void setDouble(tVariant* out, double value);
