// What the launcher relies on in the shell's data objects and in folders as drop targets.
#include "control_desk.h"
#include "shell_desk.h"

#include <cstring>

using namespace conformance;

namespace
{

constexpr DWORD kAllEffects = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;

FORMATETC ItemArrayFormat()
{
    const UINT format = RegisterClipboardFormatW(TEXT("Shell IDList Array"));
    return {static_cast<CLIPFORMAT>(format), nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

class DragShell : public OleDesk
{
protected:
    /// Drops items of the desk's folder into one of its folders: the effect that the target reports.
    DWORD Drop(const WCHAR* name, const WCHAR* into, DWORD keys, DWORD allowed)
    {
        const Com<IDataObject> data = DataOf({name});
        void* object = nullptr;
        EXPECT_EQ(m_folder->BindToObject(Child(into).get(), nullptr, IID_IShellFolder, &object), S_OK);
        EXPECT_EQ(Taken<IShellFolder>(object)->CreateViewObject(nullptr, IID_IDropTarget, &object), S_OK);
        const auto target = Taken<IDropTarget>(object);
        DWORD effect = allowed;
        EXPECT_EQ(target->DragEnter(data.get(), keys, {10, 10}, &effect), S_OK);
        m_offered = allowed;
        EXPECT_EQ(target->DragOver(keys, {10, 10}, &m_offered), S_OK);
        effect = m_offered;
        EXPECT_EQ(target->Drop(data.get(), keys, {10, 10}, &effect), S_OK);
        return effect;
    }

    DWORD m_offered = 0;
};

} // namespace

TEST_F(DragShell, ItemsAreOfferedAsAnArrayOfLists)
{
    const Com<IDataObject> data = DataOf({TEXT("One.txt"), TEXT("Folder")});
    FORMATETC format = ItemArrayFormat();
    ASSERT_EQ(data->QueryGetData(&format), S_OK);
    STGMEDIUM medium{};
    ASSERT_EQ(data->GetData(&format, &medium), S_OK);
    ASSERT_EQ(medium.tymed, static_cast<DWORD>(TYMED_HGLOBAL));
    const auto* bytes = static_cast<const BYTE*>(GlobalLock(medium.hGlobal));
    const auto* array = reinterpret_cast<const CIDA*>(bytes);
    ASSERT_EQ(array->cidl, 2u);
    const auto listAt = [&](UINT i)
    {
        UINT offset = 0;
        std::memcpy(&offset, bytes + sizeof(UINT) * (1 + i), sizeof offset);
        return reinterpret_cast<const ITEMIDLIST*>(bytes + offset);
    };
    const Text names[] = {TEXT("One.txt"), TEXT("Folder")};
    for (UINT i = 0; i < 2; ++i)
    {
        WCHAR path[MAX_PATH] = {};
        const List whole(ILCombine(listAt(0), listAt(i + 1)));
        EXPECT_TRUE(SHGetPathFromIDListW(whole.get(), path));
        EXPECT_EQ(path, ShellPath(m_root) + TEXT("\\") + names[i]);
    }
    GlobalUnlock(medium.hGlobal);
    ReleaseStgMedium(&medium);
    format.cfFormat = static_cast<CLIPFORMAT>(RegisterClipboardFormatW(TEXT("OrbLauncher no such format")));
    EXPECT_NE(data->QueryGetData(&format), S_OK);
    EXPECT_TRUE(FAILED(data->GetData(&format, &medium)));
}

TEST_F(DragShell, AFolderTakesItemsAndCopiesWithCtrl)
{
    EXPECT_EQ(Drop(TEXT("One.txt"), TEXT("Folder"), MK_LBUTTON | MK_CONTROL, kAllEffects),
              static_cast<DWORD>(DROPEFFECT_COPY));
    EXPECT_EQ(m_offered, static_cast<DWORD>(DROPEFFECT_COPY));
    EXPECT_TRUE(std::filesystem::exists(m_root / "One.txt"));
    if (OnWine())
        GTEST_SKIP() << "Wine's folders report a drop and do nothing";
    EXPECT_TRUE(std::filesystem::exists(m_root / "Folder" / "One.txt"));
}

TEST_F(DragShell, KeysAndWhatIsAllowedChooseTheEffect)
{
    if (OnWine())
        GTEST_SKIP() << "Wine's folders know no links and report what is not allowed";
    const struct
    {
        DWORD keys, allowed, effect;
        bool stays;
    } cases[] = {
        {MK_LBUTTON, DROPEFFECT_LINK, DROPEFFECT_LINK, true},
        {MK_LBUTTON | MK_CONTROL | MK_SHIFT, kAllEffects, DROPEFFECT_LINK, true},
        {MK_LBUTTON | MK_SHIFT, kAllEffects, DROPEFFECT_MOVE, false},
        {MK_LBUTTON, kAllEffects, DROPEFFECT_MOVE, false}, // on one file system
    };
    for (const auto& one : cases)
    {
        std::ofstream(m_root / "One.txt") << "content";
        Drop(TEXT("One.txt"), TEXT("Folder"), one.keys, one.allowed);
        EXPECT_EQ(m_offered, one.effect);
        EXPECT_EQ(std::filesystem::exists(m_root / "One.txt"), one.stays);
        EXPECT_FALSE(std::filesystem::is_empty(m_root / "Folder"));
        std::filesystem::remove_all(m_root / "Folder");
        std::filesystem::create_directory(m_root / "Folder");
    }
}

TEST_F(DragShell, AnItemOfAListHasAPicture)
{
    const List item(ILCombine(m_rootList.get(), Child(TEXT("Folder")).get()));
    void* object = nullptr;
    ASSERT_EQ(SHCreateItemFromIDList(item.get(), IID_IShellItem, &object), S_OK);
    ASSERT_EQ(Taken<IShellItem>(object)->QueryInterface(IID_IShellItemImageFactory, &object), S_OK);
    const auto factory = Taken<IShellItemImageFactory>(object);
    HBITMAP bitmap = nullptr;
    ASSERT_EQ(factory->GetImage({96, 96}, SIIGBF_RESIZETOFIT, &bitmap), S_OK);
    BITMAP info{};
    ASSERT_NE(GetObjectW(bitmap, sizeof info, &info), 0);
    EXPECT_LE(info.bmWidth, 96);
    EXPECT_LE(info.bmHeight, 96);
    EXPECT_EQ(info.bmBitsPixel, 32);
    EXPECT_TRUE(DeleteObject(bitmap));
}
