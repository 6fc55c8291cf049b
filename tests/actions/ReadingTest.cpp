// Reads actions from documents: unusual ones that are allowed, and invalid ones.

#include <gtest/gtest.h>

#include "tests/support/Convert.h"

namespace zaf {
namespace {

using test::Expected;
using test::ToXml;

TEST(Reading, UnusualElementsFollowTheirRules) {
  EXPECT_EQ(ToXml(Expected("unusual.in")), Expected("unusual"));
}

#define JOIN(ATTRIBUTE, LAST)                               \
  "<JoinCriteria><JoinItem" ATTRIBUTE                       \
  "><FirstTable>a</FirstTable><FirstColumn>b</FirstColumn>" \
  "<SecondTable>c</SecondTable>" LAST "</JoinItem></JoinCriteria>"
constexpr const char* kRefused[] = {
    "<ForAction Direction='up'/>",
    "<EndTransactionAction><EndType>rollback</EndType></EndTransactionAction>",
    "<DeleteAction>" JOIN(" JoinType='Outer'", "<SecondColumn>d</SecondColumn>") "</DeleteAction>",
    "<DeleteAction>" JOIN("", "") "</DeleteAction>",
    "<DeleteAction>" JOIN("", "<SecondColumn/>") "</DeleteAction>",
    "<SearchBuilderAction><ListPageInfo>" JOIN("", "") "</ListPageInfo></SearchBuilderAction>",
    "<SearchBuilderAction><DetailsPageInfo>" JOIN("",
                                                  "") "</DetailsPageInfo></SearchBuilderAction>",
};

TEST(Reading, UnknownWordsAndIncompleteJoinsAreRefused) {
  for (const char* const element : kRefused)
    EXPECT_EQ(ToXml(test::DocumentWith(element, "")), "status 0xFE02") << element;
}

}  // namespace
}  // namespace zaf
