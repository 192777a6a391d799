// Keeping the applications menu for the next run: the cache file "menu".
//
// A header, then the places, then the root category: each category its identifier, icon and name, its programs, its
// categories. Texts stand behind their length.
#include "platform/files/menu_tree.h"

#include "platform/base/byte_reader.h"
#include "platform/base/cache_folder.h"
#include "platform/base/file_content.h"
#include "platform/base/hash_bytes.h"

#include <algorithm>

namespace platform
{

namespace
{

constexpr std::uint64_t kVersion = 0x4f52'424d'454e'5501;
constexpr int kDeepest = 64; ///< more than any reading yields

struct Header
{
    std::uint64_t version;
    std::uint64_t checksum; ///< of everything behind the header
    std::uint64_t stamp;
};

std::string FilePath()
{
    const std::string& folder = CacheFolder();
    return folder.empty() ? folder : folder + "/menu";
}

void AppendWide(std::string& out, std::u16string_view text)
{
    AppendText(out, {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)});
}

void AppendCategory(std::string& out, const MenuCategory& category)
{
    AppendText(out, category.id);
    AppendText(out, category.icon);
    AppendWide(out, category.name);
    AppendValue(out, static_cast<std::uint32_t>(category.programs.size()));
    for (const MenuProgram& program : category.programs)
    {
        AppendText(out, program.id);
        AppendText(out, program.path);
        AppendText(out, program.icon);
        AppendWide(out, program.name);
    }
    AppendValue(out, static_cast<std::uint32_t>(category.categories.size()));
    for (const MenuCategory& child : category.categories)
        AppendCategory(out, child);
}

std::u16string TakeWide(ByteReader& reader)
{
    const std::string_view bytes = reader.Text();
    std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
    if (!text.empty())
        std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
    return text;
}

/// What a damaged file announces is never believed: no room is made before it is read.
void TakeCategory(ByteReader& reader, MenuCategory& category, int depth)
{
    category.id = reader.Text();
    category.icon = reader.Text();
    category.name = TakeWide(reader);
    for (auto left = reader.Value<std::uint32_t>(); left > 0 && !reader.Failed(); --left)
    {
        MenuProgram& program = category.programs.emplace_back();
        program.id = reader.Text();
        program.path = reader.Text();
        program.icon = reader.Text();
        program.name = TakeWide(reader);
    }
    for (auto left = reader.Value<std::uint32_t>(); left > 0 && !reader.Failed() && depth < kDeepest; --left)
        TakeCategory(reader, category.categories.emplace_back(), depth + 1);
}

} // namespace

std::shared_ptr<const MenuTree> LoadMenuTree()
{
    const FileContent file(OpenCacheFile(FilePath()));
    ByteReader reader(file.Content());
    const Header header = reader.Value<Header>();
    if (header.version != kVersion || header.checksum != HashBytes(file.Content().substr(sizeof header)))
        return nullptr;
    auto tree = std::make_shared<MenuTree>();
    tree->stamp = header.stamp;
    for (auto left = reader.Value<std::uint32_t>(); left > 0 && !reader.Failed(); --left)
        tree->places.emplace_back(reader.Text());
    TakeCategory(reader, tree->root, 0);
    return reader.Failed() ? nullptr : tree;
}

void SaveMenuTree(const MenuTree& tree)
{
    const std::string path = FilePath();
    if (path.empty() || tree.stamp == 0)
        return;
    std::string body;
    AppendValue(body, static_cast<std::uint32_t>(tree.places.size()));
    for (const std::string& place : tree.places)
        AppendText(body, place);
    AppendCategory(body, tree.root);
    std::string out;
    AppendValue(out, Header{kVersion, HashBytes(body), tree.stamp});
    out += body;
    if (FileContent(OpenCacheFile(path)).Content() != out)
        ReplaceCacheFile(path, out);
}

} // namespace platform
