// A scratch folder, named the platform's way, and owners for what the shell hands out.
#pragma once

#include <windows.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace conformance
{

using Text = std::basic_string<WCHAR>;

struct ComRelease
{
    template <typename T>
    void operator()(T* object) const
    {
        object->Release();
    }
};
template <typename T>
using Com = std::unique_ptr<T, ComRelease>;

/// Takes the reference that a call has left in a `void*`.
template <typename T>
Com<T> Taken(void* object)
{
    return Com<T>(static_cast<T*>(object));
}

struct ListFree
{
    void operator()(ITEMIDLIST* list) const { ILFree(list); }
};
using List = std::unique_ptr<ITEMIDLIST, ListFree>;

/// A path as the shell takes it.
inline Text ShellPath(const std::filesystem::path& path)
{
    Text text = path.string<WCHAR>();
    std::replace(text.begin(), text.end(), static_cast<WCHAR>('/'), static_cast<WCHAR>('\\'));
    return text;
}

inline List ParsePath(const Text& path)
{
    ITEMIDLIST* list = nullptr;
    SHParseDisplayName(path.c_str(), nullptr, &list, 0, nullptr);
    return List(list);
}

inline Com<IShellFolder> DesktopFolder()
{
    IShellFolder* desktop = nullptr;
    EXPECT_EQ(SHGetDesktopFolder(&desktop), S_OK);
    return Com<IShellFolder>(desktop);
}

inline Text NameOf(IShellFolder* folder, const ITEMIDLIST* item, DWORD flags)
{
    STRRET name;
    WCHAR* text = nullptr;
    if (FAILED(folder->GetDisplayNameOf(item, flags, &name)) || FAILED(StrRetToStrW(&name, item, &text)))
        return TEXT("(no name)");
    Text result(text);
    CoTaskMemFree(text);
    return result;
}

/// Holds "Folder", "Folder.x" with a file in it, "One.txt" and "two".
class ShellDesk : public testing::Test
{
protected:
    void SetUp() override
    {
        static int count = 0;
        const std::string name = "orb-conformance-" + std::to_string(GetTickCount()) + "-" + std::to_string(++count);
        m_root = std::filesystem::temp_directory_path() / name;
        std::filesystem::create_directories(m_root / "Folder");
        std::filesystem::create_directories(m_root / "Folder.x");
        for (const char* file : {"One.txt", "two", "Folder.x/inner"})
            std::ofstream(m_root / file) << "content";
        m_rootList = ParsePath(ShellPath(m_root));
        ASSERT_NE(m_rootList, nullptr);
        IShellFolder* bound = nullptr;
        ASSERT_EQ(DesktopFolder()->BindToObject(m_rootList.get(), nullptr, IID_IShellFolder,
                                                reinterpret_cast<void**>(&bound)),
                  S_OK);
        m_folder.reset(bound);
    }

    void TearDown() override
    {
        m_folder.reset();
        std::filesystem::remove_all(m_root);
    }

    List Child(const WCHAR* name)
    {
        ITEMIDLIST* child = nullptr;
        Text text(name);
        m_folder->ParseDisplayName(nullptr, nullptr, text.data(), nullptr, &child, nullptr);
        return List(child);
    }

    Com<IDataObject> DataOf(std::initializer_list<const WCHAR*> names)
    {
        std::vector<List> lists;
        std::vector<const ITEMIDLIST*> items;
        for (const WCHAR* name : names)
            items.push_back(lists.emplace_back(Child(name)).get());
        void* data = nullptr;
        EXPECT_EQ(m_folder->GetUIObjectOf(nullptr, static_cast<UINT>(items.size()), items.data(), IID_IDataObject,
                                          nullptr, &data),
                  S_OK);
        return Taken<IDataObject>(data);
    }

    std::filesystem::path m_root;
    List m_rootList;
    Com<IShellFolder> m_folder;
};

/// The same where OLE has been started.
class OleDesk : public ShellDesk
{
protected:
    void SetUp() override
    {
        ShellDesk::SetUp();
        ASSERT_EQ(OleInitialize(nullptr), S_OK);
    }
    void TearDown() override
    {
        ShellDesk::TearDown();
        OleUninitialize();
    }
};

} // namespace conformance
