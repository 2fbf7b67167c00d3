// codebook: prints the codebook of a data description file, as the file's own
// format means it: its variables with their place, labels in every language,
// value sets and missing values.
//
//   codebook FILE
#include <KxCodebook.h>

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

using namespace KxCodebook;

namespace {

QString codesOf(const Value &value)
{
    QStringList codes;
    for (const Code &c : value.codes)
        codes << (c.isRange ? c.from + QLatin1Char(':') + c.to : c.from);
    return codes.join(QLatin1Char(' '));
}

void printVariable(QTextStream &out, const Variable &v, int languages)
{
    out << v.name;
    if (v.start > 0)
        out << "  columns " << v.start << "-" << (v.start + v.span() - 1);
    for (int i = 0; i < languages; ++i)
        out << "  [" << i << "] " << v.labels.text(i);
    out << "\n";
    for (const ValueSet &set : v.valueSets) {
        for (const Value &value : set.values) {
            out << "    " << codesOf(value) << " = " << value.labels.primary();
            if (value.special != Special::None)
                out << " (" << specialName(value.special) << ")";
            out << "\n";
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: codebook FILE\n");
        return 2;
    }
    Error error;
    const Codebook codebook = Codebook::fromFile(QString::fromLocal8Bit(argv[1]), &error);
    if (!error.ok()) {
        std::fprintf(stderr, "codebook: %s\n", qPrintable(error.message));
        return 1;
    }
    QTextStream out(stdout);
    out << formatName(codebook.format()) << ": " << codebook.variables().size() << " variables, "
        << codebook.languages().size() << " language(s)\n";
    for (const Variable &v : codebook.variables())
        printVariable(out, v, codebook.languages().size());
    return 0;
}
