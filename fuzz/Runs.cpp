// A fuzz target as a test: on the target's seeds, on changes of them and on random bytes, the same
// in every run. What these inputs don't reach is for scripts/fuzz.
//
//   fuzz_TARGET RUNS [FOLDER OF SEEDS]

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Input = std::string;

class Inputs {
 public:
  explicit Inputs(const std::filesystem::path& seeds) {
    if (!is_directory(seeds)) return;
    for (const auto& entry : std::filesystem::directory_iterator(seeds)) {
      std::ifstream file(entry.path(), std::ios::binary);
      seeds_.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    // A folder has no order of its own.
    std::ranges::sort(seeds_);
  }

  const std::vector<Input>& seeds() const { return seeds_; }
  Input next() { return seeds_.empty() || random_() % 2 == 0 ? random() : changed(); }

 private:
  char byte() { return static_cast<char>(random_()); }

  Input random() {
    constexpr std::size_t kLongest = 500;
    Input input(random_() % kLongest, '\0');
    std::ranges::generate(input, [&] { return byte(); });
    return input;
  }

  Input changed() {
    constexpr int kMostChanges = 8;
    Input input = seeds_[random_() % seeds_.size()];
    for (auto i = random_() % kMostChanges; i > 0 && !input.empty(); --i) {
      input[random_() % input.size()] = byte();
    }
    return input;
  }

  std::vector<Input> seeds_;
  std::mt19937 random_{1};
};

void run(const Input& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  const int runs = argc > 1 ? std::stoi(argv[1]) : 0;
  Inputs inputs(argc > 2 ? argv[2] : "");
  std::ranges::for_each(inputs.seeds(), run);
  for (int i = 0; i < runs; ++i) run(inputs.next());
}
