// The installed fault hook.
#include "platform/base/fault_points.h"

namespace platform
{

constinit FaultHook g_faultHook = nullptr;

} // namespace platform
