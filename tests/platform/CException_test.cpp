// The exceptions: their messages, their causes, and that they are caught as their bases.

#include "megset/platform/CArchiveException.h"
#include "megset/platform/CException.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>

namespace megset::CException_test {

namespace {

TEST(CException, TellsItsMessageInEveryForm)
{
    const CException fault("Grün");
    EXPECT_STREQ(fault.what(), "Grün");
    EXPECT_EQ(fault.GetErrorMessage(), CString("Grün"));
    EXPECT_STREQ(CException().what(), "");
}

TEST(CException, CutsTheMessageToTheBuffer)
{
    const CException fault("abc");
    std::array<char16_t, 5> buffer = {u'#', u'#', u'#', u'#', u'#'};
    EXPECT_TRUE(fault.GetErrorMessage(buffer.data(), 3));
    EXPECT_EQ(std::u16string_view(buffer.data(), 5), std::u16string_view(u"ab\0##", 5));
    EXPECT_TRUE(fault.GetErrorMessage(buffer.data(), 5));
    EXPECT_EQ(std::u16string_view(buffer.data(), 5), std::u16string_view(u"abc\0#", 5));
    EXPECT_TRUE(fault.GetErrorMessage(buffer.data(), 1));
    EXPECT_EQ(buffer[0], 0);
}

TEST(CException, RefusesToWriteIntoNoRoom)
{
    const CException fault("abc");
    char16_t unit = u'#';
    EXPECT_FALSE(fault.GetErrorMessage(&unit, 0));
    EXPECT_EQ(unit, u'#');
    EXPECT_FALSE(fault.GetErrorMessage(nullptr, 10));
}

TEST(CException, IsCaughtAsAStandardException)
{
    try {
        AfxThrowInvalidArgException();
    } catch (const std::exception& fault) {
        EXPECT_STREQ(fault.what(), "An argument is outside the allowed range.");
        return;
    }
    FAIL();
}

TEST(CException, KeepsItsKindWhenThrown)
{
    EXPECT_THROW(AfxThrowInvalidArgException(), CInvalidArgException);
    EXPECT_THROW(AfxThrowArchiveException(CArchiveException::badSchema), CArchiveException);
    EXPECT_THROW(AfxThrowArchiveException(CArchiveException::badSchema), CException);
}

TEST(CArchiveException, HasTheNumbersOfItsCauses)
{
    EXPECT_EQ(CArchiveException::none, 0);
    EXPECT_EQ(CArchiveException::genericException, 1);
    EXPECT_EQ(CArchiveException::readOnly, 2);
    EXPECT_EQ(CArchiveException::endOfFile, 3);
    EXPECT_EQ(CArchiveException::writeOnly, 4);
    EXPECT_EQ(CArchiveException::badIndex, 5);
    EXPECT_EQ(CArchiveException::badClass, 6);
    EXPECT_EQ(CArchiveException::badSchema, 7);
    EXPECT_EQ(CArchiveException::bufferFull, 8);
}

TEST(CArchiveException, NamesItsFileAndCause)
{
    const CArchiveException fault(CArchiveException::endOfFile, "C:\\a.meg");
    EXPECT_EQ(fault.m_cause, CArchiveException::endOfFile);
    EXPECT_EQ(fault.m_strFileName, CString("C:\\a.meg"));
    EXPECT_STREQ(fault.what(), "C:\\a.meg: The file ended unexpectedly.");
    EXPECT_STREQ(CArchiveException(CArchiveException::endOfFile).what(), "The file ended unexpectedly.");
    EXPECT_EQ(CArchiveException().m_cause, CArchiveException::none);
}

TEST(CArchiveException, HasATextForEveryCause)
{
    std::set<std::string> texts;
    for (int cause = CArchiveException::none; cause <= CArchiveException::bufferFull; ++cause) {
        const std::string text = CArchiveException(cause).what();
        EXPECT_FALSE(text.empty()) << cause;
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), 7U); // the three kinds of damage share one
    EXPECT_STREQ(CArchiveException(99).what(), CArchiveException(CArchiveException::genericException).what());
}

TEST(CArchiveException, IsThrownWithCauseAndFile)
{
    try {
        AfxThrowArchiveException(CArchiveException::writeOnly, "f");
    } catch (const CArchiveException& fault) {
        EXPECT_EQ(fault.m_cause, CArchiveException::writeOnly);
        EXPECT_EQ(fault.m_strFileName, CString("f"));
        return;
    }
    FAIL();
}

} // namespace

} // namespace megset::CException_test
