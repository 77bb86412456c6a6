#pragma once

#include "Language.h"

/// Everything that weigh report says.
namespace weigh::text {

inline constexpr Text kReportAbout = {"Pack what support needs to know into one archive",
                                      "Собрать всё нужное поддержке в один архив"};
inline constexpr Text kReportNotes = {
    "Packs the doctor's verdict on each scale, settings.xml, the last part of each exchange log, "
    "facts about serial ports and system, and versions; it lists what it packs and takes nothing "
    "else.\n"
    "Exit codes: 0 packed; 1 stopped before every scale was looked at, and packed without; 2 wrong "
    "usage, or the archive can't be written.",
    "Собирает вывод проверки каждых весов, settings.xml, конец каждого журнала обмена, сведения о "
    "портах и системе и версии; перечисляет собранное и не берёт ничего другого.\n"
    "Коды возврата: 0 собрано; 1 остановлено до проверки всех весов и собрано без остальных; 2 "
    "неверный вызов или архив не записывается."};
inline constexpr Text kReportFolder = {"Component folder", "Папка компоненты"};
inline constexpr Text kReportOutput = {
    "The archive to make (default: orbelo-report-TIME.tar.gz in the working folder)",
    "Имя архива (по умолчанию orbelo-report-ВРЕМЯ.tar.gz в текущей папке)"};
inline constexpr Text kReportNoDoctor = {"Ask no scale, pack the rest",
                                         "Не опрашивать весы, собрать остальное"};
inline constexpr Text kNoFolder = {"there is no folder {0}", "нет папки {0}"};
inline constexpr Text kNoFolderRemedy = {"Name the component's folder.",
                                         "Укажите папку компоненты."};
inline constexpr Text kArchiveThere = {"{0} is there already", "{0} уже есть"};
inline constexpr Text kArchiveThereRemedy = {"Give another name with --output.",
                                             "Укажите другое имя через --output."};
inline constexpr Text kArchiveFails = {"{0} can't be written: {1}", "{0} не записывается: {1}"};
inline constexpr Text kArchiveFailsRemedy = {
    "Give a name in a folder that this user may write to with --output.",
    "Укажите через --output имя в папке, доступной для записи."};
inline constexpr Text kPackedLine = {"  {0}  {1} bytes", "  {0}  байт: {1}"};
inline constexpr Text kPackedTail = {"  {0}  the last {1} of {2} bytes",
                                     "  {0}  последние {1} из {2} байт"};
inline constexpr Text kPacking = {"Packed:", "Собрано:"};
inline constexpr Text kLeftOut = {"Left out, older than the {0} newest logs: {1}",
                                  "Не вошли, старше {0} последних журналов: {1}"};
inline constexpr Text kArchiveMade = {"{0}, {1} bytes", "{0}, байт: {1}"};

}  // namespace weigh::text
