#pragma once

/// Settings of the support layers that hold for the whole process. Set them before the first
/// use of the layers.
class CkSettings {
 public:
  /// How a new handle reads `const char*` arguments: true UTF-8, false ANSI.
  static bool m_utf8;
  /// Sizes of the system's buffers of a socket made from now on, in bytes.
  static unsigned int m_socketSendBufSize;
  static unsigned int m_socketRecvBufSize;

  static int getAnsiCodePage();
  static void setAnsiCodePage(int codePage);
  static int getOemCodePage();
  static void setOemCodePage(int codePage);

  /// Frees the code page tables built so far. No conversion may run meanwhile; the next one
  /// builds its tables again.
  static void cleanupMemory();
};

/// What a new handle takes for its own flag: CkSettings::m_utf8, or true for the programming
/// languages that always hand over UTF-8.
bool newHandlesReadUtf8();
