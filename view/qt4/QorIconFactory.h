#pragma once

#include "QorExport.h"
#include <Orvane/NodePartDataType.h>
#include <QtGui/QPixmap>

namespace Orvane::Qt4 {

/// Gives the small icons of the field data types, at most 15 pixels wide and high. There is one for the whole
/// process, which is never freed.
class QOR_EXPORT QorIconFactory
{
public:
    /// The one factory, made at the first call.
    static QorIconFactory* the();

    /// The icon of a data type; a plain one for a type that has none of its own. Needs a `QGuiApplication`.
    QPixmap fieldIcon(Orvane::NodePartDataType type);

protected:
    QorIconFactory();
    ~QorIconFactory();

    static QorIconFactory* _the;
};

} // namespace Orvane::Qt4
