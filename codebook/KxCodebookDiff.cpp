#include "KxCodebookDiff.h"

#include "KxCodebookJson.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <deque>
#include <vector>

/* How compare() works:
 *  1. languagePairs()   which label text of one side faces which of the other;
 *  2. compareRecords()  records by name;
 *  3. VariableMatcher   variables by name, then by place, then by label;
 *  4. comparePair()     every change of a matched pair, value sets included;
 *  5. ChangeCollector   grouped by record, most serious first, in file order.
 * Every step is a pass over the variables with hash look-ups. */

namespace KxCodebook {

QString changeKindName(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::RecordAdded: return QStringLiteral("record-added");
    case ChangeKind::RecordRemoved: return QStringLiteral("record-removed");
    case ChangeKind::RecordTypeChanged: return QStringLiteral("record-type-changed");
    case ChangeKind::RecordLengthChanged: return QStringLiteral("record-length-changed");
    case ChangeKind::VariableAdded: return QStringLiteral("variable-added");
    case ChangeKind::VariableRemoved: return QStringLiteral("variable-removed");
    case ChangeKind::VariableRenamed: return QStringLiteral("variable-renamed");
    case ChangeKind::VariableMoved: return QStringLiteral("variable-moved");
    case ChangeKind::VariableResized: return QStringLiteral("variable-resized");
    case ChangeKind::OccurrencesChanged: return QStringLiteral("occurrences-changed");
    case ChangeKind::RecordChanged: return QStringLiteral("record-changed");
    case ChangeKind::TypeChanged: return QStringLiteral("type-changed");
    case ChangeKind::DecimalsChanged: return QStringLiteral("decimals-changed");
    case ChangeKind::FormatChanged: return QStringLiteral("format-changed");
    case ChangeKind::MissingChanged: return QStringLiteral("missing-changed");
    case ChangeKind::ValueSetAdded: return QStringLiteral("value-set-added");
    case ChangeKind::ValueSetRemoved: return QStringLiteral("value-set-removed");
    case ChangeKind::ValueAdded: return QStringLiteral("value-added");
    case ChangeKind::ValueRemoved: return QStringLiteral("value-removed");
    case ChangeKind::ValueRangeChanged: return QStringLiteral("value-range-changed");
    case ChangeKind::ValueRelabelled: return QStringLiteral("value-relabelled");
    case ChangeKind::LabelChanged: return QStringLiteral("label-changed");
    }
    return QString();
}

int changeSeverity(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::RecordAdded:
    case ChangeKind::RecordRemoved:
    case ChangeKind::RecordTypeChanged:
    case ChangeKind::RecordLengthChanged:
    case ChangeKind::VariableAdded:
    case ChangeKind::VariableRemoved:
    case ChangeKind::VariableRenamed:
    case ChangeKind::VariableMoved:
    case ChangeKind::VariableResized:
    case ChangeKind::OccurrencesChanged:
    case ChangeKind::RecordChanged:
        return 3;
    case ChangeKind::TypeChanged:
    case ChangeKind::DecimalsChanged:
    case ChangeKind::FormatChanged:
    case ChangeKind::MissingChanged:
    case ChangeKind::ValueSetAdded:
    case ChangeKind::ValueSetRemoved:
    case ChangeKind::ValueAdded:
    case ChangeKind::ValueRemoved:
    case ChangeKind::ValueRangeChanged:
        return 2;
    case ChangeKind::ValueRelabelled:
    case ChangeKind::LabelChanged:
        return 1;
    }
    return 0;
}

namespace {

// --- Texts ----------------------------------------------------------------

QString rightTrimmed(const QString &text)
{
    int end = text.size();
    while (end > 0 && text.at(end - 1).isSpace())
        --end;
    return end == text.size() ? text : text.left(end);
}

// A code as both forms mean it: CSPro 8 writes alpha codes right-trimmed,
// numeric ones trimmed.
QString normalCode(const QString &code, Storage storage)
{
    return storage == Storage::Numeric ? code.trimmed() : rightTrimmed(code);
}

QString rangeText(const QString &from, const QString &to)
{
    return from + QLatin1Char(':') + to;
}

// CSPro's content type where the format has one, else the storage.
QString typeText(const Variable &variable)
{
    return variable.contentType.isEmpty() ? storageName(variable.storage) : variable.contentType;
}

bool typeDiffers(const Variable &before, const Variable &after)
{
    if (before.storage != after.storage)
        return true;
    return !before.contentType.isEmpty() && !after.contentType.isEmpty() && before.contentType != after.contentType;
}

// --- Languages ------------------------------------------------------------

// One language as both sides give it: an index into each side's Labels::texts
// (-1 where that side lacks the language, so its primary label stands in).
struct LanguagePair
{
    QString name;  // empty for the primary label
    int before = 0;
    int after = 0;
};

QHash<QString, int> indexByName(const QVector<Language> &languages)
{
    QHash<QString, int> index;
    for (int i = 0; i < languages.size(); ++i) {
        if (!index.contains(languages.at(i).name))
            index.insert(languages.at(i).name, i);
    }
    return index;
}

// The primary labels face each other; the other languages are paired by name.
QVector<LanguagePair> languagePairs(const QVector<Language> &before, const QVector<Language> &after)
{
    const QHash<QString, int> beforeIndex = indexByName(before);
    const QHash<QString, int> afterIndex = indexByName(after);
    QVector<LanguagePair> pairs;
    pairs.append(LanguagePair());
    for (int i = 1; i < after.size(); ++i)
        pairs.append({after.at(i).name, beforeIndex.value(after.at(i).name, -1), i});
    for (int i = 1; i < before.size(); ++i) {
        if (!afterIndex.contains(before.at(i).name))
            pairs.append({before.at(i).name, i, -1});
    }
    return pairs;
}

// The label has a text of its own in that language (not the primary's by default).
bool hasOwnText(const Labels &labels, int language)
{
    if (language == 0)
        return true;
    return language > 0 && language < labels.texts.size() && !labels.texts.at(language).isEmpty();
}

// --- Collecting changes -----------------------------------------------------

// Where a change sorts: its record's group, then (after severity) the
// place of its variable in file order, record changes first.
struct SortKey
{
    int group = 0;
    int place = 0;
    int tie = 0;
};

struct Placed
{
    SortKey key;
    int severity = 0;
    int index = 0;  // in the order the changes were found
};

// The changes found so far, each with its sort key.
class ChangeCollector
{
public:
    void add(Change change, SortKey key)
    {
        m_placed.push_back({key, changeSeverity(change.kind), int(m_changes.size())});
        m_changes.push_back(std::move(change));
    }

    // Hands the changes over in their order; the collector is empty after.
    QVector<Change> takeSorted()
    {
        const auto before = [](const Placed &a, const Placed &b) {
            if (a.key.group != b.key.group)
                return a.key.group < b.key.group;
            if (a.severity != b.severity)
                return a.severity > b.severity;
            if (a.key.place != b.key.place)
                return a.key.place < b.key.place;
            return a.key.tie < b.key.tie;
        };
        // Changes of one record often come in order already.
        if (!std::is_sorted(m_placed.cbegin(), m_placed.cend(), before))
            std::stable_sort(m_placed.begin(), m_placed.end(), before);
        QVector<Change> sorted;
        sorted.reserve(int(m_changes.size()));
        for (const Placed &p : m_placed)
            sorted.append(std::move(m_changes[size_t(p.index)]));
        m_changes.clear();
        m_placed.clear();
        return sorted;
    }

private:
    // A deque never moves what it holds as it grows.
    std::deque<Change> m_changes;
    std::vector<Placed> m_placed;
};

// --- Matching variables -----------------------------------------------------

enum class MatchRule { None, Name, Place, Label };

struct VariableMatch
{
    QVector<int> partnerOfAfter;   // old index, or -1
    QVector<int> partnerOfBefore;  // new index, or -1
    QVector<MatchRule> ruleOfAfter;
};

struct Place
{
    QString record;
    int start = 0;
    int width = 0;

    bool operator==(const Place &other) const
    {
        return start == other.start && width == other.width && record == other.record;
    }
};

uint qHash(const Place &place, uint seed = 0)
{
    return ::qHash(place.record, seed) ^ ::qHash((quint64(quint32(place.start)) << 32) | quint32(place.width), seed);
}

// Indices below a capacity, queued by key in the order they are appended,
// each handed out once. The queues are chained through one array.
template <typename Key>
class IndexQueues
{
public:
    explicit IndexQueues(int capacity) : m_next(capacity, -1) {}

    void append(const Key &key, int index)
    {
        const auto found = m_ends.find(key);
        if (found == m_ends.end()) {
            m_ends.insert(key, Ends{index, index});
        } else {
            m_next[found->last] = index;
            found->last = index;
        }
    }

    // The first index of \a key's queue not handed out yet, or -1.
    int take(const Key &key)
    {
        const auto found = m_ends.find(key);
        if (found == m_ends.end() || found->first < 0)
            return -1;
        const int index = found->first;
        found->first = m_next.at(index);
        return index;
    }

    bool isEmpty() const { return m_ends.isEmpty(); }

private:
    struct Ends
    {
        int first;
        int last;
    };
    QHash<Key, Ends> m_ends;
    QVector<int> m_next;
};

class VariableMatcher
{
public:
    VariableMatcher(const QVector<Variable> &before, const QVector<Variable> &after)
        : m_before(before), m_after(after)
    {
        m_match.partnerOfAfter.fill(-1, after.size());
        m_match.partnerOfBefore.fill(-1, before.size());
        m_match.ruleOfAfter.fill(MatchRule::None, after.size());
    }

    VariableMatch run(bool byPlace, bool byLabel)
    {
        matchByName();
        if (byPlace)
            matchByPlace();
        if (byLabel)
            matchByLabel();
        return m_match;
    }

private:
    void pair(int before, int after, MatchRule rule)
    {
        m_match.partnerOfBefore[before] = after;
        m_match.partnerOfAfter[after] = before;
        m_match.ruleOfAfter[after] = rule;
    }

    bool leftBefore(int i) const { return m_match.partnerOfBefore.at(i) < 0; }
    bool leftAfter(int i) const { return m_match.partnerOfAfter.at(i) < 0; }

    // The first variable of a name on each side; later ones of a repeated name stay left over.
    void matchByName()
    {
        QHash<QString, int> firstBefore;
        firstBefore.reserve(m_before.size());
        for (int i = 0; i < m_before.size(); ++i) {
            if (!firstBefore.contains(m_before.at(i).name))
                firstBefore.insert(m_before.at(i).name, i);
        }
        for (int i = 0; i < m_after.size(); ++i) {
            const int partner = firstBefore.value(m_after.at(i).name, -1);
            if (partner >= 0 && leftBefore(partner))
                pair(partner, i, MatchRule::Name);
        }
    }

    void matchByPlace()
    {
        IndexQueues<Place> byPlace(m_before.size());
        for (int i = 0; i < m_before.size(); ++i) {
            const Variable &v = m_before.at(i);
            if (leftBefore(i) && v.start > 0)
                byPlace.append(Place{v.record, v.start, v.width}, i);
        }
        if (byPlace.isEmpty())
            return;
        for (int i = 0; i < m_after.size(); ++i) {
            const Variable &v = m_after.at(i);
            if (!leftAfter(i) || v.start <= 0)
                continue;
            const int partner = byPlace.take(Place{v.record, v.start, v.width});
            if (partner >= 0)
                pair(partner, i, MatchRule::Place);
        }
    }

    // The primary label's first index among the left-over variables, or -1 when repeated.
    static QHash<QString, int> uniqueLabels(const QVector<Variable> &variables, const QVector<int> &partners)
    {
        QHash<QString, int> index;
        index.reserve(variables.size());
        for (int i = 0; i < variables.size(); ++i) {
            const QString label = variables.at(i).labels.primary();
            if (partners.at(i) >= 0 || label.isEmpty())
                continue;
            const auto found = index.find(label);
            if (found == index.end())
                index.insert(label, i);
            else
                *found = -1;
        }
        return index;
    }

    void matchByLabel()
    {
        const QHash<QString, int> before = uniqueLabels(m_before, m_match.partnerOfBefore);
        const QHash<QString, int> after = uniqueLabels(m_after, m_match.partnerOfAfter);
        for (auto it = after.cbegin(); it != after.cend(); ++it) {
            const int partner = before.value(it.key(), -1);
            if (it.value() >= 0 && partner >= 0)
                pair(partner, it.value(), MatchRule::Label);
        }
    }

    const QVector<Variable> &m_before;
    const QVector<Variable> &m_after;
    VariableMatch m_match;
};

// --- Value sets ---------------------------------------------------------------

// The codes of a value set: each single code and each range once (the first
// value that gives it), with the value it belongs to.
struct CodeTable
{
    QVector<QString> singles;   // file order
    QVector<QString> ranges;    // file order, "from:to"
    QHash<QString, const Value *> valueOfSingle;
    QHash<QString, const Value *> valueOfRange;

    CodeTable(const ValueSet &set, Storage storage)
    {
        for (const Value &value : set.values) {
            for (const Code &code : value.codes) {
                if (code.isRange)
                    addOnce(rangeText(normalCode(code.from, storage), normalCode(code.to, storage)), &value,
                            &ranges, &valueOfRange);
                else
                    addOnce(normalCode(code.from, storage), &value, &singles, &valueOfSingle);
            }
        }
    }

private:
    static void addOnce(const QString &key, const Value *value, QVector<QString> *order,
                        QHash<QString, const Value *> *valueOf)
    {
        if (valueOf->contains(key))
            return;
        valueOf->insert(key, value);
        order->append(key);
    }
};

QString missingText(const MissingValue &m, Storage storage)
{
    QString text = m.isRange ? rangeText(normalCode(m.from, storage), normalCode(m.to, storage))
                             : normalCode(m.from, storage);
    if (m.special != Special::None)
        text += QStringLiteral(" (") + specialName(m.special) + QLatin1Char(')');
    return text;
}

QSet<QString> missingSet(const Variable &variable)
{
    QSet<QString> set;
    set.reserve(variable.missing.size());
    for (const MissingValue &m : variable.missing)
        set.insert(missingText(m, variable.storage));
    return set;
}

QString missingListText(const Variable &variable)
{
    QStringList texts;
    for (const MissingValue &m : variable.missing)
        texts << missingText(m, variable.storage);
    return texts.join(QStringLiteral(", "));
}

// --- The comparison -----------------------------------------------------------

class Comparer
{
public:
    Comparer(const Codebook &before, const Codebook &after, const CompareOptions &options)
        : m_before(before.variables()),
          m_after(after.variables()),
          m_beforeRecords(before.records()),
          m_afterRecords(after.records()),
          m_options(options),
          m_languages(languagePairs(before.languages(), after.languages())),
          m_positions(hasColumns(before) && hasColumns(after))
    {
        groupRecords();
    }

    Comparison run()
    {
        compareRecords();
        const VariableMatch match = VariableMatcher(m_before, m_after).run(m_positions, !m_options.ignoreLabels);
        compareVariables(match);
        Comparison result;
        result.changes = m_collector.takeSorted();
        result.positionsCompared = m_positions;
        return result;
    }

private:
    static bool hasColumns(const Codebook &book)
    {
        switch (book.format()) {
        case Format::CSProText:
        case Format::CSProJson:
            return true;
        case Format::Spss:
        case Format::Stata:
            return false;
        case Format::Unknown:
            break;
        }
        const QVector<Variable> variables = book.variables();
        return std::any_of(variables.cbegin(), variables.cend(), [](const Variable &v) { return v.start > 0; });
    }

    // Identification items and variables without a record first, then the
    // new side's records, then the records only the old side has.
    void groupRecords()
    {
        m_groups.insert(QString(), 0);
        for (const Record &r : m_afterRecords) {
            if (!m_groups.contains(r.name))
                m_groups.insert(r.name, m_groups.size());
        }
        for (const Record &r : m_beforeRecords) {
            if (!m_groups.contains(r.name))
                m_groups.insert(r.name, m_groups.size());
        }
    }

    void add(Change change, SortKey key) { m_collector.add(std::move(change), key); }

    int groupOf(const QString &record) const { return m_groups.value(record, m_groups.size()); }

    // Record changes come first in their record's group.
    SortKey recordKey(const QString &record) const { return SortKey{groupOf(record), 0, 0}; }

    // The variable at index \a index of the new side.
    SortKey newVariableKey(int index) const
    {
        return SortKey{groupOf(m_after.at(index).record), 2 * (index + 1), 0};
    }

    // A variable of the old side only sorts right after the last variable
    // before it that has a partner, at that partner's place.
    SortKey removedVariableKey(int index, int lastPartner) const
    {
        return SortKey{groupOf(m_before.at(index).record), 2 * (lastPartner + 1) + 1, index};
    }

    // --- Records

    void compareRecords()
    {
        QHash<QString, int> beforeByName;
        for (int i = 0; i < m_beforeRecords.size(); ++i) {
            if (!beforeByName.contains(m_beforeRecords.at(i).name))
                beforeByName.insert(m_beforeRecords.at(i).name, i);
        }
        QVector<bool> matched(m_beforeRecords.size(), false);
        for (const Record &r : m_afterRecords) {
            const int partner = beforeByName.value(r.name, -1);
            if (partner >= 0 && !matched.at(partner)) {
                matched[partner] = true;
                compareRecord(m_beforeRecords.at(partner), r);
            } else {
                add(recordChange(ChangeKind::RecordAdded, r.name, QString(), r.labels.primary()), recordKey(r.name));
            }
        }
        for (int i = 0; i < m_beforeRecords.size(); ++i) {
            const Record &r = m_beforeRecords.at(i);
            if (!matched.at(i))
                add(recordChange(ChangeKind::RecordRemoved, r.name, r.labels.primary(), QString()), recordKey(r.name));
        }
    }

    static Change recordChange(ChangeKind kind, const QString &record, const QString &oldValue,
                               const QString &newValue)
    {
        Change c;
        c.kind = kind;
        c.record = record;
        c.oldValue = oldValue;
        c.newValue = newValue;
        return c;
    }

    void compareRecord(const Record &before, const Record &after)
    {
        const SortKey key = recordKey(after.name);
        if (before.typeValue != after.typeValue)
            add(recordChange(ChangeKind::RecordTypeChanged, after.name, before.typeValue, after.typeValue), key);
        if (before.length != after.length) {
            add(recordChange(ChangeKind::RecordLengthChanged, after.name, QString::number(before.length),
                             QString::number(after.length)),
                key);
        }
        compareLabels(before.labels, after.labels, key,
                      [&after] { return recordChange(ChangeKind::LabelChanged, after.name, {}, {}); });
    }

    // --- Labels

    // One change per language whose text differs, made by \a makeChange and
    // given that language and the two texts.
    template <typename MakeChange>
    void compareLabels(const Labels &before, const Labels &after, SortKey key, MakeChange makeChange)
    {
        if (m_options.ignoreLabels || before == after)
            return;
        for (const LanguagePair &language : qAsConst(m_languages)) {
            if (!hasOwnText(before, language.before) && !hasOwnText(after, language.after))
                continue;  // both follow their primary label, compared already
            const QString oldText = before.text(language.before);
            const QString newText = after.text(language.after);
            if (oldText == newText)
                continue;
            Change c = makeChange();
            c.language = language.name;
            c.oldValue = oldText;
            c.newValue = newText;
            add(std::move(c), key);
        }
    }

    // --- Variables

    void compareVariables(const VariableMatch &match)
    {
        for (int i = 0; i < m_after.size(); ++i) {
            const int partner = match.partnerOfAfter.at(i);
            const Variable &v = m_after.at(i);
            if (partner < 0)
                add(variableChange(ChangeKind::VariableAdded, v, QString(), v.labels.primary()), newVariableKey(i));
            else
                comparePair(m_before.at(partner), v, match.ruleOfAfter.at(i), newVariableKey(i));
        }
        reportRemoved(match);
    }

    void reportRemoved(const VariableMatch &match)
    {
        int lastPartner = -1;
        for (int i = 0; i < m_before.size(); ++i) {
            const int partner = match.partnerOfBefore.at(i);
            if (partner >= 0) {
                lastPartner = partner;
                continue;
            }
            const Variable &v = m_before.at(i);
            add(variableChange(ChangeKind::VariableRemoved, v, v.labels.primary(), QString()),
                removedVariableKey(i, lastPartner));
        }
    }

    static Change variableChange(ChangeKind kind, const Variable &variable, const QString &oldValue,
                                 const QString &newValue)
    {
        Change c;
        c.kind = kind;
        c.record = variable.record;
        c.variable = variable.name;
        c.oldValue = oldValue;
        c.newValue = newValue;
        return c;
    }

    void addIfDiffers(ChangeKind kind, const Variable &after, const QString &oldValue, const QString &newValue,
                      SortKey key)
    {
        if (oldValue != newValue)
            add(variableChange(kind, after, oldValue, newValue), key);
    }

    void addIfDiffers(ChangeKind kind, const Variable &after, int oldValue, int newValue, SortKey key)
    {
        if (oldValue != newValue)
            add(variableChange(kind, after, QString::number(oldValue), QString::number(newValue)), key);
    }

    void comparePair(const Variable &before, const Variable &after, MatchRule rule, SortKey key)
    {
        compareLayout(before, after, rule, key);
        compareContent(before, after, key);
        compareLabels(before.labels, after.labels, key,
                      [&after] { return variableChange(ChangeKind::LabelChanged, after, {}, {}); });
        compareValueSets(before, after, key);
    }

    void compareLayout(const Variable &before, const Variable &after, MatchRule rule, SortKey key)
    {
        if (before.name != after.name) {
            Change c = variableChange(ChangeKind::VariableRenamed, after, before.name, after.name);
            if (rule == MatchRule::Place)
                c.detail = QStringLiteral("same record, start and width");
            else if (rule == MatchRule::Label)
                c.detail = QStringLiteral("same label");
            add(std::move(c), key);
        }
        if (m_positions)
            addIfDiffers(ChangeKind::VariableMoved, after, before.start, after.start, key);
        addIfDiffers(ChangeKind::VariableResized, after, before.width, after.width, key);
        addIfDiffers(ChangeKind::OccurrencesChanged, after, before.occurrences, after.occurrences, key);
        // Without columns on one side there are no records there either.
        if (m_positions)
            addIfDiffers(ChangeKind::RecordChanged, after, before.record, after.record, key);
    }

    void compareContent(const Variable &before, const Variable &after, SortKey key)
    {
        if (typeDiffers(before, after))
            add(variableChange(ChangeKind::TypeChanged, after, typeText(before), typeText(after)), key);
        addIfDiffers(ChangeKind::DecimalsChanged, after, before.decimals, after.decimals, key);
        if (!before.format.isEmpty() && !after.format.isEmpty())
            addIfDiffers(ChangeKind::FormatChanged, after, before.format, after.format, key);
        const bool anyMissing = !before.missing.isEmpty() || !after.missing.isEmpty();
        if (anyMissing && missingSet(before) != missingSet(after))
            add(variableChange(ChangeKind::MissingChanged, after, missingListText(before), missingListText(after)), key);
    }

    // --- Value sets: by position, names and links aside

    void compareValueSets(const Variable &before, const Variable &after, SortKey key)
    {
        const int common = std::min(before.valueSets.size(), after.valueSets.size());
        for (int i = 0; i < common; ++i)
            compareValueSet(before, after, i, key);
        for (int i = common; i < after.valueSets.size(); ++i) {
            const ValueSet &set = after.valueSets.at(i);
            add(valueSetChange(ChangeKind::ValueSetAdded, after, set.name, QString(), set.labels.primary()), key);
        }
        for (int i = common; i < before.valueSets.size(); ++i) {
            const ValueSet &set = before.valueSets.at(i);
            add(valueSetChange(ChangeKind::ValueSetRemoved, after, set.name, set.labels.primary(), QString()), key);
        }
    }

    static Change valueSetChange(ChangeKind kind, const Variable &after, const QString &valueSet,
                                 const QString &oldValue, const QString &newValue)
    {
        Change c = variableChange(kind, after, oldValue, newValue);
        c.valueSet = valueSet;
        return c;
    }

    void compareValueSet(const Variable &before, const Variable &after, int index, SortKey key)
    {
        const ValueSet &oldSet = before.valueSets.at(index);
        const ValueSet &newSet = after.valueSets.at(index);
        const Change like = valueSetChange(ChangeKind::LabelChanged, after, newSet.name, {}, {});
        compareLabels(oldSet.labels, newSet.labels, key, [&like] { return like; });
        const CodeTable oldCodes(oldSet, before.storage);
        const CodeTable newCodes(newSet, after.storage);
        compareSingles(oldCodes, newCodes, like, key);
        compareRanges(oldCodes, newCodes, like, key);
    }

    void addValueChange(ChangeKind kind, const Change &like, const QString &value, const QString &oldValue,
                        const QString &newValue, SortKey key)
    {
        Change c = like;
        c.kind = kind;
        c.value = value;
        c.oldValue = oldValue;
        c.newValue = newValue;
        add(std::move(c), key);
    }

    void compareValueLabels(const Value &before, const Value &after, const Change &like, const QString &value,
                            SortKey key)
    {
        compareLabels(before.labels, after.labels, key, [&like, &value] {
            Change relabelled = like;
            relabelled.kind = ChangeKind::ValueRelabelled;
            relabelled.value = value;
            return relabelled;
        });
    }

    void compareSingles(const CodeTable &before, const CodeTable &after, const Change &like, SortKey key)
    {
        for (const QString &code : after.singles) {
            const Value *newValue = after.valueOfSingle.value(code);
            const Value *oldValue = before.valueOfSingle.value(code, nullptr);
            if (oldValue)
                compareValueLabels(*oldValue, *newValue, like, code, key);
            else
                addValueChange(ChangeKind::ValueAdded, like, code, QString(), newValue->labels.primary(), key);
        }
        for (const QString &code : before.singles) {
            if (!after.valueOfSingle.contains(code))
                addValueChange(ChangeKind::ValueRemoved, like, code, before.valueOfSingle.value(code)->labels.primary(),
                               QString(), key);
        }
    }

    // Ranges with the same ends are the same; of the others, a new range takes
    // the first old one with its label (each once), and is a changed range.
    void compareRanges(const CodeTable &before, const CodeTable &after, const Change &like, SortKey key)
    {
        // The old side's ranges without a same range on the new side, by label.
        IndexQueues<QString> leftByLabel(before.ranges.size());
        QVector<bool> left(before.ranges.size(), false);
        for (int i = 0; i < before.ranges.size(); ++i) {
            const QString &range = before.ranges.at(i);
            if (after.valueOfRange.contains(range))
                continue;
            left[i] = true;
            const QString label = before.valueOfRange.value(range)->labels.primary();
            if (!label.isEmpty())
                leftByLabel.append(label, i);
        }
        for (const QString &range : after.ranges) {
            const Value *newValue = after.valueOfRange.value(range);
            const Value *oldValue = before.valueOfRange.value(range, nullptr);
            if (oldValue) {
                compareValueLabels(*oldValue, *newValue, like, range, key);
                continue;
            }
            const int partner = leftByLabel.take(newValue->labels.primary());
            if (partner < 0) {
                addValueChange(ChangeKind::ValueAdded, like, range, QString(), newValue->labels.primary(), key);
                continue;
            }
            left[partner] = false;
            const QString &oldRange = before.ranges.at(partner);
            addValueChange(ChangeKind::ValueRangeChanged, like, range, oldRange, range, key);
            compareValueLabels(*before.valueOfRange.value(oldRange), *newValue, like, range, key);
        }
        for (int i = 0; i < before.ranges.size(); ++i) {
            if (left.at(i)) {
                const QString &range = before.ranges.at(i);
                addValueChange(ChangeKind::ValueRemoved, like, range,
                               before.valueOfRange.value(range)->labels.primary(), QString(), key);
            }
        }
    }

    const QVector<Variable> m_before;
    const QVector<Variable> m_after;
    const QVector<Record> m_beforeRecords;
    const QVector<Record> m_afterRecords;
    const CompareOptions m_options;
    const QVector<LanguagePair> m_languages;
    const bool m_positions;
    QHash<QString, int> m_groups;
    ChangeCollector m_collector;
};

} // namespace

Comparison compare(const Codebook &before, const Codebook &after, const CompareOptions &options)
{
    return Comparer(before, after, options).run();
}

} // namespace KxCodebook
