#include <QtTest>
#include <Relayne/URL.h>

using Relayne::URL;

class tst_URL : public QObject
{
    Q_OBJECT

private slots:
    void splitsIntoParts();
    void textComesBack_data();
    void textComesBack();
    void resolves_data();
    void resolves();
    void localFile_data();
    void localFile();
    void fileNamesComeBack_data();
    void fileNamesComeBack();
};

void tst_URL::splitsIntoParts()
{
    const URL url("HTTP://user@host:80/a/b.x3d?q=1#View");
    QCOMPARE(url.scheme(), std::string("http"));
    QCOMPARE(url.authority(), std::string("user@host:80"));
    QCOMPARE(url.path(), std::string("/a/b.x3d"));
    QCOMPARE(url.query(), std::string("q=1"));
    QCOMPARE(url.fragment(), std::string("View"));
    QVERIFY(!url.isLocalFile());
    QVERIFY(url.localFile().empty());
    QVERIFY(URL().isEmpty());
    QVERIFY(!URL("#View").isEmpty());
    QCOMPARE(URL("C:/a.x3d").scheme(), std::string());
    QCOMPARE(URL("3d:x").scheme(), std::string());
}

void tst_URL::textComesBack_data()
{
    QTest::addColumn<QString>("text");
    for (const char* text : {"", "a.x3d", "../a b.x3d", "/a/b", "file:///a/b.x3d#c", "http://h", "http://h/?",
                             "http://h/#", "urn:web3d:media", "data:image/png;base64,AA==", "//host/a",
                             "a?b#c", "#c", "javascript: x/../y", "C:\\a\\b.wrl", ":", "%zz%"})
        QTest::addRow("%s", text) << text;
}

void tst_URL::textComesBack()
{
    QFETCH(QString, text);
    QCOMPARE(QString::fromStdString(URL(text.toStdString()).toString()), text);
}

void tst_URL::resolves_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("reference");
    QTest::addColumn<QString>("result");

    // The examples of RFC 3986, 5.4.
    const char* const rfc[][2] = {{"go:h", "go:h"},
                                  {"g", "http://a/b/c/g"},
                                  {"./g", "http://a/b/c/g"},
                                  {"g/", "http://a/b/c/g/"},
                                  {"/g", "http://a/g"},
                                  {"//g", "http://g"},
                                  {"?y", "http://a/b/c/d;p?y"},
                                  {"g?y", "http://a/b/c/g?y"},
                                  {"#s", "http://a/b/c/d;p?q#s"},
                                  {"g#s", "http://a/b/c/g#s"},
                                  {"g?y#s", "http://a/b/c/g?y#s"},
                                  {";x", "http://a/b/c/;x"},
                                  {"g;x", "http://a/b/c/g;x"},
                                  {"", "http://a/b/c/d;p?q"},
                                  {".", "http://a/b/c/"},
                                  {"./", "http://a/b/c/"},
                                  {"..", "http://a/b/"},
                                  {"../", "http://a/b/"},
                                  {"../g", "http://a/b/g"},
                                  {"../..", "http://a/"},
                                  {"../../", "http://a/"},
                                  {"../../g", "http://a/g"},
                                  {"../../../g", "http://a/g"},
                                  {"/./g", "http://a/g"},
                                  {"/../g", "http://a/g"},
                                  {"g.", "http://a/b/c/g."},
                                  {"..g", "http://a/b/c/..g"},
                                  {"./../g", "http://a/b/g"},
                                  {"./g/.", "http://a/b/c/g/"},
                                  {"g/./h", "http://a/b/c/g/h"},
                                  {"g/../h", "http://a/b/c/h"},
                                  {"g;x=1/../y", "http://a/b/c/y"},
                                  {"g?y/../x", "http://a/b/c/g?y/../x"},
                                  {"g#s/../x", "http://a/b/c/g#s/../x"}};
    for (const auto& row : rfc)
        QTest::addRow("rfc %s", row[0]) << "http://a/b/c/d;p?q" << row[0] << row[1];

    const char* const own[][3] = {{"scenes/a.x3d", "b.png", "scenes/b.png"},
                                  {"a.x3d", "b.png", "b.png"},
                                  {"a.x3d", "../b.png", "../b.png"},
                                  {"../s/a.x3d", "../../b.png", "../../b.png"},
                                  {"s/a.x3d", "../../../b.png", "../../b.png"},
                                  {"", "b.png", "b.png"},
                                  {"a.x3d", "", "a.x3d"},
                                  {"a.x3d", "#V", "a.x3d#V"},
                                  {"s/a.x3d", "/b.png", "/b.png"},
                                  {"/s/a.x3d", "t//b.png", "/s/t//b.png"},
                                  {"file:///s/a.x3d", "b c.png", "file:///s/b c.png"},
                                  {"http://h", "b.png", "http://h/b.png"},
                                  {"a/x.x3d", "..//b", "b"},
                                  {"s/a.x3d", "data:text/plain,a/./b/../c", "data:text/plain,a/./b/../c"},
                                  {"s/a.x3d", "http://h/a/../b", "http://h/b"},
                                  {"s/a.x3d", "file:b c.js", "s/b c.js"},
                                  {"file:///s/a.x3d", "FILE:../b.js#c", "file:///b.js#c"},
                                  {"s/a.x3d", "file:/b.js", "file:/b.js"},
                                  {"s/a.x3d", "file://h/../b.js", "file://h/b.js"},
                                  {"s/a.x3d", "file:", "file:"},
                                  {"http://h/s/a.x3d", "file:b.js", "file:b.js"}};
    for (const auto& row : own)
        QTest::addRow("%s + %s", row[0], row[1]) << row[0] << row[1] << row[2];
}

void tst_URL::resolves()
{
    QFETCH(QString, base);
    QFETCH(QString, reference);
    QFETCH(QString, result);
    const URL resolved = URL(base.toStdString()).resolved(URL(reference.toStdString()));
    QCOMPARE(QString::fromStdString(resolved.toString()), result);
}

void tst_URL::localFile_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("file");
    QTest::newRow("plain") << "a.x3d"
                           << "a.x3d";
    QTest::newRow("escape") << "a%20b.x3d"
                            << "a b.x3d";
    QTest::newRow("blank") << "a b.x3d"
                           << "a b.x3d";
    QTest::newRow("file") << "file:///a/%C3%A4.x3d#v"
                          << "/a/\u00e4.x3d";
    QTest::newRow("localhost") << "file://localhost/a"
                               << "/a";
    QTest::newRow("one slash") << "file:/a"
                               << "/a";
    QTest::newRow("other host") << "file://host/a"
                                << "";
    QTest::newRow("network path") << "//host/a"
                                  << "";
    QTest::newRow("web") << "http://h/a"
                         << "";
    QTest::newRow("no escape") << "100%.x3d"
                               << "100%.x3d";
    QTest::newRow("cut escape") << "a%4"
                                << "a%4";
    QTest::newRow("wrong escape") << "%zz%2"
                                  << "%zz%2";
    QTest::newRow("null byte") << "a%00b"
                               << "a%00b";
    QTest::newRow("query") << "a.x3d?x"
                           << "a.x3d";
}

void tst_URL::localFile()
{
    QFETCH(QString, text);
    QFETCH(QString, file);
    QCOMPARE(QString::fromStdString(URL(text.toStdString()).localFile()), file);
}

void tst_URL::fileNamesComeBack_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("back");
    for (const char* file : {"a.x3d", "/s/a b#1?%41.x3d", "100%.x3d", "a#b", "./a:b", "/"})
        QTest::addRow("%s", file) << file << file;
    QTest::newRow("looks like a scheme") << "scene:1.x3d"
                                         << "./scene:1.x3d";
    QTest::newRow("looks like a host") << "//a/b"
                                       << "/.//a/b";
}

void tst_URL::fileNamesComeBack()
{
    QFETCH(QString, file);
    QFETCH(QString, back);
    const URL url = URL::fromLocalFile(file.toStdString());
    QVERIFY(url.isLocalFile());
    QCOMPARE(QString::fromStdString(url.localFile()), back);
    QCOMPARE(QString::fromStdString(URL(url.toString()).localFile()), back);
}

QTEST_APPLESS_MAIN(tst_URL)
#include "tst_URL.moc"
