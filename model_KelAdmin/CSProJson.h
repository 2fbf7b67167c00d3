#ifndef CSPROJSON_H
#define CSPROJSON_H

#include "model_kelAdmin_export.h"

#include "CSPro.h"

#include <QJsonObject>
#include <QString>

/*! \brief Reader of a CSPro 8 dictionary in its JSON form.
 *
 * Shares the members and the text-form operations of TCSPro; only loading
 * differs. Reading is silent: an unreadable or malformed file leaves what was
 * read so far, and values of the wrong JSON type fall back to defaults.
 * Ranges stay one entry "low:high"; entries are neither sorted nor validated.
 */
class MODEL_KELADMIN_EXPORT TCSProJson : public TCSPro
{
    Q_OBJECT
public:
    TCSProJson();
    ~TCSProJson() override;

    //! Reads \a path as JSON when its first non-blank character is "{"; otherwise does nothing.
    void loadFromFile(QString path) override;
    //! Parses \a path as a JSON dictionary and fills the model.
    void loadFromJson(QString path);

protected:
    //! The "text" of the first element of "labels", else empty.
    QString readLabel(const QJsonObject &object);
    //! Creates one item of \a record; advances \a position past it.
    void readItem(const QJsonObject &jsonItem, TCSProRecord *record, int &position, bool relativePositions,
                  bool defaultDecimalMark, bool defaultZeroFill);
    //! Attaches the first value set of \a jsonItem to \a item.
    void readValueSet(TCSProItem *item, const QJsonObject &jsonItem);
};

#endif // CSPROJSON_H
