#pragma once

#include <span>

#include "ProtocolSheet.h"

/// What goes over the line of a model, by the scale's protocol. Bytes are texts for `frameBytes`.
struct ExchangeRow {
  int model;
  /// Sent in each attempt; empty for a scale that transmits by itself.
  const char* request = "";
  int attempts = 3;
  /// All that a poll sleeps when the scale says nothing.
  int silence_ms = 1500;
  AtEntry atEntry = AtEntry::AllZero;
  /// As the exchange log names the line's settings.
  const char* line = "None\\8\\1";

  struct Sent {
    /// Null for a command that the scale lacks.
    const char* bytes = nullptr;
    int pauses_ms = 0;
  };
  Sent tare = {};
  Sent zero = {};
  /// For the price 1250, and for 1234567, whose two highest digits don't fit.
  Sent price = {};
  const char* longPrice = nullptr;
};

std::span<const ExchangeRow> exchangeRows();
