#include "CodebookTestSupport.h"

#include <gtest/gtest.h>

using namespace KxCodebook;

TEST(CodebookModel, DefaultIsNullAndSettingMakesItNot)
{
    Codebook book;
    EXPECT_TRUE(book.isNull());
    EXPECT_EQ(book.rowCount(), -1);
    book.setName(QStringLiteral("CENSUS"));
    EXPECT_FALSE(book.isNull());
    EXPECT_EQ(book.name(), QStringLiteral("CENSUS"));
}

TEST(CodebookModel, CopiesAreIndependentValues)
{
    Codebook a;
    a.setName(QStringLiteral("A"));
    Codebook b = a;
    b.setName(QStringLiteral("B"));
    EXPECT_EQ(a.name(), QStringLiteral("A"));
    EXPECT_EQ(b.name(), QStringLiteral("B"));
}

TEST(CodebookModel, LabelsFallBackToThePrimaryForAnEmptyOrMissingLanguage)
{
    Labels labels;
    labels.texts << QStringLiteral("Sexe") << QString() << QStringLiteral("Jinsia");
    EXPECT_EQ(labels.text(0), QStringLiteral("Sexe"));
    EXPECT_EQ(labels.text(1), QStringLiteral("Sexe"));
    EXPECT_EQ(labels.text(2), QStringLiteral("Jinsia"));
    EXPECT_EQ(labels.text(3), QStringLiteral("Sexe"));
}

TEST(CodebookModel, FormatNamesRoundTrip)
{
    for (Format f : {Format::CSProText, Format::CSProJson, Format::Spss, Format::Stata})
        EXPECT_EQ(formatFromName(formatName(f)), f);
    EXPECT_EQ(formatName(Format::CSProText), QStringLiteral("cspro"));
    EXPECT_EQ(formatName(Format::CSProJson), QStringLiteral("cspro8"));
    EXPECT_EQ(formatFromName(QStringLiteral("SPSS")), Format::Spss);
    EXPECT_EQ(formatFromName(QStringLiteral("excel")), Format::Unknown);
}

TEST(CodebookModel, DetectsTheFormatFromTheFirstBytes)
{
    EXPECT_EQ(detectFormat("[Dictionary]\r\nVersion=CSPro 7.7"), Format::CSProText);
    EXPECT_EQ(detectFormat("\xEF\xBB\xBF[DICTIONARY]\n"), Format::CSProText);
    EXPECT_EQ(detectFormat("  {\"software\": \"CSPro\"}"), Format::CSProJson);
    EXPECT_EQ(detectFormat("$FL2@(#) SPSS DATA FILE"), Format::Spss);
    EXPECT_EQ(detectFormat("$FL3@(#) SPSS DATA FILE"), Format::Spss);
    EXPECT_EQ(detectFormat("<stata_dta><header>"), Format::Stata);
    EXPECT_EQ(detectFormat(QByteArray("\x72\x02\x01\x00", 4)), Format::Stata);  // format 114, low-high
    EXPECT_EQ(detectFormat("house,person\n1,2\n"), Format::Unknown);
    EXPECT_EQ(detectFormat("r\x03xx"), Format::Unknown);  // 'r' is 114, but 3 is no byte order
    EXPECT_EQ(detectFormat(QByteArray()), Format::Unknown);
}

TEST(CodebookModel, SpecialNamesAreCSProsOwn)
{
    EXPECT_EQ(specialName(Special::Missing), QStringLiteral("MISSING"));
    EXPECT_EQ(specialName(Special::Refused), QStringLiteral("REFUSED"));
    EXPECT_EQ(specialName(Special::NotAppl), QStringLiteral("NOTAPPL"));
    EXPECT_EQ(specialName(Special::Default), QStringLiteral("DEFAULT"));
    EXPECT_EQ(specialName(Special::None), QString());
}

TEST(CodebookModel, AMissingFileIsAnErrorValueThatNamesIt)
{
    Error error;
    const Codebook book = Codebook::fromFile(QStringLiteral("/nonexistent/census.dcf"), &error);
    EXPECT_TRUE(book.isNull());
    EXPECT_EQ(error.kind, Error::FileNotFound);
    EXPECT_EQ(error.message, QStringLiteral("/nonexistent/census.dcf: no such file"));
}

TEST(CodebookModel, AFolderIsNotAFile)
{
    cbtest::TempFiles files;
    Error error;
    EXPECT_TRUE(Codebook::fromFile(files.path(), &error).isNull());
    EXPECT_EQ(error.kind, Error::NotAFile);
}

TEST(CodebookModel, AnUnknownFileSaysSo)
{
    cbtest::TempFiles files;
    Error error;
    EXPECT_TRUE(Codebook::fromFile(files.write(QStringLiteral("x.csv"), "a,b\n1,2\n"), &error).isNull());
    EXPECT_EQ(error.kind, Error::UnknownFormat);
    EXPECT_TRUE(error.message.contains(QStringLiteral("format not recognised"))) << error.message.toStdString();
    EXPECT_TRUE(Codebook::fromFile(files.write(QStringLiteral("empty.dcf"), QByteArray()), &error).isNull());
    EXPECT_TRUE(error.message.endsWith(QStringLiteral("empty file, format not recognised")));
}
