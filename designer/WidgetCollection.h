#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

/// The widgets of the library that a form can hold, for Qt Designer and for `QUiLoader`. Views, tool bars and
/// editors of single fields are missing: the runtime and the delegates make those.
class WidgetCollection : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit WidgetCollection(QObject* parent = nullptr);

    QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return _widgets; }

private:
    QList<QDesignerCustomWidgetInterface*> _widgets; ///< children of this object
};
