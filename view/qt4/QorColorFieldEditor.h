#pragma once

#include "QorFieldEditor.h"

class QHBoxLayout;

namespace Orvane::Qt4 {

/// An empty editor for hosts that fill it with a colour editor of their own. The library makes none: it edits
/// colours as text.
class QOR_EXPORT QorColorFieldEditor : public QorFieldEditor
{
    Q_OBJECT

public:
    /// Made by the delegate for the time of an edit; \a parent owns it.
    explicit QorColorFieldEditor(QWidget* parent);

    /// Does nothing.
    void setEditorData(QorFieldItem* item) override;
    /// Does nothing.
    void setModelData(QorFieldItem* item) override;

private:
    QHBoxLayout* _layout;
};

} // namespace Orvane::Qt4
