// The page of settings, read as the platform reads it.

#include <pugixml.hpp>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Component.h"

namespace {

using Choices = std::vector<std::pair<std::string, std::string>>;

struct Parameter {
  std::string group;
  std::string name;
  std::string caption;
  std::string typeValue;
  std::string defaultValue;
  Choices choices = {};
};

const Choices kModels = {
    {"00", "0:  ВТА-60 (Промприбор)"},
    {"01", "1:  ВН-..-а-СI (блок ІЕ04, Промприбор)"},
    {"02", "2:  TBE  (Техноваги)"},
    {"03", "3:  TB1, TB4  (Техноваги)"},
    {"04", "4:  ВН-..- 220В (Блок ІЕ03, v1100, по запросу, Промприбор)"},
    {"05", "5:  ВН-..- 220В (Блок ІЕ03, v1100, событие, на весах кнопка отправки данных)"},
    {"06", "6:  ВН-..-а-CI  (Блок ІЕ04, + сканер штрих кодов)"},
    {"07", "7:  А9, DS3M1  (Мирвесов)"},
    {"08", "8:  А12 (Мирвесов)"},
    {"09", "9:  BDU, BTU, BD, 4BDU, SE01, SE02 (Axis)"},
    {"10", "10: Масса-К (МК_ТВ, МК_ТН)"},
    {"11", "11: Rinstrum R320,R420"},
    {"12", "12: DS2 (Мирвесов)"},
    {"13", "13: CAS (АР, AD, DB, ER, EM, SW, CS)"},
    {"14", "14: CAS-LP (v1.6)"},
    {"15", "15: BTA-60 (протокол 3) (прием по нажатию кнопки \"Х\" на весах)"},
    {"16", "16: KELI"},
    {"17", "17: Camry"},
    {"18", "18: OCS, ВК ЗЕВС III с радиоканалом"},
    {"19", "19: JADEVER SNUG II"},
    {"20", "20: ЭМУЛЯТОР ВЕСОВ (помогает настроить работу без физического подключения весов)"},
    {"21", "21: JADEVER JPL, JPL-N"},
    {"22",
     "22: BTA-60 (протокол 4) (прием по нажатию кнопки \"Х\" на весах, + передача цены на весы)"},
    {"23", "23: DIGI DS-788, 781, 782"},
    {"24", "24: IQ plus 355"},
    {"25", "25: CERTUS CBA"},
    {"26", "26: HBM WE2110"},
    {"27", "27: BTHE (протокол CAS, SDL-07)"},
    {"28", "28: BTHE (протокол UNS-02)"},
    {"29", "29: T7E"},
    {"30", "30: ICS NT"},
    {"31", "31: A12EH (и некоторые модели BDU)"},
    {"32", "32: ВН-..- 220В, ввод Тары (1С-Cобытие, на весах кнопка отправки данных)"},
    {"33", "33: SMART"},
    {"34", "34: А9 (непрерывный режим передачи)"},
    {"35", "35: WPT/4  RADWAG"},
    {"36", "36: ESIT Smart2"},
    {"37", "37: ESIT ECI STATIC"},
    {"38", "38: KELI: K9"},
    {"39", "39: ВИС HL318L"},
    {"40", "40: KELI: D12"},
    {"41", "41: Резерв"},
    {"42", "42: Резерв"},
    {"43", "43: Резерв"},
    {"44", "44: Резерв"},
    {"45", "45: Резерв"},
};

const Choices kSpeeds = {{"1200", "1200"},    {"2400", "2400"},   {"4800", "4800"},
                         {"9600", "9600"},    {"19200", "19200"}, {"38400", "38400"},
                         {"56000", "56000"},  {"57600", "57600"}, {"115200", "115200"},
                         {"256000", "256000"}};

const std::vector<Parameter> kParameters = {
    {"Параметры подключения", "model", "Модель весов", "Number", "20", kModels},
    {"Параметры подключения",
     "conntype",
     "Тип подключения",
     "Number",
     "0",
     {{"0", "СОМ-порт"}, {"1", "Ethernet"}}},
    {"Параметры подключения", "conleave", "Не разрывать соединение", "Boolean", "false"},
    {"Параметры подключения", "coeff", "Коэффициент корректировки веса", "String", "1.000"},
    {"Параметры СОМ-портa", "cport", "COM-порт", "String", "/dev/ttyS0"},
    {"Параметры СОМ-портa", "cbaudrate", "Скорость", "Number", "4800", kSpeeds},
    {"Параметры Ethernet", "ehost", "IP (Host)", "String", "192.168.0.200"},
    {"Параметры Ethernet", "eport", "TCP порт", "Number", "20108"},
};

class ParameterPage : public testing::Test {
 protected:
  ParameterPage() {
    const auto call = component_.call(u"GetParameters", {fixture::kNothing});
    EXPECT_TRUE(call->returned(true));
    page_ = call->params.text(0);
    EXPECT_EQ(call->params.at(0).value.wide.wstrLen, page_.size());
  }

  fixture::Component component_;
  std::u16string page_;
};

TEST_F(ParameterPage, BeginsWithItsDeclarationAndEndsEachLineByCrLf) {
  EXPECT_TRUE(page_.starts_with(u"<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\r\n"));
  EXPECT_TRUE(page_.ends_with(u"\r\n"));
  for (std::size_t i = 0; i < page_.size(); ++i) {
    if (page_[i] == u'\n') {
      EXPECT_EQ(page_[i - 1], u'\r') << i;
    }
    if (page_[i] == u'\r') {
      EXPECT_EQ(page_[i + 1], u'\n') << i;
    }
  }
}

TEST_F(ParameterPage, DescribesEveryParameter) {
  pugi::xml_document document;
  ASSERT_TRUE(document.load_buffer(page_.data(), page_.size() * 2, pugi::parse_default,
                                   pugi::encoding_utf16_le));
  const pugi::xml_node settings = document.document_element();
  EXPECT_STREQ(settings.name(), "Settings");
  const pugi::xml_node page = settings.first_child();
  EXPECT_STREQ(page.name(), "Page");
  EXPECT_STREQ(page.attribute("Caption").value(), "Параметры");
  EXPECT_FALSE(page.next_sibling());

  auto expected = kParameters.begin();
  for (const pugi::xml_node group : page.children()) {
    EXPECT_STREQ(group.name(), "Group");
    for (const pugi::xml_node parameter : group.children()) {
      ASSERT_NE(expected, kParameters.end());
      SCOPED_TRACE(expected->name);
      EXPECT_EQ(group.attribute("Caption").value(), expected->group);
      EXPECT_STREQ(parameter.name(), "Parameter");
      EXPECT_EQ(parameter.attribute("Name").value(), expected->name);
      EXPECT_EQ(parameter.attribute("Caption").value(), expected->caption);
      EXPECT_EQ(parameter.attribute("TypeValue").value(), expected->typeValue);
      EXPECT_EQ(parameter.attribute("DefaultValue").value(), expected->defaultValue);
      Choices choices;
      for (const pugi::xml_node item : parameter.child("ChoiceList").children("Item")) {
        choices.emplace_back(item.attribute("Value").value(), item.text().get());
      }
      EXPECT_EQ(choices, expected->choices);
      EXPECT_EQ(static_cast<bool>(parameter.first_child()), !choices.empty());
      ++expected;
    }
  }
  EXPECT_EQ(expected, kParameters.end());
}

}  // namespace
