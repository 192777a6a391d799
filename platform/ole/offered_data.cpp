// Reading what another program drags.
#include "platform/ole/offered_data.h"

#include "platform/base/clock.h"
#include "platform/base/fault_points.h"
#include "platform/base/text.h"
#include "platform/ole/data_object.h"
#include "platform/ole/derived_format.h"

namespace platform
{
namespace
{

constexpr std::uint64_t kPatience = 1000; // milliseconds
constexpr std::size_t kMostBytes = 64 << 20;
// Names of formats last as long as the process: a program that offers thousands does not have them all taken in.
constexpr std::size_t kMostTargets = 200;

std::vector<const DerivedFormat*>& DerivedFormats()
{
    static auto& formats = *new std::vector<const DerivedFormat*>;
    return formats;
}

std::optional<std::string> Read(const std::string& target, OfferReading& reading)
{
    if (!reading.open || FaultPoint("ReadDrag"))
        return std::nullopt;
    const std::uint64_t until = NowMs() + kPatience;
    auto content = screen::ReadSelection(screen::Selection::Drag, target, until, kMostBytes);
    if (!content && NowMs() >= until)
        reading.open = false;
    return content;
}

} // namespace

void OfferDerivedFormat(const DerivedFormat& format)
{
    DerivedFormats().push_back(&format);
}

ComReference<IDataObject> MakeOfferedData(const screen::DragOffer& offer, std::shared_ptr<OfferReading> reading)
{
    auto* data = new MemoryDataObject;
    const std::size_t count = std::min(offer.targets.size(), kMostTargets);
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::string& target = offer.targets[i];
        if (const UINT format = RegisterClipboardFormatW(Utf16FromUtf8(target).c_str()))
            data->OfferLazily(static_cast<CLIPFORMAT>(format), [=] { return Read(target, *reading); });
    }
    for (const DerivedFormat* derived : DerivedFormats())
    {
        const UINT format = derived->possible(offer.targets) ? RegisterClipboardFormatW(derived->name) : 0;
        if (format != 0) // the object outlives what it makes
            data->OfferLazily(static_cast<CLIPFORMAT>(format), [=] { return derived->make(*data); });
    }
    return ComReference<IDataObject>::Adopt(data);
}

} // namespace platform
