#pragma once

#include <QObject>
#include <QSize>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

/// One widget of the collection: what Designer shows of it in its box, and how it is made.
class WidgetEntry : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    struct Description
    {
        const char* className; ///< without the name space
        const char* letters;   ///< on the icon
        const char* toolTip;
        QSize size; ///< in a new form
        QWidget* (*make)(QWidget* parent);
    };

    WidgetEntry(const Description& description, QObject* parent);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QWidget* createWidget(QWidget* parent) override;
    QString domXml() const override;

private:
    Description _description;
};
