#include "TvBase/Util/Exception.h"

#include <gtest/gtest.h>

namespace
{

/// A small exception of its own that adds a section to the report, as the real ones do.
class SampleError : public Exception::Base
{
public:
    SampleError(String const& message, String const& file = String(), int line = -1)
        : Exception::Base(message, file, line)
    {
    }
    String ToString() const override { return Base::ToString() + "\nSampleError:\n\tdetail"; }
    char const* GetTypeName() const override { return "SampleError"; }
};

} // namespace

TEST(ExceptionReport, NamesMessageFileLineAndSections)
{
    SampleError e("Improbable string length 7", "Stream.cpp", 42);
    EXPECT_EQ(e.GetMessage(), "Improbable string length 7");
    EXPECT_EQ(e.GetFile(), "Stream.cpp");
    EXPECT_EQ(e.GetLine(), 42);
    EXPECT_EQ(e.GetSystemError(), 0u);
    EXPECT_STREQ(e.what(), "Improbable string length 7");
    EXPECT_EQ(
        e.Exception::Base::ToString(),
        "Base:\n\tImprobable string length 7\n\tStream.cpp (42): Thrown, GetLastError(): 0\n");
    { // Derived classes append their section.
        SampleError e("m");
        Exception::Base const& base = e;
        EXPECT_EQ(base.ToString(),
                  "Base:\n\tm\n\t (-1): Thrown, GetLastError(): 0\n\nSampleError:\n\tdetail");
        EXPECT_STREQ(base.GetTypeName(), "SampleError");
    }
    { // Message markers are not filled.
        SampleError e("100% sure, %1 stays");
        EXPECT_EQ(e.Exception::Base::ToString(),
                  "Base:\n\t100% sure, %1 stays\n\t (-1): Thrown, GetLastError(): 0\n");
    }
    { // Carries this source file and line.
        int expectedLine = 0;
        try
        {
            expectedLine = __LINE__ + 1;
            TV_THROW(SampleError, "thrown here");
        }
        catch (Exception::Base const& e)
        {
            EXPECT_EQ(e.GetMessage(), "thrown here");
            EXPECT_EQ(e.GetFile(), __FILE__);
            EXPECT_EQ(e.GetLine(), expectedLine);
            EXPECT_TRUE(e.ToString().EndsWith("SampleError:\n\tdetail"));
            return;
        }
        FAIL() << "nothing was thrown";
    }
}
