// RegisterDragDrop, RevokeDragDrop, DoDragDrop.
#include "ole2.h"

HRESULT RegisterDragDrop(HWND, IDropTarget*)
{
    return E_NOTIMPL;
}

HRESULT RevokeDragDrop(HWND)
{
    return E_NOTIMPL;
}

HRESULT DoDragDrop(IDataObject*, IDropSource*, DWORD, DWORD*)
{
    return E_NOTIMPL;
}
