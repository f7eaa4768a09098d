#include "TableDock.h"

#include "FieldCommands.h"
#include "Icons.h"
#include "Selection.h"
#include "Steps.h"
#include <Orvane/EventOutSlot.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Observer.h>
#include <Orvane/SFImage.h>
#include <QAction>
#include <QorImgCanvasImpl.h>
#include <QorTools.h>
#include <algorithm>
#include <vector>

using namespace Orvane::Qt4;

namespace {

/// A shape leads to its texture by its appearance, and by a texture of several ones.
constexpr int StepsBelow = 3;
constexpr std::size_t MostNodes = 256; ///< that are looked at below a selected node

bool isTable(const Orvane::Image& image)
{
    return image.width() >= 1 && image.height() == 1 && image.depth() == 1 && image.rco()->isValid() &&
           !image.rco()->hasCompressedData();
}

Orvane::SFImage* tableOf(Orvane::Node& node)
{
    for (unsigned int i = 0; i < node.partDescCount(); ++i) {
        auto* field = dynamic_cast<Orvane::SFImage*>(node.findField(i));
        if (field && (field->partType() & Orvane::FIELDP) && !field->_desc->privateAccess() &&
            isTable(field->image()))
            return field;
    }
    return nullptr;
}

/// A copy in the only form that the painter takes.
osg::RefPtr<osg::ImagePtr> paintable(const Orvane::Image& image)
{
    osg::RefPtr<osg::ImagePtr> copy = osg::Image::create();
    const bool isDone = copy->set(image.rco()) && copy->removeMipmap() &&
                        copy->convertDataTypeTo(osg::Image::OSG_UINT8_IMAGEDATA) &&
                        copy->reformat(osg::Image::OSG_RGBA_PF);
    return isDone ? copy : osg::RefPtr<osg::ImagePtr>();
}

/// Whether it has the form that the painter gives a table, of one byte for each channel.
bool isPlainTable(const osg::ImagePtr& image)
{
    return image && image->getData() && image->getWidth() >= 1 &&
           image->getPixelFormat() == osg::Image::OSG_RGBA_PF &&
           image->getDataType() == osg::Image::OSG_UINT8_IMAGEDATA &&
           image->getSize() == 4 * static_cast<unsigned long>(image->getWidth());
}

std::vector<osg::UInt8> bytesOf(const osg::ImagePtr& image)
{
    return {image->getData(), image->getData() + image->getSize()};
}

} // namespace

/// Tells of writes to the field, and of its node's death.
class TableDock::FieldObserver : public Orvane::Observer
{
public:
    FieldObserver(TableDock* dock, Orvane::SFImage& field)
        : Orvane::Observer("TableDock")
        , _dock(dock)
    {
        if (!field._outSlot)
            field.createOutSlot(false);
        if (field._outSlot)
            field._outSlot->processEventSubject().attach(*this);
        Orvane::Node::_deleteObject.attach(*this);
    }

    void notify(const double&, Orvane::BaseObject* sender, Orvane::BaseObject*, Orvane::BaseObject*) override
    {
        const auto* dying = dynamic_cast<const Orvane::Node*>(sender);
        if (!dying)
            _dock->follow();
        else if (dying->ID() == _dock->_nodeId)
            _dock->rest();
    }

private:
    TableDock* _dock;
};

TableDock::TableDock(Selection* selection, Steps* steps, QWidget* parent)
    : QDockWidget(parent)
    , _selection(selection)
    , _steps(steps)
    , _action(new QAction(tr("Edit &lookup table"), this))
    , _painter(new QorImgCanvasImpl(this))
    , _table(_painter->getImage())
{
    setObjectName(QStringLiteral("TableDock"));
    setWidget(_painter);
    rest();
    _action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_L));
    _action->setIcon(drawnIcon(Drawing::Table));
    _action->setEnabled(false);
    connect(_action, &QAction::triggered, this, &TableDock::openSelected);
    connect(_selection, &Selection::changed, this,
            [this](const Orvane::NodePath& path) { _action->setEnabled(findTable(path.node())); });
    connect(_painter, &QorImgCanvasImpl::imageChanged, this, &TableDock::write);
    connect(_steps, &Steps::nodeLeft, this, [this](const Orvane::Node* node) {
        if (node->ID() == _nodeId)
            rest();
    });
    const auto widgets = _painter->findChildren<QWidget*>();
    for (QWidget* const widget : widgets)
        widget->installEventFilter(this);
}

TableDock::~TableDock() = default;

Orvane::SFImage* TableDock::findTable(Orvane::Node* node)
{
    if (!node)
        return nullptr;
    std::vector<Orvane::Node*> nodes{node};
    std::size_t next = 0;
    for (int step = 0; step <= StepsBelow; ++step) {
        const std::size_t end = nodes.size();
        for (; next < end; ++next) {
            if (Orvane::SFImage* table = tableOf(*nodes[next]))
                return table;
            std::vector<Orvane::Node*> children;
            nodes[next]->collectAllChildren(children, 0);
            const std::size_t room = MostNodes - std::min(nodes.size(), MostNodes);
            children.resize(std::min(children.size(), room));
            nodes.insert(nodes.end(), children.begin(), children.end());
        }
    }
    return nullptr;
}

void TableDock::openSelected()
{
    Orvane::SFImage* table = findTable(_selection->node());
    if (!table || !open(*table))
        return;
    show();
    raise();
}

bool TableDock::open(Orvane::SFImage& field)
{
    if (!read(field))
        return false;
    const Orvane::Node& node = *field.node();
    _nodeId = node.ID();
    _fieldName = field.name();
    _observer = std::make_unique<FieldObserver>(this, field);
    _painter->setEnabled(true);
    giveTitle(tr("Lookup table of %1").arg(fromRuntime(nodeName(&node))));
    return true;
}

Orvane::SFImage* TableDock::field() const
{
    const Orvane::Node* node = Orvane::Node::findNode(_nodeId);
    return node ? dynamic_cast<Orvane::SFImage*>(node->findField(_fieldName, Orvane::Node::EXACT_FSO))
                : nullptr;
}

bool TableDock::read(const Orvane::SFImage& field)
{
    const Orvane::Image image = field.image();
    const osg::RefPtr<osg::ImagePtr> table = isTable(image) ? paintable(image) : osg::NullFC;
    if (!table)
        return false;
    _isReading = true;
    _painter->setImage(table);
    _isReading = false;
    _table = table;
    sampleUntouched();
    _value = std::make_unique<const FieldState>(field);
    return true;
}

void TableDock::sampleUntouched()
{
    _before.clear();
    _untouched.clear();
    if (!isPlainTable(_table.get()))
        return;
    _before = bytesOf(_table.get());
    // The size that it has already makes the painter sample its curves.
    _isReading = true;
    _painter->setSize(QString::number(_table->getWidth()));
    _isReading = false;
    _untouched = bytesOf(_table.get());
    std::copy(_before.begin(), _before.end(), _table->getData());
}

void TableDock::keepUntouched()
{
    if (!isPlainTable(_table.get()) || _table->getSize() != _untouched.size())
        return;
    osg::UInt8* const painted = _table->getData();
    for (std::size_t i = 0; i < _untouched.size(); ++i)
        if (painted[i] == _untouched[i])
            painted[i] = _before[i];
}

/// Gives the field what has been painted, or a file that has been opened.
void TableDock::write()
{
    if (_isReading)
        return;
    const osg::ImagePtr painted = _painter->getImage();
    if (painted == _table.get())
        keepUntouched();
    else
        _untouched.clear(); // of a file, everything counts
    _table = painted;
    Orvane::SFImage* const target = field();
    if (!target)
        return;
    target->setValue(0.0, Orvane::Image(_table), Orvane::Field::EXTERNAL_CT);
    auto after = std::make_unique<const FieldState>(*target);
    if (*after != *_value)
        _steps->push(new FieldCommand(*_steps, *target, *_value, *after, _stroke));
    _value = std::move(after);
}

void TableDock::showEvent(QShowEvent* event)
{
    // Before a user has put it anywhere it stands over the window, not in some corner of the screen.
    if (isFloating() && !testAttribute(Qt::WA_Moved) && parentWidget()) {
        const QPoint middle = parentWidget()->mapToGlobal(parentWidget()->rect().center());
        move(middle - QPoint(width() / 2, height() / 2));
    }
    QDockWidget::showEvent(event);
}

bool TableDock::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::MouseButtonPress || type == QEvent::KeyPress || type == QEvent::Shortcut) {
        _stroke = FieldRecorder::newEdit();
        sampleUntouched();
    }
    return QDockWidget::eventFilter(watched, event);
}

void TableDock::follow()
{
    const Orvane::SFImage* source = field();
    if (source && source->image().rco() != _table.get() && !read(*source))
        rest();
}

void TableDock::rest()
{
    _nodeId = 0;
    _painter->setEnabled(false);
    giveTitle(tr("Lookup table"));
}

void TableDock::giveTitle(const QString& title)
{
    setWindowTitle(title);
    toggleViewAction()->setText(tr("Lookup table"));
}
