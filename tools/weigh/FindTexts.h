#pragma once

#include "Language.h"

/// What `weigh find` says.
namespace weigh::text {

inline constexpr Text kFindAbout = {"Find out which scale is on a line, and at which speed",
                                    "Определить, какие весы на линии и на какой скорости"};
inline constexpr Text kFindNotes = {
    "Listens first, then asks with the weight requests of the models and sends nothing else: no "
    "scale is tared, zeroed, priced or set up. At a wrong speed a scale gets garbage, as from any "
    "host that is set wrongly. Ends at once on a sure find; Ctrl-C ends it with what it has.\n"
    "Exit code 0 if a model was found, also an uncertain one; 1 if none was.",
    "Сначала слушает, затем задаёт запросы веса моделей и не передаёт ничего другого: тара, ноль, "
    "цена и настройки весов не меняются. На неверной скорости весы получают мусор, как от любой "
    "неверно настроенной программы. При уверенном результате заканчивает сразу; Ctrl-C завершает с "
    "тем, что найдено.\n"
    "Код возврата 0, если модель найдена, в том числе предположительно; 1, если нет."};
inline constexpr Text kFindModelsOption = {
    "Only these models, such as 13,27 or 7-12 (default: all with a protocol)",
    "Только эти модели, например 13,27 или 7-12 (по умолчанию все с протоколом)"};
inline constexpr Text kFindSpeedsOption = {"Only these speeds, in this order",
                                           "Только эти скорости, в этом порядке"};
inline constexpr Text kFindPassiveFlag = {"Only listen, send nothing",
                                          "Только слушать, ничего не передавать"};
inline constexpr Text kFindListenOption = {"Seconds to listen at each speed and framing",
                                           "Сколько секунд слушать на каждой скорости"};
inline constexpr Text kFindJsonFlag = {
    "One JSON record per candidate, the best first, and one about the search",
    "По записи JSON на кандидата, лучший первым, и одна о самом поиске"};
inline constexpr Text kFindWhere = {"which line? --port DEVICE or --host HOST",
                                    "какая линия? --port УСТРОЙСТВО или --host АДРЕС"};
inline constexpr Text kFindBadModels = {"'{0}' is no list of models that have a protocol",
                                        "'{0}' не является списком моделей с протоколом"};
inline constexpr Text kFindBadSpeeds = {"'{0}' is no list of speeds; they are {1}",
                                        "'{0}' не является списком скоростей; возможны {1}"};
inline constexpr Text kFindBadListen = {"'{0}' is no number of seconds from 0.1 to 60",
                                        "'{0}' не является числом секунд от 0.1 до 60"};
inline constexpr Text kLineClosed = {"{0} can't be opened", "{0} не открывается"};

inline constexpr Text kFindPlanListen = {
    "Listening at {0} settings of the line; this may take {1}.",
    "Прослушивание линии, вариантов настройки: {0}; это может занять {1}."};
inline constexpr Text kFindPlanAsk = {
    "Listening at {0} settings of the line, then asking {1} weight requests at each of {2} speeds; "
    "this may take {3}, and ends sooner on a sure find.",
    "Прослушивание линии, вариантов настройки: {0}; затем запросов веса: {1}, на каждой из "
    "скоростей: {2}. Это может занять {3}, при уверенном результате меньше."};
inline constexpr Text kFindPlanHost = {
    "Listening, then asking {0} weight requests; this may take {1}, and ends sooner on a sure "
    "find.",
    "Прослушивание, затем запросов веса: {0}; это может занять {1}, при уверенном результате "
    "меньше."};
inline constexpr Text kSeconds = {"{0} s", "{0} с"};
inline constexpr Text kMinutes = {"{0} min {1} s", "{0} мин {1} с"};
inline constexpr Text kFindListening = {"listening {0}", "прослушивание {0}"};
inline constexpr Text kFindAsking = {"asking {0}", "запросы {0}"};
inline constexpr Text kFindProgressOf = {"{0} ... {1} s of at most {2}", "{0} ... {1} с из {2}"};
inline constexpr Text kFindInterrupted = {"Ended early: this is what there is so far.",
                                          "Прервано: вот что есть на этот момент."};
inline constexpr Text kFindLineLost = {"The line is gone: this is what there is so far.",
                                       "Линия пропала: вот что есть на этот момент."};

inline constexpr Text kRankColumn = {"RANK", "МЕСТО"};
inline constexpr Text kSettingColumn = {"LINE", "ЛИНИЯ"};
inline constexpr Text kWayColumn = {"HOW", "КАК"};
inline constexpr Text kFramesColumn = {"GOOD/BAD", "ВЕРНО/НЕВЕРНО"};
inline constexpr Text kCheckedColumn = {"CHECKED", "ПРОВЕРЕНО"};
inline constexpr Text kUsedColumn = {"USED", "ИСПОЛЬЗОВАНО"};
inline constexpr Text kHeard = {"heard", "слышно"};
inline constexpr Text kAsked = {"asked", "запрос"};
inline constexpr Text kOfBytes = {"{0} of {1}", "{0} из {1}"};
inline constexpr Text kNoReading = {"error {0}", "ошибка {0}"};
inline constexpr Text kFindLegend = {
    "CHECKED: bytes of a frame whose change the protocol refuses. USED: bytes that the reading "
    "depends on.",
    "ПРОВЕРЕНО: байты кадра, изменение которых протокол отвергает. ИСПОЛЬЗОВАНО: байты, от "
    "которых зависит результат."};

inline constexpr Text kCertain = {"Model {0} it is.", "Это модель {0}."};
inline constexpr Text kUncertain = {"Probably model {0}, but uncertain:",
                                    "Вероятно, модель {0}, но без уверенности:"};
inline constexpr Text kDoubtKin = {
    "models {0} explain the same bytes as well; take the one whose weight is that on the display",
    "модели {0} объясняют те же байты не хуже; верна та, чей вес совпадает с индикатором"};
inline constexpr Text kDoubtFewChecks = {
    "the protocol checks so few bytes ({0} of {1}) that others would have passed too",
    "протокол проверяет так мало байтов ({0} из {1}), что подошли бы и другие"};
inline constexpr Text kDoubtFewFrames = {"only one good frame came", "верный кадр только один"};
inline constexpr Text kDoubtBadFrames = {"{0} frames were refused", "отвергнуто кадров: {0}"};
inline constexpr Text kDoubtStray = {"{0} of {1} bytes belong to no frame",
                                     "не входят ни в один кадр байтов: {0} из {1}"};
inline constexpr Text kDoubtImplausible = {
    "most of the frame plays no part in the reading, or price and cost don't agree",
    "почти весь кадр не участвует в результате, или цена и стоимость не сходятся"};
inline constexpr Text kLastFrame = {"Its last frame: {0}", "Последний кадр: {0}"};

inline constexpr Text kPageValues = {"For the parameter page:", "Для страницы параметров:"};
inline constexpr Text kTryIt = {"Try it: {0}", "Проверить: {0}"};

inline constexpr Text kNothingFound = {"no model's frames were found",
                                       "кадров известных моделей не найдено"};
inline constexpr Text kFindUnfinished = {
    "The search did not come to its end. Start it again for an answer.",
    "Поиск не дошёл до конца. Запустите его снова."};
inline constexpr Text kFindSilent = {
    "Nothing came at all. Is the scale on, is the cable the right one (crossed or straight), is "
    "this the port that it is on? A scale may be set to send on its print key only.",
    "Не пришло ни байта. Включены ли весы, тот ли кабель (прямой или перекрёстный), тот ли порт? "
    "Возможно, весы настроены передавать только по клавише печати."};
inline constexpr Text kFindNoise = {
    "Bytes came that belong to no model. The scale's menu tells its speed and protocol; try the "
    "other protocols that it offers.",
    "Пришли байты, не подходящие ни к одной модели. Скорость и протокол указаны в меню весов; "
    "попробуйте другие протоколы из этого меню."};
inline constexpr Text kNoiseLine = {"{0}: {1} bytes, {2}: {3}", "{0}: байтов {1}, {2}: {3}"};
inline constexpr Text kNoiseTooFew = {"too few to tell", "слишком мало для вывода"};
inline constexpr Text kNoiseText = {"clean text of an unknown protocol",
                                    "чистый текст неизвестного протокола"};
inline constexpr Text kNoiseEven = {"text with 7 data bits and even parity",
                                    "текст, 7 бит данных и чётность"};
inline constexpr Text kNoiseOdd = {"text with 7 data bits and odd parity",
                                   "текст, 7 бит данных и нечётность"};
inline constexpr Text kNoiseSpeed = {"looks like a wrong speed", "похоже на неверную скорость"};
inline constexpr Text kNoiseUnclear = {"unclear", "неясно"};
inline constexpr Text kNetworkName = {"network", "сеть"};

}  // namespace weigh::text
