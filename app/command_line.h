// The command line: up to four comma-separated fields fx,fy,align,window.
#pragma once

#include "support/wstring.h"

#include <cstdint>

/// Where the caller wants the root level.
struct AnchorRequest
{
    enum class Kind
    {
        Cursor,   ///< at the cursor
        Absolute, ///< at the screen point (fx, fy)
        Window,   ///< at the fractions (fx, fy) of a window's width and height
    };
    Kind kind = Kind::Cursor;
    double fx = 0;
    double fy = 0;
    int align = 0;            ///< below 4; a negative one stays in force
    std::uint32_t window = 0; ///< low 32 bits of the handle
};

/// A field without a number counts as 0; what follows a number, other than a comma, ends the line.
AnchorRequest ParseCommandLine(WStringView line);

/// The anchor of an Absolute request, truncated toward zero. A number beyond every screen stops far outside of them,
/// where a window's size can still be added to it; NaN counts as 0.
POINT AbsoluteAnchor(const AnchorRequest& request);
/// The anchor of a Window request whose window has the given rectangle.
POINT WindowAnchor(const AnchorRequest& request, const RECT& window);
