#pragma once

struct stat;

/// What the support layers ask of their surroundings: the code pages of this host, the status of
/// files, and the hooks for objects found damaged.
class Psdk {
 public:
  /// The code page of texts without a named encoding. Taken from the environment variable LANG
  /// at the first call, unless set before; a Russian locale gives 1251 whatever its suffix says.
  static int getAnsiCodePage();
  /// Sets the ANSI code page for the rest of the process; LANG isn't asked any more.
  static void setAnsiCodePage(int codePage);

  /// The code page of the console, 65001 unless set.
  static int getOemCodePage();
  static void setOemCodePage(int codePage);

  /// What a locale name such as "ru_RU.UTF-8" stands for; null means that LANG isn't set.
  static int ansiCodePageOfLocale(const char* locale);

  /// As stat() and lstat(): 0 or -1 with errno. A name that leads nowhere is tried again without
  /// its line end, in the ANSI code page and in the OEM code page. Null pointers give -1.
  static int ck_stat(const char* path, struct stat* out);
  static int ck_lstat(const char* path, struct stat* out);

  /// Hooks for a wrong validity word. Both do nothing; the caller decides what it returns.
  static void badObjectFound() {}
  static void corruptObjectFound() {}
};
