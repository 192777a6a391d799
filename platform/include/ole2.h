// OLE data transfer interfaces.
#pragma once

#include "objbase.h"

struct POINTL
{
    LONG x;
    LONG y;
};

#define DROPEFFECT_NONE 0
#define DROPEFFECT_COPY 1
#define DROPEFFECT_MOVE 2
#define DROPEFFECT_LINK 4

struct IDataObject : IUnknown
{
protected:
    ~IDataObject() = default;
};

struct IDropTarget : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) = 0;
    virtual HRESULT STDMETHODCALLTYPE DragOver(DWORD keyState, POINTL point, DWORD* effect) = 0;
    virtual HRESULT STDMETHODCALLTYPE DragLeave() = 0;
    virtual HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) = 0;

protected:
    ~IDropTarget() = default;
};

extern const IID IID_IDataObject;
extern const IID IID_IDropTarget;

HRESULT OleInitialize(LPVOID reserved);
void OleUninitialize();
