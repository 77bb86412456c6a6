#include "CkXml.h"

#include "CkString.h"
#include "ClsXml.h"
#include "XString.h"

CkXml::CkXml() : CkMultiByteBase(ClsXml::createNewCls()) {}

CkXml::~CkXml() = default;

ClsXml* CkXml::impl() const { return static_cast<ClsXml*>(aliveBase()); }

bool CkXml::LoadXmlFile(const char* path) {
  ClsXml* const xml = impl();
  if (xml == nullptr) return false;
  xml->put_LastMethodSuccess(false);
  XString pathText;
  const bool success = setArgument(pathText, path) && xml->LoadXmlFile(pathText);
  xml->put_LastMethodSuccess(success);
  return success;
}

void CkXml::GetRoot2() {
  ClsXml* const xml = impl();
  if (xml == nullptr) return;
  xml->put_LastMethodSuccess(true);
  xml->GetRoot2();
}

bool CkXml::FindChild2(const char* tag) {
  ClsXml* const xml = impl();
  if (xml == nullptr) return false;
  xml->put_LastMethodSuccess(false);
  XString tagText;
  const bool success = setArgument(tagText, tag) && xml->FindChild2(tagText);
  xml->put_LastMethodSuccess(success);
  return success;
}

bool CkXml::GetAttrValue(const char* name, CkString& out) {
  ClsXml* const xml = impl();
  if (xml == nullptr) return false;
  xml->put_LastMethodSuccess(false);
  if (out.getImpl() == nullptr) return false;
  XString nameText;
  const bool named = setArgument(nameText, name);  // which may lie in `out`
  out.clear();
  const bool success =
      named ? xml->GetAttrValue(nameText, *out.getImpl()) : out.getImpl()->noteShortage();
  xml->put_LastMethodSuccess(success);
  return success;
}

int CkXml::GetAttrValueInt(const char* name) {
  ClsXml* const xml = impl();
  if (xml == nullptr) return -1;
  XString nameText;
  return setArgument(nameText, name) ? xml->GetAttrValueInt(nameText) : 0;
}
