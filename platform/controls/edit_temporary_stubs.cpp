// TEMPORARY stubs: the clipboard and the primary selection within this process.
#include "platform/screen/selections.h"
#include "platform/windowing/clipboard.h"

namespace platform
{
namespace
{
std::u16string& Board()
{
    static auto& board = *new std::u16string;
    return board;
}
std::shared_ptr<const screen::SelectionSource>& Marked()
{
    static auto& marked = *new std::shared_ptr<const screen::SelectionSource>;
    return marked;
}
} // namespace

[[gnu::weak]] bool PutTextOnClipboard(std::u16string_view text)
{
    Board() = text;
    return true;
}

[[gnu::weak]] std::optional<std::u16string> ClipboardText()
{
    return Board();
}

[[gnu::weak]] bool screen::OfferSelection(Selection, std::shared_ptr<const SelectionSource> source)
{
    Marked() = std::move(source);
    return true;
}

[[gnu::weak]] std::optional<std::string> screen::ReadSelection(Selection, std::string_view target,
                                                               std::chrono::milliseconds, std::size_t)
{
    return Marked() != nullptr ? Marked()->Content(target) : std::nullopt;
}

} // namespace platform
