// RunAside: the answer of a process of its own, or why there is none.
#include "tools/aside.h"
#include <csignal>
#include <gtest/gtest.h>
#include <unistd.h>

// An answer may be longer than a pipe holds.
TEST(AsideTest, TheWholeAnswerComes)
{
    Aside const aside = RunAside([] { return std::string(1000000, 'x'); });
    EXPECT_EQ("", aside.fault);
    EXPECT_EQ(std::string(1000000, 'x'), aside.answer);
}

// What the work leaves behind is not left here.
TEST(AsideTest, TheWorkIsDoneElsewhere)
{
    pid_t const here = getpid();
    Aside const aside = RunAside([here] { return std::string(getpid() == here ? "here" : "elsewhere"); });
    EXPECT_EQ("elsewhere", aside.answer);
}

// A crash is told, and is not this process's.
TEST(AsideTest, ACrashIsAFault)
{
    Aside const aside = RunAside([]() -> std::string {
        raise(SIGKILL);
        return "not reached";
    });
    EXPECT_EQ("", aside.answer);
    EXPECT_EQ("the process that tried it crashed: Killed", aside.fault);
}

// A library may end its process in order, too.
TEST(AsideTest, AnEndIsAFault)
{
    EXPECT_EQ("it ended the process that tried it", RunAside([]() -> std::string { _exit(7); }).fault);
}

// What hangs is waited for no longer than it is told.
TEST(AsideTest, WhatHangsIsEnded)
{
    Aside const aside = RunAside(
        []() -> std::string {
            for (;;)
                pause();
        },
        std::chrono::milliseconds(1));
    EXPECT_EQ("no answer within 0 s", aside.fault);
}
