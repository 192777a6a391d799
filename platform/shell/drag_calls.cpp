// SHDoDragDrop.
#include "shlobj.h"

HRESULT SHDoDragDrop(HWND, IDataObject* data, IDropSource* source, DWORD allowed, DWORD* effect)
{
    return DoDragDrop(data, source, allowed, effect);
}
