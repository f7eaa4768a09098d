#include "QorMimeData.h"

namespace Orvane::Qt4 {

QorMimeData::QorMimeData() = default;
QorMimeData::~QorMimeData() = default;

} // namespace Orvane::Qt4
