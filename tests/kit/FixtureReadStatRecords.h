#ifndef FIXTUREREADSTATRECORDS_H
#define FIXTUREREADSTATRECORDS_H

// ReadStat records built by hand, for calling the importers' callbacks with
// what a file cannot deliver (or not through ReadStat's writer), and the
// check of an imported field against its expected description.

#include "GenericField.h"
#include "ReadNote.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <readstat.h>

#include <cstring>

namespace kxtest {

inline readstat_variable_t readStatRecord(readstat_type_t type, const char *name, const char *format,
                                          const char *label = "", size_t storageWidth = 8)
{
    readstat_variable_t v;
    std::memset(&v, 0, sizeof v);
    v.type = type;
    std::strncpy(v.name, name, sizeof v.name - 1);
    std::strncpy(v.format, format, sizeof v.format - 1);
    std::strncpy(v.label, label, sizeof v.label - 1);
    v.storage_width = storageWidth;
    return v;
}

inline readstat_value_t readStatValue(readstat_type_t type)
{
    readstat_value_t v;
    std::memset(&v, 0, sizeof v);
    v.type = type;
    return v;
}

inline readstat_value_t readStatDouble(double d)
{
    readstat_value_t v = readStatValue(READSTAT_TYPE_DOUBLE);
    v.v.double_value = d;
    return v;
}

inline readstat_value_t readStatInt32(int32_t i)
{
    readstat_value_t v = readStatValue(READSTAT_TYPE_INT32);
    v.v.i32_value = i;
    return v;
}

inline readstat_value_t readStatString(const char *s)
{
    readstat_value_t v = readStatValue(READSTAT_TYPE_STRING);
    v.v.string_value = s;
    return v;
}

//! What a test expects of an imported field.
struct ExpectedField
{
    const char *name;
    const char *label;
    int type;
    int size;
    const char *minimum;
    const char *maximum;
    const char *valueLabels;
};

inline void expectField(TGenericField *field, const ExpectedField &e)
{
    ASSERT_NE(field, nullptr) << e.name;
    EXPECT_EQ(field->getName(), QString::fromLatin1(e.name));
    EXPECT_EQ(field->getLabel(), QString::fromLatin1(e.label)) << e.name;
    EXPECT_EQ(field->getFieldType(), e.type) << e.name;
    EXPECT_EQ(field->getSize(), e.size) << e.name;
    EXPECT_EQ(field->getMinimum(), QString::fromLatin1(e.minimum)) << e.name;
    EXPECT_EQ(field->getMaximum(), QString::fromLatin1(e.maximum)) << e.name;
    EXPECT_EQ(field->getValueLabels(), QString::fromLatin1(e.valueLabels)) << e.name;
}

//! The notes as lines "subject | kind | text", so a failing comparison shows them whole.
} // namespace kxtest

#endif // FIXTUREREADSTATRECORDS_H
