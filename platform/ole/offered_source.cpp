// From a data object to a selection's content.
#include "platform/ole/offered_source.h"

#include "platform/base/text.h"
#include "platform/ole/com_object.h"
#include "platform/ole/data_object.h"

#include <algorithm>

namespace platform
{
namespace
{

bool NamesContent(std::string_view name)
{
    const auto isOfAtom = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'; };
    return name.find('/') != std::string_view::npos || std::ranges::all_of(name, isOfAtom);
}

/// Empty for a format that is not registered, or not for others.
std::string TargetOf(CLIPFORMAT format)
{
    WCHAR name[256];
    const int length = GetClipboardFormatNameW(format, name, static_cast<int>(std::size(name)));
    std::string target = Utf8FromUtf16({name, static_cast<std::size_t>(length)});
    return NamesContent(target) ? target : std::string();
}

class DataObjectSource final : public screen::SelectionSource
{
public:
    explicit DataObjectSource(IDataObject& data) : m_data(&data) {}

    std::vector<std::string> Targets() const override
    {
        std::vector<std::string> targets;
        IEnumFORMATETC* formats = nullptr;
        if (FAILED(m_data->EnumFormatEtc(DATADIR_GET, &formats)))
            return targets;
        for (FORMATETC format{}; formats->Next(1, &format, nullptr) == S_OK;)
            if (std::string target = TargetOf(format.cfFormat); !target.empty())
                targets.push_back(std::move(target));
        formats->Release();
        return targets;
    }

    std::optional<std::string> Content(std::string_view target) const override
    {
        const UINT format = RegisterClipboardFormatW(Utf16FromUtf8(target).c_str());
        const bool offered = format != 0 && TargetOf(static_cast<CLIPFORMAT>(format)) == target;
        return offered ? DataAs(*m_data.Get(), static_cast<CLIPFORMAT>(format)) : std::nullopt;
    }

private:
    ComReference<IDataObject> m_data;
};

} // namespace

std::shared_ptr<const screen::SelectionSource> OfferToOthers(IDataObject& data)
{
    return std::make_shared<DataObjectSource>(data);
}

} // namespace platform
