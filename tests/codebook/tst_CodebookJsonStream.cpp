// writeJson() writes JSON exactly as QJsonDocument::Indented does: keys in
// order, Qt's indentation, escapes and numbers. The expected bytes in every
// test here are Qt's own serialisation of the same document (toJson(), the
// streamed text read back by Qt), so any departure from Qt's form shows.

#include "CodebookTestSupport.h"

#include <KxCodebookJson.h>

#include <QBuffer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <limits>

using namespace KxCodebook;

namespace {

QByteArray qtText(const Codebook &book)
{
    return QJsonDocument(toJson(book)).toJson(QJsonDocument::Indented);
}

QByteArray streamedText(const Codebook &book)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QString error = QStringLiteral("not cleared");
    EXPECT_TRUE(writeJson(book, &buffer, &error));
    EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    return bytes;
}

void expectSameText(const Codebook &book)
{
    const QByteArray expected = qtText(book);
    const QByteArray streamed = streamedText(book);
    if (streamed == expected)
        return;
    int at = 0;
    while (at < streamed.size() && at < expected.size() && streamed.at(at) == expected.at(at))
        ++at;
    ADD_FAILURE() << "first difference at byte " << at << "\nQt:       "
                  << expected.mid(std::max(0, at - 60), 120).toStdString() << "\nstreamed: "
                  << streamed.mid(std::max(0, at - 60), 120).toStdString();
}

QString s(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

Labels labelsOf(const QStringList &texts)
{
    Labels l;
    l.texts = texts;
    return l;
}

// Every kind of text JSON must escape, UTF-8 of two, three and four bytes,
// and a lone surrogate, which has no UTF-8 at all.
const QString Awkward = s("q\"b\\s/\b\f\n\r\t") + QChar(0x01) + QChar(0x1F) + QChar(0x7F) + s("é€") +
                        QString::fromUcs4(U"\U0001F600") + QChar(0xD800) + s("x") + QChar(0xDC00);

Codebook awkwardBook()
{
    Codebook book;
    book.setFileName(Awkward);
    book.setFormat(Format::CSProJson);
    book.setFormatVersion(Awkward);
    book.setName(Awkward);
    book.setLabels(labelsOf({Awkward, QString()}));
    book.setLanguages({{QStringLiteral("EN"), Awkward}, {QString(), QString()}});
    book.setRowCount(std::numeric_limits<qint64>::max());
    book.setCreated(QDateTime(QDate(2026, 11, 25), QTime(8, 30), Qt::UTC));
    book.setRecordType(1, 2);
    book.setRelativePositions(true);
    book.setLevels({Level(), Level{Awkward, labelsOf({Awkward})}});
    Record r;
    r.name = Awkward;
    r.typeValue = Awkward;
    r.occurrenceLabels = {OccurrenceLabel{3, labelsOf({Awkward, Awkward})}};
    book.setRecords({r, Record()});
    Variable v;
    v.name = Awkward;
    v.labels = labelsOf({Awkward});
    v.note = Awkward;
    v.record = Awkward;
    v.start = 7;
    v.width = 2;
    v.occurrences = 3;
    v.occurrenceLabels = {OccurrenceLabel{2, labelsOf({Awkward})}};
    v.isSubitem = true;
    v.parent = Awkward;
    v.storage = Storage::Text;
    v.measure = Measure::Ordinal;
    v.alignment = Alignment::Center;
    v.decimalMark = true;
    v.zeroFill = true;
    Value value;
    value.codes = {Code{Awkward, QString(), false}, Code{s("1"), Awkward, true}};
    value.labels = labelsOf({Awkward});
    value.special = Special::Refused;
    value.note = Awkward;
    value.image = Awkward;
    ValueSet set;
    set.name = Awkward;
    set.link = Awkward;
    set.linkFilled = true;
    set.values = {value, Value()};
    v.valueSets = {set, ValueSet()};
    v.missing = {MissingValue{Awkward, QString(), false, Special::Missing, Awkward},
                 MissingValue{s("1"), s("9"), true, Special::None, QString()}};
    book.setVariables({v, Variable()});
    return book;
}

} // namespace

TEST(CodebookJsonStream, EverySampleStreamsQtsText)
{
    for (const char *sample : {"census.dcf", "census.json", "census-round2.dcf", "languages.dcf",
                               "labour-notes.dcf", "census.sav", "census.dta"}) {
        SCOPED_TRACE(sample);
        Error error;
        const Codebook book = Codebook::fromFile(cbtest::samplePath(sample), &error);
        ASSERT_TRUE(error.ok()) << error.message.toStdString();
        expectSameText(book);
    }
}

TEST(CodebookJsonStream, AnEmptyCodebookStreamsQtsText)
{
    expectSameText(Codebook());
}

TEST(CodebookJsonStream, EscapesAndUtf8AsQtWritesThem)
{
    expectSameText(awkwardBook());
}

TEST(CodebookJsonStream, RowCountsAroundTwoToTheFiftyThreeAsQtWritesThem)
{
    for (qint64 rows : {qint64(0), (qint64(1) << 53) - 1, qint64(1) << 53, (qint64(1) << 53) + 1,
                        qint64(1) << 62, std::numeric_limits<qint64>::max()}) {
        SCOPED_TRACE(rows);
        Codebook book;
        book.setRowCount(rows);
        expectSameText(book);
    }
}

TEST(CodebookJsonStream, TextsLongerThanAChunkStreamWhole)
{
    // A label of 200,000 characters crosses the writer's 64 KiB chunks, with
    // a surrogate pair at every slice boundary the writer might cut.
    QString longText;
    for (int i = 0; i < 50'000; ++i)
        longText += s("ab") + QString::fromUcs4(U"\U0001F600");
    Codebook book;
    book.setLabels(labelsOf({longText}));
    expectSameText(book);
}

TEST(CodebookJsonStream, AFullDeviceIsReportedWithTheSystemsReason)
{
    QFile full(QStringLiteral("/dev/full"));
    if (!full.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        GTEST_SKIP() << "no /dev/full here";
    QString error;
    EXPECT_FALSE(writeJson(awkwardBook(), &full, &error));
    EXPECT_TRUE(error.contains(QStringLiteral("No space left on device"))) << error.toStdString();
}

TEST(CodebookJsonStream, AClosedDeviceIsAnError)
{
    QBuffer closed;
    QString error;
    EXPECT_FALSE(writeJson(Codebook(), &closed, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(writeJson(Codebook(), nullptr, &error));
}

TEST(CodebookJsonString, QuotesAndEscapesAsQtWritesAString)
{
    // Quote, backslash, the named controls, other controls, DEL, Latin-1,
    // a pair of surrogates (U+1F600), a lone high and a lone low surrogate.
    const QString texts[] = {QString(),
                             QStringLiteral("plain"),
                             QStringLiteral("a \"quoted\" \\ back"),
                             QStringLiteral("\b\f\n\r\t"),
                             QString(QChar(0x01)) + QChar(0x1F) + QChar(0x7F),
                             QStringLiteral("Âge en années"),
                             QString::fromUcs4(U"\U0001F600"),
                             QString(QChar(0xD800)) + QStringLiteral("x") + QChar(0xDC00)};
    for (const QString &text : texts) {
        // Qt writes ["text"]; the string is what stands between the brackets.
        const QByteArray qt = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
        QByteArray ours = "[";
        appendJsonString(&ours, text);
        ours += "]";
        EXPECT_EQ(ours, qt) << text.toStdString();
        // The same characters as raw data inside a longer text, not ended where the string ends.
        const QString longer = text + QStringLiteral("tail\"");
        QByteArray fromRaw = "[";
        appendJsonString(&fromRaw, QString::fromRawData(longer.constData(), text.size()));
        fromRaw += "]";
        EXPECT_EQ(fromRaw, qt) << text.toStdString();
    }
}
