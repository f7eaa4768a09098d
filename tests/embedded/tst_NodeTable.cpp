#include "CoreScene.h"
#include "base/KeptTypes.h"
#include "nodes/Catalogue.h"
#include <QFile>
#include <QtTest>
#include <algorithm>
#include <map>

using namespace Orvane;

/// What is drawn, alive or only kept: what the log says of it, and the table of all types in the handbook.
class tst_NodeTable : public QObject
{
    Q_OBJECT

private slots:
    void tableIsThatOfTheRuntime();
    void keptTypeIsToldOnce();
    void informationIsNotTold();
    void eachSceneIsToldAnew();
    void prototypesAreNotTold();
};

namespace {

const char* wordOf(TypeService service)
{
    switch (service) {
    case TypeService::DRAWN:
        return "drawn";
    case TypeService::ALIVE:
        return "alive";
    case TypeService::KEPT:
        return "kept";
    default:
        return "kept, told";
    }
}

/// The rows of the table, by component and name.
QString tableRows()
{
    std::map<std::pair<std::string_view, std::string_view>, TypeService> rows;
    for (const catalogue::NodeEntry& entry : catalogue::allNodes()) {
        if (!entry.isAbstract())
            rows[{entry.component, entry.name}] = serviceOf(*findType(std::string(entry.name)));
    }
    QString text;
    for (const auto& [type, service] : rows)
        text += QStringLiteral("| %1 | %2 | %3 |\n")
                    .arg(QString::fromUtf8(type.first.data(), int(type.first.size())),
                         QString::fromUtf8(type.second.data(), int(type.second.size())),
                         QString::fromLatin1(wordOf(service)));
    return text;
}

QStringList messagesOf(const Context& context)
{
    QStringList texts;
    for (const LoadMessage& message : context.loadReport().messages)
        texts << QString::fromStdString(message.text);
    return texts;
}

} // namespace

void tst_NodeTable::tableIsThatOfTheRuntime()
{
    const QString start = QStringLiteral("|---|---|---|\n");
    QFile file(QStringLiteral(NODE_TYPES_PAGE));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll());
    file.close();
    const int place = page.indexOf(start);
    QVERIFY(place >= 0);
    const QString wanted = page.left(place + start.size()) + tableRows();
    if (page == wanted)
        return;
    if (qEnvironmentVariableIsSet("ORVANE_WRITE_TABLE")) {
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(wanted.toUtf8()), qint64(wanted.toUtf8().size()));
        return;
    }
    QFAIL("docs/node-types.md is out of date; run this test with ORVANE_WRITE_TABLE=1 to renew it");
}

void tst_NodeTable::keptTypeIsToldOnce()
{
    CoreScene scene("PackagedShader { } Group { children [ PackagedShader { } PackagedShader { } ] } "
                    "DISEntityManager { }");
    const QStringList expected = {
        QStringLiteral("PackagedShader: nodes of this type are kept and not run"),
        QStringLiteral("DISEntityManager: nodes of this type are kept and do nothing")};
    QCOMPARE(messagesOf(*scene.context), expected);
}

void tst_NodeTable::informationIsNotTold()
{
    CoreScene scene("WorldInfo { metadata MetadataSet { value MetadataString { } } } GeoMetadata { }");
    QCOMPARE(messagesOf(*scene.context), QStringList());
}

void tst_NodeTable::eachSceneIsToldAnew()
{
    CoreScene scene("");
    const std::string text =
        "#X3D V4.0 utf8\nShape { appearance Appearance { shaders PackagedShader { } } }\n";
    for (int i = 0; i < 2; ++i) {
        QVERIFY(scene.context->load("table.x3dv", text, Context::REPLACE_LT, std::string()));
        QCOMPARE(messagesOf(*scene.context).size(), 1);
    }
}

void tst_NodeTable::prototypesAreNotTold()
{
    CoreScene scene("");
    const std::string text = "#X3D V4.0 utf8\nPROTO P [ ] { Group { } }\nP { }\n";
    QVERIFY(scene.context->load("table.x3dv", text, Context::REPLACE_LT, std::string()));
    QCOMPARE(messagesOf(*scene.context), QStringList());
}

QTEST_GUILESS_MAIN(tst_NodeTable)
#include "tst_NodeTable.moc"
