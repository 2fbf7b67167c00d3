// Reads a data description file into a codebook and prints how many
// variables it has; with KX_PARSE_REPEAT=K it reads the file K times in the
// same process and prints each reading's wall-clock seconds on stderr, as
// the peers' drivers in bench/peers/ do:
//
//     parse-seconds: 0.2731 0.2514 0.2498
//
// Each reading starts from the path and ends with the whole codebook built
// (Codebook::fromFile), and its codebook is released before the next.
//
// With --front-end, a CSPro text dictionary is read once through the front
// end's library as keladmin-inspect --json reads it (the importer's
// openFile(), then the data provider's fields, "no to all" to the decimal
// question, trace lines off), its time printed the same way and its field
// count on stdout; what it built is left to the exit, as the inspector does.
#include <KxCodebook.h>
#include <model_KelAdmin.h>

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QString>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

int repeatCount()
{
    const char *text = std::getenv("KX_PARSE_REPEAT");
    const int count = text ? std::atoi(text) : 1;
    return count > 0 ? count : 1;
}

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int readWithFrontEnd(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\ndefault.info=false"));
    const auto start = std::chrono::steady_clock::now();
    auto *importer = new TCSProDataImport(QString::fromLocal8Bit(argv[2]));
    importer->setDecimalChoice(TDecimalChoice::NoToAll);
    importer->openFile();
    auto *provider = new TKxDataProvider;
    provider->genericGetFieldsFrom(importer);
    std::fprintf(stderr, "parse-seconds: %.4f\n", secondsSince(start));
    std::printf("%d\n", provider->getSourceFields() ? provider->getSourceFields()->size() : 0);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--front-end") == 0)
        return readWithFrontEnd(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s [--front-end] FILE\n", argv[0]);
        return 2;
    }
    const QString path = QString::fromLocal8Bit(argv[1]);
    const int repeat = repeatCount();
    std::fputs("parse-seconds:", stderr);
    int variables = 0;
    for (int i = 0; i < repeat; ++i) {
        const auto start = std::chrono::steady_clock::now();
        KxCodebook::Error error;
        const KxCodebook::Codebook codebook = KxCodebook::Codebook::fromFile(path, &error);
        const double took = secondsSince(start);
        if (!error.ok()) {
            std::fprintf(stderr, "\n%s: %s\n", argv[1], qPrintable(error.message));
            return 1;
        }
        std::fprintf(stderr, " %.4f", took);
        variables = codebook.variables().size();
    }
    std::fputs("\n", stderr);
    std::printf("%d\n", variables);
    return 0;
}
