#pragma once

#include "QorExport.h"
#include <QtCore/QMimeData>

namespace Orvane::Qt4 {

/// Base of what the library's classes offer for dragging inside the process.
class QOR_EXPORT QorMimeData : public QMimeData
{
    Q_OBJECT

public:
    QorMimeData();
    ~QorMimeData() override;
};

} // namespace Orvane::Qt4
