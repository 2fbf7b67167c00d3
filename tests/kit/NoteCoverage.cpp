#include "NoteCoverage.h"

#include "CSPro.h"
#include "CSProDataImport.h"
#include "CSProDictionary.h"
#include "CSProJson.h"
#include "CSProJsonDataImport.h"
#include "CSProVariable.h"
#include "KxErrorManager.h"

#include <KxCodebook.h>

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <memory>

using namespace KxCodebook;

namespace kxtest {

namespace {

// The kinds that may account for each aspect. A key read from another line
// can bend anything of its item; a bound against hostile input can cut
// anything.
const QStringList AnyItemKinds = {QStringLiteral("key-from-other-line"), QStringLiteral("limit-reached")};

// Notes on one line of the file, whose subject is the line's text as read:
// they account for a difference in a text of that line.
const QStringList LineKinds = {QStringLiteral("undecodable-text"), QStringLiteral("carriage-return-dropped")};

// The line's value as read, with each replacement character standing for
// the character the file has there.
bool lineHoldsText(const QString &lineAsRead, const QString &text)
{
    if (text.isEmpty())
        return false;
    const QString value = lineAsRead.mid(lineAsRead.indexOf(QLatin1Char('=')) + 1);
    if (value.contains(text) || text.contains(value))
        return !value.isEmpty();
    QString pattern = QRegularExpression::escape(value);
    pattern.replace(QRegularExpression::escape(QString(QChar::ReplacementCharacter)), QStringLiteral(".+?"));
    return QRegularExpression(pattern).match(text).hasMatch();
}

const QHash<QString, QStringList> &kindsByAspect()
{
    static const QHash<QString, QStringList> kinds = {
        {QStringLiteral("name"),
         {QStringLiteral("occurrence-name-control"), QStringLiteral("subitem-occurrences-once")}},
        {QStringLiteral("label"), {QStringLiteral("language-labels-joined")}},
        {QStringLiteral("start"),
         {QStringLiteral("start-not-relative"), QStringLiteral("number-out-of-range"), QStringLiteral("subitem-read-as-item"),
          QStringLiteral("subitem-occurrences-once")}},
        {QStringLiteral("size"), {QStringLiteral("number-out-of-range"), QStringLiteral("binary-item-as-number")}},
        {QStringLiteral("type"),
         {QStringLiteral("wide-integer-as-real"), QStringLiteral("decimals-not-read"),
          QStringLiteral("binary-item-as-number"), QStringLiteral("number-out-of-range")}},
        {QStringLiteral("decimals"), {QStringLiteral("decimals-not-read"), QStringLiteral("number-out-of-range")}},
        {QStringLiteral("value"),
         {QStringLiteral("special-not-read"), QStringLiteral("value-set-dropped"),
          QStringLiteral("value-codes-changed"), QStringLiteral("linked-value-set-empty"),
          QStringLiteral("occurrence-value-set"), QStringLiteral("range-code"), QStringLiteral("range-split"),
          QStringLiteral("quoted-code-bent"), QStringLiteral("padded-code-split"),
          QStringLiteral("first-pair-only"), QStringLiteral("code-rounded"),
          QStringLiteral("language-labels-joined"), QStringLiteral("malformed-value-kept"),
          QStringLiteral("numeric-code-not-read")}},
        {QStringLiteral("missing"),
         {QStringLiteral("special-not-read"), QStringLiteral("value-set-dropped"),
          QStringLiteral("linked-value-set-empty"), QStringLiteral("occurrence-value-set")}},
        {QStringLiteral("notappl"),
         {QStringLiteral("special-not-read"), QStringLiteral("value-set-dropped"),
          QStringLiteral("linked-value-set-empty"), QStringLiteral("occurrence-value-set")}},
        {QStringLiteral("group"), {QStringLiteral("group-not-set"), QStringLiteral("id-item-in-record-group")}},
        {QStringLiteral("absent"),
         {QStringLiteral("subitem-occurrences-once"), QStringLiteral("number-out-of-range")}},
        {QStringLiteral("extra"),
         {QStringLiteral("subitem-occurrences-once"), QStringLiteral("number-out-of-range"),
          QStringLiteral("malformed-item-kept")}},
    };
    return kinds;
}

// The group the importer gives identification items: its common record.
const QString CommonGroup = QStringLiteral("Common");

struct ValueLabel
{
    QString code;
    QString label;
};

// One field as either reading has it.
struct Field
{
    QString name;
    QString label;
    int start = 0;
    int size = 0;
    QString type;  // integer, real, text, binary
    QString decimals;
    QVector<ValueLabel> values;
    QString missing;
    QString notAppl;
    QString group;
    QStringList subjects;
    bool matched = false;
};

QString typeOf(int fieldType)
{
    switch (fieldType) {
    case 1:
        return QStringLiteral("integer");
    case 2:
        return QStringLiteral("real");
    case 3:
        return QStringLiteral("text");
    default:
        return QStringLiteral("type %1").arg(fieldType);
    }
}

// --- The codebook's side: CSPro's meaning, laid out as the importer lays out fields.

QString codeText(const Code &code)
{
    return code.isRange ? code.from + QLatin1Char(':') + code.to : code.from;
}

void addMeaningOfValues(const Variable &v, Field *field)
{
    for (const ValueSet &set : v.valueSets) {
        field->subjects << set.name;
        for (const Value &value : set.values) {
            if (value.special != Special::None)
                continue;
            for (const Code &code : value.codes)
                field->values.append({codeText(code), value.labels.primary()});
        }
    }
    for (const MissingValue &m : v.missing) {
        if (m.special == Special::Missing && field->missing.isEmpty())
            field->missing = m.from;
        if (m.special == Special::NotAppl && field->notAppl.isEmpty())
            field->notAppl = m.from;
    }
}

Field meaningOf(const Variable &v)
{
    Field f;
    f.name = v.name;
    f.label = v.labels.primary();
    f.start = v.start;
    f.size = v.width;
    if (v.storage == Storage::Binary)
        f.type = QStringLiteral("binary");
    else if (v.storage == Storage::Text)
        f.type = typeOf(3);
    else
        f.type = typeOf(v.decimals > 0 ? 2 : 1);
    if (v.storage == Storage::Numeric)
        f.decimals = QString::number(v.decimals);
    f.group = v.isId ? CommonGroup : v.record;
    f.subjects << v.name << v.record;
    if (!v.parent.isEmpty())
        f.subjects << v.parent;
    addMeaningOfValues(v, &f);
    return f;
}

// Occurrence k of an item X is the field X_k; so is occurrence k of a
// subitem whose parent repeats, at its parent's stride.
QVector<Field> fieldsOfCodebook(const Codebook &codebook)
{
    const QVector<Variable> variables = codebook.variables();
    QHash<QString, int> indexByName;
    QVector<Field> fields;
    for (int i = 0; i < variables.size(); ++i) {
        const Variable &v = variables.at(i);
        indexByName.insert(v.name, i);
        int copies = v.occurrences;
        int stride = v.width;
        if (v.isSubitem && copies == 1 && indexByName.contains(v.parent)) {
            const Variable &parent = variables.at(indexByName.value(v.parent));
            copies = parent.occurrences;
            stride = parent.width;
        }
        const Field base = meaningOf(v);
        if (copies <= 1) {
            fields.append(base);
            continue;
        }
        for (int k = 1; k <= copies; ++k) {
            Field copy = base;
            copy.name = v.name + QLatin1Char('_') + QString::number(k);
            copy.start = v.start + (k - 1) * stride;
            fields.append(copy);
        }
    }
    return fields;
}

// --- The importer's side.

// The field's value labels, "code label<TAB>" each, split at the first blank
// as a user of the field splits them.
QVector<ValueLabel> valuesOfField(const TGenericField &field)
{
    QVector<ValueLabel> values;
    const QStringList entries = field.getValueLabels().split(QLatin1Char('\t'), Qt::SkipEmptyParts);
    for (const QString &entry : entries) {
        const int blank = entry.indexOf(QLatin1Char(' '));
        values.append({entry.left(blank), blank < 0 ? QString() : entry.mid(blank + 1)});
    }
    return values;
}

Field fieldOfImport(TGenericField *generic)
{
    Field f;
    f.name = generic->getName();
    f.label = generic->getLabel();
    f.start = generic->getStart();
    f.size = generic->getSize();
    f.type = typeOf(generic->getFieldType());
    f.decimals = generic->getDecimals();
    f.missing = generic->getMissingCode();
    f.notAppl = generic->getNotApplicableCode();
    f.subjects << f.name;
    // A note on an item without a name names its section.
    if (f.name.isEmpty())
        f.subjects << QStringLiteral("[Item]");
    f.values = valuesOfField(*generic);
    if (auto *variable = dynamic_cast<TCSProVariable *>(generic)) {
        f.group = variable->getGroup();
        if (TCSProItem *item = variable->getItem()) {
            for (int s = 0; s < item->getCount(); ++s)
                f.subjects << item->getValueSet(s)->getName();
            if (item->getRecord())
                f.subjects << item->getRecord()->getName();
        }
    }
    return f;
}

// --- Matching and comparing.

// The text reader names occurrence k X_ and the character k; CSPro's name is X_k.
QString nameAsDigits(const QString &name)
{
    if (name.size() >= 2 && name.at(name.size() - 2) == QLatin1Char('_') && name.back().unicode() < 32)
        return name.left(name.size() - 1) + QString::number(name.back().unicode());
    return name;
}

QString visible(const QString &text)
{
    QString out;
    for (QChar c : text) {
        if (c.unicode() < 32)
            out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            out += c;
    }
    return out;
}

bool asNumber(QString text, double *value)
{
    text = text.trimmed();
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    bool ok = false;
    *value = text.toDouble(&ok);
    return ok;
}

// Numeric codes are equal as numbers (01 is 1); text codes up to trailing
// blanks, which CSPro's converter trims.
bool sameCode(const QString &a, const QString &b, bool numeric)
{
    const QStringList partsA = a.split(QLatin1Char(':'));
    const QStringList partsB = b.split(QLatin1Char(':'));
    if (partsA.size() != partsB.size())
        return false;
    for (int i = 0; i < partsA.size(); ++i) {
        double x = 0;
        double y = 0;
        if (numeric && asNumber(partsA.at(i), &x) && asNumber(partsB.at(i), &y)) {
            if (x != y)
                return false;
        } else if (partsA.at(i).trimmed() != partsB.at(i).trimmed()) {
            return false;
        }
    }
    return true;
}

QString valueText(const ValueLabel &v)
{
    return v.code + QLatin1Char(';') + v.label;
}

class Comparison
{
public:
    QVector<ReadingDifference> differences;

    void compare(const Field &file, const Field &reading)
    {
        subjects = file.subjects + reading.subjects;
        field = file.name;
        if (reading.name != file.name)
            add(QStringLiteral("name"), file.name, visible(reading.name));
        if (file.type == QLatin1String("binary")) {
            add(QStringLiteral("type"), file.type, reading.type);
            return;
        }
        if (reading.label != file.label)
            add(QStringLiteral("label"), file.label, reading.label);
        if (reading.start != file.start)
            add(QStringLiteral("start"), QString::number(file.start), QString::number(reading.start));
        if (reading.size != file.size)
            add(QStringLiteral("size"), QString::number(file.size), QString::number(reading.size));
        if (reading.type != file.type)
            add(QStringLiteral("type"), file.type, reading.type);
        if (reading.decimals != file.decimals)
            add(QStringLiteral("decimals"), file.decimals, reading.decimals);
        const bool numeric = file.type != QLatin1String("text");
        compareCode(QStringLiteral("missing"), file.missing, reading.missing, numeric);
        compareCode(QStringLiteral("notappl"), file.notAppl, reading.notAppl, numeric);
        if (file.group != reading.group)
            add(QStringLiteral("group"), file.group, reading.group);
        compareValues(file.values, reading.values, numeric);
    }

    void absent(const Field &file)
    {
        subjects = file.subjects;
        field = file.name;
        add(QStringLiteral("absent"), file.name, QString());
    }

    void extra(const Field &reading)
    {
        subjects = reading.subjects;
        field = visible(reading.name);
        add(QStringLiteral("extra"), QString(), visible(reading.name));
    }

private:
    QStringList subjects;
    QString field;

    void add(const QString &aspect, const QString &file, const QString &reading)
    {
        differences.append({field, aspect, file, reading, subjects});
    }

    void compareCode(const QString &aspect, const QString &file, const QString &reading, bool numeric)
    {
        const bool same = (file.trimmed().isEmpty() && reading.trimmed().isEmpty())
                          || (!file.isEmpty() && !reading.isEmpty() && sameCode(file, reading, numeric));
        if (!same)
            add(aspect, file, reading);
    }

    void compareValues(const QVector<ValueLabel> &file, const QVector<ValueLabel> &reading, bool numeric)
    {
        QVector<bool> used(reading.size(), false);
        for (const ValueLabel &meant : file) {
            bool found = false;
            for (int i = 0; i < reading.size() && !found; ++i) {
                if (!used.at(i) && reading.at(i).label == meant.label
                    && sameCode(meant.code, reading.at(i).code, numeric)) {
                    used[i] = true;
                    found = true;
                }
            }
            if (!found)
                add(QStringLiteral("value"), valueText(meant), QString());
        }
        for (int i = 0; i < reading.size(); ++i) {
            if (!used.at(i))
                add(QStringLiteral("value"), QString(), valueText(reading.at(i)));
        }
    }
};

// Fields are matched by name, then by CSPro's name of a text copy, then a
// field in the place of an unmatched one (a name read from another line).
void matchFields(QVector<Field> &file, QVector<Field> &reading, Comparison &comparison)
{
    QHash<QString, QList<int>> byName;
    for (int i = file.size() - 1; i >= 0; --i)
        byName[file.at(i).name].prepend(i);
    QVector<int> partner(reading.size(), -1);
    auto take = [&](int r, const QString &name) {
        QList<int> &candidates = byName[name];
        while (!candidates.isEmpty() && file.at(candidates.first()).matched)
            candidates.removeFirst();
        if (candidates.isEmpty())
            return;
        partner[r] = candidates.takeFirst();
        file[partner[r]].matched = true;
        reading[r].matched = true;
    };
    for (int r = 0; r < reading.size(); ++r)
        take(r, reading.at(r).name);
    for (int r = 0; r < reading.size(); ++r) {
        if (!reading.at(r).matched)
            take(r, nameAsDigits(reading.at(r).name));
    }
    for (int r = 0; r < reading.size(); ++r) {
        if (!reading.at(r).matched)
            take(r, reading.at(r).name + QStringLiteral("_1"));
    }
    for (int r = 0; r < reading.size(); ++r) {
        if (reading.at(r).matched)
            continue;
        const int next = r == 0 ? 0 : partner.at(r - 1) + 1;
        if (r > 0 && partner.at(r - 1) < 0)
            continue;
        if (next < file.size() && !file.at(next).matched) {
            partner[r] = next;
            file[next].matched = true;
            reading[r].matched = true;
        }
    }
    for (int r = 0; r < reading.size(); ++r) {
        if (partner.at(r) >= 0)
            comparison.compare(file.at(partner.at(r)), reading.at(r));
        else
            comparison.extra(reading.at(r));
    }
    for (const Field &f : file) {
        if (!f.matched)
            comparison.absent(f);
    }
}

// --- Reading with the importer.

template <class Importer>
struct ImporterReading
{
    QVector<Field> fields;
    TReadNotes notes;
    QString failure;
    QString dictionaryName;
};

template <class Importer>
void releaseImport(Importer &importer)
{
    if (QList<TGenericField *> *fields = importer.getFields()) {
        qDeleteAll(*fields);
        fields->clear();
    }
    if (auto *reader = importer.getDictionaryReader()) {
        reader->releaseModel();
        delete reader;
        importer.setDictionaryReader(nullptr);
    }
    delete importer.getGroups();
    importer.setGroups(nullptr);
}

template <class Importer>
ImporterReading<Importer> readWithImporter(const QString &path)
{
    ImporterReading<Importer> out;
    Importer importer(path);
    importer.setDecimalChoice(TDecimalChoice::NoToAll);
    try {
        importer.openFile();
    } catch (KxErrorManager *error) {
        out.failure = QStringLiteral("the importer failed: %1").arg(error->getErrorNumber());
        delete error;
        releaseImport(importer);
        return out;
    }
    if (QList<TGenericField *> *fields = importer.getFields()) {
        for (TGenericField *f : *fields)
            out.fields.append(fieldOfImport(f));
    }
    out.notes = importer.getReadNotes();
    if (importer.getDictionaryReader())
        out.dictionaryName = importer.getDictionaryReader()->getName();
    releaseImport(importer);
    return out;
}

} // namespace

QStringList kindsAccountingFor(const QString &aspect)
{
    return kindsByAspect().value(aspect) + AnyItemKinds;
}

bool isAccountedFor(const ReadingDifference &difference, const TReadNotes &notes)
{
    const QStringList kinds = kindsAccountingFor(difference.aspect);
    for (const TReadNote &note : notes) {
        if (kinds.contains(note.getKind()) && difference.subjects.contains(note.getSubject()))
            return true;
        if (LineKinds.contains(note.getKind())
            && (lineHoldsText(note.getSubject(), difference.file) || lineHoldsText(note.getSubject(), difference.reading)))
            return true;
    }
    return false;
}

QString describe(const ReadingDifference &d)
{
    return QStringLiteral("%1: %2: the file says '%3', the reading '%4'")
        .arg(d.field, d.aspect, visible(d.file), visible(d.reading));
}

QString CoverageReport::describeUnaccounted() const
{
    QStringList lines;
    for (const ReadingDifference &d : unaccounted)
        lines << describe(d);
    return lines.join(QLatin1Char('\n'));
}

CoverageReport checkNoteCoverage(const QString &path)
{
    CoverageReport report;
    QFile file(path);
    const Format format = file.open(QIODevice::ReadOnly) ? detectFormat(file.read(4096)) : Format::Unknown;
    file.close();
    if (format != Format::CSProText && format != Format::CSProJson) {
        report.why = QStringLiteral("not a CSPro dictionary");
        return report;
    }
    QVector<Field> reading;
    QString failure;
    QString dictionaryName;
    if (format == Format::CSProText) {
        auto r = readWithImporter<TCSProDataImport>(path);
        reading = r.fields;
        report.notes = r.notes;
        failure = r.failure;
        dictionaryName = r.dictionaryName;
    } else {
        auto r = readWithImporter<TCSProJsonDataImport>(path);
        reading = r.fields;
        report.notes = r.notes;
        failure = r.failure;
        dictionaryName = r.dictionaryName;
    }
    Error error;
    const Codebook codebook = Codebook::fromFile(path, &error, format);
    if (!error.ok()) {
        report.why = QStringLiteral("the codebook cannot be read: ") + error.message;
        return report;
    }
    if (!failure.isEmpty()) {
        report.why = failure;
        return report;
    }
    // A note on the dictionary accounts for what it says of every field.
    for (Field &f : reading)
        f.subjects << dictionaryName;
    QVector<Field> meant = fieldsOfCodebook(codebook);
    Comparison comparison;
    matchFields(meant, reading, comparison);
    report.compared = true;
    report.differences = comparison.differences;
    for (const ReadingDifference &d : report.differences) {
        if (!isAccountedFor(d, report.notes))
            report.unaccounted.append(d);
    }
    return report;
}

} // namespace kxtest
