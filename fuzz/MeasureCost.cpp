// Measures what hostile files cost beside an ordinary file of the same size:
//
//   measure_cost [KILOBYTES]
//
// Each row is a file of that size (100 KB if it is not given), made to take as much time or memory
// as can be: converted to a document, and that document, which is another input, read and written
// again. The factors are those against the ordinary file: files of actions with texts and lists, as
// applications have them. The exit status is 1 when a factor is over the limit.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "fuzz/FuzzSupport.h"
#include "tests/support/LegacyFile.h"

namespace zaf::fuzz {
namespace {

using test::BigEndian;
using test::LegacyFile;
using test::ListOf;

constexpr double kLimit = 50;
constexpr int kRounds = 5;
constexpr unsigned kMostSeconds = 60;

std::string Repeat(std::string_view text, std::size_t size) {
  std::string repeated;
  repeated.reserve(size + text.size());
  while (repeated.size() < size) repeated += text;
  return repeated;
}

/// The file with every map entry of this code saying the same.
std::string WithEntries(std::string bytes, std::string_view code, std::uint32_t offset,
                        std::uint32_t length) {
  for (std::size_t at = bytes.find(code); at != bytes.npos; at = bytes.find(code, at + 12))
    bytes.replace(at + 4, 8, BigEndian(offset) + BigEndian(length));
  return bytes;
}

std::string Ordinary(std::size_t size) {
  LegacyFile file;
  file.Action("cntr", "Root");
  for (std::size_t made = 0; made < size; made += 1000) {
    file.Action("srch", "Find" + std::to_string(made), "Root")
        .Text("rslt", Repeat("<P>Found <@COLUMN Name='a'> </P>\n", 300))
        .Block("slct", ListOf(1, std::string(384, 'x')))
        .Text("cmnt", "finds what is there")
        .Text("dsrc", "orders");
  }
  return file.Bytes();
}

/// One action with a list of so many records of one byte, or of none.
std::string OneList(std::string_view type, std::string_view code, std::size_t count,
                    std::size_t payload) {
  return LegacyFile()
      .Action(type, "A")
      .Block(code, ListOf(static_cast<std::uint32_t>(count), std::string(payload, 'x')))
      .Bytes();
}

/// Sections of one action, all over the same bytes.
std::string Overlapping(std::string_view code, std::size_t size, std::string_view content) {
  LegacyFile file;
  file.Block("xxxx", std::string(content).append(std::string(size / 2, '\r'))).Action("null", "A");
  for (std::size_t i = 0; i < size / 24; ++i) file.Block(code, "");
  return WithEntries(file.Bytes(), code, 48, static_cast<std::uint32_t>(size / 2));
}

std::string Actions(std::string_view type, std::size_t size, bool is_deep, bool is_same_host) {
  LegacyFile file;
  file.Action("cntr", "N");
  for (std::size_t i = 0; i < size / 120; ++i) {
    file.Action(type, is_deep ? "N" : "M", "N");
    if (!is_same_host) file.Text("host", std::to_string(i));
  }
  return file.Bytes();
}

std::string ListItems(std::size_t size) {
  const std::string column = test::Slots(128, {"t", "c"}) + std::string(12, '\0') +
                             test::Slots(128, {"o", "f"}) + "drop" + std::string(428, '\0');
  const std::string item = test::Slots(128, {"o", "t", "c", "n", "v"}) + BigEndian(1);
  const auto count = static_cast<std::uint32_t>(size / 2 / column.size());
  const auto items = static_cast<std::uint32_t>(size / 2 / item.size());
  return LegacyFile()
      .Action("sgrp", "A")
      .Block("scit", ListOf(count, Repeat(column, count * column.size())))
      .Block("sfvt", ListOf(items, Repeat(item, items * item.size())))
      .Bytes();
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

std::string Nested(std::string_view begin, std::string_view end, std::size_t size) {
  const std::size_t half = size * begin.size() / (begin.size() + end.size());
  const std::string open = Repeat(begin, half);
  return open + Repeat(end, open.size() / begin.size() * end.size());
}

std::string ManyAttributes(std::size_t size) {
  std::string element = "<ResultAction";
  for (std::size_t i = 0; element.size() < size; ++i) element += " a" + std::to_string(i) + "=''";
  return Document(element + "/>");
}

/// So many of the actions, which each refer to a text of half the size, that they may do so.
std::string Referring(std::string_view action, std::size_t size) {
  const std::size_t allowed = std::max<std::size_t>(16 * size, 4 << 20) / (size / 2 + 1);
  return Repeat(action, std::min(size / 2, (allowed - 1) * action.size()));
}

/// Actions with every pair of so many development and deployment data sources: no two alike.
std::string AllPairs(std::size_t size) {
  std::string sources;
  std::string actions;
  for (int i = 0; actions.size() + sources.size() < size; ++i) {
    const std::string id = std::to_string(i);
    sources.append("<DataSource ID='").append(id).append("'><DSN>").append(id);
    sources.append("</DSN><UserInfo><UserName>").append(id);
    sources.append("</UserName></UserInfo></DataSource>");
    for (int j = 0; j < i; ++j) {
      actions.append("<DirectDBMSAction DSID='").append(id).append("' DeploymentDSID='");
      actions.append(std::to_string(j)).append("'/>");
    }
  }
  return Document(actions, "", "", sources);
}

std::string DataSources(std::size_t size) {
  std::string sources;
  for (int i = 0; sources.size() < size; ++i)
    sources += "<DataSource ID='" + std::to_string(i) + "'/>";
  return Document("<IfAction/>", "", "", sources);
}

struct TCase {
  const char* name;
  std::function<std::string(std::size_t)> make;
};

const TCase kCases[] = {
    {"expressions: 2^15 records of no bytes in a tiny file",
     [](std::size_t) { return OneList("if  ", "ieei", 32'000, 4); }                                                                   },
    {"expressions of no bytes, as many as allowed",
     [](std::size_t size) {
       return OneList("if  ", "ieei", std::max<std::size_t>(8 * size, 16 << 20) / 512 - 1, size);
     }                                                                                                                                },
    {"criteria of one byte (dropped)",
     [](std::size_t size) {
       return OneList("srch", "crit", std::min<std::size_t>(size, 16'000), size);
     }                                                                                                                                },
    {"columns of one byte",
     [](std::size_t size) {
       return OneList("srch", "cols", std::min<std::size_t>(size, 31'000), size);
     }                                                                                                                                },
    {"builder columns of one byte",
     [](std::size_t size) {
       return OneList("sgrp", "dcit", std::min<std::size_t>(size, 16'900), size);
     }                                                                                                                                },
    {"joins of one byte",
     [](std::size_t size) {
       return OneList("srch", "join", std::min<std::size_t>(size, 25'000), size);
     }                                                                                                                                },
    {"texts of nothing in a list",
     [](std::size_t size) {
       return LegacyFile()
           .Action("srch", "A")
           .Block("tabl", ListOf(static_cast<std::uint32_t>(size), std::string(size, '\0')))
           .Bytes();
     }                                                                                                                                },
    {"sections over the same bytes, comments",
     [](std::size_t size) { return Overlapping("cmnt", size, ""); }                                                                   },
    {"sections over the same bytes, output of returns",
     [](std::size_t size) { return Overlapping("rslt", size, ""); }                                                                   },
    {"sections over the same bytes, assignments",
     [](std::size_t size) { return Overlapping("assn", size, ""); }                                                                   },
    {"output of returns alone",
     [](std::size_t size) {
       return LegacyFile().Action("null", "A").Text("rslt", std::string(size, '\r')).Bytes();
     }                                                                                                                                },
    {"output of section ends",
     [](std::size_t size) {
       return LegacyFile().Action("null", "A").Text("rslt", Repeat("]]>", size)).Bytes();
     }                                                                                                                                },
    {"title of quotes",
     [](std::size_t size) { return LegacyFile().Text("titl", std::string(size, '"')).Bytes(); }                                       },
    {"actions without anything, flat",
     [](std::size_t size) { return Actions("null", size, false, true); }                                                              },
    {"actions without anything, deep",
     [](std::size_t size) { return Actions("null", size, true, true); }                                                               },
    {"else-ifs, deep",                                              [](std::size_t size) { return Actions("elif", size, true, true); }},
    {"builders without anything",
     [](std::size_t size) { return Actions("sgrp", size, false, true); }                                                              },
    {"searches, all with other data sources",
     [](std::size_t size) { return Actions("cust", size, false, false); }                                                             },
    {"records that are one record",
     [](std::size_t size) {
       LegacyFile file;
       file.Action("null", "A").Text("cmnt", "c");
       std::string bytes = file.Bytes();
       const std::string entry = bytes.substr(bytes.rfind("head"), 12);
       bytes = bytes.substr(0, bytes.size() - 12) + Repeat(entry, size);
       const auto count = static_cast<std::uint32_t>((bytes.size() - 110) / 12);
       return bytes.replace(12, 4, BigEndian(count));
     }                                                                                                                                },
    {"list items that many columns share",                          &ListItems                                                        },
    {"document: attributes of one element",                         &ManyAttributes                                                   },
    {"document: unknown elements, deep",
     [](std::size_t size) {
       return Document("<ResultAction>" + Nested("<x>", "</x>", size) + "</ResultAction>");
     }                                                                                                                                },
    {"document: unknown elements, wide",
     [](std::size_t size) {
       return Document("<SearchAction>" + Repeat("<x/>", size) + "</SearchAction>");
     }                                                                                                                                },
    {"document: empty actions",
     [](std::size_t size) { return Document(Repeat("<IfAction/>", size)); }                                                           },
    {"document: empty searches",
     [](std::size_t size) { return Document(Repeat("<SearchAction/>", size)); }                                                       },
    {"document: empty builders",
     [](std::size_t size) { return Document(Repeat("<SearchBuilderAction/>", size)); }                                                },
    {"document: empty else-ifs with references",
     [](std::size_t size) {
       return Document(Repeat("<ElseIfAction/>", size / 2), Repeat("<ActionRef/>", size * 12 / 30));
     }                                                                                                                                },
    {"document: references, deep",
     [](std::size_t size) {
       return Document(Repeat("<GroupAction/>", size / 3),
                       Nested("<ActionRef>", "</ActionRef>", size / 3 / 14 * 23));
     }                                                                                                                                },
    {"document: references to no action",
     [](std::size_t size) {
       return Document("<IfAction/>", Repeat("<ActionRef Ref='x'/>", size));
     }                                                                                                                                },
    {"document: expressions without anything",
     [](std::size_t size) {
       return Document("<IfAction>" + Repeat("<ExpressionInfo/>", size) + "</IfAction>");
     }                                                                                                                                },
    {"document: builder columns without anything",
     [](std::size_t size) {
       return Document("<SearchBuilderAction><DetailsPageInfo><DetailsPageColumns>" +
                       Repeat("<DetailsPageColumn/>", size) +
                       "</DetailsPageColumns></DetailsPageInfo></SearchBuilderAction>");
     }                                                                                                                                },
    {"document: cookies without anything",
     [](std::size_t size) {
       return Document("<AssignAction>" + Repeat("<Cookie/>", size) + "</AssignAction>");
     }                                                                                                                                },
    {"document: one output, many references",
     [](std::size_t size) {
       return Document(Referring("<IfAction><ResultsOutput Ref='x'/></IfAction>", size), "",
                       "<Output ID='x'>" + std::string(size / 2, '\'') + "</Output>");
     }                                                                                                                                },
    {"document: outputs of one name",
     [](std::size_t size) {
       return Document("<IfAction><ResultsOutput Ref='x'/></IfAction>", "",
                       Repeat("<Output ID='x'/>", size));
     }                                                                                                                                },
    {"document: numeric references",
     [](std::size_t size) {
       return Document("<IfAction><Comments>" + Repeat("&#60;", size) + "</Comments></IfAction>");
     }                                                                                                                                },
    {"document: ampersands",
     [](std::size_t size) {
       return Document("<IfAction><Comments>" + Repeat("&", size) + "</Comments></IfAction>");
     }                                                                                                                                },
    {"document: many CDATA sections",
     [](std::size_t size) {
       return Document("<IfAction><Comments>" + Repeat("<![CDATA[]]>", size) +
                       "</Comments></IfAction>");
     }                                                                                                                                },
    {"document: one data source of many children, many references",
     [](std::size_t size) {
       return Document(Repeat("<DirectDBMSAction DSID='x'/>", size / 2), "", "",
                       "<DataSource ID='x'>" + Repeat("<x/>", size / 2) + "</DataSource>");
     }                                                                                                                                },
    {"document: one login of many attributes, many references",
     [](std::size_t size) {
       std::string info = "<UserInfo";
       for (std::size_t i = 0; info.size() < size / 2; ++i)
         info += " a" + std::to_string(i) + "=''";
       return Document(Repeat("<DirectDBMSAction DSID='x'/>", size / 2), "", "",
                       "<DataSource ID='x'>" + info + "/></DataSource>");
     }                                                                                                                                },
    {"document: one data source of a long name, many references",
     [](std::size_t size) {
       return Document(
           Referring("<DirectDBMSAction DSID='x'/>", size), "", "",
           "<DataSource ID='x'><DSN>" + std::string(size / 2, '\'') + "</DSN></DataSource>");
     }                                                                                                                                },
    {"document: all pairs of data sources",                         &AllPairs                                                         },
    {"document: data sources without anything",                     &DataSources                                                      },
    {"document: one output of many elements, many references",
     [](std::size_t size) {
       return Document(Repeat("<IfAction><ResultsOutput Ref='x'/></IfAction>", size / 2), "",
                       "<Output ID='x'>" + Repeat("<x/>", size / 2) + "</Output>");
     }                                                                                                                                },
    {"document: many actions under one of a long name",
     [](std::size_t size) {
       const std::string name(size / 3, 'x');
       const std::size_t count = size / 3 / 13 / 2;
       return Document(
           "<IfAction ID='" + name + "'/>" + Repeat("<IfAction/>", count * 11),
           "<ActionRef Ref='" + name + "'>" + Repeat("<ActionRef/>", count * 12) + "</ActionRef>");
     }                                                                                                                                },
    {"document: many CDATA sections, read many times over",
     [](std::size_t size) {
       return Document(Repeat("<IfAction><ResultsOutput Ref='x'/></IfAction>", size / 2), "",
                       "<Output ID='x'>" + Repeat("<![CDATA[]]>", size / 2) + "</Output>");
     }                                                                                                                                },
};

struct TCost {
  double seconds;
  double kilobytes;           ///< At the most, above what the process had.
  std::size_t document_size;  ///< In bytes; 0 when the file is refused.
};

/// Converts once; false when the file does not load.
bool Convert(const std::string& bytes, std::string& document) {
  TZanfoFile file;
  const bool is_loaded = LoadBytes(bytes, file) == Status::kOk;
  document = is_loaded ? SaveToXml(file) : std::string();
  return is_loaded;
}

long PeakMemory() {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

/// Measures in a process of its own, so that its peak of memory is that of this file.
TCost Measure(const std::string& bytes) {
  int ends[2];
  if (pipe(ends) != 0) std::exit(2);
  const pid_t child = fork();
  if (child == 0) {
    alarm(kMostSeconds);
    std::vector<double> times;
    std::string made;
    const long before = PeakMemory();
    for (int i = 0; i < kRounds; ++i) {
      // The processor's time: others use the machine, too.
      const std::clock_t begin = std::clock();
      Convert(bytes, made);
      times.push_back(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    std::sort(times.begin(), times.end());
    const TCost cost{times[kRounds / 2], static_cast<double>(PeakMemory() - before), made.size()};
    const bool is_told = write(ends[1], &cost, sizeof cost) == sizeof cost;
    _exit(is_told ? 0 : 1);
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
  const TCost usual = Measure(ordinary);
  std::string document;
  Convert(ordinary, document);
  const TCost usual_document = Measure(document);
  std::printf(
      "%zu bytes: an ordinary file takes %.0f us and %.0f KB, its document of %zu bytes "
      "%.0f us and %.0f KB\n\n",
      ordinary.size(), usual.seconds * 1e6, usual.kilobytes, document.size(),
      usual_document.seconds * 1e6, usual_document.kilobytes);
  std::printf("| File | bytes | time | memory | document bytes |\n|---|---|---|---|---|\n");
  int over_limit = 0;
  for (const TCase& hostile : kCases) {
    const std::string bytes = hostile.make(size);
    const bool is_document = bytes.starts_with("<?xml");
    const TCost& norm = is_document ? usual_document : usual;
    const double norm_size = static_cast<double>(is_document ? document.size() : ordinary.size());
    const TCost cost = Measure(bytes);
    // Against an ordinary file of as many bytes; sizes differ a little.
    const double share = std::max(static_cast<double>(bytes.size()) / norm_size, 1.0 / 64);
    const double time = cost.seconds / (norm.seconds * share);
    const double memory = cost.kilobytes / std::max(norm.kilobytes * share, 64.0);
    if (time > kLimit || memory > kLimit) ++over_limit;
    std::printf("| %s | %zu | %.1f | %.1f | %zu%s |\n", hostile.name, bytes.size(), time, memory,
                cost.document_size, cost.document_size == 0 ? " (refused)" : "");
    std::fflush(stdout);
  }
  std::printf("\n%d over the limit of %.0f\n", over_limit, kLimit);
  return over_limit == 0 ? 0 : 1;
}

}  // namespace
}  // namespace zaf::fuzz

int main(int argument_count, char** arguments) {
  const long kilobytes = argument_count > 1 ? std::strtol(arguments[1], nullptr, 10) : 100;
  if (argument_count > 2 || kilobytes < 1 || kilobytes > 100'000) {
    std::fprintf(stderr, "usage: measure_cost [KILOBYTES]\n");
    return 2;
  }
  return zaf::fuzz::Run(static_cast<std::size_t>(kilobytes) * 1000);
}
