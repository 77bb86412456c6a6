#include "SocketParams.h"

const char* connectFailText(ConnectFailReason reason) {
  switch (reason) {
    case ConnectFailReason::EmptyHostname: return "Empty hostname";
    case ConnectFailReason::DnsLookupFailed: return "DNS lookup failed";
    case ConnectFailReason::InternalError: return "Internal error";
    case ConnectFailReason::Timeout: return "Timeout";
    case ConnectFailReason::Rejected: return "Connection rejected";
    case ConnectFailReason::MalformedUrl:  // told where the URL is taken apart
    case ConnectFailReason::None: break;
  }
  return "";
}
