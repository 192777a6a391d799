// The command line: where the caller wants the menu.
#include "app/command_line.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace
{

using Kind = AnchorRequest::Kind;

WString Wide(const std::string& text)
{
    return WString(text.begin(), text.end());
}

struct Case
{
    const char* line;
    Kind kind;
    int align;
    POINT absolute;
};

TEST(CommandLine, CursorUnlessTheLineNamesAPoint)
{
    const Case cases[] = {
        {"", Kind::Cursor, 0, {}},
        {"0.5,0.5", Kind::Cursor, 0, {}},
        {"rubbish", Kind::Cursor, 0, {}},
        {"1;2,3", Kind::Cursor, 0, {}},
        {"100,200,1", Kind::Absolute, 1, {100, 200}},
        {"100.9,-3.7,2", Kind::Absolute, 2, {100, -3}},
        {" 100, \t200, 3", Kind::Absolute, 3, {100, 200}},
        {",,", Kind::Absolute, 0, {0, 0}},
        {"1e2,+2e1,0x1", Kind::Absolute, 1, {100, 20}},
        {"0x64,0x1p4,01", Kind::Absolute, 1, {100, 16}},
        {"100,200,1 ,5", Kind::Absolute, 1, {100, 200}},
        {"100 ,200,1", Kind::Cursor, 0, {}},
        {"--1,2,3", Kind::Cursor, 0, {}},
        {"+-1,2,3", Kind::Cursor, 0, {}},
        {"1,5,\xE4", Kind::Absolute, 0, {1, 5}},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.line);
        const AnchorRequest request = ParseCommandLine(Wide(c.line));
        EXPECT_EQ(request.kind, c.kind);
        EXPECT_EQ(request.align, c.align);
        if (c.kind == Kind::Absolute)
        {
            EXPECT_EQ(AbsoluteAnchor(request).x, c.absolute.x);
            EXPECT_EQ(AbsoluteAnchor(request).y, c.absolute.y);
        }
    }
}

TEST(CommandLine, AlignmentIsCheckedOnlyUpward)
{
    const std::pair<const char*, int> cases[] = {{"4", 0},   {"99999999999999999999", 0},       {"-1", -1}, {"0x3", 3},
                                                 {"010", 0}, {"-99999999999", -2147483647 - 1}, {"", 0},    {"2x", 2}};
    for (const auto& [field, align] : cases)
        EXPECT_EQ(ParseCommandLine(Wide(std::string("1,2,") + field)).align, align) << field;
}

TEST(CommandLine, WindowFieldTakesTheLow32Bits)
{
    const std::pair<const char*, std::uint32_t> cases[] = {{"0x1a2b", 0x1a2b},
                                                           {"4294967298", 2},
                                                           {"-1", 0xFFFFFFFF},
                                                           {"017", 15},
                                                           {"", 0},
                                                           {"0x", 0},
                                                           {"99999999999999999999999", 0xFFFFFFFF},
                                                           {"-99999999999999999999999", 0xFFFFFFFF},
                                                           {"-2", 0xFFFFFFFE},
                                                           {"12 34", 12}};
    for (const auto& [field, window] : cases)
    {
        const AnchorRequest request = ParseCommandLine(Wide(std::string("0.5,1,3,") + field));
        EXPECT_EQ(request.kind, Kind::Window) << field;
        EXPECT_EQ(request.window, window) << field;
        EXPECT_EQ(request.align, 3) << field;
    }
}

TEST(CommandLine, TinyNumbersAreNoneAndOverflowIsTheLargest)
{
    // Numbers that are too small, written with a capital E or in hexadecimal, became the far end of every screen.
    const std::pair<const char*, double> cases[] = {
        {"1e-400", 0},         {"1E-400", 0},          {"0x1p-5000", 0}, {"-0X1P-5000", 0}, {"1E+400", HUGE_VAL},
        {"-1e400", -HUGE_VAL}, {"0x1P5000", HUGE_VAL}, {"0x.8p1", 1},    {"0x", 0},         {"1e", 1},
        {".5", 0.5},           {"INFINITY", HUGE_VAL}, {"1E2", 100},     {"0x1P4", 16},
    };
    for (const auto& [field, value] : cases)
        EXPECT_EQ(ParseCommandLine(Wide(std::string(field) + ",1,2")).fx, value) << field;
}

TEST(CommandLine, FractionsOfAWindowAreTruncatedTowardZero)
{
    const RECT window{-101, 40, 100, 90};
    const auto at = [&](const char* line) { return WindowAnchor(ParseCommandLine(Wide(line)), window); };
    EXPECT_EQ(at("0.5,1,3,1").x, 0) << "-0.5 becomes 0, not -1";
    EXPECT_EQ(at("0.5,1,3,1").y, 90);
    EXPECT_EQ(at("2,-1,0,1").x, 301) << "fractions are not limited to the window";
    EXPECT_EQ(at("2,-1,0,1").y, -10);
}

TEST(CommandLine, NumbersBeyondEveryScreenStayNumbers)
{
    for (const char* line : {"1e300,-1e300,0", "inf,-inf,0", "99999999999,-99999999999,0"})
    {
        const POINT anchor = AbsoluteAnchor(ParseCommandLine(Wide(line)));
        EXPECT_GT(anchor.x, 1 << 20) << line;
        EXPECT_LT(anchor.x, 1 << 30) << line << ": room is left for adding a window's size";
        EXPECT_LT(anchor.y, -(1 << 20)) << line;
    }
    EXPECT_EQ(AbsoluteAnchor(ParseCommandLine(Wide("nan,1e-400,0"))).x, 0);
    EXPECT_EQ(AbsoluteAnchor(ParseCommandLine(Wide("nan,1e-400,0"))).y, 0);
    const POINT beside = WindowAnchor(ParseCommandLine(Wide("inf,nan,0,1")), {0, 0, 0, 10});
    EXPECT_EQ(beside.x, 0) << "infinity times nothing is not a number";
}

} // namespace
