#include "QorImgCanvasImpl.h"

#include "QorImgCanvasView.h"
#include <QtGui/QIntValidator>

namespace Orvane::Qt4 {

namespace {

constexpr int SmallestTable = 2;
constexpr int LargestTable = 65536;

} // namespace

QorImgCanvasImpl::QorImgCanvasImpl(QWidget* parent, const char* name, Qt::WindowFlags f)
    : QFrame(parent, f)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    setupUi(this);

    auto* layout = new QHBoxLayout(frame);
    _canvas = new QorImgCanvasView(this, nullptr);
    _canvas->setMinimumSize(400, 400);
    _canvas->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Minimum);
    layout->addWidget(_canvas, 10);
    setFocusPolicy(Qt::StrongFocus);
    lineSize->setValidator(new QIntValidator(SmallestTable, LargestTable, this));

    connect(lineSize, &QLineEdit::textChanged, this, &QorImgCanvasImpl::setSize);
    connect(buttonCancel, &QPushButton::clicked, _canvas, &QorImgCanvasView::clear);
    connect(buttonOk, &QPushButton::clicked, _canvas, &QorImgCanvasView::save);
    connect(buttonOpen, &QPushButton::clicked, _canvas, &QorImgCanvasView::open);
    connect(SetRed, &QCheckBox::toggled, _canvas, &QorImgCanvasView::setRed);
    connect(SetGreen, &QCheckBox::toggled, _canvas, &QorImgCanvasView::setGreen);
    connect(SetBlue, &QCheckBox::toggled, _canvas, &QorImgCanvasView::setBlue);
    connect(SetAlpha, &QCheckBox::toggled, _canvas, &QorImgCanvasView::setAlpha);
    connect(SetAll, &QCheckBox::toggled, this, &QorImgCanvasImpl::setAll);
    connect(_canvas, &QorImgCanvasView::imageChanged, this, &QorImgCanvasImpl::imageChanged);
    connect(gridSlider, &QSlider::valueChanged, _canvas, &QorImgCanvasView::setGrid);
}

QorImgCanvasImpl::~QorImgCanvasImpl() = default;

osg::ImagePtr QorImgCanvasImpl::getImage()
{
    return _canvas->getImage();
}

void QorImgCanvasImpl::setImage(osg::ImagePtr image)
{
    // The text shows the size of the image; it must not give the image one.
    disconnect(lineSize, &QLineEdit::textChanged, this, &QorImgCanvasImpl::setSize);
    const int width = image == osg::NullFC ? SmallestTable : image->getWidth();
    lineSize->setText(QString::number(width));
    if (image != osg::NullFC)
        _canvas->setImage(image);
    connect(lineSize, &QLineEdit::textChanged, this, &QorImgCanvasImpl::setSize);
}

void QorImgCanvasImpl::setAll(bool on)
{
    SetRed->setChecked(on);
    SetGreen->setChecked(on);
    SetBlue->setChecked(on);
    SetAlpha->setChecked(on);
}

void QorImgCanvasImpl::setSize(const QString& str)
{
    bool ok = false;
    const int size = str.toInt(&ok, 10);
    if (ok)
        _canvas->setSize(size);
}

void QorImgCanvasImpl::closeEvent(QCloseEvent*)
{
    emit closed();
}

} // namespace Orvane::Qt4
