// Building and releasing the tree of a document, beside expat filling a like tree and pugixml;
// and what stands on it, the settings file of a folder.

#include <expat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "CkString.h"
#include "ParseEngine.h"
#include "ScalesEmulyator.h"
#include "ScalesWrapper.h"
#include "TreeNode.h"
#include "XmlDocuments.h"

namespace {

// What expat fills: the tree that a C++ program would write down first ---------------------------

struct ExpatNode {
  std::string tag;
  std::string content;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<std::unique_ptr<ExpatNode>> children;
  ExpatNode* parent = nullptr;
};

struct ExpatBuilder {
  std::unique_ptr<ExpatNode> root;
  ExpatNode* current = nullptr;

  static void XMLCALL start(void* self, const XML_Char* tag, const XML_Char** attributes) {
    auto& builder = *static_cast<ExpatBuilder*>(self);
    auto node = std::make_unique<ExpatNode>();
    node->tag = tag;
    for (; *attributes != nullptr; attributes += 2) {
      node->attributes.emplace_back(attributes[0], attributes[1]);
    }
    node->parent = builder.current;
    ExpatNode* const opened = node.get();
    if (builder.current == nullptr) {
      builder.root = std::move(node);
    } else {
      builder.current->children.push_back(std::move(node));
    }
    builder.current = opened;
  }

  static void XMLCALL end(void* self, const XML_Char* /*tag*/) {
    auto& builder = *static_cast<ExpatBuilder*>(self);
    builder.current = builder.current->parent;
  }

  static void XMLCALL text(void* self, const XML_Char* piece, int n) {
    const std::string_view view(piece, static_cast<std::size_t>(n));
    if (view.find_first_not_of(" \t\r\n") == std::string_view::npos) return;
    static_cast<ExpatBuilder*>(self)->current->content += view;
  }
};

// What is measured -------------------------------------------------------------------------------

using Document = const std::string&;

void countBytes(benchmark::State& state, Document text) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(text.size()));
}

void ours(benchmark::State& state, Document text) {
  for (auto _ : state) {
    ParseEngine engine(text);
    benchmark::DoNotOptimize(TreeNode::customParse(engine, nullptr, true, false, false));
  }
  countBytes(state, text);
}

void expat(benchmark::State& state, Document text) {
  for (auto _ : state) {
    ExpatBuilder builder;
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), &XML_ParserFree);
    XML_SetUserData(parser.get(), &builder);
    XML_SetElementHandler(parser.get(), &ExpatBuilder::start, &ExpatBuilder::end);
    XML_SetCharacterDataHandler(parser.get(), &ExpatBuilder::text);
    if (XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE) !=
        XML_STATUS_OK) {
      state.SkipWithError("expat refuses the document");
    }
    benchmark::DoNotOptimize(builder.root);
  }
  countBytes(state, text);
}

void pugixml(benchmark::State& state, Document text) {
  for (auto _ : state) {
    pugi::xml_document tree;
    if (!tree.load_buffer(text.data(), text.size())) {
      state.SkipWithError("pugixml refuses the document");
    }
    benchmark::DoNotOptimize(tree);
  }
  countBytes(state, text);
}

/// A folder whose settings file lists emulators, gone with the object.
class SettingsFolder {
 public:
  explicit SettingsFolder(int scales)
      : path_(std::filesystem::temp_directory_path() /
              ("orbelo-bench-" + std::to_string(::getpid()))) {
    std::filesystem::create_directory(path_);
    std::ofstream(path_ / "settings.xml") << documents::settings(scales);
  }
  ~SettingsFolder() { std::filesystem::remove_all(path_); }
  SettingsFolder(const SettingsFolder&) = delete;
  SettingsFolder& operator=(const SettingsFolder&) = delete;

  std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

/// What the platform waits for when it sets the component's folder.
void folder(benchmark::State& state, int scales) {
  const SettingsFolder settings(scales);
  CkString path;
  path.setStringUtf8(settings.path().c_str());
  CScalesWrapper wrapper([](int /*model*/) -> std::unique_ptr<IScalesObject> {
    return std::make_unique<ScalesEmulyator>();
  });
  for (auto _ : state) {
    if (wrapper.SetPathDllFolder(path) != 0) state.SkipWithError("the folder isn't taken");
  }
}

/// Names are operation/who/size.
void enlist() {
  static const std::string settings = documents::settings(100);
  static const std::string catalogue = documents::catalogue(10 << 20);
  struct Named {
    const char* operation;
    Document text;
  };
  for (const Named& document : {Named{"settings", settings}, Named{"catalogue", catalogue}}) {
    struct Contender {
      const char* who;
      void (*run)(benchmark::State&, Document);
    };
    for (const auto& [who, run] :
         {Contender{"ours", ours}, Contender{"expat", expat}, Contender{"pugixml", pugixml}}) {
      const std::string name =
          std::string(document.operation) + "/" + who + "/" + std::to_string(document.text.size());
      benchmark::RegisterBenchmark(name.c_str(), run, std::cref(document.text))
          ->Unit(benchmark::kMicrosecond);
    }
  }
  constexpr int kScales = 100;
  const std::string name = "folder/ours/" + std::to_string(kScales);
  benchmark::RegisterBenchmark(name.c_str(), folder, kScales)->Unit(benchmark::kMicrosecond);
}

[[maybe_unused]] const bool enlisted = (enlist(), true);

}  // namespace
