// Reads the SPSS and CSPro samples through the library as a command-line
// program would, under a QCoreApplication, and checks that no Qt GUI library
// was loaded on the way: the library itself needs only Qt Core, and a
// decimal prompt that cannot be shown loads nothing either.
// Arguments: census.sav census.dcf
#include <model_KelAdmin.h>

#include <QCoreApplication>

#include <link.h>

#include <cstdio>
#include <cstring>

namespace {

int reportGuiLibrary(dl_phdr_info *info, size_t, void *count)
{
    const char *name = info->dlpi_name;
    if (std::strstr(name, "libQt5Gui") || std::strstr(name, "libQt5Widgets")) {
        std::fprintf(stderr, "loaded: %s\n", name);
        ++*static_cast<int *>(count);
    }
    return 0;
}

int guiLibrariesLoaded()
{
    int count = 0;
    dl_iterate_phdr(reportGuiLibrary, &count);
    return count;
}

int fieldCount(TDataImport *importer)
{
    try {
        importer->openFile();
    } catch (KxErrorManager *e) {
        std::fprintf(stderr, "%s\n", qPrintable(e->getErrorMessage()));
        delete e;
        return -1;
    }
    return importer->getFieldCount();
}

bool expect(const char *what, int got, int wanted)
{
    if (got == wanted)
        return true;
    std::fprintf(stderr, "%s: %d, expected %d\n", what, got, wanted);
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s census.sav census.dcf\n", argv[0]);
        return 2;
    }
    QCoreApplication app(argc, argv);
    bool ok = expect("GUI libraries loaded at start", guiLibrariesLoaded(), 0);

    // census.sav: 15 variables.
    auto *spss = new TSPSSDataImport(QString::fromLocal8Bit(argv[1]));
    ok = expect("census.sav fields", fieldCount(spss), 15) && ok;

    // census.dcf: 30 items, one of them repeated 6 times; its decimal code
    // asks, and without a QApplication the answer is No.
    auto *cspro = new TCSProDataImport(QString::fromLocal8Bit(argv[2]));
    cspro->setDecimalChoice(TDecimalChoice::Ask);
    ok = expect("census.dcf fields", fieldCount(cspro), 35) && ok;

    ok = expect("GUI libraries loaded after reading", guiLibrariesLoaded(), 0) && ok;
    delete spss;
    delete cspro;
    return ok ? 0 : 1;
}
