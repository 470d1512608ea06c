// One constant for each API function, in the namespace of its API: Es2::Calls::glFlush and its kin.
#pragma once
#include "host/hosts.h"
#include "wrappers/egl.h"
#include "wrappers/es1.h"
#include "wrappers/es2.h"
#include "wrappers/frame.h"

template <>
struct SHostOf<SEglHost>
{
    static SEglHost* Table() { return EglHost(); }
    static inline SApi const api = {Egl::error, EGL_SUCCESS, Egl::ClearError, Egl::CheckHostError, 0};
};
template <>
struct SHostOf<SEs1Host>
{
    static SEs1Host* Table() { return Es1Host(); }
    static inline SApi const api = {Es1::error, GL_NO_ERROR, Es1::ClearError, Es1::CheckHostError, 1};
};
template <>
struct SHostOf<SEs2Host>
{
    static SEs2Host* Table() { return Es2Host(); }
    static inline SApi const api = {Es2::error, GL_NO_ERROR, Es2::ClearError, Es2::CheckHostError, 2};
};

namespace Egl
{
namespace Calls
{
#define EGL(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    inline constexpr SCall name{&SEglHost::name, {id, kind, defaultResult}};
#define EGL_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    inline constexpr SCall name{&SEglHost::name, {id, kind, defaultResult}};
#include "api/egl.def"
}  // namespace Calls
}  // namespace Egl

namespace Es1
{
namespace Calls
{
#define ES1(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    inline constexpr SCall name{&SEs1Host::name, {id, kind, defaultResult}};
#include "api/es1.def"
}  // namespace Calls
}  // namespace Es1

namespace Es2
{
namespace Calls
{
#define ES2(id, kind, defaultResult, result, name, parameters, arguments)                                    \
    inline constexpr SCall name{&SEs2Host::name, {id, kind, defaultResult}};
#define ES2_REPLAYED(id, kind, defaultResult, result, name, parameters, arguments, wrapperParameters)        \
    inline constexpr SCall name{&SEs2Host::name, {id, kind, defaultResult}};
#include "api/es2.def"
}  // namespace Calls
}  // namespace Es2
