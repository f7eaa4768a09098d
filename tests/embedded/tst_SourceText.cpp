#include "loader/SourceText.h"
#include <QTemporaryDir>
#include <QtTest>
#include <zlib.h>

using namespace Orvane;

namespace {

QByteArray gzip(const QByteArray& bytes)
{
    z_stream z = {};
    deflateInit2(&z, Z_BEST_COMPRESSION, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    QByteArray out(static_cast<int>(deflateBound(&z, static_cast<uLong>(bytes.size()))) + 64, '\0');
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.constData()));
    z.avail_in = static_cast<uInt>(bytes.size());
    z.next_out = reinterpret_cast<Bytef*>(out.data());
    z.avail_out = static_cast<uInt>(out.size());
    deflate(&z, Z_FINISH);
    out.truncate(static_cast<int>(z.total_out));
    deflateEnd(&z);
    return out;
}

} // namespace

class tst_SourceText : public QObject
{
    Q_OBJECT

private slots:
    void encodingsBecomeUtf8_data();
    void encodingsBecomeUtf8();
    void packedTextIsUnpacked();
    void packedTextMayHaveSeveralMembers();
    void packedTextOfAHugeSizeIsRefused();
    void damagedPackedTextIsRefused();
    void placesCountLinesAndColumnsFromOne();
    void placesOfOldMacintoshLines();
    void zeroByteIsRefusedAtItsPlace();
    void directoryAndMissingFileAreRefused();

private:
    QString write(const QByteArray& bytes);

    QTemporaryDir _folder;
};

QString tst_SourceText::write(const QByteArray& bytes)
{
    QFile file(_folder.filePath(QStringLiteral("text")));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("the temporary folder takes no file");
    return file.fileName();
}

void tst_SourceText::encodingsBecomeUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("utf-8") << QByteArray("<\xC3\xBC>") << QByteArray("<\xC3\xBC>");
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF<a>") << QByteArray("<a>");
    QTest::newRow("latin-1 as declared")
        << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><\xC3\xBC>")
        << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><"
                      "\xC3\x83\xC2\xBC>");
    QTest::newRow("latin-1 undeclared") << QByteArray("<\xFC>") << QByteArray("<\xC3\xBC>");
    QTest::newRow("utf-16 little") << QByteArray("\xFF\xFE<\0\xFC\0>\0", 8) << QByteArray("<\xC3\xBC>");
    QTest::newRow("utf-16 big, no mark") << QByteArray("\0<\0\xFC\0>", 6) << QByteArray("<\xC3\xBC>");
    QTest::newRow("utf-32") << QByteArray("\0\0\xFE\xFF\0\0\0<", 8) << QByteArray("<");
    QTest::newRow("empty") << QByteArray() << QByteArray();
}

void tst_SourceText::encodingsBecomeUtf8()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, text);
    SourceFault fault;
    SourceText fromFile;
    QVERIFY(fromFile.readFile(write(bytes).toStdString(), fault));
    QCOMPARE(std::string(fromFile.view()), text.toStdString());
    QCOMPARE(fromFile.bytesOnDisk(), static_cast<std::size_t>(bytes.size()));
    SourceText fromMemory;
    QVERIFY(fromMemory.takeText(bytes.toStdString(), fault));
    QCOMPARE(std::string(fromMemory.view()), text.toStdString());
}

void tst_SourceText::packedTextIsUnpacked()
{
    const QByteArray text = QByteArray("<X3D>scene</X3D>").repeated(1000);
    const QByteArray bytes = gzip(text);
    SourceText source;
    SourceFault fault;
    QVERIFY(source.readFile(write(bytes).toStdString(), fault));
    QCOMPARE(std::string(source.view()), text.toStdString());
    QCOMPARE(source.bytesOnDisk(), static_cast<std::size_t>(bytes.size()));
}

void tst_SourceText::packedTextMayHaveSeveralMembers()
{
    SourceText source;
    SourceFault fault;
    QVERIFY(source.readFile(
        write(gzip("<X3D>") + gzip("") + gzip("</X3D>") + QByteArray("rest")).toStdString(), fault));
    QCOMPARE(std::string(source.view()), std::string("<X3D></X3D>"));
    QByteArray cut = gzip("<X3D>") + gzip("</X3D>");
    cut.chop(9);
    QVERIFY(!source.readFile(write(cut).toStdString(), fault));
    QCOMPARE(fault.text, std::string("expected a gzip stream, found its end too early"));
}

void tst_SourceText::packedTextOfAHugeSizeIsRefused()
{
    const QByteArray bytes = gzip(QByteArray(100 << 20, ' '));
    SourceText source;
    SourceFault fault;
    QVERIFY(!source.takeText(bytes.toStdString(), fault));
    QCOMPARE(fault.text, std::string("expected a gzip stream of at most 64 MiB when unpacked, found more"));
}

void tst_SourceText::damagedPackedTextIsRefused()
{
    QByteArray bytes = gzip(QByteArray("<X3D>scene</X3D>").repeated(1000));
    SourceText source;
    SourceFault fault;
    QVERIFY(!source.takeText(bytes.left(bytes.size() / 2).toStdString(), fault));
    QCOMPARE(fault.text, std::string("expected a gzip stream, found its end too early"));
    bytes[20] = static_cast<char>(~bytes[20]);
    QVERIFY(!source.takeText(bytes.toStdString(), fault));
    QVERIFY(fault.text.find("expected a gzip stream, found") == 0);
}

void tst_SourceText::placesCountLinesAndColumnsFromOne()
{
    SourceText source;
    SourceFault fault;
    QVERIFY(source.takeText("ab\r\ncd\n\nx", fault));
    const auto place = [&](std::size_t offset) {
        const SourcePlace at = source.place(offset);
        return QPair<unsigned int, unsigned int>(at.line, at.column);
    };
    QCOMPARE(place(0), qMakePair(1U, 1U));
    QCOMPARE(place(4), qMakePair(2U, 1U));
    QCOMPARE(place(5), qMakePair(2U, 2U));
    QCOMPARE(place(8), qMakePair(4U, 1U));
    QCOMPARE(place(1), qMakePair(1U, 2U));
}

void tst_SourceText::placesOfOldMacintoshLines()
{
    SourceText source;
    SourceFault fault;
    QVERIFY(source.takeText("ab\rcd", fault));
    QCOMPARE(source.place(3).line, 2U);
    QCOMPARE(source.place(3).column, 1U);
}

void tst_SourceText::zeroByteIsRefusedAtItsPlace()
{
    SourceText source;
    SourceFault fault;
    QVERIFY(!source.takeText(std::string("ab\nc\0d", 6), fault));
    QCOMPARE(fault.text, std::string("expected text, found a zero byte"));
    QCOMPARE(fault.place.line, 2U);
    QCOMPARE(fault.place.column, 2U);
}

void tst_SourceText::directoryAndMissingFileAreRefused()
{
    SourceText source;
    SourceFault fault;
    QVERIFY(!source.readFile(_folder.path().toStdString(), fault));
    QCOMPARE(fault.text, std::string("expected a file, found a directory"));
    QVERIFY(!source.readFile("/nowhere/at/all", fault));
    QCOMPARE(fault.text, std::string("expected a readable file, found: No such file or directory"));
}

QTEST_APPLESS_MAIN(tst_SourceText)
#include "tst_SourceText.moc"
