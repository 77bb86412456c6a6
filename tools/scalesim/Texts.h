#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Language.h"

/// What scalesim says, in every language that the tools speak. "%1" to "%9" stand for what a
/// message is filled with.
namespace texts {

extern const Text kPurpose, kUsage, kFooter;
extern const Text kGroupWhat, kGroupWhere, kGroupShows, kGroupFaults, kGroupOther;
extern const Text kOptModel, kOptAll, kOptReplay, kOptList, kOptPty, kOptLink, kOptTcp, kOptSpeed;
extern const Text kOptWeight, kOptDecimals, kOptPrice, kOptUnstable, kOptOverload;
extern const Text kOptSilent, kOptGarbage, kOptCorrupt, kOptCut, kOptDribble, kOptHangUp,
    kOptSpoilOnly;
extern const Text kOptLang, kOptVerbose, kOptHelp, kOptVersion;

extern const Text kUsageError, kUnknownArgument, kBadValue, kSeeHelp;
extern const Text kModelMissing, kNoSuchModel, kNotANumber, kOptionUnknown, kOneTransport;
extern const Text kLinkNeedsPty, kSpeedNeedsPty, kReplayAlone, kAllAlone, kWeightOutOfRange,
    kPriceOutOfRange, kDecimalsOutOfRange;

extern const Text kFailed, kRemedyPortTaken, kRemedyFileInTheWay, kRemedyNoAccess;
extern const Text kRemedyNoFolder, kForeignSettings, kPathTooLong, kNoTcpWarning;

extern const Text kStarted, kStartedAll, kStartedReplay, kStopped;
extern const Text kNoReplay, kStranger;
extern const Text kConsoleHelp, kConsoleUnknown, kConsoleNoScale, kConsoleNotKnown, kConsoleFailed;
extern const Text kStable, kMoving, kOverloaded, kPriceIs, kTareIs, kSilentNow, kAwayNow;

extern const Text kRowLine, kRowExchange, kRowFrame, kRowWeight, kRowDecimals, kRowReading,
    kRowStability;
extern const Text kRowOverload, kRowPrice, kRowObeys, kRowTcp, kRowOptions, kRowRemark;
extern const Text kLineText, kParityNone, kParityEven, kStreams, kAnswersTo, kFrameOf, kAndBytes;
extern const Text kWeightLimits, kDecimalsFixed, kDecimalsChoice, kReadingOf, kKilograms, kGrams,
    kCount;
extern const Text kStabilityShown, kStabilityNever, kStabilityAlways, kOverloadCode, kOverloadNever;
extern const Text kPriceShown, kPriceNever, kTare, kZero, kPrice, kSetup, kNothing;
extern const Text kYes, kNo, kNoBecause, kListHead, kListStreams, kListAnswers;

}  // namespace texts

/// The message in the current language, with "%1", "%2", ... replaced.
std::string fill(const Text& text, const std::vector<std::string>& values = {});
