#pragma once

/// Base of the inner objects behind the public handles.
class ClsBase {
 public:
  /// The programming language of the caller, 0 if it never said. 13 and 15 hand texts over in
  /// UTF-8.
  static int m_progLang;
};
