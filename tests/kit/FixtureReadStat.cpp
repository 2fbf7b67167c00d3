#include "FixtureReadStat.h"

#include "TestSupport.h"

#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <readstat.h>

namespace kxtest {

namespace {

ssize_t appendBytes(const void *data, size_t len, void *ctx)
{
    static_cast<QByteArray *>(ctx)->append(static_cast<const char *>(data), static_cast<int>(len));
    return static_cast<ssize_t>(len);
}

ssize_t writeToFile(const void *data, size_t len, void *ctx)
{
    const qint64 written = static_cast<QFile *>(ctx)->write(static_cast<const char *>(data), qint64(len));
    return static_cast<ssize_t>(written);
}

readstat_type_t toReadStat(ReadStatFile::Type type)
{
    return static_cast<readstat_type_t>(static_cast<int>(type));
}

const char *textOrNull(const QByteArray &text)
{
    return text.isEmpty() ? nullptr : text.constData();
}

readstat_error_t beginWriting(readstat_writer_t *writer, const ReadStatFile &file, void *out)
{
    switch (file.container) {
    case ReadStatFile::Container::Sav:
        return readstat_begin_writing_sav(writer, out, file.rows);
    case ReadStatFile::Container::SavCompressed:
        readstat_writer_set_compression(writer, READSTAT_COMPRESS_ROWS);
        return readstat_begin_writing_sav(writer, out, file.rows);
    case ReadStatFile::Container::Zsav:
        readstat_writer_set_compression(writer, READSTAT_COMPRESS_BINARY);
        return readstat_begin_writing_sav(writer, out, file.rows);
    case ReadStatFile::Container::Dta:
        readstat_writer_set_file_format_version(writer, static_cast<uint8_t>(file.dtaVersion));
        return readstat_begin_writing_dta(writer, out, file.rows);
    }
    return READSTAT_ERROR_WRITER_NOT_INITIALIZED;
}

readstat_error_t writeRows(readstat_writer_t *writer, const QList<readstat_variable_t *> &variables,
                           const ReadStatFile &file, readstat_string_ref_t *ref)
{
    readstat_error_t rc = READSTAT_OK;
    for (int row = 0; row < file.rows && rc == READSTAT_OK; ++row) {
        const QByteArray text = "r" + QByteArray::number(row);
        if ((rc = readstat_begin_row(writer)) != READSTAT_OK)
            break;
        for (int i = 0; i < variables.size() && rc == READSTAT_OK; ++i) {
            readstat_variable_t *v = variables.at(i);
            switch (file.variables.at(i).type) {
            case ReadStatFile::Type::String:
                rc = readstat_insert_string_value(writer, v, text.constData());
                break;
            case ReadStatFile::Type::StringRef:
                rc = readstat_insert_string_ref(writer, v, ref);
                break;
            case ReadStatFile::Type::Int8:
                rc = readstat_insert_int8_value(writer, v, static_cast<int8_t>(row % 100));
                break;
            case ReadStatFile::Type::Int16:
                rc = readstat_insert_int16_value(writer, v, static_cast<int16_t>(row));
                break;
            case ReadStatFile::Type::Int32:
                rc = readstat_insert_int32_value(writer, v, row);
                break;
            case ReadStatFile::Type::Float:
                rc = readstat_insert_float_value(writer, v, static_cast<float>(row));
                break;
            case ReadStatFile::Type::Double:
                rc = readstat_insert_double_value(writer, v, row);
                break;
            }
        }
        if (rc == READSTAT_OK)
            rc = readstat_end_row(writer);
    }
    return rc;
}

} // namespace

ReadStatFile::Variable readStatVariable(const QByteArray &name, ReadStatFile::Type type, const QByteArray &format,
                                        const QByteArray &label, const QByteArray &labelSet, int storageWidth)
{
    ReadStatFile::Variable v;
    v.name = name;
    v.type = type;
    v.format = format;
    v.label = label;
    v.labelSet = labelSet;
    v.storageWidth = storageWidth;
    return v;
}

ReadStatFile::LabelSet readStatLabelSet(const QByteArray &name, ReadStatFile::Type type,
                                        const QList<ReadStatFile::Label> &labels)
{
    ReadStatFile::LabelSet set;
    set.name = name;
    set.type = type;
    set.labels = labels;
    return set;
}

ReadStatFile::Label numericLabel(double number, const QByteArray &label)
{
    ReadStatFile::Label l;
    l.number = number;
    l.label = label;
    return l;
}

ReadStatFile::Label stringLabel(const QByteArray &text, const QByteArray &label)
{
    ReadStatFile::Label l;
    l.text = text;
    l.label = label;
    return l;
}

ReadStatFile::Label taggedLabel(char tag, const QByteArray &label)
{
    ReadStatFile::Label l;
    l.tag = tag;
    l.label = label;
    return l;
}

ReadStatFile::Missing missingRange(double low, double high)
{
    ReadStatFile::Missing m;
    m.low = low;
    m.high = high;
    return m;
}

ReadStatFile::Missing missingText(const QByteArray &text)
{
    ReadStatFile::Missing m;
    m.text = text;
    return m;
}

namespace {

//! Writes \a file through ReadStat's writer, handing its bytes to \a dataWriter with \a out.
readstat_error_t writeReadStat(const ReadStatFile &file, readstat_data_writer dataWriter, void *out)
{
    readstat_writer_t *writer = readstat_writer_init();
    readstat_set_data_writer(writer, dataWriter);

    QHash<QByteArray, readstat_label_set_t *> sets;
    for (const ReadStatFile::LabelSet &set : file.labelSets) {
        readstat_label_set_t *s = readstat_add_label_set(writer, toReadStat(set.type), set.name.constData());
        for (const ReadStatFile::Label &l : set.labels) {
            if (l.tag)
                readstat_label_tagged_value(s, l.tag, l.label.constData());
            else if (set.type == ReadStatFile::Type::String)
                readstat_label_string_value(s, l.text.constData(), l.label.constData());
            else if (set.type == ReadStatFile::Type::Double)
                readstat_label_double_value(s, l.number, l.label.constData());
            else
                readstat_label_int32_value(s, static_cast<int32_t>(l.number), l.label.constData());
        }
        sets.insert(set.name, s);
    }

    QList<readstat_variable_t *> variables;
    for (const ReadStatFile::Variable &var : file.variables) {
        readstat_variable_t *v = readstat_add_variable(writer, var.name.constData(), toReadStat(var.type),
                                                       static_cast<size_t>(qMax(0, var.storageWidth)));
        if (!var.format.isEmpty())
            readstat_variable_set_format(v, var.format.constData());
        if (!var.label.isEmpty())
            readstat_variable_set_label(v, textOrNull(var.label));
        if (!var.labelSet.isEmpty() && sets.contains(var.labelSet))
            readstat_variable_set_label_set(v, sets.value(var.labelSet));
        for (const ReadStatFile::Missing &m : var.missing) {
            if (!m.text.isEmpty())
                readstat_variable_add_missing_string_value(v, m.text.constData());
            else if (m.low == m.high)
                readstat_variable_add_missing_double_value(v, m.low);
            else
                readstat_variable_add_missing_double_range(v, m.low, m.high);
        }
        variables.append(v);
    }

    // String references must exist before writing starts.
    readstat_string_ref_t *ref = nullptr;
    for (const ReadStatFile::Variable &var : file.variables) {
        if (var.type == ReadStatFile::Type::StringRef && file.rows > 0 && !ref)
            ref = readstat_add_string_ref(writer, "shared");
    }

    if (!file.fileLabel.isEmpty())
        readstat_writer_set_file_label(writer, file.fileLabel.constData());
    if (file.timestamp != 0)
        readstat_writer_set_file_timestamp(writer, static_cast<time_t>(file.timestamp));

    readstat_error_t rc = beginWriting(writer, file, out);
    if (rc == READSTAT_OK)
        rc = writeRows(writer, variables, file, ref);
    if (rc == READSTAT_OK)
        rc = readstat_end_writing(writer);
    readstat_writer_free(writer);
    return rc;
}

} // namespace

QByteArray readStatBytes(const ReadStatFile &file, QString *error)
{
    QByteArray out;
    const readstat_error_t rc = writeReadStat(file, appendBytes, &out);
    if (rc != READSTAT_OK) {
        if (error)
            *error = QString::fromUtf8(readstat_error_message(rc));
        return QByteArray();
    }
    return out;
}

bool streamReadStatFile(const QString &path, const ReadStatFile &file, QString *error)
{
    QFile out(path);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        if (error)
            *error = out.errorString();
        return false;
    }
    const readstat_error_t rc = writeReadStat(file, writeToFile, &out);
    if (rc == READSTAT_OK)
        return true;
    if (error)
        *error = QString::fromUtf8(readstat_error_message(rc));
    out.remove();
    return false;
}

QString writeReadStatFile(const QTemporaryDir &dir, const QString &name, const ReadStatFile &file, QString *error)
{
    const QByteArray bytes = readStatBytes(file, error);
    if (bytes.isEmpty())
        return QString();
    return writeFile(dir, name, bytes);
}

ReadStatFile labelledSurveyFile(ReadStatFile::Container container, int rows)
{
    const bool stata = container == ReadStatFile::Container::Dta;
    ReadStatFile f;
    f.container = container;
    f.rows = rows;
    const ReadStatFile::Type setType = stata ? ReadStatFile::Type::Int32 : ReadStatFile::Type::Double;
    for (int s = 0; s < 20; ++s) {
        ReadStatFile::LabelSet set;
        set.name = "set" + QByteArray::number(s);
        set.type = setType;
        for (int v = 1; v <= 5; ++v)
            set.labels.append(numericLabel(v, "Answer " + QByteArray::number(v)));
        f.labelSets.append(set);
    }
    for (int i = 0; i < 200; ++i) {
        const QByteArray n = QByteArray::number(i);
        // int8 values (the row number modulo 100): SPSS keeps them as doubles,
        // which row compression stores in one byte each.
        f.variables.append(readStatVariable("v" + n, ReadStatFile::Type::Int8, stata ? "%8.0g" : "F2.0", "Variable " + n,
                                            "set" + QByteArray::number(i % 20)));
    }
    return f;
}

} // namespace kxtest
