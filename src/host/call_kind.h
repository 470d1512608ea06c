// What the function tables say of a call beyond its signature.
#pragma once
#include <cstdint>

enum ECallKind : uint8_t
{
    kCore = 0,          // looked up when the host table is made
    kExtension = 1,     // filled by the exchange, may be missing; a GL record carries the API byte
    kDraw = 2,          // the profiler's overrides go around the host call
    kNotExchanged = 4,  // no exchange knows the name, so that its entry stays null
    kCoreDraw = kCore | kDraw,
    kExtensionDraw = kExtension | kDraw,
    kUnexchanged = kExtension | kNotExchanged,
};
