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

using CLIPFORMAT = WORD;
struct DVTARGETDEVICE;

#define DVASPECT_CONTENT 1
#define TYMED_HGLOBAL 1

struct FORMATETC
{
    CLIPFORMAT cfFormat;
    DVTARGETDEVICE* ptd;
    DWORD dwAspect;
    LONG lindex;
    DWORD tymed;
};

struct STGMEDIUM
{
    DWORD tymed;
    HGLOBAL hGlobal;
    IUnknown* pUnkForRelease;
};

#define DATADIR_GET 1

struct IEnumFORMATETC : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, FORMATETC* formats, ULONG* fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumFORMATETC** clone) = 0;

protected:
    ~IEnumFORMATETC() = default;
};

/// Content that can be had in several formats. A format whose registered name (RegisterClipboardFormatW) is a kind of
/// content as programs here name it ("text/uri-list", "UTF8_STRING") holds that content's bytes, as many as GlobalSize
/// says; such formats are what other programs are offered.
struct IDataObject : IUnknown
{
    /// *medium is freed with ReleaseStgMedium. DV_E_FORMATETC for a format that is not there, DV_E_TYMED for a medium
    /// other than memory; E_FAIL when the content's owner does not answer or sends what the format does not allow.
    virtual HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) = 0;
    /// S_OK when GetData would find the format; asks nobody.
    virtual HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) = 0;
    /// `release`: the medium becomes the object's.
    virtual HRESULT STDMETHODCALLTYPE SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) = 0;
    /// The best format first.
    virtual HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) = 0;

protected:
    ~IDataObject() = default;
};

struct IDropSource : IUnknown
{
    /// S_OK to go on, DRAGDROP_S_DROP or DRAGDROP_S_CANCEL to end.
    virtual HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escapePressed, DWORD keyState) = 0;
    /// DRAGDROP_S_USEDEFAULTCURSORS for the display's own pictures.
    virtual HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD effect) = 0;

protected:
    ~IDropSource() = default;
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
extern const IID IID_IDropSource;
extern const IID IID_IDropTarget;
extern const IID IID_IEnumFORMATETC;

HRESULT OleInitialize(LPVOID reserved);
void OleUninitialize();

/// The target is referenced until RevokeDragDrop or the window's end. DRAGDROP_E_ALREADYREGISTERED,
/// DRAGDROP_E_INVALIDHWND.
HRESULT RegisterDragDrop(HWND window, IDropTarget* target);
/// DRAGDROP_E_NOTREGISTERED.
HRESULT RevokeDragDrop(HWND window);
/// Drags until the button is released or the drag cancelled, dispatching messages meanwhile. DRAGDROP_S_DROP with what
/// was done in *effect, DRAGDROP_S_CANCEL; E_FAIL when the display does not let the pointer be followed.
HRESULT DoDragDrop(IDataObject* data, IDropSource* source, DWORD allowed, DWORD* effect);
void ReleaseStgMedium(STGMEDIUM* medium);
