#pragma once

#include "QorScenegraphModel.h"
#include <Orvane/Observer.h>

namespace Orvane::Qt4 {

/// A scene-graph model that follows the running scene: each child that is added or removed gets or loses its
/// one row, and where no row can be named, items are marked for a rebuild. The graph may only change on the
/// thread of the views. A host sets it on a view of its own choice.
class QOR_EXPORT QorObservingScenegraphModel : public QorScenegraphModel
{
    Q_OBJECT

public:
    /// What an observer waits for: children that come, or that go.
    enum ChangeType : int { ADD = 0, REMOVE = 1 };

    /// Repairs the rows of a model after one kind of change, of any node of the process.
    class QOR_EXPORT ChangedObserver : public Orvane::Observer
    {
    public:
        /// \a model is borrowed, null is allowed. With another \a changeType it does nothing.
        ChangedObserver(QorObservingScenegraphModel* model, int changeType);
        ~ChangedObserver() override;

        void notify(const double& time, Orvane::BaseObject* subject, Orvane::BaseObject* a,
                    Orvane::BaseObject* b) override;

    private:
        static void addRow(QorObservingScenegraphModel& model, const Orvane::Node& node,
                           Orvane::NodeLink& link);
        static void removeRow(QorObservingScenegraphModel& model, Orvane::Node& node, Orvane::NodeLink& link);
        static void removeBelowContextRoot(QorObservingScenegraphModel& model, const Orvane::Node& node,
                                           Orvane::NodeLink& link);
        static bool removeBelow(QorObservingScenegraphModel& model, Orvane::NodeLink& link);
        static void invalidateItems(QorObservingScenegraphModel& model, Orvane::NodeLink& link,
                                    const QModelIndex& index);

        int _changeType;
        QorObservingScenegraphModel* _model;
    };

    /// As the base class.
    QorObservingScenegraphModel(Orvane::Node* rootNode, QObject* parent);
    ~QorObservingScenegraphModel() override;

    /// Tells that the rows below \a index are out of date.
    void invalidateRemovedChilds(const QModelIndex& index);

signals:
    /// The children of the row were marked for a rebuild without a word on single rows. A host may collapse
    /// the row or expand it anew.
    void childsRemoved(QModelIndex index);

protected:
    /// The row of the root alone: all else is read when it is expanded.
    void setupRootNode(Orvane::Node* rootNode, QorNodeItem* parentItem) override;

private:
    std::unique_ptr<ChangedObserver> _childAddedObserver;
    std::unique_ptr<ChangedObserver> _childRemovedObserver;
};

} // namespace Orvane::Qt4
