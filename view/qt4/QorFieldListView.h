#pragma once

#include "QorBorrowedNode.h"
#include "QorExport.h"
#include <Orvane/NodePartType.h>
#include <QtCore/QVector>
#include <QtWidgets/QTreeWidget>

namespace Orvane {
class Field;
}

namespace Orvane::Qt4 {

/// A list of the fields of a node, to look at only. A host chooses the columns, and may have it list the
/// fields of one access or those that an author added. It watches nothing: `updateView` lists anew. The node
/// is borrowed; one that has died has no fields.
class QOR_EXPORT QorFieldListView : public QTreeWidget
{
    Q_OBJECT

public:
    /// Columns, to be combined.
    enum Column : int { COLUMN_NAME = 1, COLUMN_DATA_TYPE = 2, COLUMN_FIELD_TYPE = 4 };

    /// The columns of both.
    friend Column operator|(Column a, Column b)
    {
        return static_cast<Column>(static_cast<int>(a) | static_cast<int>(b));
    }

    /// An empty list of three columns.
    explicit QorFieldListView(QWidget* parent = nullptr);
    ~QorFieldListView() override;

    /// The node listed; null when there is none or it has died.
    Orvane::Node* node() const { return _node.get(); }
    bool isExtensionsOnly() const { return _extensionsOnly; }
    const Column& getShownColumns() const { return _shownColumns; }
    const Orvane::NodePartType& getShownPartTypes() const { return _shownPartTypes; }

    /// Lists the fields of a node; the same node is listed anew.
    void setNode(Orvane::Node* node);
    /// Lists only fields that an author added to the node.
    void setExtensionsOnly(bool extensionsOnly);
    /// Lists only fields of just this access: exposed fields do not count as events. 0 lists them all.
    void showPartTypes(const Orvane::NodePartType& partTypes);
    /// Shows the columns of some flags, in the order name, data type, field type. There are three columns at
    /// all times: those that are left over are empty.
    void showColumns(const Column& columns);

    /// Lists the fields anew.
    virtual void updateView();
    /// Sets the columns up anew.
    virtual void initListView();

protected:
    /// Text of one field in one column; a null string for any other combination of flags.
    QString getColumnText(const Orvane::Field* field, const Column& column) const;

private:
    bool isShown(const Orvane::Field& field) const;

    QorBorrowedNode _node;
    Orvane::NodePartType _shownPartTypes = Orvane::NO_PART;
    bool _extensionsOnly = false;
    Column _shownColumns = COLUMN_NAME | COLUMN_DATA_TYPE | COLUMN_FIELD_TYPE;
    QVector<Column> _columnOrder;
};

} // namespace Orvane::Qt4
