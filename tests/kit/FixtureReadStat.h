#ifndef FIXTUREREADSTAT_H
#define FIXTUREREADSTAT_H

#include <QByteArray>
#include <QList>
#include <QString>

class QTemporaryDir;

namespace kxtest {

/*! \brief Description of an SPSS or Stata file written through ReadStat's
 * writer: variables with formats, labels and value-label sets.
 *
 * Empty texts are left unset in the file (ReadStat then reports them as
 * absent). Rows, when asked for, hold the row number in numeric variables
 * and "r<row>" in string variables, so the file has a data section.
 */
struct ReadStatFile
{
    enum class Container { Sav, SavCompressed, Zsav, Dta };
    //! Storage types, in the order of ReadStat's readstat_type_t.
    enum class Type { String, Int8, Int16, Int32, Float, Double, StringRef };

    struct Label
    {
        double number = 0;  //!< key of a numeric set
        QByteArray text;    //!< key of a string set
        QByteArray label;
        char tag = 0;       //!< 'a' to 'z': the label of Stata's missing value .a to .z instead of a key
    };
    //! A user-missing value (low == high) or range of a SAV variable.
    struct Missing
    {
        double low = 0;
        double high = 0;
        QByteArray text;    //!< the value of a string variable instead of the numbers
    };
    struct LabelSet
    {
        QByteArray name;
        //! Double (SAV numeric), Int32 (DTA numeric) or String (SAV only).
        Type type = Type::Double;
        QList<Label> labels;
    };
    struct Variable
    {
        QByteArray name;
        Type type = Type::Double;
        //! Width of a string variable, handed to ReadStat as is (its DTA writer
        //! stores one byte more: 4 gives str5).
        int storageWidth = 0;
        QByteArray format;
        QByteArray label;
        QByteArray labelSet;  //!< name of one of labelSets, or empty
        QList<Missing> missing;
    };

    Container container = Container::Sav;
    int dtaVersion = 118; //!< 104 .. 119, used for Dta only
    QList<LabelSet> labelSets;
    QList<Variable> variables;
    int rows = 0;
    QByteArray fileLabel;  //!< empty: none
    qint64 timestamp = 0;  //!< creation time in seconds since the epoch; 0: ReadStat's writer takes the current time
};

//! Shorthands for the common cases.
ReadStatFile::Variable readStatVariable(const QByteArray &name, ReadStatFile::Type type,
                                        const QByteArray &format = QByteArray(),
                                        const QByteArray &label = QByteArray(),
                                        const QByteArray &labelSet = QByteArray(), int storageWidth = 0);
ReadStatFile::LabelSet readStatLabelSet(const QByteArray &name, ReadStatFile::Type type,
                                        const QList<ReadStatFile::Label> &labels);
ReadStatFile::Label numericLabel(double number, const QByteArray &label);
ReadStatFile::Label stringLabel(const QByteArray &text, const QByteArray &label);
ReadStatFile::Label taggedLabel(char tag, const QByteArray &label);
ReadStatFile::Missing missingRange(double low, double high);
ReadStatFile::Missing missingText(const QByteArray &text);

/*! A survey file of \a rows rows and 200 numeric variables v0 to v199, each
 * labelled by one of 20 label sets of 5 labels ("Answer 1" to "Answer 5");
 * int8 values, of format %8.0g in Stata containers and F2.0 in SPSS ones
 * (which keep them as doubles).
 * The benchmarks and the large files of the speed measurements use it. */
ReadStatFile labelledSurveyFile(ReadStatFile::Container container, int rows);

/*! The file's bytes; empty on failure, with ReadStat's message in \a error. */
QByteArray readStatBytes(const ReadStatFile &file, QString *error = nullptr);
/*! Writes the file straight to \a path, for files too large to hold in
 * memory; false on failure, with the reason in \a error and no file left. */
bool streamReadStatFile(const QString &path, const ReadStatFile &file, QString *error = nullptr);
/*! Writes the file as \a name into \a dir and returns its path; empty on failure. */
QString writeReadStatFile(const QTemporaryDir &dir, const QString &name, const ReadStatFile &file,
                          QString *error = nullptr);

} // namespace kxtest

#endif // FIXTUREREADSTAT_H
