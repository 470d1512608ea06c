// A single-owner pointer to an object with a virtual destructor.
#pragma once
#include "support/log.h"
#include <type_traits>

template <typename T>
class TraceScopedPtr
{
public:
    explicit TraceScopedPtr(T* object = nullptr) : m_pObject(object) {}
    TraceScopedPtr(TraceScopedPtr const&) = delete;
    TraceScopedPtr& operator=(TraceScopedPtr const&) = delete;
    ~TraceScopedPtr() { Reset(nullptr); }

    // On purpose: an empty pointer is told of and then handed out as it is.
    T* operator->() const
    {
        if (!m_pObject)
            LogRaw("Error refering empty TraceScopedPtr\n");
        return m_pObject;
    }

    T* Get() const { return m_pObject; }

    void Reset(T* object)
    {
        static_assert(std::has_virtual_destructor<T>::value, "the held object is destroyed through its base");
        T* const old = m_pObject;
        m_pObject = object;
        delete old;
    }

private:
    T* m_pObject;
};
