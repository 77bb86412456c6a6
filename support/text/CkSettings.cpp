#include "CkSettings.h"

#include "ClsBase.h"
#include "EncodingConvert.h"
#include "Psdk.h"

bool CkSettings::m_utf8 = false;
unsigned int CkSettings::m_socketSendBufSize = 262'144;
unsigned int CkSettings::m_socketRecvBufSize = 4'194'304;

int CkSettings::getAnsiCodePage() { return Psdk::getAnsiCodePage(); }

void CkSettings::setAnsiCodePage(int codePage) { Psdk::setAnsiCodePage(codePage); }

int CkSettings::getOemCodePage() { return Psdk::getOemCodePage(); }

void CkSettings::setOemCodePage(int codePage) { Psdk::setOemCodePage(codePage); }

void CkSettings::cleanupMemory() { EncodingConvert::cleanupMemory(); }

bool newHandlesReadUtf8() {
  constexpr int kLanguagesOfUtf8[] = {13, 15};
  for (const int language : kLanguagesOfUtf8) {
    if (ClsBase::m_progLang == language) return true;
  }
  return CkSettings::m_utf8;
}
