#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

// Each test runs in its own process (CTest), so the registry starts null; the
// fixture resets it anyway for runs of the whole program.
class LoaderManager : public ::testing::Test
{
protected:
    void SetUp() override { _pLoaderManager = nullptr; }
};

TEST_F(LoaderManager, IsTypeRegisterBeforeInitThrows106)
{
    int number = 0;
    QString text;
    EXPECT_TRUE(kxtest::catchKxError([] { IsTypeRegister(QStringLiteral("CSPRO")); }, &number, nullptr, &text));
    EXPECT_EQ(number, 106);
    EXPECT_TRUE(text.isEmpty());
}

TEST_F(LoaderManager, RegisterLoaderBeforeInitThrows106)
{
    TDataProviderProperties properties;
    int number = 0;
    EXPECT_TRUE(kxtest::catchKxError([&] { TLoaderManager::RegisterLoader(&properties); }, &number));
    EXPECT_EQ(number, 106);
}

TEST_F(LoaderManager, AfterInitNothingIsRegisteredEvenAfterRegisterLoader)
{
    TLoaderManager::InitDataClassLoader();
    ASSERT_NE(_pLoaderManager, nullptr);
    EXPECT_FALSE(IsTypeRegister(QStringLiteral("CSPRO")));
    TDataProviderProperties properties;
    properties.typeName = QStringLiteral("CSPRO");
    TLoaderManager::RegisterLoader(&properties);
    EXPECT_FALSE(IsTypeRegister(QStringLiteral("CSPRO")));
    EXPECT_TRUE(_pLoaderManager->getTypeNames()->isEmpty());
}

TEST_F(LoaderManager, IsTypeRegisterComparesExactlyWithTheListedNames)
{
    // Registration stores nothing, but a name put in the list is found, with
    // an exact, case-sensitive comparison.
    TLoaderManager::InitDataClassLoader();
    _pLoaderManager->getTypeNames()->append(QStringLiteral("CSPRO"));
    EXPECT_TRUE(IsTypeRegister(QStringLiteral("CSPRO")));
    EXPECT_FALSE(IsTypeRegister(QStringLiteral("cspro")));
    EXPECT_FALSE(IsTypeRegister(QStringLiteral("CSPRO8")));
    EXPECT_FALSE(IsTypeRegister(QStringLiteral("CSP")));
}

TEST_F(LoaderManager, GetDataClassLoaderFailsEvenForATypeOfThePreviousRegistry)
{
    // The look-up starts from a new, empty registry, not from the current one.
    TLoaderManager::InitDataClassLoader();
    _pLoaderManager->getTypeNames()->append(QStringLiteral("SPSS"));
    int number = 0;
    QString text;
    EXPECT_TRUE(kxtest::catchKxError([] { GetDataClassLoader(QStringLiteral("SPSS")); }, &number, nullptr, &text));
    EXPECT_EQ(number, 107);
    EXPECT_EQ(text, QStringLiteral("SPSS"));
    EXPECT_FALSE(IsTypeRegister(QStringLiteral("SPSS")));
}

TEST_F(LoaderManager, InitReplacesThePreviousManager)
{
    TLoaderManager::InitDataClassLoader();
    TLoaderManager *first = _pLoaderManager;
    TLoaderManager::InitDataClassLoader();
    EXPECT_NE(_pLoaderManager, first);
}

TEST_F(LoaderManager, GetDataClassLoaderThrows107WithTheTypeName)
{
    const QStringList types{QStringLiteral("CSPRO"), QStringLiteral("CSPRO8"), QStringLiteral("SPSS"),
                            QStringLiteral("STATA"), QStringLiteral("anything")};
    for (const QString &type : types) {
        int number = 0;
        QString text;
        QString message;
        EXPECT_TRUE(kxtest::catchKxError([&] { GetDataClassLoader(type); }, &number, &message, &text));
        EXPECT_EQ(number, 107);
        EXPECT_EQ(text, type);
        EXPECT_TRUE(message.contains(QStringLiteral("System Error. Format not registered")));
    }
}

TEST_F(LoaderManager, GetDataClassLoaderLeavesAFreshEmptyManager)
{
    TLoaderManager::InitDataClassLoader();
    TLoaderManager *before = _pLoaderManager;
    kxtest::catchKxError([] { GetDataClassLoader(QStringLiteral("SPSS")); });
    ASSERT_NE(_pLoaderManager, nullptr);
    EXPECT_NE(_pLoaderManager, before);
    EXPECT_TRUE(_pLoaderManager->getTypeNames()->isEmpty());
}

TEST_F(LoaderManager, AfterGetDataClassLoaderIsTypeRegisterNoLongerThrows)
{
    kxtest::catchKxError([] { GetDataClassLoader(QStringLiteral("CSPRO")); });
    bool registered = true;
    EXPECT_FALSE(kxtest::catchKxError([&] { registered = IsTypeRegister(QStringLiteral("CSPRO")); }));
    EXPECT_FALSE(registered);
}

TEST_F(LoaderManager, GetDataClassLoaderWritesItsDebugLines)
{
    kxtest::MessageCollector log;
    kxtest::catchKxError([] { GetDataClassLoader(QStringLiteral("CSPRO")); });
    const QStringList lines = log.messages();
    ASSERT_GE(lines.size(), 3);
    EXPECT_EQ(lines.at(0), QStringLiteral("GetDataClassLoader - In"));
    EXPECT_EQ(lines.at(1), QStringLiteral("GetDataClassLoader - 2 -1"));
    EXPECT_EQ(lines.at(2), QStringLiteral("GetDataClassLoader - 4"));
    EXPECT_FALSE(lines.contains(QStringLiteral("GetDataClassLoader - 3")));
}

TEST_F(LoaderManager, GetDataClassLoaderWritesNoLineWithDebugOutputOff)
{
    kxtest::MessageCollector log;
    int number = 0;
    {
        kxtest::DebugOutputOff off;
        EXPECT_TRUE(kxtest::catchKxError([] { GetDataClassLoader(QStringLiteral("CSPRO")); }, &number));
    }
    EXPECT_EQ(number, 107);
    EXPECT_TRUE(log.messages().isEmpty()) << log.messages().join(QLatin1Char('|')).toStdString();
}

TEST_F(LoaderManager, DestroyDataClassLoaderLeavesTheManagerUntouched)
{
    TLoaderManager::InitDataClassLoader();
    TLoaderManager *current = _pLoaderManager;
    TLoaderManager::DestroyDataClassLoader();
    EXPECT_EQ(_pLoaderManager, current);
    EXPECT_FALSE(IsTypeRegister(QStringLiteral("STATA")));
}

TEST_F(LoaderManager, TypeNameListOutlivesItsManager)
{
    auto *manager = new TLoaderManager;
    QStringList *names = manager->getTypeNames();
    delete manager;
    names->append(QStringLiteral("still usable"));
    EXPECT_EQ(names->size(), 1);
    delete names;
}
