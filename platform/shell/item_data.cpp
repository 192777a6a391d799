// Offering items in the formats of the shell and of other programs.
#include "platform/shell/item_data.h"

#include "platform/ole/data_object.h"
#include "platform/shell/dropped_content.h"
#include "platform/shell/item_array.h"
#include "platform/shell/namespace.h"

#include "windows.h"

#include <memory>

namespace platform
{

namespace
{

/// All forms of text, made at once when the first is asked for: a drag that goes nowhere has no need of any.
class TextForms
{
public:
    explicit TextForms(std::vector<std::string> paths) : m_files{std::move(paths), false} {}

    std::optional<std::string> Content(std::string_view target)
    {
        if (m_forms.empty())
            m_forms = FormsOfFiles(m_files);
        for (const ClipboardForm& form : m_forms)
            if (form.target == target)
                return form.content;
        return std::nullopt;
    }

private:
    CopiedFiles m_files;
    std::vector<ClipboardForm> m_forms;
};

} // namespace

IDataObject* MakeItemData(const std::string& folder, const std::vector<DataItem>& items)
{
    std::vector<std::string> paths;
    std::vector<LPCITEMIDLIST> lists;
    for (const DataItem& item : items)
    {
        paths.push_back(item.path);
        lists.push_back(item.list);
    }
    auto* data = new MemoryDataObject;
    const bool fromMenu = !CanBeWrittenInto(folder);
    data->Offer(FormatNamed(kItemArrayFormat), fromMenu ? ItemArrayOfPaths(paths) : ItemArray(folder, lists));
    const auto forms = std::make_shared<TextForms>(std::move(paths));
    for (const std::string_view target : kFileForms)
        data->OfferLazily(FormatNamed(target), [forms, target] { return forms->Content(target); });
    const DWORD preferred = DROPEFFECT_LINK;
    if (fromMenu)
        data->Offer(FormatNamed(kPreferredEffectFormat), {reinterpret_cast<const char*>(&preferred), sizeof preferred});
    return data;
}

} // namespace platform
