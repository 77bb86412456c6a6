#include "CkObject.h"

CkObject::~CkObject() = default;
