#pragma once

#include "megset/platform/CBrush.h"
#include "megset/platform/CPen.h"

#include <utility>

namespace megset {

/// A canvas as the library sees it: it holds the brush and the pen that are in use, which the caller owns and keeps
/// alive meanwhile, and draws nothing. A program derives its own, and is told there when another one is selected.
class CDC
{
public:
    CDC() = default;
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;
    virtual ~CDC() = default;

    /// Takes a brush or pen into use, null for none, and gives the former one, null for none.
    virtual CBrush* SelectObject(CBrush* brush) { return std::exchange(m_pBrush, brush); }
    virtual CPen* SelectObject(CPen* pen) { return std::exchange(m_pPen, pen); }
    CBrush* GetCurrentBrush() const { return m_pBrush; }
    CPen* GetCurrentPen() const { return m_pPen; }

private:
    CBrush* m_pBrush = nullptr;
    CPen* m_pPen = nullptr;
};

} // namespace megset
