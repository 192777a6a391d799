// CoCreateInstance.
#include "platform/shell/create_instance.h"

#include "platform/base/fault_points.h"
#include "platform/ole/drag_picture.h"

HRESULT CoCreateInstance(REFCLSID classId, IUnknown*, DWORD, REFIID iid, LPVOID* result)
{
    if (result == nullptr)
        return E_POINTER;
    *result = nullptr;
    if (platform::FaultPoint("CoCreateInstance"))
        return E_OUTOFMEMORY;
    IUnknown* object = classId == CLSID_ShellLink        ? platform::MakeShellLink()
                       : classId == CLSID_FileOpenDialog ? platform::MakeFileDialog()
                       : classId == CLSID_DragDropHelper ? platform::MakeDragDropHelper()
                                                         : nullptr;
    if (object == nullptr)
        return REGDB_E_CLASSNOTREG;
    const HRESULT queried = object->QueryInterface(iid, result);
    object->Release();
    return queried;
}
