// Device contexts, bitmaps, fonts, text and shapes.
//
// Coordinates are pixels in the device context's space: client coordinates for a window's context. Only MM_TEXT.
#pragma once

#include "windef.h"

struct LOGFONTW
{
    LONG lfHeight; ///< pixels; negative: em height, positive: cell height, 0: default size
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    WCHAR lfFaceName[32];
};

struct TEXTMETRICW
{
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    WCHAR tmFirstChar;
    WCHAR tmLastChar;
    WCHAR tmDefaultChar;
    WCHAR tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};

struct BITMAP
{
    LONG bmType;
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    LPVOID bmBits;
};

struct BITMAPINFOHEADER
{
    DWORD biSize;
    LONG biWidth;
    LONG biHeight; ///< positive: bottom-up rows, negative: top-down
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};

struct RGBQUAD
{
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};

struct BITMAPINFO
{
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};

struct DIBSECTION
{
    BITMAP dsBm;
    BITMAPINFOHEADER dsBmih;
    DWORD dsBitfields[3];
    HANDLE dshSection;
    DWORD dsOffset;
};

struct BLENDFUNCTION
{
    BYTE BlendOp;
    BYTE BlendFlags;
    BYTE SourceConstantAlpha;
    BYTE AlphaFormat;
};

#define RGB(r, g, b)                                                                                                   \
    (static_cast<COLORREF>(static_cast<BYTE>(r) | (static_cast<WORD>(static_cast<BYTE>(g)) << 8) |                     \
                           (static_cast<DWORD>(static_cast<BYTE>(b)) << 16)))
#define GetRValue(c) (static_cast<BYTE>((c)&0xff))
#define GetGValue(c) (static_cast<BYTE>(((c) >> 8) & 0xff))
#define GetBValue(c) (static_cast<BYTE>(((c) >> 16) & 0xff))
#define CLR_INVALID 0xFFFFFFFF
#define CLR_NONE 0xFFFFFFFF

#define BI_RGB 0
#define DIB_RGB_COLORS 0
#define SRCCOPY 0x00CC0020
#define AC_SRC_OVER 0
#define AC_SRC_ALPHA 1
#define BLACKONWHITE 1
#define COLORONCOLOR 3
#define TRANSPARENT 1
#define OPAQUE 2
#define LOGPIXELSX 88
#define LOGPIXELSY 90
#define BITSPIXEL 12
#define FW_NORMAL 400
#define FW_BOLD 700
#define DEFAULT_CHARSET 1
#define OUT_DEFAULT_PRECIS 0
#define CLIP_DEFAULT_PRECIS 0
#define CLEARTYPE_QUALITY 5
#define DEFAULT_QUALITY 0
#define DEFAULT_PITCH 0
#define WHITE_BRUSH 0
#define BLACK_PEN 7
#define NULL_PEN 8
#define SYSTEM_FONT 13
#define DEFAULT_GUI_FONT 17
#define ERROR 0
#define NULLREGION 1
#define SIMPLEREGION 2
#define COMPLEXREGION 3

// --- device contexts
HDC CreateCompatibleDC(HDC reference);
struct DEVMODEW;
/// For "DISPLAY" a context to measure with; what is drawn on it goes nowhere. DeleteDC closes it.
HDC CreateDCW(LPCWSTR driver, LPCWSTR device, LPCWSTR port, const DEVMODEW* mode);
BOOL DeleteDC(HDC dc);
int SaveDC(HDC dc);
BOOL RestoreDC(HDC dc, int saved);
int GetDeviceCaps(HDC dc, int index);
HGDIOBJ SelectObject(HDC dc, HGDIOBJ object);
BOOL SetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous);
BOOL OffsetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous);
BOOL GetViewportOrgEx(HDC dc, LPPOINT point);
int SetStretchBltMode(HDC dc, int mode);
int SetBkMode(HDC dc, int mode);
COLORREF SetTextColor(HDC dc, COLORREF color);

// --- clipping (regions in the context's coordinates)
int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom);
int GetClipBox(HDC dc, LPRECT box);

// --- objects
BOOL DeleteObject(HGDIOBJ object);
int GetObjectW(HANDLE object, int size, LPVOID data);
HGDIOBJ GetStockObject(int index);
HBRUSH CreateSolidBrush(COLORREF color);
HFONT CreateFontW(int height, int width, int escapement, int orientation, int weight, DWORD italic, DWORD underline,
                  DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision, DWORD quality,
                  DWORD pitchAndFamily, LPCWSTR faceName);
HFONT CreateFontIndirectW(const LOGFONTW* font);
/// A bitmap whose pixels the caller can reach: 32 bits per pixel (B, G, R, A), no others. *bits belongs to the bitmap.
HBITMAP CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, LPVOID* bits, HANDLE section, DWORD offset);
BOOL GdiFlush();

// --- drawing
/// SRCCOPY only.
BOOL BitBlt(HDC destination, int x, int y, int width, int height, HDC source, int sourceX, int sourceY, DWORD rop);
/// Premultiplied source over; stretches without interpolation.
BOOL AlphaBlend(HDC destination, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                int sourceWidth, int sourceHeight, BLENDFUNCTION blend);
/// Filled, never outlined.
BOOL Polygon(HDC dc, const POINT* points, int count);
COLORREF GetPixel(HDC dc, int x, int y);

// --- text (lengths in UTF-16 code units)
BOOL GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size);
BOOL GetTextMetricsW(HDC dc, TEXTMETRICW* metrics);
