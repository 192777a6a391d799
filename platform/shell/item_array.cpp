// Writing and following "Shell IDList Array" blocks.
#include "platform/shell/item_array.h"

#include "platform/base/text.h"
#include "platform/files/names.h"
#include "platform/shell/namespace.h"

#include <cstring>

namespace platform
{

namespace
{

using Offset = UINT;
constexpr std::size_t kHead = sizeof(CIDA::cidl);

/// Bytes of a list with its terminator; 0 when the block ends before it does.
std::size_t ListBytes(std::string_view block)
{
    USHORT size = 0;
    for (std::size_t at = 0; at + sizeof size <= block.size(); at += size)
    {
        std::memcpy(&size, block.data() + at, sizeof size);
        if (size < sizeof size)
            return at + sizeof size;
    }
    return 0;
}

/// A list in a block, by its index from the folder's, 0; null when it does not lie in the block.
LPCITEMIDLIST ListAt(std::string_view block, std::size_t index)
{
    Offset offset = 0;
    std::memcpy(&offset, block.data() + kHead + index * sizeof offset, sizeof offset);
    if (offset >= block.size() || ListBytes(block.substr(offset)) == 0)
        return nullptr;
    return reinterpret_cast<LPCITEMIDLIST>(block.data() + offset);
}

std::string FolderListOf(const std::string& folder)
{
    std::vector<BYTE> bytes;
    for (const std::string& name : SplitPath(folder))
        AppendFolderId(bytes, name);
    bytes.insert(bytes.end(), sizeof(USHORT), 0);
    return {bytes.begin(), bytes.end()};
}

} // namespace

std::string ItemArray(const std::string& folder, const std::vector<LPCITEMIDLIST>& items)
{
    std::vector<std::string> lists{FolderListOf(folder)};
    for (const LPCITEMIDLIST item : items)
    {
        LPCITEMIDLIST end = item;
        while (!IsEmptyList(end))
            end = NextItemId(end);
        const auto* bytes = reinterpret_cast<const char*>(item);
        lists.emplace_back(bytes, reinterpret_cast<const char*>(end) + sizeof(USHORT));
    }
    const auto count = static_cast<UINT>(items.size());
    auto offset = static_cast<Offset>(kHead + lists.size() * sizeof(Offset));
    std::string block(reinterpret_cast<const char*>(&count), sizeof count);
    for (const std::string& list : lists)
    {
        block.append(reinterpret_cast<const char*>(&offset), sizeof offset);
        offset += static_cast<Offset>(list.size());
    }
    for (const std::string& list : lists)
        block += list;
    return block;
}

std::string ItemArrayOfPaths(const std::vector<std::string>& paths)
{
    std::vector<ItemListPtr> lists;
    std::vector<LPCITEMIDLIST> items;
    for (const std::string& path : paths)
    {
        LPITEMIDLIST list = nullptr;
        if (SUCCEEDED(ParsePath({}, ShellPathFromPosix(path), &list)))
            items.push_back(lists.emplace_back(list).get());
    }
    return items.empty() ? std::string() : ItemArray({}, items);
}

std::vector<std::string> PathsInItemArray(std::string_view block)
{
    UINT count = 0;
    if (block.size() < kHead)
        return {};
    std::memcpy(&count, block.data(), sizeof count);
    std::string folder;
    const bool isWhole = count < block.size() && kHead + (count + std::size_t{1}) * sizeof(Offset) <= block.size();
    const LPCITEMIDLIST folderList = isWhole ? ListAt(block, 0) : nullptr;
    if (folderList == nullptr || !AppendListPath(folder, folderList))
        return {};
    std::vector<std::string> paths;
    for (std::size_t i = 1; i <= count; ++i)
    {
        const LPCITEMIDLIST list = ListAt(block, i);
        std::string path = folder;
        if (list == nullptr || IsEmptyList(list) || !AppendListPath(path, list))
            return {};
        paths.push_back(std::move(path));
    }
    return paths;
}

} // namespace platform
