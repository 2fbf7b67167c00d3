#ifndef FUZZREADERS_H
#define FUZZREADERS_H

// The reader entry points shared by the fuzz targets, the test that replays
// their findings (tests/library/tst_FuzzRegressions.cpp) and the benchmarks: one function per
// reader that takes the bytes of an input file, runs the reader over it as
// the front end would and frees what the reader built.

#include "CSPro.h"
#include "CSProDictionary.h"
#include "CSProJson.h"
#include "DataImport.h"
#include "GenericField.h"
#include "KxErrorManager.h"
#include "KxLookup.h"
#include "SPSSDataImport.h"
#include "STATADataImport.h"

#include <KxCodebook.h>
#include <KxCodebookJson.h>

#include <QByteArray>
#include <QFile>
#include <QMessageBox>
#include <QSet>
#include <QString>
#include <QStringList>

namespace kxfuzz {

//! The readers a fuzz target drives; the names are the target and corpus folder names.
enum class Reader { CSProText, CSProJson, Lookup, Spss, Stata, CodebookText, CodebookJson, CodebookSpss, CodebookStata };

inline const char *readerName(Reader reader)
{
    switch (reader) {
    case Reader::CSProText:
        return "cspro_text";
    case Reader::CSProJson:
        return "cspro_json";
    case Reader::Lookup:
        return "lookup";
    case Reader::Spss:
        return "spss";
    case Reader::Stata:
        return "stata";
    case Reader::CodebookText:
        return "codebook_text";
    case Reader::CodebookJson:
        return "codebook_json";
    case Reader::CodebookSpss:
        return "codebook_spss";
    case Reader::CodebookStata:
        return "codebook_stata";
    }
    return "";
}

inline bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const bool ok = file.write(bytes) == bytes.size();
    file.close();
    return ok;
}

/*! Deletes the records, items, value sets and entries of a loaded dictionary.
 * The readers leave them alive on purpose (importers point at the items); a
 * fuzzer that loads millions of inputs must not keep them. Occurrence copies
 * share one value set, so each set is deleted once. */
inline void releaseModel(TCSPro &dictionary)
{
    dictionary.releaseModel();
}

/*! Loads \a path with \a dictionary's loadFromFile. The decimal prompt is
 * answered 'Yes to All' in advance, so nothing prompts. A KxErrorManager (the
 * documented outcome of a corrupt text dictionary) is caught and deleted.
 * Returns the number of items read. */
inline int loadDictionary(TCSPro &dictionary, const QString &path)
{
    dictionary.setDecimalMode(1);
    dictionary.setDecimalAnswer(QMessageBox::YesToAll);
    try {
        dictionary.loadFromFile(path);
    } catch (KxErrorManager *error) {
        (void)error->getErrorMessage();
        delete error;
    }
    // Walk what was read the way the CSPro importer does.
    int count = 0;
    for (int i = 0; i < dictionary.getItemsCount(); ++i) {
        TCSProItem *item = dictionary.getItem(i);
        if (item->getHasValueSet()) {
            TCSProValueSet *set = item->getValueSet(0);
            for (int k = 0; k < set->getCount(); ++k)
                (void)set->getValueSetItem(k)->code.size();
        }
        ++count;
    }
    (void)dictionary.getRecordsCount();
    return count;
}

inline int readCSProText(const QString &path)
{
    TCSPro dictionary;
    const int count = loadDictionary(dictionary, path);
    releaseModel(dictionary);
    return count;
}

inline int readCSProJson(const QString &path)
{
    TCSProJson dictionary;
    const int count = loadDictionary(dictionary, path);
    releaseModel(dictionary);
    return count;
}

/*! The first byte of a lookup input chooses the settings and the rest is the
 * file: bits 0-2 the separator code (5 to 7 are codes outside 0 to 4, read as
 * the blank), bits 3-4 the consistency mode, bits 5-7 the message maximum. */
struct LookupSettings
{
    int separator = 0;
    econsistencyCheck mode = eNoCheck;
    int maxMessages = 0;
};

inline LookupSettings lookupSettings(unsigned char first)
{
    LookupSettings s;
    s.separator = first & 7;
    s.mode = static_cast<econsistencyCheck>((first >> 3) & 3);
    s.maxMessages = first >> 5;
    return s;
}

//! Returns the number of entries read.
inline int readLookup(const QString &path, const LookupSettings &settings)
{
    TKxLookup lookup;
    lookup.setFfileName(path);
    lookup.setSeparator(settings.separator);
    lookup.setMaxMessages(settings.maxMessages);
    TKxLabelFrequencies frequencies;
    QStringList errors;
    lookup.consistencyCheck(settings.mode, frequencies, errors);
    // The line-by-line walk over the same file.
    if (lookup.openLookup()) {
        while (lookup.readLookup())
            lookup.splitKeyValueAVL(errors);
    }
    return lookup.getLookupMap().size();
}

//! Opens \a importer and frees the fields it made; returns their number.
inline int openImporter(TDataImport &importer)
{
    importer.openFile();
    QList<TGenericField *> *fields = importer.getFields();
    if (!fields)
        return 0;
    const int count = fields->size();
    for (TGenericField *field : qAsConst(*fields)) {
        (void)field->getValueLabels().size();
        (void)field->getMinimum().size();
        (void)field->getMaximum().size();
    }
    qDeleteAll(*fields);
    fields->clear();
    return count;
}

inline int readSpss(const QString &path)
{
    TSPSSDataImport importer(path);
    return openImporter(importer);
}

inline int readStata(const QString &path)
{
    TSTATADataImport importer(path);
    return openImporter(importer);
}

/*! Reads \a path with the codebook library as \a format and writes the
 * codebook as JSON, so that every part of it is visited. Returns the number
 * of variables, 0 for an error value. */
inline int readCodebook(const QString &path, KxCodebook::Format format)
{
    KxCodebook::Error error;
    const KxCodebook::Codebook codebook = KxCodebook::Codebook::fromFile(path, &error, format);
    if (!error.ok())
        return error.message.isEmpty() ? -1 : 0;
    (void)KxCodebook::toJson(codebook).size();
    return codebook.variables().size();
}

/*! Runs \a reader over \a bytes, written to \a scratchPath first (every reader
 * takes a file name). Returns what the reader counted, or -1 when the file
 * could not be written. */
inline int runReader(Reader reader, const QByteArray &bytes, const QString &scratchPath)
{
    if (reader == Reader::Lookup) {
        const LookupSettings settings = lookupSettings(bytes.isEmpty() ? 0 : static_cast<unsigned char>(bytes.at(0)));
        if (!writeBytes(scratchPath, bytes.mid(1)))
            return -1;
        return readLookup(scratchPath, settings);
    }
    if (!writeBytes(scratchPath, bytes))
        return -1;
    switch (reader) {
    case Reader::CSProText:
        return readCSProText(scratchPath);
    case Reader::CSProJson:
        return readCSProJson(scratchPath);
    case Reader::Spss:
        return readSpss(scratchPath);
    case Reader::Stata:
        return readStata(scratchPath);
    case Reader::CodebookText:
        return readCodebook(scratchPath, KxCodebook::Format::CSProText);
    case Reader::CodebookJson:
        return readCodebook(scratchPath, KxCodebook::Format::CSProJson);
    case Reader::CodebookSpss:
        return readCodebook(scratchPath, KxCodebook::Format::Spss);
    case Reader::CodebookStata:
        return readCodebook(scratchPath, KxCodebook::Format::Stata);
    case Reader::Lookup:
        break;
    }
    return -1;
}

} // namespace kxfuzz

#endif // FUZZREADERS_H
