#pragma once

#include "QorExport.h"
#include <QtWidgets/QAbstractButton>

namespace Orvane::Qt4 {

/// A button that shows a colour and nothing else. The colour lives in its palette, as the button's brush.
/// Owned by its parent widget.
class QOR_EXPORT QorColorButton : public QAbstractButton
{
    Q_OBJECT

public:
    /// A button in the colour that the palette has.
    explicit QorColorButton(QWidget* parent = nullptr);
    ~QorColorButton() override;

    /// The colour, also while the button is disabled; valid until the palette changes.
    const QColor& color() const;
    void setColor(const QColor& color);

    /// Does nothing: for callers that treat this like a push button.
    void setFlat(bool flat);

    /// Two text heights wide, a little more than one high.
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace Orvane::Qt4
