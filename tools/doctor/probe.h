// A try at the machine's driver, in a process that it may crash or hang in.
#pragma once
#include "player/driver.h"
#include <map>
#include <string>

namespace doctor
{
// Facts by their names; one called "failure" where something did not work.
using Facts = std::map<std::string, std::string>;
constexpr char kFailure[] = "failure";

// Opens the libraries as `nebtrace replay` does, and runs `look` on them. What drivers say on the standard
// streams goes nowhere.
Facts Probe(Facts (*look)(nebtrace::player::Driver const& driver));

std::string ErrorText(nebtrace::player::EglFunctions const& egl);
// A string of the driver's that may be null.
std::string Text(void const* text);
}  // namespace doctor
