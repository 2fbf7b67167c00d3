#ifndef KXCODEBOOKDDI_H
#define KXCODEBOOKDDI_H

/*! \file KxCodebookDdi.h
 * \brief A codebook as a DDI Codebook 2.5 document, for data archives.
 *
 * One XML document in the namespace `ddi:codebook:2_5`, root `codeBook`,
 * UTF-8, valid by the DDI Alliance's schema. It describes the data file's
 * layout and variables; it holds no data.
 */

#include "KxCodebook.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

class QIODevice;

namespace KxCodebook {

//! What the DDI document says about its own making.
struct KXCODEBOOK_EXPORT DdiOptions
{
    //! The producer named in docDscr (the program that wrote the document).
    QString producer = QStringLiteral("KelCodebook");
    //! The producer's version.
    QString producerVersion;
    /*! The document's date (docDscr's prodDate); the current time when
     * invalid. Set it for documents that must come out the same every run. */
    QDateTime date;
};

/*! Writes \a codebook to \a device as one DDI Codebook 2.5 document.
 * Returns false, with the reason in \a error when given, when the device
 * could not be written. */
KXCODEBOOK_EXPORT bool writeDdi(const Codebook &codebook, QIODevice *device, const DdiOptions &options = DdiOptions(),
                                QString *error = nullptr);

//! The DDI Codebook 2.5 document of \a codebook, UTF-8.
KXCODEBOOK_EXPORT QByteArray toDdi(const Codebook &codebook, const DdiOptions &options = DdiOptions());

} // namespace KxCodebook

#endif // KXCODEBOOKDDI_H
