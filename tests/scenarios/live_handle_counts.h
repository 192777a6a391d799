// All live-handle counts at one moment, for telling that something has left none behind.
#pragma once

#include "platform/base/handle_table.h"

#include <array>

using HandleCounts = std::array<std::size_t, static_cast<std::size_t>(platform::HandleKind::Count)>;

inline HandleCounts CountHandles()
{
    HandleCounts counts{};
    for (std::size_t kind = 0; kind < counts.size(); ++kind)
        counts[kind] = platform::LiveHandles(static_cast<platform::HandleKind>(kind));
    return counts;
}
