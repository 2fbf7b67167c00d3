// keladmin-note-coverage FILE...: reads each CSPro dictionary both ways and
// prints every difference between the codebook and the importer's fields that
// no reading note accounts for. Exit status 1 when there is one.

#include "NoteCoverage.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    bool verbose = false;
    int unaccounted = 0;
    for (const QString &path : app.arguments().mid(1)) {
        if (path == QLatin1String("--all")) {
            verbose = true;
            continue;
        }
        const kxtest::CoverageReport report = kxtest::checkNoteCoverage(path);
        if (!report.compared) {
            out << path << ": not compared: " << report.why << '\n';
            continue;
        }
        out << path << ": " << report.differences.size() << " differences, " << report.unaccounted.size()
            << " unaccounted\n";
        for (const kxtest::ReadingDifference &d : verbose ? report.differences : report.unaccounted)
            out << "  " << kxtest::describe(d) << '\n';
        unaccounted += report.unaccounted.size();
    }
    return unaccounted > 0 ? 1 : 0;
}
