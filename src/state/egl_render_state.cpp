#include "state/egl_render_state.h"
#include "api/types.h"
#include <algorithm>

CEglRenderState::eglAttributeList::eglAttributeList(int const* list)
{
    if (!list)
        return;
    count = 1;
    while (list[count - 1] != EGL_NONE)
        count += 2;
    data = new int[count];
    std::copy(list, list + count, data);
}

CEglRenderState::eglAttributeList& CEglRenderState::eglAttributeList::operator=(eglAttributeList const& other)
{
    if (this == &other)
        return *this;
    count = other.count;
    delete[] data;
    data = nullptr;
    if (!other.data || count == 0)
        return *this;
    data = new int[count];
    std::copy(other.data, other.data + count, data);
    return *this;
}
