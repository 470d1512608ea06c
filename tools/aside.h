// Work in a process of its own: drivers crash, hang and leave things behind, and none of that may happen
// here.
#pragma once
#include <chrono>
#include <functional>
#include <string>

struct Aside
{
    std::string answer;
    std::string fault;  // why the answer is not a whole one; empty if it is
};

// What the work returned. The process is killed when it takes longer. Throws CommandFailed where none can be
// made.
Aside RunAside(std::function<std::string()> const& work,
               std::chrono::milliseconds longest = std::chrono::seconds(30));
