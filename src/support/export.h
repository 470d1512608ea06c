// The library hides everything by default; what other objects may reach carries this.
#pragma once
#define NEBTRACE_API __attribute__((visibility("default")))
