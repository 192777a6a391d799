// COM start-up. Objects are created in shell/, where the classes are.
#include "ole2.h"

#include "platform/base/fault_points.h"

HRESULT OleInitialize(LPVOID reserved)
{
    if (platform::FaultPoint("OleInitialize"))
        return E_OUTOFMEMORY;
    return reserved == nullptr ? S_OK : E_INVALIDARG;
}

void OleUninitialize() {}
