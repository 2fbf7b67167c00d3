#ifndef SPSSDATAIMPORT_H
#define SPSSDATAIMPORT_H

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

/*! \brief One variable of an SPSS system file.
 *
 * Always reports its value as missing; blank only for a string whose
 * trimmed value is empty.
 */
class MODEL_KELADMIN_EXPORT TSPSSVariable : public TGenericField
{
public:
    explicit TSPSSVariable(TDataImport *owner);
    ~TSPSSVariable() override;

    bool isMissing() override;
    bool isNotApplicable() override;
    bool isBlank() override;
};

/*! \brief Importer of the dictionary of an SPSS system file (.sav, .zsav).
 *
 * openFile() reads the file twice through ReadStat, value labels first and
 * variables second, and never reads the cases. Reopening appends a second
 * copy of every variable.
 */
class MODEL_KELADMIN_EXPORT TSPSSDataImport : public TDataImport
{
public:
    TSPSSDataImport();
    explicit TSPSSDataImport(QString name);
    ~TSPSSDataImport() override;

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
    //! Row and variable counts from a metadata record (see handle_metadata_spss).
    qint64 getRowCount() const;
    qint64 getVariableCount() const;

private:
    TSPSSDataImport(const TSPSSDataImport &) = delete;
    TSPSSDataImport &operator=(const TSPSSDataImport &) = delete;

    friend MODEL_KELADMIN_EXPORT int handle_value_label_spss(const char *, readstat_value_s, const char *, void *);
    friend MODEL_KELADMIN_EXPORT int handle_variable_spss(int, readstat_variable_s *, const char *, void *);
    friend MODEL_KELADMIN_EXPORT int handle_metadata_spss(readstat_metadata_s *, void *);

    kxreadstat::Dictionary *dictionary;
};

/*! ReadStat callbacks of the SPSS importer; \a importer is the
 * TSPSSDataImport. Each returns 0 (continue). An unknown value type in a
 * value label ends the process with status 1. */
MODEL_KELADMIN_EXPORT int handle_value_label_spss(const char *labelSet, readstat_value_s value, const char *label,
                                                  void *importer);
MODEL_KELADMIN_EXPORT int handle_variable_spss(int index, readstat_variable_s *variable, const char *labelSet,
                                               void *importer);
//! Copies the row and variable counts; the importer does not register it.
MODEL_KELADMIN_EXPORT int handle_metadata_spss(readstat_metadata_s *metadata, void *importer);

#endif // SPSSDATAIMPORT_H
