#include "ReadStatVariables_p.h"

#include "GenericField.h"
#include "KxText_p.h"
#include "ReadStatNotes_p.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace kxreadstat {

namespace {

constexpr int MaxNines = 65535;

QString valueText(const ValueLabelEntry &entry, bool *skip)
{
    *skip = false;
    if (entry.intValue != -1)
        return QString::number(entry.intValue);
    if (entry.doubleValue == -1.0) {
        if (!entry.hasString) {
            *skip = true;
            return QStringLiteral("xxx");
        }
        return toText(entry.stringValue.constData(), TextKind::Utf8);
    }
    return QString::asprintf("%f", entry.doubleValue);
}

//! Truncation towards zero that stays defined for NaN and out-of-range numbers.
qint32 truncateToInt(double v)
{
    if (std::isnan(v))
        return 0;
    if (v >= 2147483647.0)
        return std::numeric_limits<qint32>::max();
    if (v <= -2147483648.0)
        return std::numeric_limits<qint32>::min();
    return static_cast<qint32>(v);
}

//! Lowest and highest number among a variable's value labels, each with
//! whether any entry set it.
struct Bounds
{
    double minimum = 999999999.0;
    double maximum = -999999999.0;
    bool minimumChanged = false;
    bool maximumChanged = false;

    void take(double number)
    {
        if (number < minimum) {
            minimum = number;
            minimumChanged = true;
        }
        if (number > maximum) {
            maximum = number;
            maximumChanged = true;
        }
    }
};

//! The set \a labelSet names, marked as named; null (with a note when it
//! names a set the file does not define) when there is none.
LabelSet *findNamedSet(LabelSets *sets, const char *labelSet, const QString &variable, TReadNotes &notes)
{
    if (!labelSet)
        return nullptr;
    auto it = sets->sets.find(QByteArray(labelSet));
    if (it == sets->sets.end()) {
        if (*labelSet)
            notes.append(labelSetMissingNote(variable, labelSet));
        return nullptr;
    }
    it->named = true;
    return &it.value();
}

void applyLabelSet(TGenericField *field, LabelSets *sets, const char *labelSet, bool numeric, int decimals,
                   const VariableRules &rules, TReadNotes &notes)
{
    LabelSet *set = findNamedSet(sets, labelSet, field->getName(), notes);
    if (!set)
        return;
    const bool cuts = rules.truncateWholeNumbers && decimals == 0;
    EntryNotes entryNotes(&notes, field->getName(), labelSet, decimals, cuts, set->cutBy);
    if (rules.valueLabelText != TextKind::Utf8 && !set->textNoted) {
        set->textNoted = true;
        addLabelTextNotes(&notes, labelSet, set->entries, rules.valueLabelText);
    }

    Bounds bounds;
    QString text = field->getValueLabels();
    for (ValueLabelEntry &entry : set->entries) {
        if (cuts && entry.doubleValue != -1.0) {
            entry.intValue = truncateToInt(entry.doubleValue);
            entry.doubleValue = -1.0;
            if (set->cutBy.isEmpty())
                set->cutBy = field->getName();
        }
        bool skip = false;
        const QString value = valueText(entry, &skip);
        entryNotes.add(entry, value, skip);
        if (skip)
            continue;
        if (numeric && (entry.intValue != -1 || entry.doubleValue != -1.0))
            bounds.take(entry.intValue != -1 ? entry.intValue : entry.doubleValue);
        text += value;
        text += QLatin1Char(' ');
        text += toText(entry.label.constData(), rules.valueLabelText);
        text += QLatin1Char('\t');
    }
    entryNotes.finish();
    field->setValueLabels(text);
    if (numeric && bounds.minimumChanged)
        field->setMinimum(kxtext::numberG6(bounds.minimum));
    if (numeric && bounds.maximumChanged)
        field->setMaximum(kxtext::numberG6(bounds.maximum));
}

//! Type code from ReadStat's storage type; false for strings (and the types read as strings).
bool setFieldType(TGenericField *field, readstat_type_t type, int decimals, const VariableRules &rules)
{
    switch (type) {
    case READSTAT_TYPE_INT8:
    case READSTAT_TYPE_INT16:
    case READSTAT_TYPE_INT32:
        field->setFieldType(1);
        return true;
    case READSTAT_TYPE_FLOAT:
    case READSTAT_TYPE_DOUBLE:
        field->setFieldType(rules.realNeedsDecimals && decimals == 0 ? 1 : 2);
        return true;
    default:
        // Strings; string references and unknown types are read as strings too.
        field->setFieldType(3);
        field->setNotApplicableCode(QLatin1String(""));
        return false;
    }
}

void setWidth(TGenericField *field, const readstat_variable_t *variable, const char *format,
              const VariableRules &rules)
{
    if (rules.widthFromFormat) {
        field->setSize(formatWidthDigit(format));
    } else {
        const size_t width = readstat_variable_get_storage_width(variable);
        field->setSize(static_cast<int>(qMin<size_t>(width, MaxNines)));
    }
}

} // namespace

int collectValueLabel(LabelSets *sets, const char *labelSet, readstat_value_t value, const char *label,
                      const char *where, int line)
{
    QList<ValueLabelEntry> &entries = sets->sets[QByteArray(labelSet)].entries;
    ValueLabelEntry entry;
    // Read as a plain int: a type outside the enumeration must reach the
    // default branch, not undefined behaviour.
    int type = 0;
    static_assert(sizeof type == sizeof value.type, "readstat_type_t is int-sized");
    std::memcpy(&type, &value.type, sizeof type);
    switch (type) {
    case READSTAT_TYPE_STRING:
        entry.hasString = true;
        entry.stringValue = QByteArray(value.v.string_value);
        break;
    case READSTAT_TYPE_INT8:
        entry.intValue = value.v.i8_value;
        break;
    case READSTAT_TYPE_INT16:
        entry.intValue = value.v.i16_value;
        break;
    case READSTAT_TYPE_INT32:
        entry.intValue = value.v.i32_value;
        break;
    case READSTAT_TYPE_FLOAT:
        entry.doubleValue = value.v.float_value;
        break;
    case READSTAT_TYPE_DOUBLE:
        entry.doubleValue = value.v.double_value;
        break;
    case READSTAT_TYPE_STRING_REF:
        // A fixed marker: string references carry no value of their own here.
        entry.intValue = -88;
        break;
    default:
        std::fprintf(stderr, "%s:%d unsupported type!\n", where, line);
        std::exit(1);
    }
    if (!label)
        return READSTAT_HANDLER_OK;
    entry.fromDouble = type == READSTAT_TYPE_FLOAT || type == READSTAT_TYPE_DOUBLE;
    entry.fileDouble = entry.doubleValue;
    if (value.is_tagged_missing)
        entry.missingTag = value.tag;
    else if (value.is_system_missing)
        entry.missingTag = '.';
    entry.label = QByteArray(label);
    entries.append(entry);
    return READSTAT_HANDLER_OK;
}

void describeVariable(TGenericField *field, const readstat_variable_t *variable, LabelSets *sets,
                      const char *labelSet, const VariableRules &rules, TReadNotes &notes)
{
    const char *format = readstat_variable_get_format(variable);
    // ReadStat leaves its own decimals member at 0; the format text has them.
    const int decimals = formatDecimals(format);
    const bool numeric = setFieldType(field, readstat_variable_get_type(variable), decimals, rules);

    const char *name = readstat_variable_get_name(variable);
    const char *label = readstat_variable_get_label(variable);
    field->setName(toText(name, TextKind::Ascii));
    field->setLabel(toText(label, rules.labelText));

    setWidth(field, variable, format, rules);
    if (numeric || rules.boundsForStrings) {
        field->setMinimum(QStringLiteral("0"));
        field->setMaximum(nines(field->getSize()));
    }
    addTextNotes(&notes, field->getName(), name, label, rules.labelText);
    addFormatNotes(&notes, field->getName(), format, field->getSize(), numeric, rules);
    addUserMissingNote(&notes, field->getName(), variable);
    applyLabelSet(field, sets, labelSet, numeric, decimals, rules, notes);
}

TReadNotes unusedLabelSetNotes(const LabelSets &sets)
{
    TReadNotes notes;
    for (auto it = sets.sets.cbegin(); it != sets.sets.cend(); ++it) {
        if (!it->named)
            notes.append(labelSetUnusedNote(it.key(), it->entries.size()));
    }
    return notes;
}

QString toText(const char *text, TextKind kind)
{
    if (!text)
        return QString();
    return kind == TextKind::Utf8 ? QString::fromUtf8(text) : QString::fromLatin1(text);
}

int formatDecimals(const char *format)
{
    if (!format)
        return 0;
    const char *dot = std::strchr(format, '.');
    if (!dot)
        return 0;
    int decimals = 0;
    // Formats have at most two digits of decimals; more are not read.
    for (const char *p = dot + 1; p < dot + 4 && *p >= '0' && *p <= '9'; ++p)
        decimals = decimals * 10 + (*p - '0');
    return decimals;
}

int formatWidthDigit(const char *format)
{
    if (!format || format[0] == '\0' || format[1] < '0' || format[1] > '9')
        return 0;
    return format[1] - '0';
}

QString nines(qint64 count)
{
    return QString(static_cast<int>(qBound<qint64>(0, count, MaxNines)), QLatin1Char('9'));
}

} // namespace kxreadstat
