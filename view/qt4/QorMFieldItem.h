#pragma once

#include "QorFieldItem.h"
#include <QtCore/QRegExp>
#include <QtCore/QStringList>

namespace Orvane::Qt4 {

/// The row of a field of many values, with one child row per value. It keeps the texts of all values, since
/// turning a large field into text is slow. A field of more values than the threshold is delayed: it starts
/// with one placeholder row until `updateChildValues(true)` fills it.
class QOR_EXPORT QorMFieldItem : public QorFieldItem
{
public:
    /// Builds the rows, unless the field is delayed.
    QorMFieldItem(Orvane::Field* field, QorFieldItem* parent);
    QorMFieldItem(const QorMFieldItem&) = default;
    QorMFieldItem& operator=(const QorMFieldItem&) = default;
    ~QorMFieldItem() override;

    /// A summary in the column of the value; a warning as tool tip of a delayed field.
    QVariant data(int column, int role) override;

    /// Builds the rows anew and lets go of the present ones, which stay alive. Without \a force a field above
    /// the threshold gets its placeholder and keeps the texts that it had.
    virtual void updateChildValues(bool force);

    /// Reads the texts of all values anew and leaves the rows alone.
    void updateCache();
    /// The kept text of a value; null when there is none at \a i.
    QString getStringValue(int i);

    /// True once there was a row for every value, even if there is but a placeholder again.
    bool isInitialised() const { return _initialised; }
    /// True when the field has more values than the threshold, whatever rows there are.
    bool isInitialisationDelayed() const;

    /// The number of values up to which a field is filled at once, 50 unless set. Items that exist already
    /// are left alone.
    static void setValueCountThreshold(unsigned int threshold);
    static unsigned int valueCountThreshold();

protected:
    /// The texts of all values of \a field, one each; empty for null.
    QStringList valuesToStringList(Orvane::Field* field);

    static unsigned int _valueCountThreshold;
    /// What stands between the parts of a field's text.
    static const QRegExp regExp;
    /// Quotation marks in the text of a field of strings, whose values are read one by one instead.
    static const QRegExp mfStringRegExp;

private:
    unsigned int valueCount() const;

    bool _initialised = false;
    QStringList _values;
};

} // namespace Orvane::Qt4
