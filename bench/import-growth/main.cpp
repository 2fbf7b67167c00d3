// Imports a CSPro text dictionary N times the way a front end does and prints
// the resident set size before and after. Usage: import-growth FILE.dcf N MODE
// MODE "none": the caller deletes nothing; "caller": the importer and the
// source fields; "all": also the fields, the group list, the record node and
// the dictionary model (each shared value set once).
#include <model_KelAdmin.h>

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QSet>
#include <QTextStream>

static long residentKB()
{
    QFile status("/proc/self/status");
    status.open(QIODevice::ReadOnly);
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    return -1;
}

// The dictionary model that the importer's reader built and never releases.
static void deleteDictionary(TCSPro *reader)
{
    QSet<TCSProValueSet *> valueSets;
    QSet<TValueSetItem *> entries;
    for (TCSProItem *item : *reader->getItems()) {
        for (TCSProValueSet *set : *item->getValueSets())
            valueSets.insert(set); // occurrence copies share one value set
        delete item;
    }
    for (TCSProValueSet *set : valueSets) {
        for (TValueSetItem *entry : *set->getItems())
            entries.insert(entry);
        delete set;
    }
    qDeleteAll(entries);
    QSet<TCSProRecord *> records(reader->getRecords()->begin(), reader->getRecords()->end());
    records.insert(reader->getCommonRecord());
    qDeleteAll(records);
    delete reader;
}

static void importOnce(const QString &path, const QString &mode)
{
    auto *importer = new TCSProDataImport(path);
    importer->setDecimalChoice(TDecimalChoice::NoToAll);
    importer->openFile();
    TKxDataProvider provider;
    provider.genericGetFieldsFrom(importer);
    if (mode == "none")
        return;
    qDeleteAll(*provider.getSourceFields()); // the list itself is the provider's
    QList<TGenericField *> *fields = importer->getFields();
    QStringList *groups = importer->getGroups();
    TCSPro *reader = importer->getDictionaryReader();
    delete importer; // leaves its fields, groups and reader alive
    if (mode != "all")
        return;
    delete provider.getRecordTree();
    qDeleteAll(*fields); // they point into the dictionary: before it
    delete fields;
    delete groups;
    deleteDictionary(reader);
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules("default.debug=false");
    const QString path = QString::fromLocal8Bit(argv[1]);
    const int n = argc > 2 ? atoi(argv[2]) : 1000;
    const QString mode = argc > 3 ? QString::fromLocal8Bit(argv[3]) : QStringLiteral("caller");
    importOnce(path, mode); // the first import loads what every later one shares
    const long before = residentKB();
    for (int i = 0; i < n; ++i)
        importOnce(path, mode);
    const long after = residentKB();
    QTextStream(stdout) << mode << ": imports: " << n << ", RSS before: " << before << " kB, after: " << after
                        << " kB, growth per import: " << double(after - before) / n << " kB\n";
    return 0;
}
