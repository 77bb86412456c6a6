#include "ResultCode.h"

const char* resultText(int code) {
  switch (code) {
    case kSuccess: return "OK";
    case kNoConnection:
      return "Ошибка_1: Не возможно установить соединение. Убедитесь в правильности имени СОМ "
             "порта, возможно, он занят другим приложением.";
    case kSerialPortError: return "Ошибка_2: Ошибка СОМ-порта.";
    case kNoAnswer: return "Ошибка_3: Нет ответа от весов.";
    case kPriceFormat: return "Ошибка_4: Ошибка в формате цены.";
    case kNotSupported: return "Ошибка_5: Текущий тип весов не поддерживает этой команды.";
    case kOverload: return "Ошибка_7: На весах ПЕРЕГРУЗ.";
    case kDeviceIdNotFound: return "Ошибка_8: DeviceID не найден.";
    case kWrongFolder: return "Ошибка_130: Путь к папке компоненты указан НЕправильный: '";
    default: return "UnknownError";
  }
}
