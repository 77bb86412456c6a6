#include "Texts.h"

#include <cstddef>

namespace texts {

const Text kPurpose = {"Plays the scale's side of any model of the driver.",
                       "Играет роль весов любой модели драйвера."};
const Text kUsage = {
    "scalesim MODEL [--pty [--link PATH] | --tcp [PORT]] [options]\n"
    "       scalesim --all DIR [options]\n"
    "       scalesim --list\n"
    "       scalesim --help [MODEL]",
    "scalesim МОДЕЛЬ [--pty [--link ПУТЬ] | --tcp [ПОРТ]] [параметры]\n"
    "       scalesim --all КАТАЛОГ [параметры]\n"
    "       scalesim --list\n"
    "       scalesim --help [МОДЕЛЬ]"};
const Text kFooter = {
    "The first line of output is the address: a device path or 127.0.0.1:PORT. While it runs,\n"
    "scalesim takes new weights (\"1.250\") and commands from standard input; \"help\" lists "
    "them.\n"
    "Exit codes: 0 good, 1 failure at run time, 2 wrong usage.",
    "Первая строка вывода - адрес: путь к устройству или 127.0.0.1:ПОРТ. Во время работы scalesim\n"
    "принимает новый вес (\"1.250\") и команды со стандартного ввода; \"help\" выводит их список.\n"
    "Коды завершения: 0 - успех, 1 - сбой при работе, 2 - неверный вызов."};

const Text kGroupWhat = {"What to play", "Что играть"};
const Text kGroupWhere = {"Where", "Где"};
const Text kGroupShows = {"What the scale shows", "Что показывают весы"};
const Text kGroupFaults = {"Misbehaviour", "Неисправности"};
const Text kGroupOther = {"Other", "Прочее"};

const Text kOptModel = {"Model number, as on the parameter page",
                        "Номер модели, как на странице параметров"};
const Text kOptAll = {
    "One simulator of each model, on pseudo-terminals and TCP ports, with a settings.xml in DIR",
    "По симулятору каждой модели на псевдотерминалах и портах TCP, с файлом settings.xml в "
    "каталоге"};
const Text kOptReplay = {"The scale's side of an exchange log, again and again",
                         "Сторона весов из журнала обмена, снова и снова"};
const Text kOptList = {"List the models", "Список моделей"};
const Text kOptPty = {"On a pseudo-terminal (the default)", "На псевдотерминале (по умолчанию)"};
const Text kOptLink = {"Symbolic link to the pseudo-terminal, removed at the end",
                       "Символическая ссылка на псевдотерминал, удаляется в конце"};
const Text kOptTcp = {"On a TCP port of 127.0.0.1; any free one without PORT",
                      "На порту TCP адреса 127.0.0.1; без ПОРТА - на любом свободном"};
const Text kOptSpeed = {
    "The scale's own speed on a pseudo-terminal: a host at another one gets garbage (default: any)",
    "Собственная скорость весов на псевдотерминале: на другой хост получает мусор (по умолчанию "
    "любая)"};
const Text kOptWeight = {"Load on the pan, kilograms", "Груз на платформе, килограммы"};
const Text kOptDecimals = {"Digits behind the point of the weight", "Знаков после точки в весе"};
const Text kOptPrice = {"Price of a kilogram", "Цена за килограмм"};
const Text kOptUnstable = {"The weight is moving", "Вес не успокоился"};
const Text kOptOverload = {"The load is too heavy", "Перегруз"};
const Text kOptSilent = {"Listens and says nothing", "Слушают и молчат"};
const Text kOptGarbage = {"N stray bytes before each frame", "N лишних байт перед каждым кадром"};
const Text kOptCorrupt = {"Damages one frame of every EVERY, the first one first",
                          "Портит один кадр из каждых N, начиная с первого"};
const Text kOptCut = {"Sends only the first N bytes of each frame",
                      "Передаёт только первые N байт каждого кадра"};
const Text kOptDribble = {"Pause of MS milliseconds before each byte",
                          "Пауза в N миллисекунд перед каждым байтом"};
const Text kOptHangUp = {
    "After every N frames closes the connection, or lets the device vanish for half a second",
    "После каждых N кадров закрывает соединение или на полсекунды убирает устройство"};
const Text kOptSpoilOnly = {"Misbehaves for the first N frames only",
                            "Неисправность только в первых N кадрах"};
const Text kOptLang = {"Language of the messages: en or ru (from the locale by default)",
                       "Язык сообщений: en или ru (по умолчанию из локали)"};
const Text kOptVerbose = {"Show all bytes on standard error",
                          "Показывать все байты в стандартном потоке ошибок"};
const Text kOptHelp = {"This help; with a model, what is known of it",
                       "Эта справка; с номером модели - всё о ней"};
const Text kOptVersion = {"Print the version and end", "Показать версию"};

const Text kUsageError = {"scalesim: %1", "scalesim: %1"};
const Text kUnknownArgument = {"unknown argument: %1", "неизвестный аргумент: %1"};
const Text kBadValue = {"bad command line: %1", "ошибка в командной строке: %1"};
const Text kSeeHelp = {"See scalesim --help, or scalesim --help MODEL for one model.",
                       "Смотрите scalesim --help или, для одной модели, scalesim --help МОДЕЛЬ."};
const Text kModelMissing = {
    "no model was named; give its number (scalesim --list shows them) or --all DIR",
    "не указана модель; задайте её номер (список: scalesim --list) или --all КАТАЛОГ"};
const Text kNoSuchModel = {
    "there is no simulator of model %1; scalesim --list shows those there are",
    "симулятора модели %1 нет; список имеющихся: scalesim --list"};
const Text kNotANumber = {"%1 wants a number, and \"%2\" is none",
                          "%1 требует числа, а \"%2\" - не число"};
const Text kOptionUnknown = {"model %1 has no %2; it knows: %3",
                             "у модели %1 нет %2; она знает: %3"};
const Text kOneTransport = {"--pty and --tcp exclude each other; start two simulators",
                            "--pty и --tcp исключают друг друга; запустите два симулятора"};
const Text kLinkNeedsPty = {"--link goes with a pseudo-terminal, not with --tcp",
                            "--link относится к псевдотерминалу, а не к --tcp"};
const Text kSpeedNeedsPty = {"--speed goes with a pseudo-terminal, not with --tcp",
                             "--speed относится к псевдотерминалу, а не к --tcp"};
const Text kReplayAlone = {
    "--replay takes no model, none of --all and --speed, and nothing about the scale",
    "--replay не сочетается с моделью, с --all и --speed и с тем, что "
    "относится к весам"};
const Text kAllAlone = {"--all takes no model and none of --pty, --link, --tcp",
                        "--all не сочетается с моделью и с --pty, --link, --tcp"};
const Text kWeightOutOfRange = {"model %1 can't show %2 kg; with %3 decimals it shows %4 to %5",
                                "модель %1 не может показать %2 кг; при %3 знаках после точки она "
                                "показывает от %4 до %5"};
const Text kPriceOutOfRange = {"model %1 takes prices from 0 to %2",
                               "модель %1 принимает цены от 0 до %2"};
const Text kDecimalsOutOfRange = {"model %1 takes %2 to %3 decimals",
                                  "модель %1 допускает от %2 до %3 знаков после точки"};

const Text kFailed = {"scalesim: %1.%2", "scalesim: %1.%2"};
const Text kRemedyPortTaken = {" Choose another port, or --tcp without one for any that is free.",
                               " Выберите другой порт или --tcp без номера - любой свободный."};
const Text kRemedyFileInTheWay = {
    " The name is taken by something that is no link; choose another.",
    " Имя занято, и это не ссылка; выберите другое."};
const Text kRemedyNoAccess = {
    " Check the permissions (ports below 1024 are for root), or choose another name or port.",
    " Проверьте права (порты ниже 1024 доступны только root) или выберите другое имя или порт."};
const Text kRemedyNoFolder = {" Make the folder first.", " Сначала создайте каталог."};
const Text kForeignSettings = {
    "%1 was not written by scalesim and stays as it is; choose another folder",
    "файл %1 создан не программой scalesim и не будет изменён; выберите "
    "другой каталог"};
const Text kPathTooLong = {
    "%1 is longer than the 255 bytes that a port's name may have; choose "
    "another folder",
    "%1 длиннее 255 байт, допустимых для имени порта; выберите другой "
    "каталог"};
const Text kNoTcpWarning = {"scalesim: the component can't read model %1 over TCP: %2.",
                            "scalesim: компонента не может читать модель %1 по TCP: %2."};

const Text kStarted = {
    "scalesim: model %1, %2, at %3; \"help\" lists the commands, Ctrl-C ends it.",
    "scalesim: модель %1, %2, адрес %3; \"help\" - список команд, Ctrl-C - "
    "конец."};
const Text kStartedAll = {
    "scalesim: %1 scales; \"13: 1.250\" sets one, \"1.250\" all, Ctrl-C ends it.",
    "scalesim: весов: %1; \"13: 1.250\" меняет одни, \"1.250\" - все, Ctrl-C - "
    "конец."};
const Text kStartedReplay = {"scalesim: %1, %2 turns, at %3; Ctrl-C ends it.",
                             "scalesim: %1, обменов %2, адрес %3; Ctrl-C - конец."};
const Text kNoReplay = {"%1 can't be read, or has nothing that a scale sent",
                        "%1 не читается, или в нём нет ничего от весов"};
const Text kStranger = {"scalesim: the host sent %1, in the record it was %2",
                        "scalesim: пришло %1, а в записи было %2"};
const Text kStopped = {"scalesim: stopped.", "scalesim: остановлен."};

const Text kConsoleHelp = {
    "1.250         new weight, kilograms\n"
    "price 12.50   new price\n"
    "decimals 2    digits behind the point\n"
    "stable, unstable\n"
    "overload, normal\n"
    "tare, zero    the keys of the scale\n"
    "silent, speak\n"
    "away, back    pull the cable and plug it in again\n"
    "show          what the scale shows\n"
    "quit\n"
    "With --all, a model's number and a colon in front name one model: \"13: unstable\".",
    "1.250         новый вес, килограммы\n"
    "price 12.50   новая цена\n"
    "decimals 2    знаков после точки\n"
    "stable, unstable   вес спокоен, вес не успокоился\n"
    "overload, normal   перегруз и его конец\n"
    "tare, zero    клавиши весов: тара, ноль\n"
    "silent, speak      молчать, отвечать\n"
    "away, back    вынуть кабель и вставить снова\n"
    "show          что показывают весы\n"
    "quit          конец\n"
    "При --all номер модели с двоеточием относит команду к ней одной: \"13: unstable\"."};
const Text kConsoleUnknown = {"\"%1\" is no weight and no command; \"help\" lists them",
                              "\"%1\" - не вес и не команда; \"help\" - список команд"};
const Text kConsoleNoScale = {"scalesim: no scale of model %1 is running.",
                              "scalesim: весы модели %1 не запущены."};
const Text kConsoleNotKnown = {"scalesim: model %1 doesn't know \"%2\".",
                               "scalesim: модель %1 не знает \"%2\"."};
const Text kConsoleFailed = {"scalesim: %1.", "scalesim: %1."};
const Text kStable = {"stable", "спокоен"};
const Text kMoving = {"moving", "не успокоился"};
const Text kOverloaded = {"overload", "перегруз"};
const Text kPriceIs = {", price %1, cost %2", ", цена %1, стоимость %2"};
const Text kTareIs = {", tare %1", ", тара %1"};
const Text kSilentNow = {", silent", ", молчат"};
const Text kAwayNow = {", away", ", отключены"};

const Text kRowLine = {"Line", "Линия"};
const Text kRowExchange = {"Exchange", "Обмен"};
const Text kRowFrame = {"Frame", "Кадр"};
const Text kRowWeight = {"Weight", "Вес"};
const Text kRowDecimals = {"Decimals", "Знаки"};
const Text kRowReading = {"Reading", "Чтение"};
const Text kRowStability = {"Stability", "Успокоение"};
const Text kRowOverload = {"Overload", "Перегруз"};
const Text kRowPrice = {"Price", "Цена"};
const Text kRowObeys = {"Obeys", "Команды"};
const Text kRowTcp = {"TCP", "TCP"};
const Text kRowOptions = {"Options", "Параметры"};
const Text kRowRemark = {"Remark", "Замечание"};

const Text kLineText = {"%1: %2 data bits, %3, stop bits: %4; the speed as set in the component",
                        "%1: бит данных: %2, %3, стоповых бит: %4; скорость - как в компоненте"};
const Text kParityNone = {"no parity", "без контроля чётности"};
const Text kParityEven = {"even parity", "контроль чётности"};
const Text kStreams = {"sends frame after frame without being asked",
                       "передают кадр за кадром без запроса"};
const Text kAnswersTo = {"answers to %1", "отвечают на %1"};
const Text kFrameOf = {"%1 (for %2)", "%1 (при %2)"};
const Text kAndBytes = {"%1 and %2 bytes", "%1 и %2 байт"};
const Text kWeightLimits = {"from %1 to %2 kg", "от %1 до %2 кг"};
const Text kDecimalsFixed = {"always %1", "всегда %1"};
const Text kDecimalsChoice = {"%1 to %2, usually %3", "от %1 до %2, обычно %3"};
const Text kReadingOf = {"the component reads %1 as %2 (%3)", "компонента читает %1 как %2 (%3)"};
const Text kKilograms = {"kilograms", "килограммы"};
const Text kGrams = {"grams", "граммы"};
const Text kCount = {"the scale's raw count", "отсчёты весов без пересчёта"};
const Text kStabilityShown = {"in the frame", "есть в кадре"};
const Text kStabilityNever = {"not in the frame; the component always reports moving",
                              "нет в кадре; компонента всегда сообщает, что вес не успокоился"};
const Text kStabilityAlways = {"not in the frame; the component always reports stable",
                               "нет в кадре; компонента всегда сообщает, что вес спокоен"};
const Text kOverloadCode = {"in the frame; the component returns code %1",
                            "есть в кадре; компонента возвращает код %1"};
const Text kOverloadNever = {"not in the frame", "нет в кадре"};
const Text kPriceShown = {"from 0 to %1, with the cost in the frame",
                          "от 0 до %1, вместе со стоимостью есть в кадре"};
const Text kPriceNever = {"not in the frame", "нет в кадре"};
const Text kTare = {"tare", "тара"};
const Text kZero = {"zero", "ноль"};
const Text kPrice = {"price", "цена"};
const Text kSetup = {"setup", "настройка"};
const Text kNothing = {"no commands", "команд нет"};
const Text kYes = {"yes", "да"};
const Text kNo = {"no", "нет"};
const Text kNoBecause = {"no: %1", "нет: %1"};
const Text kListHead = {"Model\tExchange\tTCP\tName", "Модель\tОбмен\tTCP\tНазвание"};
const Text kListStreams = {"streams", "поток"};
const Text kListAnswers = {"answers", "запрос"};

}  // namespace texts

std::string fill(const Text& text, const std::vector<std::string>& values) {
  std::string filled;
  for (std::string_view rest = say(text); !rest.empty();) {
    const bool mark = rest.size() > 1 && rest[0] == '%' && rest[1] >= '1' && rest[1] <= '9';
    const std::size_t number = mark ? static_cast<std::size_t>(rest[1] - '1') : 0;
    if (mark && number < values.size()) {
      filled += values[number];
      rest.remove_prefix(2);
    } else {
      filled += rest.front();
      rest.remove_prefix(1);
    }
  }
  return filled;
}
