#include "KxSourceField.h"

TKxSourceField::TKxSourceField()
    // "SSPS" is the name the front end knows this provider type by.
    : providerTypeNames(new QStringList{QStringLiteral("NONE"), QStringLiteral("CSPRO"), QStringLiteral("CSV"),
                                        QStringLiteral("SSPS"), QStringLiteral("STATA")})
{
}

TKxSourceField::~TKxSourceField()
{
    delete providerTypeNames;
}

void TKxSourceField::setFieldType(QString type)
{
    FieldType = type;
}

void TKxSourceField::setDataProviderType(QString type)
{
    const int i = providerTypeNames->indexOf(type);
    if ((i >= 1 && i <= 6) || (i >= 8 && i <= 9)) {
        dataProviderTypeIndex = i;
        DataProviderType = type;
    }
}

QString TKxSourceField::getStringValue(QString line)
{
    QString result;
    if (!line.isEmpty()) {
        const qint64 length = line.length();
        if (length < qint64(start) + size - 1) {
            if (length - start > 0)
                result = line.mid(start, int(length - start + 1));
        } else {
            result = line.mid(start, size);
        }
    }
    isBlankValue = (result == blankValue);
    return result;
}
