// The objects of one class: from the names or handles of the recording to the player's own.
#pragma once
#include <cstdint>
#include <unordered_map>

namespace nebtrace::player
{
template <typename Own>
class ObjectMap
{
public:
    bool Has(uint32_t recorded) const { return m_own.count(recorded) != 0; }

    // The null object is its own; `unknown` for what the recording has not made.
    Own Find(uint32_t recorded, Own unknown) const
    {
        if (recorded == 0)
            return Own{};
        auto const found = m_own.find(recorded);
        return found == m_own.end() ? unknown : found->second;
    }

    // A name that came into being twice without being deleted stands for the newer object.
    void Set(uint32_t recorded, Own own)
    {
        if (recorded != 0)
            m_own[recorded] = std::move(own);
    }

    void Forget(uint32_t recorded) { m_own.erase(recorded); }

    // The way back, for the outputs of queries: 0 for what the recording has no name for.
    uint32_t Recorded(Own own) const
    {
        for (auto const& entry : m_own)
            if (entry.second == own)
                return entry.first;
        return 0;
    }

    auto begin() const { return m_own.begin(); }
    auto end() const { return m_own.end(); }
    bool Empty() const { return m_own.empty(); }

private:
    std::unordered_map<uint32_t, Own> m_own;
};
}  // namespace nebtrace::player
