// What the launcher relies on in folders, their items' names and attributes, and context menus.
#include "control_desk.h"
#include "shell_desk.h"

using namespace conformance;

namespace
{

std::set<Text> Listed(IShellFolder* folder, DWORD flags)
{
    std::set<Text> names;
    IEnumIDList* raw = nullptr;
    if (folder->EnumObjects(nullptr, flags, &raw) != S_OK)
        return {TEXT("(not enumerated)")};
    const Com<IEnumIDList> items(raw);
    ITEMIDLIST* item = nullptr;
    while (items->Next(1, &item, nullptr) == S_OK)
    {
        const List owner(item);
        names.insert(NameOf(folder, item, SHGDN_INFOLDER | SHGDN_FORPARSING));
    }
    return names;
}

ULONG AttributesOf(IShellFolder* folder, const List& item)
{
    constexpr ULONG kMask = SFGAO_FOLDER | SFGAO_STREAM | SFGAO_LINK;
    ULONG attributes = kMask;
    const ITEMIDLIST* items[] = {item.get()};
    EXPECT_EQ(folder->GetAttributesOf(1, items, &attributes), S_OK);
    return attributes & kMask;
}

} // namespace

TEST_F(ShellDesk, EnumerationListsFoldersAndFilesAsAsked)
{
    EXPECT_EQ(Listed(m_folder.get(), SHCONTF_FOLDERS | SHCONTF_NONFOLDERS),
              (std::set<Text>{TEXT("Folder"), TEXT("Folder.x"), TEXT("One.txt"), TEXT("two")}));
    EXPECT_EQ(Listed(m_folder.get(), SHCONTF_FOLDERS), (std::set<Text>{TEXT("Folder"), TEXT("Folder.x")}));
    EXPECT_EQ(Listed(m_folder.get(), SHCONTF_NONFOLDERS), (std::set<Text>{TEXT("One.txt"), TEXT("two")}));
}

TEST_F(ShellDesk, AnEnumeratorGoesForwardAndBackToItsStart)
{
    IEnumIDList* raw = nullptr;
    ASSERT_EQ(m_folder->EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, &raw), S_OK);
    const Com<IEnumIDList> items(raw);
    ITEMIDLIST* batch[8] = {};
    ULONG fetched = 99;
    EXPECT_TRUE(SUCCEEDED(items->Next(8, batch, &fetched))); // S_FALSE for fewer than asked, but S_OK from Wine
    EXPECT_EQ(fetched, 4u);
    std::for_each(batch, batch + 4, ILFree);
    EXPECT_EQ(items->Next(1, batch, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
    EXPECT_EQ(items->Reset(), S_OK);
    EXPECT_EQ(items->Skip(3), S_OK);
    EXPECT_EQ(items->Next(1, batch, nullptr), S_OK);
    ILFree(batch[0]);
    EXPECT_EQ(items->Next(1, batch, nullptr), S_FALSE);
}

TEST_F(ShellDesk, AnEmptyFolderEnumeratesNothing)
{
    const List empty = Child(TEXT("Folder"));
    IShellFolder* bound = nullptr;
    ASSERT_EQ(m_folder->BindToObject(empty.get(), nullptr, IID_IShellFolder, reinterpret_cast<void**>(&bound)), S_OK);
    const Com<IShellFolder> owner(bound);
    EXPECT_EQ(Listed(bound, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS), std::set<Text>{});
}

TEST_F(ShellDesk, NamesInTheFolderAndWhole)
{
    const List file = Child(TEXT("One.txt"));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(NameOf(m_folder.get(), file.get(), SHGDN_INFOLDER | SHGDN_FORPARSING), TEXT("One.txt"));
    EXPECT_EQ(NameOf(m_folder.get(), file.get(), SHGDN_FORPARSING), ShellPath(m_root) + TEXT("\\One.txt"));
    EXPECT_EQ(NameOf(m_folder.get(), Child(TEXT("Folder.x")).get(), SHGDN_INFOLDER), TEXT("Folder.x"));
    WCHAR path[MAX_PATH];
    const List whole(ILCombine(m_rootList.get(), file.get()));
    ASSERT_TRUE(SHGetPathFromIDListW(whole.get(), path));
    EXPECT_EQ(path, ShellPath(m_root) + TEXT("\\One.txt"));
}

TEST_F(ShellDesk, AttributesTellFoldersFromFiles)
{
    EXPECT_EQ(AttributesOf(m_folder.get(), Child(TEXT("Folder"))), ULONG{SFGAO_FOLDER});
    EXPECT_EQ(AttributesOf(m_folder.get(), Child(TEXT("Folder.x"))), ULONG{SFGAO_FOLDER});
    EXPECT_EQ(AttributesOf(m_folder.get(), Child(TEXT("two"))) & (SFGAO_FOLDER | SFGAO_LINK), 0u);
}

TEST_F(ShellDesk, WhatIsNotThereIsNotParsed)
{
    ITEMIDLIST* list = reinterpret_cast<ITEMIDLIST*>(1);
    EXPECT_EQ(SHParseDisplayName((ShellPath(m_root) + TEXT("\\absent")).c_str(), nullptr, &list, 0, nullptr),
              HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(list, nullptr);
    EXPECT_TRUE(FAILED(SHParseDisplayName(TEXT("\\OrbLauncher"), nullptr, &list, 0, nullptr))) << "without a beginning";
    EXPECT_EQ(Child(TEXT("absent")), nullptr);
}

TEST_F(ShellDesk, TheParentIsBoundAndTheLastIdentifierIsPartOfTheList)
{
    const List whole = ParsePath(ShellPath(m_root) + TEXT("\\Folder.x\\inner"));
    ASSERT_NE(whole, nullptr);
    IShellFolder* raw = nullptr;
    PCUITEMID_CHILD last = nullptr;
    ASSERT_EQ(SHBindToParent(whole.get(), IID_IShellFolder, reinterpret_cast<void**>(&raw), &last), S_OK);
    const Com<IShellFolder> parent(raw);
    EXPECT_EQ(last, ILFindLastID(whole.get()));
    EXPECT_EQ(NameOf(raw, last, SHGDN_INFOLDER | SHGDN_FORPARSING), TEXT("inner"));
}

namespace
{

/// The verb of the default command of a folder's context menu; "" when the menu has none.
std::string DefaultVerb(IShellFolder* folder, const List& item, UINT flags)
{
    const ITEMIDLIST* items[] = {item.get()};
    IContextMenu* raw = nullptr;
    if (FAILED(folder->GetUIObjectOf(nullptr, 1, items, IID_IContextMenu, nullptr, reinterpret_cast<void**>(&raw))))
        return "(no menu object)";
    const Com<IContextMenu> contextMenu(raw);
    const HMENU menu = CreatePopupMenu();
    constexpr UINT kFirst = 11;
    EXPECT_GE(contextMenu->QueryContextMenu(menu, 0, kFirst, 0x7FFF, flags), 0);
    const UINT id = GetMenuDefaultItem(menu, FALSE, 0);
    char verb[256] = "";
    EXPECT_TRUE(id == UINT_MAX ||
                contextMenu->GetCommandString(id - kFirst, GCS_VERBA, nullptr, verb, sizeof verb) == S_OK);
    EXPECT_TRUE(FAILED(contextMenu->GetCommandString(0x7000, GCS_VERBA, nullptr, verb + 128, 128)));
    DestroyMenu(menu);
    return verb;
}

} // namespace

TEST_F(ShellDesk, TheMenuMarksTheDefaultCommand)
{
    EXPECT_EQ(DefaultVerb(m_folder.get(), Child(TEXT("Folder")), CMF_NORMAL), "open");
    EXPECT_EQ(DefaultVerb(m_folder.get(), Child(TEXT("One.txt")), CMF_NORMAL), "open");
}

TEST_F(ShellDesk, TheDefaultMenuHoldsTheDefaultCommand)
{
    if (OnWine())
        GTEST_SKIP() << "Wine's context menus stay empty with CMF_DEFAULTONLY";
    EXPECT_EQ(DefaultVerb(m_folder.get(), Child(TEXT("Folder")), CMF_DEFAULTONLY), "open");
    EXPECT_EQ(DefaultVerb(m_folder.get(), Child(TEXT("One.txt")), CMF_DEFAULTONLY), "open");
}

TEST_F(ShellDesk, FileInformationNamesTypeAndImage)
{
    const auto info = [&](const WCHAR* name, UINT flags, SHFILEINFOW& result)
    {
        const List item(ILCombine(m_rootList.get(), Child(name).get()));
        return SHGetFileInfoW(reinterpret_cast<const WCHAR*>(item.get()), 0, &result, sizeof result,
                              SHGFI_PIDL | flags);
    };
    constexpr UINT kAsked = SHGFI_ADDOVERLAYS | SHGFI_TYPENAME | SHGFI_SYSICONINDEX;
    SHFILEINFOW one{}, another{}, file{}, smallOne{};
    const DWORD_PTR list = info(TEXT("Folder"), kAsked, one);
    EXPECT_NE(list, 0u);
    EXPECT_EQ(info(TEXT("Folder.x"), kAsked, another), list);
    EXPECT_NE(info(TEXT("One.txt"), kAsked, file), 0u);
    EXPECT_NE(info(TEXT("Folder"), kAsked | SHGFI_SMALLICON, smallOne), list);
    EXPECT_EQ(one.iIcon, another.iIcon);
    EXPECT_NE(one.iIcon, file.iIcon);
    EXPECT_EQ(Text(one.szTypeName), another.szTypeName);
    EXPECT_NE(Text(one.szTypeName), Text());

    SHFILEINFOW withIcon{};
    ASSERT_NE(info(TEXT("Folder"), SHGFI_ICON | SHGFI_SYSICONINDEX, withIcon), 0u);
    ASSERT_NE(withIcon.hIcon, nullptr);
    EXPECT_TRUE(DestroyIcon(withIcon.hIcon));
}

TEST_F(ShellDesk, AFileIsRenamedByItsEditingName)
{
    const List file = Child(TEXT("One.txt"));
    EXPECT_EQ(NameOf(m_folder.get(), file.get(), SHGDN_INFOLDER | SHGDN_FOREDITING).substr(0, 3), TEXT("One"));
    ITEMIDLIST* renamed = nullptr;
    ASSERT_EQ(m_folder->SetNameOf(nullptr, file.get(), TEXT("Three.txt"), SHGDN_INFOLDER | SHGDN_FORPARSING, &renamed),
              S_OK);
    const List owner(renamed);
    EXPECT_EQ(NameOf(m_folder.get(), renamed, SHGDN_INFOLDER | SHGDN_FORPARSING), TEXT("Three.txt"));
    EXPECT_TRUE(std::filesystem::exists(m_root / "Three.txt"));
    EXPECT_FALSE(std::filesystem::exists(m_root / "One.txt"));
}

TEST_F(ShellDesk, AShortcutIsSavedUnderItsName)
{
    void* object = nullptr;
    ASSERT_EQ(OleInitialize(nullptr), S_OK);
    ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, &object), S_OK);
    auto* link = static_cast<IShellLinkW*>(object);
    EXPECT_EQ(link->SetPath((ShellPath(m_root) + TEXT("\\One.txt")).c_str()), S_OK);
    ASSERT_EQ(link->QueryInterface(IID_IPersistFile, &object), S_OK);
    auto* file = static_cast<IPersistFile*>(object);
    EXPECT_EQ(file->Save((ShellPath(m_root) + TEXT("\\One.txt.lnk")).c_str(), TRUE), S_OK);
    file->Release();
    link->Release();
    EXPECT_NE(Child(TEXT("One.txt.lnk")), nullptr);
    OleUninitialize();
}

TEST_F(ShellDesk, TheLastPartOfAPathIsFound)
{
    const auto name = [](const WCHAR* path) { return Text(PathFindFileNameW(path)); };
    EXPECT_EQ(name(TEXT("\\home\\me\\Notes.txt")), TEXT("Notes.txt"));
    EXPECT_EQ(name(TEXT("Notes.txt")), TEXT("Notes.txt"));
    EXPECT_EQ(name(TEXT("\\Tools\\")), TEXT("Tools\\"));
    EXPECT_EQ(name(TEXT("\\")), TEXT("\\"));
    EXPECT_EQ(name(TEXT("")), TEXT(""));
}
