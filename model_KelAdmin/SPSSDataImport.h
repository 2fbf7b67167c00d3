#ifndef SPSSDATAIMPORT_H
#define SPSSDATAIMPORT_H

#include "model_kelAdmin_export.h"

#include "GenericField.h"
#include "ReadStatImportCore.h"

#include <QString>

/*! \brief One variable of an SPSS system file.
 *
 * Always reports its value as missing; blank only for a string whose
 * trimmed value is empty.
 */
class MODEL_KELADMIN_EXPORT TSPSSVariable : public TGenericField
{
public:
    //! Sets importFlag; \a owner is the importer, not owned.
    explicit TSPSSVariable(TDataImport *owner);
    ~TSPSSVariable() override;

    //! Always true.
    bool isMissing() override;
    //! Always false.
    bool isNotApplicable() override;
    //! True only for a string whose trimmed value is empty.
    bool isBlank() override;
};

extern template class TReadStatImportCore<TSPSSVariable>;

/*! \brief Importer of the dictionary of an SPSS system file (.sav, .zsav).
 *
 * openFile() reads the file twice through ReadStat, value labels first and
 * variables second, and never reads the cases. Reopening appends a second
 * copy of every variable.
 */
class MODEL_KELADMIN_EXPORT TSPSSDataImport : public TReadStatImportCore<TSPSSVariable>
{
public:
    //! An importer without a file.
    TSPSSDataImport();
    //! An importer of the file \a name.
    explicit TSPSSDataImport(QString name);
    ~TSPSSDataImport() override;

private:
    friend MODEL_KELADMIN_EXPORT int handle_value_label_spss(const char *, readstat_value_s, const char *, void *);
    friend MODEL_KELADMIN_EXPORT int handle_variable_spss(int, readstat_variable_s *, const char *, void *);
    friend MODEL_KELADMIN_EXPORT int handle_metadata_spss(readstat_metadata_s *, void *);
};

/*! ReadStat callbacks of the SPSS importer; \a importer is the
 * TSPSSDataImport. Each returns 0 (continue). An unknown value type in a
 * value label ends the process with status 1. */
MODEL_KELADMIN_EXPORT int handle_value_label_spss(const char *labelSet, readstat_value_s value, const char *label,
                                                  void *importer);
//! Makes one TSPSSVariable from ReadStat's variable record, with the value labels of \a labelSet.
MODEL_KELADMIN_EXPORT int handle_variable_spss(int index, readstat_variable_s *variable, const char *labelSet,
                                               void *importer);
//! Copies the row and variable counts; the importer does not register it.
MODEL_KELADMIN_EXPORT int handle_metadata_spss(readstat_metadata_s *metadata, void *importer);

#endif // SPSSDATAIMPORT_H
