#include "WidgetCollection.h"

#include "WidgetEntry.h"
#include <QorCodeWidget.h>
#include <QorColorButton.h>
#include <QorFieldListView.h>
#include <QorGraphView.h>
#include <QorImgCanvasImpl.h>
#include <QorImgCanvasView.h>
#include <QorLogView.h>
#include <QorNodeEditor.h>
#include <QorObservingNodeEditor.h>
#include <QorScenegraphTreeView.h>
#include <QorViewManager.h>

using namespace Orvane::Qt4;

namespace {

template <class Widget>
QWidget* make(QWidget* parent)
{
    return new Widget(parent);
}

/// A form shows the place of a scene; its frames begin when the program loads one.
QWidget* makeViewManager(QWidget* parent)
{
    return new QorViewManager(parent, QorViewManager::ManualTrigger);
}

const WidgetEntry::Description descriptions[] = {
    {"QorViewManager", "3D", "Holds a scene and its render views", {400, 300}, makeViewManager},
    {"QorScenegraphTreeView", "Tr", "Tree of the nodes of a scene", {240, 300}, make<QorScenegraphTreeView>},
    {"QorNodeEditor", "Nd", "Shows and edits the fields of a node", {280, 300}, make<QorNodeEditor>},
    {"QorObservingNodeEditor",
     "No",
     "Node editor that follows the running scene",
     {280, 300},
     make<QorObservingNodeEditor>},
    {"QorFieldListView",
     "Fi",
     "List of the fields of a node, to look at",
     {240, 200},
     make<QorFieldListView>},
    {"QorGraphView", "Ro", "Canvas on which routes are shown and drawn", {400, 300}, make<QorGraphView>},
    {"QorCodeWidget", "{ }", "Edits code and fields of a script or shader", {400, 400}, make<QorCodeWidget>},
    {"QorLogView", "Lo", "Shows the log of the process", {500, 160}, make<QorLogView>},
    {"QorImgCanvasImpl", "Lu", "Paints a lookup table, with controls", {500, 360}, make<QorImgCanvasImpl>},
    {"QorImgCanvasView", "Cu", "Canvas of a lookup table alone", {300, 200}, make<QorImgCanvasView>},
    {"QorColorButton", "Co", "Button that shows a colour", {48, 24}, make<QorColorButton>},
};

} // namespace

WidgetCollection::WidgetCollection(QObject* parent)
    : QObject(parent)
{
    for (const WidgetEntry::Description& description : descriptions)
        _widgets << new WidgetEntry(description, this);
}
