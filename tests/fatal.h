// Death-test helper: runs a statement that must end the process through the
// error writer, with the writer's screen on stderr so the message can be
// matched.  The message is a regular expression (escape ( ) [ ] . * + ?).
#ifndef LAMINATE_TESTS_FATAL_H
#define LAMINATE_TESTS_FATAL_H

#include <gtest/gtest.h>

#include "laminate/util/errorwriter.h"

#define EXPECT_FATAL(statement, message)                 \
    EXPECT_EXIT(                                         \
        {                                                \
            errorwriter.screen = stderr;                 \
            statement;                                   \
        },                                               \
        ::testing::ExitedWithCode(2), message)

#endif
