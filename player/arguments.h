// The arguments of a plain call, as words for the driver. What pointers point at is copied, aligned, and
// checked against the count that the driver goes by.
#pragma once
#include "player/call.h"
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace nebtrace::player
{
// What a record lacks of what the driver may read is made up for, but not beyond this: a record of a few
// bytes must not cost gigabytes.
constexpr uint64_t kMostPadding = 64U << 20;

// Memory that any GL type may be read from.
class Copy
{
public:
    // As long as the bytes, or longer: then with zeros behind them.
    explicit Copy(Bytes bytes, size_t least = 0);
    void* Data() { return m_words.data(); }
    uint8_t const* Begin() const { return reinterpret_cast<uint8_t const*>(m_words.data()); }

private:
    std::vector<uint64_t> m_words;
};

// From a class of objects and a recorded name to the player's own name.
using Translate = std::function<uint32_t(std::string const& kind, uint32_t recorded)>;

class Arguments
{
public:
    // Throws BadRecord for an array that is shorter than its call says.
    Arguments(Call const& call, Translate const& translate);

    uint64_t const* Words() const { return m_words.data(); }
    size_t Count() const { return m_words.size(); }

private:
    void AddScalar(DecodedField const& field, Translate const& translate);
    void AddArray(Call const& call, DecodedField const& field, Translate const& translate);
    void AddText(DecodedField const& field);
    void AddCopy(Bytes bytes, size_t least);

    std::vector<uint64_t> m_words;
    std::vector<std::unique_ptr<Copy>> m_copies;
};

// Sign-extended where the kind is signed.
uint64_t WordOf(DecodedField const& field);
// The number of elements that the driver reads of an array, as the call's own argument gives it; -1 if the
// call has no such argument.
int64_t CountOf(Call const& call);
}  // namespace nebtrace::player
