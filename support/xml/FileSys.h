#pragma once

class LogBase;
class XString;

/// Questions about paths.
class FileSys {
 public:
  enum PathType : int {
    kPathUnknown = -1,  ///< it can't be told
    kNoPath = 0,
    kPathFile = 1,
    kPathDirectory = 2,
    kPathLink = 3,  ///< only without following links
    kPathOther = 99,
  };

  static int filePathType(XString& path, bool noFollowLinks, LogBase& log);
  /// 1 if the path exists, else 0. `failed` says that the 0 means "can't be told".
  static int fileExistsX(XString& path, bool& failed, LogBase* log);
};
