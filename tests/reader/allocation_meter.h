// Counts the bytes that the test program holds, to show that a hostile length allocates nothing.
#pragma once
#include <cstddef>

// The most bytes that were held at once beyond what was held when the object was made.
class AllocationMeter
{
public:
    AllocationMeter();
    size_t Peak() const;

private:
    size_t m_before;
};
