// Looking for a scale must never make one do something.

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "Questions.h"
#include "Scale.h"
#include "ScaleModel.h"

namespace recognise {
namespace {

using Models = std::vector<const ScalesModel*>;

Models allModels() {
  Models models;
  for (const ScalesModel& model : scalesModels()) models.push_back(&model);
  return models;
}

/// Everything that a scale does but say its weight.
int deeds(const sim::Scale& scale) {
  return scale.count(sim::Action::Tare) + scale.count(sim::Action::Zero) +
         scale.count(sim::Action::Price) + scale.count(sim::Action::Setup);
}

std::string numbers(const Models& models) {
  std::string text;
  for (const ScalesModel* model : models) text += std::to_string(model->number) + " ";
  return text;
}

/// Lets every simulated scale hear what goes out when the models are looked for at three speeds,
/// with an answer believed at the last.
void expectNoDeed(const Models& models) {
  const std::vector<Question> questions = questionsFor(models);
  for (const sim::ScaleModel& heard : sim::scaleModels()) {
    sim::Scale scale(heard);
    for (int speed = 0; speed < 3; ++speed) {
      for (const Question& question : questions) {
        const int times = speed < 2 ? 1 : 3;
        for (int i = 0; i < times; ++i) scale.receive(question.bytes());
      }
    }
    ASSERT_EQ(deeds(scale), 0) << "model " << heard.number << " when asked for " << numbers(models);
  }
}

TEST(Questions, ReachEveryModelThatIsAsked) {
  Models reached;
  for (const Question& question : questionsFor(allModels())) {
    reached.insert(reached.end(), question.models.begin(), question.models.end());
  }
  for (const ScalesModel& model : scalesModels()) {
    if (model.sheet == nullptr || transmitsByItself(*model.sheet)) continue;
    EXPECT_EQ(std::ranges::count(reached, &model) > 0, true) << model.number;
  }
}

TEST(Questions, MakeNoScaleDoAnything) {
  expectNoDeed(allModels());
  for (const ScalesModel& first : scalesModels()) {
    expectNoDeed({&first});
    for (const ScalesModel& second : scalesModels()) expectNoDeed({&first, &second});
  }
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    Models models = allModels();
    std::ranges::shuffle(models, random);
    models.resize(3 + random() % (models.size() - 3));
    expectNoDeed(models);
  }
}

/// The requests do make commands in a bad order, and the rule sees it.
TEST(Questions, AreKeptApartWhereTwoWouldMakeACommand) {
  const Bytes weightOf17 = {0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x00, 0x00};
  const Bytes weightOf14 = {0x01, 0x89};
  EXPECT_TRUE(makesCommand(weightOf17, weightOf14));
  EXPECT_FALSE(makesCommand(weightOf14, weightOf17));
  // "SI" ends in a tare of another model, which is a line of its own there.
  EXPECT_FALSE(makesCommand({}, {'S', 'I', '\r', '\n'}));
  EXPECT_TRUE(makesCommand({}, {'I', '\r', '\n'}));
  const Models both = {findScalesModel(17), findScalesModel(14)};
  EXPECT_EQ(questionsFor(both).size(), 3U);
}

}  // namespace
}  // namespace recognise
