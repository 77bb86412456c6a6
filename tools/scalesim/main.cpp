// scalesim: plays the scale's side of any model of the component.

#include "ModelSheet.h"
#include "Options.h"
#include "Player.h"

int main(int argc, char** argv) {
  return runProgram("scalesim", argc, argv, [&] {
    Options options;
    if (const auto code = readOptions(argc, argv, options)) return *code;
    switch (options.task) {
      case Options::Task::About: print(modelSheet(*options.model)); break;
      case Options::Task::List: print(modelList()); break;
      default: play(options); break;
    }
    return kGood;
  });
}
