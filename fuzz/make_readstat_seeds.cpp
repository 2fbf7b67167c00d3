// Writes small SPSS and Stata files through ReadStat's writer: the seed
// corpora of the spss and stata fuzz targets.
//   kx_make_readstat_seeds OUTDIR   ->  OUTDIR/spss/*.sav, OUTDIR/stata/*.dta
#include "FixtureReadStat.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <cstdio>

using kxtest::ReadStatFile;
using kxtest::numericLabel;
using kxtest::readStatVariable;
using kxtest::stringLabel;
using Type = ReadStatFile::Type;

namespace {

bool save(const QString &path, const ReadStatFile &file)
{
    QString error;
    const QByteArray bytes = kxtest::readStatBytes(file, &error);
    QFile out(path);
    if (bytes.isEmpty() || !out.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        std::fprintf(stderr, "cannot write %s: %s\n", qPrintable(path), qPrintable(error));
        return false;
    }
    out.write(bytes);
    return true;
}

ReadStatFile savFile(ReadStatFile::Container container, int rows)
{
    ReadStatFile f;
    f.container = container;
    f.rows = rows;
    ReadStatFile::LabelSet sex{"sexl", Type::Double, {numericLabel(1, "Male"), numericLabel(2, "Female")}};
    ReadStatFile::LabelSet money{"incl", Type::Double, {numericLabel(1.5, "Low"), numericLabel(-1, "Refused")}};
    ReadStatFile::LabelSet region{"regl", Type::String, {stringLabel("N", "North"), stringLabel("S", "South")}};
    f.labelSets = {sex, money, region};
    f.variables = {
        readStatVariable("SEX", Type::Double, "F1.0", "Sex of person", "sexl"),
        readStatVariable("AGE", Type::Double, "F3.0", "Age in years"),
        readStatVariable("INCOME", Type::Double, "F10.2", "Monthly income", "incl"),
        readStatVariable("REGION", Type::String, "A1", "Region", "regl", 1),
        readStatVariable("NAME", Type::String, "A20", "", "", 20),
    };
    return f;
}

ReadStatFile dtaFile(int version, int rows)
{
    ReadStatFile f;
    f.container = ReadStatFile::Container::Dta;
    f.dtaVersion = version;
    f.rows = rows;
    ReadStatFile::LabelSet yesNo{"yesno", Type::Int32, {numericLabel(1, "Yes"), numericLabel(2, "No")}};
    ReadStatFile::LabelSet size{"sizel", Type::Int32, {numericLabel(-1, "Unknown"), numericLabel(100, "Large")}};
    f.labelSets = {yesNo, size};
    f.variables = {
        readStatVariable("flag", Type::Int8, "%8.0g", "Flag", "yesno"),
        readStatVariable("count", Type::Int16, "%8.0g", "Count", "sizel"),
        readStatVariable("total", Type::Int32, "%12.0g", "Total"),
        readStatVariable("share", Type::Float, "%9.2f", "Share"),
        readStatVariable("amount", Type::Double, "%10.2f", "Amount", "yesno"),
        readStatVariable("name", Type::String, "%5s", "Name", "", 5),
    };
    if (version >= 117)
        f.variables.append(readStatVariable("note", Type::StringRef, "%9s", "Note"));
    return f;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTDIR\n", argv[0]);
        return 2;
    }
    const QDir out(QString::fromLocal8Bit(argv[1]));
    out.mkpath(QStringLiteral("spss"));
    out.mkpath(QStringLiteral("stata"));
    bool ok = true;
    ok &= save(out.filePath(QStringLiteral("spss/labelled.sav")), savFile(ReadStatFile::Container::Sav, 2));
    ok &= save(out.filePath(QStringLiteral("spss/compressed.sav")),
               savFile(ReadStatFile::Container::SavCompressed, 2));
    ok &= save(out.filePath(QStringLiteral("spss/binary.zsav")), savFile(ReadStatFile::Container::Zsav, 2));
    ok &= save(out.filePath(QStringLiteral("spss/norows.sav")), savFile(ReadStatFile::Container::Sav, 0));
    for (int version : {105, 108, 110, 111, 113, 114, 115, 117, 118, 119})
        ok &= save(out.filePath(QStringLiteral("stata/v%1.dta").arg(version)), dtaFile(version, version >= 117 ? 2 : 1));
    return ok ? 0 : 1;
}
