#include "TvBase/Util/PlatformInfo.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sys/utsname.h>

TEST(PlatformInfo, VersionComesFromTheKernelRelease)
{
    utsname names;
    ASSERT_EQ(0, uname(&names));
    unsigned int expected[3] = {0, 0, 0};
    ASSERT_GE(std::sscanf(names.release, "%u.%u.%u", &expected[0], &expected[1], &expected[2]), 2);

    unsigned int major = 99, minor = 99, bugfix = 99;
    ASSERT_TRUE(Util::GetDetailedOSXVersion(major, minor, bugfix));
    EXPECT_EQ(expected[0], major);
    EXPECT_EQ(expected[1], minor);
    EXPECT_EQ(expected[2], bugfix);

    EXPECT_EQ(String("Linux %1.%2.%3").Arg(major).Arg(minor).Arg(bugfix),
              Util::GetPlatformVersionString());
    // The older host's release scale has no entry for this one.
    EXPECT_EQ(0u, Util::GetOSXVersion());
}

TEST(PlatformInfo, ProcessNamesComeFromTheProgramFile)
{
    EXPECT_EQ(String("tv_utilities_tests"), Util::GetCurrentProcessName());
    EXPECT_EQ(Util::GetCurrentProcessName(), Util::GetCurrentProcessDisplayName());
    EXPECT_TRUE(Util::GetCurrentProcessDisplayVersion().IsNull());
}
