#pragma once

#include <cstddef>
#include <string>

/// About `n` bytes of UTF-8: what a till prints about scales, words and numbers mixed, without a
/// period that a branch predictor could learn.
inline std::string russianText(std::size_t n) {
  static const char* const kWords[] = {
      "весы", "масса",      "нетто",     "брутто", "кг",        "товар", "цена", "штрих",  "код",
      "и",    "взвешено",   "касса",     "№",      "тара",      "порт",  "1250", "12,345", "CAS",
      "не",   "подключены", "Стоимость", "за",     "платформа", "в",     "COM3"};
  std::string text;
  unsigned state = 2463534242U;
  while (text.size() < n) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    text += kWords[state % (sizeof kWords / sizeof kWords[0])];
    text += state % 11 == 0 ? ". " : " ";
  }
  while (text.size() > n && (static_cast<unsigned char>(text[n]) & 0xC0) == 0x80) --n;
  text.resize(n);
  return text;
}
