// Access to what several threads read and write without a lock, by design: in no order, but each value whole.
// The objects themselves stay plain, as the interface has them.
#pragma once

template <typename T>
T LoadRelaxed(T const& object)
{
    return __atomic_load_n(&object, __ATOMIC_RELAXED);
}

template <typename T>
void StoreRelaxed(T& object, T value)
{
    __atomic_store_n(&object, value, __ATOMIC_RELAXED);
}
