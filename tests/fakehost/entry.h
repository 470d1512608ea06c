// What the three libraries are made of. Each entry is expanded from a function table.
#pragma once

// The libraries define the plain names themselves, some under other parameter types than the headers'.
#define EGL_EGL_PROTOTYPES 0
#define GL_GLES_PROTOTYPES 0
#include "api/types.h"
#include "tests/fakehost/control.h"

#define FAKE_ENTRY extern "C" __attribute__((visibility("default")))

namespace fakehost
{

template <typename R>
struct Entry
{
    char const* api;
    char const* name;
    unsigned int defaultResult;

    template <typename... Args>
    R operator()(Args... arguments) const
    {
        Call call{api, name, {AsWord(arguments)...}, std::this_thread::get_id()};
        Word const answer = Fake().Answer(std::move(call), defaultResult);
        if constexpr (!std::is_void_v<R>)
            return FromWord<R>(answer);
    }
};

}  // namespace fakehost
