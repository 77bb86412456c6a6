#include "ParameterPage.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "Models.h"

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kIndent = "\t";

struct Choice {
  std::string value;
  std::string text;
};

struct Parameter {
  const char* name;
  const char* caption;
  const char* typeValue;
  const char* defaultValue;
  std::vector<Choice> choices = {};
};

struct Group {
  const char* caption;
  std::vector<Parameter> parameters;
};

/// Not every speed is one that the serial layer takes: 56000 and 256000 are refused on opening.
constexpr std::array<const char*, 10> kSpeeds = {"1200",  "2400",  "4800",  "9600",   "19200",
                                                 "38400", "56000", "57600", "115200", "256000"};

std::vector<Choice> modelChoices() {
  std::vector<Choice> choices;
  choices.reserve(scalesModels().size());
  for (const ScalesModel& model : scalesModels()) {
    const char* leadingZero = model.number < 10 ? "0" : "";
    choices.push_back({leadingZero + std::to_string(model.number), model.pageText()});
  }
  return choices;
}

std::vector<Choice> speedChoices() {
  std::vector<Choice> choices;
  choices.reserve(kSpeeds.size());
  for (const char* speed : kSpeeds) choices.push_back({speed, speed});
  return choices;
}

std::vector<Group> groups() {
  return {
      {"Параметры подключения",
       {{"model", "Модель весов", "Number", "20", modelChoices()},
        {"conntype", "Тип подключения", "Number", "0", {{"0", "СОМ-порт"}, {"1", "Ethernet"}}},
        {"conleave", "Не разрывать соединение", "Boolean", "false"},
        {"coeff", "Коэффициент корректировки веса", "String", "1.000"}}},
      {"Параметры СОМ-портa",
       {{"cport", "COM-порт", "String", "/dev/ttyS0"},
        {"cbaudrate", "Скорость", "Number", "4800", speedChoices()}}},
      {"Параметры Ethernet",
       {{"ehost", "IP (Host)", "String", "192.168.0.200"},
        {"eport", "TCP порт", "Number", "20108"}}},
  };
}

/// Lines with CR LF, indented by depth. The texts hold no character that XML would want escaped
/// where they stand.
class PageWriter {
 public:
  void open(std::string_view element) { line("<", element), ++depth_; }
  void close(std::string_view element) { --depth_, line("</", element); }
  void empty(std::string_view element) { line("<", element, "/>"); }
  void text(std::string_view element) { line("", element, ""); }
  std::string take() { return std::move(page_); }

 private:
  void line(std::string_view before, std::string_view text, std::string_view after = ">") {
    for (std::size_t i = 0; i < depth_; ++i) page_ += kIndent;
    page_.append(before).append(text).append(after).append(kLineEnd);
  }

  std::string page_;
  std::size_t depth_ = 0;
};

std::string attribute(const char* name, std::string_view value) {
  return std::string(" ").append(name).append("=\"").append(value).append("\"");
}

void writeParameter(PageWriter& page, const Parameter& parameter) {
  const std::string element = "Parameter" + attribute("Name", parameter.name) +
                              attribute("Caption", parameter.caption) +
                              attribute("TypeValue", parameter.typeValue) +
                              attribute("DefaultValue", parameter.defaultValue);
  if (parameter.choices.empty()) {
    page.empty(element);
    return;
  }
  page.open(element);
  page.open("ChoiceList");
  for (const Choice& choice : parameter.choices) {
    const std::string item = "Item" + attribute("Value", choice.value);
    page.text(std::string("<").append(item).append(">").append(choice.text).append("</Item>"));
  }
  page.close("ChoiceList");
  page.close("Parameter");
}

}  // namespace

std::string parameterPage() {
  PageWriter page;
  page.text("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>");
  page.open("Settings");
  page.open("Page" + attribute("Caption", "Параметры"));
  for (const Group& group : groups()) {
    page.open("Group" + attribute("Caption", group.caption));
    for (const Parameter& parameter : group.parameters) writeParameter(page, parameter);
    page.close("Group");
  }
  page.close("Page");
  page.close("Settings");
  return page.take();
}
