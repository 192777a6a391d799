// Having the content of a data object taken within the call that takes it.
#pragma once

#include "support/com_ptr.h"

#include <shldisp.h>
#include <shlobj.h>

namespace CustomMenu
{

/// Forbids that the content is taken later on another thread, while the result is held; empty when the object offers no
/// such thing.
inline ComPtr<IDataObjectAsyncCapability> TakeSynchronously(IDataObject& data)
{
    ComPtr<IDataObjectAsyncCapability> async;
    if (SUCCEEDED(data.QueryInterface(IID_IDataObjectAsyncCapability, async.ReceiveVoid())))
        async->SetAsyncMode(FALSE);
    return async;
}

} // namespace CustomMenu
