#pragma once

#include <QorObservingScenegraphModel.h>

/// The rows of the running scene. A row that was never opened has no items below it, so that there is nothing
/// to repair when a node leaves its node.
class SceneModel : public Orvane::Qt4::QorObservingScenegraphModel
{
    Q_OBJECT

public:
    using QorObservingScenegraphModel::QorObservingScenegraphModel;

    bool removeRows(int row, int count, const QModelIndex& parent) override;
};
