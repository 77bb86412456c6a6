#pragma once

#include "Language.h"

namespace weigh {

/// What is told of one verdict, or of one thing noticed beside it. The code is for scripts and the
/// same in all languages; "{0}", "{1}", ... stand for the same in cause and remedy.
struct Advice {
  const char* code;
  Text cause;
  Text remedy;
};

}  // namespace weigh

/// The doctor's verdicts.
namespace weigh::advice {

// The scale answers. {0} the weight.
inline constexpr Advice kGood = {
    "good",
    {"The scale answers with a good weight: {0}.", "Весы отвечают, вес получен: {0}."},
    {"Nothing is to be done.", "Ничего делать не нужно."}};
inline constexpr Advice kZero = {
    "zero",
    {"The scale answers, and its weight is zero: {0}.", "Весы отвечают, вес равен нулю: {0}."},
    {"The line is in order. Put a load on; if the weight stays zero, see to the pan and its "
     "transport locks.",
     "Связь в порядке. Положите груз; если вес остаётся нулевым, проверьте платформу и "
     "транспортные фиксаторы."}};
inline constexpr Advice kNegative = {
    "negative",
    {"The scale answers with a weight below zero: {0}.", "Весы отвечают, вес ниже нуля: {0}."},
    {"The line is in order. Clear the pan and press the scale's zero key, or take off the tare.",
     "Связь в порядке. Освободите платформу и нажмите на весах клавишу нуля либо сбросьте тару."}};
inline constexpr Advice kMoving = {
    "moving",
    {"The scale answers and says that the weight is moving: {0}.",
     "Весы отвечают и сообщают, что вес не установился: {0}."},
    {"The line is in order. Wait until the load is at rest; wind, vibration or something that "
     "touches the pan keeps a weight moving.",
     "Связь в порядке. Дождитесь покоя груза; вес движется от сквозняка, вибрации или если "
     "платформы что-то касается."}};
inline constexpr Advice kOverload = {
    "overload",
    {"The scale answers and says overload.", "Весы отвечают и сообщают о перегрузке."},
    {"Take the load off. If an empty pan says the same, the load cell or its cable is damaged.",
     "Снимите груз. Если пустая платформа сообщает то же, повреждён датчик или его кабель."}};
inline constexpr Advice kNoReading = {
    "no-reading",
    {"The scale answers that it has no weight to give.", "Весы отвечают, что веса у них нет."},
    {"Look at its display: it is starting, in a menu, or shows an error.",
     "Посмотрите на табло: весы запускаются, находятся в меню или показывают ошибку."}};
// {0} polls, {1} answered, {2} not.
inline constexpr Advice kUnsteady = {
    "unsteady",
    {"Of {0} polls {1} were answered and {2} were not.",
     "Из опросов ({0}) с ответом {1}, без ответа {2}."},
    {"Check plugs and earth, shorten the cable, and see that no other program asks this scale.",
     "Проверьте разъёмы и заземление, укоротите кабель и убедитесь, что весы не опрашивает другая "
     "программа."}};

// No scale to ask. {0} the model.
inline constexpr Advice kEmulator = {
    "emulator",
    {"Model {0} is the emulator: it makes weights up and has no line.",
     "Модель {0} - эмулятор: вес он придумывает сам, линии у него нет."},
    {"Choose the model of your scale; `weigh models` lists them.",
     "Выберите модель своих весов; список: `weigh models`."}};
inline constexpr Advice kUnknownModel = {
    "unknown-model",
    {"There is no model {0}.", "Модели {0} нет."},
    {"`weigh models` lists the models.", "Список моделей: `weigh models`."}};
inline constexpr Advice kNoDriver = {
    "no-driver",
    {"Model {0} stands in the list but has no driver.", "Модель {0} есть в списке, драйвера нет."},
    {"`weigh models --driver` lists those that can be read; another one of them may speak the "
     "same protocol.",
     "Модели с драйвером: `weigh models --driver`; возможно, одна из них говорит по тому же "
     "протоколу."}};
// {0} polls, {1} answered.
inline constexpr Advice kStopped = {
    "stopped",
    {"Stopped before there was a verdict; polls {0}, answered {1}.",
     "Остановлено до вывода; опросов {0}, с ответом {1}."},
    {"Run it again and let it come to its end.", "Запустите снова и дождитесь конца."}};

// The device. {0} its path.
// {1} the serial devices here.
inline constexpr Advice kNoDevice = {
    "no-device",
    {"There is no device {0}.", "Устройства {0} нет."},
    {"Plug in the adapter, or name one of the serial devices of this machine: {1}.",
     "Подключите адаптер или укажите один из последовательных портов этой машины: {1}."}};
inline constexpr Advice kNotSerial = {
    "not-serial",
    {"{0} is no serial line.", "{0} не последовательный порт."},
    {"Name one of the serial devices of this machine: {1}.",
     "Укажите один из последовательных портов этой машины: {1}."}};
// {1} the user, {2} the owner, {3} the group, {4} the bits, {5} what is lacking, {6} a command.
inline constexpr Advice kDenied = {
    "no-permission",
    {"User {1} may not read and write {0}: owner {2}, group {3}, rights {4}; {5}.",
     "Пользователь {1} не может читать и писать {0}: владелец {2}, группа {3}, права {4}; {5}."},
    {"Run: {6}", "Выполните: {6}"}};
// {1} programs.
inline constexpr Advice kHeld = {
    "held",
    {"{0} is in use by {1}.", "{0} занят: {1}."},
    {"End that program or give it another line: a line serves one program at a time.",
     "Завершите эту программу или дайте ей другой порт: порт обслуживает одну программу."}};
inline constexpr Advice kHeldBySomebody = {
    "held",
    {"Another program, which this user can't see, has {0} for itself alone.",
     "{0} занят другой программой, которую этому пользователю не видно."},
    {"Run the same as root to see its name: `sudo weigh doctor ...`.",
     "Чтобы узнать её имя, запустите то же от root: `sudo weigh doctor ...`."}};
// {1} what the system says.
inline constexpr Advice kLineFails = {
    "line-fails",
    {"{0} can't be used: {1}.", "{0} не работает: {1}."},
    {"Unplug the adapter and plug it in again; `sudo dmesg | tail` tells what the kernel thinks "
     "of it.",
     "Отключите и снова подключите адаптер; что о нём думает ядро, покажет `sudo dmesg | tail`."}};
// {1} the speed, {2} the speeds.
inline constexpr Advice kSpeedRefused = {
    "speed-refused",
    {"{0} does not take {1} baud.", "{0} не принимает скорость {1}."},
    {"Set one of these speeds, the same in the scale's menu: {2}.",
     "Задайте одну из скоростей, такую же в меню весов: {2}."}};

// The host. {0} its name, {1} the TCP port.
// {2} what the system says.
inline constexpr Advice kNoSuchName = {
    "no-such-name",
    {"The host name {0} leads to no address: {2}.", "Имя {0} не даёт адреса: {2}."},
    {"Check the spelling, or give the address in numbers, such as 192.168.0.200.",
     "Проверьте написание или укажите адрес цифрами, например 192.168.0.200."}};
inline constexpr Advice kRefused = {
    "refused",
    {"{0} is there but refuses TCP port {1}.", "{0} отвечает, но TCP-порт {1} закрыт."},
    {"Set the port that the scale or its converter listens on, and see that no other program has "
     "its only connection.",
     "Задайте порт, который слушают весы или преобразователь, и проверьте, не занято ли "
     "единственное соединение другой программой."}};
inline constexpr Advice kUnreachable = {
    "unreachable",
    {"{0} can't be reached: {2}.", "{0} недоступен: {2}."},
    {"Check network cable, address and mask on both sides; `ping {0}` must answer.",
     "Проверьте сетевой кабель, адрес и маску с обеих сторон; `ping {0}` должен отвечать."}};
// {2} seconds.
inline constexpr Advice kNoAnswerInTime = {
    "no-answer",
    {"{0} did not answer on TCP port {1} within {2} s.",
     "{0} не ответил на TCP-порту {1} за {2} с."},
    {"Is the scale or its converter switched on, is the address right, does a firewall stand "
     "between?",
     "Включены ли весы или преобразователь, верен ли адрес, не мешает ли межсетевой экран?"}};
inline constexpr Advice kConnectsSilent = {
    "connects-silent",
    {"{0} takes the connection on TCP port {1}, and then nothing comes.",
     "{0} принимает соединение на TCP-порту {1}, но данных нет."},
    {"See to the converter's serial side: speed, cable, is the scale on; and that model {2} is "
     "the right one.",
     "Проверьте последовательную сторону преобразователя: скорость, кабель, включены ли весы; и "
     "верна ли модель {2}."}};
inline constexpr Advice kHangsUp = {
    "hangs-up",
    {"{0} takes the connection on TCP port {1} and ends it at once.",
     "{0} принимает соединение на TCP-порту {1} и сразу разрывает."},
    {"See that no other program is connected: most converters take one connection at a time.",
     "Проверьте, не подключена ли другая программа: обычно допускается одно соединение."}};

// What comes in. {0} the line, {1} the model, {2} the bytes, {3} the speed, {4} the settings that
// the model wants, {5} the call of weigh find.
inline constexpr Advice kSilent = {
    "silent",
    {"{0} opens, but nothing comes in at {3}.", "{0} открывается, но данных нет ({3})."},
    {"Is the scale on, are its lines crossed (TX to RX), is its port set to the protocol of model "
     "{1}? `{5}` tries all models and speeds.",
     "Включены ли весы, перекрещены ли провода (TX на RX), задан ли на весах протокол модели {1}? "
     "`{5}` переберёт модели и скорости."}};
inline constexpr Advice kGarbled = {
    "garbled",
    {"Bytes come in on {0}, but never a frame of model {1}: {2}.",
     "По {0} идут байты, но ни одного кадра модели {1}: {2}."},
    {"Set the protocol of model {1} in the scale's menu; `{5}` tells which model the bytes fit.",
     "Задайте в меню весов протокол модели {1}; какой модели подходят байты, скажет `{5}`."}};
inline constexpr Advice kCleanText = {
    "garbled",
    {"Readable text comes in on {0}, so speed and parity are right, but never a frame of model "
     "{1}: {2}.",
     "По {0} идёт читаемый текст, значит скорость и чётность верны, но кадров модели {1} нет: "
     "{2}."},
    {"Set the protocol of model {1} in the scale's menu; `{5}` tells which model the bytes fit.",
     "Задайте в меню весов протокол модели {1}; какой модели подходят байты, скажет `{5}`."}};
inline constexpr Advice kWrongSpeed = {
    "wrong-speed",
    {"The bytes on {0} look as if the scale sent at another speed than the line's ({3}): {2}.",
     "Байты по {0} похожи на передачу с другой скоростью, чем у линии ({3}): {2}."},
    {"Set the speed that stands in the scale's menu; `{5}` finds it out.",
     "Задайте скорость из меню весов; её определит `{5}`."}};
// {6} "even" or "odd".
inline constexpr Advice kWrongParity = {
    "wrong-parity",
    {"The bytes on {0} look like 7 data bits with {6} parity, and model {1} wants {4}: {2}.",
     "Байты по {0} похожи на 7 бит данных с проверкой на {6}, а модель {1} требует {4}: {2}."},
    {"Set {4} in the scale's menu; if it has no such setting, it is another model.",
     "Задайте {4} в меню весов; если такой настройки нет, модель весов другая."}};
inline constexpr Advice kParityErrors = {
    "wrong-parity",
    {"The bytes on {0} come with the wrong parity; model {1} wants {4}: {2}.",
     "Байты по {0} приходят с неверной чётностью; модель {1} требует {4}: {2}."},
    {"Set {4} in the scale's menu; if it has no such setting, it is another model.",
     "Задайте {4} в меню весов; если такой настройки нет, модель весов другая."}};
// {6} number and name of the other model, {7} its number and those of its kin, {8} the kin.
inline constexpr Advice kOtherModel = {
    "other-model",
    {"What comes in on {0} are frames of another model than {1}: {6}{8}.",
     "По {0} идут кадры не модели {1}, а другой: {6}{8}."},
    {"Set model {7}, or set the scale to the protocol of model {1}.",
     "Выберите модель {7} или задайте на весах протокол модели {1}."}};
inline constexpr Advice kNotRead = {
    "not-read",
    {"Frames of model {1} come in on {0}, but no poll gets one: {2}.",
     "По {0} идут кадры модели {1}, но опрос их не получает: {2}."},
    {"Over TCP a scale that transmits by itself must pause for more than 100 ms now and then, and "
     "an answer must have the length that the driver asks for; over a serial line see to plugs and "
     "earth.",
     "По TCP весы, передающие сами, должны иногда делать паузу больше 100 мс, а ответ должен иметь "
     "ту длину, которую запрашивает драйвер; на последовательной линии проверьте разъёмы и "
     "заземление."}};
inline constexpr Advice kEcho = {
    "echo",
    {"What is sent on {0} comes back unchanged: {2}.",
     "Отправленное по {0} возвращается без изменений: {2}."},
    {"Take off the loop-back plug, or switch off the echo of the RS-485 adapter; TX and RX may be "
     "joined.",
     "Снимите заглушку или отключите эхо адаптера RS-485; возможно, замкнуты TX и RX."}};

// Beside the verdict.
// {0} the device, {1} the model, {2} the bytes, {3} the call of weigh find.
inline constexpr Advice kUnasked = {
    "unasked-bytes",
    {"Bytes come in on {0} that nobody asked for, as no scale of model {1} sends them; the weight "
     "may be made of them: {2}.",
     "По {0} идут байты, которых никто не запрашивал и которых весы модели {1} не передают; вес "
     "мог сложиться из них: {2}."},
    {"Compare the weight with the scale's display; `{3}` tells which model the bytes fit.",
     "Сравните вес с табло весов; какой модели подходят байты, скажет `{3}`."}};
// {0} the adapter, {1} milliseconds, {2} the file of the setting.
inline constexpr Advice kUsbLatency = {
    "usb-latency",
    {"The adapter {0} holds bytes back for up to {1} ms (latency timer {2}).",
     "Адаптер {0} задерживает байты на время до {1} мс (latency timer, {2})."},
    {"Run: echo 1 | sudo tee {2}", "Выполните: echo 1 | sudo tee {2}"}};
// {0} the path, {1} the stable one.
inline constexpr Advice kNameMayChange = {
    "name-may-change",
    {"{0} may be another device after a restart or after replugging.",
     "После перезагрузки или переподключения {0} может оказаться другим устройством."},
    {"Give the port as {1}", "Укажите порт как {1}"}};

}  // namespace weigh::advice

/// What else the doctor says.
namespace weigh::text {

// Parts of the verdicts.
inline constexpr Text kLacksGroup = {"the user isn't in group {0} (log in anew afterwards)",
                                     "пользователь не входит в группу {0} (затем войдите заново)"};
inline constexpr Text kLacksNewLogin = {
    "the user is in group {0}, but this session is older: log in anew",
    "пользователь входит в группу {0}, но сеанс начат раньше: войдите заново"};
inline constexpr Text kLacksOwnBits = {"the owner's own rights are missing",
                                       "нет прав у самого владельца"};
inline constexpr Text kLacksRule = {"no group of users may use it",
                                    "ни одной группе пользователей он не доступен"};
inline constexpr Text kProcess = {"{0} (process {1})", "{0} (процесс {1})"};
inline constexpr Text kBaud = {"{0} baud", "{0} бод"};
inline constexpr Text kConvertersSpeed = {"set in the converter", "задана в преобразователе"};
inline constexpr Text kEven = {"even", "чётность"};
inline constexpr Text kOdd = {"odd", "нечётность"};
inline constexpr Text kOrKin = {"; models with the same frames: {0}",
                                "; такие же кадры у моделей: {0}"};

// The command.
inline constexpr Text kDoctorAbout = {"Find out why a scale doesn't answer, and what to do",
                                      "Выяснить, почему весы не отвечают и что делать"};
inline constexpr Text kDoctorNotes = {
    "Give the parameters of one scale, or a component folder for all scales of its settings.xml. "
    "Only weights are asked for; nothing is set in the scale.\n"
    "Exit codes: 0 every scale gives a weight; 1 a scale doesn't; 2 wrong usage.",
    "Укажите параметры одних весов или папку компоненты, чтобы проверить все весы её settings.xml. "
    "Запрашивается только вес, в весах ничего не меняется.\n"
    "Коды возврата: 0 все весы дают вес; 1 не все; 2 неверный вызов."};
inline constexpr Text kDoctorFolder = {"Component folder with settings.xml; none for one scale",
                                       "Папка компоненты с settings.xml; без неё одни весы"};
inline constexpr Text kScaleAndFolder = {"a folder, or the parameters of a scale, but not both",
                                         "либо папка, либо параметры весов, но не вместе"};
inline constexpr Text kTakesUpTo = {"This takes up to {0} s.", "Это займёт до {0} с."};
inline constexpr Text kScaleLine = {"Scale: model {0}, {1}", "Весы: модель {0}, {1}"};
inline constexpr Text kScaleLineOfId = {"Scale {0}: model {1}, {2}", "Весы {0}: модель {1}, {2}"};
inline constexpr Text kVerdictWord = {"Verdict", "Вывод"};
inline constexpr Text kRemedyWord = {"Remedy", "Что делать"};
inline constexpr Text kNoteWord = {"Note", "Заметка"};
inline constexpr Text kPollTimes = {"Polls {0}, answered {1}; median {2} ms, worst {3} ms.",
                                    "Опросов {0}, с ответом {1}; медиана {2} мс, худший {3} мс."};
inline constexpr Text kWireTime = {"The line alone takes {0} ms of it at {1} baud.",
                                   "Из них сама линия занимает {0} мс на скорости {1}."};
inline constexpr Text kAdapterColumn = {"ADAPTER", "АДАПТЕР"};
inline constexpr Text kDeviceColumn = {"DEVICE", "УСТРОЙСТВО"};
inline constexpr Text kStableNamesColumn = {"STABLE NAMES, BY ADAPTER AND BY SOCKET",
                                            "ПОСТОЯННЫЕ ИМЕНА: ПО АДАПТЕРУ И ПО РАЗЪЁМУ"};
inline constexpr Text kLookingAtLine = {"looking at the line", "проверка линии"};
inline constexpr Text kPolling = {"poll {0}", "опрос {0}"};
inline constexpr Text kListening = {"listening", "прослушивание"};

}  // namespace weigh::text
