#include <OpenSG/OSGSkyBackground.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRenderActionBase.h>

#include "OSGContainerType.h"

#include <algorithm>
#include <cmath>
#include <epoxy/gl.h>

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(SkyBackground, Background)

namespace {

const Real32 halfTurn = 3.14159265f;
/// Bands are no wider than this, so that colours run evenly with the angle.
const Real32 widestBand = halfTurn / 36;
const UInt32 sectors = 48;
/// More rings cannot be told apart on any screen.
const std::size_t mostRings = 2048;

Color4f withAlpha(const Color3f& color, Real32 alpha)
{
    return Color4f(color.red(), color.green(), color.blue(), alpha);
}

Color4f mix(const Color4f& a, const Color4f& b, Real32 t)
{
    const auto part = [t](Real32 from, Real32 to) { return from + (to - from) * t; };
    return Color4f(part(a.red(), b.red()), part(a.green(), b.green()), part(a.blue(), b.blue()),
                   part(a.alpha(), b.alpha()));
}

Pnt3f onSphere(Real32 fromTop, UInt32 sector)
{
    const Real32 turn = 2 * halfTurn * static_cast<Real32>(sector % sectors) / sectors;
    return Pnt3f(std::sin(fromTop) * std::sin(turn), std::cos(fromTop), std::sin(fromTop) * std::cos(turn));
}

/// Only the turning part of a matrix, with axes of unit length.
Matrix turnOf(const Matrix& matrix)
{
    Matrix turn;
    for (UInt32 c = 0; c < 3; ++c) {
        const Vec3f axis(matrix[c][0], matrix[c][1], matrix[c][2]);
        const Real32 length = axis.length();
        if (!(length > 0) || !std::isfinite(length))
            return Matrix();
        turn[c].setValues(axis[0] / length, axis[1] / length, axis[2] / length, 0);
    }
    return turn;
}

/// A lens that cuts nothing off near or far. Where all rays are parallel the sky would be of one colour:
/// there it is seen as through a lens of a right angle.
Matrix lensOf(const RenderActionBase& action)
{
    Matrix lens = action.getProjection();
    if (lens[2][3] == 0) {
        const Real32 aspect = lens[1][1] != 0 ? std::abs(lens[0][0] / lens[1][1]) : 1;
        lens.setIdentity();
        lens[0][0] = aspect;
        lens[2][3] = -1;
        lens[3][3] = 0;
    }
    for (UInt32 c = 0; c < 4; ++c)
        lens[c][2] = 0;
    return lens;
}

struct SideAxes
{
    Vec3f ahead;
    Vec3f right;
    Vec3f up;
};

const SideAxes sideAxes[SkyBackground::SIDE_COUNT] = {
    {{0, 0, 1}, {-1, 0, 0}, {0, 1, 0}},  // back
    {{0, -1, 0}, {1, 0, 0}, {0, 0, -1}}, // bottom
    {{0, 0, -1}, {1, 0, 0}, {0, 1, 0}},  // front
    {{-1, 0, 0}, {0, 0, -1}, {0, 1, 0}}, // left
    {{1, 0, 0}, {0, 0, 1}, {0, 1, 0}},   // right
    {{0, 1, 0}, {1, 0, 0}, {0, 0, 1}},   // top
};

} // namespace

SkyBackground::~SkyBackground()
{
    for (TextureChunkPtr& texture : _textures)
        clearRefCP(texture);
}

void SkyBackground::setSky(const std::vector<Color3f>& colors, const std::vector<Real32>& angles)
{
    _skyColor = colors;
    _skyAngle = angles;
    _ringsChanged = true;
}

void SkyBackground::setGround(const std::vector<Color3f>& colors, const std::vector<Real32>& angles)
{
    _groundColor = colors;
    _groundAngle = angles;
    _ringsChanged = true;
}

void SkyBackground::setTexture(Side side, const TextureChunkPtr& texture)
{
    setRefdCP(_textures[side], texture);
}

void SkyBackground::setAlpha(Real32 alpha)
{
    _ringsChanged |= alpha != _alpha;
    _alpha = alpha;
}

bool SkyBackground::hasBox() const
{
    return std::any_of(std::begin(_textures), std::end(_textures),
                       [](const TextureChunkPtr& texture) { return texture && texture->getImage(); });
}

void SkyBackground::addBand(Real32 upper, Real32 lower, const Color4f& upperColor, const Color4f& lowerColor,
                            bool down)
{
    const auto steps = static_cast<UInt32>(std::ceil((lower - upper) / widestBand));
    for (UInt32 step = 0; step < steps; ++step) {
        const Real32 t0 = static_cast<Real32>(step) / static_cast<Real32>(steps);
        const Real32 t1 = static_cast<Real32>(step + 1) / static_cast<Real32>(steps);
        const Color4f colors[] = {mix(upperColor, lowerColor, t0), mix(upperColor, lowerColor, t1)};
        Real32 angles[] = {upper + (lower - upper) * t0, upper + (lower - upper) * t1};
        if (down) {
            angles[0] = halfTurn - angles[0];
            angles[1] = halfTurn - angles[1];
        }
        for (UInt32 sector = 0; sector < sectors; ++sector) {
            const Vertex corners[] = {{onSphere(angles[0], sector), colors[0]},
                                      {onSphere(angles[1], sector), colors[1]},
                                      {onSphere(angles[1], sector + 1), colors[1]},
                                      {onSphere(angles[0], sector + 1), colors[0]}};
            for (const UInt32 corner : {0U, 1U, 2U, 0U, 2U, 3U})
                _rings.push_back(corners[corner]);
        }
    }
}

void SkyBackground::addRings(const std::vector<Color3f>& colors, const std::vector<Real32>& angles,
                             bool isGround)
{
    const std::size_t count = std::min(colors.size(), angles.size() + 1);
    if (count == 0)
        return;
    const std::size_t stride = (count + mostRings - 1) / mostRings;
    Real32 last = 0;
    Color4f lastColor = withAlpha(colors[0], _alpha);
    for (std::size_t i = stride; i < count; i += stride) {
        const Real32 angle = angles[i - 1];
        const Real32 next = angle > last ? std::min(angle, halfTurn) : last; // no number counts as the last
        const Color4f color = withAlpha(colors[i], _alpha);
        if (next > last)
            addBand(last, next, lastColor, color, isGround);
        last = next;
        lastColor = color;
    }
    if (!isGround && last < halfTurn)
        addBand(last, halfTurn, lastColor, lastColor, false);
}

void SkyBackground::layRings()
{
    _ringsChanged = false;
    _rings.clear();
    if (_skyColor.size() > 1 && !_skyAngle.empty())
        addRings(_skyColor, _skyAngle, false);
    addRings(_groundColor, _groundAngle, true);
}

void SkyBackground::clear(RenderActionBase& action, Viewport&)
{
    const Color3f color = _skyColor.empty() ? Color3f() : _skyColor[0];
    glClearColor(color.red(), color.green(), color.blue(), _alpha);
    glClearDepth(1);
    glClearStencil(0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    if (_ringsChanged)
        layRings();
    const bool boxed = hasBox();
    if (_rings.empty() && !boxed)
        return;

    Matrix place = turnOf(action.getViewing());
    if (_beacon)
        place.mult(turnOf(_beacon->getToWorld()));
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadMatrixf(lensOf(action).getValues());
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadMatrixf(place.getValues());
    glDepthMask(GL_FALSE);
    if (!_rings.empty()) {
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_COLOR_ARRAY);
        glVertexPointer(3, GL_FLOAT, sizeof(Vertex), &_rings[0].position);
        glColorPointer(4, GL_FLOAT, sizeof(Vertex), _rings[0].color.getValuesRGBA());
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(_rings.size()));
        glDisableClientState(GL_COLOR_ARRAY);
        glDisableClientState(GL_VERTEX_ARRAY);
        glColor4f(1, 1, 1, 1);
    }
    if (boxed)
        drawBox(action);
    glDepthMask(GL_TRUE);
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
}

void SkyBackground::drawBox(RenderActionBase& action) const
{
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(1, 1, 1, _alpha);
    for (UInt32 side = 0; side < SIDE_COUNT; ++side) {
        const TextureChunkPtr& texture = _textures[side];
        if (!texture || !texture->getImage())
            continue;
        const SideAxes& axes = sideAxes[side];
        texture->activate(action, 0);
        glBegin(GL_QUADS);
        for (const UInt32 corner : {0U, 1U, 3U, 2U}) {
            const Real32 s = corner & 1U ? 1 : 0;
            const Real32 t = corner & 2U ? 1 : 0;
            const Vec3f place = axes.ahead + axes.right * (2 * s - 1) + axes.up * (2 * t - 1);
            glTexCoord2f(s, t);
            glVertex3fv(place.getValues());
        }
        glEnd();
        texture->deactivate(action, 0);
    }
    glColor4f(1, 1, 1, 1);
    glDisable(GL_BLEND);
}

} // namespace osg
