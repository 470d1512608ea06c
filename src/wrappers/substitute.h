// Stands in for an output pointer that the application may leave null. The profiler's hooks see it in the
// argument's place as the host does.
#pragma once

template <typename T>
class CSubstitute
{
public:
    // Starts from the caller's value, so that a call that writes nothing changes nothing.
    explicit CSubstitute(T* given) : value(given ? *given : T{}), m_given(given) {}
    CSubstitute(CSubstitute const&) = delete;
    CSubstitute& operator=(CSubstitute const&) = delete;

    void CopyBack() const
    {
        if (m_given)
            *m_given = value;
    }

    T value;
    T* pointer = &value;  // what the host gets

private:
    T* m_given;
};
