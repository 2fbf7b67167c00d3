#include "ReadStatCommon_p.h"

#include "GenericField.h"

#include <QFile>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace kxreadstat {

namespace {

// Offset and length of the creation date ("dd mmm yy") in a SAV header:
// record type 4, product name 60, five 32-bit fields 20, bias 8.
constexpr qint64 SavDateOffset = 92;
constexpr int SavDateLength = 9;
constexpr char NeutralSavDate[SavDateLength + 1] = "01 Jan 70";

constexpr int MaxNines = 65535;

//! File access for ReadStat that keeps track of the position, so the SAV
//! header's date can be replaced on its way in.
struct PatchedIo
{
    QFile file;
    qint64 position = 0;
};

int ioOpen(const char *path, void *ctx)
{
    auto *io = static_cast<PatchedIo *>(ctx);
    io->file.setFileName(QFile::decodeName(path));
    io->position = 0;
    return io->file.open(QIODevice::ReadOnly) ? 0 : -1;
}

int ioClose(void *ctx)
{
    static_cast<PatchedIo *>(ctx)->file.close();
    return 0;
}

readstat_off_t ioSeek(readstat_off_t offset, readstat_io_flags_t whence, void *ctx)
{
    auto *io = static_cast<PatchedIo *>(ctx);
    qint64 base = 0;
    if (whence == READSTAT_SEEK_CUR)
        base = io->position;
    else if (whence == READSTAT_SEEK_END)
        base = io->file.size();
    if ((offset > 0 && base > std::numeric_limits<qint64>::max() - offset) || base + offset < 0)
        return -1;
    const qint64 target = base + offset;
    if (!io->file.seek(target))
        return -1;
    io->position = target;
    return target;
}

ssize_t ioRead(void *buf, size_t nbyte, void *ctx)
{
    auto *io = static_cast<PatchedIo *>(ctx);
    const qint64 wanted = static_cast<qint64>(qMin<size_t>(nbyte, std::numeric_limits<qint64>::max()));
    const qint64 got = io->file.read(static_cast<char *>(buf), wanted);
    if (got <= 0)
        return got;
    // Only the date field changes; SPSS writes its month in the user's
    // language, which ReadStat would reject.
    const qint64 from = qMax(io->position, SavDateOffset);
    const qint64 to = qMin(io->position + got, SavDateOffset + SavDateLength);
    for (qint64 at = from; at < to; ++at)
        static_cast<char *>(buf)[at - io->position] = NeutralSavDate[at - SavDateOffset];
    io->position += got;
    return got;
}

readstat_error_t ioUpdate(long, readstat_progress_handler, void *, void *)
{
    return READSTAT_OK;
}

// Accepts the value labels of the variable pass without keeping them: with no
// value-label handler at all, ReadStat gives SAV strings longer than 8 bytes
// no label-set name.
int ignoreValueLabel(const char *, readstat_value_t, const char *, void *)
{
    return READSTAT_HANDLER_OK;
}

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

void applyLabelSet(TGenericField *field, LabelSets *sets, const char *labelSet, bool numeric, int decimals,
                   const VariableRules &rules)
{
    if (!labelSet)
        return;
    auto it = sets->sets.find(QByteArray(labelSet));
    if (it == sets->sets.end())
        return;

    double minimum = 999999999.0;
    double maximum = -999999999.0;
    bool minimumChanged = false;
    bool maximumChanged = false;
    QString text = field->getValueLabels();
    for (ValueLabelEntry &entry : it.value()) {
        if (rules.truncateWholeNumbers && decimals == 0 && entry.doubleValue != -1.0) {
            entry.intValue = truncateToInt(entry.doubleValue);
            entry.doubleValue = -1.0;
        }
        bool skip = false;
        const QString value = valueText(entry, &skip);
        if (skip)
            continue;
        if (numeric && (entry.intValue != -1 || entry.doubleValue != -1.0)) {
            const double number = entry.intValue != -1 ? entry.intValue : entry.doubleValue;
            if (number < minimum) {
                minimum = number;
                minimumChanged = true;
            }
            if (number > maximum) {
                maximum = number;
                maximumChanged = true;
            }
        }
        text += value + QLatin1Char(' ') + toText(entry.label.constData(), rules.valueLabelText) + QLatin1Char('\t');
    }
    field->setValueLabels(text);
    if (numeric && minimumChanged)
        field->setMinimum(QString::number(minimum, 'g', 6));
    if (numeric && maximumChanged)
        field->setMaximum(QString::number(maximum, 'g', 6));
}

} // namespace

int collectValueLabel(LabelSets *sets, const char *labelSet, readstat_value_t value, const char *label,
                      const char *where, int line)
{
    QList<ValueLabelEntry> &entries = sets->sets[QByteArray(labelSet)];
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
    entry.label = QByteArray(label);
    entries.append(entry);
    return READSTAT_HANDLER_OK;
}

void describeVariable(TGenericField *field, const readstat_variable_t *variable, LabelSets *sets,
                      const char *labelSet, const VariableRules &rules)
{
    const char *format = readstat_variable_get_format(variable);
    // ReadStat leaves its own decimals member at 0; the format text has them.
    const int decimals = formatDecimals(format);
    bool numeric = true;
    switch (readstat_variable_get_type(variable)) {
    case READSTAT_TYPE_INT8:
    case READSTAT_TYPE_INT16:
    case READSTAT_TYPE_INT32:
        field->setFieldType(1);
        break;
    case READSTAT_TYPE_FLOAT:
    case READSTAT_TYPE_DOUBLE:
        field->setFieldType(rules.realNeedsDecimals && decimals == 0 ? 1 : 2);
        break;
    default:
        // Strings; string references and unknown types are read as strings too.
        field->setFieldType(3);
        field->setNotApplicableCode(QLatin1String(""));
        numeric = false;
        break;
    }

    field->setName(toText(readstat_variable_get_name(variable), TextKind::Ascii));
    field->setLabel(toText(readstat_variable_get_label(variable), rules.labelText));

    if (rules.widthFromFormat) {
        field->setSize(formatWidthDigit(format));
    } else {
        const size_t width = readstat_variable_get_storage_width(variable);
        field->setSize(static_cast<int>(qMin<size_t>(width, MaxNines)));
    }
    if (numeric || rules.boundsForStrings) {
        field->setMinimum(QStringLiteral("0"));
        field->setMaximum(nines(field->getSize()));
    }
    applyLabelSet(field, sets, labelSet, numeric, decimals, rules);
}

void Dictionary::addVariable(TGenericField *field, const readstat_variable_t *variable)
{
    variables.append(field);
    variablesByName.insert(readstat_variable_get_name(variable), field);
}

void Dictionary::copyMetadata(const readstat_metadata_t *metadata)
{
    rowCount = metadata->row_count;
    variableCount = metadata->var_count;
}

QStringList Dictionary::labelSetNames() const
{
    QStringList names;
    for (auto it = labelSets.sets.cbegin(); it != labelSets.sets.cend(); ++it)
        names.append(QString::fromUtf8(it.key()));
    return names;
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

namespace {

// ReadStat 1.1 hands the variable handler a Stata label-set name straight
// from the file's fixed-width field, with no terminating NUL when the name
// fills the field. A Stata pass therefore goes through these handlers, which
// copy the name, bounded by the field width of the file's format version,
// before the importer's handler sees it.
struct DtaPass
{
    void *importer = nullptr;
    readstat_value_label_handler valueLabels = nullptr;
    readstat_variable_handler variables = nullptr;
    size_t labelSetWidth = 9; // the narrowest field, until the metadata tells the version
};

int dtaMetadata(readstat_metadata_t *metadata, void *ctx)
{
    const int version = readstat_get_file_format_version(metadata);
    static_cast<DtaPass *>(ctx)->labelSetWidth = version < 110 ? 9 : version < 118 ? 33 : 129;
    return READSTAT_HANDLER_OK;
}

int dtaValueLabel(const char *labelSet, readstat_value_t value, const char *label, void *ctx)
{
    auto *pass = static_cast<DtaPass *>(ctx);
    return pass->valueLabels(labelSet, value, label, pass->importer);
}

int dtaVariable(int index, readstat_variable_t *variable, const char *labelSet, void *ctx)
{
    auto *pass = static_cast<DtaPass *>(ctx);
    if (!labelSet)
        return pass->variables(index, variable, nullptr, pass->importer);
    const QByteArray name(labelSet, static_cast<int>(strnlen(labelSet, pass->labelSetWidth)));
    return pass->variables(index, variable, name.constData(), pass->importer);
}

} // namespace

readstat_error_t parsePass(FileKind kind, const QByteArray &path, readstat_value_label_handler valueLabels,
                           readstat_variable_handler variables, void *importer)
{
    // Every pass frees its parser; the label-set entries own copies of their texts.
    readstat_parser_t *parser = readstat_parser_init();
    if (!parser)
        return READSTAT_ERROR_MALLOC;
    if (valueLabels)
        readstat_set_value_label_handler(parser, valueLabels);
    if (variables)
        readstat_set_variable_handler(parser, variables);

    readstat_error_t result;
    if (kind == FileKind::Sav) {
        PatchedIo io;
        readstat_set_open_handler(parser, ioOpen);
        readstat_set_close_handler(parser, ioClose);
        readstat_set_seek_handler(parser, ioSeek);
        readstat_set_read_handler(parser, ioRead);
        readstat_set_update_handler(parser, ioUpdate);
        readstat_set_io_ctx(parser, &io);
        result = readstat_parse_sav(parser, path.constData(), importer);
        // The context lives on this stack frame; the parser must not free it.
        readstat_set_io_ctx(parser, nullptr);
    } else {
        DtaPass pass;
        pass.importer = importer;
        pass.valueLabels = valueLabels;
        pass.variables = variables;
        readstat_set_metadata_handler(parser, dtaMetadata);
        if (valueLabels)
            readstat_set_value_label_handler(parser, dtaValueLabel);
        if (variables)
            readstat_set_variable_handler(parser, dtaVariable);
        result = readstat_parse_dta(parser, path.constData(), &pass);
    }
    readstat_parser_free(parser);
    return result;
}

readstat_error_t parseDictionary(FileKind kind, const QString &path, readstat_value_label_handler valueLabels,
                                 readstat_variable_handler variables, void *importer)
{
    const QByteArray local = path.toLocal8Bit();
    // Value labels first: the variable pass needs them. Neither pass sets a
    // value handler, so ReadStat skips the data section.
    parsePass(kind, local, valueLabels, nullptr, importer);
    return parsePass(kind, local, kind == FileKind::Sav ? ignoreValueLabel : nullptr, variables, importer);
}

} // namespace kxreadstat
