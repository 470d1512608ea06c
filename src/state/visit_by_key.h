// Walks a keyed store by ascending key instead of by slot.
#pragma once
#include "state/trace_map.h"

// Calls `visit(key, value)`. Keys that are missing are skipped. The stores are small: the next key is
// searched for each time.
template <typename K, typename V, typename Visit>
void VisitByKey(TraceMap<K, V> const& map, Visit visit)
{
    int last = -1;
    for (int visited = 0; visited < map.Count(); ++visited)
    {
        int next = -1;
        for (int slot = 0; slot < map.Count(); ++slot)
        {
            bool const isAbove = last < 0 || map.KeyAt(slot) > map.KeyAt(last);
            if (isAbove && (next < 0 || map.KeyAt(slot) < map.KeyAt(next)))
                next = slot;
        }
        last = next;
        visit(map.KeyAt(next), map.ValueAt(next));
    }
}
