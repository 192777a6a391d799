// Where popup menus and their rows are.
#include "platform/dialogs/popup_layout.h"

#include <gtest/gtest.h>

#include <ostream>

static bool operator==(const RECT& a, const RECT& b)
{
    return EqualRect(&a, &b) != FALSE;
}

static std::ostream& operator<<(std::ostream& out, const RECT& r)
{
    return out << '(' << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ')';
}

namespace
{

using platform::PlacePopup;
using platform::PlaceSubPopup;
using platform::PopupHit;
using platform::PopupLayout;
using platform::PopupMetrics;
using platform::PopupPart;
using platform::PopupRow;

PopupMetrics Metrics()
{
    PopupMetrics metrics;
    metrics.rowHeight = 20;
    metrics.separatorHeight = 8;
    metrics.scrollHeight = 12;
    metrics.pictureWidth = 16;
    metrics.margin = 4;
    metrics.shortcutGap = 30;
    metrics.rightRoom = 25;
    metrics.bottomRoom = 2;
    return metrics;
}

const PopupRow kSeparator{0, 0, true};
const RECT kWork{0, 30, 1000, 700};
const SIZE kSize{100, 200};

} // namespace

TEST(PopupLayout, IsAsWideAsItsWidestTextAndShortcut)
{
    const PopupRow rows[] = {{80, 0}, kSeparator, {50, 40}};
    const PopupLayout layout(rows, Metrics(), {1000, 1000});
    EXPECT_EQ(layout.Client().cx, 4 + 16 + 4 + 80 + 30 + 40 + 25);
    EXPECT_EQ(layout.Client().cy, 20 + 8 + 20 + 2);
    EXPECT_FALSE(layout.Scrolls());
    EXPECT_EQ(layout.RowRect(2, 0), (RECT{0, 28, layout.Client().cx, 48}));
    EXPECT_EQ(layout.HitTest({5, 19}, 0), (PopupHit{PopupPart::Row, 0}));
    EXPECT_EQ(layout.HitTest({5, 20}, 0), (PopupHit{PopupPart::Row, 1}));
    EXPECT_EQ(layout.HitTest({5, 49}, 0), PopupHit{}) << "the room below the last row";
    EXPECT_EQ(layout.HitTest({-1, 5}, 0), PopupHit{});

    const PopupLayout narrow(rows, Metrics(), {60, 1000});
    EXPECT_EQ(narrow.Client().cx, 60);
    EXPECT_EQ(narrow.TextRight(), 60 - 25) << "longer texts are cut";
}

TEST(PopupLayout, ATallMenuScrollsByWholeRowsToBothEnds)
{
    const std::vector<PopupRow> rows(20, PopupRow{80, 0}); // 400 pixels
    const PopupLayout layout(rows, Metrics(), {1000, 124});
    ASSERT_TRUE(layout.Scrolls());
    EXPECT_EQ(layout.Client().cy, 124);
    EXPECT_EQ(layout.View(), (RECT{0, 12, layout.Client().cx, 112}));
    EXPECT_EQ(layout.LastOffset(), 400 - 100);
    EXPECT_EQ(layout.HitTest({5, 11}, 0).part, PopupPart::ScrollUp);
    EXPECT_EQ(layout.HitTest({5, 112}, 0).part, PopupPart::ScrollDown);
    EXPECT_EQ(layout.HitTest({5, 12}, 60), (PopupHit{PopupPart::Row, 3}));

    EXPECT_EQ(layout.OffsetByRows(0, -1), 0);
    EXPECT_EQ(layout.OffsetByRows(0, 1), 20);
    EXPECT_EQ(layout.OffsetByRows(290, -1), 280) << "a row that is cut comes whole first";
    EXPECT_EQ(layout.OffsetByRows(300, 1), 300);
    EXPECT_EQ(layout.OffsetShowing(4, 0), 0);
    EXPECT_EQ(layout.OffsetShowing(5, 0), 20) << "no further than it has to";
    EXPECT_EQ(layout.OffsetShowing(2, 100), 40);
    EXPECT_EQ(layout.OffsetShowing(19, 0), 300);
}

TEST(PopupLayout, AMenuLiesToItsPointAsAskedAndInsideTheWorkArea)
{
    const struct
    {
        POINT point;
        UINT flags;
        RECT expected;
        const char* what;
    } cases[] = {
        {{300, 300}, 0, {300, 300, 400, 500}, "right and below"},
        {{300, 300}, TPM_RIGHTALIGN | TPM_BOTTOMALIGN, {200, 100, 300, 300}, "left and above"},
        {{300, 300}, TPM_CENTERALIGN | TPM_VCENTERALIGN, {250, 200, 350, 400}, "around"},
        {{950, 600}, 0, {850, 400, 950, 600}, "turned to the other side of the point at the corner"},
        {{50, 40}, TPM_RIGHTALIGN | TPM_BOTTOMALIGN, {50, 40, 150, 240}, "and back"},
        {{-20, 10}, 0, {0, 30, 100, 230}, "a point outside"},
        {{1200, 900}, 0, {900, 500, 1000, 700}, "far outside"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(PlacePopup(kSize, c.point, c.flags, {}, kWork), c.expected) << c.what;
    EXPECT_EQ(PlacePopup({100, 400}, {500, 350}, 0, {}, {0, 0, 1000, 600}), (RECT{500, 200, 600, 600}))
        << "too tall for either side: moved inside";
}

TEST(PopupLayout, TheExcludedRectangleStaysFree)
{
    const RECT button{300, 300, 450, 322};
    EXPECT_EQ(PlacePopup(kSize, {300, 300}, 0, button, kWork), (RECT{300, 322, 400, 522})) << "below";
    EXPECT_EQ(PlacePopup(kSize, {300, 300}, TPM_VERTICAL, button, kWork), (RECT{450, 300, 550, 500})) << "beside";
    const RECT low{300, 600, 450, 622};
    EXPECT_EQ(PlacePopup(kSize, {300, 600}, 0, low, kWork), (RECT{300, 400, 400, 600})) << "above";
    const RECT tall{300, 60, 450, 690};
    EXPECT_EQ(PlacePopup(kSize, {300, 60}, 0, tall, kWork), (RECT{450, 60, 550, 260})) << "nothing but beside";
    const RECT right{900, 60, 1000, 690};
    EXPECT_EQ(PlacePopup(kSize, {900, 60}, 0, right, kWork), (RECT{800, 60, 900, 260}));
    EXPECT_EQ(PlacePopup(kSize, {10, 40}, 0, button, kWork), (RECT{10, 40, 110, 240})) << "not in its way";
}

TEST(PopupLayout, ASubMenuLiesBesideItsOpener)
{
    const RECT row{200, 300, 330, 322};
    EXPECT_EQ(PlaceSubPopup(kSize, row, 1, kWork), (RECT{330, 299, 430, 499})) << "its first row beside the opener";
    EXPECT_EQ(PlaceSubPopup(kSize, {800, 300, 930, 322}, 1, kWork), (RECT{700, 299, 800, 499}));
    EXPECT_EQ(PlaceSubPopup(kSize, {200, 600, 330, 622}, 1, kWork), (RECT{330, 500, 430, 700}));
    EXPECT_EQ(PlaceSubPopup({800, 200}, {200, 300, 330, 322}, 1, kWork), (RECT{200, 299, 1000, 499}))
        << "too wide for either side";
}
