// Where the controls of a message box go: measured sizes in, control records out. Pure arithmetic.
#pragma once

#include "prompts/box_rules.h"

/// One control; place and size in dialog units.
struct ControlRecord
{
    DWORD style = 0;
    DWORD exStyle = 0;
    short x = 0;
    short y = 0;
    short cx = 0;
    short cy = 0;
    WORD id = 0;
    WORD controlClass = 0; ///< number of a predefined class
    WString text{};
};

constexpr WORD kButtonClass = 0x0080;
constexpr WORD kStaticClass = 0x0082;

/// What the box says. Texts are cut to kTextCapacity.
struct BoxContent
{
    DWORD flags = 0;
    WString text{};
    std::vector<BoxButton> buttons{};
    int places = 0; ///< of buttons in the row
    WString checkLabel{};
};

constexpr std::size_t kTextCapacity = 1023; ///< characters

/// Pixels.
struct BoxMeasures
{
    int percent = 100; ///< scale of buttons and check box
    SIZE units{};      ///< of four dialog units across, eight down
    SIZE text{};       ///< broken to lines
    SIZE icon{};       ///< 0 when there is none
    int checkLabel = 0;
};

struct BoxLayout
{
    DWORD style = 0;
    short cx = 0; ///< dialog units
    short cy = 0;
    std::vector<ControlRecord> controls{}; ///< in their order in the template, which is the tab order
    int defaultId = IDOK;                  ///< of the default button
};

BoxLayout LayOutBox(const BoxContent& content, const BoxMeasures& measures);
