#include "TvBase/Network/DeploymentURL.h"

#include <gtest/gtest.h>

#include <cstdlib>

using Network::ComposeHostURL;
using Network::GetDeploymentURL;

TEST(DeploymentURL, ComposesHostPortAndScheme)
{
    String const path("/products/versions/versions.txt");
    EXPECT_EQ(String("http://updates.example.com/products/versions/versions.txt"),
              ComposeHostURL("updates.example.com", path));
    EXPECT_EQ(String("http://127.0.0.1:8080/products/versions/versions.txt"),
              ComposeHostURL("127.0.0.1:8080", path));
    EXPECT_EQ(String("https://secure.example.com:8443/products/versions/versions.txt"),
              ComposeHostURL("https://secure.example.com:8443/", path));
    EXPECT_EQ(String("http://[::1]:9/x"), ComposeHostURL("http://[::1]:9", "/x"));
}

TEST(DeploymentURL, RejectsUnusableHosts)
{
    for (char const* bad : {"", "ftp://host", "host/path", "host name", "host:", "host:0",
                            "host:65536", "host:12a", "https://", "[]", "[zz]:80", ":80"})
        EXPECT_TRUE(ComposeHostURL(bad, "/x").IsNull()) << bad;
}

TEST(DeploymentURL, EnvironmentOverridesTheBuiltInHost)
{
    unsetenv("TV_TEST_DEPLOY_HOST");
    EXPECT_EQ(String("http://built.in/x"),
              GetDeploymentURL("TV_TEST_DEPLOY_HOST", "built.in", "/x"));
    setenv("TV_TEST_DEPLOY_HOST", "", 1);
    EXPECT_EQ(String("http://built.in/x"),
              GetDeploymentURL("TV_TEST_DEPLOY_HOST", "built.in", "/x"))
        << "an empty override counts as none";
    setenv("TV_TEST_DEPLOY_HOST", "https://other:444", 1);
    EXPECT_EQ(String("https://other:444/x"),
              GetDeploymentURL("TV_TEST_DEPLOY_HOST", "built.in", "/x"));
    setenv("TV_TEST_DEPLOY_HOST", "gopher://other", 1);
    EXPECT_TRUE(GetDeploymentURL("TV_TEST_DEPLOY_HOST", "built.in", "/x").IsNull())
        << "a bad override is reported, not silently replaced";
    unsetenv("TV_TEST_DEPLOY_HOST");
}
