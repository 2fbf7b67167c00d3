#include "GenericField.h"

#include <QStringList>

#include <cmath>
#include <cstdint>
#include <limits>
#include <cstring>
#include <cwchar>

namespace {

// The value a real field holds before anything was assigned: a subnormal just
// below the smallest normal double (2.22507e-308), not zero.
double unassignedRealValue()
{
    const std::uint64_t bits = 0x000FFFFE2E8159D0ULL;
    double v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

// Truncation towards zero; values outside int's range are clamped rather
// than left to undefined behaviour.
int truncateToInt(double v)
{
    if (std::isnan(v))
        return 0;
    if (v >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (v <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return int(v);
}

} // namespace

TGenericField::TGenericField(TDataImport *owner)
    : realValue(unassignedRealValue())
    , owner(owner)
{
    std::memset(value, 0, sizeof value);
}

TGenericField::~TGenericField() = default;

void TGenericField::addValueLabel(QString, QString)
{
}

QString TGenericField::getGroup()
{
    return QString();
}

QString TGenericField::valueText() const
{
    int length = 0;
    while (length < ValueCapacity && value[length] != 0)
        ++length;
    return QString::fromWCharArray(value, length);
}

void TGenericField::copyIntoValue(const wchar_t *text, int textLength)
{
    // size comes from the dictionary and may exceed the buffer: clamp it.
    const int limit = qBound(0, size, int(ValueCapacity));
    const int copied = qMin(textLength, limit);
    if (copied > 0)
        std::wmemcpy(value, text, size_t(copied));
    for (int i = copied; i < limit; ++i)
        value[i] = 0;
}

double TGenericField::parseNumber(const QString &text)
{
    bool ok = false;
    const double v = text.toDouble(&ok);
    return ok ? v : 0.0;
}

void TGenericField::copyIntoValue(const QString &text)
{
    const std::wstring wide = text.toStdWString();
    copyIntoValue(wide.data(), int(qMin<size_t>(wide.size(), ValueCapacity)));
}

void TGenericField::assignNumbers(const QString &text, bool decimalsImplied)
{
    switch (fieldType) {
    case 1:
        realValue = parseNumber(text);
        integerValue = realValue;
        break;
    case 2:
        realValue = parseNumber(text);
        if (decimalsImplied && !decimals.isEmpty()) {
            bool ok = false;
            const int places = decimals.toInt(&ok);
            realValue /= std::pow(10.0, ok ? places : 0);
        }
        break;
    case 3:
        break;
    default:
        // Marks a field whose type was never set: two characters of 0x15151515.
        std::memset(value, 0x15, 8);
        break;
    }
}

void TGenericField::setAsString(QString text)
{
    copyIntoValue(text);
    missingFlag = false;
    if (isMissing() || isNotApplicable() || isBlank())
        return;
    assignNumbers(text, !decimalCharPresent);
}

void TGenericField::setAsStringChar(const wchar_t *text)
{
    const int length = text ? int(std::wcslen(text)) : 0;
    copyIntoValue(text, qMin(length, int(ValueCapacity)));
    missingFlag = false;
    if (isMissing() || isNotApplicable() || isBlank())
        return;
    assignNumbers(QString::fromWCharArray(text, length).trimmed(), !decimalCharPresent);
}

QString TGenericField::getAsString()
{
    if (isMissing())
        return missingCode;
    if (isNotApplicable())
        return notApplicableCode;
    if (isBlank())
        return QString();
    switch (fieldType) {
    case 1:
        return QString::number(integerValue, 'g', 6);
    case 2:
        return QString::number(realValue, 'g', 6);
    case 3:
        return valueText();
    default:
        return QString();
    }
}

double TGenericField::getAsFloat()
{
    if (isMissing())
        return parseNumber(missingCode);
    switch (fieldType) {
    case 1:
        return integerValue;
    case 2:
        return realValue;
    case 3:
        return parseNumber(valueText().trimmed());
    default:
        return 0.0;
    }
}

void TGenericField::setAsFloat(double v)
{
    realValue = v;
}

int TGenericField::getAsInteger()
{
    bool ok = false;
    if (isMissing()) {
        const int v = missingCode.toInt(&ok, 10);
        return ok ? v : 0;
    }
    switch (fieldType) {
    case 1:
        return truncateToInt(integerValue);
    case 2:
        return truncateToInt(realValue);
    case 3: {
        const int v = valueText().trimmed().toInt(&ok, 10);
        return ok ? v : 0;
    }
    default:
        return 0;
    }
}

void TGenericField::setAsInteger(int v)
{
    integerValue = double(v);
}

QString TGenericField::getValueLabel(QString code)
{
    valueLabels.replace(QLatin1Char('\t'), QLatin1Char('\n'), Qt::CaseSensitive);
    const QStringList entries{valueLabels};
    QString result;
    for (QString entry : entries) {
        const int blank = entry.indexOf(QLatin1Char(' '));
        if (entry.mid(1, blank - 1).trimmed() == code)
            result = entry.remove(1, blank).trimmed();
    }
    return result;
}
