#include "megset/platform/CDC.h"

#include <gtest/gtest.h>

namespace megset::CDC_test {
namespace {

TEST(Brush, IsMadeOnceAndAgainAfterItWasDeleted)
{
    CBrush brush;
    EXPECT_FALSE(brush.hasObject());
    EXPECT_EQ(brush.getColor(), 0U);
    EXPECT_TRUE(brush.CreateSolidBrush(0x00FF8000U));
    EXPECT_TRUE(brush.hasObject());
    EXPECT_FALSE(brush.CreateSolidBrush(1));
    EXPECT_EQ(brush.getColor(), 0x00FF8000U);
    EXPECT_TRUE(brush.DeleteObject());
    EXPECT_FALSE(brush.DeleteObject());
    EXPECT_TRUE(brush.CreateSolidBrush(1));
    EXPECT_EQ(brush.getColor(), 1U);
}

TEST(Pen, IsMadeOnceAndAgainAfterItWasDeleted)
{
    CPen pen;
    EXPECT_FALSE(pen.hasObject());
    EXPECT_EQ(pen.getStyle(), PS_SOLID);
    EXPECT_EQ(pen.getWidth(), 0);
    EXPECT_EQ(pen.getColor(), 0U);
    EXPECT_TRUE(pen.CreatePen(PS_DOT, 2, 0x0000FF00U));
    EXPECT_FALSE(pen.CreatePen(PS_SOLID, 1, 1));
    EXPECT_EQ(pen.getStyle(), PS_DOT);
    EXPECT_EQ(pen.getWidth(), 2);
    EXPECT_EQ(pen.getColor(), 0x0000FF00U);
    EXPECT_TRUE(pen.DeleteObject());
    EXPECT_FALSE(pen.DeleteObject());
    EXPECT_TRUE(pen.CreatePen(PS_SOLID, 1, 1));
}

TEST(Canvas, GivesTheFormerObjectWhenAnotherIsSelected)
{
    CDC canvas;
    CBrush first;
    CBrush second;
    CPen pen;
    EXPECT_EQ(canvas.SelectObject(&first), nullptr);
    EXPECT_EQ(canvas.SelectObject(&second), &first);
    EXPECT_EQ(canvas.GetCurrentBrush(), &second);
    EXPECT_EQ(canvas.SelectObject(&pen), nullptr) << "pens and brushes are kept apart";
    EXPECT_EQ(canvas.GetCurrentPen(), &pen);
    EXPECT_EQ(canvas.SelectObject(static_cast<CBrush*>(nullptr)), &second);
    EXPECT_EQ(canvas.GetCurrentBrush(), nullptr);
    EXPECT_EQ(canvas.GetCurrentPen(), &pen);
}

TEST(Canvas, OfAProgramIsToldOfEachSelection)
{
    class Painter : public CDC
    {
    public:
        CBrush* SelectObject(CBrush* brush) override
        {
            color = brush != nullptr ? brush->getColor() : 0;
            return CDC::SelectObject(brush);
        }
        using CDC::SelectObject;
        COLORREF color = 0;
    };
    Painter painter;
    CDC& canvas = painter;
    CBrush brush;
    brush.CreateSolidBrush(77);
    canvas.SelectObject(&brush);
    EXPECT_EQ(painter.color, 77U);
    EXPECT_EQ(painter.GetCurrentBrush(), &brush);
}

} // namespace
} // namespace megset::CDC_test
