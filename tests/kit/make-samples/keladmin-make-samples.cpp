// keladmin-make-samples: writes SPSS and Stata files through ReadStat's
// writer, the only way this project makes them.
//   keladmin-make-samples FOLDER           the bundled samples census.sav and
//                                          census.dta (scripts/make-samples.sh;
//                                          the files are committed)
//   keladmin-make-samples --seeds FOLDER   the fuzz targets' seeds, FOLDER/spss/*.sav
//                                          and FOLDER/stata/*.dta (fuzz/run-fuzzers.sh)
//   keladmin-make-samples --large FOLDER   large.sav (compressed) and large.dta
//                                          (format 118): 200 labelled variables and
//                                          2,000,000 rows, about 500 MB each, for the
//                                          inspector's speed against readstat
#include "FixtureReadStat.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

using kxtest::numericLabel;
using kxtest::readStatVariable;
using kxtest::ReadStatFile;
using kxtest::stringLabel;
using Type = ReadStatFile::Type;

namespace {

ReadStatFile::LabelSet labelSet(const QByteArray &name, Type type, const QList<ReadStatFile::Label> &labels)
{
    ReadStatFile::LabelSet set;
    set.name = name;
    set.type = type;
    set.labels = labels;
    return set;
}

// Numeric label sets shared by both files; SPSS keeps them as doubles, Stata as integers.
QList<ReadStatFile::LabelSet> numericSets(Type type)
{
    return {
        labelSet("province", type,
                 {numericLabel(1, "North"), numericLabel(2, "South"), numericLabel(3, "East"),
                  numericLabel(4, "West"), numericLabel(5, "Capital district")}),
        labelSet("area", type, {numericLabel(1, "Urban"), numericLabel(2, "Rural")}),
        labelSet("relation", type,
                 {numericLabel(1, "Head"), numericLabel(2, "Spouse"), numericLabel(3, "Son or daughter"),
                  numericLabel(4, "Parent"), numericLabel(5, "Other relative"), numericLabel(6, "Non-relative")}),
        labelSet("sex", type, {numericLabel(1, "Male"), numericLabel(2, "Female")}),
        labelSet("age", type, {numericLabel(98, "98 years or more"), numericLabel(999, "Not reported")}),
        labelSet("marital", type,
                 {numericLabel(1, "Never married"), numericLabel(2, "Married"), numericLabel(3, "Consensual union"),
                  numericLabel(4, "Separated or divorced"), numericLabel(5, "Widowed"),
                  numericLabel(9, "Not reported")}),
        labelSet("school", type,
                 {numericLabel(1, "Attending"), numericLabel(2, "Attended in the past"), numericLabel(3, "Never attended"),
                  numericLabel(8, "Not applicable"), numericLabel(9, "Not reported")}),
        labelSet("yesno", type, {numericLabel(1, "Yes"), numericLabel(2, "No")}),
    };
}

ReadStatFile censusSav()
{
    ReadStatFile f;
    f.container = ReadStatFile::Container::Sav;
    f.labelSets = numericSets(Type::Double);
    f.labelSets << labelSet("occup", Type::String,
                            {stringLabel("1120", "Legislators and senior officials"),
                             stringLabel("6111", "Field crop and vegetable growers"),
                             stringLabel("7115", "Carpenters and joiners"),
                             stringLabel("9999", "Not stated")});
    f.variables << readStatVariable("province", Type::Double, "F1.0", "Province", "province")
                << readStatVariable("district", Type::Double, "F2.0", "District")
                << readStatVariable("urbrur", Type::Double, "F1.0", "Urban or rural area", "area")
                << readStatVariable("hhnum", Type::Double, "F4.0", "Household number")
                << readStatVariable("pline", Type::Double, "F2.0", "Person line number")
                << readStatVariable("relation", Type::Double, "F1.0", "Relationship to head of household",
                                    "relation")
                << readStatVariable("sex", Type::Double, "F1.0", "Sex", "sex")
                << readStatVariable("age", Type::Double, "F3.0", "Age in completed years", "age")
                << readStatVariable("marital", Type::Double, "F1.0", "Marital status", "marital")
                << readStatVariable("school", Type::Double, "F1.0", "School attendance", "school")
                << readStatVariable("literate", Type::Double, "F1.0", "Can read and write", "yesno")
                << readStatVariable("income", Type::Double, "F9.2", "Monthly income from work")
                << readStatVariable("pweight", Type::Double, "F8.4", "Person weight")
                << readStatVariable("fullname", Type::String, "A24", "Name of person", QByteArray(), 24)
                << readStatVariable("occup", Type::String, "A4", "Occupation code", "occup", 4);
    f.rows = 12;
    return f;
}

ReadStatFile censusDta()
{
    ReadStatFile f;
    f.container = ReadStatFile::Container::Dta;
    f.dtaVersion = 118;
    f.labelSets = numericSets(Type::Int32);
    f.variables << readStatVariable("province", Type::Int8, "%8.0g", "Province", "province")
                << readStatVariable("district", Type::Int8, "%8.0g", "District")
                << readStatVariable("urbrur", Type::Int8, "%8.0g", "Urban or rural area", "area")
                << readStatVariable("hhnum", Type::Int16, "%8.0g", "Household number")
                << readStatVariable("pline", Type::Int8, "%8.0g", "Person line number")
                << readStatVariable("relation", Type::Int8, "%8.0g", "Relationship to head of household",
                                    "relation")
                << readStatVariable("sex", Type::Int8, "%8.0g", "Sex", "sex")
                << readStatVariable("age", Type::Int16, "%8.0g", "Age in completed years", "age")
                << readStatVariable("marital", Type::Int8, "%8.0g", "Marital status", "marital")
                << readStatVariable("school", Type::Int8, "%8.0g", "School attendance", "school")
                << readStatVariable("literate", Type::Int8, "%8.0g", "Can read and write", "yesno")
                << readStatVariable("income", Type::Double, "%10.2f", "Monthly income from work")
                << readStatVariable("pweight", Type::Float, "%9.0g", "Person weight")
                << readStatVariable("hhsize", Type::Int32, "%8.0g", "Persons in the household")
                << readStatVariable("fullname", Type::String, "%24s", "Name of person", QByteArray(), 24)
                << readStatVariable("occup", Type::String, "%4s", "Occupation code", QByteArray(), 4);
    f.rows = 12;
    return f;
}

// Written straight to the file: the large files do not fit in memory.
bool write(const QDir &dir, const QString &name, const ReadStatFile &file)
{
    QString error;
    const QString path = dir.filePath(name);
    if (!kxtest::streamReadStatFile(path, file, &error)) {
        std::fprintf(stderr, "keladmin-make-samples: %s: %s\n", qPrintable(path), qPrintable(error));
        return false;
    }
    std::printf("wrote %s (%lld bytes)\n", qPrintable(path), QFileInfo(path).size());
    return true;
}

// Small files in every container and Stata version ReadStat writes.
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

bool writeSeeds(const QDir &dir)
{
    dir.mkpath(QStringLiteral("spss"));
    dir.mkpath(QStringLiteral("stata"));
    bool ok = write(dir, QStringLiteral("spss/labelled.sav"), savFile(ReadStatFile::Container::Sav, 2));
    ok &= write(dir, QStringLiteral("spss/compressed.sav"), savFile(ReadStatFile::Container::SavCompressed, 2));
    ok &= write(dir, QStringLiteral("spss/binary.zsav"), savFile(ReadStatFile::Container::Zsav, 2));
    ok &= write(dir, QStringLiteral("spss/norows.sav"), savFile(ReadStatFile::Container::Sav, 0));
    for (int version : {105, 108, 110, 111, 113, 114, 115, 117, 118, 119})
        ok &= write(dir, QStringLiteral("stata/v%1.dta").arg(version), dtaFile(version, version >= 117 ? 2 : 1));
    return ok;
}

bool writeLarge(const QDir &dir)
{
    constexpr int Rows = 2000000;
    return write(dir, QStringLiteral("large.sav"),
                  kxtest::labelledSurveyFile(ReadStatFile::Container::SavCompressed, Rows))
           && write(dir, QStringLiteral("large.dta"), kxtest::labelledSurveyFile(ReadStatFile::Container::Dta, Rows));
}

bool writeSamples(const QDir &dir)
{
    return write(dir, QStringLiteral("census.sav"), censusSav())
           && write(dir, QStringLiteral("census.dta"), censusDta());
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const QString mode = args.size() == 3 ? args.at(1) : QString();
    const QString folder = args.value(mode.isEmpty() ? 1 : 2);
    const bool known = mode.isEmpty() || mode == QLatin1String("--seeds") || mode == QLatin1String("--large");
    if (args.size() != (mode.isEmpty() ? 2 : 3) || !known || folder.startsWith(QLatin1Char('-'))) {
        std::fprintf(stderr, "usage: keladmin-make-samples [--seeds | --large] FOLDER\n");
        return 2;
    }
    const QDir dir(folder);
    if (!dir.exists()) {
        std::fprintf(stderr, "keladmin-make-samples: %s: no such folder\n", qPrintable(folder));
        return 1;
    }
    if (mode == QLatin1String("--seeds"))
        return writeSeeds(dir) ? 0 : 1;
    if (mode == QLatin1String("--large"))
        return writeLarge(dir) ? 0 : 1;
    return writeSamples(dir) ? 0 : 1;
}
