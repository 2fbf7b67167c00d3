// keladmin-make-samples: writes the bundled SPSS and Stata samples
// (census.sav, census.dta) into a folder through ReadStat's writer.
// Run by scripts/make-samples.sh; the files it writes are committed.
#include "FixtureReadStat.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>

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

bool write(const QDir &dir, const QString &name, const ReadStatFile &file)
{
    QString error;
    const QByteArray bytes = kxtest::readStatBytes(file, &error);
    const QString path = dir.filePath(name);
    if (bytes.isEmpty()) {
        std::fprintf(stderr, "keladmin-make-samples: %s: %s\n", qPrintable(path), qPrintable(error));
        return false;
    }
    QFile out(path);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate) || out.write(bytes) != bytes.size()) {
        std::fprintf(stderr, "keladmin-make-samples: %s: %s\n", qPrintable(path), qPrintable(out.errorString()));
        return false;
    }
    std::printf("wrote %s (%d bytes)\n", qPrintable(path), bytes.size());
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 2 || args.at(1).startsWith(QLatin1Char('-'))) {
        std::fprintf(stderr, "usage: keladmin-make-samples FOLDER\n");
        return 2;
    }
    const QDir dir(args.at(1));
    if (!dir.exists()) {
        std::fprintf(stderr, "keladmin-make-samples: %s: no such folder\n", qPrintable(args.at(1)));
        return 1;
    }
    const bool ok = write(dir, QStringLiteral("census.sav"), censusSav())
                    && write(dir, QStringLiteral("census.dta"), censusDta());
    return ok ? 0 : 1;
}
