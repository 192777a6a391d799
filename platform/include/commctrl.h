// Common controls: toolbar, pager, image list, subclassing.
#pragma once

#include "windows.h"

struct IMAGELIST__;
using HIMAGELIST = IMAGELIST__*;

#define TOOLBARCLASSNAMEW TEXT("ToolbarWindow32")
#define WC_PAGESCROLLERW TEXT("SysPager")

// --- notifications
#define NM_FIRST 0U
#define NM_CLICK (NM_FIRST - 2U)
#define NM_RCLICK (NM_FIRST - 5U)
#define NM_CUSTOMDRAW (NM_FIRST - 12U)
#define NM_KEYDOWN (NM_FIRST - 15U)
#define NM_LDOWN (NM_FIRST - 20U)
#define TBN_FIRST (0U - 700U)
#define TBN_HOTITEMCHANGE (TBN_FIRST - 13U)
#define TBN_GETOBJECT (TBN_FIRST - 12U)
#define PGN_FIRST (0U - 900U)
#define PGN_SCROLL (PGN_FIRST - 1U)
#define PGN_CALCSIZE (PGN_FIRST - 2U)

struct NMMOUSE
{
    NMHDR hdr;
    DWORD_PTR dwItemSpec; ///< command id of the button, −1 outside the buttons
    DWORD_PTR dwItemData; ///< data of the button, 0 outside the buttons
    POINT pt;             ///< client coordinates of the control
    LPARAM dwHitInfo;
};

struct NMKEY
{
    NMHDR hdr;
    UINT nVKey;
    UINT uFlags;
};

struct NMCUSTOMDRAW
{
    NMHDR hdr;
    DWORD dwDrawStage;
    HDC hdc;
    RECT rc;
    DWORD_PTR dwItemSpec; ///< command id of the button
    UINT uItemState;
    LPARAM lItemlParam; ///< data of the button
};

struct NMTBCUSTOMDRAW
{
    NMCUSTOMDRAW nmcd;
    HBRUSH hbrMonoDither;
    HBRUSH hbrLines;
    HPEN hpenLines;
    COLORREF clrText;
    COLORREF clrMark;
    COLORREF clrTextHighlight;
    COLORREF clrBtnFace;
    COLORREF clrBtnHighlight;
    COLORREF clrHighlightHotTrack;
    RECT rcText;
    int nStringBkMode;
    int nHLStringBkMode;
    int iListGap;
};

struct NMTBHOTITEM
{
    NMHDR hdr;
    int idOld;
    int idNew;
    DWORD dwFlags;
};

struct NMOBJECTNOTIFY
{
    NMHDR hdr;
    int iItem;
    const IID* piid;
    void* pObject;
    HRESULT hResult;
    DWORD dwFlags;
};

#define CDDS_PREPAINT 0x00000001
#define CDDS_POSTPAINT 0x00000002
#define CDDS_ITEM 0x00010000
#define CDDS_ITEMPREPAINT (CDDS_ITEM | CDDS_PREPAINT)
#define CDDS_ITEMPOSTPAINT (CDDS_ITEM | CDDS_POSTPAINT)
#define CDIS_SELECTED 0x0001
#define CDIS_DISABLED 0x0004
#define CDIS_HOT 0x0040
#define CDRF_DODEFAULT 0x00000000
#define CDRF_SKIPDEFAULT 0x00000004
#define CDRF_NOTIFYPOSTPAINT 0x00000010
#define CDRF_NOTIFYITEMDRAW 0x00000020
#define TBCDRF_NOEDGES 0x00010000
#define TBCDRF_HILITEHOTTRACK 0x00020000
#define TBCDRF_NOOFFSET 0x00040000
#define TBCDRF_NOMARK 0x00080000
#define TBCDRF_USECDCOLORS 0x00800000

#define HICF_OTHER 0x0000
#define HICF_MOUSE 0x0001
#define HICF_ARROWKEYS 0x0002
#define HICF_ENTERING 0x0010
#define HICF_LEAVING 0x0020

// --- common control styles
#define CCS_NORESIZE 0x0004
#define CCS_NOPARENTALIGN 0x0008
#define CCS_NODIVIDER 0x0040
#define CCS_VERT 0x0080

// --- toolbar
#define TBSTYLE_FLAT 0x0800
#define TBSTYLE_LIST 0x1000
#define TBSTYLE_REGISTERDROP 0x4000
#define TBSTYLE_TRANSPARENT 0x8000
#define BTNS_BUTTON 0x00
#define BTNS_SEP 0x01
#define TBSTATE_CHECKED 0x01
#define TBSTATE_PRESSED 0x02
#define TBSTATE_ENABLED 0x04
#define TBSTATE_HIDDEN 0x08
#define TBSTATE_WRAP 0x20
#define I_IMAGENONE (-2)
#define TBIMHT_AFTER 0x0001

struct TBBUTTON
{
    int iBitmap; ///< image index; for a separator its extent in pixels; I_IMAGENONE
    int idCommand;
    BYTE fsState;
    BYTE fsStyle;
    BYTE bReserved[6];
    DWORD_PTR dwData;
    INT_PTR iString; ///< pointer to the text, which must outlive the button's insertion
};

struct TBINSERTMARK
{
    int iButton;
    DWORD dwFlags;
};

#define TB_DELETEBUTTON (WM_USER + 22)
#define TB_GETBUTTON (WM_USER + 23)
#define TB_BUTTONCOUNT (WM_USER + 24)
#define TB_GETITEMRECT (WM_USER + 29)
#define TB_BUTTONSTRUCTSIZE (WM_USER + 30)
#define TB_SETBUTTONSIZE (WM_USER + 31)
#define TB_SETBITMAPSIZE (WM_USER + 32)
#define TB_AUTOSIZE (WM_USER + 33)
#define TB_SETIMAGELIST (WM_USER + 48)
#define TB_GETIMAGELIST (WM_USER + 49)
#define TB_GETBUTTONSIZE (WM_USER + 58)
#define TB_INSERTBUTTONW (WM_USER + 67)
#define TB_HITTEST (WM_USER + 69)
#define TB_GETHOTITEM (WM_USER + 71)
#define TB_SETHOTITEM (WM_USER + 72)
#define TB_GETINSERTMARK (WM_USER + 79)
#define TB_SETINSERTMARK (WM_USER + 80)
#define TB_GETINSERTMARKCOLOR (WM_USER + 89)
#define TB_SETINSERTMARKCOLOR (WM_USER + 88)
#define TB_GETPADDING (WM_USER + 86)

// --- pager
#define PGS_VERT 0x0000
#define PGS_HORZ 0x0001
#define PGS_AUTOSCROLL 0x0002
#define PGS_DRAGNDROP 0x0004
#define PGM_FIRST 0x1400
#define PGM_SETCHILD (PGM_FIRST + 1)
#define PGM_RECALCSIZE (PGM_FIRST + 2)
#define PGM_SETPOS (PGM_FIRST + 8)
#define PGM_GETPOS (PGM_FIRST + 9)
#define PGM_SETBUTTONSIZE (PGM_FIRST + 10)
#define PGM_GETBUTTONSIZE (PGM_FIRST + 11)
#define PGM_GETBUTTONSTATE (PGM_FIRST + 12)
#define PGB_TOPORLEFT 0
#define PGB_BOTTOMORRIGHT 1
#define PGF_INVISIBLE 0
#define PGF_NORMAL 1
#define PGF_GRAYED 2
#define PGF_DEPRESSED 4
#define PGF_HOT 8
#define PGF_SCROLLUP 1
#define PGF_SCROLLDOWN 2
#define PGF_CALCWIDTH 1
#define PGF_CALCHEIGHT 2

struct NMPGCALCSIZE
{
    NMHDR hdr;
    DWORD dwFlag;
    int iWidth;
    int iHeight;
};

// comctl32 declares this one packed to one byte.
#pragma pack(push, 1)
struct NMPGSCROLL
{
    NMHDR hdr;
    WORD fwKeys;
    RECT rcParent;
    int iDir;
    int iXpos;
    int iYpos;
    int iScroll; ///< pixels to scroll; the owner may change it
};
#pragma pack(pop)

// --- image lists
#define ILC_MASK 0x0001
#define ILC_COLOR32 0x0020
#define ILD_NORMAL 0x0000

HIMAGELIST ImageList_Create(int width, int height, UINT flags, int initial, int grow);
BOOL ImageList_Destroy(HIMAGELIST list);
int ImageList_GetImageCount(HIMAGELIST list);
/// Appends (index −1) or replaces an image with a copy of the icon, which stays the caller's. −1 on failure.
int ImageList_ReplaceIcon(HIMAGELIST list, int index, HICON icon);
BOOL ImageList_Draw(HIMAGELIST list, int index, HDC dc, int x, int y, UINT style);
BOOL ImageList_GetIconSize(HIMAGELIST list, int* width, int* height);

// --- progress bar
#define PROGRESS_CLASSW TEXT("msctls_progress32")
#define PBM_SETPOS (WM_USER + 2)
#define PBM_SETRANGE32 (WM_USER + 6)
#define PBM_GETPOS (WM_USER + 8)

// --- subclassing
using SUBCLASSPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM, UINT_PTR id, DWORD_PTR data);
BOOL SetWindowSubclass(HWND window, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR data);
BOOL RemoveWindowSubclass(HWND window, SUBCLASSPROC procedure, UINT_PTR id);
LRESULT DefSubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
