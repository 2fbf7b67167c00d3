#include "CodebookTestSupport.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace cbtest {

QString samplePath(const char *name)
{
    return QDir(QStringLiteral(KX_SAMPLES_DIR)).filePath(QString::fromUtf8(name));
}

QString TempFiles::write(const QString &name, const QByteArray &bytes)
{
    const QString path = dir.filePath(name);
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    EXPECT_EQ(f.write(bytes), bytes.size());
    return path;
}

namespace {

KxCodebook::Codebook readOk(const QByteArray &bytes, KxCodebook::Format format)
{
    KxCodebook::Error error;
    const KxCodebook::Codebook book = KxCodebook::Codebook::fromData(bytes, format, &error);
    EXPECT_TRUE(error.ok()) << error.message.toStdString() << " (line " << error.line << ")";
    EXPECT_FALSE(book.isNull());
    return book;
}

} // namespace

KxCodebook::Codebook readText(const QByteArray &text)
{
    return readOk(text, KxCodebook::Format::CSProText);
}

KxCodebook::Codebook readJson(const QByteArray &json)
{
    return readOk(json, KxCodebook::Format::CSProJson);
}

KxCodebook::Variable variable(const KxCodebook::Codebook &book, const QString &name)
{
    const int i = book.indexOfVariable(name);
    EXPECT_GE(i, 0) << "no variable " << name.toStdString();
    return i >= 0 ? book.variables().at(i) : KxCodebook::Variable();
}

} // namespace cbtest

QT_BEGIN_NAMESPACE
void PrintTo(const QString &s, std::ostream *os)
{
    *os << '"' << s.toStdString() << '"';
}
QT_END_NAMESPACE
