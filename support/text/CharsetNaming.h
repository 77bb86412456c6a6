#pragma once

class StringBuffer;

/// Names of character sets and the numbers of their code pages. Neither direction is the inverse
/// of the other: many names lead to one number.
class CharsetNaming {
 public:
  /// The code page, or 0 for an unknown name. Numbers below 100 but 37 are binary encodings.
  /// Case, white space around, quotes and "_" for "-" don't matter; the argument is normalised
  /// in place. Names of less than 3 characters mean the ANSI code page.
  static int GetCodePage(StringBuffer& name);
  static int GetCodePage_p(const char* name);
  static bool CharsetValid(StringBuffer& name);
  static bool CharsetValid_p(const char* name);

  /// Puts the canonical name into `out`; false and an empty text for an unknown number. Numbers
  /// below 100 give the name of the binary encoding, 37 among them.
  static bool GetCharsetName(int codePage, StringBuffer& out);
  static bool GetAnsiCharset(StringBuffer& out);
};
