// The keyed store of the shadow state.
//
// An array of heap nodes in the order of insertion, searched from slot 0 upward. It is neither sorted nor
// hashed and must stay so: a snapshot walks the slots, so that their order is the order of the synthetic
// calls in a trace file.
#pragma once
#include "support/relaxed.h"
#include <cstdint>
#include <type_traits>

// Where keys were found last, in all stores together. Beside the stores, whose layout is fixed. A hint may be
// of another key, another store or another time: who follows one looks whether the key is there.
class CSlotHints
{
public:
    template <typename K>
    static int& Of(void const* store, K key)
    {
        uintptr_t bits = reinterpret_cast<uintptr_t>(store) / 16;
        if constexpr (std::is_pointer_v<K>)
            bits += reinterpret_cast<uintptr_t>(key) / 16;
        else
            bits += static_cast<uintptr_t>(key);
        return s_slots[(bits ^ bits / kCount) % kCount];
    }

private:
    static constexpr uintptr_t kCount = 1024;
    static inline int s_slots[kCount] = {};
};

template <typename K, typename V>
class TraceMap
{
public:
    TraceMap() : m_ppSlots(new SNode*[kFirstCapacity]()), m_i32Count(0), m_i32Capacity(kFirstCapacity) {}
    TraceMap(TraceMap const& other) : TraceMap() { *this = other; }
    ~TraceMap()
    {
        FreeNodes();
        m_i32Capacity = 0;
    }

    // Keeps the source's slot order and capacity. What is copied of a value is its own assignment's affair.
    TraceMap& operator=(TraceMap const& other)
    {
        if (this == &other)
            return *this;
        FreeNodes();
        m_i32Count = 0;
        m_i32Capacity = other.m_i32Capacity;
        m_ppSlots = new SNode*[static_cast<uint32_t>(m_i32Capacity)]();
        for (int i = 0; i < other.m_i32Count; ++i)
            if (SNode const* const node = other.m_ppSlots[i])
                (*this)[node->key] = node->value;
        return *this;
    }

    // Finds or creates: a missing key gets a record with its type's defaults. Use Find where none may be
    // added.
    V& operator[](K key)
    {
        int const found = SlotOf(key);
        if (found >= 0)
            return m_ppSlots[found]->value;
        if (!m_ppSlots)
            StartAnew();
        ++m_i32Count;
        if (m_i32Count > m_i32Capacity)
            Grow();
        SNode* const node = new SNode();
        node->key = key;
        m_ppSlots[FirstFreeSlot()] = node;
        return node->value;
    }

    // The last record takes the place of the removed one. An absent key does nothing.
    void removeElement(K key)
    {
        int const found = SlotOf(key);
        if (found < 0)
            return;
        int const last = m_i32Count - 1;
        SNode* const removed = m_ppSlots[found];
        m_ppSlots[found] = m_ppSlots[last];
        m_ppSlots[last] = nullptr;
        --m_i32Count;
        delete removed;
    }

    // A miss is null and adds nothing.
    V* Find(K key)
    {
        int const found = SlotOf(key);
        return found < 0 ? nullptr : &m_ppSlots[found]->value;
    }
    V const* Find(K key) const
    {
        int const found = SlotOf(key);
        return found < 0 ? nullptr : &m_ppSlots[found]->value;
    }

    // The walk: slots 0 to Count() - 1, all of them live.
    int Count() const { return m_i32Count; }
    int Capacity() const { return m_i32Capacity; }
    K KeyAt(int slot) const { return m_ppSlots[slot]->key; }
    V& ValueAt(int slot) { return m_ppSlots[slot]->value; }
    V const& ValueAt(int slot) const { return m_ppSlots[slot]->value; }

private:
    struct SNode
    {
        K key{};
        V value{};
    };

    static constexpr int kFirstCapacity = 10;

    int SlotOf(K key) const
    {
        if (!m_ppSlots)
            return -1;
        int& hint = CSlotHints::Of(this, key);
        int const hinted = LoadRelaxed(hint);
        if (HasAt(hinted, key))
            return hinted;
        for (int i = 0; i < m_i32Count; ++i)
            if (HasAt(i, key))
            {
                StoreRelaxed(hint, i);
                return i;
            }
        return -1;
    }

    bool HasAt(int slot, K key) const
    {
        return slot < m_i32Count && m_ppSlots[slot] && m_ppSlots[slot]->key == key;
    }

    int FirstFreeSlot() const
    {
        int slot = 0;
        while (slot < m_i32Count - 1 && m_ppSlots[slot])
            ++slot;
        return slot;
    }

    // After destruction: a thread may still be calling while the process ends.
    void StartAnew()
    {
        m_ppSlots = new SNode*[kFirstCapacity]();
        m_i32Count = 0;
        m_i32Capacity = kFirstCapacity;
    }

    void Grow()
    {
        SNode** const grown = new SNode*[static_cast<uint32_t>(m_i32Capacity) * 2]();
        for (int i = 0; i < m_i32Capacity; ++i)
            grown[i] = m_ppSlots[i];
        delete[] m_ppSlots;
        m_ppSlots = grown;
        m_i32Capacity *= 2;
    }

    void FreeNodes()
    {
        for (int i = 0; i < m_i32Capacity; ++i)
            delete m_ppSlots[i];
        delete[] m_ppSlots;
        m_ppSlots = nullptr;
    }

    SNode** m_ppSlots;
    int m_i32Count;
    int m_i32Capacity;
};
