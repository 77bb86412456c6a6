// Writes the pages of all models in a language:
//   on_the_scale en|ru|uk FILE
// With --check it only says whether the file is as it would be written.

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include "Messages.h"
#include "ModelNotes.h"
#include "Models.h"

namespace {

std::string document() {
  std::string text = "# " + say("On the scale") + "\n\n";
  text += say(
      "What to set on the scale itself before its weight can be read, model by model: as makers' "
      "papers and recordings of real scales have it. Where a paper is of a sister, the keys may "
      "differ; where nothing is known, the page says so. `weigh models --about N` prints the page "
      "of "
      "one model. This document is made of drivers/ModelNotes.json.");
  text += "\n";
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet != nullptr) text += "\n" + notes::pageOf(model, 2);
  }
  return text;
}

std::string contentOf(const char* path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main(int argc, char** argv) {
  Language language = Language::English;
  const bool check = argc == 4 && argv[3] == std::string_view("--check");
  if ((argc != 3 && !check) || !languageByName(argv[1], language)) {
    std::cerr << "usage: on_the_scale en|ru|uk FILE [--check]\n";
    return 2;
  }
  useLanguage(language);
  const std::string text = document();
  if (check) {
    if (contentOf(argv[2]) == text) return 0;
    std::cerr << argv[2] << ": not as the notes have it; on_the_scale " << argv[1] << ' ' << argv[2]
              << " writes it\n";
    return 1;
  }
  if (std::ofstream(argv[2]) << text << std::flush) return 0;
  std::cerr << argv[2] << ": can't be written\n";
  return 1;
}
