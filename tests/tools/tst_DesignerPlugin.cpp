// The plugin for Qt Designer: what it offers, and forms with its widgets, loaded and compiled.
#include "ui_AllWidgets.h"
#include <QBuffer>
#include <QIcon>
#include <QPluginLoader>
#include <QUiLoader>
#include <QorImgCanvasView.h>
#include <QtTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

using Orvane::Qt4::QorImgCanvasView;

class tst_DesignerPlugin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyWidgetIsMade_data();
    void everyWidgetIsMade();
    void everyWidgetIsLoadedFromAForm_data();
    void everyWidgetIsLoadedFromAForm();
    void aCompiledFormHasThemAll();

private:
    void eachWidget();
    void keepImages(QWidget& widget);

    QString _file = QStringLiteral(DESIGNER_PLUGIN);
    QList<QDesignerCustomWidgetInterface*> _widgets;
    std::vector<osg::RefPtr<osg::ImagePtr>> _images;
};

void tst_DesignerPlugin::initTestCase()
{
    QPluginLoader loader(_file);
    auto* collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader.instance());
    QVERIFY2(collection, qPrintable(loader.errorString()));
    _widgets = collection->customWidgets();
    QCOMPARE(_widgets.size(), 11);
}

void tst_DesignerPlugin::eachWidget()
{
    QTest::addColumn<int>("widget");
    for (int i = 0; i < _widgets.size(); ++i)
        QTest::newRow(qPrintable(_widgets.at(i)->name())) << i;
}

/// A canvas takes no reference on its image: its host does.
void tst_DesignerPlugin::keepImages(QWidget& widget)
{
    QList<QorImgCanvasView*> canvases = widget.findChildren<QorImgCanvasView*>();
    if (auto* canvas = qobject_cast<QorImgCanvasView*>(&widget))
        canvases << canvas;
    for (QorImgCanvasView* canvas : qAsConst(canvases))
        _images.emplace_back(canvas->getImage());
}

void tst_DesignerPlugin::everyWidgetIsMade_data()
{
    eachWidget();
}

void tst_DesignerPlugin::everyWidgetIsMade()
{
    QFETCH(int, widget);
    QDesignerCustomWidgetInterface* entry = _widgets.at(widget);
    QWidget parent;
    const QWidget* made = entry->createWidget(&parent);
    QCOMPARE(made->parentWidget(), &parent);
    keepImages(parent);
    QCOMPARE(QString::fromLatin1(made->metaObject()->className()), entry->name());
    QCOMPARE(entry->group(), QStringLiteral("Orvane"));
    QVERIFY(!entry->toolTip().isEmpty());
    QVERIFY(!entry->icon().isNull());
    QVERIFY(QFile::exists(qEnvironmentVariable("ORVANE_SOURCE_DIR") + QStringLiteral("/view/qt4/") +
                          entry->includeFile()));
}

void tst_DesignerPlugin::everyWidgetIsLoadedFromAForm_data()
{
    eachWidget();
}

void tst_DesignerPlugin::everyWidgetIsLoadedFromAForm()
{
    QFETCH(int, widget);
    QDesignerCustomWidgetInterface* entry = _widgets.at(widget);
    QUiLoader loader;
    loader.addPluginPath(QFileInfo(_file).path());
    QVERIFY(loader.availableWidgets().contains(entry->name()));
    QString form = entry->domXml();
    form.replace(QStringLiteral("<ui language=\"c++\">"), QStringLiteral("<ui version=\"4.0\">"));
    QByteArray text = form.toUtf8();
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    const std::unique_ptr<QWidget> loaded(loader.load(&buffer));
    QVERIFY2(loaded, qPrintable(loader.errorString()));
    keepImages(*loaded);
    QCOMPARE(QString::fromLatin1(loaded->metaObject()->className()), entry->name());
    QVERIFY(loaded->width() >= 48);
}

void tst_DesignerPlugin::aCompiledFormHasThemAll()
{
    QWidget window;
    Ui::AllWidgets form;
    form.setupUi(&window);
    keepImages(window);
    for (const QDesignerCustomWidgetInterface* entry : qAsConst(_widgets)) {
        bool isThere = false;
        const auto children = window.findChildren<QWidget*>();
        for (const QWidget* child : children)
            isThere = isThere || QString::fromLatin1(child->metaObject()->className()) == entry->name();
        QVERIFY2(isThere, qPrintable(entry->name()));
    }
}

QTEST_MAIN(tst_DesignerPlugin)
#include "tst_DesignerPlugin.moc"
