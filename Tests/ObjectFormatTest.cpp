#include "ObjectFormat.h"

#include <gtest/gtest.h>

using Platform::objectFormat;

TEST(ObjectFormatTest, InsertsATextWhole)
{
    EXPECT_EQ("USERLOGIN=50%s%@", objectFormat("USERLOGIN=%@", "50%s%@"));
}
