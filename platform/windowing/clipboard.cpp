// The clipboard: content in several forms, and how it keeps the process.
#include "platform/windowing/clipboard.h"

#include "platform/base/clock.h"
#include "platform/base/fault_points.h"
#include "platform/base/process_hold.h"
#include "platform/base/text.h"

#include <algorithm>
#include <utility>

namespace platform
{
namespace
{

using screen::Selection;

// Milliseconds.
constexpr std::uint64_t kReadPatience = 1000;
constexpr std::uint64_t kMenuPatience = 16; ///< a frame
// A manager reads everything before it answers, and nobody waits: the windows have gone.
constexpr std::chrono::milliseconds kManagerPatience{3000};
constexpr std::size_t kMostBytes = 64 << 20;

constexpr std::string_view kUtf8 = "UTF8_STRING";
constexpr std::string_view kUtf8Type = "text/plain;charset=utf-8";
constexpr std::string_view kLatin1 = "STRING";                           // ISO 8859-1 (ICCCM 2.6.2)
constexpr std::string_view kTextTargets[] = {kUtf8, kUtf8Type, kLatin1}; ///< the best first

class ClipboardContent final : public screen::SelectionSource
{
public:
    ClipboardContent(std::vector<ClipboardForm> forms, Selection selection) : m_forms(std::move(forms))
    {
        if (selection == Selection::Clipboard)
            m_hold.emplace();
    }
    std::vector<std::string> Targets() const override
    {
        std::vector<std::string> targets;
        for (const ClipboardForm& form : m_forms)
            targets.push_back(form.target);
        return targets;
    }
    std::optional<std::string> Content(std::string_view target) const override
    {
        const auto found = std::ranges::find(m_forms, target, &ClipboardForm::target);
        return found != m_forms.end() ? std::optional(found->content) : std::nullopt;
    }
    /// Another keeps the content now.
    void StopHolding() const { m_hold.reset(); }

private:
    std::vector<ClipboardForm> m_forms;
    mutable std::optional<ProcessHold> m_hold;
};

bool Offer(Selection selection, std::vector<ClipboardForm> forms)
{
    if (FaultPoint("PutOnClipboard"))
        return false;
    return screen::OfferSelection(selection, std::make_shared<ClipboardContent>(std::move(forms), selection));
}

/// Nothing when a character is not of ISO 8859-1.
std::optional<std::string> Latin1FromUtf16(std::u16string_view text)
{
    std::string latin;
    for (const char16_t unit : text)
    {
        if (unit > 0xFF)
            return std::nullopt;
        latin += static_cast<char>(unit);
    }
    return latin;
}

std::u16string Utf16FromLatin1(std::string_view text)
{
    std::u16string wide;
    for (const char c : text)
        wide += static_cast<unsigned char>(c);
    return wide;
}

std::optional<std::string> Read(Selection selection, std::string_view target, std::uint64_t until)
{
    if (FaultPoint("ReadClipboard"))
        return std::nullopt;
    return screen::ReadSelection(selection, target, until, kMostBytes);
}

} // namespace

bool PutOnClipboard(std::vector<ClipboardForm> forms)
{
    return Offer(Selection::Clipboard, std::move(forms));
}

std::optional<std::vector<std::string>> ClipboardTargets(std::uint64_t until)
{
    return screen::SelectionTargets(Selection::Clipboard, until);
}

std::optional<std::string> ReadClipboard(std::string_view target, std::uint64_t until)
{
    return Read(Selection::Clipboard, target, until);
}

void EmptyReadClipboard()
{
    screen::ClearSelection(Selection::Clipboard);
}

bool PutTextOnClipboard(std::u16string_view text, Selection selection)
{
    const std::string utf8 = Utf8FromUtf16(text);
    std::vector<ClipboardForm> forms;
    for (const std::string_view target : {kUtf8, kUtf8Type, std::string_view("TEXT")})
        forms.push_back({std::string(target), utf8});
    if (auto latin = Latin1FromUtf16(text))
        forms.push_back({std::string(kLatin1), std::move(*latin)});
    return Offer(selection, std::move(forms));
}

std::optional<std::u16string> ClipboardText(Selection selection)
{
    const std::uint64_t until = NowMs() + kReadPatience;
    const auto targets = screen::SelectionTargets(selection, until);
    if (!targets)
        return std::nullopt;
    for (const std::string_view target : kTextTargets)
    {
        if (std::ranges::find(*targets, target) == targets->end())
            continue;
        if (const auto text = Read(selection, target, until))
            return target == kLatin1 ? Utf16FromLatin1(*text) : Utf16FromUtf8(*text);
    }
    return std::nullopt;
}

bool ClipboardMayHoldText()
{
    const auto targets = ClipboardTargets(NowMs() + kMenuPatience);
    return !targets || std::ranges::find_first_of(*targets, kTextTargets) != targets->end();
}

void HandClipboardOver()
{
    const auto own = screen::OfferedSelection(Selection::Clipboard);
    if (own != nullptr && screen::SaveClipboard(kManagerPatience))
        static_cast<const ClipboardContent&>(*own).StopHolding();
}

} // namespace platform
