#pragma once

#include "QorFieldEditor.h"
#include "QorMetaTypes.h"

class QHBoxLayout;
class QPushButton;

namespace Orvane::Qt4 {

/// Shows the node of an `SFNode`, or of a value of an `MFNode`, as a button that leads to it. It changes
/// nothing.
class QOR_EXPORT QorNodeFieldEditor : public QorFieldEditor
{
    Q_OBJECT

public:
    /// Made by the delegate for the time of an edit; \a parent owns it.
    explicit QorNodeFieldEditor(QWidget* parent);

    void setEditorData(QorFieldItem* item) override;
    /// Does nothing.
    void setModelData(QorFieldItem* item) override;

signals:
    /// The user wants to see that node.
    void nodeSelected(Orvane::Node* node);

protected:
    /// What users see as the name of the node; null when there is none.
    virtual QString toString();

protected slots:
    void onBtnClicked();

private:
    QHBoxLayout* _layout;
    QPushButton* _button;
    Orvane::Node* _node = nullptr;
    unsigned long long _nodeId = 0; ///< by which a node that died behind the editor is told
};

} // namespace Orvane::Qt4
