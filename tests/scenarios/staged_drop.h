// What is dragged onto a level, and a folder whose drop target does what the story says.
#pragma once

#include "tests/scenarios/staged.h"

#include <shlobj.h>

#include <functional>
#include <string>
#include <vector>

/// Lives as long as its story, which fails if a reference to it is left at the end.
template <typename Interface, const IID& interfaceId>
class StagedObject : public Interface
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        *object = iid == interfaceId || iid == IID_IUnknown ? static_cast<Interface*>(this) : nullptr;
        if (*object == nullptr)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }

    int references = 0;
};

class StagedData final : public StagedObject<IDataObject, IID_IDataObject>
{
public:
    StagedData();
    ~StagedData();

    bool isShellItems = true;
    FORMATETC asked{};            ///< the last
    std::vector<BOOL> asyncModes; ///< as set

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC*, STGMEDIUM*) override { return DV_E_FORMATETC; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override;
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }

private:
    class Async final : public StagedObject<IDataObjectAsyncCapability, IID_IDataObjectAsyncCapability>
    {
    public:
        explicit Async(StagedData& data) : m_data(data) {}
        HRESULT STDMETHODCALLTYPE SetAsyncMode(BOOL async) override
        {
            m_data.asyncModes.push_back(async);
            return S_OK;
        }
        HRESULT STDMETHODCALLTYPE GetAsyncMode(BOOL*) override { return E_NOTIMPL; }

    private:
        StagedData& m_data;
    };
    Async m_async{*this};
};

/// What one call of the folder's drop target was told.
struct StagedCall
{
    std::string name;
    DWORD keyState;
    DWORD effect;
    bool operator==(const StagedCall&) const = default;
};
std::ostream& operator<<(std::ostream& out, const StagedCall& call);

class StagedDropTarget final : public StagedObject<IDropTarget, IID_IDropTarget>
{
public:
    ~StagedDropTarget();

    bool refuses = false;
    DWORD answer = DROPEFFECT_COPY; ///< to DragOver and Drop
    std::function<void()> onDrop;
    std::vector<StagedCall> calls;

    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keyState, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragLeave() override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keyState, POINTL point, DWORD* effect) override;
};

/// While it lives, what the launcher drags goes where the story says.
class StagedDrag : public Staged<StagedDrag>
{
public:
    std::function<void()> onDrag; ///< what happens while the mouse is held
    DWORD effect = DROPEFFECT_NONE;

    int drags = 0;
    // The last one.
    HWND window = nullptr;
    IDataObject* data = nullptr; ///< not held
    bool hasSource = false;
    DWORD allowed = 0;
};

/// Stands for a level's folder (m_folder) until the level is loaded anew; knows of drop targets alone.
class StagedDropFolder final : public IncapableFolder<StagedObject<IShellFolder, IID_IShellFolder>>
{
public:
    ~StagedDropFolder();

    StagedDropTarget target;
    bool hasTarget = true;
    HWND owner = nullptr; ///< that the target was asked for

    HRESULT STDMETHODCALLTYPE CreateViewObject(HWND window, REFIID iid, void** result) override;
};
