#include "state/shared_bytes.h"
#include <unordered_map>

namespace
{

struct SSharing
{
    int sharers = 0;
    bool hasOwner = true;
};

// Never destroyed: frozen states are static objects, and let go of their bytes late.
std::unordered_map<uint8_t*, SSharing>& All()
{
    static auto* const all = new std::unordered_map<uint8_t*, SSharing>;
    return *all;
}

}  // namespace

void SharedBytes::Retain(uint8_t* bytes) { ++All()[bytes].sharers; }

void SharedBytes::Release(uint8_t* bytes)
{
    auto const found = All().find(bytes);
    if (found == All().end() || --found->second.sharers > 0)
        return;
    if (!found->second.hasOwner)
        delete[] bytes;
    All().erase(found);
}

void SharedBytes::Disown(uint8_t* bytes)
{
    auto const found = All().find(bytes);
    if (found == All().end())
        delete[] bytes;
    else
        found->second.hasOwner = false;
}

bool SharedBytes::IsShared(uint8_t* bytes) { return All().count(bytes) != 0; }
