// Drag and drop between programs. What is dragged is named and read like a selection (selections.h, Selection::Drag);
// what becomes of it is told by the drag events of screen.h.
//
// All windows of this program take part; what takes nothing answers so. All functions belong to the user-interface
// thread. Coordinates are screen pixels.
#pragma once

#include "platform/screen/screen.h"
#include "platform/screen/selections.h"

namespace platform::screen
{

/// What may be done with what is dragged: bits, the first three with the values of DROPEFFECT_*.
using DragActions = unsigned;
inline constexpr DragActions kDragCopy = 1;
inline constexpr DragActions kDragMove = 2;
inline constexpr DragActions kDragLink = 4;
inline constexpr DragActions kDragAsk = 8; ///< the user is to be asked: a drag by the right button

// --- what other programs drag over this one's windows

struct DragOffer
{
    unsigned drag = 0;                ///< names the drag; the next one may come before this one is dealt with
    std::vector<std::string> targets; ///< the best first
    DragActions actions = 0; ///< all that the source lets be done; with kDragAsk if it would have the user asked
};
/// What would be done with a drop at the last DragOver's point; 0 when it would be refused. Once for each DragOver
/// event, unless another follows at once, and again whenever that changes. Nothing happens for a drag that is over.
void AnswerDrag(unsigned drag, DragActions action);
/// After a DragDrop event: what has been done, 0 for nothing. Until then the content can be read.
void FinishDrop(unsigned drag, DragActions action);

// --- what this program drags

/// A picture that follows the pointer, of at most 1024 pixels either way; none without pixels. Where there is no
/// compositor it has sharp edges.
struct DragImage
{
    SIZE size{};
    POINT hotSpot{};                   ///< of the pointer, from the picture's top left corner
    std::vector<std::uint32_t> pixels; ///< 0xAARRGGBB premultiplied, rows from the top
};

/// Follows the pointer until EndDrag: mouse and keyboard report to this program wherever the pointer is. One at a time.
/// False when the display refuses, or another program has them.
bool BeginDrag(std::shared_ptr<const SelectionSource> source, DragActions allowed, const DragImage& image);

/// Where the pointer is while this program drags.
struct DragPlace
{
    NativeWindow own = 0;   ///< this program's top-level window there; what happens in it is this program's to decide
    bool answered = false;  ///< the other side has answered for the last point told to it
    DragActions answer = 0; ///< what it would do; 0 nothing, or nobody is there. After DragEnded: what it has done
};
/// Moves the picture, tells the other side. `wanted`: what the modifiers stand for; kDragAsk for the right button.
DragPlace MoveDrag(POINT position, DragActions wanted);
/// The same place, as of the last event.
DragPlace CurrentDragPlace();
/// What a drop would do here, shown by the pointer.
void ShowDragAction(DragActions action);
/// Drops on the other side. False when nobody there takes it; else DragEnded comes, at the latest when the other side
/// has been silent for two seconds, or for a minute where it asks its user.
bool DropDrag();
/// Gives mouse and keyboard back and takes the picture away; unless dropped, tells the other side that the drag has
/// left. What was offered can be read on by whom it was dropped on.
void EndDrag();

} // namespace platform::screen
