#ifndef READSTATIMPORTCORE_H
#define READSTATIMPORTCORE_H

#include "model_kelAdmin_export.h"

#include "DataImport.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

// ReadStat's records, declared only: ReadStat stays out of the public headers.
struct readstat_value_s;
struct readstat_variable_s;
struct readstat_metadata_s;

class TGenericField;

namespace kxreadstat {
struct Dictionary;
}

/*! \brief The import steps shared by the SPSS and Stata importers.
 *
 * \a Variable is the field class made for each variable (TSPSSVariable or
 * TSTATAVariable); it also selects the format's rules. openFile() reads the
 * file twice through ReadStat, value labels first and variables second, and
 * never reads the cases. The variables belong to the field list once handed
 * over; the importer does not delete them. getReadNotes() tells what the
 * reading left out of what the file says (widths, decimals, labels of -1,
 * texts outside ASCII, user-missing values, label sets).
 */
template <class Variable>
class MODEL_KELADMIN_EXPORT TReadStatImportCore : public TDataImport
{
public:
    //! An importer without a file.
    TReadStatImportCore();
    //! An importer of the file \a name.
    explicit TReadStatImportCore(QString name);
    ~TReadStatImportCore() override;

    //! The type name, "_" and the source name.
    QString getDataProviderId() override;
    //! "SPSS" or "STATA".
    QString getDataProviderType() override;
    //! Reads the file at the source name; always true, a file that cannot be read gives fewer fields.
    bool openFile() override;
    //! Opens the file again and lists the field names; the caller owns the list.
    QStringList *selectLayoutSource() override;

    /*! The value-label pass, then the variable pass; a failure leaves fewer
     * fields. Fields and reading notes are appended to those there are;
     * openFile() empties the notes first. */
    void openRead(QString path);

    //! Every variable created so far, in the order ReadStat reported them.
    QList<TGenericField *> getVariables() const;
    //! Names of the label sets kept from the last value-label pass.
    QStringList getLabelSetNames() const;

    //! Number of rows (cases) the file says it holds; -1 when it does not say.
    qint64 getRowCount() const;
    //! Number of variables the file says it holds; 0 before the file's metadata was read.
    qint64 getVariableCount() const;
    //! The file format's version (SPSS: 2 for .sav, 3 for .zsav; Stata: 104 to 119); 0 when unknown.
    int getFileFormatVersion() const;
    //! The character encoding the file states (SPSS, for example "UTF-8"); empty when unknown.
    QString getFileEncoding() const;
    //! "little-endian", "big-endian", or empty when unknown.
    QString getByteOrder() const;
    //! When the file was written, in local time as the file states it; invalid when unknown.
    QDateTime getCreationTime() const;
    //! The file's own label (SPSS file label, Stata data label); empty when it has none.
    QString getFileLabel() const;

    //! ReadStat's error code of the last variable pass; 0 when it succeeded or nothing was parsed yet.
    int getParseError() const;
    //! ReadStat's own message for getParseError(); empty when that is 0.
    QString getParseErrorText() const;

protected:
    //! The work of the format's value-label callback.
    int onValueLabel(const char *labelSet, const readstat_value_s &value, const char *label);
    //! The work of the format's variable callback: one new Variable.
    int onVariable(readstat_variable_s *variable, const char *labelSet);
    //! The work of the format's metadata callback: the row and variable counts.
    int onMetadata(readstat_metadata_s *metadata);

private:
    TReadStatImportCore(const TReadStatImportCore &) = delete;
    TReadStatImportCore &operator=(const TReadStatImportCore &) = delete;

    kxreadstat::Dictionary *dictionary;
};

#endif // READSTATIMPORTCORE_H
