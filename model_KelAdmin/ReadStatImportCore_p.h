#ifndef READSTATIMPORTCORE_P_H
#define READSTATIMPORTCORE_P_H

// The definitions of TReadStatImportCore, included by the two importers'
// sources, which give the format's traits and instantiate the template.

#include "ReadStatFileAccess_p.h"
#include "ReadStatImportCore.h"

#include "KxTrace_p.h"

#include <cstdio>

/*! What tells the SPSS and Stata importers apart, keyed by their variable
 * class; each importer's source specialises it with:
 * - kind: the ReadStat parser to run;
 * - typeName(): the provider type name;
 * - restartsVariableList: openFile() empties the variable list first;
 * - layoutDebugLine: the debug line of selectLayoutSource(), or null;
 * - printsParseError: a failed variable pass prints "Error processing <path>: <code>";
 * - sourcePath, sourceLine: where an unknown value type is reported;
 * - rules(): the variable rules;
 * - valueLabelHandler, variableHandler: the exported callbacks ReadStat calls.
 */
template <class Variable>
struct ReadStatTraits;

template <class Variable>
TReadStatImportCore<Variable>::TReadStatImportCore()
    : dictionary(new kxreadstat::Dictionary)
{
}

template <class Variable>
TReadStatImportCore<Variable>::TReadStatImportCore(QString name)
    : TDataImport(name)
    , dictionary(new kxreadstat::Dictionary)
{
    initDataImport();
}

// The variables belong to the field list by now, which outlives the importer.
template <class Variable>
TReadStatImportCore<Variable>::~TReadStatImportCore()
{
    delete dictionary;
}

template <class Variable>
QString TReadStatImportCore<Variable>::getDataProviderId()
{
    return getDataProviderType() + QStringLiteral("_") + getSourceName();
}

template <class Variable>
QString TReadStatImportCore<Variable>::getDataProviderType()
{
    return ReadStatTraits<Variable>::typeName();
}

template <class Variable>
bool TReadStatImportCore<Variable>::openFile()
{
    openDataImport();
    // Otherwise a second call lists every variable twice.
    if (ReadStatTraits<Variable>::restartsVariableList) {
        dictionary->variables.clear();
        dictionary->variablesByName.clear();
    }
    // 1.0 marks an opened importer for callers outside this library.
    openingValue = 1.0;
    openRead(getSourceName());
    return true;
}

template <class Variable>
QStringList *TReadStatImportCore<Variable>::selectLayoutSource()
{
    // A fixed debug line: the front end relies on it.
    if (ReadStatTraits<Variable>::layoutDebugLine)
        KX_TRACE() << ReadStatTraits<Variable>::layoutDebugLine;
    return TDataImport::selectLayoutSource();
}

template <class Variable>
void TReadStatImportCore<Variable>::openRead(QString path)
{
    using Traits = ReadStatTraits<Variable>;
    dictionary->startRead();
    dictionary->parseError = kxreadstat::parseDictionary(Traits::kind, path, Traits::valueLabelHandler,
                                                         Traits::variableHandler, this, dictionary);
    // The variables read before a failure are kept.
    for (TGenericField *field : qAsConst(dictionary->variables))
        addField(field);
    // After a failed variable pass, sets may look unused only because their variables were not reached.
    if (dictionary->parseError == READSTAT_OK)
        addReadNotes(kxreadstat::unusedLabelSetNotes(dictionary->labelSets));
    if (Traits::printsParseError && dictionary->parseError != READSTAT_OK) {
        std::printf("Error processing %s: %d\n", path.toLocal8Bit().constData(), dictionary->parseError);
        std::fflush(stdout);
    }
}

template <class Variable>
QList<TGenericField *> TReadStatImportCore<Variable>::getVariables() const
{
    return dictionary->variables;
}

template <class Variable>
QStringList TReadStatImportCore<Variable>::getLabelSetNames() const
{
    return dictionary->labelSetNames();
}

template <class Variable>
qint64 TReadStatImportCore<Variable>::getRowCount() const
{
    return dictionary->rowCount;
}

template <class Variable>
qint64 TReadStatImportCore<Variable>::getVariableCount() const
{
    return dictionary->variableCount;
}

template <class Variable>
int TReadStatImportCore<Variable>::getFileFormatVersion() const
{
    return dictionary->facts.formatVersion;
}

template <class Variable>
QString TReadStatImportCore<Variable>::getFileEncoding() const
{
    return dictionary->facts.encoding;
}

template <class Variable>
QString TReadStatImportCore<Variable>::getByteOrder() const
{
    return dictionary->facts.byteOrder;
}

template <class Variable>
QDateTime TReadStatImportCore<Variable>::getCreationTime() const
{
    return dictionary->facts.creationTime;
}

template <class Variable>
QString TReadStatImportCore<Variable>::getFileLabel() const
{
    return dictionary->facts.label;
}

template <class Variable>
int TReadStatImportCore<Variable>::getParseError() const
{
    return dictionary->parseError;
}

template <class Variable>
QString TReadStatImportCore<Variable>::getParseErrorText() const
{
    if (dictionary->parseError == READSTAT_OK)
        return QString();
    return QString::fromUtf8(readstat_error_message(static_cast<readstat_error_t>(dictionary->parseError)));
}

template <class Variable>
int TReadStatImportCore<Variable>::onValueLabel(const char *labelSet, const readstat_value_t &value,
                                                const char *label)
{
    using Traits = ReadStatTraits<Variable>;
    return kxreadstat::collectValueLabel(&dictionary->labelSets, labelSet, value, label, Traits::sourcePath,
                                         Traits::sourceLine);
}

template <class Variable>
int TReadStatImportCore<Variable>::onVariable(readstat_variable_t *variable, const char *labelSet)
{
    auto *field = new Variable(this);
    kxreadstat::describeVariable(field, variable, &dictionary->labelSets, labelSet, ReadStatTraits<Variable>::rules(),
                                 readNotes);
    dictionary->addVariable(field, variable);
    return READSTAT_HANDLER_OK;
}

template <class Variable>
int TReadStatImportCore<Variable>::onMetadata(readstat_metadata_t *metadata)
{
    dictionary->copyMetadata(metadata);
    return READSTAT_HANDLER_OK;
}

#endif // READSTATIMPORTCORE_P_H
