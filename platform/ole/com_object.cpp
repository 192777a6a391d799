// The count of live shell objects.
#include "platform/ole/com_object.h"

namespace platform
{

std::atomic<long>& LiveShellObjects()
{
    static constinit std::atomic<long> count{0};
    return count;
}

} // namespace platform
