// The message box: buttons and check box by flags, layout in pixels, template bytes.
#include "prompts/box_template.h"
#include "prompts/message_box.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace
{

std::string Narrow(const WString& text)
{
    std::string narrow;
    for (const WCHAR c : text)
        narrow += static_cast<char>(c);
    return narrow;
}

/// "6 &Yes, 7 &No"
std::string Describe(const std::vector<BoxButton>& buttons)
{
    std::string text;
    for (const BoxButton& button : buttons)
        text += (text.empty() ? "" : ", ") + std::to_string(button.id) + " " + Narrow(button.label);
    return text;
}

TEST(BoxButtons, AreThoseOfTheKindThenTheAddedOnes)
{
    struct Case
    {
        DWORD flags;
        bool extra;
        const char* buttons;
        int places;
    };
    constexpr DWORD kAll = MBX_YESTOALL | MBX_NOTOALL;
    for (const Case& c : {
             Case{MB_OK, false, "1 OK", 1},
             Case{MB_OKCANCEL, false, "1 OK, 2 Cancel", 2},
             Case{MB_ABORTRETRYIGNORE, false, "3 &Abort, 4 &Retry, 5 &Ignore", 3},
             Case{MB_YESNOCANCEL, false, "6 &Yes, 7 &No, 2 Cancel", 3},
             Case{MB_YESNO, false, "6 &Yes, 7 &No", 2},
             Case{MB_RETRYCANCEL, false, "4 &Retry, 2 Cancel", 2},
             Case{MBX_CONTINUEABORT, false, "11 &Continue, 3 &Abort", 2},
             Case{MB_YESNOCANCEL | kAll, false, "6 &Yes, 12 Yes to &All, 7 &No, 13 No to A&ll, 2 Cancel", 5},
             Case{MB_YESNO | MBX_NOTOALL, false, "6 &Yes, 7 &No, 13 No to A&ll", 3},
             Case{MB_OKCANCEL | MBX_YESTOALL, false, "1 OK, 2 Cancel", 3},
             Case{MB_OK | kAll, false, "1 OK", 1},
             Case{MBX_CONTINUEABORT | kAll, false, "11 &Continue, 3 &Abort", 2},
             Case{MB_YESNO | kAll | MB_HELP, true, "6 &Yes, 12 Yes to &All, 7 &No, 13 No to A&ll, 14 More, 300 &Help",
                  6},
             Case{MB_OK | MB_HELP, false, "1 OK, 300 &Help", 2},
             Case{6, false, "1 OK", 1},
             Case{15, false, "1 OK", 1},
         })
    {
        EXPECT_EQ(Describe(ButtonsOfBox(c.flags, BoxLabels(), c.extra ? TEXT("More") : nullptr)), c.buttons);
        EXPECT_EQ(ButtonPlaces(c.flags, c.extra), c.places) << c.buttons;
    }
}

TEST(BoxButtons, EscapeAnswersCancelOrTheOnlyOk)
{
    for (const DWORD kind : {0u, 1u, 2u, 3u, 4u, 5u, 8u})
    {
        EXPECT_EQ(HasCancel(kind), kind == 1 || kind == 3 || kind == 5) << kind;
        EXPECT_EQ(HasOnlyOk(kind), kind == 0) << kind;
    }
}

TEST(BoxButtons, TheDefaultOneIsCountedFromTheLeft)
{
    for (int bits = 0; bits < 16; ++bits)
        EXPECT_EQ(DefaultButtonOrdinal(static_cast<DWORD>(bits) << 8, 7), bits < 7 ? bits + 1 : 1) << bits;
    EXPECT_EQ(DefaultButtonOrdinal(MB_DEFBUTTON2, 2), 2);
    EXPECT_EQ(DefaultButtonOrdinal(MB_DEFBUTTON3, 2), 1) << "there is no third";
}

TEST(BoxFlags, ChooseCheckBoxAndIcon)
{
    const BoxLabels labels;
    const WString last = TEXT("last");
    EXPECT_EQ(CheckBoxFlag(MB_YESNO | MBX_CHECKED | MBX_NOBEEP), 0u);
    EXPECT_EQ(CheckBoxFlag(MBX_DONTASK | MBX_DONTTELL | MBX_CUSTOMCHECK), 0x01000000u);
    EXPECT_EQ(CheckBoxFlag(MBX_DONTTELL | MBX_CUSTOMCHECK), 0x02000000u);
    EXPECT_EQ(CheckBoxFlag(MBX_CUSTOMCHECK), 0x20000000u);
    EXPECT_EQ(Narrow(CheckBoxLabel(MBX_DONTASK, labels, last)), "Don't ask me again");
    EXPECT_EQ(Narrow(CheckBoxLabel(MBX_DONTTELL, labels, last)), "Don't tell me again");
    EXPECT_EQ(Narrow(CheckBoxLabel(MBX_CUSTOMCHECK, labels, last)), "last");
    EXPECT_EQ(Narrow(CheckBoxLabel(MBX_CUSTOMCHECK, labels, {})), "Don't tell me again");
    EXPECT_EQ(IconOfBox(0x10), IDI_HAND);
    EXPECT_EQ(IconOfBox(0x20), IDI_QUESTION);
    EXPECT_EQ(IconOfBox(0x31), IDI_EXCLAMATION);
    EXPECT_EQ(IconOfBox(0x40), IDI_ASTERISK);
    EXPECT_EQ(IconOfBox(0x50), nullptr);
    EXPECT_EQ(TextLimit(MB_OK, 1921, 32), 1060);
    EXPECT_EQ(TextLimit(0x50, 1921, 32), 1012) << "room is left for any icon";
}

/// With units in which a dialog unit is a pixel, so that places are read as they were computed.
BoxMeasures InPixels(int percent, SIZE text, SIZE icon = {}, int checkLabel = 0)
{
    return {percent, {4, 8}, text, icon, checkLabel};
}

BoxContent Content(DWORD flags, bool extra = false)
{
    const LPCWSTR extraLabel = extra ? TEXT("More") : nullptr;
    return {flags, TEXT("text"), ButtonsOfBox(flags, BoxLabels(), extraLabel), ButtonPlaces(flags, extra),
            TEXT("check")};
}

std::string Place(const ControlRecord& control)
{
    return std::to_string(control.id) + ": " + std::to_string(control.x) + "," + std::to_string(control.y) + " " +
           std::to_string(control.cx) + "x" + std::to_string(control.cy);
}

std::vector<std::string> Places(const BoxLayout& layout)
{
    std::vector<std::string> places;
    std::transform(layout.controls.begin(), layout.controls.end(), std::back_inserter(places), Place);
    return places;
}

using Lines = std::vector<std::string>;

TEST(BoxLayout, OfANarrowTextWithTwoButtons)
{
    // Text, buttons and the box itself are a pixel larger than their rectangles.
    const BoxLayout at96 = LayOutBox(Content(MB_OKCANCEL), InPixels(100, {100, 13}));
    EXPECT_EQ(Places(at96), (Lines{"1001: 16,16 113x19", "1: 16,42 83x24", "2: 104,42 83x24"}));
    EXPECT_EQ(at96.cx, 204);
    EXPECT_EQ(at96.cy, 76);
    EXPECT_EQ(at96.style, 0x90C80880u);
    EXPECT_EQ(at96.defaultId, IDOK);
    const BoxLayout at144 = LayOutBox(Content(MB_OKCANCEL), InPixels(150, {100, 13}));
    // Two places of 123 + 6, and 27; 34.5 is rounded up.
    EXPECT_EQ(Places(at144), (Lines{"1001: 16,16 113x19", "1: 16,42 124x36", "2: 145,42 124x36"}));
    EXPECT_EQ(at144.cx, 286);
}

TEST(BoxLayout, OfAWideTextWithIconAndCheckBox)
{
    const DWORD flags = MB_OKCANCEL | MB_ICONEXCLAMATION | MBX_DONTTELL | MB_DEFBUTTON2 | MB_SYSTEMMODAL;
    const BoxLayout low = LayOutBox(Content(flags), InPixels(100, {300, 13}, {32, 32}, 90));
    // The icon reaches lower than the text: 42 + 8. The row is in the middle of 376: (376 - 176 + 6) / 2.
    EXPECT_EQ(Places(low), (Lines{"1000: 8,8 35x35", "1001: 56,16 313x19", "1: 103,50 83x24", "2: 191,50 83x24",
                                  "5555: 17,85 121x17"}));
    EXPECT_EQ(low.cx, 377);
    EXPECT_EQ(low.cy, 110);
    EXPECT_EQ(low.style, 0x90C80882u);
    EXPECT_EQ(low.defaultId, IDCANCEL);
    std::vector<DWORD> styles;
    for (const ControlRecord& control : low.controls)
        styles.push_back(control.style);
    EXPECT_EQ(styles, (std::vector<DWORD>{0x50000000, 0x50000000, 0x50010000, 0x50010001, 0x50010003}));
    EXPECT_EQ(low.controls[0].text, WString());
    EXPECT_EQ(low.controls[0].controlClass, 0x82);
    EXPECT_EQ(low.controls[4].controlClass, 0x80);
    const BoxLayout high = LayOutBox(Content(flags), InPixels(150, {300, 80}, {48, 48}, 600));
    // The check box's label is wider than all else: 600 / 3 + 600 + 17.
    EXPECT_EQ(Places(high), (Lines{"1000: 8,8 51x51", "1001: 72,16 313x86", "1: 70,109 124x36", "2: 199,109 124x36",
                                   "5555: 17,156 801x25"}));
    EXPECT_EQ(high.cx, 818);
    EXPECT_EQ(high.cy, 189);
}

TEST(BoxLayout, MayBeAPixelNarrowerThanItsCheckBox)
{
    // 85 / 3 + 85 + 17 is 130, what the text needs is 129.
    EXPECT_EQ(LayOutBox(Content(MB_OK | MBX_DONTTELL), InPixels(100, {100, 13}, {}, 85)).cx, 129 + 1);
    EXPECT_EQ(LayOutBox(Content(MB_OK | MBX_DONTTELL), InPixels(100, {100, 13}, {}, 86)).cx, 131 + 1);
}

TEST(BoxLayout, LeavesPlaceForAButtonThatIsNotThere)
{
    const BoxLayout layout = LayOutBox(Content(MB_OKCANCEL | MBX_YESTOALL), InPixels(100, {10, 13}));
    EXPECT_EQ(layout.cx, 3 * 88 + 27 + 1);
    EXPECT_EQ(layout.controls[1].x, 16);
    EXPECT_EQ(layout.controls.size(), 3u);
}

TEST(BoxLayout, DividesIntoDialogUnitsTowardZero)
{
    BoxMeasures measures = InPixels(100, {100, 13}, {32, 32}, 90);
    measures.units = {7, 15};
    const BoxLayout layout = LayOutBox(Content(MB_OK | MB_ICONHAND | MBX_DONTASK), measures);
    // 8 * 4 / 7, 8 * 8 / 15, 35 * 4 / 7, 35 * 8 / 15; (112 * 4 + 4) / 7; the button begins at (176 - 88 + 6) / 2.
    EXPECT_EQ(Places(layout), (Lines{"1000: 4,4 20x18", "1001: 32,8 64x10", "1: 26,26 47x12", "5555: 9,45 69x9"}));
    EXPECT_EQ(layout.cx, (176 * 4 + 4) / 7);
    EXPECT_EQ(layout.cy, (109 * 8 + 8) / 15);
}

TEST(BoxLayout, CutsWhatIsTooLong)
{
    BoxContent content = Content(MB_OK);
    content.text = WString(5000, TEXT('x'));
    EXPECT_EQ(LayOutBox(content, InPixels(100, {100, 13})).controls[0].text.size(), 1023u);
}

TEST(BoxTemplate, IsWrittenByteByByte)
{
    BoxLayout layout;
    layout.style = 0x90C80880;
    layout.cx = 0x0102;
    layout.cy = 0x0304;
    layout.controls = {{0x50000000, 0, 1, 2, 3, 4, kMessageTextId, kStaticClass, TEXT("a")},
                       {0x50010001, 0, 5, 6, 7, 8, IDOK, kButtonClass, TEXT("OK")}};
    const WString caption = TEXT("Hi");
    const unsigned char expected[] = {
        0x80, 0x08, 0xC8, 0x90, 0,   0, 0,   0, 2, 0, 0, 0, 0, 0, 0x02, 0x01, 0x04, 0x03, // style to size
        0,    0,    0,    0,    'H', 0, 'i', 0, 0, 0,                                     // menu, class, caption
        0,    0,    0,    0x50, 0,   0, 0,   0, 1, 0, 2, 0, 3, 0, 4,    0,    0xE9, 0x03, // style to identifier
        0xFF, 0xFF, 0x82, 0,    'a', 0, 0,   0, 0, 0,                                     // class, text, no data
        0x01, 0,    0x01, 0x50, 0,   0, 0,   0, 5, 0, 6, 0, 7, 0, 8,    0,    1,    0,    // the button, alike
        0xFF, 0xFF, 0x80, 0,    'O', 0, 'K', 0, 0, 0, 0, 0,                               //
    };
    ASSERT_EQ(BoxTemplateSize(layout, caption), sizeof(expected));
    alignas(4) unsigned char block[sizeof(expected) + 1] = {};
    block[sizeof(expected)] = 0xAA;
    WriteBoxTemplate(block, layout, caption);
    EXPECT_EQ(std::memcmp(block, expected, sizeof(expected)), 0);
    EXPECT_EQ(block[sizeof(expected)], 0xAA) << "not beyond its end";
}

TEST(BoxTemplate, BeginsEachControlOnFourBytes)
{
    for (std::size_t caption = 0; caption < 4; ++caption)
        for (std::size_t first = 0; first < 4; ++first)
        {
            BoxLayout layout;
            layout.controls.resize(3);
            layout.controls[0].text.assign(first, TEXT('x'));
            layout.controls[2].text.assign(5, TEXT('x'));
            const std::size_t size = (2 * caption + 27) / 4 * 4 + (2 * first + 29) / 4 * 4 + 29 / 4 * 4 + 2 * 5 + 26;
            EXPECT_EQ(BoxTemplateSize(layout, WString(caption, TEXT('x'))), size) << caption << ", " << first;
        }
}

} // namespace
