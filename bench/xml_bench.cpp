// Building and releasing the tree of a document, beside expat filling a like tree and pugixml.

#include <expat.h>

#include <cstddef>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "ParseEngine.h"
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

const std::string& document(benchmark::State& state) {
  static const std::string settings = documents::settings(100);
  static const std::string catalogue = documents::catalogue(10 << 20);
  return state.range(0) == 0 ? settings : catalogue;
}

void countBytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(text.size()));
}

void XmlTree(benchmark::State& state) {
  const std::string& text = document(state);
  for (auto _ : state) {
    ParseEngine engine(text);
    benchmark::DoNotOptimize(TreeNode::customParse(engine, nullptr, true, false, false));
  }
  countBytes(state, text);
}

void XmlExpat(benchmark::State& state) {
  const std::string& text = document(state);
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

void XmlPugi(benchmark::State& state) {
  const std::string& text = document(state);
  for (auto _ : state) {
    pugi::xml_document tree;
    if (!tree.load_buffer(text.data(), text.size())) {
      state.SkipWithError("pugixml refuses the document");
    }
    benchmark::DoNotOptimize(tree);
  }
  countBytes(state, text);
}

void documentsOf(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(0)->Arg(1);  // the settings file, and a catalogue of 10 MiB
}

BENCHMARK(XmlTree)->Name("xml_tree/ours")->Apply(documentsOf);
BENCHMARK(XmlExpat)->Name("xml_tree/expat")->Apply(documentsOf);
BENCHMARK(XmlPugi)->Name("xml_tree/pugixml")->Apply(documentsOf);

}  // namespace
