// The heap's pages.
#pragma once

#include <cstddef>

namespace platform
{

/// Has that many bytes of memory ready for small allocations to come: asking for the pages in one go costs less than
/// being given each of them when it is first touched, in the middle of other work. Best effort. From then on the heap
/// keeps what is freed.
void PrepareHeap(std::size_t bytes);

} // namespace platform
