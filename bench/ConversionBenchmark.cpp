// The steps of a conversion, in memory: of typical and dense applications, and of growing ones
// whose actions are all children of the root, are nested in each other, or form one chain of
// else-ifs. The complexity reported for the growing ones must be linear.

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>

#include "appfile/TZanfoFile.h"
#include "appfile/XmlDocumentReader.h"
#include "appfile/XmlDocumentWriter.h"
#include "bench/SampleApplication.h"
#include "dom/Serializer.h"

namespace {

using namespace zaf;
using bench::SampleKind;

constexpr std::uint32_t kNumber = 1;  // The application's number within its kind; any will do.

void Check(bool is_done) {
  if (!is_done) std::abort();
}

void Load(std::string_view bytes, TZanfoFile& file) {
  TDataFile data(AsBytes(bytes));
  Check(file.Load(data, nullptr) == Status::kOk);
}

void Write(const TZanfoFile& file, dom::OutputBuffer& output) {
  const dom::Document document = dom::DOMImplementation::createDocument();
  output.Clear();
  Check(WriteXmlDocument(file.GetApplication(), RunOnlyMark::kNone, document) == Status::kOk &&
        dom::Serialize(document, output));
}

void LoadLegacy(benchmark::State& state, const std::string& bytes) {
  for (auto _ : state) {
    TZanfoFile file;
    Load(bytes, file);
    benchmark::DoNotOptimize(file);
  }
}

void BuildDocument(benchmark::State& state, const std::string& bytes) {
  TZanfoFile file;
  Load(bytes, file);
  for (auto _ : state) {
    const dom::Document document = dom::DOMImplementation::createDocument();
    Check(WriteXmlDocument(file.GetApplication(), RunOnlyMark::kNone, document) == Status::kOk);
  }
}

void Serialise(benchmark::State& state, const std::string& bytes) {
  TZanfoFile file;
  Load(bytes, file);
  const dom::Document document = dom::DOMImplementation::createDocument();
  Check(WriteXmlDocument(file.GetApplication(), RunOnlyMark::kNone, document) == Status::kOk);
  dom::OutputBuffer output;
  for (auto _ : state) {
    output.Clear();
    Check(dom::Serialize(document, output));
  }
}

void Parse(benchmark::State& state, const std::string& bytes) {
  TZanfoFile file;
  Load(bytes, file);
  dom::OutputBuffer output;
  Write(file, output);
  const std::string_view text = output.View();
  for (auto _ : state) Check(static_cast<bool>(dom::DOMImplementation::createDocument(text)));
  state.counters["document_bytes_per_second"] = benchmark::Counter(
      static_cast<double>(text.size()), benchmark::Counter::kIsIterationInvariantRate);
}

void LoadXml(benchmark::State& state, const std::string& bytes) {
  TZanfoFile original;
  Load(bytes, original);
  dom::OutputBuffer output;
  Write(original, output);
  for (auto _ : state) {
    TZanfoFile file;
    Load(output.View(), file);
    benchmark::DoNotOptimize(file);
  }
}

void Compare(benchmark::State& state, const std::string& bytes) {
  TZanfoFile one;
  TZanfoFile two;
  Load(bytes, one);
  Load(bytes, two);
  for (auto _ : state) Check(one.IsEqual(two));
}

void Convert(benchmark::State& state, const std::string& bytes) {
  dom::OutputBuffer output;
  for (auto _ : state) {
    TZanfoFile file;
    Load(bytes, file);
    Write(file, output);
  }
}

struct TStep {
  std::string name;
  void (*run)(benchmark::State& state, const std::string& bytes);
};

struct TInput {
  std::string name;
  SampleKind kind;
  bool grows;
};

/// Runs a step with an application of the size given by the state's argument. The rate is in bytes
/// of the legacy file per second.
void Run(benchmark::State& state, const TStep& step, SampleKind kind) {
  const auto size = static_cast<std::size_t>(state.range(0));
  const std::string bytes = bench::MakeApplication(kind, kNumber, size);
  step.run(state, bytes);
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * state.iterations());
  state.SetComplexityN(state.range(0));
}

void RegisterAll() {
  const TStep steps[] = {
      {"LoadLegacy", LoadLegacy}, {"BuildDocument", BuildDocument},
      {"Serialise", Serialise},   {"Parse", Parse},
      {"LoadXml", LoadXml},       {"Compare", Compare},
      {"Convert", Convert},
  };
  const TInput inputs[] = {
      {"typical", SampleKind::kTypical, false}, {"dense", SampleKind::kDense, false},
      {"flat", SampleKind::kFlat, true},        {"nested", SampleKind::kNested, true},
      {"chain", SampleKind::kChain, true},
  };
  for (const TStep& step : steps)
    for (const TInput& input : inputs) {
      auto* const made = benchmark::RegisterBenchmark(
          (step.name + '/' + input.name).c_str(),
          [step, kind = input.kind](benchmark::State& state) { Run(state, step, kind); });
      made->Unit(benchmark::kMicrosecond);
      if (input.grows) {
        made->RangeMultiplier(10)->Range(1'000, 100'000)->Complexity(benchmark::oN);
      } else {
        made->Arg(static_cast<std::int64_t>(bench::UsualSize(input.kind)));
      }
    }
}

}  // namespace

int main(int argument_count, char** arguments) {
  benchmark::Initialize(&argument_count, arguments);
  if (benchmark::ReportUnrecognizedArguments(argument_count, arguments)) return 2;
  RegisterAll();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
