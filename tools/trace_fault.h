// What is wrong with a trace, in one line, and what to do about it.
#pragma once
#include "trace/reader.h"

// "footer", "no footer", "truncated" or "damaged", as objects for programs have it.
char const* EndName(nebtrace::EndState end);

// Where a trace ends that does not end in order. What is whole ahead of that can be kept.
std::string TraceFault(std::string const& file, nebtrace::EndState end, uint64_t offset,
                       std::string const& reason);
std::string TraceFault(std::string const& file, nebtrace::Reader const& reader);
