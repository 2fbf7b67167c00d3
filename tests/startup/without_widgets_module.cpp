// Runs with the library copied into a folder of its own, without the widgets
// module beside it, as a packager who forgot the module would ship it: the
// library warns once and goes on without dialogs or font measures. A decimal
// prompt counts as No, paths are kept whole and labels are left as they are.
// Arguments: the folder the library must come from, census.dcf.
#include <model_KelAdmin.h>

#include <QApplication>
#include <QFileInfo>
#include <QLabel>

#include <dlfcn.h>

#include <cstdio>

namespace {

int widgetWarnings = 0;

void countWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg && message.startsWith(QLatin1String("model_KelAdmin: no dialogs or font measures")))
        ++widgetWarnings;
}

bool expect(const char *what, bool ok)
{
    if (!ok)
        std::fprintf(stderr, "failed: %s\n", what);
    return ok;
}

QString libraryFolder()
{
    Dl_info info;
    if (!dladdr(reinterpret_cast<void *>(&MLDBGetMessage), &info) || !info.dli_fname)
        return QString();
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).canonicalPath();
}

TGenericField *fieldNamed(TDataImport &importer, const QString &name)
{
    for (TGenericField *field : *importer.getFields()) {
        if (field->getName() == name)
            return field;
    }
    return nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s LIBRARY_FOLDER census.dcf\n", argv[0]);
        return 2;
    }
    QApplication app(argc, argv); // offscreen: a dialog would never be answered
    qInstallMessageHandler(countWarnings);
    const QString wanted = QFileInfo(QString::fromLocal8Bit(argv[1])).canonicalFilePath();
    bool ok = expect("the library comes from the folder without the module", libraryFolder() == wanted);

    const QString path = QStringLiteral("\\d1\\d2\\d3\\f.dat");
    ok = expect("a path is kept whole", UtilStrings::getBetterPathString(path, 1, 10) == path) && ok;

    QLabel label(QStringLiteral("before"));
    const QString entity = UtilStrings::setBetterPathInQDockWidget(QStringLiteral("/d1/d2/d3/f.dat"), 1, &label);
    ok = expect("the entity path is still returned", entity == QLatin1String("/d1/d3/f.dat")) && ok;
    ok = expect("the label is left as it is", label.text() == QLatin1String("before") && label.toolTip().isEmpty())
        && ok;

    // census.dcf: 35 fields; LANDAREA's decimal code asks, and No drops its value set.
    TCSProDataImport importer(QString::fromLocal8Bit(argv[2]));
    importer.setDecimalChoice(TDecimalChoice::Ask);
    importer.openFile();
    ok = expect("census.dcf gives 35 fields", importer.getFieldCount() == 35) && ok;
    TGenericField *landArea = fieldNamed(importer, QStringLiteral("LANDAREA"));
    ok = expect("LANDAREA has no value labels", landArea && landArea->getValueLabels().isEmpty()) && ok;

    ok = expect("one warning about the module", widgetWarnings == 1) && ok;
    return ok ? 0 : 1;
}
