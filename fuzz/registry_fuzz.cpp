// The component's methods in random sequences, with memory that runs out in the middle of a call,
// against a model of its registry: a call does all that it should, or it is refused, and then the
// scales and parameters are as they were.

#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Memory.h"
#include "MemoryWatch.h"
#include "Platform.h"
#include "PlatformObject.h"
#include "Variants.h"

extern "C" long GetClassObject(const WCHAR_T* name, IComponentBase** object);
extern "C" long DestroyObject(IComponentBase** object);

namespace {

using host::Value;

constexpr int kEmulator = 20;
/// Its line is dead here, as is that of the model which nobody has set.
constexpr int kWithDeadLine = 13;
constexpr int kWithoutDriver = 5;
constexpr std::uint32_t kNotSupported = 5;
constexpr std::uint32_t kNobody = 8;
constexpr std::uint32_t kWrongFolder = 130;
constexpr std::uint32_t kShortage = 1099;
constexpr std::size_t kPlaces = 100;

#define CHECK(holds)                                                   \
  do {                                                                 \
    if (!(holds)) {                                                    \
      std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #holds); \
      std::abort();                                                    \
    }                                                                  \
  } while (false)

struct Scale {
  std::string id;
  std::string port;
  int model = 0;
  double coeff = 1.0;
  /// Of an emulator; negative for random ones.
  int price = -1;
};

/// What the component must know.
struct Registry {
  std::array<std::optional<Scale>, kPlaces> places;
  int model = 0;
  int conntype = 0;
  double coeff = 1.0;
  std::string cport;
  std::string ehost;

  Scale* find(const std::string& id) {
    for (auto& place : places) {
      if (place && (place->id == id || place->port == id)) return &*place;
    }
    return nullptr;
  }
  void forget(const std::string& id) {
    for (auto& place : places) {
      if (place && (place->id == id || place->port == id)) place.reset();
    }
  }
  /// The code that the registration ends with.
  std::uint32_t add(const Scale& scale) {
    forget(scale.id);
    const auto place = std::find(places.begin(), places.end(), std::nullopt);
    if (place == places.end()) return kShortage;
    if (scale.model == kWithoutDriver) return kNotSupported;
    *place = scale;
    return scale.model == kEmulator ? 0 : 1;
  }
  Scale next() const { return {"", conntype == 0 ? cport : ehost, model, coeff}; }
};

/// Folders with a settings file; the last is none.
struct Folder {
  std::string path;
  std::vector<Scale> scales;
};

const std::string kLongPort = "/none/" + std::string(200, 'p');

const std::vector<Folder>& folders() {
  static const std::vector<Folder> made = [] {
    const auto root =
        std::filesystem::temp_directory_path() / ("registry_fuzz_" + std::to_string(::getpid()));
    std::vector<Folder> result = {
        {root / "one", {{"1", "/none/1", kEmulator, 2.0}, {"2", "/none/2", kWithDeadLine, 1.0}}},
        {root / "two",
         {{"1", kLongPort, kEmulator, 12.5},
          {"3", "/none/1", kWithoutDriver, 1.0},
          {"4", "", kEmulator, 0.5}}},
        {root / "empty", {}}};
    for (const Folder& folder : result) {
      std::filesystem::create_directories(folder.path);
      std::ofstream file(folder.path + "/settings.xml");
      file << "<S>";
      for (std::size_t i = 0; i < folder.scales.size(); ++i) {
        const Scale& scale = folder.scales[i];
        file << "<SCALES" << i << " fNum=\"" << scale.id << "\" fIsComPort=\"1\" fComPortName=\""
             << scale.port << "\" fType=\"" << scale.model << "\" fCoeff=\"" << scale.coeff
             << "\"/>";
      }
      file << "</S>";
    }
    result.push_back({root / "none", {}});
    return result;
  }();
  return made;
}

/// The platform's memory, a block of which counts as one of the component's.
class PlatformMemory final : public host::Memory {
 public:
  bool AllocMemory(void** memory, unsigned long bytes) override {
    if (!fixture::mayAllocate()) return false;
    const int left = std::exchange(fixture::memoryWatch().left, -1);
    const bool given = Memory::AllocMemory(memory, bytes);
    fixture::memoryWatch().left = left;
    return given;
  }
};

class Run {
 public:
  Run(const std::uint8_t* data, std::size_t size) : data_(data, size) {
    {
      const fixture::MemoryShortage shortage(data_.ConsumeIntegralInRange(0, 10));
      CHECK((GetClassObject(nullptr, &object_) == 0) == (object_ == nullptr));
    }
    if (object_ == nullptr) GetClassObject(nullptr, &object_);
    CHECK(object_ != nullptr);
    object_->setMemManager(&memory_);
    object_->Init(&platform_);
  }
  ~Run() { DestroyObject(&object_); }

  void run() {
    constexpr int kMostCalls = 30;
    for (int i = 0; i < kMostCalls && data_.remaining_bytes() > 0; ++i) {
      act();
      verify();
    }
  }

 private:
  struct Answer {
    bool executed;
    Value result;
    std::vector<Value> params;
    /// Memory ran out on the way.
    bool hit;
  };

  /// Calls a method with memory for `allocations` more blocks, or for all (-1).
  Answer call(long method, std::vector<Value> values, int allocations = -1) {
    const bool isPassing = allocations >= 0 && data_.ConsumeBool();
    host::Variants params(values, memory_);
    host::Variants result(std::array<Value, 1>{}, memory_);
    bool executed = false;
    bool hit = false;
    {
      const fixture::MemoryShortage shortage(allocations, isPassing);
      executed = object_->CallAsFunc(method, result.data(), params.data(), params.count());
      hit = shortage.isHit();
    }
    return {executed, result.values().front(), params.values(), hit};
  }

  std::uint32_t lastError() {
    const Answer answer = call(kGetLastError, {Value{}});
    CHECK(answer.executed);
    return std::get<std::uint32_t>(answer.result);
  }

  /// A call that changes the registry: done, with what `effect` does to the model and gives as the
  /// last error; or refused for want of memory.
  template <typename Effect>
  void change(long method, std::vector<Value> values, Effect effect) {
    const Answer answer = call(method, std::move(values), allocations());
    if (!answer.executed) {
      CHECK(answer.hit);
      CHECK(lastError() == kShortage);
      return;
    }
    const std::optional<std::uint32_t> code = effect(answer);
    if (code) CHECK(lastError() == *code);
  }

  void act() {
    switch (data_.ConsumeIntegralInRange(0, 8)) {
      case 0: return setNumber("model", model_.model, {kEmulator, kWithDeadLine, kWithoutDriver});
      case 1: return setNumber("conntype", model_.conntype, {0, 1});
      case 2: return setText("cport", model_.cport);
      case 3: return setText("ehost", model_.ehost);
      case 4: return setCoefficient();
      case 5: return open();
      case 6: return close();
      case 7: return deviceTest();
      default: return useFolder();
    }
  }

  void setNumber(const char* name, int& field, std::vector<int> values) {
    const int value = values[data_.ConsumeIntegral<std::uint8_t>() % values.size()];
    change(kSetParameter, {name, value}, [&](const Answer&) {
      field = value;
      return std::optional<std::uint32_t>();
    });
  }

  void setText(const char* name, std::string& field) {
    const std::string value = port();
    change(kSetParameter, {name, value}, [&](const Answer&) {
      field = value;
      return std::optional<std::uint32_t>();
    });
  }

  void setCoefficient() {
    static const std::array<std::pair<const char*, double>, 4> kTyped = {
        {{"1,5", 1.5}, {" 0.5 ", 0.5}, {"x", 1.0}, {"00000012.5", 12.5}}};
    const auto& [typed, value] = kTyped[data_.ConsumeIntegral<std::uint8_t>() % kTyped.size()];
    change(kSetParameter, {"coeff", typed}, [&, v = value](const Answer&) {
      model_.coeff = v;
      return std::optional<std::uint32_t>();
    });
  }

  void open() {
    change(kOpen, {Value{}}, [&](const Answer& answer) {
      Scale scale = model_.next();
      scale.id = std::get<std::string>(answer.params.at(0));
      CHECK(scale.id.size() == 20);
      CHECK(model_.find(scale.id) == nullptr);
      ids_.push_back(scale.id);
      return std::optional(model_.add(scale));
    });
  }

  void close() {
    const std::string id = anyId();
    change(kClose, {id}, [&](const Answer&) {
      model_.forget(id);
      return std::optional<std::uint32_t>(0);
    });
  }

  void deviceTest() {
    change(kDeviceTest, {Value{}, Value{}},
           [&](const Answer&) { return std::optional<std::uint32_t>(0); });
  }

  void useFolder() {
    const Folder& folder = folders()[data_.ConsumeIntegral<std::uint8_t>() % folders().size()];
    const bool exists = &folder != &folders().back();
    const Answer answer = call(kSetPathDllFolder, {folder.path}, allocations());
    if (!answer.executed || answer.result == Value(false)) {
      const std::uint32_t code = lastError();
      CHECK(code == kShortage ? answer.hit : code == kWrongFolder && !exists);
      return;
    }
    CHECK(exists);
    model_.places = {};
    for (const Scale& scale : folder.scales) model_.add(scale);
    CHECK(lastError() == 0);
  }

  /// Asks every scale that was ever named, with memory and without.
  void verify() {
    std::vector<std::string> ids = {"1", "2", "3", "4", "", "/none/1", "/none/2", kLongPort, "/"};
    ids.insert(
        ids.end(),
        ids_.end() - static_cast<std::ptrdiff_t>(std::min<std::size_t>(ids_.size(), kLatestIds)),
        ids_.end());
    const std::string& stinted = ids[data_.ConsumeIntegral<std::uint8_t>() % ids.size()];
    ask(stinted, allocations());
    sendPrice(stinted);
    for (const std::string& id : ids) ask(id, -1);
  }

  void ask(const std::string& id, int memory) {
    const Scale* const scale = model_.find(id);
    constexpr unsigned kSeed = 7;
    std::srand(kSeed);
    const Answer answer = call(kGetWeightPriceCost, {id, {}, {}, {}, {}}, memory);
    const std::uint32_t code = lastError();
    if (!answer.executed) {
      CHECK(answer.hit && code == kShortage);
      return;
    }
    if (scale == nullptr) {
      CHECK(code == kNobody);
      return;
    }
    if (scale->model != kEmulator) {
      CHECK(code == 1);
      return;
    }
    CHECK(code == 0 || code == 3);
    std::srand(kSeed);
    static_cast<void>(std::rand());
    static_cast<void>(std::rand());
    static constexpr std::array<double, 4> kFrom = {0.08, 2.0, 19.0, 95.0};
    static constexpr std::array<int, 4> kSteps = {30, 1000, 3000, 10000};
    const auto band = static_cast<std::size_t>(std::rand()) % kFrom.size();
    const double weight = (kFrom[band] + (std::rand() % kSteps[band]) * 0.001) * scale->coeff;
    CHECK(std::abs(std::get<double>(answer.params[1]) - weight) < 1e-9);
    if (scale->price >= 0) {
      CHECK(std::abs(std::get<double>(answer.params[2]) - scale->price * 0.01) < 1e-9);
    }
  }

  void sendPrice(const std::string& id) {
    Scale* const scale = model_.find(id);
    const int price = data_.ConsumeIntegralInRange(0, 100000);
    const Answer answer = call(kSetPrice, {id, price}, allocations());
    if (!answer.executed) {
      CHECK(answer.hit && lastError() == kShortage);
    } else if (scale != nullptr && scale->model == kEmulator) {
      CHECK(lastError() == 0);
      scale->price = price;
    }
  }

  /// Mostly a few, so that each step of a call is hit.
  int allocations() {
    constexpr int kMost = 60;
    return data_.ConsumeIntegralInRange(-1, kMost);
  }

  std::string port() {
    static const std::array<std::string, 5> kPorts = {"/none/1", "/none/2", kLongPort, "", "1"};
    return kPorts[data_.ConsumeIntegral<std::uint8_t>() % kPorts.size()];
  }

  std::string anyId() {
    if (!ids_.empty() && data_.ConsumeBool()) {
      return ids_[data_.ConsumeIntegral<std::uint8_t>() % ids_.size()];
    }
    return port();
  }

  static constexpr std::size_t kLatestIds = 6;
  static constexpr long kGetLastError = 2;
  static constexpr long kSetParameter = 4;
  static constexpr long kOpen = 5;
  static constexpr long kClose = 6;
  static constexpr long kDeviceTest = 7;
  static constexpr long kSetPrice = 12;
  static constexpr long kGetWeightPriceCost = 13;
  static constexpr long kSetPathDllFolder = 15;

  FuzzedDataProvider data_;
  PlatformMemory memory_;
  host::PlatformObject platform_;
  IComponentBase* object_ = nullptr;
  Registry model_;
  std::vector<std::string> ids_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Run(data, size).run();
  return 0;
}
