// COM start-up and object creation. No class can be created by its identifier yet.
#include "ole2.h"

#include "platform/base/fault_points.h"

HRESULT OleInitialize(LPVOID reserved)
{
    if (platform::FaultPoint("OleInitialize"))
        return E_OUTOFMEMORY;
    return reserved == nullptr ? S_OK : E_INVALIDARG;
}

void OleUninitialize() {}

HRESULT CoCreateInstance(REFCLSID, IUnknown*, DWORD, REFIID, LPVOID* object)
{
    if (object == nullptr)
        return E_POINTER;
    *object = nullptr;
    return REGDB_E_CLASSNOTREG;
}
