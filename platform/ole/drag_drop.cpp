// DoDragDrop.
#include "ole2.h"

HRESULT DoDragDrop(IDataObject*, IDropSource*, DWORD, DWORD*)
{
    return E_NOTIMPL;
}
