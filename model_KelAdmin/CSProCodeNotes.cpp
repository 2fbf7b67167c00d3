#include "CSProCodeNotes_p.h"

#include "CSProDictionary.h"
#include "KxConstants.h"

namespace {

// How an integer field's value labels write \a code: with 6 significant
// digits; empty when that keeps its value or the code is no integer.
QString roundedIntegerCode(const QString &code)
{
    // Six digits or fewer are written as they are.
    if (code.size() <= 6)
        return QString();
    bool ok = false;
    const int value = code.toInt(&ok, 10);
    const QString written = QString::number(double(value), 'g', 6);
    return ok && written.toDouble() != value ? written : QString();
}

} // namespace

QString listedForNote(const QStringList &texts)
{
    constexpr int Shown = 5;
    QStringList shown = texts.mid(0, Shown);
    if (texts.size() > Shown)
        shown << QStringLiteral("and %1 more").arg(texts.size() - Shown);
    return shown.join(QStringLiteral(", "));
}

QString paddedCodesNote(const TCSProValueSet &valueSet)
{
    QStringList padded;
    for (const TValueSetItem *entry : qAsConst(*valueSet.items)) {
        if (entry->code.contains(SPACECHR))
            padded << QLatin1Char('"') + entry->code + QLatin1Char('"');
    }
    if (padded.isEmpty())
        return QString();
    return QStringLiteral("Value set %1: the codes %2 hold blanks, so in the field's value labels, a code and its "
                          "label parted by a blank, they run into their labels.")
        .arg(valueSet.name, listedForNote(padded));
}

QString roundedCodesNote(const TCSProValueSet &valueSet)
{
    QStringList rounded;
    for (const TValueSetItem *entry : qAsConst(*valueSet.items)) {
        const QString written = roundedIntegerCode(entry->code);
        if (!written.isEmpty())
            rounded << QStringLiteral("%1 as %2").arg(entry->code.trimmed(), written);
    }
    if (rounded.isEmpty())
        return QString();
    return QStringLiteral("Value set %1: the field is an integer, whose value labels write codes with 6 significant "
                          "digits: the reading kept %2.")
        .arg(valueSet.name, listedForNote(rounded));
}
