// Damaged sample files: whatever is done to them, a load ends with a status, and what was loaded
// can be saved, within bounds of time and memory. The sanitizer builds see what else goes wrong.
// ZAF2XML_MUTATIONS in the environment is the number of mutations of each sample in a long run.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "appfile/XmlDocumentWriter.h"
#include "dom/Serializer.h"
#include "fuzz/WellFormed.h"
#include "tests/support/Convert.h"

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace zaf {
namespace {

constexpr std::size_t kHeadSize = 512;
constexpr std::size_t kTruncatedSize = 4096;
constexpr long kMutations = 200;
constexpr unsigned kSeed = 20240229;

const std::set<Status> kKnownStatuses{Status::kOk, Status::kMalformed, Status::kUnsupportedFormat,
                                      Status::kFailure};

/// A sample of 20 KB takes less than a millisecond. Work is bounded at 16 MiB whatever the size.
#ifdef ZAF2XML_SANITIZED
constexpr std::chrono::seconds kLongestTime{20};
[[maybe_unused]] constexpr long kMostMemory = 4L << 20;  // In KiB, as below.
#else
constexpr std::chrono::seconds kLongestTime{2};
[[maybe_unused]] constexpr long kMostMemory = 512 << 10;
#endif

/// Loads the bytes; what loads is written and read again.
void TryUnbounded(const std::string& bytes) {
  TZanfoFile file;
  const Status status = test::LoadBytes(bytes, file);
  ASSERT_EQ(kKnownStatuses.count(status), 1U);
  if (status != Status::kOk) return;
  const dom::Document document = dom::DOMImplementation::createDocument();
  dom::OutputBuffer output;
  ASSERT_EQ(WriteXmlDocument(file.GetApplication(), RunOnlyMark::kNone, document), Status::kOk);
  ASSERT_TRUE(dom::Serialize(document, output));
  ASSERT_TRUE(fuzz::IsWellFormed(output.View()));
  TZanfoFile again;
  ASSERT_EQ(kKnownStatuses.count(test::LoadBytes(output.View(), again)), 1U);
}

void Try(const std::string& bytes) {
  const auto begin = std::chrono::steady_clock::now();
  TryUnbounded(bytes);
  ASSERT_LT(std::chrono::steady_clock::now() - begin, kLongestTime);
#ifndef _WIN32
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  ASSERT_LT(usage.ru_maxrss, kMostMemory);
#endif
}

/// The samples, and their sources, which are XML documents.
std::vector<std::string> Samples() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(ZAF2XML_SAMPLES)) {
    const std::string extension = entry.path().extension().string();
    if (extension == ".zaf" || extension == ".zcf" || extension == ".xml")
      names.push_back(entry.path().string());
  }
  return names;
}

class Damage : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    std::ifstream file(GetParam(), std::ios::binary);
    bytes_.assign(std::istreambuf_iterator<char>(file), {});
    ASSERT_FALSE(bytes_.empty());
  }

  std::string bytes_;
};

TEST_P(Damage, TruncationsEndInAStatus) {
  for (std::size_t size = 1; size < std::min(bytes_.size(), kTruncatedSize); ++size)
    Try(bytes_.substr(0, size));
}

TEST_P(Damage, EveryByteOfTheHeadMayBeAnything) {
  for (std::size_t at = 0; at < std::min(bytes_.size(), kHeadSize); ++at) {
    for (const char value : {'\0', '\x7F', '\x80', '\xFF'}) {
      std::string damaged = bytes_;
      damaged[at] = value;
      Try(damaged);
    }
  }
}

TEST_P(Damage, UpToOnePercentOfTheBytesMayBeAnything) {
  std::mt19937 random(kSeed);
  const char* const wanted = std::getenv("ZAF2XML_MUTATIONS");
  const long mutations = wanted == nullptr ? kMutations : std::strtol(wanted, nullptr, 10);
  for (long i = 0; i < mutations && !HasFatalFailure(); ++i) {
    std::string damaged = bytes_;
    // That much is mostly refused at once; a few bytes get further.
    std::size_t left = i % 2 == 0 ? bytes_.size() / 100 + 1 : 1 + random() % 8;
    for (; left > 0; --left) damaged[random() % damaged.size()] = static_cast<char>(random());
    Try(damaged);
  }
}

INSTANTIATE_TEST_SUITE_P(Samples, Damage, testing::ValuesIn(Samples()),
                         [](const testing::TestParamInfo<std::string>& sample) {
                           std::string name =
                               std::filesystem::path(sample.param).filename().string();
                           for (char& c : name)
                             if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                           return name;
                         });

}  // namespace
}  // namespace zaf
