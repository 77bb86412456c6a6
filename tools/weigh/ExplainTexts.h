#pragma once

#include "Language.h"

/// What `weigh explain` says.
namespace weigh::text {

inline constexpr Text kExplainAbout = {"Tell what happened in an exchange log, record by record",
                                       "Объяснить журнал обмена, запись за записью"};
inline constexpr Text kExplainNotes = {
    "The model is recognised by what was written and read, unless it is given. Bytes are counted "
    "from 1, as in the log.\n"
    "Exit code 0 if the last poll was good, 1 if it wasn't or there was none.",
    "Модель определяется по переданным и принятым байтам, если не указана. Байты считаются с 1, "
    "как в журнале.\n"
    "Код возврата 0, если последний опрос успешен, 1, если нет или опросов не было."};
inline constexpr Text kLogArgument = {"Exchange log, log_scales_<id>.log",
                                      "Журнал обмена, log_scales_<id>.log"};
inline constexpr Text kExplainModelOption = {"Model number (default: recognised)",
                                             "Номер модели (по умолчанию определяется)"};
inline constexpr Text kExplainJsonFlag = {
    "One JSON record per record of the log, and one with the summary",
    "По записи JSON на запись журнала и одна с итогом"};
inline constexpr Text kNoLog = {"{0} can't be read: {1}", "{0} не читается: {1}"};
inline constexpr Text kNoLogRecords = {"{0} has no record of an exchange",
                                       "в {0} нет ни одной записи обмена"};
inline constexpr Text kNoLogRecordsRemedy = {
    "An exchange log comes from a folder with a file log.txt, or from `weigh read --log DIR`.",
    "Журнал обмена пишется в папке с файлом log.txt или по `weigh read --log ПАПКА`."};
inline constexpr Text kLogModelUnknown = {"no model's driver would have written this",
                                          "такого не передаёт драйвер ни одной модели"};
inline constexpr Text kLogModelUnknownRemedy = {"Name the model with --model.",
                                                "Укажите модель: --model."};
inline constexpr Text kModelWithoutProtocol = {"model {0} has no protocol",
                                               "у модели {0} нет протокола"};

inline constexpr Text kLogModelGiven = {"Model {0}", "Модель {0}"};
inline constexpr Text kLogModelByFrames = {"Model {0}, by its frames", "Модель {0}, по кадрам"};
inline constexpr Text kLogModelByRequest = {"Model {0}, by its request; no good frame came",
                                            "Модель {0}, по запросу; верных кадров не было"};
inline constexpr Text kLogKin = {"; models {0} explain the log as well",
                                 "; модели {0} объясняют журнал не хуже"};
inline constexpr Text kLogDamaged = {"line {0}: a record that lacks bytes",
                                     "строка {0}: в записи не хватает байтов"};

inline constexpr Text kPollAttempt = {"poll {0}, attempt {1}", "опрос {0}, попытка {1}"};
inline constexpr Text kEventOpen = {"the port was opened", "порт открыт"};
inline constexpr Text kEventErrorOpen = {"the port could not be opened", "порт не открылся"};
inline constexpr Text kEventClose = {"the port was closed", "порт закрыт"};
inline constexpr Text kEventCantRead = {"a read from a port that isn't open",
                                        "чтение из неоткрытого порта"};
inline constexpr Text kEventCantWrite = {"a write to a port that isn't open",
                                         "запись в неоткрытый порт"};
inline constexpr Text kEventStop = {"the driver ended", "драйвер завершён"};
inline constexpr Text kRoleRequest = {"asks for the weight", "запрос веса"};
inline constexpr Text kRoleRequestFirst = {"asks for the weight, first part",
                                           "запрос веса, первая часть"};
inline constexpr Text kRoleRequestSecond = {"asks for the weight, second part",
                                            "запрос веса, вторая часть"};
inline constexpr Text kRoleTare = {"sets the tare", "команда тары"};
inline constexpr Text kRoleZero = {"sets the zero", "команда нуля"};
inline constexpr Text kRolePrice = {"sends a price, or a setting in its place",
                                    "передача цены или настройки"};
inline constexpr Text kRoleUnknownWrite = {"is no command of this model", "не команда этой модели"};
inline constexpr Text kRoleDrained = {"thrown away before reading", "отброшено перед чтением"};
inline constexpr Text kRoleSkipped = {"stepped over, begins no frame",
                                      "пропущено, не начало кадра"};
inline constexpr Text kRoleFramePart = {"answer, {0} bytes so far", "ответ, всего байтов: {0}"};

inline constexpr Text kGoodFrame = {"good: {0}", "верно: {0}"};
inline constexpr Text kFrameSaysCode = {"the scale reports error {0}: {1}",
                                        "весы сообщают ошибку {0}: {1}"};
inline constexpr Text kRefusedFrame = {"refused: {0}", "отвергнуто: {0}"};
inline constexpr Text kFieldWeight = {"weight {0}", "вес {0}"};
inline constexpr Text kFieldPrice = {"price {0}", "цена {0}"};
inline constexpr Text kFieldCost = {"cost {0}", "стоимость {0}"};
inline constexpr Text kFieldBytes = {" (bytes {0})", " (байты {0})"};

inline constexpr Text kWhySilence = {"no answer came within {0} ms", "нет ответа за {0} мс"};
inline constexpr Text kWhyTooShort = {"{0} bytes, the frame has {1}", "байтов {0}, в кадре {1}"};
inline constexpr Text kWhyNoEnd = {"the frame doesn't end in {0}", "кадр не кончается на {0}"};
inline constexpr Text kWhyByte = {"byte {0} is {1}, the protocol wants {2}",
                                  "байт {0} равен {1}, протокол требует {2}"};
inline constexpr Text kWhyLastByte = {"byte {0} is {1}, the frame ends in {2}",
                                      "байт {0} равен {1}, кадр кончается на {2}"};
inline constexpr Text kWhyChecksum = {"the checksum is {0}, the bytes make {1}",
                                      "контрольная сумма {0}, по байтам {1}"};
inline constexpr Text kOrWord = {" or ", " или "};
inline constexpr Text kAndWord = {"; ", "; "};

inline constexpr Text kLogSummary = {"{0} records, {1} polls: {2} good, {3} failed",
                                     "записей {0}, опросов {1}: успешных {2}, с ошибкой {3}"};
inline constexpr Text kLogFailures = {"  {0} x {1}", "  {0} x {1}"};
inline constexpr Text kFailSilence = {"no answer came", "не было ответа"};
inline constexpr Text kFailTooShort = {"the answer broke off", "ответ оборвался"};
inline constexpr Text kFailWrong = {"the frame was damaged", "кадр был повреждён"};
inline constexpr Text kFailCode = {"the scale reported error {0}: {1}",
                                   "весы сообщили ошибку {0}: {1}"};
inline constexpr Text kFailOpen = {"the port could not be opened", "порт не открылся"};

}  // namespace weigh::text
