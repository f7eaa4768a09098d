#pragma once

#include "QorNodeEditor.h"
#include <QtCore/QVector>

namespace Orvane {
class Field;
}

namespace Orvane::Qt4 {

/// A node editor whose value cells follow the running scene: an event at a field asks for a new paint of its
/// one cell, and the paint reads the value. Rows of values, and open editors, stay as they are.
class QOR_EXPORT QorObservingNodeEditor : public QorNodeEditor
{
    Q_OBJECT

public:
    /// Asks for a new paint of the cell of a field when one of its slots processes an event.
    class QOR_EXPORT ChangedObserver : public Orvane::Observer
    {
    public:
        /// \a editor is borrowed.
        explicit ChangedObserver(QorObservingNodeEditor* editor);
        ~ChangedObserver() override;

        void notify(const double& time, Orvane::BaseObject* subject, Orvane::BaseObject* a,
                    Orvane::BaseObject* b) override;

    private:
        QorObservingNodeEditor* _editor;
    };

    /// Shows no node.
    explicit QorObservingNodeEditor(QWidget* parent = nullptr);
    ~QorObservingNodeEditor() override;

public slots:
    /// As in the base class. The fields of the node keep the slots that are made for observing them.
    void setNode(Orvane::Node* node) override;

signals:
    /// As in the base class.
    void nodeSelected(Orvane::Node* node);

private:
    void attachObservers(Orvane::Field* field);

    QVector<ChangedObserver*> _observers; ///< owned
};

} // namespace Orvane::Qt4
