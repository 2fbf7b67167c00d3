#ifndef STATADATAIMPORT_H
#define STATADATAIMPORT_H

#include "model_kelAdmin_export.h"

#include "DataImport.h"
#include "GenericField.h"

#include <QList>
#include <QString>
#include <QStringList>

// ReadStat's records, declared only: ReadStat stays out of the public headers.
struct readstat_value_s;
struct readstat_variable_s;
struct readstat_metadata_s;

namespace kxreadstat {
struct Dictionary;
}

/*! \brief One variable of a Stata data file.
 *
 * Missing when its missing flag is set (nothing sets it); blank only for a
 * string whose trimmed value is empty.
 */
class MODEL_KELADMIN_EXPORT TSTATAVariable : public TGenericField
{
public:
    explicit TSTATAVariable(TDataImport *owner);
    ~TSTATAVariable() override;

    bool isMissing() override;
    bool isNotApplicable() override;
    bool isBlank() override;

    bool getMissing() const { return missing; }
    void setMissing(bool v) { missing = v; }

private:
    bool missing = false;
};

/*! \brief Importer of the dictionary of a Stata data file (.dta).
 *
 * openFile() reads the file twice through ReadStat, value labels first and
 * variables second, and never reads the cases. Reopening starts from an
 * empty variable list. A failed variable pass prints
 * "Error processing <path>: <ReadStat error>" on standard output.
 */
class MODEL_KELADMIN_EXPORT TSTATADataImport : public TDataImport
{
public:
    TSTATADataImport();
    explicit TSTATADataImport(QString name);
    ~TSTATADataImport() override;

    QString getDataProviderId() override;
    QString getDataProviderType() override;
    bool openFile() override;
    QStringList *selectLayoutSource() override;

    //! The value-label pass, then the variable pass; a failure leaves fewer fields.
    void openRead(QString path);

    //! Every variable created so far, in the order ReadStat reported them.
    QList<TGenericField *> getVariables() const;
    //! Names of the label sets kept from the last value-label pass.
    QStringList getLabelSetNames() const;
    //! Row and variable counts from a metadata record (see handle_metadata_stata).
    qint64 getRowCount() const;
    qint64 getVariableCount() const;

private:
    TSTATADataImport(const TSTATADataImport &) = delete;
    TSTATADataImport &operator=(const TSTATADataImport &) = delete;

    friend MODEL_KELADMIN_EXPORT int handle_value_label_stata(const char *, readstat_value_s, const char *, void *);
    friend MODEL_KELADMIN_EXPORT int handle_variable_stata(int, readstat_variable_s *, const char *, void *);
    friend MODEL_KELADMIN_EXPORT int handle_metadata_stata(readstat_metadata_s *, void *);

    kxreadstat::Dictionary *dictionary;
};

/*! ReadStat callbacks of the Stata importer; \a importer is the
 * TSTATADataImport. Each returns 0 (continue). An unknown value type in a
 * value label ends the process with status 1. */
MODEL_KELADMIN_EXPORT int handle_value_label_stata(const char *labelSet, readstat_value_s value, const char *label,
                                                  void *importer);
MODEL_KELADMIN_EXPORT int handle_variable_stata(int index, readstat_variable_s *variable, const char *labelSet,
                                               void *importer);
//! Copies the row and variable counts; the importer does not register it.
MODEL_KELADMIN_EXPORT int handle_metadata_stata(readstat_metadata_s *metadata, void *importer);

#endif // STATADATAIMPORT_H
