#pragma once

#include <initializer_list>
#include <string>

#include "Language.h"

namespace weigh {

/// The message with "{0}", "{1}", ... replaced by the arguments.
std::string fill(const Text& text, std::initializer_list<std::string> arguments);

}  // namespace weigh

/// Everything that weigh says.
namespace weigh::text {

// The command line.
inline constexpr Text kAbout = {
    "weigh - reads scales through the OrbeloScales component, loaded and called as the platform "
    "does it.",
    "weigh - читает весы через компоненту OrbeloScales, загружая и вызывая её так же, как "
    "платформа."};
inline constexpr Text kExitCodes = {
    "Exit codes: 0 good; 1 the scale or the component reports an error; 2 wrong usage, or "
    "something that is needed isn't there.\n"
    "`weigh COMMAND --help` tells more about a command.\n\n"
    "Example: weigh read --model 13 --port /dev/ttyUSB0 --baud 9600",
    "Коды возврата: 0 успех; 1 ошибка весов или компоненты; 2 неверный вызов или нет того, что "
    "нужно для работы.\n"
    "`weigh КОМАНДА --help` расскажет о команде подробнее.\n\n"
    "Пример: weigh read --model 13 --port /dev/ttyUSB0 --baud 9600"};
inline constexpr Text kHelpFlag = {"Print this help and end", "Показать эту справку"};
inline constexpr Text kVersionFlag = {"Print the version and end", "Показать версию"};
inline constexpr Text kComponentOption = {"The component's library (default: the one beside weigh)",
                                          "Библиотека компоненты (по умолчанию рядом с weigh)"};
inline constexpr Text kLangOption = {"Language of the messages (default: by the locale)",
                                     "Язык сообщений (по умолчанию по локали)"};
inline constexpr Text kUsage = {"Usage", "Вызов"};
inline constexpr Text kSubcommand = {"COMMAND", "КОМАНДА"};
inline constexpr Text kOptionsWord = {"OPTIONS", "ПАРАМЕТРЫ"};
inline constexpr Text kPositionals = {"Arguments", "Аргументы"};
inline constexpr Text kRequired = {"REQUIRED", "ОБЯЗАТЕЛЬНО"};
inline constexpr Text kOptionsGroup = {"Options", "Параметры"};
inline constexpr Text kScaleGroup = {"The scale", "Весы"};
inline constexpr Text kOutputGroup = {"Readings and output", "Чтение и вывод"};
inline constexpr Text kCommandsGroup = {"Commands", "Команды"};
inline constexpr Text kExample = {"Example: {0}", "Пример: {0}"};

inline constexpr Text kReadAbout = {"Read the weight", "Прочитать вес"};
inline constexpr Text kReadNotes = {
    "Without a model the emulator answers, which needs no scale; on purpose it fails one reading "
    "in ten.",
    "Если модель не указана, отвечает эмулятор, которому весы не нужны; одно чтение из десяти он "
    "намеренно оставляет без ответа."};
inline constexpr Text kTareAbout = {"Make what lies on the scale its tare",
                                    "Принять груз на весах за тару"};
inline constexpr Text kPriceAbout = {"Send a price to the scale", "Передать цену на весы"};
inline constexpr Text kTestAbout = {"Test the connection as the platform's settings form does",
                                    "Проверить связь так, как это делает форма настройки"};
inline constexpr Text kModelsAbout = {"List the models, and which have a driver",
                                      "Показать список моделей и у каких есть драйвер"};
inline constexpr Text kPageAbout = {"Print the parameter page that the platform gets, as XML",
                                    "Напечатать страницу параметров для платформы (XML)"};
inline constexpr Text kSettingsAbout = {
    "Load a component folder and read every scale of its settings.xml",
    "Загрузить папку компоненты и прочитать все весы из её settings.xml"};
inline constexpr Text kCallAbout = {"Call any method of the component and show what came back",
                                    "Вызвать любой метод компоненты и показать результат"};
inline constexpr Text kCallNotes = {
    "Numbers, true and false are taken as such, all else is text; i:5 u:5 d:1.5 b:true s:text "
    "n:text (narrow) and e: (empty) say it outright. @id stands for a scale opened by the options. "
    "Outputs need not be given.",
    "Числа, true и false понимаются как есть, остальное как текст; i:5 u:5 d:1.5 b:true s:текст "
    "n:текст (узкая строка) и e: (пусто) задают тип явно. @id означает весы, подключённые по "
    "параметрам. Выходные параметры указывать не нужно."};

inline constexpr Text kModelOption = {"Model number; `weigh models` lists them",
                                      "Номер модели; список: `weigh models`"};
inline constexpr Text kConnTypeOption = {
    "serial or tcp (also 0 or 1); tcp if --host is given, serial otherwise",
    "serial или tcp (также 0 или 1); tcp, если указан --host, иначе serial"};
inline constexpr Text kPortOption = {"Serial device", "Последовательный порт"};
inline constexpr Text kBaudOption = {"Speed of the serial line", "Скорость порта"};
inline constexpr Text kHostOption = {"Host name or address of a network scale; selects the network",
                                     "Имя или адрес сетевых весов; включает сетевое подключение"};
inline constexpr Text kTcpPortOption = {"TCP port of a network scale", "TCP-порт сетевых весов"};
inline constexpr Text kLeaveOption = {"Keep the connection between readings",
                                      "Не разрывать соединение между чтениями"};
inline constexpr Text kCoeffOption = {"Factor that the weight is multiplied by",
                                      "Коэффициент, на который умножается вес"};
inline constexpr Text kLogOption = {
    "Write an exchange log into this folder; scales of a settings.xml in it are loaded too",
    "Вести журнал обмена в этой папке; если в ней есть settings.xml, его весы тоже загрузятся"};
inline constexpr Text kSettingsLogFlag = {"Write exchange logs into the folder",
                                          "Вести журналы обмена в этой папке"};
inline constexpr Text kCountOption = {"Number of readings", "Число чтений"};
inline constexpr Text kWatchCountOption = {"End after so many readings (0: never)",
                                           "Закончить после стольких чтений (0: никогда)"};
inline constexpr Text kIntervalOption = {"Seconds from one reading to the next",
                                         "Секунд от чтения до чтения"};
inline constexpr Text kJsonFlag = {"One JSON record per line", "По одной записи JSON в строке"};
inline constexpr Text kCsvFlag = {"Comma-separated values with a heading",
                                  "Значения через запятую с заголовком"};
inline constexpr Text kWithPriceFlag = {"Read price, cost and stability too",
                                        "Читать также цену, стоимость и стабильность"};
inline constexpr Text kPriceArgument = {
    "Whole number in the scale's own unit, as a rule hundredths (12.50 is 1250)",
    "Целое число в единицах весов, как правило в сотых долях (12.50 это 1250)"};
inline constexpr Text kWithDriverFlag = {"Only models that have a driver",
                                         "Только модели с драйвером"};
inline constexpr Text kFolderArgument = {"Component folder with settings.xml",
                                         "Папка компоненты с settings.xml"};
inline constexpr Text kMethodArgument = {"Russian or English name of the method",
                                         "Русское или английское имя метода"};
inline constexpr Text kArgsArgument = {"Parameters of the call", "Параметры вызова"};

// Wrong usage.
inline constexpr Text kSeeHelp = {"`{0} --help` shows how it is used.", "Справка: `{0} --help`."};
inline constexpr Text kUnexpected = {"not understood: {0}", "непонятный аргумент: {0}"};
inline constexpr Text kMissing = {"something is missing: {0}", "не хватает: {0}"};
inline constexpr Text kNoCommand = {"which command? One of: {0}", "какая команда? Одна из: {0}"};
inline constexpr Text kNotWhole = {"'{0}' is no whole number from {1} to {2}",
                                   "'{0}' не является целым числом от {1} до {2}"};
inline constexpr Text kNotSeconds = {"'{0}' is no number of seconds from 0 to {1}",
                                     "'{0}' не является числом секунд от 0 до {1}"};
inline constexpr Text kNotCoeff = {
    "'{0}' is no factor; digits with at most one point or comma, such as 0.995",
    "'{0}' не является коэффициентом; цифры и не более одной точки или запятой, например 0.995"};
inline constexpr Text kNotConnType = {
    "'{0}' is no connection type; serial (0) or tcp (1)",
    "'{0}' не является типом подключения; serial (0) или tcp (1)"};
inline constexpr Text kPortIsDevice = {
    "{0} is no serial device; the TCP port of {1} is given with --tcp-port {0}",
    "{0} не последовательный порт; TCP-порт для {1} задаётся как --tcp-port {0}"};
inline constexpr Text kEmptyText = {"may not be empty", "не может быть пустым"};
inline constexpr Text kTooManyParams = {"{0} takes {1} parameters, not {2}",
                                        "{0} принимает параметров: {1}, а не {2}"};
inline constexpr Text kUnknownMethod = {"the component has no method '{0}'",
                                        "в компоненте нет метода '{0}'"};
inline constexpr Text kMethodsAre = {"Names are exact, also in case: {0}.",
                                     "Имена точны, включая регистр: {0}."};
inline constexpr Text kBadParam = {"parameter '{0}': {1}", "параметр '{0}': {1}"};
inline constexpr Text kNotReal = {"no number", "не число"};
inline constexpr Text kNotBool = {"neither true nor false", "ни true, ни false"};

// The component.
inline constexpr Text kComponentMissing = {"the component isn't there: {0}", "компоненты нет: {0}"};
inline constexpr Text kComponentMissingRemedy = {
    "Build it with `cmake --build --preset release`, or name it with --component PATH.",
    "Соберите её (`cmake --build --preset release`) или укажите --component ПУТЬ."};
inline constexpr Text kComponentBroken = {"{0} can't be loaded: {1}", "{0} не загружается: {1}"};
inline constexpr Text kComponentBrokenRemedy = {
    "It has to be a component for Linux x86-64; take the one of a fresh build or of the bundle.",
    "Нужна компонента для Linux x86-64; возьмите её из свежей сборки или из архива поставки."};
inline constexpr Text kComponentForeign = {"{0} is no component: it has no export {1}",
                                           "{0} не компонента: нет экспорта {1}"};
inline constexpr Text kComponentRefuses = {"the component {0} gives no object: {1} failed",
                                           "компонента {0} не создаёт объект: сбой в {1}"};

// What the scale says.
inline constexpr Text kScaleError = {"scale error {0}: {1}", "ошибка весов {0}: {1}"};
inline constexpr Text kOfScales = {"{0} (scales {1})", "{0} (весы {1})"};
inline constexpr Text kCallRefused = {"the component refused the call of {0}",
                                      "компонента отклонила вызов {0}"};
inline constexpr Text kNoDevice = {"There is no {0}. Serial devices here: {1}.",
                                   "Устройства {0} нет. Последовательные порты: {1}."};
inline constexpr Text kNone = {"none", "нет"};
inline constexpr Text kNoPermission = {
    "This user may not open {0}; add it to the device's group (as a rule `dialout`), log in anew.",
    "Нет прав на {0}; добавьте пользователя в группу устройства (обычно `dialout`) и войдите "
    "заново."};
inline constexpr Text kSerialRemedy = {
    "Is {0} in use by another program, and a serial line? Does the line take {1} baud?",
    "Не занят ли {0} другой программой, порт ли это? Подходит ли скорость {1}?"};
inline constexpr Text kNetworkRemedy = {
    "Does {0} answer to ping, and does the scale (or its converter) listen on TCP port {1}? Most "
    "take one connection at a time.",
    "Отвечает ли {0} на ping и слушают ли весы (или преобразователь) TCP-порт {1}? Обычно "
    "допускается одно соединение."};
inline constexpr Text kNoAnswerRemedy = {
    "Check cable, speed and the protocol set in the scale's menu, and that model {0} is the right "
    "one; `--log DIR` shows every byte.",
    "Проверьте кабель, скорость и протокол в меню весов, верна ли модель {0}; `--log ПАПКА` "
    "покажет каждый байт."};
inline constexpr Text kEmulatorRemedy = {
    "The emulator fails one reading in ten on purpose; read again.",
    "Эмулятор намеренно не отвечает один раз из десяти; повторите чтение."};
inline constexpr Text kEmulatorNote = {
    "the emulator makes these weights up; a scale is chosen with --model",
    "эти веса придуманы эмулятором; весы выбирает --model"};
inline constexpr Text kNotSupportedRemedy = {
    "Model {0} has no such command, or no driver; `weigh models` tells which have one.",
    "У модели {0} нет такой команды или нет драйвера; см. `weigh models`."};
inline constexpr Text kOverloadRemedy = {"Take the load off the scale.", "Снимите груз с весов."};
inline constexpr Text kFolderRemedy = {"Make the folder or name another one.",
                                       "Создайте папку или укажите другую."};

// Readings.
inline constexpr Text kKilogram = {"kg", "кг"};
inline constexpr Text kGram = {"g", "г"};
inline constexpr Text kAsShown = {"(as shown)", "(как на весах)"};
inline constexpr Text kHundredths = {"{0}/100", "{0}/100"};
inline constexpr Text kPriceWord = {"price", "цена"};
inline constexpr Text kCostWord = {"cost", "стоимость"};
inline constexpr Text kStable = {"stable", "стабилен"};
inline constexpr Text kMoving = {"moving", "движется"};
inline constexpr Text kErrorWord = {"error {0}: {1}", "ошибка {0}: {1}"};
inline constexpr Text kMs = {"{0} ms", "{0} мс"};
inline constexpr Text kTareDone = {"tare set", "тара установлена"};
inline constexpr Text kPriceDone = {"price {0} sent", "цена {0} передана"};

// Lists.
inline constexpr Text kModelColumn = {"MODEL", "МОДЕЛЬ"};
inline constexpr Text kDriverColumn = {"DRIVER", "ДРАЙВЕР"};
inline constexpr Text kUnitColumn = {"WEIGHT IN", "ВЕС В"};
inline constexpr Text kNameColumn = {"NAME", "НАЗВАНИЕ"};
inline constexpr Text kYes = {"yes", "есть"};
inline constexpr Text kNo = {"no", "нет"};
inline constexpr Text kIdColumn = {"ID", "ID"};
inline constexpr Text kLineColumn = {"LINE", "ЛИНИЯ"};
inline constexpr Text kWeightColumn = {"WEIGHT", "ВЕС"};
inline constexpr Text kPriceColumn = {"PRICE", "ЦЕНА"};
inline constexpr Text kCostColumn = {"COST", "СТОИМОСТЬ"};
inline constexpr Text kStateColumn = {"STATE", "СОСТОЯНИЕ"};
inline constexpr Text kPollColumn = {"POLL", "ОПРОС"};
inline constexpr Text kErrorColumn = {"ERROR", "ОШИБКА"};
inline constexpr Text kNoSettings = {"there is no {0}", "нет файла {0}"};
inline constexpr Text kNoSettingsRemedy = {
    "Name the component's folder: the one whose settings.xml lists the scales.",
    "Укажите папку компоненты: ту, где settings.xml перечисляет весы."};
inline constexpr Text kBadSettings = {"{0} can't be read", "{0} не читается"};
inline constexpr Text kEmptySettings = {"{0} names no scale", "в {0} нет ни одних весов"};
inline constexpr Text kEmptySettingsRemedy = {
    "Scales are elements SCALES0 to SCALES99 under the root, each with its number in fNum.",
    "Весы задаются элементами SCALES0 - SCALES99 в корне, номер весов в fNum."};

// Calls.
inline constexpr Text kMethodWord = {"method", "метод"};
inline constexpr Text kCallWord = {"call", "вызов"};
inline constexpr Text kExecuted = {"executed", "выполнен"};
inline constexpr Text kRefused = {"refused", "отклонён"};
inline constexpr Text kReturned = {"returned", "результат"};
inline constexpr Text kParamWord = {"param {0}", "параметр {0}"};
inline constexpr Text kLastErrorWord = {"last error", "посл. ошибка"};

// The exchange log.
inline constexpr Text kLogFolderFails = {"no exchange log in {0}: {1}",
                                         "журнал обмена в {0} невозможен: {1}"};
inline constexpr Text kLogFolderRemedy = {"Name a folder that this user may write to.",
                                          "Укажите папку, доступную для записи."};
inline constexpr Text kLogWritten = {"exchange log: {0}", "журнал обмена: {0}"};
inline constexpr Text kLogNotWritten = {"no exchange log came into {0}",
                                        "журнал обмена в {0} не появился"};
inline constexpr Text kLogLoadsScales = {"{0} is there, so its scales are loaded too",
                                         "есть {0}, поэтому его весы тоже загружаются"};
inline constexpr Text kUnexpectedFailure = {"unexpected: {0}", "непредвиденная ошибка: {0}"};

}  // namespace weigh::text
