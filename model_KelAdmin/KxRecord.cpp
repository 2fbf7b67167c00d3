#include "KxRecord.h"

#include "CSProDictionary.h"
#include "KxConstants.h"

// ---------------------------------------------------------------- TQuestIndex

TQuestIndex::TQuestIndex() = default;

// The lines belong to the caller: only the pointer is dropped.
TQuestIndex::~TQuestIndex()
{
    lines = nullptr;
}

int TQuestIndex::countLines() const
{
    return lines ? lines->count() : 0;
}

QString TQuestIndex::getRecordValue(int i) const
{
    // A negative index is a caller error; it is answered like one past the end.
    if (i < 0 || i >= countLines())
        return QString();
    return lines->at(i).mid(recordTypeStart, recordTypeLength);
}

int TQuestIndex::countRecords(const QString &code) const
{
    int count = 0;
    const int total = countLines();
    for (int i = 0; i < total; ++i) {
        if (getRecordValue(i) == code)
            ++count;
    }
    return count;
}

QString TQuestIndex::getRecordString(const QString &code) const
{
    return getRecordString(code, 0);
}

QString TQuestIndex::getRecordString(const QString &code, int n) const
{
    int seen = 0;
    const int total = countLines();
    for (int i = 0; i < total; ++i) {
        const QString value = getRecordValue(i);
        if (value == code) {
            if (seen == n)
                return value;
            ++seen;
        }
    }
    return QString();
}

// --------------------------------------------------------- TKxRecordReference

TKxRecordReference::TKxRecordReference(TKxRecord *record, const QString &recordTypeCode)
    : record(record)
    , recordTypeCode(recordTypeCode)
{
}

TKxRecordReference::~TKxRecordReference() = default;

// ------------------------------------------------------------------ TKxRecord

TKxRecord::TKxRecord() = default;

// Relatives and references are not owned; only the reference list container
// belongs to this node.
TKxRecord::~TKxRecord()
{
    firstChild = nullptr;
    parent = nullptr;
    nextBrother = nullptr;
    delete recordReferences;
    recordReferences = nullptr;
    recordInfo = nullptr;
}

QString TKxRecord::nodeCaption() const
{
    if (label.isEmpty())
        return name;
    return name + QStringLiteral(" (") + label + QStringLiteral(")");
}

void TKxRecord::addChild(TKxRecord *child)
{
    if (!child)
        return;
    if (!firstChild) {
        firstChild = child;
    } else {
        TKxRecord *last = firstChild;
        while (last->nextBrother)
            last = last->nextBrother;
        last->nextBrother = child;
    }
    child->parent = this;
}

void TKxRecord::addBrother(TKxRecord *brother)
{
    if (!brother)
        return;
    TKxRecord *last = this;
    while (last->nextBrother)
        last = last->nextBrother;
    last->nextBrother = brother;
    brother->parent = last->parent;
}

void TKxRecord::insertChild(TKxRecord *before, TKxRecord *child)
{
    if (!child)
        return;
    if (!before) {
        addChild(child);
        return;
    }
    TKxRecord **link = &firstChild;
    while (*link && *link != before)
        link = &(*link)->nextBrother;
    if (!*link) {
        // \a before is not a child of this node: the child goes to the end.
        addChild(child);
        return;
    }
    child->parent = this;
    child->nextBrother = before;
    *link = child;
}

void TKxRecord::deleteChild(QString name, bool)
{
    TKxRecord *node = retrieveRecord(name);
    if (!node)
        return;
    // Only a direct child is unlinked; any other match leaves the tree as it is.
    TKxRecord **link = &firstChild;
    while (*link && *link != node)
        link = &(*link)->nextBrother;
    if (!*link)
        return;
    *link = node->nextBrother;
    node->nextBrother = nullptr;
}

TKxRecord *TKxRecord::retrieveRecord(QString name)
{
    // Brothers are walked in a loop rather than by recursion, in the same
    // depth-first order: a node, its subtree, then its next brother.
    for (TKxRecord *node = this; node; node = node->nextBrother) {
        if (node->name == name || (name == QLatin1String("Common") && node->name == QLatin1String("COMMON")))
            return node;
        if (node->firstChild) {
            if (TKxRecord *found = node->firstChild->retrieveRecord(name))
                return found;
        }
    }
    return nullptr;
}

TKxRecord *TKxRecord::preOrderNext() const
{
    if (firstChild)
        return firstChild;
    return preOrderNextBrother();
}

TKxRecord *TKxRecord::preOrderNextBrother() const
{
    for (const TKxRecord *node = this; node; node = node->parent) {
        if (node->nextBrother)
            return node->nextBrother;
    }
    return nullptr;
}

QString TKxRecord::getKeyValue(QString) const
{
    return QString();
}

QString TKxRecord::getParentKeyValue(QString) const
{
    return QString();
}

void TKxRecord::addRecordReferenceToList(TKxRecordReference *reference)
{
    if (!recordReferences)
        recordReferences = new QList<TKxRecordReference *>;
    recordReferences->append(reference);
}

void TKxRecord::removeRecordReferenceFromList(TKxRecordReference *reference)
{
    if (recordReferences)
        recordReferences->removeOne(reference);
}

QString TKxRecord::recordTypeCode() const
{
    return recordInfo ? recordInfo->recordTypeValue : QString();
}

QString TKxRecord::checkQuestionnaire(TQuestIndex *q)
{
    QString result;
    if (!q)
        return result;
    const QString code = recordTypeCode();
    const int n = q->countRecords(code);
    for (int i = 0; i < n; ++i) {
        // Only an empty code can make a counted occurrence come back empty.
        const QString occurrence = q->getRecordString(code, i);
        if (occurrence.isEmpty()) {
            q->status = 6;
            return QString();
        }
        const QString key = getKeyValue(occurrence);
        const QString text = assembleRecord(q, key);
        if (text.isEmpty())
            return QString();
        result += text + ENDLINE;
        if (firstChild)
            result += firstChild->checkQuestionnaire(q, key);
    }
    return result;
}

QString TKxRecord::checkQuestionnaire(TQuestIndex *q, QString parentKey)
{
    // Each brother's part follows the previous one; a brother whose assembly
    // comes back empty drops its own part and every later brother's.
    QString result;
    if (!q)
        return result;
    for (TKxRecord *node = this; node; node = node->nextBrother) {
        QString own;
        if (!node->checkOwnLines(q, parentKey, &own))
            return result;
        result += own;
    }
    return result;
}

bool TKxRecord::checkOwnLines(TQuestIndex *q, const QString &parentKey, QString *result)
{
    const QString code = recordTypeCode();
    const int total = q->countLines();
    for (int i = 0; i < total; ++i) {
        if (q->getRecordValue(i) != code)
            continue;
        const QString line = q->lines->at(i);
        if (getParentKeyValue(line) != parentKey)
            continue;
        const QString key = getKeyValue(line);
        const QString text = assembleRecord(q, key);
        if (text.isEmpty())
            return false;
        *result += text + ENDLINE;
        if (firstChild)
            *result += firstChild->checkQuestionnaire(q, key);
    }
    return true;
}

QString TKxRecord::assembleRecord(TQuestIndex *q)
{
    if (!q || !recordReferences)
        return QString();
    const int total = q->countLines();
    for (int r = 0; r < recordReferences->count(); ++r) {
        // The reference's own code is not consulted: lines without a code count.
        int count = 0;
        for (int i = 0; i < total; ++i) {
            if (q->getRecordValue(i).isEmpty())
                ++count;
        }
        if (count >= 2) {
            q->status = 4;
            return QString();
        }
    }
    return QString();
}

QString TKxRecord::assembleRecord(TQuestIndex *q, QString)
{
    return q ? q->assembledText : QString();
}
