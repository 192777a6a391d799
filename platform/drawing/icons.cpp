// Icon handles, and icons out of the program's resources.
#include "platform/drawing/dib_file.h"
#include "platform/drawing/icon.h"
#include "platform/drawing/icon_directory.h"

#include <algorithm>

namespace platform
{
namespace
{

class IconObject : public HandleObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::Icon;
    explicit IconObject(std::shared_ptr<IconSource> s) : HandleObject(kHandleKind), source(std::move(s)) {}
    std::shared_ptr<IconSource> source;
};

/// A picture out of the program's resources, decoded when it is first drawn.
class ResourceIcon : public IconSource
{
public:
    explicit ResourceIcon(Bytes bytes) : m_bytes(bytes) {}
    const IconImage& Image() override
    {
        if (!m_image)
        {
            // A damaged picture is an empty one.
            m_image = ReadIconImage(m_bytes).value_or(IconImage{});
        }
        return *m_image;
    }

private:
    Bytes m_bytes;
    std::optional<IconImage> m_image;
};

} // namespace

HICON CreateIconFromSource(std::shared_ptr<IconSource> source)
{
    return OpenHandle<HICON>("CreateIconFromSource", std::make_unique<IconObject>(std::move(source)));
}

std::shared_ptr<IconSource> IconSourceOf(HICON icon)
{
    const IconObject* object = FindObject<IconObject>(icon);
    return object != nullptr ? object->source : nullptr;
}

Bytes ResourceBytesOf(HINSTANCE instance, LPCWSTR name, LPCWSTR type)
{
    const HRSRC resource = FindResourceW(instance, name, type);
    const HGLOBAL data = resource != nullptr ? LoadResource(instance, resource) : nullptr;
    return data != nullptr
               ? Bytes(static_cast<const unsigned char*>(LockResource(data)), SizeofResource(instance, resource))
               : Bytes();
}

HICON LoadResourceIcon(HINSTANCE instance, LPCWSTR name, int width, int height)
{
    const int id = BestIconId(ResourceBytesOf(instance, name, RT_GROUP_ICON), width, height);
    const Bytes picture = id != 0 ? ResourceBytesOf(instance, MAKEINTRESOURCEW(id), RT_ICON) : Bytes();
    return !picture.empty() ? CreateIconFromSource(std::make_shared<ResourceIcon>(picture))
                            : Fail(ERROR_RESOURCE_NAME_NOT_FOUND, static_cast<HICON>(nullptr));
}

} // namespace platform

HICON LoadIconW(HINSTANCE instance, LPCWSTR name)
{
    // SM_CXICON at 100 %: the size that LoadIconW has always meant.
    constexpr int kSize = 32;
    return platform::LoadResourceIcon(instance, name, kSize, kSize);
}

BOOL DestroyIcon(HICON icon)
{
    if (platform::FindObject<platform::IconObject>(icon) == nullptr)
        return platform::Fail(ERROR_INVALID_HANDLE, FALSE);
    return platform::TakeHandle(reinterpret_cast<std::uintptr_t>(icon)) != nullptr;
}
