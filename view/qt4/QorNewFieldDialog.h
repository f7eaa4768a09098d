#pragma once

#include "QorBorrowedNode.h"
#include "QorExport.h"
#include "QorMetaTypes.h"
#include <Orvane/NodePartType.h>
#include <QtWidgets/QDialog>

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace Orvane::Qt4 {

/// Asks the user to describe a new field of a node. It adds nothing: a host that wants to answers the signal.
/// The node is borrowed; without one, or when it has died, the dialog closes and asks for nothing.
class QOR_EXPORT QorNewFieldDialog : public QDialog
{
    Q_OBJECT

public:
    /// Asks for a field of \a node, which is borrowed.
    explicit QorNewFieldDialog(Orvane::Node* node, QWidget* parent = nullptr);
    ~QorNewFieldDialog() override;

    /// The access that a text of the field type box means; `NO_PART` for any other text.
    static Orvane::NodePartType getNodePartType(const QString& fieldType);

public slots:
    /// Only a name that is not empty can be created.
    void onNameChanged(QString name);
    /// Asks for the field and closes the dialog.
    void onCreate();

signals:
    /// The user wants the field. Only the name has been looked at: it is not empty. The last two are empty.
    void wantsAddField(Orvane::Node* n, QString dataType, QString fieldType, QString name,
                       QString defaultValue, QString valueType, QString description);

protected:
    /// A field can be created when it has a name.
    virtual void updateButtons();

private:
    QLineEdit* _nameEdit;
    QLineEdit* _defaultValueEdit;
    QComboBox* _dataTypeCombo;
    QorBorrowedNode _node;
    QGridLayout* _layout;
    QLabel* _nameLabel;
    QComboBox* _fieldTypeCombo;
    QLabel* _nodeLabel;
    QLabel* _defaultValueLabel;
    QLabel* _fieldTypeLabel;
    QLabel* _dataTypeLabel;
    QPushButton* _createButton;
    QPushButton* _cancelButton;
};

} // namespace Orvane::Qt4
