#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

TEST(KxErrorManager, FormatNotRegisteredLayout)
{
    KxErrorManager e(EM_DataImport, 107, 0);
    EXPECT_EQ(e.getMLDBMessage(), QStringLiteral("System Error. Format not registered"));
}
