// Compares the costs of hostile files and of an ordinary file of the same size:
//
//   measure_hostile [KILOBYTES]
//
// Each row is a file of about that size (100 KB by default), designed to take as much time or
// memory as possible: a legacy file that is converted to a document, or a document that is read and
// written again. The factors are relative to an ordinary file of as many bytes. The exit status is
// 1 when one exceeds the limit.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "fuzz/FuzzSupport.h"
#include "tests/support/LegacyFile.h"

namespace zaf::bench {
namespace {

using test::BigEndian;
using test::LegacyFile;
using test::ListOf;

constexpr double kLimit = 50;
constexpr int kRounds = 3;
constexpr unsigned kMostSeconds = 60;
constexpr std::size_t kFixedAllowance = std::size_t{16} << 20;

std::string Repeat(std::string_view text, std::size_t size) {
  std::string repeated;
  while (repeated.size() < size) repeated += text;
  return repeated;
}

/// Searches with texts and lists, as in real applications.
std::string Ordinary(std::size_t size) {
  LegacyFile file;
  file.Action("cntr", "Root");
  for (std::size_t made = 0; made < size; made += 1000) {
    file.Action("srch", "Find" + std::to_string(made), "Root")
        .Text("rslt", Repeat("<P>Found <@COLUMN Name='a'> </P>\n", 300))
        .Payload("slct", ListOf(1, std::string(384, 'x')))
        .Text("cmnt", "finds what is there")
        .Text("dsrc", "orders");
  }
  return file.Bytes();
}

/// One action with a list of `count` records that share `size` bytes.
std::string OneList(std::string_view type, std::string_view code, std::size_t count,
                    std::size_t size) {
  const auto records = static_cast<std::uint32_t>(std::min(count, std::max<std::size_t>(size, 1)));
  return LegacyFile()
      .Action(type, "A")
      .Payload(code, ListOf(records, std::string(size, 'x')))
      .Bytes();
}

/// Sections of one action that all overlap.
std::string Overlapping(std::string_view code, std::size_t size) {
  LegacyFile file;
  file.Payload("xxxx", std::string(size / 2, '\r')).Action("null", "A");
  for (std::size_t i = 0; i < size / 24; ++i) file.Payload(code, "");
  std::string bytes = file.Bytes();
  const std::string range = BigEndian(48) + BigEndian(static_cast<std::uint32_t>(size / 2));
  for (std::size_t at = bytes.find(code); at != bytes.npos; at = bytes.find(code, at + 12))
    bytes.replace(at + 4, 8, range);
  return bytes;
}

/// Empty actions, all below one parent or each below the previous one.
std::string Actions(std::string_view type, std::size_t size, bool is_deep) {
  LegacyFile file;
  file.Action("cntr", "N");
  for (std::size_t i = 0; i < size / 120; ++i) file.Action(type, is_deep ? "N" : "M", "N");
  return file.Bytes();
}

/// A file whose map contains the same action many times.
std::string OneRecordOften(std::size_t size) {
  std::string bytes = LegacyFile().Action("null", "A").Text("cmnt", "c").Bytes();
  const std::string entry = bytes.substr(bytes.size() - 12);
  bytes += Repeat(entry, size);
  const auto count = static_cast<std::uint32_t>((bytes.size() - 110) / 12);
  return bytes.replace(12, 4, BigEndian(count));
}

std::string Document(std::string_view actions, std::string_view program = {},
                     std::string_view outputs = {}, std::string_view data_sources = {}) {
  std::string document("<?xml version='1.0' encoding='ISO-8859-1'?><ZAF><Program>");
  return document.append(program)
      .append("</Program><Actions>")
      .append(actions)
      .append("</Actions><DataSources>")
      .append(data_sources)
      .append("</DataSources><Outputs>")
      .append(outputs)
      .append("</Outputs></ZAF>");
}

/// As many actions as may refer to a text of half the size.
std::string Referring(std::string_view action, std::size_t size) {
  const std::size_t allowed = std::max<std::size_t>(16 * size, 4 << 20) / (size / 2 + 1);
  return Repeat(action, std::min(size / 2, (allowed - 1) * action.size()));
}

/// Actions with every pair of development and deployment data sources, all different.
std::string AllPairs(std::size_t size) {
  std::string sources;
  std::string actions;
  for (int i = 0; actions.size() + sources.size() < size; ++i) {
    const std::string id = std::to_string(i);
    sources.append("<DataSource ID='").append(id).append("'><DSN>").append(id);
    sources.append("</DSN></DataSource>");
    for (int j = 0; j < i; ++j)
      actions.append("<DirectDBMSAction DSID='")
          .append(id)
          .append("' DeploymentDSID='")
          .append(std::to_string(j))
          .append("'/>");
  }
  return Document(actions, {}, {}, sources);
}

/// A list of elements in a builder action, which writes long elements for short ones.
std::string BuilderColumns(std::size_t size) {
  const std::string begin = "<SearchBuilderAction><DetailsPageInfo><DetailsPageColumns>";
  const std::string end = "</DetailsPageColumns></DetailsPageInfo></SearchBuilderAction>";
  return Document(begin + Repeat("<DetailsPageColumn/>", size) + end);
}

constexpr std::string_view kReferring = "<IfAction><ResultsOutput Ref='x'/></IfAction>";
constexpr std::string_view kConnected = "<DirectDBMSAction DSID='x'/>";

struct TCase {
  const char* name;
  std::string (*make)(std::size_t size);
};

// clang-format off
constexpr TCase kCases[] = {
    {"expressions of no bytes",
     [](std::size_t size) {
       const std::size_t most = std::max(8 * size, kFixedAllowance) / 512 - 1;
       return LegacyFile().Action("if  ", "A").Payload("ieei", BigEndian(static_cast<std::uint32_t>(most)) +
                                                     std::string(size, 'x')).Bytes();
     }},
    {"columns of one byte", [](std::size_t n) { return OneList("srch", "cols", 31'000, n); }},
    {"builder columns of one byte", [](std::size_t n) { return OneList("sgrp", "dcit", 16'900, n); }},
    {"joins of one byte", [](std::size_t n) { return OneList("srch", "join", 25'000, n); }},
    {"texts of nothing in a list", [](std::size_t n) {
       return LegacyFile().Action("srch", "A")
           .Payload("tabl", ListOf(static_cast<std::uint32_t>(n), std::string(n, '\0'))).Bytes();
     }},
    {"output sections over the same bytes", [](std::size_t n) { return Overlapping("rslt", n); }},
    {"assignments over the same bytes", [](std::size_t n) { return Overlapping("assn", n); }},
    {"empty actions, deep", [](std::size_t n) { return Actions("null", n, true); }},
    {"empty builders", [](std::size_t n) { return Actions("sgrp", n, false); }},
    {"records that are one record", &OneRecordOften},
    {"document: empty actions", [](std::size_t n) { return Document(Repeat("<IfAction/>", n)); }},
    {"document: empty searches", [](std::size_t n) { return Document(Repeat("<SearchAction/>", n)); }},
    {"document: empty builders",
     [](std::size_t n) { return Document(Repeat("<SearchBuilderAction/>", n)); }},
    {"document: empty builder columns", &BuilderColumns},
    {"document: empty cookies", [](std::size_t n) {
       return Document("<AssignAction>" + Repeat("<Cookie/>", n) + "</AssignAction>");
     }},
    {"document: numeric references", [](std::size_t n) {
       return Document("<IfAction><Comments>" + Repeat("&#60;", n) + "</Comments></IfAction>");
     }},
    {"document: one output, many references", [](std::size_t n) {
       return Document(Referring(kReferring, n), {},
                       "<Output ID='x'>" + std::string(n / 2, '\'') + "</Output>");
     }},
    {"document: one output of many sections, many references", [](std::size_t n) {
       return Document(Repeat(kReferring, n / 2), {},
                       "<Output ID='x'>" + Repeat("<![CDATA[]]>", n / 2) + "</Output>");
     }},
    {"document: one data source of many children, many references", [](std::size_t n) {
       return Document(Repeat(kConnected, n / 2), {}, {},
                       "<DataSource ID='x'>" + Repeat("<x/>", n / 2) + "</DataSource>");
     }},
    {"document: all pairs of data sources", &AllPairs},
};
// clang-format on

struct TCost {
  double seconds;
  double kilobytes;           ///< At the peak, above the initial size of the process.
  std::size_t document_size;  ///< In bytes; 0 if the file is refused.
};

std::string Convert(const std::string& bytes) {
  TZanfoFile file;
  return fuzz::LoadBytes(bytes, file) == Status::kOk ? fuzz::SaveToXml(file) : std::string();
}

long PeakMemory() {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

/// Measures in a separate process, so that its peak of memory is that of this file.
TCost Measure(const std::string& bytes) {
  int ends[2];
  if (pipe(ends) != 0) std::exit(2);
  const pid_t child = fork();
  if (child == 0) {
    alarm(kMostSeconds);
    const long before = PeakMemory();
    TCost cost{kMostSeconds, 0, 0};
    for (int i = 0; i < kRounds; ++i) {
      const std::clock_t begin = std::clock();
      cost.document_size = Convert(bytes).size();
      cost.seconds =
          std::min(cost.seconds, static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    cost.kilobytes = static_cast<double>(PeakMemory() - before);
    _exit(write(ends[1], &cost, sizeof cost) == sizeof cost ? 0 : 1);
  }
  close(ends[1]);
  TCost cost{};
  if (read(ends[0], &cost, sizeof cost) != sizeof cost) cost.seconds = kMostSeconds;
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return cost;
}

int Run(std::size_t size) {
  const std::string ordinary = Ordinary(size);
  const std::string document = Convert(ordinary);
  const TCost usual[] = {Measure(ordinary), Measure(document)};
  const double usual_size[] = {static_cast<double>(ordinary.size()),
                               static_cast<double>(document.size())};
  std::printf("| File | bytes | time | memory | document bytes |\n|---|---|---|---|---|\n");
  int over_limit = 0;
  for (const TCase& hostile : kCases) {
    const std::string bytes = hostile.make(size);
    const bool is_document = bytes.starts_with("<?xml");
    const double share = static_cast<double>(bytes.size()) / usual_size[is_document];
    const TCost cost = Measure(bytes);
    const double time = cost.seconds / (usual[is_document].seconds * share);
    const double memory = cost.kilobytes / std::max(usual[is_document].kilobytes * share, 64.0);
    if (time > kLimit || memory > kLimit) ++over_limit;
    std::printf("| %s | %zu | %.1f | %.1f | %zu |\n", hostile.name, bytes.size(), time, memory,
                cost.document_size);
    std::fflush(stdout);
  }
  std::printf("\n%d over the limit of %.0f\n", over_limit, kLimit);
  return over_limit == 0 ? 0 : 1;
}

}  // namespace
}  // namespace zaf::bench

int main(int argument_count, char** arguments) {
  const long kilobytes = argument_count > 1 ? std::strtol(arguments[1], nullptr, 10) : 100;
  if (argument_count <= 2 && kilobytes > 0 && kilobytes <= 100'000)
    return zaf::bench::Run(static_cast<std::size_t>(kilobytes) * 1000);
  std::fputs("usage: measure_hostile [KILOBYTES]\n", stderr);
  return 2;
}
