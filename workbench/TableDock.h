#pragma once

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGRefPtr.h>
#include <QDockWidget>
#include <memory>
#include <string>
#include <vector>

class QAction;
class FieldState;
class Selection;
class Steps;

namespace Orvane {
class Node;
class SFImage;
namespace Qt4 {
class QorImgCanvasImpl;
}
} // namespace Orvane

/// The panel of the lookup table painter. It opens on an image of one row in a field of the scene, such as
/// that of a `PixelTexture`, and paints on a copy with four channels, which becomes the field's value with
/// the first stroke; each stroke is a step. The painter follows a field that others write to, and rests when
/// its node dies.
class TableDock : public QDockWidget
{
    Q_OBJECT

public:
    /// Both are borrowed.
    TableDock(Selection* selection, Steps* steps, QWidget* parent);
    ~TableDock() override;

    /// Opens the painter on the table of the selected node; for menus.
    QAction* action() const { return _action; }

    /// The table that belongs to a node: an image of one row in a field of its own or of a node at most three
    /// steps below, as a shape has one in the texture of its appearance. Null when there is none.
    static Orvane::SFImage* findTable(Orvane::Node* node);

    /// Shows the table of a field; it stays when something else is selected. False when the image has more
    /// rows than one or cannot be painted on.
    bool open(Orvane::SFImage& field);

protected:
    /// A press or a key begins a stroke.
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class FieldObserver;

    void openSelected();
    Orvane::SFImage* field() const;
    bool read(const Orvane::SFImage& field);
    /// The painter's curves lie on its pixels and are sampled as a whole, so that a table comes back moved
    /// even where nobody has painted. This remembers what they give without a stroke,
    void sampleUntouched();
    /// and this gives the entries that still have that the bytes that the table had.
    void keepUntouched();
    void write();
    void follow();
    void rest();
    /// Of the panel; the command that shows it keeps its text.
    void giveTitle(const QString& title);

    Selection* _selection;
    Steps* _steps;
    int _stroke = 0;
    QAction* _action;
    Orvane::Qt4::QorImgCanvasImpl* _painter;
    osg::RefPtr<osg::ImagePtr> _table;  ///< the painter keeps no reference itself
    std::vector<osg::UInt8> _before;    ///< the table when the stroke began
    std::vector<osg::UInt8> _untouched; ///< what the curves gave then; empty when they are taken whole
    unsigned long long _nodeId = 0;
    std::string _fieldName;
    std::unique_ptr<const FieldState> _value; ///< before what is painted next, which is painted in place
    bool _isReading = false;
    std::unique_ptr<FieldObserver> _observer;
};
