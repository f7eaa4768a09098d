#pragma once

#include <QObject>

class QDropEvent;
class QWidget;

/// Takes files that are dropped on a widget, before the widget itself does: a text would insert their names.
/// What is no file goes to the widget. The widget owns it.
class FileDrops : public QObject
{
    Q_OBJECT

public:
    explicit FileDrops(QWidget* widget);

    /// The first file of the disk in what is dragged; empty when there is none.
    static QString fileOf(const QDropEvent& event);

signals:
    /// Sent once the other program has been answered.
    void dropped(const QString& file);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
};
