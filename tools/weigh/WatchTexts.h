#pragma once

#include "Language.h"

/// What `weigh watch` says.
namespace weigh::text {

inline constexpr Text kWatchAbout = {
    "Show one scale or a whole component folder live until Ctrl-C, then a summary",
    "Показывать одни весы или всю папку компоненты до Ctrl-C, затем итог"};
inline constexpr Text kWatchNotes = {
    "Each row shows the weight, its state, the last minute as bars from zero to the highest weight "
    "(x for a failure), good and failed polls, how often the scale came back after polls without "
    "connection or answer, and how long a "
    "poll takes: half of them take less than the first number, 99 of 100 less than the second. The "
    "scales of a folder are polled one after another, as the platform does it, so a silent one "
    "holds up the others. When a USB adapter comes back under another device name, the new name is "
    "told. Where the output is no terminal, each reading has a line of its own.",
    "В каждой строке: вес, его состояние, последняя минута столбиками от нуля до наибольшего веса "
    "(x - сбой), успешные и неудачные опросы, сколько раз весы ответили снова после потери связи и "
    "сколько длится "
    "опрос: половина короче первого числа, 99 из 100 короче второго. Весы папки опрашиваются по "
    "очереди, как это делает платформа, поэтому молчащие весы задерживают остальные. Если адаптер "
    "USB вернулся под другим именем, новое имя сообщается. Если вывод не на терминал, каждому "
    "чтению отводится своя строка."};
inline constexpr Text kWatchFolder = {
    "Component folder with settings.xml: all of its scales in place of one given by options",
    "Папка компоненты с settings.xml: все её весы вместо одних, заданных параметрами"};
inline constexpr Text kFolderNamesScales = {
    "a folder names its scales itself; leave out {0} or the folder",
    "папка сама задаёт свои весы; уберите {0} или папку"};

inline constexpr Text kWatching = {"{0} watched; Ctrl-C ends", "наблюдение {0}; конец: Ctrl-C"};
inline constexpr Text kScaleColumn = {"SCALE", "ВЕСЫ"};
inline constexpr Text kMinuteColumn = {"LAST MINUTE", "ПОСЛ. МИНУТА"};
inline constexpr Text kGoodFailedColumn = {"GOOD/FAILED", "УСПЕХ/СБОЙ"};
inline constexpr Text kReconnectsColumn = {"BACK", "ВОЗВР."};
inline constexpr Text kTimesColumn = {"POLL, ms", "ОПРОС, мс"};
inline constexpr Text kMoreRows = {"{0} more; a higher window shows them",
                                   "ещё {0}; увеличьте высоту окна"};

inline constexpr Text kAnswers = {"answers", "отвечают"};
inline constexpr Text kNoConnectionState = {"no connection", "нет связи"};
inline constexpr Text kNoAnswerState = {"no answer", "нет ответа"};
inline constexpr Text kOverloadState = {"overload", "перегруз"};
inline constexpr Text kNotSupportedState = {"not supported", "нет команды"};
inline constexpr Text kErrorState = {"error {0}", "ошибка {0}"};
inline constexpr Text kLastError = {"{0}: error {1} at {2}: {3}", "{0}: ошибка {1} в {2}: {3}"};

inline constexpr Text kMoved = {"the adapter of {0} is back as {1}",
                                "адаптер {0} вернулся как {1}"};
inline constexpr Text kMovedRemedy = {"Set the port to {0}, which stays with the adapter.",
                                      "Укажите порт {0}: это имя остаётся за адаптером."};
inline constexpr Text kMovedRemedyNoName = {"Set the port to {0}.", "Укажите порт {0}."};

inline constexpr Text kSummary = {
    "{0} readings, {1} good, {2} failed; poll {3} / {4} / {5} ms (median / 99 % / longest)",
    "чтений {0}, успешных {1}, с ошибкой {2}; опрос {3} / {4} / {5} мс (медиана / 99 % / макс)"};
inline constexpr Text kSummaryReconnects = {"; came back {0} times", "; связь вернулась раз: {0}"};
inline constexpr Text kSummaryWeights = {"weights from {0} to {1}, last {2}",
                                         "вес от {0} до {1}, последний {2}"};

}  // namespace weigh::text
