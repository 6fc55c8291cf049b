// The steps of a conversion, in memory, for applications of 50 to 100,000 actions: flat ones, whose
// actions all hang under the root, and deep ones, each in the one before. The complexity that is
// reported at the end has to be linear.

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>

#include "appfile/TZanfoFile.h"
#include "appfile/XmlDocumentReader.h"
#include "appfile/XmlDocumentWriter.h"
#include "dom/Serializer.h"
#include "tests/support/LegacyFile.h"

namespace {

using namespace zaf;

enum Shape : std::int64_t { kFlat, kDeep };

/// About 1.2 KB an action, most of it one block of HTML.
std::string MakeApplication(std::int64_t count, std::int64_t shape) {
  std::string html;
  while (html.size() < 900)
    html += "<TR><TD><@COLUMN NAME=\"ORDERS.TOTAL\"></TD><TD>Total of this order</TD></TR>\r\n";
  test::LegacyFile file;
  file.Text("titl", "Benchmark").Action("cntr", "A");
  for (std::int64_t i = 0; i < count; ++i) {
    file.Action("null", shape == kDeep ? "A" : "B", "A");
    file.Text("rslt", html).Text("cmnt", "Shows the order.").Number("push", 1).Number("expd", 0);
  }
  return file.Bytes();
}

void Load(std::string_view bytes, TZanfoFile& file) {
  TDataFile data(AsBytes(bytes));
  if (file.Load(data, nullptr) != Status::kOk) std::abort();
}

void Report(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
  state.SetComplexityN(state.range(0));
}

void LoadLegacy(benchmark::State& state) {
  const std::string bytes = MakeApplication(state.range(0), state.range(1));
  for (auto _ : state) {
    TZanfoFile file;
    Load(bytes, file);
    benchmark::DoNotOptimize(file);
  }
  Report(state, bytes.size());
}

void BuildDocument(benchmark::State& state) {
  const std::string bytes = MakeApplication(state.range(0), state.range(1));
  TZanfoFile file;
  Load(bytes, file);
  for (auto _ : state) {
    const dom::Document document = dom::DOMImplementation::createDocument();
    if (WriteXmlDocument(file.GetApplication(), RunOnlyMark::kNone, document) != Status::kOk)
      std::abort();
  }
  Report(state, bytes.size());
}

void Serialise(benchmark::State& state) {
  TZanfoFile file;
  Load(MakeApplication(state.range(0), state.range(1)), file);
  const dom::Document document = dom::DOMImplementation::createDocument();
  if (WriteXmlDocument(file.GetApplication(), RunOnlyMark::kNone, document) != Status::kOk)
    std::abort();
  dom::OutputBuffer output;
  for (auto _ : state) {
    output.Clear();
    if (!dom::Serialize(document, output)) std::abort();
  }
  Report(state, output.Size());
}

std::string MakeDocument(std::int64_t count, std::int64_t shape) {
  TZanfoFile file;
  Load(MakeApplication(count, shape), file);
  const dom::Document document = dom::DOMImplementation::createDocument();
  dom::OutputBuffer output;
  if (WriteXmlDocument(file.GetApplication(), RunOnlyMark::kNone, document) != Status::kOk ||
      !dom::Serialize(document, output))
    std::abort();
  return std::string(output.View());
}

void LoadXml(benchmark::State& state) {
  const std::string text = MakeDocument(state.range(0), state.range(1));
  for (auto _ : state) {
    TZanfoFile file;
    Load(text, file);
  }
  Report(state, text.size());
}

void Compare(benchmark::State& state) {
  const std::string bytes = MakeApplication(state.range(0), state.range(1));
  TZanfoFile one;
  TZanfoFile two;
  Load(bytes, one);
  Load(bytes, two);
  for (auto _ : state)
    if (!one.IsEqual(two)) std::abort();
  Report(state, bytes.size());
}

void Convert(benchmark::State& state) {
  const std::string bytes = MakeApplication(state.range(0), state.range(1));
  dom::OutputBuffer output;
  for (auto _ : state) {
    TZanfoFile file;
    Load(bytes, file);
    const dom::Document document = dom::DOMImplementation::createDocument();
    output.Clear();
    if (WriteXmlDocument(file.GetApplication(), RunOnlyMark::kNone, document) != Status::kOk ||
        !dom::Serialize(document, output))
      std::abort();
  }
  Report(state, bytes.size());
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t shape : {kFlat, kDeep})
    for (const std::int64_t count : {50, 1'000, 10'000, 100'000}) benchmark->Args({count, shape});
  benchmark->ArgNames({"actions", "deep"})
      ->Complexity(benchmark::oN)
      ->Unit(benchmark::kMicrosecond);
}

BENCHMARK(LoadLegacy)->Apply(Sizes);
BENCHMARK(BuildDocument)->Apply(Sizes);
BENCHMARK(Serialise)->Apply(Sizes);
BENCHMARK(LoadXml)->Apply(Sizes);
BENCHMARK(Compare)->Apply(Sizes);
BENCHMARK(Convert)->Apply(Sizes);

}  // namespace
