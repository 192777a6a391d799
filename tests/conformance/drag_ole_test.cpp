// What the launcher and the shell's objects rely on in OLE: drop targets of windows, lists of formats, owned content.
#include "shell_desk.h"

using namespace conformance;

namespace
{

/// Refuses everything; counts what is held.
class IdleTarget final : public IDropTarget
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDropTarget);
        *object = known ? static_cast<IDropTarget*>(this) : nullptr;
        if (known)
            AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject*, DWORD, POINTL, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DragOver(DWORD, POINTL, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DragLeave() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Drop(IDataObject*, DWORD, POINTL, DWORD*) override { return E_NOTIMPL; }

    ULONG references = 0;
};

using DragOle = OleDesk;

HWND MakeWindow()
{
    return CreateWindowExW(0, TEXT("STATIC"), nullptr, WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
}

TEST_F(DragOle, AWindowHasOneDropTargetUntilItIsRevoked)
{
    IdleTarget target;
    const HWND window = MakeWindow();
    EXPECT_EQ(RegisterDragDrop(nullptr, &target), DRAGDROP_E_INVALIDHWND);
    EXPECT_EQ(RevokeDragDrop(nullptr), DRAGDROP_E_INVALIDHWND);
    EXPECT_EQ(RegisterDragDrop(window, nullptr), E_INVALIDARG);
    EXPECT_EQ(RevokeDragDrop(window), DRAGDROP_E_NOTREGISTERED);
    EXPECT_EQ(RegisterDragDrop(window, &target), S_OK);
    EXPECT_GT(target.references, 0u);
    EXPECT_EQ(RegisterDragDrop(window, &target), DRAGDROP_E_ALREADYREGISTERED);
    EXPECT_EQ(RevokeDragDrop(window), S_OK);
    EXPECT_EQ(target.references, 0u);
    EXPECT_EQ(RevokeDragDrop(window), DRAGDROP_E_NOTREGISTERED);
    DestroyWindow(window);
    EXPECT_EQ(RegisterDragDrop(window, &target), DRAGDROP_E_INVALIDHWND);
    EXPECT_EQ(RevokeDragDrop(window), DRAGDROP_E_INVALIDHWND);
}

TEST_F(DragOle, FormatsAreListedFromWhereTheListIs)
{
    const Com<IDataObject> data = DataOf({TEXT("One.txt")});
    IEnumFORMATETC* formats = nullptr;
    ASSERT_EQ(data->EnumFormatEtc(DATADIR_GET, &formats), S_OK);
    const Com<IEnumFORMATETC> formatsOwner(formats);
    FORMATETC first{};
    FORMATETC second{};
    ULONG fetched = 0;
    ASSERT_EQ(formats->Next(1, &first, nullptr), S_OK);
    EXPECT_EQ(first.tymed & TYMED_HGLOBAL, static_cast<DWORD>(TYMED_HGLOBAL));
    EXPECT_EQ(data->QueryGetData(&first), S_OK);
    ASSERT_EQ(formats->Next(1, &second, &fetched), S_OK);
    EXPECT_EQ(fetched, 1u);
    EXPECT_NE(second.cfFormat, first.cfFormat);
    EXPECT_EQ(formats->Reset(), S_OK);
    EXPECT_EQ(formats->Skip(1), S_OK);
    FORMATETC again[100]{};
    EXPECT_EQ(formats->Next(100, again, &fetched), S_FALSE);
    EXPECT_GE(fetched, 1u);
    EXPECT_EQ(again[0].cfFormat, second.cfFormat);
    EXPECT_EQ(formats->Next(1, again, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
    EXPECT_EQ(formats->Skip(1), S_FALSE);
}

TEST_F(DragOle, AMediumIsFreedByItsOwnerOrByWhoReleasesIt)
{
    IdleTarget owner;
    STGMEDIUM medium{};
    medium.tymed = TYMED_HGLOBAL;
    medium.hGlobal = GlobalAlloc(GMEM_MOVEABLE, 8);
    const HGLOBAL memory = medium.hGlobal;
    owner.AddRef();
    owner.AddRef();
    medium.pUnkForRelease = &owner;
    ReleaseStgMedium(&medium);
    EXPECT_EQ(owner.references, 1u);
    EXPECT_EQ(medium.tymed, 0u);
    EXPECT_EQ(GlobalSize(memory), 8u) << "the owner's";
    medium = {};
    medium.tymed = TYMED_HGLOBAL;
    medium.hGlobal = memory;
    ReleaseStgMedium(&medium);
    EXPECT_EQ(medium.tymed, 0u);
    ReleaseStgMedium(&medium); // holds nothing any more
}

} // namespace
