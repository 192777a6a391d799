// Making the pictures of shell items: from the pack of an earlier run, else rendered from the files that the icon theme
// names, else out of the layer's resources.
#include "platform/icons/shell_icon.h"

#include "platform/base/deferred.h"
#include "platform/services/desktop_module.h"
#include "platform/services/picture_service.h"
#include "platform/screen/desktop_settings.h"
#include "platform/drawing/image_scaling.h"
#include "platform/icons/icon_file.h"
#include "platform/icons/icon_pack.h"
#include "platform/icons/icon_theme.h"

#include <algorithm>
#include <map>

namespace platform
{

namespace
{

const std::string& ThemeName()
{
    static const auto& name = *new std::string(DesktopSetting("Net/IconThemeName").value_or("Adwaita"));
    return name;
}

/// Made with the first icon that no pack has.
const IconTheme& Theme()
{
    static const auto& theme = *new IconTheme(ThemeName(), IconBaseFolders(), LooseIconFolders());
    return theme;
}

/// The pack of a size, with the saving of what was added to it.
class SavedPack
{
public:
    explicit SavedPack(int size) : m_pack(ThemeName(), size) {}

    IconPack& Pack() { return m_pack; }
    void SaveAtLeisure()
    {
        if (!m_savePending)
        {
            m_savePending = true;
            Defer(AtExit::Do,
                  [this]
                  {
                      m_savePending = false;
                      m_pack.Save(Theme().Dependencies());
                  });
        }
    }

private:
    IconPack m_pack;
    bool m_savePending = false;
};

SavedPack& PackOfSize(int size)
{
    static auto& packs = *new std::map<int, SavedPack>;
    return packs.try_emplace(size, size).first->second;
}

bool RenderFile(const std::string& path, IconImage& image)
{
    const std::shared_ptr<FileContent> file = PictureFileContent(path);
    if (file == nullptr || file->Content().empty())
        return false;
    static const auto* service = static_cast<const PictureService*>(DesktopModuleSymbol("orb_picture_service"));
    return service != nullptr && service->render({path.c_str(), file->Content().data(), file->Content().size()},
                                                 image.width, image.pixels.data());
}

IconImage EmptyImage(int size)
{
    return {size, size, std::vector<std::uint32_t>(static_cast<std::size_t>(size) * size)};
}

/// "!folder", "!program" or, for any other name, a document.
IconImage BuiltinPicture(std::string_view name, int size)
{
    const LPCWSTR resource = name == "!folder"    ? TEXT("FOLDER")
                             : name == "!program" ? TEXT("PROGRAM")
                                                  : TEXT("DOCUMENT");
    IconImage image = SystemPicture(resource, size);
    return !image.pixels.empty() ? std::move(image) : EmptyImage(size);
}

/// What a picture was made from.
struct Sources
{
    std::vector<FileWitness> files;
    bool complete = true; ///< nothing that might have served better failed to answer
};

/// The best alternative of an identity that there is a readable picture for.
IconImage RenderIdentity(std::string_view identity, int size, Sources& sources)
{
    IconImage image = EmptyImage(size);
    while (!identity.empty())
    {
        const std::string name(identity.substr(0, identity.find('\n')));
        identity.remove_prefix(std::min(name.size() + 1, identity.size()));
        if (name.starts_with('!'))
            return BuiltinPicture(name, size);
        const std::string path = name.starts_with('/') ? name : Theme().Find(name, size);
        if (path.empty())
            continue;
        const std::optional<FileWitness> witness = WitnessOf(path);
        sources.complete &= witness.has_value();
        sources.files.push_back(witness.value_or(FileWitness{path}));
        if (sources.files.back().modified != 0 && RenderFile(path, image))
            return image;
    }
    return BuiltinPicture("!document", size);
}

void MarkAsLink(IconImage& image)
{
    const int size = image.height / 2;
    IconImage emblem = EmptyImage(std::max(size, 1));
    const std::string path = Theme().Find("emblem-symbolic-link", size);
    if (!path.empty() && RenderFile(path, emblem))
        return ComposeImage(image, emblem, 0, image.height - emblem.height);
    const int markSize = std::max(image.height * 3 / 8, std::min(image.height, 7));
    ComposeImage(image, SystemPicture(TEXT("LINK_MARK"), markSize), 0, image.height - markSize);
}

IconImage MakePicture(const std::string& identity, int size, bool linkOverlay)
{
    SavedPack& saved = PackOfSize(size);
    const std::string key = (linkOverlay ? "link\n" : "\n") + identity;
    if (std::optional<IconImage> kept = saved.Pack().Find(key))
        return std::move(*kept);
    Sources sources;
    IconImage image = RenderIdentity(identity, size, sources);
    if (linkOverlay)
        MarkAsLink(image);
    if (sources.complete)
    {
        saved.Pack().Add(key, std::move(sources.files), image);
        saved.SaveAtLeisure();
    }
    return image;
}

class ThemedIcon final : public IconSource
{
public:
    ThemedIcon(std::string identity, int size, bool linkOverlay)
        : m_identity(std::move(identity)), m_size(size), m_linkOverlay(linkOverlay)
    {
    }

    const IconImage& Image() override
    {
        if (m_image.pixels.empty())
            m_image = MakePicture(m_identity, m_size, m_linkOverlay);
        return m_image;
    }

private:
    std::string m_identity;
    int m_size;
    bool m_linkOverlay;
    IconImage m_image;
};

} // namespace

std::shared_ptr<IconSource> ShellIcon(std::string identity, int size, bool linkOverlay)
{
    constexpr int kLargest = 1024;
    return std::make_shared<ThemedIcon>(std::move(identity), std::clamp(size, 1, kLargest), linkOverlay);
}

} // namespace platform
