// Answering those who ask for a selection.
#include "platform/screen/x11/selection_owner.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace platform::x11
{
namespace
{

// Milliseconds that a requestor may take between two pieces.
constexpr std::uint64_t kStalled = 10000;
// Pairs of one MULTIPLE request: more than any program has kinds.
constexpr std::size_t kMostPairs = 256;

template <typename T>
std::string_view BytesOf(const std::vector<T>& values)
{
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

/// Server time wraps after 49 days.
bool IsBefore(xcb_timestamp_t a, xcb_timestamp_t b)
{
    return static_cast<std::int32_t>(a - b) < 0;
}

} // namespace

void SelectionOwner::Own(std::shared_ptr<const screen::SelectionSource> source, xcb_timestamp_t since)
{
    m_source = std::move(source);
    m_since = since;
}

void SelectionOwner::Lose()
{
    m_source.reset();
}

void SelectionOwner::OnRequest(const ConversionRequest& asked, std::uint64_t now)
{
    ConversionRequest request = asked;
    if (request.property == XCB_NONE) // by the conventions of obsolete clients
        request.property = request.target;
    const bool tooEarly = request.time != XCB_CURRENT_TIME && IsBefore(request.time, m_since);
    const bool done = m_source != nullptr && !tooEarly && Convert(request, now);
    m_port.Answer(request, done ? request.property : static_cast<xcb_atom_t>(XCB_NONE));
}

bool SelectionOwner::Convert(const ConversionRequest& request, std::uint64_t now)
{
    const std::string target = m_port.NameOf(request.target);
    if (target == "TARGETS")
        SendTargets(request);
    else if (target == "TIMESTAMP")
        SendWords(request, "INTEGER", {m_since});
    else if (target == "SAVE_TARGETS")
        SendWords(request, "NULL", {}); // a mark in TARGETS; there is nothing to be had
    else if (target == "MULTIPLE")
        return ConvertMultiple(request, now);
    else
        return SendContent(request, target, now);
    return true;
}

void SelectionOwner::SendWords(const ConversionRequest& request, std::string_view type,
                               const std::vector<std::uint32_t>& words)
{
    m_port.SetProperty(request.requestor, request.property, m_port.AtomOf(type), 32, BytesOf(words));
}

void SelectionOwner::SendTargets(const ConversionRequest& request)
{
    std::vector<std::uint32_t> atoms;
    for (const char* name : {"TARGETS", "TIMESTAMP", "MULTIPLE", "SAVE_TARGETS"})
        atoms.push_back(m_port.AtomOf(name));
    for (const std::string& name : m_source->Targets())
        atoms.push_back(m_port.AtomOf(name));
    SendWords(request, "ATOM", atoms);
}

/// The pairs of target and property; a property whose target is refused is replaced by none in the list.
bool SelectionOwner::ConvertMultiple(const ConversionRequest& request, std::uint64_t now)
{
    std::vector<xcb_atom_t> pairs = m_port.AtomsIn(request.requestor, request.property);
    if (pairs.size() < 2 || pairs.size() > 2 * kMostPairs)
        return false;
    pairs.resize(pairs.size() / 2 * 2);
    bool anyRefused = false;
    for (std::size_t i = 0; i < pairs.size(); i += 2)
    {
        ConversionRequest single = request;
        single.target = pairs[i];
        single.property = pairs[i + 1];
        const bool nested = single.target == request.target || single.property == request.property;
        if (nested || single.property == XCB_NONE || !Convert(single, now))
        {
            pairs[i + 1] = XCB_NONE;
            anyRefused = true;
        }
    }
    if (anyRefused)
        SendWords(request, "ATOM_PAIR", pairs);
    return true;
}

bool SelectionOwner::SendContent(const ConversionRequest& request, const std::string& target, std::uint64_t now)
{
    std::optional<std::string> content = m_source->Content(target);
    if (!content)
        return false;
    // TEXT asks for text in whatever encoding; the answer's type tells which.
    const xcb_atom_t type = target == "TEXT" ? m_port.AtomOf("UTF8_STRING") : request.target;
    if (content->size() <= m_port.LargestPiece())
        m_port.SetProperty(request.requestor, request.property, type, 8, *content);
    else
        StartTransfer({request.requestor, request.property, type, std::move(*content), 0, now, m_source});
    return true;
}

/// The announcement: a lower bound of the size. Each piece is sent when the property has been deleted.
void SelectionOwner::StartTransfer(Transfer transfer)
{
    std::erase_if(m_transfers, [&](const Transfer& other)
                  { return other.window == transfer.window && other.property == transfer.property; });
    m_port.Watch(transfer.window, true);
    const std::vector<std::uint32_t> size{static_cast<std::uint32_t>(transfer.content.size())};
    m_port.SetProperty(transfer.window, transfer.property, m_port.AtomOf("INCR"), 32, BytesOf(size));
    m_transfers.push_back(std::move(transfer));
}

void SelectionOwner::OnPropertyDeleted(xcb_window_t window, xcb_atom_t property, std::uint64_t now)
{
    const auto found = std::ranges::find_if(m_transfers, [&](const Transfer& transfer)
                                            { return transfer.window == window && transfer.property == property; });
    if (found == m_transfers.end())
        return;
    const auto piece = std::string_view(found->content).substr(found->sent, m_port.LargestPiece());
    m_port.SetProperty(window, property, found->type, 8, piece);
    found->sent += piece.size();
    found->lastStep = now;
    if (piece.empty()) // which has told that it was all
        EndTransfers([&](const Transfer& transfer)
                     { return transfer.window == window && transfer.property == property; });
}

void SelectionOwner::OnWindowGone(xcb_window_t window)
{
    EndTransfers([&](const Transfer& transfer) { return transfer.window == window; });
}

void SelectionOwner::DropStalled(std::uint64_t now)
{
    EndTransfers([&](const Transfer& transfer) { return transfer.lastStep + kStalled <= now; });
}

std::optional<std::uint64_t> SelectionOwner::Deadline() const
{
    std::optional<std::uint64_t> deadline;
    for (const Transfer& transfer : m_transfers)
        deadline = std::min(deadline.value_or(UINT64_MAX), transfer.lastStep + kStalled);
    return deadline;
}

template <typename Predicate>
void SelectionOwner::EndTransfers(Predicate ended)
{
    const auto keep = std::stable_partition(m_transfers.begin(), m_transfers.end(), std::not_fn(ended));
    std::vector<xcb_window_t> windows;
    std::transform(keep, m_transfers.end(), std::back_inserter(windows), [](const Transfer& t) { return t.window; });
    m_transfers.erase(keep, m_transfers.end());
    for (const xcb_window_t window : windows)
        if (std::ranges::find(m_transfers, window, &Transfer::window) == m_transfers.end())
            m_port.Watch(window, false);
}

} // namespace platform::x11
