// Lists the fields of a description file: a CSPro dictionary (text or JSON),
// an SPSS system file or a Stata data file. Usage: list-fields FILE
#include <model_KelAdmin.h>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTextStream>
#include <memory>

// The importer for a file: by its extension, else by its first bytes.
static TDataImport *importerFor(const QString &path)
{
    const QString ext = QFileInfo(path).suffix().toLower();
    QFile file(path);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(16).trimmed() : "";
    if (ext == "sav" || ext == "zsav" || head.startsWith("$FL"))
        return new TSPSSDataImport(path);
    if (ext == "dta" || head.startsWith("<stata_dta>"))
        return new TSTATADataImport(path);
    if (ext == "json" || head.startsWith('{'))
        return new TCSProJsonDataImport(path);
    auto *cspro = new TCSProDataImport(path);
    // Decided in advance: no dialog; value sets with decimal codes are dropped.
    cspro->setDecimalChoice(TDecimalChoice::NoToAll);
    return cspro;
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules("default.debug=false"); // no trace lines
    QTextStream out(stdout), err(stderr);
    if (argc != 2) {
        err << "usage: list-fields FILE\n";
        return 2;
    }
    const QString path = QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath();
    std::unique_ptr<TDataImport> importer(importerFor(path));
    TKxDataProvider provider;
    try {
        importer->openFile();
        provider.genericGetFieldsFrom(importer.get());
    } catch (KxErrorManager *e) { // thrown by pointer: the catcher deletes it
        err << path << ": " << e->getErrorMessage() << "\n";
        delete e;
        return 1;
    }
    const QList<TKxSourceField *> fields = *provider.getSourceFields();
    out << importer->getDataProviderType() << ": " << fields.size() << " fields\n";
    for (TKxSourceField *f : fields)
        out << f->getFieldName() << "  " << f->getFieldType() << "  start " << f->getStart() << "  size "
            << f->getSize() << "  " << f->getLabel() << "\n";
    for (const TReadNote &n : importer->getReadNotes()) // where the reading kept less than the file says
        out << "note: line " << n.getLine() << ", " << n.getSubject() << " [" << n.getKind() << "]: "
            << n.getText() << "\n";
    qDeleteAll(fields); // the source fields are the caller's
    return 0;
}
