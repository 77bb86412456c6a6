#include <gtest/gtest.h>

#include "ResultCode.h"

namespace {

TEST(ResultCode, HasATextForEachCodeThatIsShown) {
  struct Row {
    int code;
    const char* text;
  };
  for (const Row& row :
       {Row{0, "OK"},
        Row{1,
            "Ошибка_1: Не возможно установить соединение. Убедитесь в правильности имени СОМ "
            "порта, "
            "возможно, он занят другим приложением."},
        Row{2, "Ошибка_2: Ошибка СОМ-порта."}, Row{3, "Ошибка_3: Нет ответа от весов."},
        Row{4, "Ошибка_4: Ошибка в формате цены."},
        Row{5, "Ошибка_5: Текущий тип весов не поддерживает этой команды."},
        Row{7, "Ошибка_7: На весах ПЕРЕГРУЗ."}, Row{8, "Ошибка_8: DeviceID не найден."},
        Row{6, "UnknownError"}, Row{9, "UnknownError"}, Row{1099, "UnknownError"},
        Row{-1, "UnknownError"}}) {
    EXPECT_STREQ(resultText(row.code), row.text) << row.code;
  }
}

}  // namespace
