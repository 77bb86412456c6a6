#include "ScalesObject.h"

#include <cstring>

#include "BoundedCopy.h"
#include "WholeText.h"

IScalesObject::IScalesObject() = default;

IScalesObject::~IScalesObject() { IScalesObject::CloseComPort(); }

int IScalesObject::SetComPort(const char* newPort, int newBaudRate, IAddInDefBase* base) {
  addInBase = base;
  if (newPort == nullptr) return kNoConnection;
  copyBounded(comPortName, newPort);
  baudRate = newBaudRate;
  tcpPort = 0;
  return testConnection();
}

int IScalesObject::SetLanPort(const char* host, int newTcpPort, IAddInDefBase* base) {
  addInBase = base;
  if (host == nullptr) return kNoConnection;
  copyBounded(comPortName, host);
  baudRate = 0;
  tcpPort = newTcpPort;
  return testConnection();
}

int IScalesObject::testConnection() {
  const int code = OpenComPort();
  CloseIfMust();
  return code;
}

int IScalesObject::OpenComPort() {
  CloseComPort();
  if (tcpPort > 0) return port.OpenNetworkPort(comPortName.data(), tcpPort);
  return port.OpenComPort(comPortName.data());
}

int IScalesObject::CloseComPort() {
  port.Close(true);
  return 0;
}

bool IScalesObject::isComPortCmp(const char* id) {
  if (id == nullptr) return false;
  return std::strcmp(id, scalesName.data()) == 0 || std::strcmp(id, comPortName.data()) == 0;
}

int IScalesObject::SetScalesName(const char* name) {
  if (name == nullptr) return 0;
  copyBounded(scalesName, name);
  port.SetLogName(pathToDll.c_str(), scalesName.data());
  return 0;
}

int IScalesObject::SetLeaveConn(int leave) {
  leaveConnection = leave;
  return 0;
}

int IScalesObject::SetCoeff(double newCoeff) {
  coeff = newCoeff;
  return 0;
}

double IScalesObject::GetCoeff() { return coeff; }

int IScalesObject::SetPathToDll(CkString& path) {
  pathToDll = utf8Of(path);
  return 0;
}

int IScalesObject::isConnected() { return port.getState(); }

int IScalesObject::isConnectedOrConnect() {
  return isConnected() == COrbComLanPort::kConnected ? kSuccess : OpenComPort();
}

int IScalesObject::CloseIfMust() {
  if (leaveConnection == 0) CloseComPort();
  return 0;
}
