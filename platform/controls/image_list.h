// Image lists: icons of one size.
#pragma once

#include "platform/base/handle_table.h"
#include "platform/drawing/icon.h"
#include "commctrl.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform
{

/// Entries share the icons' sources, so that an icon is rasterised when it is first drawn and never if it is not.
class ImageList final : public HandleObject
{
public:
    static constexpr HandleKind kHandleKind = HandleKind::ImageList;

    ImageList(int width, int height) : HandleObject(kHandleKind), m_width(width), m_height(height) {}

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    int Count() const { return static_cast<int>(m_entries.size()); }
    /// Appends for index −1; the entry's index, −1 for an index that names no entry.
    int Replace(int index, std::shared_ptr<IconSource> source);
    /// Null for an index that names no entry.
    std::shared_ptr<IconSource> SourceAt(int index) const;
    bool Draw(int index, HDC dc, int x, int y);

private:
    struct Entry
    {
        std::shared_ptr<IconSource> source;
        std::optional<IconImage> scaled; ///< of an icon whose own size is not the list's
    };

    bool Has(int index) const { return index >= 0 && index < Count(); }
    const IconImage& ImageOf(Entry& entry);

    int m_width;
    int m_height;
    std::vector<Entry> m_entries;
};

} // namespace platform
