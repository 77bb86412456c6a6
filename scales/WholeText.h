#pragma once

#include <string>

class CkString;

// A text in a form of its own. All throw std::bad_alloc if memory was too short for the text itself
// or for its form: a text that is there in part only would name another scale or file.

/// In the ANSI code page.
std::string ansiOf(const CkString& text);
std::string utf8Of(const CkString& text);
std::wstring wideOf(const std::string& utf8);
std::string ansiOf(const std::string& utf8);
