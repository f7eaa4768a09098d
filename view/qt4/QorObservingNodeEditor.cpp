#include "QorObservingNodeEditor.h"

#include "QorLog.h"
#include "QorNodeEditorTreeView.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/NodePartDesc.h>

namespace Orvane::Qt4 {

QorObservingNodeEditor::ChangedObserver::ChangedObserver(QorObservingNodeEditor* editor)
    : Orvane::Observer(nullptr)
    , _editor(editor)
{
}

QorObservingNodeEditor::ChangedObserver::~ChangedObserver() = default;

void QorObservingNodeEditor::ChangedObserver::notify(const double&, Orvane::BaseObject* subject,
                                                     Orvane::BaseObject*, Orvane::BaseObject*)
{
    const auto* slot = dynamic_cast<Orvane::EventSlot*>(subject);
    if (!slot) {
        QOR_WARNING("QorObservingNodeEditor::ChangedObserver::notify: no valid field!\n");
        return;
    }
    const QorNodeModel* model = _editor->model();
    if (!model)
        return;
    const QModelIndex index = model->index(slot->field());
    if (!index.isValid())
        QOR_WARNING("QorObservingNodeEditor::ChangedObserver::notify: Invalid model index for field %s\n",
                    slot->field()->name());
    // This runs inside a frame: the value is read when the paint comes.
    QorNodeEditorTreeView* view = _editor->treeView();
    view->viewport()->update(view->visualRect(index));
}

QorObservingNodeEditor::QorObservingNodeEditor(QWidget* parent)
    : QorNodeEditor(parent)
{
}

QorObservingNodeEditor::~QorObservingNodeEditor()
{
    qDeleteAll(_observers);
}

void QorObservingNodeEditor::setNode(Orvane::Node* node)
{
    QorNodeEditor::setNode(node);
    qDeleteAll(_observers);
    _observers.clear();
    if (!node)
        return;
    for (unsigned int i = 0; i < node->partDescCount(); ++i)
        attachObservers(node->findField(i));
}

void QorObservingNodeEditor::attachObservers(Orvane::Field* field)
{
    if (!field->_inSlot)
        field->createInSlot(false);
    if (!field->_outSlot)
        field->createOutSlot(false);
    // A private field has no row to paint.
    if (field->_desc->privateAccess())
        return;
    for (Orvane::EventSlot* slot :
         {static_cast<Orvane::EventSlot*>(field->_outSlot), static_cast<Orvane::EventSlot*>(field->_inSlot)})
    {
        if (!slot)
            continue;
        auto* observer = new ChangedObserver(this);
        slot->processEventSubject().attach(*observer);
        _observers.append(observer);
    }
}

} // namespace Orvane::Qt4
