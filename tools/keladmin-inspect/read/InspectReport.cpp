// The report's own functions, apart from the readers that fill it, so that
// the writers need no reader.
#include "InspectReport.h"

#include "ReportBuilder.h"

#include <QVector>

namespace kxinspect {

QList<ValueLabel> splitValueLabels(const QString &text)
{
    QList<ValueLabel> out;
    const QVector<QStringRef> entries = text.splitRef(QLatin1Char('\t'), Qt::SkipEmptyParts);
    out.reserve(entries.size());
    for (const QStringRef &entry : entries) {
        const int blank = entry.indexOf(QLatin1Char(' '));
        if (blank < 0)
            out.append({entry.toString(), QString()});
        else
            out.append({entry.left(blank).toString(), entry.mid(blank + 1).toString()});
    }
    return out;
}

QList<ValueLabel> valueLabelsOf(const FieldRow &field)
{
    return field.valueLabels.isEmpty() ? splitValueLabels(field.valueLabelText) : field.valueLabels;
}

} // namespace kxinspect
