// The owner's side of a selection as a state machine: what is answered to those who ask. Knows no connection.
//
// Source: ICCCM 2.0, section 2 (2.2 answering, 2.6.2 MULTIPLE, 2.7.2 INCR), and the freedesktop clipboard manager
// specification (SAVE_TARGETS).
#pragma once

#include "platform/screen/selections.h"

#include <xcb/xproto.h>

namespace platform::x11
{

struct ConversionRequest
{
    xcb_window_t requestor = 0;
    xcb_atom_t selection = 0;
    xcb_atom_t target = 0;
    xcb_atom_t property = 0;
    xcb_timestamp_t time = 0;
};

/// What an owner asks of the display. Requests that concern a window which has gone fail quietly.
class OwnerPort
{
public:
    virtual ~OwnerPort() = default;
    virtual xcb_atom_t AtomOf(std::string_view name) = 0;
    virtual std::string NameOf(xcb_atom_t atom) = 0;
    /// `format`: bits of one element, 8 or 32; the bytes in this machine's order.
    virtual void SetProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                             std::string_view bytes) = 0;
    virtual std::vector<xcb_atom_t> AtomsIn(xcb_window_t window, xcb_atom_t property) = 0;
    /// Hear of the window's deleted properties and of its end, or no longer.
    virtual void Watch(xcb_window_t window, bool on) = 0;
    /// Tells the requestor; property 0 is a refusal.
    virtual void Answer(const ConversionRequest& request, xcb_atom_t property) = 0;
    /// Bytes; what is larger goes in pieces.
    virtual std::size_t LargestPiece() = 0;
};

class SelectionOwner
{
public:
    explicit SelectionOwner(OwnerPort& port) : m_port(port) {}

    /// `since`: the server's time as of which the selection is this program's.
    void Own(std::shared_ptr<const screen::SelectionSource> source, xcb_timestamp_t since);
    /// Another has it now. What is being sent goes on to its end.
    void Lose();
    const std::shared_ptr<const screen::SelectionSource>& Source() const { return m_source; }
    xcb_timestamp_t Since() const { return m_since; }

    /// `now`: milliseconds of the clock, here and below.
    void OnRequest(const ConversionRequest& request, std::uint64_t now);
    void OnPropertyDeleted(xcb_window_t window, xcb_atom_t property, std::uint64_t now);
    void OnWindowGone(xcb_window_t window);
    /// Gives up on requestors that have stopped taking what is sent to them.
    void DropStalled(std::uint64_t now);
    /// When DropStalled has to be asked; nothing while nothing is being sent.
    std::optional<std::uint64_t> Deadline() const;

private:
    /// Content on its way in pieces. It keeps the source, and with it what the source keeps.
    struct Transfer
    {
        xcb_window_t window;
        xcb_atom_t property;
        xcb_atom_t type;
        std::string content;
        std::size_t sent;
        std::uint64_t lastStep;
        std::shared_ptr<const screen::SelectionSource> source;
    };

    bool Convert(const ConversionRequest& request, std::uint64_t now);
    bool ConvertMultiple(const ConversionRequest& request, std::uint64_t now);
    bool SendContent(const ConversionRequest& request, const std::string& target, std::uint64_t now);
    void SendWords(const ConversionRequest& request, std::string_view type, const std::vector<std::uint32_t>& words);
    void SendTargets(const ConversionRequest& request);
    void StartTransfer(Transfer transfer);
    template <typename Predicate>
    void EndTransfers(Predicate ended);

    OwnerPort& m_port;
    std::shared_ptr<const screen::SelectionSource> m_source;
    xcb_timestamp_t m_since = 0;
    std::vector<Transfer> m_transfers;
};

} // namespace platform::x11
