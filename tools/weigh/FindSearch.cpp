#include "FindSearch.h"

#include <algorithm>

#include "LongWork.h"

namespace weigh {

namespace {

using recognise::Candidate;
using recognise::Question;
using std::chrono::milliseconds;

/// Behind a good frame; long enough for a scale that sends one a second.
constexpr milliseconds kConfirmation{2000};
/// Frames that a scale must answer with to be believed: the first, and the same question again.
constexpr int kAnswers = 3;
/// A line that doesn't fall silent answers nothing.
constexpr milliseconds kLongestAnswer{1500};
/// What a wait takes beyond its time, for an estimate: a network read waits for a tenth of a
/// second.
constexpr milliseconds kOverhead{15};
constexpr milliseconds kNetworkOverhead{150};

bool transmits(const ScalesModel& model) { return transmitsByItself(*model.sheet); }

/// A receiver doesn't look at the number of stop bits.
bool soundsAlike(const Framing& a, const Framing& b) {
  return a.parity == b.parity && a.dataBits == b.dataBits;
}

bool isPlain(const ScalesModel& model) {
  return soundsAlike(model.sheet->line, {}) && model.sheet->line.stopBits == COMPort::One;
}

std::vector<Framing> framingsOf(const std::vector<const ScalesModel*>& models) {
  // Most scales have the usual one.
  std::vector<Framing> framings = {Framing{}};
  for (const ScalesModel* model : models) {
    const auto same = [&](const Framing& known) { return soundsAlike(known, model->sheet->line); };
    if (std::ranges::none_of(framings, same)) framings.push_back(model->sheet->line);
  }
  return framings;
}

class Search {
 public:
  Search(const FindOptions& options, const FindPlan& plan, const FindObserver& observer)
      : options_(options), plan_(plan), observer_(observer), line_(options.connection) {}

  FindResult run() {
    // What is silent at one framing is so at all others of that speed.
    std::optional<int> silent;
    for (const LineSetting& setting : plan_.listening) {
      if (!goOn()) break;
      const int speed = setting.bitsPerSecond;
      if (speed != silent && mayBeAt(speed) && !listenAt(setting)) silent = speed;
    }
    for (const int speed : plan_.speeds) {
      if (!mayBeAt(speed)) continue;
      for (const Question& question : plan_.questions) {
        if (!goOn()) break;
        ask({speed, question.line}, question);
      }
      if (sure()) break;
    }
    finish();
    return std::move(result_);
  }

 private:
  bool goOn() {
    noteEnd();
    return result_.end == FindResult::End::Done && !(sure() && !asking_);
  }

  void noteEnd() {
    if (Ending::asked()) result_.end = FindResult::End::Interrupted;
    if (!line_.isUp()) result_.end = FindResult::End::LineLost;
  }

  /// Whether the best of what was found is beyond doubt, but for kin.
  bool sure() {
    rankAll();
    return !result_.sightings.empty() &&
           (result_.sightings.front().candidate.doubts & ~unsigned{recognise::kKin}) == 0;
  }

  /// False once good frames, and nothing but these, came at another speed.
  bool mayBeAt(int bitsPerSecond) {
    constexpr unsigned kChance =
        recognise::kImplausible | recognise::kStrayBytes | recognise::kBadFrames;
    rankAll();
    const auto clean = std::ranges::find_if(result_.sightings, [](const Sighting& sighting) {
      return (sighting.candidate.doubts & kChance) == 0;
    });
    return clean == result_.sightings.end() || clean->setting.bitsPerSecond == bitsPerSecond;
  }

  bool set(const LineSetting& setting) {
    const bool same = set_ && set_->bitsPerSecond == setting.bitsPerSecond &&
                      set_->framing.stopBits == setting.framing.stopBits &&
                      soundsAlike(set_->framing, setting.framing);
    if (same) return true;
    set_.reset();
    if (!line_.set(setting.bitsPerSecond, setting.framing)) return false;
    set_ = setting;
    return true;
  }

  /// False if nothing came.
  bool listenAt(const LineSetting& setting) {
    observer_(setting, false);
    if (!set(setting)) return true;
    recognise::Bytes bytes = line_.listen(options_.listening);
    if (examineStream(bytes).empty()) {
      note(setting, bytes);
      return !bytes.empty();
    }
    const recognise::Bytes more = line_.listen(kConfirmation);
    bytes.insert(bytes.end(), more.begin(), more.end());
    result_.bytes += bytes.size();
    add(examineStream(bytes), setting, false);
    return true;
  }

  /// Models that transmit by themselves; others only if none of them explains the bytes.
  std::vector<Candidate> examineStream(const recognise::Bytes& bytes) const {
    std::vector<Candidate> candidates;
    for (const bool streaming : {true, false}) {
      for (const ScalesModel* model : options_.models) {
        if (transmits(*model) != streaming) continue;
        auto candidate = recognise::examine(*model, {recognise::Origin::Stream, {bytes}});
        // An answer that nobody asked for may be chance, more than a frame that is sent by itself.
        if (!candidate || (!streaming && (candidate->doubts & recognise::kImplausible) != 0)) {
          continue;
        }
        candidates.push_back(std::move(*candidate));
      }
      if (!candidates.empty()) break;
    }
    return candidates;
  }

  void ask(const LineSetting& setting, const Question& question) {
    asking_ = true;
    observer_(setting, true);
    if (!set(setting)) return;
    std::vector<recognise::Bytes> answers = {answerTo(question)};
    if (answers.front().empty()) return;
    if (examineAnswers(question, answers).empty()) {
      note(setting, answers.front());
      return;
    }
    for (int i = 1; i < kAnswers && !Ending::asked(); ++i) {
      answers.push_back(answerTo(question));
    }
    for (const auto& answer : answers) result_.bytes += answer.size();
    add(examineAnswers(question, answers), setting, true);
  }

  recognise::Bytes answerTo(const Question& question) {
    line_.hear(milliseconds{0}, kLongestAnswer);
    line_.ask(*question.request);
    return line_.hear(milliseconds{question.budget_ms}, kLongestAnswer);
  }

  static std::vector<Candidate> examineAnswers(const Question& question,
                                               const std::vector<recognise::Bytes>& answers) {
    std::vector<Candidate> candidates;
    for (const ScalesModel* model : question.models) {
      auto candidate = recognise::examine(*model, {recognise::Origin::Answer, answers});
      if (candidate) candidates.push_back(std::move(*candidate));
    }
    return candidates;
  }

  void note(const LineSetting& setting, const recognise::Bytes& bytes) {
    result_.bytes += bytes.size();
    if (bytes.empty()) return;
    const std::string name = setting.text();
    const auto known = std::ranges::find_if(result_.unexplained, [&](const Unexplained& other) {
      return other.setting.text() == name;
    });
    if (known == result_.unexplained.end()) {
      result_.unexplained.push_back({setting, bytes, recognise::judgeNoise(bytes)});
    } else if (bytes.size() > known->bytes.size()) {
      *known = {setting, bytes, recognise::judgeNoise(bytes)};
    }
  }

  void add(std::vector<Candidate> candidates, const LineSetting& setting, bool asked) {
    for (Candidate& candidate : candidates) {
      result_.sightings.push_back({std::move(candidate), setting, asked});
    }
  }

  /// Of a model that was found at several settings the best stays.
  void rankAll() {
    std::ranges::stable_sort(
        result_.sightings, std::ranges::greater{},
        [](const Sighting& sighting) { return sighting.candidate.weightOfEvidence(); });
    std::vector<const ScalesModel*> seen;
    std::erase_if(result_.sightings, [&](const Sighting& sighting) {
      if (std::ranges::count(seen, sighting.candidate.model) > 0) return true;
      seen.push_back(sighting.candidate.model);
      return false;
    });
    std::vector<Candidate> candidates;
    for (const Sighting& sighting : result_.sightings) candidates.push_back(sighting.candidate);
    recognise::rank(candidates);
    for (std::size_t i = 0; i < candidates.size(); ++i) {
      result_.sightings[i].candidate = std::move(candidates[i]);
    }
    // Of those that can't be told apart the plainest first.
    if (result_.sightings.empty()) return;
    const std::vector<int> kin = result_.sightings.front().candidate.kin;
    const auto end = std::find_if(
        result_.sightings.begin() + 1, result_.sightings.end(), [&](const Sighting& other) {
          return std::ranges::count(kin, other.candidate.model->number) == 0;
        });
    std::stable_sort(result_.sightings.begin(), end, [](const Sighting& a, const Sighting& b) {
      return isPlain(*a.candidate.model) && !isPlain(*b.candidate.model);
    });
  }

  void finish() {
    // The last step may have been cut short, too.
    if (!sure()) noteEnd();
    // A setting at which a scale was found is the right one, whatever else came there.
    std::erase_if(result_.unexplained, [&](const Unexplained& other) {
      return std::ranges::any_of(result_.sightings, [&](const Sighting& sighting) {
        return sighting.setting.text() == other.setting.text();
      });
    });
  }

  const FindOptions& options_;
  const FindPlan& plan_;
  const FindObserver& observer_;
  OpenLine line_;
  FindResult result_;
  std::optional<LineSetting> set_;
  bool asking_ = false;
};

}  // namespace

FindPlan::FindPlan(const FindOptions& options) {
  if (options.connection.network) {
    speeds = {0};
    listening = {LineSetting{}};
  } else {
    speeds = options.speeds;
    const std::vector<Framing> framings = framingsOf(options.models);
    for (const int speed : speeds) {
      for (const Framing& framing : framings) listening.push_back({speed, framing});
    }
  }
  if (!options.passive) questions = recognise::questionsFor(options.models);
  milliseconds asking{0};
  milliseconds longestQuestion{0};
  for (const Question& question : questions) {
    const milliseconds one = milliseconds{question.longest_ms()} +
                             (options.connection.network ? kNetworkOverhead : kOverhead);
    asking += one;
    longestQuestion = std::max(longestQuestion, one);
  }
  longest = options.listening * listening.size() + asking * speeds.size() +
            std::max(kConfirmation, (kAnswers - 1) * longestQuestion);
}

FindResult findScale(const FindOptions& options, const FindPlan& plan,
                     const FindObserver& observer) {
  return Search(options, plan, observer).run();
}

}  // namespace weigh
