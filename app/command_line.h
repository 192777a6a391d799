// The command line: up to four comma-separated fields fx,fy,align,window.
//
// Rules only. Numbers are read as the C library reads them in its "C" locale: leading white space is skipped, a field
// without a number counts as 0, and what follows a number other than a comma ends the line.
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

AnchorRequest ParseCommandLine(WStringView line);

/// The anchor of an Absolute request. Truncated toward zero; a number that no screen has room for is cut off far
/// outside every screen, NaN counts as 0.
POINT AbsoluteAnchor(const AnchorRequest& request);
/// The anchor of a Window request whose window has the given rectangle.
POINT WindowAnchor(const AnchorRequest& request, const RECT& window);
