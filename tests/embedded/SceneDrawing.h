#pragma once

#include "../opensg/GLPicture.h"
#include "CoreScene.h"
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGVisitSubTree.h>
#include <QColor>
#include <QOpenGLFunctions>
#include <string>

/// Draws scenes into a picture that shows x and y from -5 to 5 at z = 0, under a light of the eye.
class SceneDrawing
{
public:
    bool isValid() const { return _picture.context.isValid(); }

    QImage draw(const CoreScene& scene, bool headlight = true) { return draw(scene.proc(), headlight); }
    QImage draw(const Orvane::SceneProc& scene, bool headlight)
    {
        const osg::DirectionalLightPtr light = osg::DirectionalLight::create();
        light->setBeacon(_picture.eye.get());
        light->setOn(headlight);
        const osg::VisitSubTreePtr reference = osg::VisitSubTree::create();
        reference->setSubTreeRoot(scene.root());
        const osg::RefPtr<osg::NodePtr> root(osg::makeNodeFor(osg::NodeCorePtr(light)));
        root->addChild(osg::makeNodeFor(osg::NodeCorePtr(reference)));
        return _picture.draw(root.get());
    }
    /// The colour at a place of z = 0.
    static QColor at(const QImage& image, double x, double y)
    {
        return image.pixelColor(qRound((x + 5) * 20), qRound((5 - y) * 20));
    }
    QColor at(const CoreScene& scene, double x, double y, bool headlight = true)
    {
        return at(draw(scene, headlight), x, y);
    }
    QColor middleOf(const CoreScene& scene, bool headlight = true) { return at(scene, 0, 0, headlight); }

    /// What OpenGL complains of since the last call.
    unsigned int error()
    {
        _picture.context.makeCurrent();
        return QOpenGLContext::currentContext()->functions()->glGetError();
    }

    static bool isNear(const QColor& a, const QColor& b)
    {
        constexpr int Tolerance = 6;
        return qAbs(a.red() - b.red()) < Tolerance && qAbs(a.green() - b.green()) < Tolerance &&
               qAbs(a.blue() - b.blue()) < Tolerance;
    }

private:
    GLPicture _picture;
};

#define COMPARE_DRAWN(actual, expected)                                                                      \
    do {                                                                                                     \
        const QColor found = (actual);                                                                       \
        const QColor wanted = (expected);                                                                    \
        QVERIFY2(SceneDrawing::isNear(found, wanted),                                                        \
                 qPrintable(found.name() + QStringLiteral(" for ") + wanted.name()));                        \
    } while (false)

/// A square of side 2 in the plane z = 0 that faces the viewer, as shape S.
inline std::string squareWith(const std::string& appearance, const std::string& fields = std::string())
{
    return "DEF S Shape { appearance DEF A Appearance { " + appearance +
           " } geometry DEF G IndexedFaceSet { solid FALSE coordIndex [ 0 1 2 3 ] coord Coordinate { "
           "point [ -1 -1 0, 1 -1 0, 1 1 0, -1 1 0 ] } " +
           fields + " } }";
}
