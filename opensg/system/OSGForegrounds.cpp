#include <OpenSG/OSGDrawable.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGImageForeground.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGVolumeForeground.h>

#include "OSGContainerType.h"
#include "OSGTraversal.h"

#include <cmath>
#include <epoxy/gl.h>

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(ImageForeground, Foreground)
OSG_CREATABLE_CONTAINER_TYPE(VolumeForeground, Foreground)

namespace {

/// GL's name of a format that is drawn; 0 for others.
GLenum drawnFormat(const Image& image)
{
    if (!image.getData() || image.getDataType() != Image::OSG_UINT8_IMAGEDATA)
        return 0;
    switch (image.getPixelFormat()) {
    case Image::OSG_L_PF:
        return GL_LUMINANCE;
    case Image::OSG_LA_PF:
        return GL_LUMINANCE_ALPHA;
    case Image::OSG_RGB_PF:
        return GL_RGB;
    case Image::OSG_RGBA_PF:
        return GL_RGBA;
    default:
        return 0;
    }
}

/// Collects the edges of boxes.
class BoxCollector
{
public:
    explicit BoxCollector(std::vector<Pnt3f>& drawables, std::vector<Pnt3f>& groups)
        : _drawables(drawables)
        , _groups(groups)
    {
    }

    int enter(Node& node, const Matrix& parentToWorld, int)
    {
        const DynamicVolume& volume = node.getVolume(true);
        if (!volume.isValid() || volume.isEmpty() || volume.isInfinite())
            return 0;
        Pnt3f low;
        Pnt3f high;
        volume.getBounds(low, high);
        const bool isDrawable = dynamic_cast<Drawable*>(node.getCore().getCPtr());
        addEdges(isDrawable ? _drawables : _groups, low, high, parentToWorld);
        return 0;
    }
    void visit(NodeCore&) {}
    void leave(NodeCore&) {}

private:
    static void addEdges(std::vector<Pnt3f>& lines, const Pnt3f& low, const Pnt3f& high,
                         const Matrix& toWorld)
    {
        Pnt3f corners[8];
        for (UInt32 i = 0; i < 8; ++i) {
            corners[i].setValues(i & 1 ? high[0] : low[0], i & 2 ? high[1] : low[1],
                                 i & 4 ? high[2] : low[2]);
            toWorld.multMatrixPnt(corners[i]);
            for (UInt32 axis = 0; axis < 3; ++axis) {
                if (!std::isfinite(corners[i][axis]))
                    return;
            }
        }
        for (UInt32 i = 0; i < 8; ++i) {
            for (UInt32 bit = 1; bit < 8; bit <<= 1) {
                if (i & bit)
                    continue;
                lines.push_back(corners[i]);
                lines.push_back(corners[i | bit]);
            }
        }
    }

    std::vector<Pnt3f>& _drawables;
    std::vector<Pnt3f>& _groups;
};

void drawLines(const std::vector<Pnt3f>& lines, const Color3f& color)
{
    if (lines.empty())
        return;
    glColor3f(color.red(), color.green(), color.blue());
    glVertexPointer(3, GL_FLOAT, sizeof(Pnt3f), lines.data());
    glDrawArrays(GL_LINES, 0, static_cast<GLsizei>(lines.size()));
}

} // namespace

ImageForeground::~ImageForeground() = default;

void ImageForeground::addImage(const ImagePtr& image, const Pnt2f& position)
{
    if (image)
        _images.push_back({image, position});
}

void ImageForeground::draw(RenderActionBase&, Viewport& port)
{
    if (_images.empty())
        return;
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (const Entry& entry : _images) {
        const GLenum format = drawnFormat(*entry.image);
        if (!format)
            continue;
        glWindowPos2f(static_cast<Real32>(port.getPixelLeft()) + entry.position[0],
                      static_cast<Real32>(port.getPixelBottom()) + entry.position[1]);
        glDrawPixels(entry.image->getWidth(), entry.image->getHeight(), format, GL_UNSIGNED_BYTE,
                     entry.image->getData());
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glDisable(GL_BLEND);
}

void VolumeForeground::draw(RenderActionBase& action, Viewport& port)
{
    if (!_active || !port.getRoot())
        return;
    std::vector<Pnt3f> drawables;
    std::vector<Pnt3f> groups;
    BoxCollector collector(drawables, groups);
    Traversal traversal;
    traversal.run(port.getRoot(), port.getTravMask(), collector);

    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(action.getProjection().getValues());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(action.getViewing().getValues());
    glEnable(GL_DEPTH_TEST);
    // A box whose side is the face of a shape is seen all the same.
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_FALSE);
    glEnableClientState(GL_VERTEX_ARRAY);
    drawLines(groups, _groupColor);
    drawLines(drawables, _drawableColor);
    glDisableClientState(GL_VERTEX_ARRAY);
    glColor3f(1, 1, 1);
    glDepthMask(GL_TRUE);
    glDepthFunc(GL_LESS);
    glDisable(GL_DEPTH_TEST);
    glLoadIdentity();
}

} // namespace osg
