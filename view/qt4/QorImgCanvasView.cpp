#include "QorImgCanvasView.h"

#include <OpenSG/OSGFieldContainer.h>
#include <QtCore/QFile>
#include <QtWidgets/QFileDialog>
#include <algorithm>
#include <cmath>
#include <limits>

namespace Orvane::Qt4 {

namespace {

using Point2f = QorImgCanvasView::Point2f;

const std::vector<Point2f> straightCurve = {{0.0F, 0.0F}, {1.0F, 1.0F}};

/// The byte of a value, truncated and wrapped as a cast by way of `int` does it; 0 for what no `int` holds.
unsigned char toByte(float value)
{
    // The float next to the largest int is 2 to the power of 31, which is none.
    constexpr float limit = 2147483648.0F;
    if (!(value >= -limit && value < limit))
        return 0;
    return static_cast<unsigned char>(static_cast<int>(value));
}

bool setForm(const osg::ImagePtr& image, int width)
{
    return image->set(osg::Image::OSG_RGBA_PF, width, 1, 1, 1, 1, 0.0, nullptr,
                      osg::Image::OSG_UINT8_IMAGEDATA, true, 1);
}

} // namespace

QorImgCanvasView::QorImgCanvasView(QWidget* parent, const char* name, Qt::WindowFlags f)
    : QFrame(parent, f)
    , _redCurve(straightCurve)
    , _greenCurve(straightCurve)
    , _blueCurve(straightCurve)
    , _alphaCurve(straightCurve)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    for (int channel = 0; channel < ChannelCount; ++channel)
        forgetStroke(channel);
    setFrameStyle(QFrame::Panel | QFrame::Plain);
    setCursor(Qt::PointingHandCursor);

    _image = osg::ImageBase::create();
    osg::beginEditCP(_image);
    setForm(_image, _size);
    osg::endEditCP(_image);
}

QorImgCanvasView::~QorImgCanvasView() = default;

std::vector<Point2f>& QorImgCanvasView::curve(int channel)
{
    std::vector<Point2f>* const curves[] = {&_redCurve, &_greenCurve, &_blueCurve, &_alphaCurve};
    return *curves[channel];
}

void QorImgCanvasView::forgetStroke(int channel)
{
    _lastIndex[channel] = -1;
    _previewX[channel] = -1;
    _previewY[channel] = -1;
    _previewIndex[channel] = -1;
}

void QorImgCanvasView::replaceCurve(int channel, std::vector<Point2f> points)
{
    curve(channel) = std::move(points);
    _lastIndex[channel] = -1;
    _previewIndex[channel] = -1;
}

void QorImgCanvasView::refresh()
{
    _preview = QPixmap();
    update();
}

// ---- The table

void QorImgCanvasView::setImage(osg::ImagePtr image)
{
    if (image == osg::NullFC || !image->getData(0, 0, 0))
        return;
    if (image->getHeight() >= 2 || image->getDepth() >= 2 ||
        image->getPixelFormat() != osg::Image::OSG_RGBA_PF)
        return;
    _size = image->getWidth();
    _image = image;
    readTable();
    emit imageChanged();
}

void QorImgCanvasView::setSize(int size)
{
    _size = size;
    setForm(_image, _size);
    osg::endEditCP(_image);
    updateTable();
}

void QorImgCanvasView::readTable()
{
    for (int channel = 0; channel < ChannelCount; ++channel)
        replaceCurve(channel, {});
    const unsigned char* data = _image->getData(0, 0, 0);
    if (!data || _size < 1) {
        refresh();
        return;
    }

    const int w = std::max(width() - 1, 1);
    for (int i = 0; i < _size; ++i) {
        const float place =
            _size > 1 ? static_cast<float>(static_cast<double>(w) * i) / static_cast<float>(_size - 1) : 0.0F;
        const float x = static_cast<float>(static_cast<int>(place)) / static_cast<float>(w);
        for (int channel = 0; channel < ChannelCount; ++channel)
            curve(channel).push_back({x, static_cast<float>(data[4 * i + channel]) / 255.0F});
    }
    refresh();
}

void QorImgCanvasView::updateTable()
{
    unsigned char* data = _image->getData(0, 0, 0);
    if (!data)
        return;
    // A host may have given the image another form meanwhile.
    const int entries = static_cast<int>(
        std::min<unsigned long>(static_cast<unsigned long>(std::max(_size, 0)), _image->getSize() / 4));
    const float n = static_cast<float>(_size - 1);
    const float step = 1.0F / n;

    for (int channel = 0; channel < ChannelCount; ++channel) {
        const std::vector<Point2f>& points = curve(channel);
        for (std::size_t k = 1; k < points.size(); ++k) {
            const Point2f& from = points[k - 1];
            const Point2f& to = points[k];
            const int first = static_cast<int>(n * from.x);
            const int last = static_cast<int>(n * to.x);
            const float slope = (to.y - from.y) / (to.x - from.x);
            // Each segment writes both its ends, and adds up x from its own start.
            float x = from.x;
            for (int i = first; i <= last; ++i) {
                if (i >= 0 && i < entries)
                    data[4 * i + channel] = toByte(((x - from.x) * slope + from.y) * 255.0F);
                x += step;
            }
        }
    }
    osg::endEditCP(_image);
    emit imageChanged();
}

void QorImgCanvasView::clear()
{
    for (int channel = 0; channel < ChannelCount; ++channel)
        if (_channels & (1U << channel))
            replaceCurve(channel, straightCurve);
    refresh();
    if (_channels != 0)
        updateTable();
}

// ---- Settings

void QorImgCanvasView::setChannel(int channel, bool on)
{
    const unsigned int bit = 1U << channel;
    _channels = on ? _channels | bit : _channels & ~bit;
}

void QorImgCanvasView::setRed(bool on)
{
    setChannel(0, on);
}

void QorImgCanvasView::setGreen(bool on)
{
    setChannel(1, on);
}

void QorImgCanvasView::setBlue(bool on)
{
    setChannel(2, on);
}

void QorImgCanvasView::setAlpha(bool on)
{
    setChannel(3, on);
}

void QorImgCanvasView::setGrid(int size)
{
    _grid = size;
    refresh();
}

// ---- Files

void QorImgCanvasView::open()
{
    QFileDialog dialog(nullptr, tr("Load Lookup Table"), QStringLiteral("."),
                       QStringLiteral("*.png *.tif *.mtd"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString name = dialog.selectedFiles().value(0);
    const auto suffixes = {QStringLiteral(".png"), QStringLiteral(".tif"), QStringLiteral(".mtd")};
    const bool isTable = std::any_of(suffixes.begin(), suffixes.end(), [&](const QString& suffix) {
        return name.contains(suffix, Qt::CaseInsensitive);
    });
    if (!isTable)
        return;
    const osg::ImagePtr image = osg::ImageBase::create();
    image->read(QFile::encodeName(name).constData());
    setImage(image);
    if (_image != image) // refused: nobody else has it
        osg::subRefCP(image);
}

void QorImgCanvasView::save()
{
    updateTable();
    const QString name = QFileDialog::getSaveFileName(this, tr("Save Lookup Table"), QStringLiteral("."),
                                                      tr("RGBA Images (*.png *.tif *.mtd)"), nullptr,
                                                      QFileDialog::DontConfirmOverwrite);
    if (!name.isEmpty())
        _image->write(QFile::encodeName(name).constData());
}

} // namespace Orvane::Qt4
