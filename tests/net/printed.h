// What a piece of code prints on standard output.
#pragma once
#include <gtest/gtest.h>
#include <string>

template <typename Action>
std::string Printed(Action action)
{
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}
