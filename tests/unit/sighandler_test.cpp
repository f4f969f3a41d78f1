#include "sighandler.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(Sighandler, AppendStaysInsideTheBuffer) {
  char buffer[12] = "ab";
  sigstrnappend(buffer, sizeof buffer, "%s-%d", "cd", 7);
  EXPECT_STREQ(buffer, "abcd-7");
  sigstrnappend(buffer, sizeof buffer, "%s", "0123456789");
  EXPECT_STREQ(buffer, "abcd-701234");
  sigstrnappend(buffer, sizeof buffer, "x");
  EXPECT_STREQ(buffer, "abcd-701234");
  sigstrnappend(nullptr, 10, "x");
}

TEST(Sighandler, SupportTextHasItsSize) {
  EXPECT_EQ(strlen(support_message_text()), 536u);
}
