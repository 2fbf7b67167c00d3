#include "CodebookReaders_p.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QVector>

#include <readstat.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

// SPSS and Stata files through ReadStat: one pass over the dictionary with
// no value handler, so ReadStat never visits the rows.

namespace KxCodebook {
namespace detail {

namespace {

// Bounds against hostile files, far above what real files hold.
constexpr int MaxVariables = 1000000;
constexpr int MaxValueLabels = 5000000;
constexpr int MaxDetailLength = 300;

// --- File access ----------------------------------------------------------

//! Bytes shown to ReadStat in place of the file's own, from an offset on.
struct Overlay
{
    qint64 offset = 0;
    QByteArray bytes;
};

/*! ReadStat's access to the file. QFile buffers it (ReadStat asks for a few
 * bytes at a time). A failed read is shown to ReadStat as the end of the
 * file and remembered: several of ReadStat's checks compare the result of a
 * read as unsigned and would take -1 for success. */
struct FileAccess
{
    explicit FileAccess(const QString &path) : file(path) {}

    QFile file;
    //! Taken when opened: asked for at every read, and a file read is not meant to change.
    qint64 size = 0;
    qint64 position = 0;
    bool readFailed = false;
    QVector<Overlay> overlays;
    //! Stata: show the long-string section as empty (see hideStrlSection()).
    bool hidesStrls = false;
    bool afterAbsoluteSeek = false;
};

int openFile(const char *, void *ctx)
{
    auto *io = static_cast<FileAccess *>(ctx);
    io->position = 0;
    io->afterAbsoluteSeek = true;
    if (!io->file.open(QIODevice::ReadOnly))
        return -1;
    io->size = io->file.size();
    return 0;
}

int closeFile(void *ctx)
{
    static_cast<FileAccess *>(ctx)->file.close();
    return 0;
}

readstat_off_t seekFile(readstat_off_t offset, readstat_io_flags_t whence, void *ctx)
{
    auto *io = static_cast<FileAccess *>(ctx);
    qint64 base = 0;
    if (whence == READSTAT_SEEK_CUR)
        base = io->position;
    else if (whence == READSTAT_SEEK_END)
        base = io->size;
    const qint64 step = static_cast<qint64>(offset);
    if ((step > 0 && base > std::numeric_limits<qint64>::max() - step) || base + step < 0)
        return -1;
    const qint64 target = base + step;
    // Past the end only the position moves (reads then find nothing), as
    // with a plain lseek(); QFile would complain about far-off positions.
    if (target <= io->size && !io->file.seek(target))
        return -1;
    io->position = target;
    io->afterAbsoluteSeek = whence == READSTAT_SEEK_SET;
    return static_cast<readstat_off_t>(target);
}

void applyOverlays(const FileAccess &io, char *buffer, qint64 length)
{
    for (const Overlay &overlay : io.overlays) {
        const qint64 from = qMax(io.position, overlay.offset);
        const qint64 to = qMin(io.position + length, overlay.offset + overlay.bytes.size());
        for (qint64 at = from; at < to; ++at)
            buffer[at - io.position] = overlay.bytes.at(static_cast<int>(at - overlay.offset));
    }
}

/*! A Stata 117+ file keeps its long strings (strL) between the rows and the
 * value labels, and ReadStat reads every one of them into memory even when
 * no value is asked for: work and memory that grow with the rows, and an
 * error past about two million of them. When ReadStat starts on that
 * section ("<strls>" read just after a jump), the section's end tag is shown
 * next, so ReadStat takes it as empty and jumps on to the value labels. */
void hideStrlSection(FileAccess *io, const char *bytes, qint64 length)
{
    static const char start[] = "<strls>";
    constexpr qint64 startLength = sizeof start - 1;
    if (!io->hidesStrls || !io->afterAbsoluteSeek || length != startLength
        || std::memcmp(bytes, start, startLength) != 0)
        return;
    io->overlays.append({io->position + length, QByteArrayLiteral("</strls>")});
    io->hidesStrls = false;
}

ssize_t readFile(void *buf, size_t nbyte, void *ctx)
{
    auto *io = static_cast<FileAccess *>(ctx);
    const qint64 wanted = static_cast<qint64>(qMin<size_t>(nbyte, std::numeric_limits<ssize_t>::max()));
    char *bytes = static_cast<char *>(buf);
    if (io->position >= io->size)
        return 0;
    const qint64 got = io->file.read(bytes, wanted);
    if (got < 0) {
        io->readFailed = true;
        return 0;
    }
    applyOverlays(*io, bytes, got);
    hideStrlSection(io, bytes, got);
    io->position += got;
    io->afterAbsoluteSeek = false;
    return static_cast<ssize_t>(got);
}

readstat_error_t ignoreProgress(long, readstat_progress_handler, void *, void *)
{
    return READSTAT_OK;
}

// --- SAV header date ------------------------------------------------------

// Where a SAV header keeps its creation date ("dd mmm yy") and time
// ("hh:mm:ss"): after record type 4, product name 60, five 32-bit fields 20
// and the bias 8.
constexpr qint64 SavDateOffset = 92;
constexpr int SavDateLength = 9;
constexpr qint64 SavTimeOffset = SavDateOffset + SavDateLength;
constexpr int SavTimeLength = 8;

bool isDigitOrSpace(char c)
{
    return c == ' ' || (c >= '0' && c <= '9');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

//! A date ReadStat reads: "dd mmm yy", also with dashes or blank padding, English months.
bool isSavDate(const QByteArray &date)
{
    static const char *const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    if (date.size() != SavDateLength)
        return false;
    const auto isSeparator = [](char c) { return c == ' ' || c == '-'; };
    if (!isDigitOrSpace(date[0]) || !isDigitOrSpace(date[1]) || !isSeparator(date[2]) || !isSeparator(date[6])
        || !isDigitOrSpace(date[7]) || !isDigitOrSpace(date[8]))
        return false;
    const QByteArray month = date.mid(3, 3);
    for (const char *name : months) {
        if (month == name || month == QByteArray(name).toUpper())
            return true;
    }
    return false;
}

//! A time ReadStat reads: "hh:mm:ss", each the digits or a blank and a digit.
bool isSavTime(const QByteArray &time)
{
    if (time.size() != SavTimeLength || time[2] != ':' || time[5] != ':')
        return false;
    for (int at : {0, 3, 6}) {
        if (!isDigitOrSpace(time[at]) || !isDigit(time[at + 1]))
            return false;
    }
    return true;
}

/*! SPSS writes the header's month in the user's language and ReadStat
 * rejects the whole file for it. A date or time that ReadStat would reject
 * is shown to it as a neutral one; returns whether one was (the creation
 * time is then unknown). */
bool neutraliseSavTimestamp(const QString &path, FileAccess *io)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(SavDateOffset))
        return false;
    const QByteArray stamp = file.read(SavDateLength + SavTimeLength);
    if (stamp.size() != SavDateLength + SavTimeLength)
        return false;
    bool replaced = false;
    if (!isSavDate(stamp.left(SavDateLength))) {
        io->overlays.append({SavDateOffset, QByteArrayLiteral("01 Jan 70")});
        replaced = true;
    }
    if (!isSavTime(stamp.mid(SavDateLength))) {
        io->overlays.append({SavTimeOffset, QByteArrayLiteral("00:00:00")});
        replaced = true;
    }
    return replaced;
}

// --- Texts ----------------------------------------------------------------

QString utf8(const char *text)
{
    return text ? QString::fromUtf8(text) : QString();
}

//! At most \a width bytes of \a text, up to its first NUL.
QByteArray boundedBytes(const char *text, size_t width)
{
    if (!text)
        return QByteArray();
    return QByteArray(text, static_cast<int>(strnlen(text, width)));
}

//! Whole numbers plainly up to 1e15, others in the fewest significant digits that read back the same.
QString shortestText(double v)
{
    if (std::isnan(v))
        return QStringLiteral(".");
    if (std::isinf(v))
        return v < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    if (v == std::trunc(v) && std::fabs(v) <= 1e15)
        return QString::number(static_cast<qint64>(v));
    for (int precision = 1; precision < 17; ++precision) {
        const QString text = QString::number(v, 'g', precision);
        if (text.toDouble() == v)
            return text;
    }
    return QString::number(v, 'g', 17);
}

QString shortestText(float v)
{
    if (std::isnan(v) || std::isinf(v) || (v == std::trunc(v) && std::fabs(v) <= 1e15f))
        return shortestText(static_cast<double>(v));
    for (int precision = 1; precision < 9; ++precision) {
        const QString text = QString::number(v, 'g', precision);
        if (static_cast<float>(text.toDouble()) == v)
            return text;
    }
    return QString::number(v, 'g', 9);
}

//! Stata's extended missing values .a to .z.
bool isExtendedMissing(readstat_value_t value)
{
    const char tag = readstat_value_tag(value);
    return readstat_value_is_tagged_missing(value) && tag >= 'a' && tag <= 'z';
}

//! A value as code text: numbers shortest, ".a" to ".z" for extended missing values, "." for system missing.
QString codeText(readstat_value_t value)
{
    if (isExtendedMissing(value))
        return QStringLiteral(".") + QLatin1Char(readstat_value_tag(value));
    if (readstat_value_is_tagged_missing(value) || readstat_value_is_system_missing(value))
        return QStringLiteral(".");
    switch (readstat_value_type(value)) {
    case READSTAT_TYPE_STRING:
        return utf8(readstat_string_value(value));
    case READSTAT_TYPE_INT8:
        return QString::number(value.v.i8_value);
    case READSTAT_TYPE_INT16:
        return QString::number(value.v.i16_value);
    case READSTAT_TYPE_INT32:
        return QString::number(value.v.i32_value);
    case READSTAT_TYPE_FLOAT:
        return shortestText(value.v.float_value);
    case READSTAT_TYPE_DOUBLE:
        return shortestText(value.v.double_value);
    case READSTAT_TYPE_STRING_REF:
        break;
    }
    return QString();
}

/*! An end of an SPSS missing range: "LO" and "HI" for SPSS's LOWEST and
 * HIGHEST (ReadStat gives them as infinities, other writers as the largest
 * doubles), as SPSS syntax writes them. */
QString missingEndText(readstat_value_t value)
{
    if (readstat_value_type(value) == READSTAT_TYPE_DOUBLE) {
        const double v = value.v.double_value;
        if (v <= std::nextafter(-DBL_MAX, 0.0))
            return QStringLiteral("LO");
        if (v >= std::nextafter(DBL_MAX, 0.0))
            return QStringLiteral("HI");
    }
    return codeText(value);
}

// --- Formats --------------------------------------------------------------

struct FormatWidth
{
    int width = 0;
    int decimals = 0;
};

//! The run of ASCII digits at \a at (moved past it) as a number; 0 when none or too large.
int digitsAt(const QString &text, int *at)
{
    const int from = *at;
    while (*at < text.size() && text.at(*at) >= QLatin1Char('0') && text.at(*at) <= QLatin1Char('9'))
        ++*at;
    bool ok = false;
    const int number = text.midRef(from, *at - from).toInt(&ok);
    return ok ? number : 0;
}

//! SPSS: letters, the width, then optionally a dot and the decimals (F10.2, A24, DATE11).
FormatWidth spssFormatWidth(const QString &format)
{
    int at = 0;
    while (at < format.size() && format.at(at).isLetter())
        ++at;
    FormatWidth result;
    result.width = digitsAt(format, &at);
    if (at < format.size() && format.at(at) == QLatin1Char('.')) {
        ++at;
        result.decimals = digitsAt(format, &at);
    }
    return result;
}

/*! Stata: %, alignment (- left, ~ centred), the width (a leading 0 pads with
 * zeros), then a dot (a comma in European formats) and the decimals
 * (%9.2f, %-24s, %010.0g, %9,2f); none for dates (%td). */
FormatWidth stataFormatWidth(const QString &format)
{
    FormatWidth result;
    if (!format.startsWith(QLatin1Char('%')))
        return result;
    int at = 1;
    while (at < format.size() && (format.at(at) == QLatin1Char('-') || format.at(at) == QLatin1Char('~')))
        ++at;
    result.width = digitsAt(format, &at);
    if (at < format.size() && (format.at(at) == QLatin1Char('.') || format.at(at) == QLatin1Char(','))) {
        ++at;
        result.decimals = digitsAt(format, &at);
    }
    return result;
}

// --- Variables ------------------------------------------------------------

Measure measureOf(readstat_measure_t measure)
{
    switch (measure) {
    case READSTAT_MEASURE_NOMINAL: return Measure::Nominal;
    case READSTAT_MEASURE_ORDINAL: return Measure::Ordinal;
    case READSTAT_MEASURE_SCALE: return Measure::Scale;
    case READSTAT_MEASURE_UNKNOWN: break;
    }
    return Measure::Unknown;
}

Alignment alignmentOf(readstat_alignment_t alignment)
{
    switch (alignment) {
    case READSTAT_ALIGNMENT_LEFT: return Alignment::Left;
    case READSTAT_ALIGNMENT_CENTER: return Alignment::Center;
    case READSTAT_ALIGNMENT_RIGHT: return Alignment::Right;
    case READSTAT_ALIGNMENT_UNKNOWN: break;
    }
    return Alignment::Unknown;
}

int clampedInt(size_t n)
{
    return static_cast<int>(qMin<size_t>(n, std::numeric_limits<int>::max()));
}

/*! SPSS: the bytes the variable takes in a row (strings in blocks of 8).
 * Stata: the str width; ReadStat counts one byte more for a terminating NUL. */
int storageWidthOf(const readstat_variable_t *variable, Format format)
{
    const int width = clampedInt(readstat_variable_get_storage_width(variable));
    const bool stataString = format == Format::Stata && readstat_variable_get_type(variable) == READSTAT_TYPE_STRING;
    return stataString && width > 0 ? width - 1 : width;
}

/*! ReadStat reads a Stata string format's width with a sign, so a
 * left-aligned %-24s comes out as -24. */
int displayWidthOf(const readstat_variable_t *variable)
{
    const int width = readstat_variable_get_display_width(variable);
    if (width >= 0)
        return width;
    return width == std::numeric_limits<int>::min() ? 0 : -width;
}

/*! One user-missing code or range. SPSS's system-missing value is the
 * lowest double, which ReadStat gives as NaN: as the low end of a range it
 * is LO. */
MissingValue missingValueOf(readstat_value_t low, readstat_value_t high)
{
    MissingValue m;
    m.from = missingEndText(low);
    const QString to = missingEndText(high);
    if (to == m.from)
        return m;
    m.to = to;
    m.isRange = true;
    if (readstat_value_type(low) == READSTAT_TYPE_DOUBLE && std::isnan(low.v.double_value))
        m.from = QStringLiteral("LO");
    return m;
}

//! SPSS user-missing values: single codes and ranges, unlabelled as yet.
QVector<MissingValue> userMissingValues(const readstat_variable_t *variable)
{
    QVector<MissingValue> missing;
    // ReadStat keeps at most 16 ranges.
    const int count = qBound(0, readstat_variable_get_missing_ranges_count(variable), 16);
    for (int i = 0; i < count; ++i)
        missing.append(missingValueOf(readstat_variable_get_missing_range_lo(variable, i),
                                      readstat_variable_get_missing_range_hi(variable, i)));
    return missing;
}

Variable describeVariable(const readstat_variable_t *variable, Format format)
{
    Variable v;
    v.name = utf8(readstat_variable_get_name(variable));
    v.labels = Labels::of(utf8(readstat_variable_get_label(variable)));
    v.storage = readstat_variable_get_type(variable) == READSTAT_TYPE_STRING ? Storage::Text : Storage::Numeric;
    v.format = utf8(readstat_variable_get_format(variable));
    const FormatWidth width = format == Format::Spss ? spssFormatWidth(v.format) : stataFormatWidth(v.format);
    v.width = width.width;
    v.decimals = v.storage == Storage::Numeric ? width.decimals : 0;
    v.storageWidth = storageWidthOf(variable, format);
    v.displayWidth = displayWidthOf(variable);
    v.measure = measureOf(readstat_variable_get_measure(variable));
    v.alignment = alignmentOf(readstat_variable_get_alignment(variable));
    v.missing = userMissingValues(variable);
    return v;
}

// --- The reading ----------------------------------------------------------

//! The labels of one label set, in ReadStat's order.
struct LabelSet
{
    QVector<Value> values;
    //! Stata: its labelled extended missing values .a to .z.
    QVector<MissingValue> extendedMissing;
    //! Code → label of its first value with that code; built when first needed.
    QHash<QString, QString> labelByCode;
    bool indexed = false;

    QString labelOf(const QString &code)
    {
        if (!indexed) {
            for (const Value &value : qAsConst(values)) {
                const QString valueCode = value.codes.first().from;
                if (!labelByCode.contains(valueCode))
                    labelByCode.insert(valueCode, value.labels.primary());
            }
            indexed = true;
        }
        return labelByCode.value(code);
    }
};

//! What the handlers gather during the pass.
struct Reading
{
    Format format = Format::Unknown;
    int version = 0;
    QString encoding;
    QString fileLabel;
    qint64 rowCount = -1;
    QDateTime created;
    QVector<Variable> variables;
    //! The label-set name each variable gives, as the file's bytes.
    QVector<QByteArray> variableSets;
    QHash<QByteArray, LabelSet> labelSets;
    int valueLabelCount = 0;
    QString limitMessage;
    //! ReadStat's last explanation of a problem.
    QString detail;

    // Stata hands over label-set names straight from the file's fixed-width
    // fields, not always ended by a NUL; the widths follow the version.
    size_t variableSetNameWidth() const
    {
        if (format == Format::Spss)
            return 256;
        return version < 110 ? 9 : version < 118 ? 33 : 129;
    }
    size_t tableNameWidth() const
    {
        if (format == Format::Spss)
            return 256;
        return version < 105 ? 12 : version < 118 ? 33 : 129;
    }
};

//! The encoding the file's text is decoded from; for Stata files, which name none, the one ReadStat assumes.
QString encodingOf(readstat_metadata_t *metadata, Format format, int version)
{
    const QString named = utf8(readstat_get_file_encoding(metadata));
    if (!named.isEmpty() || format != Format::Stata)
        return named;
    return version >= 118 ? QStringLiteral("UTF-8") : QStringLiteral("WINDOWS-1252");
}

QDateTime creationTimeOf(time_t seconds)
{
    // ReadStat gives 0 when the file has no time it can read, -1 when it cannot convert it.
    if (seconds == 0 || seconds == static_cast<time_t>(-1))
        return QDateTime();
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds), Qt::UTC);
}

int onMetadata(readstat_metadata_t *metadata, void *ctx)
{
    auto *reading = static_cast<Reading *>(ctx);
    reading->version = readstat_get_file_format_version(metadata);
    reading->encoding = encodingOf(metadata, reading->format, reading->version);
    reading->fileLabel = utf8(readstat_get_file_label(metadata));
    // The member rather than readstat_get_row_count(), which cuts it to an int.
    reading->rowCount = metadata->row_count < 0 ? -1 : static_cast<qint64>(metadata->row_count);
    reading->created = creationTimeOf(readstat_get_creation_time(metadata));
    return READSTAT_HANDLER_OK;
}

int onVariable(int, readstat_variable_t *variable, const char *labelSet, void *ctx)
{
    auto *reading = static_cast<Reading *>(ctx);
    if (reading->variables.size() >= MaxVariables) {
        reading->limitMessage = QStringLiteral("more than %1 variables").arg(MaxVariables);
        return READSTAT_HANDLER_ABORT;
    }
    Variable v = describeVariable(variable, reading->format);
    const QByteArray setName = boundedBytes(labelSet, reading->variableSetNameWidth());
    v.labelSet = QString::fromUtf8(setName);
    reading->variables.append(v);
    reading->variableSets.append(setName);
    return READSTAT_HANDLER_OK;
}

int onValueLabel(const char *setName, readstat_value_t value, const char *label, void *ctx)
{
    auto *reading = static_cast<Reading *>(ctx);
    // ReadStat goes on through an SPSS label record after an abort: ignore the rest.
    if (!reading->limitMessage.isEmpty())
        return READSTAT_HANDLER_ABORT;
    if (++reading->valueLabelCount > MaxValueLabels) {
        reading->limitMessage = QStringLiteral("more than %1 value labels").arg(MaxValueLabels);
        return READSTAT_HANDLER_ABORT;
    }
    LabelSet &set = reading->labelSets[boundedBytes(setName, reading->tableNameWidth())];
    Code code;
    code.from = codeText(value);
    Value entry;
    entry.codes.append(code);
    entry.labels = Labels::of(utf8(label));
    if (isExtendedMissing(value)) {
        MissingValue missing;
        missing.from = code.from;
        missing.label = entry.labels.primary();
        set.extendedMissing.append(missing);
    }
    set.values.append(entry);
    return READSTAT_HANDLER_OK;
}

void onError(const char *message, void *ctx)
{
    static_cast<Reading *>(ctx)->detail = utf8(message).trimmed().left(MaxDetailLength);
}

readstat_error_t parseFile(const QString &path, Reading *reading, FileAccess *io)
{
    struct ParserFree
    {
        void operator()(readstat_parser_t *parser) const { readstat_parser_free(parser); }
    };
    const std::unique_ptr<readstat_parser_t, ParserFree> parser(readstat_parser_init());
    if (!parser)
        return READSTAT_ERROR_MALLOC;
    readstat_parser_t *p = parser.get();
    readstat_set_open_handler(p, openFile);
    readstat_set_close_handler(p, closeFile);
    readstat_set_seek_handler(p, seekFile);
    readstat_set_read_handler(p, readFile);
    readstat_set_update_handler(p, ignoreProgress);
    readstat_set_io_ctx(p, io);
    readstat_set_metadata_handler(p, onMetadata);
    readstat_set_variable_handler(p, onVariable);
    readstat_set_value_label_handler(p, onValueLabel);
    readstat_set_error_handler(p, onError);
    // No value handler: ReadStat stops after the dictionary and the value labels.
    const QByteArray name = QFile::encodeName(path);
    return reading->format == Format::Spss ? readstat_parse_sav(p, name.constData(), reading)
                                           : readstat_parse_dta(p, name.constData(), reading);
}

//! Gives each variable its label set's values, and labels for its missing values.
void attachLabelSets(Reading *reading)
{
    for (int i = 0; i < reading->variables.size(); ++i) {
        const QByteArray &setName = reading->variableSets.at(i);
        if (setName.isEmpty())
            continue;
        const auto found = reading->labelSets.find(setName);
        if (found == reading->labelSets.end())
            continue;
        LabelSet &set = found.value();
        Variable &v = reading->variables[i];
        ValueSet valueSet;
        valueSet.name = v.labelSet;
        valueSet.values = set.values;
        v.valueSets.append(valueSet);
        for (MissingValue &m : v.missing) {
            if (!m.isRange)
                m.label = set.labelOf(m.from);
        }
        v.missing += set.extendedMissing;
    }
}

Codebook codebookOf(const QString &path, const Reading &reading)
{
    Codebook book;
    book.setFormat(reading.format);
    book.setFileName(path);
    book.setFormatVersion(QString::number(reading.version));
    book.setEncoding(reading.encoding);
    book.setLabels(Labels::of(reading.fileLabel));
    book.setLanguages({Language()});
    book.setRowCount(reading.rowCount);
    book.setCreated(reading.created);
    book.setRecordType(0, 0);
    book.setLevels({Level()});
    book.setRecords({});
    book.setVariables(reading.variables);
    return book;
}

Error readStatError(const QString &path, readstat_error_t result, const Reading &reading, const FileAccess &io)
{
    Error e;
    if (io.readFailed) {
        e.kind = Error::Unreadable;
        e.message = QStringLiteral("%1: %2 (%3)")
                        .arg(path, QString::fromUtf8(readstat_error_message(READSTAT_ERROR_READ)),
                             io.file.errorString());
        return e;
    }
    if (!reading.limitMessage.isEmpty()) {
        e.kind = Error::LimitReached;
        e.message = QStringLiteral("%1: %2").arg(path, reading.limitMessage);
        return e;
    }
    QString detail = reading.detail;
    if (result == READSTAT_ERROR_OPEN)
        detail = io.file.errorString();
    else if (result == READSTAT_ERROR_READ && detail.isEmpty())
        detail = QStringLiteral("the file ends early");
    // A short read is a truncated file; only a refusal of the system makes it unreadable.
    e.kind = result == READSTAT_ERROR_OPEN ? Error::Unreadable : Error::Malformed;
    e.message = QStringLiteral("%1: %2").arg(path, QString::fromUtf8(readstat_error_message(result)));
    if (!detail.isEmpty())
        e.message += QStringLiteral(" (%1)").arg(detail);
    return e;
}

} // namespace

Codebook readReadStatFile(const QString &path, Format format, Error *error)
{
    Reading reading;
    reading.format = format == Format::Stata ? Format::Stata : Format::Spss;
    FileAccess io(path);
    io.hidesStrls = reading.format == Format::Stata;
    const bool timestampReplaced = reading.format == Format::Spss && neutraliseSavTimestamp(path, &io);

    const readstat_error_t result = parseFile(path, &reading, &io);
    if (result != READSTAT_OK || io.readFailed || !reading.limitMessage.isEmpty()) {
        *error = readStatError(path, result, reading, io);
        return Codebook();
    }
    if (timestampReplaced)
        reading.created = QDateTime();
    attachLabelSets(&reading);
    *error = Error();
    return codebookOf(path, reading);
}

} // namespace detail
} // namespace KxCodebook
