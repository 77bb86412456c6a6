#include "ClsBase.h"

int ClsBase::m_progLang = 0;
