#include "QorIconFactory.h"

#include "icons/mfBool.xpm"
#include "icons/mfColor.xpm"
#include "icons/mfFloat.xpm"
#include "icons/mfImage.xpm"
#include "icons/mfInt32.xpm"
#include "icons/mfNode.xpm"
#include "icons/mfRotation.xpm"
#include "icons/mfString.xpm"
#include "icons/mfTime.xpm"
#include "icons/mfVec2f.xpm"
#include "icons/mfVec3f.xpm"
#include "icons/sfBool.xpm"
#include "icons/sfColor.xpm"
#include "icons/sfFloat.xpm"
#include "icons/sfImage.xpm"
#include "icons/sfInt32.xpm"
#include "icons/sfNode.xpm"
#include "icons/sfRotation.xpm"
#include "icons/sfString.xpm"
#include "icons/sfTime.xpm"
#include "icons/sfVec2f.xpm"
#include "icons/sfVec3f.xpm"
#include "icons/unknownField.xpm"

namespace Orvane::Qt4 {

QorIconFactory* QorIconFactory::_the = nullptr;

QorIconFactory::QorIconFactory() = default;
QorIconFactory::~QorIconFactory() = default;

QorIconFactory* QorIconFactory::the()
{
    if (!_the)
        _the = new QorIconFactory; // stays as long as the process
    return _the;
}

QPixmap QorIconFactory::fieldIcon(Orvane::NodePartDataType type)
{
    switch (type) {
    case SFBOOL_DT:
        return QPixmap(sfBool_xpm);
    case MFBOOL_DT:
        return QPixmap(mfBool_xpm);
    case SFCOLOR_DT:
        return QPixmap(sfColor_xpm);
    case MFCOLOR_DT:
        return QPixmap(mfColor_xpm);
    case SFFLOAT_DT:
        return QPixmap(sfFloat_xpm);
    case MFFLOAT_DT:
        return QPixmap(mfFloat_xpm);
    case SFIMAGE_DT:
        return QPixmap(sfImage_xpm);
    case MFIMAGE_DT:
        return QPixmap(mfImage_xpm);
    case SFINT32_DT:
        return QPixmap(sfInt32_xpm);
    case MFINT32_DT:
        return QPixmap(mfInt32_xpm);
    case SFNODE_DT:
        return QPixmap(sfNode_xpm);
    case MFNODE_DT:
        return QPixmap(mfNode_xpm);
    case SFROTATION_DT:
        return QPixmap(sfRotation_xpm);
    case MFROTATION_DT:
        return QPixmap(mfRotation_xpm);
    case SFSTRING_DT:
        return QPixmap(sfString_xpm);
    case MFSTRING_DT:
        return QPixmap(mfString_xpm);
    case SFTIME_DT:
        return QPixmap(sfTime_xpm);
    case MFTIME_DT:
        return QPixmap(mfTime_xpm);
    case SFVEC2F_DT:
        return QPixmap(sfVec2f_xpm);
    case MFVEC2F_DT:
        return QPixmap(mfVec2f_xpm);
    case SFVEC3F_DT:
        return QPixmap(sfVec3f_xpm);
    case MFVEC3F_DT:
        return QPixmap(mfVec3f_xpm);
    default:
        return QPixmap(unknownField_xpm);
    }
}

} // namespace Orvane::Qt4
